// The home of the corporate directory's tab.

#pragma once

#include "PhonebookStateBaseDialer.h"

class LDAPStateViewingList final : public PhonebookStateBaseDialer {
public:
    LDAPStateViewingList();

    bool tabValid(EventContext* pContext) override;
    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* dialingStartedEvent(EventContext* pContext, std::string digits) override;
    PhonebookStateBase* dialingStoppedEvent(EventContext* pContext) override;
    ~LDAPStateViewingList() override;

private:
    void constructDisplayList(EventContext* pContext);
    void setDisplayListCurrent(EventContext* pContext);
};
