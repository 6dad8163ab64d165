#include "PhonebookStateEditGroup.h"

PhonebookStateEditGroup::PhonebookStateEditGroup()
    : NotThereYetState("phone.notThere.groups", Tab::Office)
{
}

PhonebookStateEditGroup::~PhonebookStateEditGroup() = default;
