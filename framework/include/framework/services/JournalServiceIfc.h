// The telephone's record of calls.
//
// An observer hears of every change of a list, once after it registered and then after each change.
// It is called from the event queue: never before addObserver() returned, never on the caller's
// stack, and not at all after removeObserver() returned.

#pragma once

#include <framework/Executable.h>

class JournalServiceObserverIfc;

class FRAMEWORK_API JournalServiceIfc : public Executable {
public:
    ~JournalServiceIfc() override;

    // Starts telling `observer` of changes; telling it twice is telling it once.
    // The journal does not own it: remove it before it dies.
    // [phonelet-thread]
    virtual void addObserver(JournalServiceObserverIfc* observer) = 0;

    // Stops telling it. A change that was already queued is dropped.
    // [phonelet-thread]
    virtual void removeObserver(JournalServiceObserverIfc* observer) = 0;
};
