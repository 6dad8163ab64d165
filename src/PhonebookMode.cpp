#include "PhonebookMode.h"

#include <cstdio>

#include <framework/PhoneletContext.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/communicationsServiceTexts.h>
#include <framework/display/Display.h>
#include <framework/services/DigitAnalysisServiceIfc.h>
#include <framework/services/ManageableData.h>
#include <framework/util/HardwareVersion.h>

#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookPhonelet.h"
#include "Toolbox.h"

using namespace communicationsServiceTexts;
using DisplayAPI::Command;
using DisplayAPI::Displayable;
using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/PhonebookMode";

constexpr long nLOCK_WAIT = 10000; // ms
constexpr unsigned nNO_LINE_TIMEOUT = 3000;
constexpr unsigned nLINE_SELECTION_TIMEOUT = 15000;

constexpr char nSTIMULUS_PHONELET[] = "CorvanStimulus";

constexpr int nMOBILE_USER = 2; // "mobility-mode": somebody else's phonebook may be fetched

bool isTdm(int hwVariant)
{
    return hwVariant == 10 || hwVariant == 11;
}

} // namespace

PhonebookMode::PhonebookMode(PhonebookPhonelet* pPhonelet, PhoneletContext* pContext, PhonebookList* pList,
                             DirectoryServiceIfc* pDirectory, CSTAServiceIfc* pCsta,
                             DigitAnalysisServiceIfc* pDigitAnalysis, DataAccessServiceIfc* pDataAccess,
                             TeamServiceIfc* pTeam, OBEXServiceIfc* pObex, LocalMgmtIfc* pLocalMgmt,
                             PhonebookGroupList* pGroupList, bool)
{
    PB_TRACE("PhonebookMode::PhonebookMode()");
    m_context.m_pPhonelet = pPhonelet;
    m_context.m_pPhoneletHandle = pPhonelet->getPhoneletHandle();
    m_context.m_pListener = this;
    m_context.m_pPhoneletContext = pContext;
    m_context.m_pPhonebookList = pList;
    m_context.m_pDirectoryService = pDirectory;
    m_context.m_pCstaService = pCsta;
    m_context.m_pDigitAnalysisService = pDigitAnalysis;
    m_context.m_pDataAccessService = pDataAccess;
    m_context.m_pTeamService = pTeam;
    m_context.m_pObexService = pObex;
    m_context.m_pLocalMgmt = pLocalMgmt;
    m_context.m_pGroupList.reset(pGroupList);

    listenToWidgets();
    m_context.m_pDisplay = pContext->getDisplay();
    m_context.m_HasSoftKeyBar = m_context.m_pDisplay->hasSoftKeyBar();
    m_context.m_pTranslator = pContext->getTranslator();

    createDialerCommands();
    createLinePopups();
    m_tabs.addOffice();
    addLdapTab();
    enterFirstStates();
    if (isTdm(m_hwVariant)) {
        PB_TRACE("TDM ZD_HI - set no scroll on Popup dialler");
        m_context.m_PopupDialer.setNoScroll();
    }
    if (processRequestSystemStatusRequest(content_feature_name_pbxphonebook, content_feature_query))
        addPBXPhonebookTab();
}

PhonebookMode::~PhonebookMode()
{
    PB_TRACE("PhonebookMode::~PhonebookMode()");
    m_context.m_pCurrentState->exitStateEvent(&m_context);
    m_context.m_pCurrentState = nullptr;
    if (m_tabs.hasLdap())
        m_context.m_pLdapCurrentState->exitStateEvent(&m_context);
    m_context.m_pLdapCurrentState = nullptr;
    // The phonelet may be stopped while it is shown, and dialling is reported to this object then.
    if (m_context.m_pDigitAnalysisService)
        m_context.m_pDigitAnalysisService->clearCallContextProvider(this);

    for (auto& pCommand : m_context.m_DialerCommands)
        pCommand.reset();
    m_context.m_pLdapPhonebookList = nullptr;
    m_pLdapList.reset();
    m_pbx.deleteInfoPopup();
}

