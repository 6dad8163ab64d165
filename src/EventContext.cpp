#include "EventContext.h"

#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "PhonebookPhonelet.h"

namespace {

constexpr char nSOURCE[] = "./src/EventContext";

// What the widgets' arguments stand for is the telephone's.
constexpr int nMENU_KIND = 1;
constexpr int nCONFIRM_KIND = 1;
constexpr int nDIALER_KIND = 1;
constexpr int nDIALER_LINES = 3;
constexpr int nTAB_BAR_ROWS = 2;
constexpr int nTAB_BORDER = 1;

std::unique_ptr<DisplayAPI::SearchList> makeList(DisplayAPI::TabScreen* pTabScreen, PhonebookMode* pListener)
{
    auto list = std::make_unique<DisplayAPI::SearchList>();
    list->setUsedWithTab(true, pTabScreen);
    list->setWrapAround(false);
    list->setCommandListener(pListener);
    list->setItemStateListener(pListener);
    return list;
}

} // namespace

EventContext::EventContext()
    : m_pCurrentState(&m_ViewingList)
    , m_pLdapCurrentState(&m_LdapViewingList)
    , m_ContextMenu(nMENU_KIND)
    , m_PopupConfirm(nCONFIRM_KIND)
    , m_PopupDialer(nDIALER_KIND, nDIALER_LINES)
{
    PB_TRACE("EventContext::EventContext()");
    m_pTabScreen = std::make_unique<DisplayAPI::TabScreen>(nTAB_BAR_ROWS, nTAB_BORDER);
    m_pDisplayList = std::make_unique<DisplayAPI::SearchList>();
    m_pPlaceholderList = std::make_unique<DisplayAPI::SearchList>();
    m_pLdapDisplayList = std::make_unique<DisplayAPI::SearchList>();
    m_pGroupDisplayList = std::make_unique<DisplayAPI::SearchList>();
    m_SelectedEntry.setBlank();
    m_LdapEntry.setBlank();
}

EventContext::~EventContext()
{
    PB_TRACE("EventContext::~EventContext()");
    for (int tab = 0; tab < m_pTabScreen->numberOfTabs(); ++tab)
        m_pTabScreen->setDisplayable(tab, nullptr);
    m_pTabScreen.reset();
    m_pDisplayList.reset();
    m_pLdapDisplayList.reset();
    m_pGroupDisplayList.reset();
    m_pPlaceholderList.reset();
    m_pPreviousLdapDisplayList.reset();
    m_pGroupList.reset();
}

void EventContext::reallocateDisplayList(bool deleteOld)
{
    PB_TRACE("EventContext::reallocateDisplayList()");
    if (deleteOld)
        m_pDisplayList.reset();
    m_pDisplayList = makeList(m_pTabScreen.get(), m_pListener);
}

void EventContext::reallocateLdapDisplayList(bool deleteOld)
{
    PB_TRACE("EventContext::reallocateLdapDisplayList()");
    if (deleteOld)
        m_pLdapDisplayList.reset();
    m_pLdapDisplayList = makeList(m_pTabScreen.get(), m_pListener);
}

bool EventContext::getCallRequestInitiated()
{
    PB_TRACE("EventContext::getCallRequestInitiated()");
    if (m_SoftwareType == 0 && m_pPhonelet) {
        auto* pMode = m_pPhonelet->getPhonebookMode();
        if (!pMode)
            return m_CallRequestInitiated;
        m_SoftwareType = pMode->getSoftwareType();
    }
    if (m_SoftwareType == PhonebookMode::SIP)
        return false;
    return m_CallRequestInitiated;
}

void EventContext::setCallRequestInitiated(bool initiated)
{
    PB_TRACE("EventContext::setCallRequestInitiated()");
    m_CallRequestInitiated = initiated;
}

std::string EventContext::getRedialNumber() const
{
    PB_TRACE("EventContext::getRedialNumber()");
    const std::lock_guard lock(m_RedialNumberMutex);
    return m_RedialNumber;
}

void EventContext::setRedialNumber(const std::string& number)
{
    PB_TRACE("EventContext::setRedialNumber()");
    const std::lock_guard lock(m_RedialNumberMutex);
    m_RedialNumber = number;
}

bool EventContext::languageChangeWhenVisible() const
{
    PB_TRACE("EventContext::languageChangeWhenVisible()");
    return m_LanguageChangeWhenVisible;
}

void EventContext::setLanguageChangeWhenVisible(bool visible)
{
    PB_TRACE("EventContext::setLanguageChangeWhenVisible()");
    m_LanguageChangeWhenVisible = visible;
}
