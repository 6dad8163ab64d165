#include "LDAPStateDisplayOptions.h"

LDAPStateDisplayOptions::LDAPStateDisplayOptions()
    : NotThereYetState("phone.notThere.options", Tab::Ldap)
{
}

LDAPStateDisplayOptions::~LDAPStateDisplayOptions() = default;
