// What the SIP engine says on its control connection.

#pragma once

#include <string>
#include <variant>

#include "calls/LineIfc.h"

// The answer to a command.
struct EngineResponse {
    std::string token; // of the command
    bool ok = false;   // whether the command was understood: no more than that
    std::string data;  // what people would read
};

// Something happened to a call.
struct EngineCallEvent {
    enum class Kind { Incoming, Ringing, Established, Closed };
    Kind kind = Kind::Closed;
    std::string id; // the Call-ID
    bool outgoing = false;
    std::string peerUri;
    std::string peerName; // "" when the peer gives none
    std::string reason;   // of Closed: "486 Busy Here", "Connection timed out"
};

// Something happened to the registration.
struct EngineRegistration {
    bool registered = false;
    std::string reason; // "200 OK", "401 Unauthorized"
};

// monostate: nothing that the telephone needs, or nothing that can be understood.
using EngineMessage = std::variant<std::monostate, EngineResponse, EngineCallEvent, EngineRegistration>;

EngineMessage engineMessageOf(const std::string& json);

// Why a call is over, from EngineCallEvent::reason.
CallEnd callEndOf(const std::string& reason);

// The Call-ID in the engine's answer to "callstat", which is about its current call; "" when that is not
// an outgoing one to `peerUri`.
std::string callIdIn(const std::string& callStatus, const std::string& peerUri);
