// The home of the corporate directory's tab: the user types a name into the list's search field, and the
// rows are what the directory found.
//
// A text that still begins the name of a row only moves the selection. Any other asks the directory:
// after typing has rested for a while (the trigger timer), or at once after `*`, `#` or OK. The text is a
// surname, and behind a comma a first name; where the directory's nickname attribute is in use, it is a
// name of either kind. OK dials; the context key opens a menu.

#pragma once

#include <memory>
#include <string>

#include <framework/services/CallPartyIdentifier.h>
#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/PhonebookSearchCriteria.h>

#include "DirectoryCommands.h"
#include "PhonebookStateBaseDialer.h"
#include "SearchPopups.h"
#include "SearchTrigger.h"

namespace DisplayAPI {
class ContextMenu;
class PopupNotification;
} // namespace DisplayAPI

class LDAPStateViewingList final : public PhonebookStateBaseDialer {
public:
    LDAPStateViewingList();

    bool tabValid(EventContext* pContext) override;
    // A search that was due meanwhile follows.
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
    PhonebookStateBase* itemStateChangedEvent(EventContext* pContext, DisplayAPI::Item* pItem) override;
    PhonebookStateBase* dialingStartedEvent(EventContext* pContext, std::string digits) override;
    bool getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext) override;
    PhonebookStateBase* dialingStoppedEvent(EventContext* pContext) override;
    PhonebookStateBase* timerEvent(EventContext* pContext, int timerId) override;
    PhonebookStateBase* buttonPressedEvent(EventContext* pContext, PhysDefs::keyFunctionType function,
                                           int key, PhysDefs::actionType action, std::string name) override;
    ~LDAPStateViewingList() override;

    // --- What the typed text means. Delta is what was typed last, "" after a deletion. ---

    // Whether the directory is to be asked.
    bool isLdapSearch(EventContext* pContext, const std::string& searchText,
                      const std::string& deltaSearchText);
    // Whether it is to be asked at once.
    bool isImmediateLDAPSearch(EventContext* pContext, const std::string& searchText,
                               const std::string& deltaSearchText);
    // Splits a text into the surname and the first name to search for.
    void parseSearchString(const std::string& searchString);
    // The text that the search field shows for a new one: without what only starts a search.
    std::string treatSearchText(const std::string& newText, const std::string& currentText,
                                const std::string& deltaSearchText) const;
    // The characters by which the new text is longer than the old one; "" when it is not.
    std::string getLastQuickSearchInput(const std::string& oldText, const std::string& newText) const;
    // What treatSearchText() made of the text that was typed last.
    void setTreatedSearchText(const std::string& text);
    const std::string& getTreatedSearchText() const;
    // Forgets the treated text and both names.
    void clearTextMembers();

    // Shows what a search found, and with `showPopup` a message unless it was a success.
    void showLdapSearchResult(EventContext* pContext, DirectoryStatus status, bool showPopup);

    const DirectoryCommands& commands() const;
    // Null before the state was entered.
    DisplayAPI::PopupNotification* getPErrorNotificationPopup() const;
    // The number of the entry that a dial command stands for, and its call-party icon.
    void transformCommandToPhoneNumberAndIcon(EventContext* pContext, const DisplayAPI::Command* pCommand,
                                              std::string& number,
                                              CallPartyIdentifier::PhoneNumberIconType& icon);

private:
    void constructDisplayList(EventContext* pContext);
    void setDisplayListCurrent(EventContext* pContext);
    // Whether rows are entries, by what the widget holds: the options and the placeholder row are none.
    bool holdsEntries(EventContext* pContext) const;

    // Takes in what stands in the search field, and returns what of it is new.
    std::string takeSearchText(EventContext* pContext, const std::string& searchText);
    // The same for a letter that waits; its event is swallowed then. False when none waits.
    bool takePendingLetter(EventContext* pContext);
    bool differsFromResults(EventContext* pContext, const std::string& searchText,
                            const std::string& deltaSearchText);
    bool isSearchTrigger(EventContext* pContext, const std::string& searchText,
                         const std::string& deltaSearchText) const;
    void searchLater(EventContext* pContext);
    void selectClosestRow(EventContext* pContext);

    DirectoryStatus doLdapSearch(EventContext* pContext);
    AttributeList searchPairs() const;
    void showResultPopup(EventContext* pContext, DirectoryStatus status);

    void startLdapSearchTriggerTimer(EventContext* pContext);
    void stopLdapSearchTriggerTimer(EventContext* pContext);

    void enterListOptionsState(EventContext* pContext);
    void enterEntryContextState(EventContext* pContext);
    void setMenuAsCurrentDisplay(EventContext* pContext);
    void leaveMenu(EventContext* pContext);
    // Without commands and title.
    DisplayAPI::ContextMenu& emptyMenu(EventContext* pContext);

    PhonebookStateBase* choiceMade(EventContext* pContext, const DisplayAPI::Command* pCommand);
    void clearResults(EventContext* pContext);
    PhonebookStateBase* dialChosenNumber(EventContext* pContext, const DisplayAPI::Command* pCommand);

    bool isOptionsRowSelected(EventContext* pContext) const;
    unsigned int getSelectedPhonebookEntryIndex(EventContext* pContext) const;
    // False when there is no such entry; the selected one then is what it was.
    bool updateSelectedPhonebookEntry(EventContext* pContext);
    std::string getDefaultPhonebookNo(EventContext* pContext) const;
    std::string shownName(EventContext* pContext) const;

    std::string m_surname;
    std::string m_firstname;
    std::string mTreatedSearchText;
    SearchTrigger m_trigger;
    bool m_nicknameMode = false;
    // The state wrote the search field itself, outside an event of it.
    bool m_ignoreNextItemEvent = false;

    SearchPopups m_popups;
    DirectoryCommands m_commands;
    // It points at the commands: declared after them, gone before them.
    std::unique_ptr<DisplayAPI::ContextMenu> m_pMenu;
};
