#include "PhonebookPhonelet.h"

#include <framework/PhoneletContext.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/CSTAServiceIfc.h>
#include <framework/display/Display.h>
#include <framework/display/TabScreen.h>
#include <framework/services/CallPartyIdentifier.h>
#include <framework/services/DigitAnalysisServiceIfc.h>
#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/JournalServiceIfc.h>
#include <framework/services/LocalMgmtIfc.h>
#include <framework/services/ManageableData.h>
#include <framework/services/PhonebookGroupList.h>
#include <framework/services/PhysicalInterfaceServiceIfc.h>
#include <framework/util/Utf8Utils.h>

#include "PhonebookControl.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "Toolbox.h"

namespace {

constexpr char nSOURCE[] = "./src/PhonebookPhonelet";

// Every key of the telephone's own keypad, presses only, beside what the screen does with it.
constexpr PhysDefs::KeyGrpButtonEvents nKEYS{2, 1, 1};

} // namespace

extern "C" __attribute__((visibility("default"))) Phonelet* createPhonelet()
{
    PB_TRACE("PhonebookPhonelet::createPhonelet()");
    return new PhonebookPhonelet;
}

PhonebookPhonelet::PhonebookPhonelet()
{
    PB_TRACE("PhonebookPhonelet::PhonebookPhonelet()");
}

PhonebookPhonelet::~PhonebookPhonelet()
{
    PB_TRACE("PhonebookPhonelet::~PhonebookPhonelet()");
    // States that are left now may still ask the phonelet: it must be whole.
    m_pMode.reset();
}

void PhonebookPhonelet::init(PhoneletContext* pContext)
{
    PB_TRACE("PhonebookPhonelet::init()");
    Phonelet::init(pContext);
    m_pControl = std::make_unique<PhonebookControl>(pContext);
    m_pDisplay = pContext ? pContext->getDisplay() : nullptr;
}

void PhonebookPhonelet::startPhonelet()
{
    PB_TRACE("PhonebookPhonelet::startPhonelet()");
    if (!m_pControl || !m_pContext)
        return;

    DirectoryServiceIfc* pDirectory = m_pControl->getDirectoryService();
    CSTAServiceIfc* pCsta = m_pControl->getCSTAService();
    DigitAnalysisServiceIfc* pDigitAnalysis = m_pControl->getDigitAnalysisService();
    DataAccessServiceIfc* pDataAccess = m_pControl->getDataAccessService();
    TeamServiceIfc* pTeam = m_pControl->getTeamService();
    LocalMgmtIfc* pLocalMgmt = m_pControl->getLocalManagementService();
    OBEXServiceIfc* pObex = m_pControl->getOBEXService();
    PhysicalInterfaceServiceIfc* pPhysicalInterface = m_pControl->getPhysicalInterfaceService();

    const bool isQRA = readLanguageAndSoftwareType(pLocalMgmt);
    Utf8Utils::create(m_currentLanguage);

    m_pList = std::make_unique<PhonebookList>(pDirectory);
    m_pList->populate(-1);
    auto pGroups = loadGroupList(pDirectory);
    ensureCopiedContactGroup(pDirectory, *pGroups);
    PB_TRACE("Phonebook should be populated, number of entries = %d", static_cast<int>(m_pList->size()));

    m_pMode =
        std::make_unique<PhonebookMode>(this, m_pContext, m_pList.get(), pDirectory, pCsta, pDigitAnalysis,
                                        pDataAccess, pTeam, pObex, pLocalMgmt, pGroups.release(), true);
    if (isQRA)
        m_pMode->setNoScrollForQRAHI();

    if (!subscribeForCSTAEvents())
        PB_ERROR("PhonebookPhonelet::startPhonelet - failed to subscribe to CSTA Service");
    if (pDirectory)
        pDirectory->addObserver(this);
    observeJournal();
    observeMobility(pLocalMgmt);
    observeLdapOptions(pLocalMgmt);
    subscribeKeys(pPhysicalInterface);
}

// Whether the telephone is a "Veltrix QRA".
bool PhonebookPhonelet::readLanguageAndSoftwareType(LocalMgmtIfc* pLocalMgmt)
{
    if (!pLocalMgmt)
        return false;

    ManageableData language;
    language.setRootId("language");
    if (pLocalMgmt->read(language)) {
        if (const auto* pNode = language.interogate("language"))
            m_currentLanguage = pNode->getValue();
    }

    ManageableData softwareType;
    softwareType.setRootId("software-type");
    if (!pLocalMgmt->read(softwareType))
        return false;
    const auto* pNode = softwareType.interogate("software-type");
    return pNode && pNode->getValue() == "Veltrix QRA";
}

