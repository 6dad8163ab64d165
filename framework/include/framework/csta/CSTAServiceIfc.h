// The telephone's call control, as CSTA sees it (ECMA-269).

#pragma once

#include <framework/Executable.h>

class CSTARequest;

class FRAMEWORK_API CSTAServiceIfc : public Executable {
public:
    ~CSTAServiceIfc() override;

    // Carries the request out; the outcome stands in the request afterwards. A call that cannot be
    // placed fails with CSTAErrorCode: NO_LINE_AVAILABLE without a line, LINE_SELECTION_NEEDED with
    // several and none chosen. Events that follow are queued. May block for the line's answer.
    // [phonelet-thread]
    virtual void sendRequest(CSTARequest& request) = 0;
};
