// The PBX behind the telephone, as the call service asks it for what is no call.

#pragma once

class CSTAButtonPressRequest;
class CSTARequestSystemStatusRequest;

class PbxIfc {
public:
    virtual ~PbxIfc() = default;

    // What is asked about a feature is answered from what is known; what is to be done with it is asked of
    // the PBX, and waited for.
    // [phonelet-thread]
    virtual void answerSystemStatus(CSTARequestSystemStatusRequest& request) = 0;

    // Does not wait.
    // [phonelet-thread]
    virtual void pressButton(CSTAButtonPressRequest& request) = 0;
};
