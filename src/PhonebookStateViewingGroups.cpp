#include "PhonebookStateViewingGroups.h"

PhonebookStateViewingGroups::PhonebookStateViewingGroups()
    : NotThereYetState("phone.notThere.groups", Tab::Office)
{
}

PhonebookStateViewingGroups::~PhonebookStateViewingGroups() = default;