std::unique_ptr<PhonebookGroupList> PhonebookPhonelet::loadGroupList(DirectoryServiceIfc* pDirectory)
{
    std::unique_ptr<PhonebookGroupList> pGroups(pDirectory ? pDirectory->getGroupList() : nullptr);
    if (pGroups)
        return pGroups;
    PB_TRACE("PhonebookPhonelet::startPhonelet --Phonelet startup - null group list!! - generating dummy");
    return std::make_unique<PhonebookGroupList>();
}

void PhonebookPhonelet::ensureCopiedContactGroup(DirectoryServiceIfc* pDirectory, PhonebookGroupList& groups)
{
    m_copiedContactGroupName = "group.copied.contacts";
    m_copiedContactGroupIndex = groups.findGroup(m_copiedContactGroupName);
    if (m_copiedContactGroupIndex != -1)
        return;

    m_copiedContactGroupIndex = groups.newGroupId();
    PhonebookGroup group;
    group.setName(m_copiedContactGroupName);
    group.setId(m_copiedContactGroupIndex);
    if (!groups.addGroup(group))
        return;
    if (pDirectory && pDirectory->storeGroupList(&groups))
        PB_TRACE("Contact Group created");
    else
        PB_TRACE("Contact Group could not be created");
}

void PhonebookPhonelet::observeJournal()
{
    JournalServiceIfc* pJournal = m_pControl->getJournalService();
    if (!pJournal) {
        PB_ERROR("PhonebookPhonelet::startPhonelet - failed to subscribe to Journal Service");
        return;
    }
    pJournal->addObserver(this);
}

void PhonebookPhonelet::observeMobility(LocalMgmtIfc* pLocalMgmt)
{
    if (Toolbox::getValueFromOCMS(pLocalMgmt, "mobility-mode") != "2")
        return;
    for (const char* tag : {"mobility-mode", "disable-access-phonebook"}) {
        ManageableData data;
        data.setRootId(tag);
        if (pLocalMgmt->read(data))
            m_pMode->manageableDataChanged(&data);
        else
            PB_TRACE("PhonebookPhonelet::startPhonelet: unable to read data item '%s'", tag);
        PB_TRACE("PhonebookPhonelet::startPhonelet() - CALL observeManageableData for tag <%s>", tag);
        pLocalMgmt->observeManageableData(tag, this);
    }
}

void PhonebookPhonelet::observeLdapOptions(LocalMgmtIfc* pLocalMgmt)
{
    if (!pLocalMgmt)
        return;
    pLocalMgmt->observeManageableData("ldap-qualifier", this);
    pLocalMgmt->observeManageableData("ldap-display-option", this);
}

void PhonebookPhonelet::subscribeKeys(PhysicalInterfaceServiceIfc* pPhysicalInterface)
{
    if (!pPhysicalInterface) {
        PB_ERROR("PhonebookPhonelet::startPhonelet - failed to get Physical Interface Service");
        return;
    }
    // The success stands at the error level too: whoever reads only errors is to see it.
    if (pPhysicalInterface->subscribe(this, {nKEYS}))
        PB_ERROR("PhonebookPhonelet::startPhonelet - subscribe to Physical Interface Service done");
    else
        PB_ERROR("PhonebookPhonelet::startPhonelet - failed to subscribe to Physical Interface Service");
}

void PhonebookPhonelet::stopPhonelet()
{
    PB_TRACE("PhonebookPhonelet::stopPhonelet()");
    shutdown();
}

void PhonebookPhonelet::shutdown()
{
    PB_TRACE("PhonebookPhonelet::shutdown()");
    // A second time there is nothing left to give back.
    if (!m_pControl)
        return;
    if (DirectoryServiceIfc* pDirectory = m_pControl->getDirectoryService())
        pDirectory->removeObserver(this);
    if (JournalServiceIfc* pJournal = m_pControl->getJournalService())
        pJournal->removeObserver(this);
    unsubscribeCSTAEvents();
    Utf8Utils::destroy();
    m_pMode.reset();
    m_pList.reset();
    m_pControl.reset();
}

