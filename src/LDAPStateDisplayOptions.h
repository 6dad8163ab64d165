// How names are written in the corporate directory's list: one of four ways.
//
// Only Back applies a new choice; OK leaves the list as it was. That is meant to be.

#pragma once

#include "OptionList.h"
#include "PhonebookStateBase.h"

class LDAPStateDisplayOptions final : public PhonebookStateBase {
public:
    LDAPStateDisplayOptions();

    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override;
    virtual ~LDAPStateDisplayOptions();

    // Builds the options on the first entry.
    void constructDisplayList(EventContext* pContext);

private:
    OptionList m_options; // by displayMode
};