void PhonebookMode::listenToWidgets()
{
    for (DisplayAPI::SearchList* pList :
         {m_context.m_pDisplayList.get(), m_context.m_pLdapDisplayList.get(),
          m_context.m_pGroupDisplayList.get(), m_context.m_pPlaceholderList.get()})
        pList->setCommandListener(this);
    m_context.m_ContextMenu.setCommandListener(this);
    m_context.m_PopupConfirm.setCommandListener(this);
    m_context.m_pTabScreen->setCommandListener(this);
    m_context.m_PopupDialer.setCommandListener(this);
    m_context.m_pDisplayList->setItemStateListener(this);
    m_context.m_pLdapDisplayList->setItemStateListener(this);
    m_context.m_PopupDialer.setItemStateListener(m_context.m_pPhonelet);
}

void PhonebookMode::createDialerCommands()
{
    const auto create = [this](DialerCommand which, const char* key) {
        m_context.m_DialerCommands[which] =
            std::make_unique<DisplayAPI::MenuCommand>(TranslationInfo(key, m_context.m_pTranslator));
    };
    create(DIALER_DIAL, "dialler.dial");
    m_context.m_PopupDialer.addCommand(m_context.m_DialerCommands[DIALER_DIAL].get());
    create(DIALER_CANCEL, "cancel");
    create(DIALER_EDIT_NUMBER, "edit.number");
}

void PhonebookMode::createLinePopups()
{
    const auto setUp = [this](DisplayAPI::PopupNotification& popup, const char* key, int type,
                              unsigned timeout) {
        popup.setText(TranslationInfo(key, m_context.m_pTranslator));
        popup.setType(type);
        popup.setTimeout(timeout);
        popup.setCommandListener(this);
    };
    setUp(m_context.m_PopupNoLineAvailable, "no.line.available", DisplayAPI::PopupNotification::NOTICE,
          nNO_LINE_TIMEOUT);
    setUp(m_context.m_PopupLineSelectionNeeded, "line.selection.needed",
          DisplayAPI::PopupNotification::LINE_SELECTION, nLINE_SELECTION_TIMEOUT);
}

void PhonebookMode::addLdapTab()
{
    m_hwVariant = HardwareVersion::getHWVariant();
    if (isTdm(m_hwVariant)) {
        PB_TRACE("PhonebookMode() - Don't create LDAP Tab for TDM variants");
        return;
    }
    PB_TRACE("PhonebookMode() - Create LDAP Tab for non-TDM variants");
    m_pLdapList =
        std::make_unique<PhonebookList>(m_context.m_pDirectoryService, m_context.m_pDigitAnalysisService);
    m_context.m_pLdapPhonebookList = m_pLdapList.get();
    m_tabs.addLdap();
}

void PhonebookMode::enterFirstStates()
{
    m_tabs.showScreen();
    m_tabs.select(m_tabs.ldap());
    if (m_tabs.hasLdap()) {
        PB_TRACE("PhonebookMode() - Set LDAP State for non-TDM variants\n");
        m_context.m_pLdapCurrentState->enterStateEvent(&m_context);
    } else {
        PB_TRACE("PhonebookMode() - Don't set LDAP State for TDM variants\n");
    }
    m_tabs.select(m_tabs.local());
    m_context.m_pCurrentState->enterStateEvent(&m_context);
}

PhonebookStateBase** PhonebookMode::getCurrentStateMachine()
{
    return m_tabs.currentMachine();
}

PhonebookStateBase* PhonebookMode::getCurrentState()
{
    PB_TRACE("PhonebookMode::getCurrentState()");
    return m_tabs.currentState();
}

