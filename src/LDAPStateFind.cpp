#include "LDAPStateFind.h"

#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/LDAPStateFind";
}

LDAPStateFind::LDAPStateFind()
    : NotThereYetState("phone.notThere.form")
{
}

LDAPStateFind::~LDAPStateFind() = default;

void LDAPStateFind::clearForm(EventContext*)
{
    PB_TRACE("LDAPStateFind::clearForm()");
    // Nothing can be typed yet: what may stand on the screen is the message.
    hideMessage();
}
