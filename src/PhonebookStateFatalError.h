// The end of an unusable phonebook: it ignores everything.

#pragma once

#include "PhonebookStateBase.h"

class PhonebookStateFatalError final : public PhonebookStateBase {
public:
    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
};
