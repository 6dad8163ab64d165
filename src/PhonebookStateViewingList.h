// The home of the office tab: the local phonebook as a list. Typing jumps to a name; OK dials, the
// context key opens a menu; entries are deleted here.

#pragma once

#include <string>

#include <framework/display/TranslationInfo.h>
#include <framework/services/CallPartyIdentifier.h>

#include "ListCommands.h"
#include "ListPopups.h"
#include "PhonebookStateBaseDialer.h"

class PhonebookStateViewingList final : public PhonebookStateBaseDialer {
public:
    bool tabValid(EventContext* pContext) override;
    PhonebookStateBase* tabFrom(EventContext* pContext) override;
    PhonebookStateBase* tabTo(EventContext* pContext) override;
    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* rightEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                   DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* doCSTAServiceInitiatedEvent(EventContext* pContext,
                                                    CSTAServiceInitiatedEvent* pEvent) override;
    PhonebookStateBase* itemStateChangedEvent(EventContext* pContext, DisplayAPI::Item* pItem) override;
    PhonebookStateBase* dialingStartedEvent(EventContext* pContext, std::string digits) override;
    bool getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext) override;
    PhonebookStateBase* dialingStoppedEvent(EventContext* pContext) override;
    bool mobilityPhonebookRefreshActive(EventContext* pContext, bool active) override;
    // Whether the fetching popup is meant to be shown.
    bool mobilityPhonebookRefreshPending() override;
    ~PhonebookStateViewingList() override;

    const ListCommands& commands() const;
    // The number of the selected entry that a dial command stands for, and its call-party icon: the
    // default number for any other command, nothing without a command.
    void transformCommandToPhoneNumberAndIcon(EventContext* pContext, const DisplayAPI::Command* pCommand,
                                              std::string& number,
                                              CallPartyIdentifier::PhoneNumberIconType& icon);

    // The next redial command dials the selected entry's number instead of the redial number; once,
    // and until dialling ends.
    void allowRedial();

private:
    void constructDisplayList(EventContext* pContext);
    void fillDisplayList(EventContext* pContext);
    void appendText(EventContext* pContext, const char* key);
    void setGroupTitle(EventContext* pContext);
    void setDisplayListCurrent(EventContext* pContext);

    void enterOptionsContextMenuState(EventContext* pContext);
    void enterEntryContextMenuState(EventContext* pContext);
    void exitContextMenuState(EventContext* pContext);
    void setMenuAsCurrentDisplay(EventContext* pContext);

    void setPopupConfirmForDeleteEntryConfirmation(EventContext* pContext);
    void setPopupConfirmForDeleteAllConfirmation(EventContext* pContext);
    void askBeforeDeleting(EventContext* pContext, DisplayAPI::TranslationInfo question,
                           ListCommands::Choice yes);
    void deleteAllEntries(EventContext* pContext);
    void deleteSelectedEntry(EventContext* pContext);
    void removeRow(EventContext* pContext, int row);
    void leaveGroup(EventContext* pContext);

    void clearLdapMarks(EventContext* pContext);
    bool isOptionsRowSelected(EventContext* pContext) const;
    bool isEntrySelected(EventContext* pContext) const;
    unsigned int getSelectedPhonebookEntryIndex(EventContext* pContext);
    // False when the entry cannot be read; the selected entry then is what it was.
    bool updateSelectedPhonebookEntry(EventContext* pContext);
    std::string getDefaultPhonebookNo(EventContext* pContext);
    std::string shownName(EventContext* pContext);
    // Path of the selected entry's picture; "" without one.
    std::string shownPicture(EventContext* pContext);
    void sendContact(EventContext* pContext);

    // Where a choice leads; null for one that the other function knows.
    PhonebookStateBase* listChoiceMade(EventContext* pContext, ListCommands::Choice choice);
    PhonebookStateBase* entryChoiceMade(EventContext* pContext, ListCommands::Choice choice,
                                        const DisplayAPI::Command* pCommand);
    PhonebookStateBase* createNewContact(EventContext* pContext);
    PhonebookStateBase* dialChosenNumber(EventContext* pContext, const DisplayAPI::Command* pCommand);
    PhonebookStateBase* pickUp(EventContext* pContext, const DisplayAPI::Command* pCommand);
    PhonebookStateBase* dialingPopupEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                          DisplayAPI::Displayable* pDisplayable);

    ListCommands m_commands;
    ListPopups m_popups;
    bool mFetchingPopupActive = false;
    bool m_redialAllowed = false;
};
