#include "PhonebookTabs.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <framework/PhoneletContext.h>
#include <framework/display/Display.h>

#include "PhonebookLog.h"
#include "PhonebookPhonelet.h"

namespace {

// Log readers look for these lines under the mode, whose operations they name.
constexpr char nSOURCE[] = "./src/PhonebookMode";

enum TabIndex : int { OFFICE_TAB = 0, LDAP_TAB = 1, PBX_TAB_WITHOUT_LDAP = 1, PBX_TAB = 2 };
enum RememberedDirectory : int { LOCAL_DIRECTORY = 1, LDAP_DIRECTORY = 2 };

} // namespace

PhonebookTabs::PhonebookTabs(EventContext& context)
    : m_context(context)
{
    m_context.m_OfficeTabIndex = nNO_TAB;
    m_context.m_LdapTabIndex = nNO_TAB;
}

void PhonebookTabs::addOffice()
{
    useWithTabs(*m_context.m_pPlaceholderList);
    useWithTabs(*m_context.m_pDisplayList);
    add("office", m_context.m_pPlaceholderList.get());
    m_local = OFFICE_TAB;
    m_context.m_OfficeTabIndex = OFFICE_TAB;
}

void PhonebookTabs::addLdap()
{
    useWithTabs(*m_context.m_pLdapDisplayList);
    add("ldap", m_context.m_pLdapDisplayList.get());
    m_ldap = LDAP_TAB;
    m_context.m_LdapTabIndex = LDAP_TAB;
}

int PhonebookTabs::addPbx()
{
    PB_TRACE("PhonebookMode::addPBXPhonebookTab()");
    if (m_pbx != nNO_TAB)
        return nNO_TAB;
    add("PBX.Phonebook", nullptr);
    m_pbx = hasLdap() ? PBX_TAB : PBX_TAB_WITHOUT_LDAP;
    // The text speaks of one kind of telephone and serves for both.
    PB_TRACE("addPBXPhonebookTab() - Setting PBX Tab to pos %d for non-TDM variants", m_pbx);
    return m_pbx;
}

void PhonebookTabs::removePbx()
{
    PB_TRACE("PhonebookMode::removePBXPhonebookTab()");
    m_context.m_pTabScreen->removeTab(m_pbx);
    m_pbx = nNO_TAB;
}

void PhonebookTabs::add(const char* title, DisplayAPI::Displayable* pContent)
{
    m_context.m_pTabScreen->addTab(DisplayAPI::TranslationInfo(title, m_context.m_pTranslator), pContent);
}

void PhonebookTabs::useWithTabs(DisplayAPI::SearchList& list)
{
    list.setUsedWithTab(true, m_context.m_pTabScreen.get());
    list.setWrapAround(false);
}

bool PhonebookTabs::isLocalActive() const
{
    const bool active = current() == m_local;
    PB_TRACE("isLocalTabActive() - local tab %s", active ? "active" : "not active");
    return active;
}

bool PhonebookTabs::isLdapActive() const
{
    const bool active = current() == m_ldap;
    PB_TRACE("isLdapTabActive() - LDAP tab %s", active ? "active" : "not active");
    return active;
}

bool PhonebookTabs::isPbxActive() const
{
    const bool active = current() == m_pbx;
    PB_TRACE("isPBXTabActive() - PBX tab %s", active ? "active" : "not active");
    return active;
}

int PhonebookTabs::current() const
{
    return m_context.m_pTabScreen->getCurrentTabIndex();
}

void PhonebookTabs::select(int tab)
{
    m_context.m_pTabScreen->setCurrentTabIndex(tab);
}

void PhonebookTabs::showScreen()
{
    m_context.m_pDisplay->setCurrent(m_context.m_pTabScreen.get());
}

void PhonebookTabs::changeTab(int direction)
{
    PB_TRACE("PhonebookMode::changeTab()");
    if (direction > 0)
        m_context.m_pTabScreen->nextTab();
    else if (direction < 0)
        m_context.m_pTabScreen->previousTab();
}

