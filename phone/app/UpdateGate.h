// Holds changes from outside back while a form is being filled in, so that they do not throw the
// user's typing away, and wherever else they must wait: changes of the contacts by others, a
// replaced store, another language.

#pragma once

#include <deque>
#include <functional>

#include "app/EventPoster.h"

class UpdateGate final : public EventPoster {
public:
    // `mustWait` is asked on the event thread.
    UpdateGate(EventPoster& events, std::function<bool()> mustWait);

    // Events keep their order, also those that are held back.
    // [any-thread]
    void post(std::string name, std::function<void()> event) override;

    // After each event: lets the next one go when none must wait any more.
    // [event thread]
    void eventDone();

private:
    void releaseOne();

    EventPoster& m_events;
    const std::function<bool()> m_mustWait;
    std::deque<std::function<void()>> m_held;
    bool m_releasing = false;
};
