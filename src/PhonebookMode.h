// The controller of the phonebook's screen: its tabs, and one state machine for each directory.
//
// Every event of the user and of the telephone goes to the current state of the machine whose tab
// is current; the state answers with the state that follows. On the PBX tab there is no state.
// The state lock serialises that work, but for dialling, which has a lock of its own.

#pragma once

#include <atomic>
#include <memory>
#include <string>

#include <framework/csta/CSTAEventObserverBase.h>
#include <framework/display/Listeners.h>
#include <framework/services/DigitAnalysisServiceEventIfc.h>
#include <framework/services/PhysDefs.h>
#include <framework/util/Semaphore.h>

#include "DirectoryRebuild.h"
#include "EventContext.h"
#include "PbxPhonebook.h"
#include "PhonebookTabs.h"
#include "StimulusDisplay.h"

class CSTAServiceIfc;
class DataAccessServiceIfc;
class DigitAnalysisServiceIfc;
class DirectoryServiceIfc;
class LocalMgmtIfc;
class ManageableData;
class OBEXServiceIfc;
class PhonebookGroupList;
class PhonebookList;
class PhonebookPhonelet;
class PhonebookStateBase;
class PhoneletContext;
class TeamServiceIfc;

class PhonebookMode : public DisplayAPI::CommandListener,
                      public DisplayAPI::ItemStateListener,
                      public CSTAEventObserverBase,
                      public DigitAnalysisServiceEventIfc {
public:
    // Builds the tabs and enters the first state of each machine. Only the group list, which is
    // not null, becomes the mode's; services may be null. The phonelet always passes true as the last
    // argument.
    PhonebookMode(PhonebookPhonelet* pPhonelet, PhoneletContext* pContext, PhonebookList* pList,
                  DirectoryServiceIfc* pDirectory, CSTAServiceIfc* pCsta,
                  DigitAnalysisServiceIfc* pDigitAnalysis, DataAccessServiceIfc* pDataAccess,
                  TeamServiceIfc* pTeam, OBEXServiceIfc* pObex, LocalMgmtIfc* pLocalMgmt,
                  PhonebookGroupList* pGroupList, bool started);
    ~PhonebookMode() override;

    PhonebookMode(const PhonebookMode&) = delete;
    PhonebookMode& operator=(const PhonebookMode&) = delete;

    // The order of the virtual operations is part of the contract.
    void commandAction(DisplayAPI::Command* pCommand, DisplayAPI::Displayable* pDisplayable) override;
    void itemStateChanged(DisplayAPI::Item* pItem) override;
    void handleCSTASystemStatusEvent(CSTASystemStatusEvent* pEvent) override;
    void handleInitialDigitTimeout(InterDigitTimeOutEvent* pEvent) override;
    void handleInterDigitTimeout(InterDigitTimeOutEvent* pEvent) override;
    bool isDiallingOk() override;
    void handleDialingStarted(const std::string& digits) override;
    void handleDialingStarted(const std::string& digits, CallPartyIdentifier party) override;
    void handleDialingStopped() override;
    bool getDialPartyDetails(CallPartyIdentifier& party) override;
    void getEventHandlerName(std::string& name) override;
    virtual void handlePopupDiallerItemStateChanged(DisplayAPI::Item* pItem);
    // Others changed the local phonebook. Notices that come while one waits are merged into it.
    virtual void phonebookDatabaseUpdated();
    // The local phonebook was replaced: both directories start again.
    virtual void RestartLocalPhonebook();
    void handleCSTADisplayUpdatedEvent(CSTADisplayUpdatedEvent* pEvent) override;

    void buttonPressedEvent(PhysDefs::keyFunctionType function, int key, PhysDefs::actionType action,
                            const std::string& name);
    void timerEvent(int id);
    void manageableDataChanged(ManageableData* pData);
    void updateRedialNumber(const std::string& number);
    // The language sorts differently: rebuilds both lists. False when the state lock was not to be had.
    bool updateAlphaOrder(bool visible);

    void tab();
    void show();
    void hide();

    // The machine of the current tab, or its state; null on the PBX tab.
    PhonebookStateBase** getCurrentStateMachine();
    PhonebookStateBase* getCurrentState();
    bool isLocalTabActive();
    bool isLdapTabActive();
    bool isPBXTabActive();
    DisplayAPI::TabScreen* getTabScreen();
    int getPBXTabIndex();
    EventContext* getEventContext();

    enum SoftwareType : int { UNKNOWN = 0, SIP = 1, QRA = 2, TDM = 3 };
    // Read from the configuration until it is a known one.
    int getSoftwareType();

    // The PBX's own phonebook. Adding gives the tab's index, or -1 when there is one already.
    bool processRequestSystemStatusRequest(const std::string& featureName, const std::string& action);
    bool activateMessaging(const std::string& featureName);
    void activate(const std::string& phoneletName);
    int addPBXPhonebookTab();
    void removePBXPhonebookTab();
    void deleteInfoPopup();
    void setNoScrollForQRAHI();

    // The PBX's display: lines 0 to 5 are kept, whatever the number of lines says.
    int getCurrentNumberOfStimulusDisplayLines();
    void setCurrentNumberOfStimulusDisplayLines(int lines);
    std::string getContentsOfDisplay(int line);
    void setContentsOfDisplay(int line, const std::string& text);
    void systemWindowDisplayClear();

private:
    using KeyEvent = PhonebookStateBase* (PhonebookStateBase::*)(EventContext*, DisplayAPI::Command*,
                                                                 DisplayAPI::Displayable*);

    void listenToWidgets();
    void createDialerCommands();
    void createLinePopups();
    void addLdapTab();
    void enterFirstStates();

    void routeKey(KeyEvent event, DisplayAPI::Command* pCommand, DisplayAPI::Displayable* pDisplayable);
    void screenCommand(DisplayAPI::Command* pCommand, DisplayAPI::Displayable* pDisplayable);
    void tabBarEntered();
    void tabBarLeft();
    void showLdapSearchPopup(bool wanted);
    void tabhandling(bool leaveTabBar, int direction);
    void leaveDirectory();
    void arriveAtDirectory();
    void stepToTab(bool leaveTabBar, int direction);
    void applyConfiguration(const ManageableData& data);
    void initSoftwareType();

    EventContext m_context;
    Semaphore m_stateLock{1};
    Semaphore m_diallingLock{1};
    // For m_dbUpdatePending alone; taken inside the state lock, never around it.
    Semaphore m_dbUpdateLock{1};
    PhonebookTabs m_tabs{m_context};
    // Atomic, as the ones below: read and written under different locks, or under none.
    std::atomic<bool> m_searchPopupOpen{false};
    std::atomic<bool> m_diallingSeen{false};
    StimulusDisplay m_stimulusDisplay;
    PbxPhonebook m_pbx{m_context, m_tabs, m_stimulusDisplay, *this};
    DirectoryRebuild m_rebuild{m_context, m_tabs};
    std::atomic<int> m_softwareType{UNKNOWN};
    std::atomic<int> m_mobilityMode{0};
    std::atomic<bool> m_disableAccessPhonebook{false};
    int m_hwVariant = 0;
    bool m_dbUpdatePending = false;
    // The LDAP states know it through the context: it goes before them.
    std::unique_ptr<PhonebookList> m_pLdapList;
};
