// The telephone's sense of time. Tests and journeys put a clock in its place that they advance.

#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

class Clock {
public:
    virtual ~Clock() = default;

    // Never goes back; where it starts means nothing.
    // [any-thread]
    virtual std::chrono::milliseconds now() const = 0;

    // The date and time of day, UTC.
    // [any-thread]
    virtual std::chrono::system_clock::time_point wallClock() const = 0;

    // Returns when `time` has passed.
    // [any-thread]
    virtual void sleep(std::chrono::microseconds time) const = 0;
};

class SystemClock final : public Clock {
public:
    std::chrono::milliseconds now() const override;
    std::chrono::system_clock::time_point wallClock() const override;
    void sleep(std::chrono::microseconds time) const override;

    // While `urgent` nobody sleeps: who does is woken.
    // [any-thread]
    void setUrgent(bool urgent);

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    bool m_urgent = false;
};

// Stands still until it is advanced, or somebody sleeps by it.
class ManualClock final : public Clock {
public:
    std::chrono::milliseconds now() const override { return std::chrono::milliseconds(m_now.load()); }
    std::chrono::system_clock::time_point wallClock() const override;
    void sleep(std::chrono::microseconds time) const override;

    // [any-thread]
    void advance(std::chrono::milliseconds by) { m_now += by.count(); }

private:
    mutable std::atomic<std::chrono::milliseconds::rep> m_now{0};
};
