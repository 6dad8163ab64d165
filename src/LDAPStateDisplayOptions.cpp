#include "LDAPStateDisplayOptions.h"

LDAPStateDisplayOptions::LDAPStateDisplayOptions()
    : NotThereYetState("phone.notThere.options")
{
}

LDAPStateDisplayOptions::~LDAPStateDisplayOptions() = default;
