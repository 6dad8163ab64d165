// How names are written in the local list: one of four ways.
//
// Only Back applies a new choice; OK leaves the list as it was. That is meant to be.

#pragma once

#include "OptionList.h"
#include "PhonebookStateBase.h"

class PhonebookStateDisplayOptions final : public PhonebookStateBase {
public:
    PhonebookStateDisplayOptions();

    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override;
    virtual ~PhonebookStateDisplayOptions();

    // Builds the options on the first entry.
    void constructDisplayList(EventContext* pContext);
    // The options; null before the first entry.
    DisplayAPI::ExclusiveList* getListItem() const;

private:
    void relabelRows(EventContext* pContext);

    OptionList m_options; // by displayMode
};
