// A whole corporate directory entry.

#pragma once

#include "NotThereYetState.h"

class LDAPStateDisplayingEntry final : public NotThereYetState {
public:
    LDAPStateDisplayingEntry();
    ~LDAPStateDisplayingEntry() override;
};