void PhonebookMode::routeKey(KeyEvent event, Command* pCommand, Displayable* pDisplayable)
{
    m_tabs.route(
        [&](PhonebookStateBase& state) { return (state.*event)(&m_context, pCommand, pDisplayable); });
}

void PhonebookMode::commandAction(Command* pCommand, Displayable* pDisplayable)
{
    PB_TRACE("commandAction()");
    const SemaphoreGuard lock(m_stateLock, nLOCK_WAIT);
    if (!lock)
        return;
    switch (pCommand->getCommandType()) {
    case Command::OK:
        PB_TRACE("commandAction() - OK Event\n");
        routeKey(&PhonebookStateBase::okEvent, pCommand, pDisplayable);
        break;
    case Command::SAVE:
        PB_TRACE("commandAction() - SAVE Event\n");
        routeKey(&PhonebookStateBase::saveEvent, pCommand, pDisplayable);
        break;
    case Command::BACK:
        PB_TRACE("commandAction() - BACK Event\n");
        routeKey(&PhonebookStateBase::backEvent, pCommand, pDisplayable);
        break;
    case Command::SCREEN:
        screenCommand(pCommand, pDisplayable);
        break;
    case Command::TAB_BAR_ENTERED:
        tabBarEntered();
        break;
    case Command::TAB_BAR_LEFT:
        tabBarLeft();
        break;
    case Command::TAB_PREVIOUS:
        tabhandling(false, -1);
        break;
    case Command::TAB_NEXT:
        tabhandling(false, 1);
        break;
    case Command::RIGHT:
        if (m_context.m_pDisplay->isCurrentForKeyEvents(pDisplayable)) {
            PB_TRACE("commandAction() - RIGHT Event\n");
            routeKey(&PhonebookStateBase::rightEvent, pCommand, pDisplayable);
            break;
        }
        [[fallthrough]];
    default:
        PB_TRACE("commandAction() - unknown Event\n");
    }
}

void PhonebookMode::screenCommand(Command* pCommand, Displayable* pDisplayable)
{
    PB_TRACE("commandAction() - SCREEN Event\n");
    const bool routed = m_tabs.route(
        [&](PhonebookStateBase& state) { return state.screenEvent(&m_context, pCommand, pDisplayable); });
    if (!routed && m_tabs.isPbxActive())
        m_pbx.deleteInfoPopup();
}

void PhonebookMode::tabBarEntered()
{
    for (DisplayAPI::SearchList* pList : {m_context.m_pPlaceholderList.get(), m_context.m_pDisplayList.get(),
                                          m_context.m_pLdapDisplayList.get()}) {
        if (pList)
            pList->setSelectionHighlight(false);
    }
    m_searchPopupOpen = true;
}

void PhonebookMode::tabBarLeft()
{
    m_searchPopupOpen = false;
    // A lone row is the options or the placeholder row: nothing was found yet.
    showLdapSearchPopup(m_context.m_pLdapDisplayList->size() == 1);
}

// Shows it when it is wanted and the user is at the LDAP list.
void PhonebookMode::showLdapSearchPopup(bool wanted)
{
    DisplayAPI::SearchList& list = *m_context.m_pLdapDisplayList;
    if (wanted && m_tabs.currentState() == &m_context.m_LdapViewingList) {
        PB_TRACE("Showing the search popup. The number of entries in the LdapDisplayList -> %d", list.size());
        list.showSearchPopup();
    } else {
        PB_TRACE("The search popup is not being shown. The number of entries in the LdapDisplayList -> %d",
                 list.size());
    }
}

void PhonebookMode::itemStateChanged(DisplayAPI::Item* pItem)
{
    PB_TRACE("itemStateChanged()");
    const SemaphoreGuard lock(m_stateLock, nLOCK_WAIT);
    if (!lock)
        return;
    const bool routed = m_tabs.route(
        [&](PhonebookStateBase& state) { return state.itemStateChangedEvent(&m_context, pItem); });
    if (!routed)
        PB_TRACE("itemStateChanged() - event ignored if currentState==NULL (i.e. system tab)");
}

