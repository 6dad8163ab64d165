#include <framework/services/PhonebookGroupList.h>

#include <algorithm>

PhonebookGroupList::PhonebookGroupList(int slots)
    : m_names(static_cast<std::size_t>(std::max(slots, 0)))
    , m_storedNames(m_names.size())
{
}

PhonebookGroupList::~PhonebookGroupList() = default;

int PhonebookGroupList::numberOfGroups() const
{
    return static_cast<int>(m_names.size());
}

bool PhonebookGroupList::getGroup(int index, PhonebookGroup& group) const
{
    if (index < 1 || index > numberOfGroups())
        return false;
    group.setId(index);
    group.setName(m_names[static_cast<std::size_t>(index - 1)]);
    return true;
}

int PhonebookGroupList::updateGroup(const PhonebookGroup& group)
{
    const int index = group.getId();
    if (index < 1 || index > numberOfGroups())
        return 0;
    m_names[static_cast<std::size_t>(index - 1)] = group.getName();
    return 1;
}

int PhonebookGroupList::firstSpareGroup() const
{
    return findGroup("");
}

bool PhonebookGroupList::isSpare(int index) const
{
    PhonebookGroup group;
    return !getGroup(index, group) || group.getName().empty();
}

bool PhonebookGroupList::makeSpare(int index)
{
    return updateGroup(PhonebookGroup(index, "")) == 1;
}

int PhonebookGroupList::namedGroup(int n) const
{
    const int slot = slotOfNamedGroup(n - 1);
    return slot < 0 ? -1 : slot + 1;
}

int PhonebookGroupList::slotOfNamedGroup(int n) const
{
    if (n < 0)
        return -1;
    for (std::size_t slot = 0; slot < m_names.size(); ++slot)
        if (!m_names[slot].empty() && n-- == 0)
            return static_cast<int>(slot);
    return -1;
}

bool PhonebookGroupList::noGroupsInUse() const
{
    return namedGroup(1) < 0;
}

int PhonebookGroupList::findGroup(const std::string& name) const
{
    const auto found = std::find(m_names.begin(), m_names.end(), name);
    return found == m_names.end() ? -1 : static_cast<int>(found - m_names.begin()) + 1;
}

int PhonebookGroupList::newGroupId() const
{
    return firstSpareGroup();
}

bool PhonebookGroupList::addGroup(const PhonebookGroup& group)
{
    if (group.getName().empty() || group.getId() < 1 || group.getId() > numberOfGroups() ||
        !isSpare(group.getId()))
        return false;
    return updateGroup(group) == 1;
}