bool PhonebookPhonelet::subscribeForCSTAEvents()
{
    PB_TRACE("PhonebookPhonelet::subscribeForCSTAEvents - begin");
    bool subscribed = false;
    if (CSTAServiceIfc* pCsta = m_pControl ? m_pControl->getCSTAService() : nullptr) {
        subscribed = startMonitor(*pCsta);
        subscribed = requestSystemStatus(*pCsta) && subscribed;
    } else {
        PB_ERROR("PhonebookPhonelet::subscribeForCSTAEvents: CSTAService not found");
    }
    PB_TRACE("PhonebookPhonelet::subscribeForCSTAEvents - end");
    return subscribed;
}

bool PhonebookPhonelet::startMonitor(CSTAServiceIfc& csta)
{
    CSTAMonitorFilter filter;
    filter.setCallControlFilter(true);
    filter.setCallAssociatedFilter(true);
    filter.setPhysicalDeviceFilter(true);
    filter.setLogicalDeviceFilter(true);
    filter.setVendorSpecificFilter(true);
    filter.setSystemFilter(true);
    filter.setFS_PhoneBookFilter(false);
    CSTAMonitorStartRequest request(filter);
    request.setSourceService(this);
    request.setDeviceObject("localDeviceID"); // the telephone's own device
    csta.sendRequest(request);

    if (request.getResponseCode() != 0) {
        PB_ERROR(
            "PhonebookPhonelet::subscribeForCSTAEvents: no successful response code for MonitorStartRequest");
        return false;
    }
    const auto* pResponse = dynamic_cast<CSTAMonitorStartResponse*>(request.getResponse());
    if (!pResponse) {
        PB_ERROR("PhonebookPhonelet::subscribeForCSTAEvents: invalid CSTAMonitorStartResponse");
        m_monitorCrossRefId.clear();
        return false;
    }
    m_monitorCrossRefId = pResponse->getMonitorCrossRefID();
    PB_TRACE("PhonebookPhonelet::subscribeForCSTAEvents: CSTA cross reference id received");
    return true;
}

bool PhonebookPhonelet::requestSystemStatus(CSTAServiceIfc& csta)
{
    CSTASystemStatusRequest request;
    request.setSourceService(this);
    csta.sendRequest(request);
    if (request.getResponseCode() == 0)
        return true;
    // Log readers match this text; its class name is part of it.
    PB_ERROR(
        "StimulusControlQRA::subscribeForCSTAEvents: no successful response code for systemStatusRequest");
    return false;
}

bool PhonebookPhonelet::unsubscribeCSTAEvents()
{
    PB_TRACE("PhonebookPhonelet::unsubscribeCSTAEvents - begin");
    bool stopped = false;
    if (CSTAServiceIfc* pCsta = m_pControl ? m_pControl->getCSTAService() : nullptr)
        stopped = stopMonitor(*pCsta);
    else
        PB_ERROR("PhonebookPhonelet::unsubscribeCSTAEvents: CSTAService not found");
    PB_TRACE("PhonebookPhonelet::unsubscribeCSTAEvents - end");
    return stopped;
}

bool PhonebookPhonelet::stopMonitor(CSTAServiceIfc& csta)
{
    CSTAMonitorStopRequest request(m_monitorCrossRefId);
    csta.sendRequest(request);
    // Log readers match both texts; that they name the start is part of them.
    if (request.getResponseCode() != 0) {
        PB_ERROR(
            "PhonebookPhonelet::unsubscribeCSTAEvents: no successful response code for MonitorStartRequest");
        return false;
    }
    if (!dynamic_cast<CSTAMonitorStopResponse*>(request.getResponse())) {
        PB_ERROR("PhonebookPhonelet::unsubscribeCSTAEvents: invalid CSTAMonitorStartResponse");
        return false;
    }
    return true;
}

void PhonebookPhonelet::show()
{
    PB_TRACE("PhonebookPhonelet::show()");
    if (m_treatShowAsTab) {
        PB_TRACE("PhonebookPhonelet::show treat show() as tab()");
        clearTreatShowAsTab();
        tab();
        return;
    }
    m_visible = true;
    if (m_pMode) {
        PB_TRACE("PhonebookPhonelet::show() - calling m_pMode->show()");
        m_pMode->show();
    } else {
        PB_TRACE("PhonebookPhonelet::show() - unable to call m_pMode->show() due to null pointer");
    }
    if (m_pDisplay)
        m_pDisplay->show();
}

