// A place for a form of the corporate directory. It shows nothing; Back leads to the directory's list.

#pragma once

#include "PhonebookStateBase.h"

class LDAPStateCreatingEntry final : public PhonebookStateBase {
public:
    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
};
