#include "LDAPStateCreatingEntry.h"

LDAPStateCreatingEntry::LDAPStateCreatingEntry()
    : NotThereYetState("phone.notThere.form", Tab::Ldap)
{
}

LDAPStateCreatingEntry::~LDAPStateCreatingEntry() = default;
