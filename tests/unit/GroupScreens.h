// The phonebook with some groups, and the ways to their screens.

#pragma once

#include <string>

#include "PhonebookScreens.h"

class GroupScreens : public PhonebookScreens {
protected:
    PhonebookStateViewingGroups& groupsScreen() { return context().m_ViewingGroups; }
    PhonebookStateEditGroup& groupForm() { return context().m_EditGroup; }
    PhonebookStateBase* current() { return mode().getCurrentState(); }
    PhonebookGroupList& groups() { return *context().m_pGroupList; }
    DisplayAPI::SearchList& groupRows() { return *context().m_pGroupDisplayList; }

    // "group.copied.contacts" in slot 1, Family in 3 and Work in 6.
    void threeGroups()
    {
        directory.groups->updateGroup({1, COPIED});
        directory.groups->updateGroup({3, "Family"});
        directory.groups->updateGroup({6, "Work"});
    }
    void fillAllGroups()
    {
        for (int slot = 1; slot <= directory.groups->numberOfGroups(); ++slot) {
            if (directory.groups->isSpare(slot))
                directory.groups->updateGroup({slot, "Group " + std::to_string(slot)});
        }
    }
    std::string member(const std::string& surname, int group)
    {
        return directory.add(surname, "", "", "", std::to_string(group));
    }
    std::string storedName(int slot) const
    {
        PhonebookGroup group;
        directory.groups->getGroup(slot, group);
        return group.getName();
    }

    // From the list, whichever row is selected there.
    void openGroups()
    {
        context().m_pDisplayList->setSelectedIndex(0);
        press(MENU);
        choose("groups.menu");
    }
    void startAtGroups(Bar bar = Bar::SoftKeys)
    {
        start(bar);
        openGroups();
    }
    void selectRow(const std::string& text)
    {
        for (int row = 0; row < groupRows().size(); ++row) {
            if (groupRows().getText(row) == text)
                return groupRows().setSelectedIndex(row);
        }
        FAIL() << "no row " << text;
    }
    void openMenuOf(const std::string& row)
    {
        selectRow(row);
        press(MENU);
    }
    void chooseFor(const std::string& row, const std::string& command)
    {
        openMenuOf(row);
        choose(command);
    }
    // On the options row, or with soft keys in every menu.
    void chooseForAll(const std::string& command)
    {
        groupRows().setSelectedIndex(0);
        press(MENU);
        choose(command);
    }

    // The error lines of the group screens, in order.
    Texts errors() const
    {
        Texts texts;
        for (const auto& line : log.lines()) {
            if (line.level == 2 && line.file.find("Group") != std::string::npos)
                texts.push_back(line.text);
        }
        return texts;
    }

    static constexpr char COPIED[] = "group.copied.contacts";
    static constexpr Bar BARS[] = {Bar::SoftKeys, Bar::None};
};
