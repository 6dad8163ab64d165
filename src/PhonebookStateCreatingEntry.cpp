#include "PhonebookStateCreatingEntry.h"

PhonebookStateCreatingEntry::PhonebookStateCreatingEntry()
    : NotThereYetState("phone.notThere.form", Tab::Office)
{
}

PhonebookStateCreatingEntry::~PhonebookStateCreatingEntry() = default;
