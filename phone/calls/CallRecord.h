// A call of the telephone, as far as it is known.

#pragma once

#include <string>

#include "LineIfc.h"

struct CallRecord {
    std::string id;
    std::string line; // its number
    bool incoming = false;
    std::string number; // the other's: as it was dialled, or as the line says; "" when nobody knows
    std::string name;   // as the line says; "" when it does not
    CallState state = CallState::Initiated;
    CallEnd why = CallEnd::Cleared; // of one that is over
    bool lineIsOut = false;         // of one that is over: its line is gone, or out of service

    // Null and Failed are the end of a call.
    bool isOver() const { return state == CallState::Null || state == CallState::Failed; }
    // Whether it waits here for an answer.
    bool rings() const { return incoming && (state == CallState::Initiated || state == CallState::Alerting); }
};
