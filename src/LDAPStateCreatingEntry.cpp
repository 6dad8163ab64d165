#include "LDAPStateCreatingEntry.h"

#include "EventContext.h"
#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/LDAPStateCreatingEntry";
}

void LDAPStateCreatingEntry::enterStateEvent(EventContext*)
{
    PB_TRACE("LDAPStateCreatingEntry::enterStateEvent\n");
}

void LDAPStateCreatingEntry::exitStateEvent(EventContext*)
{
    PB_TRACE("LDAPStateCreatingEntry::exitStateEvent\n");
}

PhonebookStateBase* LDAPStateCreatingEntry::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                                      DisplayAPI::Displayable*)
{
    PB_TRACE("LDAPStateCreatingEntry::backEvent\n");
    return &pContext->m_LdapViewingList;
}
