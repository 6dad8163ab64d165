// What is written beside the names of the corporate directory, if anything. Back applies a new choice.

#pragma once

#include "OptionList.h"
#include "PhonebookStateBase.h"

class LDAPStateQualifierOptions final : public PhonebookStateBase {
public:
    LDAPStateQualifierOptions();

    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    virtual ~LDAPStateQualifierOptions();

    // Builds the options on the first entry.
    void constructDisplayList(EventContext* pContext);

private:
    OptionList m_options; // by displayQualifier
};
