// The name of one group.

#pragma once

#include "NotThereYetState.h"

class PhonebookStateEditGroup final : public NotThereYetState {
public:
    PhonebookStateEditGroup();
    ~PhonebookStateEditGroup() override;
};
