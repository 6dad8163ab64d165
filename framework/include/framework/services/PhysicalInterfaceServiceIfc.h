// The telephone's keys, hook switch and jacks, for those who want the raw events.

#pragma once

#include <vector>

#include <framework/Executable.h>
#include <framework/services/PhysDefs.h>

class physicalEventObserver;

class FRAMEWORK_API PhysicalInterfaceServiceIfc : public Executable {
public:
    ~PhysicalInterfaceServiceIfc() override;

    // Tells `observer` of the keys in `groups`, besides what they do on the screen. Not owned. False
    // for no group, or one that the telephone does not know.
    // [phonelet-thread]
    virtual bool subscribe(physicalEventObserver* observer,
                           const std::vector<PhysDefs::SubscriptionGrp>& groups) = 0;
};
