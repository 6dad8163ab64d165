#include "LDAPStateQualifierOptions.h"

LDAPStateQualifierOptions::LDAPStateQualifierOptions()
    : NotThereYetState("phone.notThere.options", Tab::Ldap)
{
}

LDAPStateQualifierOptions::~LDAPStateQualifierOptions() = default;
