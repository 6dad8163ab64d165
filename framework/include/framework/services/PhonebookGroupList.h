// The telephone's groups: a fixed number of numbered slots, of which an empty name is spare.
//
// Indices count from 1 unless said otherwise. A copy in memory: DirectoryServiceIfc::storeGroupList()
// writes it.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include <framework/services/PhonebookGroup.h>

class FRAMEWORK_API PhonebookGroupList {
public:
    // All slots are spare.
    explicit PhonebookGroupList(int slots = 20);
    ~PhonebookGroupList();

    // Slots, used and spare.
    int numberOfGroups() const;

    // Copies the group in slot `index` (1..numberOfGroups()); false outside.
    bool getGroup(int index, PhonebookGroup& group) const;
    // Names the slot that the group's id says; 1 when accepted, 0 for an id outside.
    int updateGroup(const PhonebookGroup& group);

    // The first spare slot, or -1.
    int firstSpareGroup() const;
    // True for a spare slot and for one that does not exist.
    bool isSpare(int index) const;
    // Takes the slot's name away; false outside.
    bool makeSpare(int index);

    // The slot of the n-th named group, n from 1; -1 when there are fewer.
    int namedGroup(int n) const;
    // The slot counted from 0 of the n-th named group, n from 0; -1 when there are fewer.
    int slotOfNamedGroup(int n) const;
    bool noGroupsInUse() const;

    // The id of the group of that name (bytes compared), or -1.
    int findGroup(const std::string& name) const;
    // The id that a new group gets: the first spare slot, or -1.
    int newGroupId() const;
    // Takes the slot that the group's id says; false when it is not spare or outside.
    bool addGroup(const PhonebookGroup& group);

    // What the store held when this list was last read or written, [0] being slot 1; copies keep it.
    // Nothing but spare slots in a list that never was, so that it cannot take a stored name away.
    const std::vector<std::string>& storedNames() const { return m_storedNames; }
    // The store's part: `names`, one for each slot, is what it holds now.
    void setStoredNames(std::vector<std::string> names) { m_storedNames = std::move(names); }

private:
    std::vector<std::string> m_names; // [0] is slot 1
    std::vector<std::string> m_storedNames;
};
