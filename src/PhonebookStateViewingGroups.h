// The groups of the local phonebook.

#pragma once

#include "NotThereYetState.h"

class PhonebookStateViewingGroups final : public NotThereYetState {
public:
    PhonebookStateViewingGroups();
    ~PhonebookStateViewingGroups() override;
};
