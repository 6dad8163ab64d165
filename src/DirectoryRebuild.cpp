#include "DirectoryRebuild.h"

#include <memory>

#include <framework/services/DirectoryServiceIfc.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookPhonelet.h"
#include "PhonebookTabs.h"

namespace {

// Log readers look for these lines under the mode, whose operations they name.
constexpr char nSOURCE[] = "./src/PhonebookMode";

constexpr int nALL_ENTRIES = -1;

} // namespace

DirectoryRebuild::DirectoryRebuild(EventContext& context, PhonebookTabs& tabs)
    : m_context(context)
    , m_tabs(tabs)
{
}

void DirectoryRebuild::databaseUpdated()
{
    const int remembered = m_tabs.current();
    const bool away = remembered != m_tabs.local();
    if (away) {
        m_tabs.showScreen();
        m_tabs.stepTo(m_tabs.local());
    }
    refreshLocalTab();
    if (!away)
        return;
    if (!m_tabs.stepTo(remembered))
        m_tabs.select(m_tabs.local());
    // A question of the local tab must not stand over another one: it comes back with its tab.
    m_tabs.showScreen();
}

void DirectoryRebuild::refreshLocalTab()
{
    PhonebookStateBase*& pCurrent = m_context.m_pCurrentState;
    const bool moved = m_tabs.moveTo(pCurrent->phonebookDatabaseUpdated(&m_context), pCurrent);
    // Only the refreshing state is told once more, which is how it learns why it was entered. Told
    // to the list that a refresh out of sight ends in, it would ask to refresh again, unseen.
    if (!moved || pCurrent != &m_context.m_Refreshing)
        return;
    PhonebookStateBase** ppMachine = m_tabs.currentMachine();
    if (!ppMachine) {
        PB_ERROR("phonebookDatabaseUpdated() - getCurrentStateMachine() returned NULL");
        return;
    }
    m_tabs.moveTo(pCurrent->phonebookDatabaseUpdated(&m_context), *ppMachine);
}

void DirectoryRebuild::restart()
{
    exitBothStates();
    reloadLocalDirectory();
    if (m_tabs.hasLdap()) {
        m_context.reallocateLdapDisplayList(true);
        m_context.m_pLdapPhonebookList->depopulate();
        m_context.m_pLdapCurrentState = &m_context.m_LdapViewingList;
        m_context.m_pLdapCurrentState->enterStateEvent(&m_context);
    }
    m_context.m_pCurrentState = &m_context.m_ViewingList;
    enterState(m_tabs.local(), m_context.m_ViewingList);
    if (!m_context.m_pPhonelet->isVisible())
        m_context.m_ViewingList.clearCallContextProvider(&m_context);
}

// Each while its own tab is current; where there is an LDAP tab it is current afterwards.
void DirectoryRebuild::exitBothStates()
{
    const bool ldapFirst = m_tabs.isLdapActive();
    if (ldapFirst)
        m_context.m_pLdapCurrentState->exitStateEvent(&m_context);
    m_tabs.select(m_tabs.local());
    m_context.m_pCurrentState->exitStateEvent(&m_context);
    m_tabs.select(m_tabs.ldap());
    if (!ldapFirst && m_tabs.hasLdap())
        m_context.m_pLdapCurrentState->exitStateEvent(&m_context);
}

void DirectoryRebuild::reloadLocalDirectory()
{
    m_context.reallocateDisplayList(true);
    m_context.m_pPhonebookList->populate(nALL_ENTRIES);
    m_context.m_pDisplayList->clear();
    m_context.m_pGroupDisplayList->clear();

    DirectoryServiceIfc* pDirectory = m_context.m_pDirectoryService;
    m_context.m_pGroupList.reset(pDirectory ? pDirectory->getGroupList() : nullptr);
    if (!m_context.m_pGroupList)
        m_context.m_pGroupList = std::make_unique<PhonebookGroupList>(0);
}

void DirectoryRebuild::alphabetChanged(bool visible)
{
    // A question whether to refresh that goes with its state counts as answered: the list it was asked
    // about is out of date.
    if (m_context.m_pCurrentState == &m_context.m_Refreshing)
        m_context.m_Refreshing.updateList(&m_context);
    else
        m_context.reallocateDisplayList(true);
    if (m_tabs.hasLdap())
        m_context.reallocateLdapDisplayList(true);
    // Its rows hold translated texts.
    m_context.m_pGroupDisplayList->clear();

    m_context.m_pCurrentState->exitStateEvent(&m_context);
    if (m_tabs.hasLdap())
        m_context.m_pLdapCurrentState->exitStateEvent(&m_context);
    m_context.m_pCurrentState = &m_context.m_ViewingList;
    m_context.m_pLdapCurrentState = &m_context.m_LdapViewingList;

    m_context.setLanguageChangeWhenVisible(visible);
    reenterStates();
    m_context.setLanguageChangeWhenVisible(true);
}

// Each while its own tab is current, that of the tab in sight last.
void DirectoryRebuild::reenterStates()
{
    const int remembered = m_tabs.current();
    m_tabs.showScreen();
    if (remembered != m_tabs.local())
        enterState(m_tabs.local(), m_context.m_ViewingList);
    if (remembered != m_tabs.ldap() && m_tabs.hasLdap())
        enterState(m_tabs.ldap(), m_context.m_LdapViewingList);

    m_tabs.select(remembered);
    if (remembered == m_tabs.local())
        m_context.m_ViewingList.enterStateEvent(&m_context);
    else if (remembered == m_tabs.ldap())
        m_context.m_LdapViewingList.enterStateEvent(&m_context);
}

void DirectoryRebuild::enterState(int tab, PhonebookStateBase& state)
{
    m_tabs.select(tab);
    state.enterStateEvent(&m_context);
}
