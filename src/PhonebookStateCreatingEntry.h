// The form of a local entry, new or existing.

#pragma once

#include "NotThereYetState.h"

class PhonebookStateCreatingEntry final : public NotThereYetState {
public:
    PhonebookStateCreatingEntry();
    ~PhonebookStateCreatingEntry() override;
};
