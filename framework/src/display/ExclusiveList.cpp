#include <framework/display/ExclusiveList.h>

#include <algorithm>

#include <framework/display/Frame.h>
#include <framework/host/Key.h>

#include "Registry.h"
#include "Scroll.h"
#include "UiLock.h"

namespace DisplayAPI {

ExclusiveList::ExclusiveList() = default;

ExclusiveList::~ExclusiveList()
{
    detach();
}

int ExclusiveList::append(ListItem* row)
{
    const UiLock lock;
    if (!row)
        return -1;
    m_rows.emplace_back(row);
    m_selected = std::max(m_selected, 0);
    return size() - 1;
}

int ExclusiveList::size() const
{
    const UiLock lock;
    return static_cast<int>(m_rows.size());
}

int ExclusiveList::getSelectedIndex() const
{
    const UiLock lock;
    return m_selected;
}

void ExclusiveList::setSelectedIndex(int index)
{
    const UiLock lock;
    if (index >= 0 && index < size())
        m_selected = index;
}

void ExclusiveList::setWaitAnimation(bool on)
{
    const UiLock lock;
    if (m_waiting == on)
        return;
    m_waiting = on;
    publishWhereShown(*this);
}

FrameRole ExclusiveList::role() const
{
    return FrameRole::ExclusiveList;
}

void ExclusiveList::paint(FrameScreen& screen, int rows) const
{
    const UiLock lock;
    screen.title = title().translated();
    screen.waiting = m_waiting;
    screen.rowCount = size();
    m_top = scrolled(m_top, m_selected, size(), rows);
    for (int i = m_top; i < std::min(size(), m_top + rows); ++i) {
        const auto& row = *m_rows[static_cast<std::size_t>(i)];
        screen.rows.push_back({i, row.getIcon(), row.getText(), {}, i == m_selected});
    }
}

bool ExclusiveList::keyPressed(const Key& key)
{
    const UiLock lock;
    switch (key.kind) {
    case Key::Kind::Up:
        setSelectedIndex(m_selected - 1);
        return true;
    case Key::Kind::Down:
        setSelectedIndex(m_selected + 1);
        return true;
    case Key::Kind::Right:
        return report(Key::of(Key::Kind::Context));
    case Key::Kind::Row:
        if (key.index == m_selected)
            return report(Key::of(Key::Kind::Ok));
        setSelectedIndex(key.index);
        return true;
    default:
        return report(key);
    }
}

} // namespace DisplayAPI