void PhonebookMode::handlePopupDiallerItemStateChanged(DisplayAPI::Item* pItem)
{
    PB_TRACE("handlePopupDiallerItemStateChanged()");
    const SemaphoreGuard lock(m_stateLock, nLOCK_WAIT);
    if (!lock)
        return;
    if (PhonebookStateBase* pState = m_tabs.currentState())
        pState->popupDiallerItemStateChangedEvent(&m_context, pItem);
}

void PhonebookMode::handleDialingStarted(const std::string& digits)
{
    PB_TRACE("handleDialingStarted()");
    const SemaphoreGuard lock(m_diallingLock);
    const bool routed = m_tabs.route(
        [&](PhonebookStateBase& state) { return state.dialingStartedEvent(&m_context, digits); });
    if (routed)
        m_diallingSeen = true;
}

void PhonebookMode::handleDialingStarted(const std::string& digits, CallPartyIdentifier party)
{
    PB_TRACE("handleDialingStarted()");
    std::printf("handleDialingStarted() - should not reach here, %s, %s\n", digits.c_str(),
                party.getNumber().c_str());
}

void PhonebookMode::handleDialingStopped()
{
    PB_TRACE("handleDialingStopped()");
    const SemaphoreGuard lock(m_diallingLock);
    m_context.m_PopupDialer.dismiss();
    if (m_tabs.route([&](PhonebookStateBase& state) { return state.dialingStoppedEvent(&m_context); }))
        m_diallingSeen = true;
}

void PhonebookMode::handleInterDigitTimeout(InterDigitTimeOutEvent* pEvent)
{
    PB_TRACE("handleInterDigitTimeout()");
    const SemaphoreGuard lock(m_diallingLock);
    m_tabs.route([&](PhonebookStateBase& state) { return state.interDigitTimeoutEvent(&m_context, pEvent); });
}

void PhonebookMode::handleInitialDigitTimeout(InterDigitTimeOutEvent*)
{
    PB_TRACE("PhonebookMode::handleInitialDigitTimeout()");
}

bool PhonebookMode::isDiallingOk()
{
    PB_TRACE("isDiallingOk() - not implemented");
    return true;
}

bool PhonebookMode::getDialPartyDetails(CallPartyIdentifier& party)
{
    PB_TRACE("PhonebookMode::getDialPartyDetails()");
    PhonebookStateBase* pState = m_tabs.currentState();
    return pState && pState->getDialPartyDetails(party, &m_context);
}

void PhonebookMode::getEventHandlerName(std::string& name)
{
    PB_TRACE("PhonebookMode::getEventHandlerName()");
    name = "PhonebookMode";
}

void PhonebookMode::buttonPressedEvent(PhysDefs::keyFunctionType function, int key,
                                       PhysDefs::actionType action, const std::string& name)
{
    PB_TRACE("buttonPressedEvent()");
    const SemaphoreGuard lock(m_stateLock);
    if (PhonebookStateBase* pState = m_tabs.currentState())
        pState->buttonPressedEvent(&m_context, function, key, action, name);
    else
        PB_TRACE("buttonPressedEvent() - ignored if currentState==NULL (i.e. system tab)");
}

void PhonebookMode::timerEvent(int id)
{
    PB_TRACE("timerEvent()");
    const SemaphoreGuard lock(m_stateLock, nLOCK_WAIT);
    if (!lock)
        return;
    if (PhonebookStateBase* pState = m_tabs.currentState())
        pState->timerEvent(&m_context, id);
}

void PhonebookMode::updateRedialNumber(const std::string& number)
{
    PB_TRACE("PhonebookMode::updateRedialNumber()");
    m_context.setRedialNumber(number);
}

