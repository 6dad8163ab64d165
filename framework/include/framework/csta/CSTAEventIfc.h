// A phonelet that asked for a CSTA monitor. Called from the event queue.

#pragma once

#include <framework/Export.h>

class CSTAEvent;

class FRAMEWORK_API CSTAEventIfc {
public:
    virtual ~CSTAEventIfc();

    // An event of one of its monitors; the caller's, valid during the call only.
    // [phonelet-thread]
    virtual void deliverEvent(CSTAEvent* event) = 0;
};
