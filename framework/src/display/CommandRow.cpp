#include <framework/display/CommandRow.h>

#include <algorithm>

#include <framework/display/Frame.h>
#include <framework/display/MenuCommand.h>
#include <framework/host/Key.h>

#include "Scroll.h"
#include "UiLock.h"

namespace DisplayAPI {

void CommandRow::add(MenuCommand* command)
{
    const UiLock lock;
    std::erase_if(m_entries, [](const Entry& entry) { return entry.alive.expired(); });
    if (command)
        m_entries.push_back({command, command->watch()});
}

void CommandRow::clear()
{
    const UiLock lock;
    m_entries.clear();
    m_selected = 0;
    m_top = 0;
}

std::vector<MenuCommand*> CommandRow::commands() const
{
    const UiLock lock;
    std::vector<MenuCommand*> alive;
    for (const auto& entry : m_entries) {
        if (!entry.alive.expired())
            alive.push_back(entry.command);
    }
    return alive;
}

MenuCommand* CommandRow::selected() const
{
    const UiLock lock;
    const auto index = selectedIndex();
    return index < 0 ? nullptr : commands()[static_cast<std::size_t>(index)];
}

int CommandRow::selectedIndex() const
{
    const UiLock lock;
    return std::min(m_selected, static_cast<int>(commands().size()) - 1);
}

void CommandRow::select(int index)
{
    const UiLock lock;
    if (index >= 0 && index < static_cast<int>(commands().size()))
        m_selected = index;
}

void CommandRow::step(int direction)
{
    const UiLock lock;
    const auto count = static_cast<int>(commands().size());
    if (count > 0)
        m_selected = (selectedIndex() + count + direction) % count;
}

void CommandRow::paint(FrameScreen& screen, int rows) const
{
    const UiLock lock;
    const auto all = commands();
    const auto count = static_cast<int>(all.size());
    const auto current = selectedIndex();
    m_top = scrolled(m_top, current, count, rows);
    screen.rowCount = count;
    for (int i = m_top; i < std::min(count, m_top + rows); ++i) {
        const auto* command = all[static_cast<std::size_t>(i)];
        screen.rows.push_back(
            {i, command->getIcon(), command->getLabel().translated(), command->getImagePath(), i == current});
    }
}

MenuCommand* CommandRow::keyPressed(const Key& key)
{
    const UiLock lock;
    switch (key.kind) {
    case Key::Kind::Up:
        step(-1);
        return nullptr;
    case Key::Kind::Down:
        step(+1);
        return nullptr;
    case Key::Kind::Ok:
        return selected();
    case Key::Kind::Row:
        if (key.index < 0 || key.index >= static_cast<int>(commands().size()))
            return nullptr;
        select(key.index);
        return selected();
    default:
        return nullptr;
    }
}

} // namespace DisplayAPI