void PhonebookPhonelet::hide()
{
    PB_TRACE("PhonebookPhonelet::hide()");
    m_visible = false;
    if (m_pMode) {
        PB_TRACE("PhonebookPhonelet::hide() - calling m_pMode->hide()");
        m_pMode->hide();
    } else {
        PB_TRACE("PhonebookPhonelet::hide() - unable to call m_pMode->hide() due to null pointer");
    }
    if (m_pDisplay)
        m_pDisplay->hide();
}

void PhonebookPhonelet::tab()
{
    PB_TRACE("PhonebookPhonelet::tab()");
    if (m_pMode)
        m_pMode->tab();
    else
        PB_TRACE("PhonebookPhonelet::tab() - unable to call m_pMode->tab() due to null pointer");
}

void PhonebookPhonelet::pause()
{
    PB_TRACE("Paused");
}

void PhonebookPhonelet::resume()
{
    PB_TRACE("Resumed");
}

void PhonebookPhonelet::localeChanged(const std::string& language)
{
    PB_TRACE("localeChanged ( %s )", language.c_str());
    setLatestLanguage(language);
    const SemaphoreGuard lock(m_localeLock);
    if (latestLanguage() != language) {
        PB_IGNORED("Ignored localeChanged because new language ( %s ) is not latest\n", language.c_str());
        return;
    }
    if (language == m_currentLanguage) {
        PB_IGNORED("Ignored localeChanged because new language ( %s ) is same as existing\n",
                   language.c_str());
        return;
    }
    PB_TRACE("localeChanged new locale = '%s'\n", language.c_str());
    m_currentLanguage = language;
    Utf8Utils::setSortOrder(m_currentLanguage);
    if (m_pList)
        m_pList->sortListBySortMode();
    // Forgotten when the screens did not follow, so that the same language may be tried again.
    if (m_pMode && !m_pMode->updateAlphaOrder(m_visible))
        m_currentLanguage.clear();
}

void PhonebookPhonelet::setLatestLanguage(const std::string& language)
{
    const std::lock_guard lock(m_latestLanguageMutex);
    m_latestLanguage = language;
}

std::string PhonebookPhonelet::latestLanguage()
{
    const std::lock_guard lock(m_latestLanguageMutex);
    return m_latestLanguage;
}

void PhonebookPhonelet::dateFormatChanged()
{
    PB_TRACE("PhonebookPhonelet::dateFormatChanged()");
}

void PhonebookPhonelet::timeFormatChanged()
{
    PB_TRACE("PhonebookPhonelet::timeFormatChanged()");
}

std::string PhonebookPhonelet::getInterfaces()
{
    PB_TRACE("PhonebookPhonelet::getInterfaces()");
    return "PhoneBookPhoneletIfc CSTAEventIfc DigitAnalysisServiceEventIfc DirectoryServiceObserverIfc "
           "TeamServiceIfc JournalServiceObserverIfc MgmtAgentIfc PhysicalEventObserver"
           " PhoneletIfc ClockServiceObserverIfc";
}

void PhonebookPhonelet::timerEvent(int id)
{
    PB_TRACE("PhonebookPhonelet::timerEvent()");
    if (m_pContext)
        m_pContext->timerEvent(id);
    if (m_pMode)
        m_pMode->timerEvent(id);
}

void PhonebookPhonelet::childGainedFocus(const std::string& child)
{
    {
        const SemaphoreGuard lock(m_focusLock);
        m_treatShowAsTab = true;
        if (DisplayAPI::TabScreen* pTabScreen = m_pMode ? m_pMode->getTabScreen() : nullptr)
            pTabScreen->setCurrentTabIndex(m_pMode->getPBXTabIndex());
    }
    PB_USER("PhonebookPhonelet::childGainedFocus called");
    PB_TRACE("PhonebookPhonelet::childGainedFocus child name = \"%s\"", child.c_str());
}

void PhonebookPhonelet::childLostFocus(const std::string& child)
{
    {
        const SemaphoreGuard lock(m_focusLock);
        m_treatShowAsTab = false;
    }
    PB_USER("PhonebookPhonelet::childLostFocus called");
    PB_TRACE("PhonebookPhonelet::childLostFocus child name = \"%s\"", child.c_str());
}

bool PhonebookPhonelet::getTreatShowAsTab() const
{
    PB_TRACE("PhonebookPhonelet::getTreatShowAsTab()");
    return m_treatShowAsTab;
}

void PhonebookPhonelet::clearTreatShowAsTab()
{
    PB_TRACE("PhonebookPhonelet::clearTreatShowAsTab()");
    const SemaphoreGuard lock(m_focusLock);
    m_treatShowAsTab = false;
}

