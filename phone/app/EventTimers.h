// Events that are to run later, for services that have time limits of their own.

#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

class EventTimers {
public:
    using Id = std::uint64_t;

    virtual ~EventTimers() = default;

    // Puts the event into the telephone's queue when the clock has reached `when` (Clock::now()).
    // Never 0. Dropped when the telephone stops.
    // [any-thread]
    virtual Id callAt(std::chrono::milliseconds when, std::string name, std::function<void()> event) = 0;

    // Forgets it. An event that is already in the queue still runs: let it find out by itself
    // whether it is still wanted.
    // [any-thread]
    virtual void cancel(Id id) = 0;
};
