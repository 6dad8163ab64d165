// The dial plan: which digits make a number, and what a number is in its canonical form.

#pragma once

#include <string>

#include <framework/Executable.h>

class CallPartyIdentifier;
class DigitAnalysisServiceEventIfc;

class FRAMEWORK_API DigitAnalysisServiceIfc : public Executable {
public:
    ~DigitAnalysisServiceIfc() override;

    // Makes `provider` the one that dialling is reported to, in place of any other. Not owned: clear
    // it before it dies. Clearing one that is not the current provider gives false.
    // [phonelet-thread]
    virtual bool setCallContextProvider(DigitAnalysisServiceEventIfc* provider) = 0;
    virtual bool clearCallContextProvider(DigitAnalysisServiceEventIfc* provider) = 0;

    // Digits of the dialler popup: `complete` 0 while the user types, 1 when they are to be dialled.
    // False for no digits. What follows from them is queued, never reported before this returns.
    // [phonelet-thread]
    virtual bool setDialString(const std::string& digits, int complete) = 0;

    // Rewrites a number to its canonical form ("+49301234567"; internal and emergency numbers as they
    // are). A canonical number stays as it is; text that holds no number stays as it is.
    // [any-thread]
    virtual void convertToCanonical(std::string& number) = 0;

    // Who is dialled, for the call that is being set up; `result` says whether the party is known;
    // `mode` is 0.
    // [phonelet-thread]
    virtual void setDialPartyDetails(CallPartyIdentifier& party, bool result, int mode) = 0;
};
