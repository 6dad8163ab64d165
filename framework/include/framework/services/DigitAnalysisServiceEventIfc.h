// A call context provider: the phonelet that dialling is reported to while it is in front.
//
// Everything is called from the event queue, but for getEventHandlerName() and getDialPartyDetails(),
// which are asked directly, on the event thread and never while a call of the phonelet is on the stack.

#pragma once

#include <string>

#include <framework/Export.h>

class CallPartyIdentifier;
class InterDigitTimeOutEvent;

class FRAMEWORK_API DigitAnalysisServiceEventIfc {
public:
    virtual ~DigitAnalysisServiceEventIfc();

    // The digits typed so far make a number: dial it. The event is the caller's.
    virtual void handleInterDigitTimeout(InterDigitTimeOutEvent* event) = 0;
    // Nothing was dialled after going off-hook.
    virtual void handleInitialDigitTimeout(InterDigitTimeOutEvent* event) = 0;
    // Asked before each handleDialingStarted(); false keeps it away.
    virtual bool isDiallingOk() = 0;
    // Dialling began: with the first digit, or with none on going off-hook.
    virtual void handleDialingStarted(const std::string& digits) = 0;
    virtual void handleDialingStarted(const std::string& digits, CallPartyIdentifier party) = 0;
    // A placed call was connected, failed later or was cleared, or the user went on-hook or cancelled.
    // Never because a call request was refused.
    virtual void handleDialingStopped() = 0;
    // Fills in who is dialled; false when it does not know.
    virtual bool getDialPartyDetails(CallPartyIdentifier& party) = 0;
    // Writes the name under which the log mentions it.
    virtual void getEventHandlerName(std::string& name) = 0;
};