bool PhonebookPhonelet::isVisible() const
{
    PB_TRACE("PhonebookPhonelet::isVisible()");
    return m_visible;
}

void PhonebookPhonelet::requestFocus()
{
    PB_TRACE("PhonebookPhonelet::requestFocus()");
    Phonelet::requestFocus();
}

void PhonebookPhonelet::releaseFocus()
{
    PB_TRACE("PhonebookPhonelet::releaseFocus()");
    Phonelet::releaseFocus();
}

PhonebookControl* PhonebookPhonelet::getPhonebookControl() const
{
    PB_TRACE("PhonebookPhonelet::getPhonebookControl()");
    return m_pControl.get();
}

PhonebookList* PhonebookPhonelet::getPhonebookList() const
{
    PB_TRACE("PhonebookPhonelet::getPhonebookList()");
    return m_pList.get();
}

PhonebookList* PhonebookPhonelet::getListPointer() const
{
    PB_TRACE("PhonebookPhonelet::getListPointer()");
    return m_pList.get();
}

PhonebookMode* PhonebookPhonelet::getPhonebookMode() const
{
    PB_TRACE("PhonebookPhonelet::getPhonebookMode()");
    return m_pMode.get();
}

int PhonebookPhonelet::getCopiedContactGroupIndex() const
{
    PB_TRACE("PhonebookPhonelet::getCopiedContactGroupIndex()");
    return m_copiedContactGroupIndex;
}

std::string PhonebookPhonelet::getCopiedContactGroupName() const
{
    PB_TRACE("PhonebookPhonelet::getCopiedContactGroupName()");
    return m_copiedContactGroupName;
}

bool PhonebookPhonelet::isCopiedContactGroup(unsigned groupId)
{
    PB_TRACE("PhonebookPhonelet::isCopiedContactGroup()");
    // Without a group list group 0 counts as the copied contacts'.
    int foundId = 0;
    DirectoryServiceIfc* pDirectory = m_pControl ? m_pControl->getDirectoryService() : nullptr;
    const std::unique_ptr<PhonebookGroupList> pGroups(pDirectory ? pDirectory->getGroupList() : nullptr);
    if (pGroups) {
        foundId = pGroups->findGroup(m_copiedContactGroupName);
        if (foundId == -1) {
            PB_TRACE("copied contact group not found");
            return false;
        }
    }
    const bool result = static_cast<unsigned>(foundId) == groupId;
    PB_TRACE("isCopiedContactGroup: result = %s", result ? "true" : "false");
    return result;
}

void PhonebookPhonelet::deliverEvent(CSTAEvent* pEvent)
{
    PB_TRACE("PhonebookPhonelet::deliverEvent()");
    pEvent->dispatch(m_pMode.get());
}

void PhonebookPhonelet::handleInterDigitTimeout(InterDigitTimeOutEvent* pEvent)
{
    PB_TRACE("PhonebookPhonelet::handleInterDigitTimeout()");
    if (m_pMode)
        m_pMode->handleInterDigitTimeout(pEvent);
}

void PhonebookPhonelet::handleInitialDigitTimeout(InterDigitTimeOutEvent*)
{
    PB_TRACE("PhonebookPhonelet::handleInitialDigitTimeout() - event ignored");
}

bool PhonebookPhonelet::isDiallingOk()
{
    PB_TRACE("PhonebookPhonelet::isDiallingOk() - not implemented");
    return true;
}

void PhonebookPhonelet::handleDialingStarted(const std::string& digits)
{
    PB_TRACE("PhonebookPhonelet::handleDialingStarted()");
    if (m_pMode)
        m_pMode->handleDialingStarted(digits);
}

void PhonebookPhonelet::handleDialingStarted(const std::string& digits, CallPartyIdentifier party)
{
    PB_TRACE("PhonebookPhonelet::handleDialingStarted(), should not reach here, %s, %s", digits.c_str(),
             party.getNumber().c_str());
    if (m_pMode)
        m_pMode->handleDialingStarted(digits);
}

void PhonebookPhonelet::handleDialingStopped()
{
    PB_TRACE("PhonebookPhonelet::handleDialingStopped()");
    if (m_pMode)
        m_pMode->handleDialingStopped();
}

