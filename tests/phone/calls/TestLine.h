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

    std::string number() const override { return m_number; }
    bool isInService() const override { return inService; }

    bool placeCall(const std::string& callId, const std::string& dialled, LineObserverIfc& observer) override
    {
        if (behaves == Behaviour::Refuses)
            return false;
        calls.push_back(dialled);
        m_pObserver = &observer;
        lastCall = callId;
        // Reports are queued, so they may be made at once.
        if (behaves == Behaviour::Answers)
            tell(CallState::Connected);
        else if (behaves == Behaviour::Busy)
            tell(CallState::Failed);
        return true;
    }
    bool pickUpCall(const std::string& callId, const std::string& device, LineObserverIfc& observer) override
    {
        return placeCall(callId, "pick up " + device, observer);
    }
    void clearCall(const std::string& callId) override
    {
        lastCall = callId;
        tell(CallState::Null);
    }

    void tell(CallState state) { m_pObserver->callStateChanged(lastCall, state); }

    Behaviour behaves;
    bool inService = true;
    std::vector<std::string> calls; // the numbers as dialled
    std::string lastCall;

private:
    std::string m_number;
    LineObserverIfc* m_pObserver = nullptr;
};
