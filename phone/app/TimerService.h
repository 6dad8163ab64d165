// The timers of one phonelet, which it keeps by their ids.
//
// An expiry that is queued when its timer is stopped, restarted or deleted is dropped.
// [phonelet-thread]

#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "app/Clock.h"
#include "app/EventTimers.h"

class Phonelet;

class TimerService {
public:
    // `expired` is called as an event: it passes the expiry to the timer's owner.
    using Expired = std::function<void(Phonelet& owner, int id)>;

    TimerService(EventTimers& timers, const Clock& clock, Expired expired);
    ~TimerService();

    TimerService(const TimerService&) = delete;
    TimerService& operator=(const TimerService&) = delete;

    // See PhoneletContext for what these do.
    int create(Phonelet* owner, unsigned ms);
    bool start(int id);
    bool stop(int id);
    bool reset(int id);
    bool remove(int id);
    bool isRunning(int id) const;

    // Its owner was told: it counts as not running.
    void reached(int id);

    // Deletes all timers; gives the ids of those that there were.
    std::vector<int> removeAll();

private:
    struct Timer {
        Phonelet* owner;
        std::chrono::milliseconds duration;
        bool running = false;
        EventTimers::Id event = 0;
        unsigned long current = 0; // the start whose expiry still counts; 0 for none
    };

    void expire(int id, unsigned long start);

    EventTimers& m_timers;
    const Clock& m_clock;
    const Expired m_expired;
    std::map<int, Timer> m_all;
    int m_lastId = 0;
    unsigned long m_starts = 0;
    // Tells an expiry that is already queued that the service is gone.
    std::shared_ptr<const char> m_alive = std::make_shared<const char>();
};
