// What hears of CSTA events: one operation an event, each doing nothing until it is overridden.

#pragma once

#include <framework/Export.h>

class CSTADisplayUpdatedEvent;
class CSTAServiceInitiatedEvent;
class CSTASystemStatusEvent;

class FRAMEWORK_API CSTAEventObserverBase {
public:
    virtual ~CSTAEventObserverBase();

    // Events are valid during the call only.
    // [phonelet-thread]
    virtual void handleCSTASystemStatusEvent(CSTASystemStatusEvent* event);
    virtual void handleCSTADisplayUpdatedEvent(CSTADisplayUpdatedEvent* event);
    virtual void handleCSTAServiceInitiatedEvent(CSTAServiceInitiatedEvent* event);
};
