// The corporate directory's search form.

#pragma once

#include "NotThereYetState.h"

class LDAPStateFind final : public NotThereYetState {
public:
    LDAPStateFind();
    virtual ~LDAPStateFind();

    // Empties the form.
    void clearForm(EventContext* pContext);
};
