#include "LDAPStateCreatingEntry.h"

LDAPStateCreatingEntry::LDAPStateCreatingEntry()
    : NotThereYetState("phone.notThere.form")
{
}

LDAPStateCreatingEntry::~LDAPStateCreatingEntry() = default;
