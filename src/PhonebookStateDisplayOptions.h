// How names are written in the local list.

#pragma once

#include "NotThereYetState.h"

class PhonebookStateDisplayOptions final : public NotThereYetState {
public:
    PhonebookStateDisplayOptions();
    ~PhonebookStateDisplayOptions() override;
};
