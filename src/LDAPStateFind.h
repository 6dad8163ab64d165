// The corporate directory's search form.

#pragma once

#include "NotThereYetState.h"

class LDAPStateFind final : public NotThereYetState {
public:
    LDAPStateFind();
    ~LDAPStateFind() override;

    // Empties the form.
    void clearForm(EventContext* pContext);
};
