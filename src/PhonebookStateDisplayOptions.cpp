#include "PhonebookStateDisplayOptions.h"

PhonebookStateDisplayOptions::PhonebookStateDisplayOptions()
    : NotThereYetState("phone.notThere.options", Tab::Office)
{
}

PhonebookStateDisplayOptions::~PhonebookStateDisplayOptions() = default;
