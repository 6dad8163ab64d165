#include "LDAPStateDisplayingEntry.h"

LDAPStateDisplayingEntry::LDAPStateDisplayingEntry()
    : NotThereYetState("phone.notThere.form")
{
}

LDAPStateDisplayingEntry::~LDAPStateDisplayingEntry() = default;
