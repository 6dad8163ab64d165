// The commands of a menu or a popup with the cursor among them. It points at them and owns none:
// one that was destroyed is no longer there.

#pragma once

#include <memory>
#include <vector>

#include <framework/Export.h>

namespace DisplayAPI {

class MenuCommand;
struct FrameScreen;

class FRAMEWORK_API CommandRow {
public:
    void add(MenuCommand* command);
    void clear();

    // Without those that were destroyed.
    std::vector<MenuCommand*> commands() const;
    // The command under the cursor, or null.
    MenuCommand* selected() const;
    int selectedIndex() const;
    void select(int index);
    // By one, wrapping around.
    void step(int direction);

    void paint(FrameScreen& screen, int rows) const;

private:
    struct Entry {
        MenuCommand* command;
        std::weak_ptr<const void> alive;
    };
    std::vector<Entry> m_entries;
    int m_selected = 0;
};

} // namespace DisplayAPI