void PhonebookMode::tab()
{
    const SemaphoreGuard lock(m_stateLock, nLOCK_WAIT);
    if (!lock)
        return;
    PB_TRACE("tab()");
    tabhandling(true, 1);
}

// With the state lock held.
void PhonebookMode::tabhandling(bool leaveTabBar, int direction)
{
    PB_TRACE("PhonebookMode::tabhandling()");
    if (m_tabs.isPbxActive()) {
        stepToTab(leaveTabBar, direction);
        PB_TRACE("tab() - new tab index: %d", m_tabs.current());
        m_context.m_pDisplay->show();
    } else if (PhonebookStateBase* pState = m_tabs.currentState(); pState && pState->tabValid(&m_context)) {
        leaveDirectory();
        stepToTab(leaveTabBar, direction);
        m_context.m_pDisplay->show();
        if (m_tabs.isPbxActive())
            m_pbx.activate(nSTIMULUS_PHONELET);
        else
            arriveAtDirectory();
        m_tabs.currentState(); // for its trace
        PB_TRACE("tab() - new tab index: %d", m_tabs.current());
    } else {
        PB_TRACE("tab() - tab not allowed");
    }
    m_tabs.updatePhoneletState();
}

void PhonebookMode::leaveDirectory()
{
    PhonebookStateBase*& pCurrent = *m_tabs.currentMachine();
    const bool moved = m_tabs.moveTo(pCurrent->tabFrom(&m_context), pCurrent);
    if (!moved && getSoftwareType() == SIP)
        pCurrent->clearCallContextProvider(&m_context);
}

void PhonebookMode::arriveAtDirectory()
{
    PhonebookStateBase** ppMachine = m_tabs.currentMachine();
    if (!ppMachine)
        return;
    PhonebookStateBase*& pCurrent = *ppMachine;
    const bool moved = m_tabs.moveTo(pCurrent->tabTo(&m_context), pCurrent);
    if (!moved && getSoftwareType() == SIP)
        pCurrent->setCallContextProvider(&m_context);
}

void PhonebookMode::stepToTab(bool leaveTabBar, int direction)
{
    m_tabs.showScreen();
    m_tabs.changeTab(direction);
    if (leaveTabBar)
        m_context.m_pTabScreen->leaveTabBar();
}

void PhonebookMode::show()
{
    PB_TRACE("show()");
    if (m_stimulusDisplay.lines() == 0)
        m_diallingSeen = false;
    m_context.m_PopupDialer.dismiss();
    if (m_tabs.isPbxActive()) {
        PB_TRACE("show() - activate PhonebookPhoneletQRA");
        if (const SemaphoreGuard lock(m_stateLock, nLOCK_WAIT); lock)
            m_pbx.activate(nSTIMULUS_PHONELET);
        return;
    }
    PhonebookStateBase* pState = m_tabs.currentState();
    if (!pState) {
        PB_TRACE("show() - unable to setCallContextProvider due to null m_pCurrentState pointer");
        return;
    }
    PB_TRACE("show() - calling setCallContextProvider()");
    pState->setCallContextProvider(&m_context);
    m_tabs.selectDirectoryTypeToShow();
    showLdapSearchPopup(!m_searchPopupOpen);
}

void PhonebookMode::hide()
{
    PB_TRACE("hide()");
    m_context.setCallRequestInitiated(false);
    m_context.m_pTabScreen->leaveTabBar();
    if (PhonebookStateBase* pState = m_tabs.currentState()) {
        PB_TRACE("hide() - calling clearCallContextProvider()");
        pState->clearCallContextProvider(&m_context);
    } else {
        PB_TRACE("hide() - unable to clearCallContextProvider due to null m_pCurrentState pointer");
    }
}

