#include "LDAPStateFind.h"

#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/LDAPStateFind";
}

LDAPStateFind::LDAPStateFind()
    : NotThereYetState("phone.notThere.form", Tab::Ldap)
{
}

LDAPStateFind::~LDAPStateFind() = default;

void LDAPStateFind::clearForm(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::clearForm()");
    // Nothing was entered: what may be on the screen is its message.
    exitStateEvent(pContext);
}
