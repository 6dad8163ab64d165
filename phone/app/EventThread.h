// The telephone's one queue of events, and the one thread that runs them.
//
// An event runs whole before the next begins: first itself, then what its widgets raised, then
// the "done" hook, where frames are published. What an event throws is logged with the event's
// name, and the next one runs. After stop() nothing runs any more.
//
// Without start() there is no thread: whoever made it runs the events with runPending(), on
// whichever thread it likes, and moves a ManualClock with advance().

#pragma once

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#include "app/Clock.h"
#include "app/EventPoster.h"
#include "app/EventTimers.h"

class EventThread final : public EventPoster, public EventTimers {
public:
    explicit EventThread(const Clock& clock);
    ~EventThread() override;

    EventThread(const EventThread&) = delete;
    EventThread& operator=(const EventThread&) = delete;

    // What runs at the end of every event. Before the first event.
    void setDone(std::function<void()> done) { m_done = std::move(done); }

    void start();
    // Drops what is queued. From outside it returns when the running event has ended; called by
    // an event, that event is the last one. Stopping twice is harmless.
    // [any-thread]
    void stop();
    // The same with a last event, which runs before all that is queued. Never from inside an event.
    void stopAfter(std::string name, std::function<void()> last);

    // [any-thread]
    void post(std::string name, std::function<void()> event) override;
    // Before everything that was posted otherwise: for what the user expects at once.
    // [any-thread]
    void postFirst(std::string name, std::function<void()> event);
    // [any-thread]
    Id callAt(std::chrono::milliseconds when, std::string name, std::function<void()> event) override;
    void cancel(Id id) override;

    // Waits until all that was queued when it was called has run; false when `limit` passed first.
    // Never from inside an event.
    // [any-thread]
    bool waitUntilDone(std::chrono::milliseconds limit);

    // Runs `call` with what widgets raise in it, as an event within the running one: it may throw.
    // [event thread]
    void deliver(const char* name, const std::function<void()>& call);

    // For a queue without a thread: runs what is queued or due, and what that adds.
    void runPending();
    // The same while `clock` moves on, every event at its own time.
    void advance(ManualClock& clock, std::chrono::milliseconds by);

private:
    struct Event {
        std::string name;
        std::function<void()> run;
    };
    struct Timed {
        Id id;
        Event event;
    };

    void loop();
    bool takeNext(Event& event);
    void queueDue();
    void run(const Event& event);

    const Clock& m_clock;
    std::function<void()> m_done;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Event> m_first; // what goes before the queue
    std::deque<Event> m_queue;
    std::multimap<std::chrono::milliseconds, Timed> m_timed;
    Id m_lastId = 0;
    bool m_stopped = false;
    std::thread m_thread;
};
