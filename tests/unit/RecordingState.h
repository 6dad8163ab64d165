// A screen that notes what it is told, and answers as the test says: for tests of what the mode
// hands to whom. Put into the context's machine, it must leave it before it dies.

#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <framework/services/CallPartyIdentifier.h>

#include "PhonebookStateBase.h"

class RecordingState final : public PhonebookStateBase {
public:
    using Calls = std::vector<std::string>;

    // Notes "<name> ok" and so on in `calls`.
    RecordingState(Calls& calls, std::string name)
        : m_calls(calls)
        , m_name(std::move(name))
    {
    }
    virtual ~RecordingState() = default;

    PhonebookStateBase* next = this; // what every handler answers
    bool mayLeave = true;
    std::function<void()> onEvent; // runs inside every handler
    DisplayAPI::Command* command = nullptr;
    DisplayAPI::Displayable* displayable = nullptr;
    EventContext* context = nullptr;

    bool tabValid(EventContext* pContext) override { return note("tabValid", pContext), mayLeave; }
    PhonebookStateBase* tabFrom(EventContext* pContext) override { return note("tabFrom", pContext); }
    PhonebookStateBase* tabTo(EventContext* pContext) override { return note("tabTo", pContext); }
    void enterStateEvent(EventContext* pContext) override { note("enter", pContext); }
    void exitStateEvent(EventContext* pContext) override { note("exit", pContext); }
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override
    {
        return noteKey("back", pContext, pCommand, pDisplayable);
    }
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override
    {
        return noteKey("ok", pContext, pCommand, pDisplayable);
    }
    PhonebookStateBase* saveEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override
    {
        return noteKey("save", pContext, pCommand, pDisplayable);
    }
    PhonebookStateBase* rightEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                   DisplayAPI::Displayable* pDisplayable) override
    {
        return noteKey("right", pContext, pCommand, pDisplayable);
    }
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override
    {
        return noteKey("screen", pContext, pCommand, pDisplayable);
    }
    PhonebookStateBase* itemStateChangedEvent(EventContext* pContext, DisplayAPI::Item*) override
    {
        return note("item", pContext);
    }
    PhonebookStateBase* popupDiallerItemStateChangedEvent(EventContext* pContext, DisplayAPI::Item*) override
    {
        return note("diallerItem", pContext);
    }
    PhonebookStateBase* dialingStartedEvent(EventContext* pContext, std::string digits) override
    {
        return note("dialingStarted " + digits, pContext);
    }
    bool getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext) override
    {
        note("partyDetails", pContext);
        party.setNumber("4711");
        return true;
    }
    PhonebookStateBase* dialingStoppedEvent(EventContext* pContext) override
    {
        return note("dialingStopped", pContext);
    }
    PhonebookStateBase* interDigitTimeoutEvent(EventContext* pContext, InterDigitTimeOutEvent*) override
    {
        return note("interDigitTimeout", pContext);
    }
    void setCallContextProvider(EventContext* pContext) override { note("setProvider", pContext); }
    void clearCallContextProvider(EventContext* pContext) override { note("clearProvider", pContext); }
    PhonebookStateBase* phonebookDatabaseUpdated(EventContext* pContext) override
    {
        return note("databaseUpdated", pContext);
    }
    PhonebookStateBase* timerEvent(EventContext* pContext, int timerId) override
    {
        return note("timer " + std::to_string(timerId), pContext);
    }
    PhonebookStateBase* buttonPressedEvent(EventContext* pContext, PhysDefs::keyFunctionType function,
                                           int key, PhysDefs::actionType action, std::string name) override
    {
        return note("button " + std::to_string(static_cast<int>(function)) + " " + std::to_string(key) + " " +
                        std::to_string(static_cast<int>(action)) + " " + name,
                    pContext);
    }

private:
    PhonebookStateBase* note(const std::string& event, EventContext* pContext)
    {
        m_calls.push_back(m_name + " " + event);
        context = pContext;
        if (onEvent)
            onEvent();
        return next;
    }
    PhonebookStateBase* noteKey(const std::string& event, EventContext* pContext,
                                DisplayAPI::Command* pCommand, DisplayAPI::Displayable* pDisplayable)
    {
        command = pCommand;
        displayable = pDisplayable;
        return note(event, pContext);
    }

    Calls& m_calls;
    std::string m_name;
};
