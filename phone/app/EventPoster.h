// Where service threads leave what the event thread is to do.

#pragma once

#include <functional>
#include <string>

class EventPoster {
public:
    virtual ~EventPoster() = default;

    // Appends an event to the telephone's one queue. `name` stands in the log when the event
    // throws. Events run one at a time, in order, on the event thread and never on the caller's
    // stack; what is posted after the telephone stopped is dropped without running.
    // What the event refers to may be gone when it runs: capture weakly.
    // [any-thread]
    virtual void post(std::string name, std::function<void()> event) = 0;
};
