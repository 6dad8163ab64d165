// A call of the telephone, as far as it is known.

#pragma once

#include <string>
#include <vector>

#include "LineIfc.h"

struct CallRecord {
    std::string id;
    std::string line; // its number
    bool incoming = false;
    std::string number; // the other's: as it was dialled, or as the line says; "" when nobody knows
    std::string name;   // as the line says, or who placed the call; "" when they do not
    CallState state = CallState::Initiated;
    CallEnd why = CallEnd::Cleared; // of one that is over
    bool lineIsOut = false;         // of one that is over: its line is gone, or out of service
    bool lineIsInUse = false;       // of one that did not begin: its line has one call at a time, and has it

    std::string shownNumber = {};        // the number as people read it
    std::vector<std::string> names = {}; // of all who have it, by the own phonebook

    // Null and Failed are the end of a call.
    bool isOver() const { return state == CallState::Null || state == CallState::Failed; }
    // Whether it waits here for an answer.
    bool rings() const { return incoming && (state == CallState::Initiated || state == CallState::Alerting); }
};

// Sees what becomes of the telephone's calls.
class CallWatcherIfc {
public:
    virtual ~CallWatcherIfc() = default;

    // A call comes in, this moment: the telephone itself hears of it as its next event.
    // [any-thread]
    virtual void callOffered(const CallRecord& call) = 0;
    // A line has this moment said how a call stands, perhaps of one that nothing is known of yet.
    // [any-thread]
    virtual void callHeardOf(const std::string& callId, CallState state, CallEnd why) = 0;
    // The telephone knows that a call has begun, has changed, or is over: nothing more is heard of it then.
    // [event thread]
    virtual void callChanged(const CallRecord& call) = 0;
};
