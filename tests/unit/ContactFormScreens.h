// The contact form on a telephone of fakes.

#pragma once

#include <string>

#include "FormScreens.h"

class ContactFormScreens : public FormScreens {
protected:
    static constexpr auto SAVED = "! changes.saved\n";

    PhonebookStateCreatingEntry& state() { return context().m_CreatingEntry; }
    bool inForm() { return mode().getCurrentState() == &state(); }
    bool inList() { return mode().getCurrentState() == &context().m_ViewingList; }

    void openNew()
    {
        press(MENU);
        choose("new.contact");
        ASSERT_TRUE(inForm());
    }
    // The form of the list's entry at this index.
    void openDetails(int entry = 0)
    {
        context().m_pDisplayList->setSelectedIndex(context().m_HasSoftKeyBar ? entry : entry + 1);
        press(MENU);
        choose(telephone.translator.prefix + "details");
        ASSERT_TRUE(inForm());
    }
    // Enters the form once more, without leaving it.
    void enter()
    {
        state().enterStateEvent(&context());
        host.settle();
    }

    const Fields& record(const std::string& id) { return directory.records.at(id); }
    // Of the last contact that was added.
    const Fields& newest() { return directory.records.rbegin()->second; }
};
