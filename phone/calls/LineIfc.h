// A line that calls are placed on and come in on: a SIP account, an extension of a PBX.

#pragma once

#include <string>

// The states of a connection as snapshots count them (ECMA-269 6.1.5).
enum class CallState : int { Null = 0, Initiated = 1, Alerting = 2, Connected = 3, Held = 4, Failed = 6 };

// Why a call is over.
enum class CallEnd {
    Cleared, // one of both hung up
    Busy,
    NotFound, // there is no such number
    Declined,
    NoAnswer,
    Unreachable, // nobody answers there at all, or the line is gone
    Other,
};

// Who calls, as the line says; either may be "".
struct Caller {
    std::string number;
    std::string name;
};

// Why a line is out of service, as far as it knows.
enum class LineTrouble {
    None,
    Refused, // its number or password is not right
    Failed,  // something else, which is in the log
};

class LineIfc;

// Hears what becomes of a line's calls.
class LineObserverIfc {
public:
    virtual ~LineObserverIfc() = default;

    // Null and Failed end the call, and `why` says how: its id is not used again.
    // [any-thread]
    virtual void callStateChanged(const std::string& callId, CallState state, CallEnd why) = 0;

    // A call comes in and rings. What becomes of it is told under the id that this returns.
    // [any-thread]
    virtual std::string callOffered(LineIfc& line, const Caller& caller) = 0;

    // It went into service, or out of it, or knows more of the reason.
    // [any-thread]
    virtual void serviceChanged(LineIfc& line) = 0;
};

class LineIfc {
public:
    virtual ~LineIfc() = default;

    // Who is told from now on; null for nobody. The observer outlives the line. Called before all else.
    // [phonelet-thread]
    virtual void setObserver(LineObserverIfc* observer) = 0;

    // The directory number of its device.
    // [any-thread]
    virtual std::string number() const = 0;

    // Whether calls can be placed on it now.
    // [any-thread]
    virtual bool isInService() const = 0;

    // None while it is in service, and as long as nothing is known.
    // [any-thread]
    virtual LineTrouble trouble() const { return LineTrouble::None; }

    // What follows never waits for the network. What becomes of a call is told to the observer.

    // Starts a call; false when the line refuses it at once.
    // [phonelet-thread]
    virtual bool placeCall(const std::string& callId, const std::string& number) = 0;

    // Takes over a call that rings at another device; as placeCall().
    // [phonelet-thread]
    virtual bool pickUpCall(const std::string& callId, const std::string& device) = 0;

    // Takes a call that rings here. Nothing when it does not ring.
    // [phonelet-thread]
    virtual void answerCall(const std::string& callId) = 0;

    // Ends a call, or rejects one that rings here. Its state is told as for any other end.
    // [phonelet-thread]
    virtual void clearCall(const std::string& callId) = 0;
};
