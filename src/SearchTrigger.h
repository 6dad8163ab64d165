// The quiet period after the last key that a search of the corporate directory waits for.
//
// Its length is configured, and asked for again whenever the period begins. The phonelet hears of its
// end as an expiry of the timer with id().

#pragma once

#include <optional>

class EventContext;

class SearchTrigger {
public:
    // Creates the timer; one that is there already is stopped.
    void prepare(EventContext* pContext);
    // Begins the period, or begins it anew.
    void start(EventContext* pContext);
    // Begins it anew if it ended while another tab was shown, which then heard of its end.
    void resume(EventContext* pContext);
    void stop(EventContext* pContext);
    // Deletes the timer, if there is one. It stays when the telephone refuses.
    void remove(EventContext* pContext);

    bool isRunning(EventContext* pContext) const;
    // 0 without a timer.
    int id() const;

private:
    // In ms; nothing without the services to read it from.
    static std::optional<unsigned> configuredDuration(EventContext* pContext);
    void create(EventContext* pContext, unsigned duration);

    int m_id = 0;
    bool m_awaited = false;  // begun, and neither heard of nor stopped
    unsigned m_duration = 0; // what the timer was created with, in ms
};