bool PhonebookPhonelet::getDialPartyDetails(CallPartyIdentifier& party)
{
    PB_TRACE("PhonebookPhonelet::getDialPartyDetails()");
    const bool known = m_pMode && m_pMode->getDialPartyDetails(party);
    if (DigitAnalysisServiceIfc* pService = m_pControl ? m_pControl->getDigitAnalysisService() : nullptr)
        pService->setDialPartyDetails(party, known, 0);
    return known;
}

void PhonebookPhonelet::getEventHandlerName(std::string& name)
{
    PB_TRACE("PhonebookPhonelet::getEventHandlerName()");
    name = "Phonebook";
}

void PhonebookPhonelet::phonebookDatabaseUpdated(bool restart)
{
    PB_TRACE("PhonebookPhonelet::phonebookDatabaseUpdated()");
    if (!m_pMode)
        return;
    if (restart)
        m_pMode->RestartLocalPhonebook();
    else
        m_pMode->phonebookDatabaseUpdated();
}

void PhonebookPhonelet::missedCallsCountUpdate(int)
{
    PB_TRACE("PhonebookPhonelet::missedCallsCountUpdate()");
}

void PhonebookPhonelet::missedCallsUpdate(JournalItem*, int, JournalAction)
{
    PB_TRACE("PhonebookPhonelet::missedCallsUpdate()");
}

void PhonebookPhonelet::dialledCallsUpdate(JournalItem* pItem, int, JournalAction)
{
    PB_TRACE("PhonebookPhonelet::dialledCallsUpdate()");
    if (!pItem || !m_pMode)
        return;
    constexpr std::size_t nNUMBER = 1;
    const std::vector<JournalRecord>& records = pItem->getRecords();
    const bool hasNumber = !records.empty() && records.front().textFields.size() > nNUMBER;
    m_pMode->updateRedialNumber(hasNumber ? records.front().textFields[nNUMBER] : std::string());
}

void PhonebookPhonelet::receivedCallsUpdate(JournalItem*, int, JournalAction)
{
    PB_TRACE("PhonebookPhonelet::receivedCallsUpdate()");
}

void PhonebookPhonelet::forwardedCallsUpdate(JournalItem*, int, JournalAction)
{
    PB_TRACE("PhonebookPhonelet::forwardedCallsUpdate()");
}

void PhonebookPhonelet::callBacksUpdate(JournalItem*, int, JournalAction)
{
    PB_TRACE("PhonebookPhonelet::callBacksUpdate()");
}

void PhonebookPhonelet::callBacksCountUpdate(int)
{
    PB_TRACE("PhonebookPhonelet::callBacksCountUpdate()");
}

void PhonebookPhonelet::buttonPressedEvent(PhysDefs::keyFunctionType function, int key,
                                           PhysDefs::actionType action, std::string name)
{
    if (!m_visible) {
        PB_TRACE("PhonebookPhonelet::buttonPressedEvent event ignored, not visible");
        return;
    }
    PB_USER("PhonebookPhonelet::buttonPressedEvent called, visible");
    if (m_pMode)
        m_pMode->buttonPressedEvent(function, key, action, name);
}

void PhonebookPhonelet::hookswitchEvent(bool)
{
    PB_TRACE("PhonebookPhonelet::hookswitchEvent()");
}

void PhonebookPhonelet::jackEvent(int, bool)
{
    PB_TRACE("PhonebookPhonelet::jackEvent()");
}

Executable* PhonebookPhonelet::getSubscribingService()
{
    PB_TRACE("PhonebookPhonelet::getSubscribingService()");
    return this;
}

void PhonebookPhonelet::itemStateChanged(DisplayAPI::Item* pItem)
{
    PB_TRACE("PhonebookPhonelet::itemStateChanged() - entering");
    if (m_pMode)
        m_pMode->handlePopupDiallerItemStateChanged(pItem);
}

void PhonebookPhonelet::manageableDataChanged(ManageableData* pData)
{
    PB_TRACE("PhonebookPhonelet::manageableDataChanged() called for tag <%s>", pData->getRootId().c_str());
    if (m_pMode)
        m_pMode->manageableDataChanged(pData);
}

int PhonebookPhonelet::setData(ManageableData*)
{
    PB_TRACE("PhonebookPhonelet::setData()");
    return 0;
}

int PhonebookPhonelet::getData(ManageableData*)
{
    PB_TRACE("PhonebookPhonelet::getData()");
    return 0;
}

void PhonebookPhonelet::resetUserData()
{
    PB_TRACE("PhonebookPhonelet::resetUserData()");
}
