// A line that calls are placed on: a SIP account, an extension of a PBX.

#pragma once

#include <string>

// The states of a connection as snapshots count them (ECMA-269 6.1.5).
enum class CallState : int { Null = 0, Initiated = 1, Alerting = 2, Connected = 3, Held = 4, Failed = 6 };

// Hears what becomes of the calls that were placed.
class LineObserverIfc {
public:
    virtual ~LineObserverIfc() = default;

    // Null and Failed end the call: its id is not used again.
    // [any-thread]
    virtual void callStateChanged(const std::string& callId, CallState state) = 0;
};

class LineIfc {
public:
    virtual ~LineIfc() = default;

    // The directory number of its device.
    // [any-thread]
    virtual std::string number() const = 0;

    // Whether calls can be placed on it now.
    // [phonelet-thread]
    virtual bool isInService() const = 0;

    // Starts a call; false when the line refuses it at once. What becomes of a call that was accepted
    // is told to `observer`, which outlives the call.
    // [phonelet-thread]
    virtual bool placeCall(const std::string& callId, const std::string& number,
                           LineObserverIfc& observer) = 0;

    // Takes over a call that rings at another device; as placeCall().
    // [phonelet-thread]
    virtual bool pickUpCall(const std::string& callId, const std::string& device,
                            LineObserverIfc& observer) = 0;

    // Ends a call. Its state is told as for any other end.
    // [phonelet-thread]
    virtual void clearCall(const std::string& callId) = 0;
};
