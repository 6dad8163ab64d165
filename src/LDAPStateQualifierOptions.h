// What is written beside the names of the corporate directory.

#pragma once

#include "NotThereYetState.h"

class LDAPStateQualifierOptions final : public NotThereYetState {
public:
    LDAPStateQualifierOptions();
    ~LDAPStateQualifierOptions() override;
};
