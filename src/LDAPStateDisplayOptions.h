// How names are written in the corporate directory's list.

#pragma once

#include "NotThereYetState.h"

class LDAPStateDisplayOptions final : public NotThereYetState {
public:
    LDAPStateDisplayOptions();
    ~LDAPStateDisplayOptions() override;
};
