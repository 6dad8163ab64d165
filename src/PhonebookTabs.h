// The phonebook's tabs, and behind the tab of each directory the state machine of its screens.
//
// A tab that does not exist has index -1; selecting or removing it does nothing. The PBX tab has
// no state machine. Nothing here is locked.

#pragma once

#include "EventContext.h"

class PhonebookTabs {
public:
    explicit PhonebookTabs(EventContext& context);

    void addOffice();
    // Not on TDM telephones.
    void addLdap();
    // Gives the tab's index, or -1 when there is one already.
    int addPbx();
    void removePbx();

    int local() const { return m_local; }
    int ldap() const { return m_ldap; }
    int pbx() const { return m_pbx; }
    bool hasLdap() const { return m_ldap != nNO_TAB; }
    bool isLocalActive() const;
    bool isLdapActive() const;
    bool isPbxActive() const;

    int current() const;
    void select(int tab);
    // Makes the tab screen what the display shows.
    void showScreen();
    // To the next tab for a direction above 0, to the previous one below 0.
    void changeTab(int direction);
    // Steps to the next tab until `tab` is current, once round at most. False: it does not exist.
    bool stepTo(int tab);
    // Keeps which directory is current, beyond the telephone's restart, and selects it again: not while
    // something stands over the tabs or in their place.
    void updatePhoneletState();
    void selectDirectoryTypeToShow();

    // The machine of the current tab, or its state; null on the PBX tab.
    PhonebookStateBase** currentMachine();
    PhonebookStateBase* currentState();
    // Leaves the current state for another one. False when there is none, or it is the same.
    bool moveTo(PhonebookStateBase* pNext, PhonebookStateBase*& pCurrent);

    // Hands an event to the current state and goes where it says; false when there is no state.
    template <typename Event> bool route(Event event)
    {
        PhonebookStateBase** ppMachine = currentMachine();
        if (!ppMachine || !*ppMachine)
            return false;
        traceState(**ppMachine);
        moveTo(event(**ppMachine), *ppMachine);
        return true;
    }

private:
    static constexpr int nNO_TAB = -1;

    void add(const char* title, DisplayAPI::Displayable* pContent);
    void useWithTabs(DisplayAPI::SearchList& list);
    void traceState(const PhonebookStateBase& state) const;

    EventContext& m_context;
    int m_local = nNO_TAB;
    int m_ldap = nNO_TAB;
    int m_pbx = nNO_TAB;
};