bool PhonebookTabs::stepTo(int tab)
{
    for (int steps = m_context.m_pTabScreen->numberOfTabs(); steps > 0 && current() != tab; --steps)
        m_context.m_pTabScreen->nextTab();
    return current() == tab;
}

void PhonebookTabs::updatePhoneletState()
{
    PB_TRACE("PhonebookMode::updatePhoneletState()");
    if (isLdapActive())
        m_context.m_pPhoneletContext->setPhoneletState(PhonebookPhonelet::nSTATE_NAME, LDAP_DIRECTORY);
    else if (isLocalActive())
        m_context.m_pPhoneletContext->setPhoneletState(PhonebookPhonelet::nSTATE_NAME, LOCAL_DIRECTORY);
}

void PhonebookTabs::selectDirectoryTypeToShow()
{
    PB_TRACE("PhonebookMode::selectDirectoryTypeToShow()");
    // A form or popup keeps its tab: on another one its keys would go to that tab's screen.
    if (m_context.m_pDisplay->getCurrent() != m_context.m_pTabScreen.get())
        return;
    const int directory = m_context.m_pPhoneletContext->getPhoneletState(PhonebookPhonelet::nSTATE_NAME);
    if (directory == LDAP_DIRECTORY)
        select(m_ldap);
    else if (directory == LOCAL_DIRECTORY)
        select(m_local);
}

PhonebookStateBase** PhonebookTabs::currentMachine()
{
    const int tab = current();
    if (tab == m_local) {
        PB_TRACE("getCurrentStateMachine() - main tab");
        return &m_context.m_pCurrentState;
    }
    if (tab == m_ldap) {
        PB_TRACE("getCurrentStateMachine() - ldap tab");
        return &m_context.m_pLdapCurrentState;
    }
    if (tab == m_pbx)
        PB_TRACE("getCurrentStateMachine() - system tab: returned NULL!");
    else
        PB_TRACE("getCurrentStateMachine() - unrecognized tab: returned NULL!");
    return nullptr;
}

PhonebookStateBase* PhonebookTabs::currentState()
{
    PhonebookStateBase** ppMachine = currentMachine();
    if (!ppMachine || !*ppMachine)
        return nullptr;
    traceState(**ppMachine);
    return *ppMachine;
}

bool PhonebookTabs::moveTo(PhonebookStateBase* pNext, PhonebookStateBase*& pCurrent)
{
    if (!pNext || pNext == pCurrent)
        return false;
    pCurrent->exitStateEvent(&m_context);
    pCurrent = pNext;
    pNext->enterStateEvent(&m_context);
    return true;
}

void PhonebookTabs::traceState(const PhonebookStateBase& state) const
{
    const std::pair<const PhonebookStateBase*, const char*> names[] = {
        {&m_context.m_ViewingList, "stateViewingList"},
        {&m_context.m_CreatingEntry, "stateCreatingEntry"},
        {&m_context.m_DisplayOptions, "stateDisplayOptions"},
        {&m_context.m_EditGroup, "stateEditGroup"},
        {&m_context.m_FatalError, "stateFatalError"},
        {&m_context.m_ViewingGroups, "stateViewingGroups"},
        {&m_context.m_Refreshing, "stateRefreshing"},
        {&m_context.m_LdapViewingList, "ldapStateViewingList"},
        {&m_context.m_LdapFind, "ldapStateFind"},
        {&m_context.m_LdapDisplayOptions, "ldapStateDisplayOptions"},
        {&m_context.m_LdapCreatingEntry, "ldapStateCreatingEntry"},
        {&m_context.m_LdapDisplayingEntry, "ldapStateDisplayingEntry"},
        {&m_context.m_LdapSavingEntry, "ldapStateSavingEntry"},
    };
    const auto* pName = std::find_if(std::begin(names), std::end(names),
                                     [&](const auto& name) { return name.first == &state; });
    PB_TRACE("traceState(----state is %s)", pName == std::end(names) ? "unrecognised" : pName->second);
}
