// A corporate directory entry as a form.

#pragma once

#include "NotThereYetState.h"

class LDAPStateCreatingEntry final : public NotThereYetState {
public:
    LDAPStateCreatingEntry();
    ~LDAPStateCreatingEntry() override;
};
