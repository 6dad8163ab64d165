#include "LDAPStateSavingEntry.h"

LDAPStateSavingEntry::LDAPStateSavingEntry()
    : NotThereYetState("phone.notThere.form")
{
}

LDAPStateSavingEntry::~LDAPStateSavingEntry() = default;
