// Where keys enter the telephone, from any thread.
//
// A key is judged when it arrives, by the popup on the frame made last, even while the event
// thread is busy: under a progress popup it is dropped, under a notification it closes that
// notification and does nothing else. Only a key that passes is queued. So a key that was pressed
// at one screen never acts on the next.
//
// What belongs to the telephone itself (hook, hang up, keys for calls, home) is never judged and goes before
// everything that is queued. Keys that were queued before the user went home, hung up or put the handset
// down are forgotten: digits that were being dialled would be letters now. Until such a key has its turn
// the event thread may wait for nothing: a search that runs is given up.

#pragma once

#include <atomic>
#include <functional>
#include <mutex>

#include "app/EventThread.h"
#include "app/FrameStore.h"
#include "app/PhoneKey.h"

class KeyGate {
public:
    enum class Verdict {
        Passed,
        Busy,     // dropped: something is under way, and the screen says so
        Consumed, // it closed a notification
    };

    struct Actions {
        std::function<void(const PhoneKey&)> route;              // [event thread]
        std::function<void(std::uint64_t id)> closeNotification; // [event thread]
        // Whether a key waits that must not. Never called twice at once. [any-thread]
        std::function<void(bool urgent)> hurry;
    };

    KeyGate(EventThread& events, const FrameStore& frames, Actions actions);

    // [any-thread]
    Verdict press(const PhoneKey& key);

private:
    bool leaves(const PhoneKey& key) const;
    Verdict judge(const PhoneKey& key);
    void queue(const PhoneKey& key);
    void countUrgent(int by);

    EventThread& m_events;
    const FrameStore& m_frames;
    const Actions m_actions;
    std::atomic<unsigned> m_timesLeft{0};
    std::mutex m_urgentMutex;
    int m_urgent = 0; // keys that wait and must not
};
