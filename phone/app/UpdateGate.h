// Holds changes from outside back while a form is being filled in, so that they do not throw the
// user's typing away: changes of the contacts by others, a replaced store, another language.

#pragma once

#include <deque>
#include <functional>

#include "app/EventPoster.h"

class UpdateGate final : public EventPoster {
public:
    // `formIsOpen` is asked on the event thread.
    UpdateGate(EventPoster& events, std::function<bool()> formIsOpen);

    // Events keep their order, also those that are held back.
    // [any-thread]
    void post(std::string name, std::function<void()> event) override;

    // After each event: lets the next one go when the form is gone.
    // [event thread]
    void eventDone();

private:
    void releaseOne();

    EventPoster& m_events;
    const std::function<bool()> m_formIsOpen;
    std::deque<std::function<void()>> m_held;
    bool m_releasing = false;
};
