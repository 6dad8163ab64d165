// The telephone's side of one phonelet: what the phonelet asks of its host about itself.
//
// None of these calls back into the phonelet before it returned: whatever follows from
// them arrives later from the event queue.

#pragma once

#include <string>

#include <framework/Export.h>

class FRAMEWORK_API PhoneletIfc {
public:
    PhoneletIfc() = default;
    virtual ~PhoneletIfc();

    PhoneletIfc(const PhoneletIfc&) = delete;
    PhoneletIfc& operator=(const PhoneletIfc&) = delete;

    // Brings the phonelet called `phonelet` to the front as a child of `from`; `mode` is 0.
    // The child's focus is reported with childGainedFocus() and childLostFocus(); the parent
    // is not hidden meanwhile. A name that no phonelet has is ignored and logged.
    // [phonelet-thread]
    virtual void push(const std::string& from, const std::string& phonelet, int mode) = 0;

    // Offers a number before the phonelet sends a call request for it. Returns 1 when the
    // telephone dials it itself (emergency numbers, by configuration), else 0: the caller
    // goes on. `callingDevice` may be empty: the telephone's own line.
    // [phonelet-thread]
    virtual int dialNumber(const std::string& number, const std::string& callingDevice) = 0;

    // Ends the phonelet's use of the screen; hide() follows. `name` is the name under which
    // the phonelet keeps its state.
    // [phonelet-thread]
    virtual void leave(const std::string& name) = 0;
};
