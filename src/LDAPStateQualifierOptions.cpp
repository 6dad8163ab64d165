#include "LDAPStateQualifierOptions.h"

LDAPStateQualifierOptions::LDAPStateQualifierOptions()
    : NotThereYetState("phone.notThere.options")
{
}

LDAPStateQualifierOptions::~LDAPStateQualifierOptions() = default;
