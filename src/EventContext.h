// What all screens of the phonebook share: the screens themselves, the widgets that several of
// them use, the services, and what the user selected.
//
// Every handler receives it. The mode owns the one object and fills in the services; raw pointers
// are not owned. Nothing here is locked but the redial number: handlers run inside the mode's lock.

#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <string>

#include <framework/display/ContextMenu.h>
#include <framework/display/MenuCommand.h>
#include <framework/display/PopupConfirm.h>
#include <framework/display/PopupDialer.h>
#include <framework/display/PopupNotification.h>
#include <framework/display/SearchList.h>
#include <framework/display/TabScreen.h>
#include <framework/services/PhonebookGroupList.h>

#include "LDAPStateCreatingEntry.h"
#include "LDAPStateDisplayOptions.h"
#include "LDAPStateDisplayingEntry.h"
#include "LDAPStateFind.h"
#include "LDAPStateQualifierOptions.h"
#include "LDAPStateSavingEntry.h"
#include "LDAPStateViewingList.h"
#include "PhonebookFullEntry.h"
#include "PhonebookStateCreatingEntry.h"
#include "PhonebookStateDisplayOptions.h"
#include "PhonebookStateEditGroup.h"
#include "PhonebookStateFatalError.h"
#include "PhonebookStateRefreshing.h"
#include "PhonebookStateViewingGroups.h"
#include "PhonebookStateViewingList.h"

namespace DisplayAPI {
class Display;
class Displayable;
class TranslatorIfc;
} // namespace DisplayAPI
class CSTAServiceIfc;
class DataAccessServiceIfc;
class DigitAnalysisServiceIfc;
class DirectoryServiceIfc;
class LocalMgmtIfc;
class OBEXServiceIfc;
class PhonebookList;
class PhonebookMode;
class PhonebookPhonelet;
class PhoneletContext;
class PhoneletIfc;
class TeamServiceIfc;

// The commands of the dialler popup, in its order.
enum DialerCommand : std::size_t { DIALER_DIAL, DIALER_CANCEL, DIALER_EDIT_NUMBER, nDIALER_COMMANDS };

class EventContext {
public:
    EventContext();
    ~EventContext();

    EventContext(const EventContext&) = delete;
    EventContext& operator=(const EventContext&) = delete;

    // Makes a new list widget for the tab and registers its listeners. True deletes the old one
    // first; for false the caller has moved it out.
    void reallocateDisplayList(bool deleteOld);
    void reallocateLdapDisplayList(bool deleteOld);

    // Whether a call request is under way. On SIP telephones (software type 1) it is always false:
    // further calls are never refused there.
    bool getCallRequestInitiated();
    void setCallRequestInitiated(bool initiated);

    // What the dialler offers to dial again, "" for nothing. The journal sets it beside the state
    // lock, so it goes through a lock of its own.
    std::string getRedialNumber() const;
    void setRedialNumber(const std::string& number);

    bool languageChangeWhenVisible() const;
    void setLanguageChangeWhenVisible(bool visible);

    PhonebookStateViewingList m_ViewingList;
    PhonebookStateCreatingEntry m_CreatingEntry;
    PhonebookStateDisplayOptions m_DisplayOptions;
    PhonebookStateEditGroup m_EditGroup;
    PhonebookStateFatalError m_FatalError;
    PhonebookStateViewingGroups m_ViewingGroups;
    PhonebookStateRefreshing m_Refreshing;
    LDAPStateViewingList m_LdapViewingList;
    LDAPStateFind m_LdapFind;
    LDAPStateDisplayOptions m_LdapDisplayOptions;
    LDAPStateQualifierOptions m_LdapQualifierOptions;
    LDAPStateCreatingEntry m_LdapCreatingEntry;
    LDAPStateDisplayingEntry m_LdapDisplayingEntry;
    LDAPStateSavingEntry m_LdapSavingEntry;

    // The current screen of each directory's tab.
    PhonebookStateBase* m_pCurrentState;
    PhonebookStateBase* m_pLdapCurrentState;

    DisplayAPI::ContextMenu m_ContextMenu;
    DisplayAPI::PopupConfirm m_PopupConfirm;
    DisplayAPI::PopupNotification m_PopupNotification;
    DisplayAPI::PopupDialer m_PopupDialer;
    DisplayAPI::PopupNotification m_PopupLineSelectionNeeded;
    DisplayAPI::PopupNotification m_PopupNoLineAvailable;
    // By DialerCommand; the dial command is null while there is nothing to dial.
    std::array<std::unique_ptr<DisplayAPI::MenuCommand>, nDIALER_COMMANDS> m_DialerCommands;

    std::unique_ptr<DisplayAPI::SearchList> m_pDisplayList;
    // An empty list until the real one is first shown; later a retired local list, which may still be
    // on the screen.
    std::unique_ptr<DisplayAPI::SearchList> m_pPlaceholderList;
    std::unique_ptr<DisplayAPI::SearchList> m_pLdapDisplayList;
    // The one that was last replaced; deleted at the next replacement.
    std::unique_ptr<DisplayAPI::SearchList> m_pPreviousLdapDisplayList;
    std::unique_ptr<DisplayAPI::SearchList> m_pGroupDisplayList;

    PhonebookPhonelet* m_pPhonelet = nullptr;
    PhoneletIfc* m_pPhoneletHandle = nullptr;
    std::unique_ptr<DisplayAPI::TabScreen> m_pTabScreen;
    DisplayAPI::Display* m_pDisplay = nullptr;
    bool m_HasSoftKeyBar = false;
    // What was current before a popup of dialling; null when there is nothing to come back to.
    DisplayAPI::Displayable* m_pDisplayableBeforePopup = nullptr;
    // Listens to every widget.
    PhonebookMode* m_pListener = nullptr;
    PhoneletContext* m_pPhoneletContext = nullptr;
    PhonebookList* m_pPhonebookList = nullptr;
    // Null on telephones without a corporate directory.
    PhonebookList* m_pLdapPhonebookList = nullptr;
    // Never null once the mode is there; without slots where the groups cannot be read.
    std::unique_ptr<PhonebookGroupList> m_pGroupList;
    DisplayAPI::TranslatorIfc* m_pTranslator = nullptr;

    // Each may be null.
    CSTAServiceIfc* m_pCstaService = nullptr;
    DirectoryServiceIfc* m_pDirectoryService = nullptr;
    LocalMgmtIfc* m_pLocalMgmt = nullptr;
    DataAccessServiceIfc* m_pDataAccessService = nullptr;
    DigitAnalysisServiceIfc* m_pDigitAnalysisService = nullptr;
    TeamServiceIfc* m_pTeamService = nullptr;
    OBEXServiceIfc* m_pObexService = nullptr;

    // The local entry that was selected or is edited, and its index in m_pPhonebookList.
    int m_SelectedEntryIndex = 0;
    PhonebookFullEntry m_SelectedEntry;
    int m_SelectedGroupIndex = 0;
    // The corporate directory's entry that is shown or saved, and its index.
    int m_LdapEntryIndex = 0;
    PhonebookFullEntry m_LdapEntry;

    // Only through its accessors.
    std::string m_RedialNumber;
    // Of the last call request that succeeded.
    std::string m_LastDialledNumber;

    int m_OfficeTabIndex = 0;
    // Below 1 on telephones without a corporate directory.
    int m_LdapTabIndex = 0;
    bool m_CallRequestInitiated = false;
    bool m_LanguageChangeWhenVisible = true;
    // 0 until the mode was asked.
    int m_SoftwareType = 0;

private:
    mutable std::mutex m_RedialNumberMutex;
};