void PhonebookMode::manageableDataChanged(ManageableData* pData)
{
    PB_TRACE("manageableDataChanged()");
    applyConfiguration(*pData);
    if (m_mobilityMode != nMOBILE_USER)
        return;
    const SemaphoreGuard lock(m_stateLock);
    if (!m_disableAccessPhonebook)
        m_context.m_ViewingList.mobilityPhonebookRefreshActive(&m_context, false);
    else if (m_tabs.isLocalActive())
        m_context.m_ViewingList.mobilityPhonebookRefreshActive(&m_context, true);
    else
        m_context.m_ViewingList.mobilityPhonebookRefreshPending();
}

void PhonebookMode::applyConfiguration(const ManageableData& data)
{
    const std::string& tag = data.getRootId();
    const auto* pNode = data.interogate(tag);
    const std::string value = pNode ? pNode->getValue() : "";
    PhonebookList* pLdapList = m_pLdapList.get();
    if (tag == "mobility-mode") {
        m_mobilityMode = Toolbox::stoi(value);
        PB_TRACE("manageableDataChanged() - mobility mode = %d", m_mobilityMode.load());
    } else if (tag == "disable-access-phonebook") {
        m_disableAccessPhonebook = value == "true";
        if (m_disableAccessPhonebook)
            PB_TRACE("manageableDataChanged() - disable access phonebook = true");
    } else if (tag == "ldap-qualifier" && pLdapList) {
        pLdapList->getDisplayQualifierFromDatabase();
    } else if (tag == "ldap-display-option" && pLdapList) {
        pLdapList->getDisplayOptionFromDatabase();
    }
}

void PhonebookMode::phonebookDatabaseUpdated()
{
    PB_TRACE("phonebookDatabaseUpdated()");
    {
        const SemaphoreGuard dbLock(m_dbUpdateLock);
        if (m_dbUpdatePending)
            return;
        m_dbUpdatePending = true;
    }
    // When the state lock is not to be had the notice stays pending.
    const SemaphoreGuard lock(m_stateLock, nLOCK_WAIT);
    if (!lock)
        return;
    {
        const SemaphoreGuard dbLock(m_dbUpdateLock);
        if (!m_dbUpdatePending)
            return;
        m_dbUpdatePending = false;
    }
    m_rebuild.databaseUpdated();
}

void PhonebookMode::RestartLocalPhonebook()
{
    PB_TRACE("RestartLocalPhonebook()");
    const SemaphoreGuard lock(m_stateLock, nLOCK_WAIT);
    if (!lock)
        return;
    m_rebuild.restart();
}

bool PhonebookMode::updateAlphaOrder(bool visible)
{
    const SemaphoreGuard lock(m_stateLock, nLOCK_WAIT);
    if (!lock)
        return false;
    PB_TRACE("phonebookAlphabeticOrderChanged()");
    m_rebuild.alphabetChanged(visible);
    return true;
}

bool PhonebookMode::isLocalTabActive()
{
    return m_tabs.isLocalActive();
}

bool PhonebookMode::isLdapTabActive()
{
    return m_tabs.isLdapActive();
}

bool PhonebookMode::isPBXTabActive()
{
    return m_tabs.isPbxActive();
}

DisplayAPI::TabScreen* PhonebookMode::getTabScreen()
{
    PB_TRACE("PhonebookMode::getTabScreen()");
    return m_context.m_pTabScreen.get();
}

int PhonebookMode::getPBXTabIndex()
{
    PB_TRACE("PhonebookMode::getPBXTabIndex()");
    return m_tabs.pbx();
}

EventContext* PhonebookMode::getEventContext()
{
    PB_TRACE("PhonebookMode::getEventContext()");
    return &m_context;
}

int PhonebookMode::getSoftwareType()
{
    PB_TRACE("PhonebookMode::getSoftwareType()");
    if (m_softwareType == UNKNOWN)
        initSoftwareType();
    return m_softwareType;
}

