// A line for tests: it answers, is busy or refuses, as told.

#pragma once

#include <string>
#include <vector>

#include "calls/LineIfc.h"

class TestLine final : public LineIfc {
public:
    enum class Behaviour { Waits, Answers, Busy, Refuses };

    explicit TestLine(std::string number, Behaviour behaviour = Behaviour::Waits)
        : behaves(behaviour)
        , m_number(std::move(number))
    {
    }

    void setObserver(LineObserverIfc* observer) override { m_pObserver = observer; }
    std::string number() const override { return m_number; }
    bool isInService() const override { return inService; }

    bool placeCall(const std::string& callId, const std::string& dialled) override
    {
        if (behaves == Behaviour::Refuses)
            return false;
        calls.push_back(dialled);
        lastCall = callId;
        // Reports are queued, so they may be made at once.
        if (behaves == Behaviour::Answers)
            tell(CallState::Connected);
        else if (behaves == Behaviour::Busy)
            tell(CallState::Failed);
        return true;
    }
    bool pickUpCall(const std::string& callId, const std::string& device) override
    {
        return placeCall(callId, "pick up " + device);
    }
    void answerCall(const std::string& callId) override
    {
        lastCall = callId;
        tell(CallState::Connected);
    }
    void clearCall(const std::string& callId) override
    {
        lastCall = callId;
        if (answersClear)
            tell(CallState::Null);
    }

    void tell(CallState state, CallEnd why = CallEnd::Cleared)
    {
        m_pObserver->callStateChanged(lastCall, state, why);
    }
    // Rings with a call that comes in.
    void ring(const Caller& caller) { lastCall = m_pObserver->callOffered(*this, caller); }

    Behaviour behaves;
    bool inService = true;
    bool answersClear = true;       // says at once that a call is over that is to be
    std::vector<std::string> calls; // the numbers as dialled
    std::string lastCall;

private:
    std::string m_number;
    LineObserverIfc* m_pObserver = nullptr;
};
