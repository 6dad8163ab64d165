#include "LDAPStateSavingEntry.h"

LDAPStateSavingEntry::LDAPStateSavingEntry()
    : NotThereYetState("phone.notThere.form", Tab::Ldap)
{
}

LDAPStateSavingEntry::~LDAPStateSavingEntry() = default;
