// All screens and displays that are alive: a pointer that a phonelet kept too long is recognised,
// and a widget finds the display that shows it. To be used under the UiLock.

#pragma once

#include <unordered_set>
#include <vector>

namespace DisplayAPI {

class Display;
class Displayable;

struct Registry {
    std::unordered_set<const Displayable*> screens;
    std::vector<Display*> displays;

    bool isAlive(const Displayable* screen) const { return screens.contains(screen); }

    static Registry& get();
};

// Takes a popup off wherever it is shown, without a report.
void dismissFromDisplays(Displayable& popup);

// Publishes a frame wherever `screen` is shown.
void publishWhereShown(const Displayable& screen);

// Whether something else on its display gets the keys now.
bool isCovered(const Displayable& screen);

} // namespace DisplayAPI
