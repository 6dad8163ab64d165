// The corporate directory's list on a telephone of fakes, with what a search found.

#pragma once

#include <utility>
#include <vector>

#include "DirectoryEntryScreens.h"

class DirectorySearchScreens : public DirectoryEntryScreens {
protected:
    using People = std::vector<AttributeList>;

    // Also a second time in one test.
    void startOnItsTab(Bar bar = Bar::SoftKeys)
    {
        telephone.states.clear(); // or it would begin there
        DirectoryEntryScreens::startOnItsTab(bar);
    }

    static People threePeople()
    {
        return {{{Utils::SURNAME, "Adams"}, {Utils::FIRSTNAME, "Zoe"}, {Utils::OFFICE, "100"}},
                {{Utils::SURNAME, "Baker"}, {Utils::FIRSTNAME, "Mia"}, {Utils::MOBILE, "102"}},
                {{Utils::SURNAME, "Clark"}, {Utils::FIRSTNAME, "Amy"}, {Utils::PRIVATE, "103"}}};
    }

    PhonebookList& people() { return *context().m_pLdapPhonebookList; }
    DisplayAPI::SearchList& peopleRows() { return *context().m_pLdapDisplayList; }

    // What the next searches answer; the trailer is added.
    void directoryHolds(People found, DirectoryStatus status = DIRECTORY_SUCCESS)
    {
        found.push_back({{"nickname", "false"}});
        directory.found = std::move(found);
        directory.status = status;
    }
    // As after a search that found them.
    void listShows(People found)
    {
        directoryHolds(std::move(found));
        PhonebookSearchCriteria criteria({}, "", true);
        people().populate(criteria, true);
        peopleRows().clear();
        context().m_LdapViewingList.constructLdapDisplayList(&context());
        directory.searches.clear();
        host.settle();
    }
    // The rows below the options row, if there is one.
    Texts names()
    {
        auto texts = rows();
        if (!context().m_HasSoftKeyBar)
            texts.erase(texts.begin());
        return texts;
    }
};
