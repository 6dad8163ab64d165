#include "Registry.h"

#include <algorithm>

#include <framework/display/Display.h>

namespace DisplayAPI {

Registry& Registry::get()
{
    // Never destroyed: widgets with static storage still leave it at exit.
    static auto& registry = *new Registry;
    return registry;
}

void dismissFromDisplays(Displayable& popup)
{
    for (auto* display : Registry::get().displays)
        display->remove(popup, false);
}

void publishWhereShown(const Displayable& screen)
{
    for (auto* display : Registry::get().displays) {
        if (display->shows(screen))
            display->changed();
    }
}

bool isCovered(const Displayable& screen)
{
    return std::ranges::any_of(Registry::get().displays, [&](const auto* display) {
        return display->shows(screen) && !display->isCurrentForKeyEvents(&screen);
    });
}

} // namespace DisplayAPI
