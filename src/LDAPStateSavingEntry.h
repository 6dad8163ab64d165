// Copies a corporate directory entry into the local phonebook.

#pragma once

#include "NotThereYetState.h"

class LDAPStateSavingEntry final : public NotThereYetState {
public:
    LDAPStateSavingEntry();
    ~LDAPStateSavingEntry() override;
};
