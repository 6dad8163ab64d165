// Rebuilds the screens of both directories after what they show changed as a whole.
//
// What the user had open is left for the lists. The caller holds the mode's state lock.

#pragma once

class EventContext;
class PhonebookStateBase;
class PhonebookTabs;

class DirectoryRebuild {
public:
    DirectoryRebuild(EventContext& context, PhonebookTabs& tabs);

    // Others changed the local phonebook: its tab asks to refresh, or does so at once out of sight.
    void databaseUpdated();
    // The local phonebook was replaced: both directories start again.
    void restart();
    // The language sorts differently. `visible`: whether the phonebook is in sight meanwhile.
    void alphabetChanged(bool visible);

private:
    void refreshLocalTab();
    void exitBothStates();
    void reloadLocalDirectory();
    void reenterStates();
    void enterState(int tab, PhonebookStateBase& state);

    EventContext& m_context;
    PhonebookTabs& m_tabs;
};
