// Hears of the telephone's physical keys. Called from the event queue.

#pragma once

#include <string>

#include <framework/services/PhysDefs.h>

#include <framework/Export.h>

class Executable;

class FRAMEWORK_API physicalEventObserver {
public:
    virtual ~physicalEventObserver();

    // [phonelet-thread]
    virtual void buttonPressedEvent(PhysDefs::keyFunctionType function, int key, PhysDefs::actionType action,
                                    std::string name) = 0;
    virtual void hookswitchEvent(bool offHook) = 0;
    virtual void jackEvent(int jack, bool plugged) = 0;
    // The phonelet that subscribed: what it left at stop is dropped by it.
    virtual Executable* getSubscribingService() = 0;
};
