#include "LDAPStateDisplayingEntry.h"

LDAPStateDisplayingEntry::LDAPStateDisplayingEntry()
    : NotThereYetState("phone.notThere.form", Tab::Ldap)
{
}

LDAPStateDisplayingEntry::~LDAPStateDisplayingEntry() = default;
