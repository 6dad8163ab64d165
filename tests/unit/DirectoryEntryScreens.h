// An entry of the corporate directory on a telephone of fakes: its form, and saving it.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include <framework/services/Utils.h>

#include "FormScreens.h"

class DirectoryEntryScreens : public FormScreens {
protected:
    PhonebookStateBase* current() { return mode().getCurrentState(); }
    bool inList() { return current() == &context().m_LdapViewingList; }

    void startOnItsTab(Bar bar = Bar::SoftKeys)
    {
        start(bar);
        // A second telephone remembers the tab of the first.
        if (!mode().isLdapTabActive())
            phonelet().tab();
        host.settle();
        ASSERT_TRUE(mode().isLdapTabActive());
    }
    // Leaves the screen for another one, as a choice in its menu does.
    void go(PhonebookStateBase& next)
    {
        context().m_pLdapCurrentState->exitStateEvent(&context());
        context().m_pLdapCurrentState = &next;
        next.enterStateEvent(&context());
        host.settle();
    }

    // Searches for a name, finds these people, and opens the menu of the first one.
    void openMenuOf(std::vector<AttributeList> people)
    {
        people.push_back({{"trailer", "false"}});
        directory.found = std::move(people);
        directory.status = DIRECTORY_SUCCESS;
        type("a*");
        context().m_pLdapDisplayList->setSelectedIndex(context().m_HasSoftKeyBar ? 0 : 1);
        press(MENU);
    }

    // What the directory's list makes of an entry when it is selected.
    static PhonebookFullEntry person(const AttributeList& attributes)
    {
        PhonebookFullEntry entry;
        entry.setLDAPPhonebookFullEntry(true);
        entry.setLDAPPhonebookListEntry(true);
        entry.setAll(&attributes);
        return entry;
    }
    static AttributeList amysAttributes()
    {
        return {{Utils::SURNAME, "Adams"},      {Utils::FIRSTNAME, "Amy"},    {Utils::OFFICE, "1"},
                {Utils::OFFICE2, "2"},          {Utils::MOBILE, "3"},         {Utils::PRIVATE, "4"},
                {Utils::COMPANY, "Acme"},       {Utils::ADDRESS1, "Lane 1"},  {Utils::ADDRESS2, "London"},
                {Utils::JOBFUNCTION, "Editor"}, {Utils::EMAIL, "amy@acme.uk"}};
    }
    static PhonebookFullEntry amy() { return person(amysAttributes()); }
    static PhonebookFullEntry amyWith(const std::string& attribute, const std::string& value)
    {
        auto attributes = amysAttributes();
        for (auto& [name, text] : attributes) {
            if (name == attribute)
                text = value;
        }
        return person(attributes);
    }
};
