// The commands of a menu or a popup with the cursor among them. It points at them and owns none:
// one that was destroyed is no longer there.

#pragma once

#include <memory>
#include <vector>

#include <framework/Export.h>

namespace DisplayAPI {

class MenuCommand;
struct FrameScreen;
struct Key;

class FRAMEWORK_API CommandRow {
public:
    void add(MenuCommand* command);
    void clear();

    // Without those that were destroyed.
    std::vector<MenuCommand*> commands() const;
    // The command under the cursor, or null.
    MenuCommand* selected() const;
    // -1 when there are none.
    int selectedIndex() const;
    void select(int index);
    // By one, wrapping around.
    void step(int direction);

    void paint(FrameScreen& screen, int rows) const;

    // The command that `key` chooses: OK the one under the cursor, pointing at a row that one.
    // Null when it chooses none; Up and Down move the cursor.
    MenuCommand* keyPressed(const Key& key);

private:
    struct Entry {
        MenuCommand* command;
        std::weak_ptr<const void> alive;
    };
    std::vector<Entry> m_entries;
    int m_selected = 0;
    mutable int m_top = 0; // the first row that was visible when it was painted last
};

} // namespace DisplayAPI
