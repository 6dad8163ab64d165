#include "LDAPStateDisplayOptions.h"

#include <framework/display/ExclusiveList.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/LDAPStateDisplayOptions";
}

LDAPStateDisplayOptions::LDAPStateDisplayOptions()
    : m_options(OptionList::nameFormats())
{
}

LDAPStateDisplayOptions::~LDAPStateDisplayOptions() = default;

void LDAPStateDisplayOptions::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayOptions::enterStateEvent()");
    constructDisplayList(pContext);
    m_options.select(static_cast<int>(pContext->m_pLdapPhonebookList->getDisplayMode()));
    showInTab(pContext, *m_options.widget());
}

void LDAPStateDisplayOptions::exitStateEvent(EventContext*)
{
    PB_TRACE("LDAPStateDisplayOptions::exitStateEvent()");
}

PhonebookStateBase* LDAPStateDisplayOptions::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                                       DisplayAPI::Displayable*)
{
    PB_TRACE("LDAPStateDisplayOptions::backEvent()");
    if (!m_options.isChanged())
        return &pContext->m_LdapViewingList;
    pContext->m_pLdapDisplayList->clear();
    if (const auto mode = m_options.chosen())
        pContext->m_pLdapPhonebookList->setDisplayMode(static_cast<displayMode>(*mode));
    pContext->reallocateLdapDisplayList(true);
    return &pContext->m_LdapViewingList;
}

PhonebookStateBase* LDAPStateDisplayOptions::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                                     DisplayAPI::Displayable*)
{
    PB_TRACE("LDAPStateDisplayOptions::okEvent()");
    return &pContext->m_LdapViewingList;
}

void LDAPStateDisplayOptions::constructDisplayList(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayOptions::constructDisplayList()");
    m_options.construct(pContext);
}
