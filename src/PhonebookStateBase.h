// A screen of the phonebook: it receives the events of its tab and answers with the screen that
// follows.
//
// To stay, a handler returns its own state. When it returns another one, the mode calls
// exitStateEvent() on the old state and enterStateEvent() on the new one. A screen overrides what
// it reacts to; everything else stays. States are members of the EventContext and are never
// deleted through this class.

#pragma once

#include <string>

#include <framework/services/PhysDefs.h>

#include "PhonebookListEntry.h"

namespace DisplayAPI {
class Command;
class Displayable;
class Item;
class ListItem;
class SearchList;
class TranslationInfo;
} // namespace DisplayAPI
class CallPartyIdentifier;
class CSTAServiceInitiatedEvent;
class EventContext;
class InterDigitTimeOutEvent;
class PhonebookGroup;

class PhonebookStateBase {
public:
    PhonebookStateBase() = default;
    PhonebookStateBase(const PhonebookStateBase&) = delete;
    PhonebookStateBase& operator=(const PhonebookStateBase&) = delete;

    // The order of the virtual operations is part of the contract.

    // Whether the user may leave for another tab now: no, unless a screen says so.
    virtual bool tabValid(EventContext* pContext);
    // Called before the tab changes away, and after it changed to this screen's tab.
    virtual PhonebookStateBase* tabFrom(EventContext* pContext);
    virtual PhonebookStateBase* tabTo(EventContext* pContext);
    virtual void enterStateEvent(EventContext* pContext);
    virtual void exitStateEvent(EventContext* pContext);
    // Keys, and what was chosen: see DisplayAPI::CommandListener for the displayable.
    virtual PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                          DisplayAPI::Displayable* pDisplayable);
    virtual PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                        DisplayAPI::Displayable* pDisplayable);
    virtual PhonebookStateBase* saveEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                          DisplayAPI::Displayable* pDisplayable);
    virtual PhonebookStateBase* rightEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                           DisplayAPI::Displayable* pDisplayable);
    virtual PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                            DisplayAPI::Displayable* pDisplayable);
    virtual PhonebookStateBase* doCSTAServiceInitiatedEvent(EventContext* pContext,
                                                            CSTAServiceInitiatedEvent* pEvent);
    virtual PhonebookStateBase* itemStateChangedEvent(EventContext* pContext, DisplayAPI::Item* pItem);
    // A digit was typed into the dialler, or deleted from it.
    virtual PhonebookStateBase* popupDiallerItemStateChangedEvent(EventContext* pContext,
                                                                  DisplayAPI::Item* pItem);
    // The first digits, or none after going off-hook.
    virtual PhonebookStateBase* dialingStartedEvent(EventContext* pContext, std::string digits);
    // Fills in who is dialled; false when there is no party to offer. When the party already has a
    // number, that is the one dialled.
    virtual bool getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext);
    virtual PhonebookStateBase* dialingStoppedEvent(EventContext* pContext);
    // The digits typed so far make a number. The event may be null.
    virtual PhonebookStateBase* interDigitTimeoutEvent(EventContext* pContext,
                                                       InterDigitTimeOutEvent* pEvent);
    // Dialling is reported to the phonebook from now on, or no longer.
    virtual void setCallContextProvider(EventContext* pContext);
    virtual void clearCallContextProvider(EventContext* pContext);
    // Others changed the local phonebook. What the corporate directory's tab shows is dropped too.
    virtual PhonebookStateBase* phonebookDatabaseUpdated(EventContext* pContext);
    // The telephone fetches another user's phonebook, or is done with it. Whether it is shown.
    virtual bool mobilityPhonebookRefreshActive(EventContext* pContext, bool active);
    virtual bool mobilityPhonebookRefreshPending();
    // Their results do not change the screen.
    virtual PhonebookStateBase* timerEvent(EventContext* pContext, int timerId);
    virtual PhonebookStateBase* buttonPressedEvent(EventContext* pContext, PhysDefs::keyFunctionType function,
                                                   int key, PhysDefs::actionType action, std::string name);
    // Where the user is after a call was placed from this screen.
    virtual PhonebookStateBase* stateAfterDialing(EventContext* pContext);

    bool isOfficeTabCurrent(EventContext* pContext);
    bool isLdapTabCurrent(EventContext* pContext);
    // Fills the corporate directory's list widget from its PhonebookList, and selects the first row.
    void constructLdapDisplayList(EventContext* pContext);

protected:
    // Appends an entry's row: its name, with the icon of its default number. Not traced: a list may
    // have any number of them.
    static void appendRow(DisplayAPI::SearchList& list, const PhonebookListEntry& entry, displayMode mode,
                          displayQualifier qualifier);
    // The same row for a list to take, at another place.
    static DisplayAPI::ListItem* makeRow(const PhonebookListEntry& entry, displayMode mode,
                                         displayQualifier qualifier);
    // Puts a saved entry's row into the local list, and selects it. A list without any row is not built
    // yet, and will show the entry when it is. `isFirst`: until now it said that there are no contacts.
    static void insertRow(EventContext* pContext, const PhonebookListEntry& entry, int row, bool isFirst);
    // A row's DisplayIcon, from the name of the entry's default number. Not traced either.
    static int rowIcon(const std::string& defaultNumber);
    // A group's name as it is shown: the telephone's own group is kept under its key.
    static DisplayAPI::TranslationInfo groupText(EventContext* pContext, const PhonebookGroup& group);
    // Shows a list as what its tab shows, or by itself where there are no tabs.
    static void showInTab(EventContext* pContext, DisplayAPI::Displayable& screen);

    // Not virtual: nobody owns a state through this class.
    ~PhonebookStateBase() = default;
};