void PhonebookMode::initSoftwareType()
{
    PB_TRACE("PhonebookMode::initSoftwareType()");
    const std::string value = Toolbox::getValueFromOCMS(m_context.m_pLocalMgmt, "software-type");
    if (value == "Veltrix SIP")
        m_softwareType = SIP;
    else if (value == "Veltrix QRA")
        m_softwareType = QRA;
    else if (value == "Veltrix TDM")
        m_softwareType = TDM;
    else
        PB_IGNORED("initSoftwareType() - unrecognized value");
}

// --- The PBX's own phonebook ---

bool PhonebookMode::processRequestSystemStatusRequest(const std::string& featureName,
                                                      const std::string& action)
{
    return m_pbx.requestSystemStatus(featureName, action);
}

bool PhonebookMode::activateMessaging(const std::string& featureName)
{
    return m_pbx.activateMessaging(featureName);
}

void PhonebookMode::activate(const std::string& phoneletName)
{
    m_pbx.activate(phoneletName);
}

void PhonebookMode::deleteInfoPopup()
{
    m_pbx.deleteInfoPopup();
}

int PhonebookMode::addPBXPhonebookTab()
{
    return m_tabs.addPbx();
}

void PhonebookMode::removePBXPhonebookTab()
{
    m_tabs.removePbx();
}

void PhonebookMode::handleCSTASystemStatusEvent(CSTASystemStatusEvent* pEvent)
{
    PB_USER("handleCSTASystemStatusEvent()");
    m_pbx.handleSystemStatus(*pEvent);
}

void PhonebookMode::handleCSTADisplayUpdatedEvent(CSTADisplayUpdatedEvent* pEvent)
{
    PB_USER("handleCSTADisplayUpdatedEvent()");
    const std::string& displayId = pEvent->getDisplayID();
    if (displayId == content_displayIdMenu) {
        PB_TRACE("handleDisplayUpdatedEvent() - DisplayID = Menu -> ignore");
        return;
    }
    if (displayId != content_displayIdDisplay) {
        PB_IGNORED("handleDisplayUpdatedEvent() - invalid DisplayID");
        return;
    }
    // Before anything was dialled the PBX's display is not about the phonebook.
    if (m_stimulusDisplay.lines() == 0 && !m_diallingSeen)
        return;
    PB_TRACE("handleDisplayUpdatedEvent() - DisplayID = Display");
    m_stimulusDisplay.update(Toolbox::stoi(pEvent->getLogicalRows()), pEvent->getContentsOfDisplay());
    m_stimulusDisplay.mirror(*m_context.m_pDisplay);
}

int PhonebookMode::getCurrentNumberOfStimulusDisplayLines()
{
    PB_TRACE("PhonebookMode::getCurrentNumberOfStimulusDisplayLines()");
    return m_stimulusDisplay.lines();
}

void PhonebookMode::setCurrentNumberOfStimulusDisplayLines(int lines)
{
    PB_TRACE("PhonebookMode::setCurrentNumberOfStimulusDisplayLines()");
    m_stimulusDisplay.setLines(lines);
}

std::string PhonebookMode::getContentsOfDisplay(int line)
{
    PB_TRACE("PhonebookMode::getContentsOfDisplay()");
    return m_stimulusDisplay.getContents(line);
}

void PhonebookMode::setContentsOfDisplay(int line, const std::string& text)
{
    PB_TRACE("PhonebookMode::setContentsOfDisplay()");
    m_stimulusDisplay.setContents(line, text);
}

void PhonebookMode::systemWindowDisplayClear()
{
    m_stimulusDisplay.clear(*m_context.m_pDisplay);
}

void PhonebookMode::setNoScrollForQRAHI()
{
    PB_TRACE("PhonebookMode::setNoScrollForQRAHI()");
    // Only the displays of these variants cannot scroll the dialler's line.
    if (m_hwVariant < 4 || m_hwVariant > 7)
        return;
    PB_TRACE("QRA ZD_HI - set no scroll on Popup dialler");
    m_context.m_PopupDialer.setNoScroll();
}
