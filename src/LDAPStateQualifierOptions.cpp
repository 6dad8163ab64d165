#include "LDAPStateQualifierOptions.h"

#include <framework/display/ExclusiveList.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/LDAPStateQualifierOptions";
}

LDAPStateQualifierOptions::LDAPStateQualifierOptions()
    : m_options("qualifier.options", {"no.qualifier", "job.function", "address", "email", "business1",
                                      "mobile", "business2", "private", "company", "address2"})
{
}

LDAPStateQualifierOptions::~LDAPStateQualifierOptions() = default;

void LDAPStateQualifierOptions::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateQualifierOptions::enterStateEvent()");
    constructDisplayList(pContext);
    m_options.select(static_cast<int>(pContext->m_pLdapPhonebookList->getDisplayQualifier()));
    showInTab(pContext, *m_options.widget());
}

void LDAPStateQualifierOptions::exitStateEvent(EventContext*)
{
    PB_TRACE("LDAPStateQualifierOptions::exitStateEvent()");
}

PhonebookStateBase* LDAPStateQualifierOptions::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                                         DisplayAPI::Displayable*)
{
    PB_TRACE("LDAPStateQualifierOptions::backEvent()");
    if (!m_options.isChanged())
        return &pContext->m_LdapViewingList;
    if (const auto qualifier = m_options.chosen())
        pContext->m_pLdapPhonebookList->setDisplayQualifier(static_cast<displayQualifier>(*qualifier));
    pContext->reallocateLdapDisplayList(true);
    return &pContext->m_LdapViewingList;
}

void LDAPStateQualifierOptions::constructDisplayList(EventContext* pContext)
{
    PB_TRACE("LDAPStateQualifierOptions::constructDisplayList()");
    m_options.construct(pContext);
}
