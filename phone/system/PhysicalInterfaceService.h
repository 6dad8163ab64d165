// Tells subscribers of the telephone's own keys and its hook switch, beside what they do on screen.

#pragma once

#include <functional>
#include <vector>

#include <framework/services/PhysicalInterfaceServiceIfc.h>

#include "app/EventPoster.h"

struct PhoneKey;

class PhysicalInterfaceService final : public PhysicalInterfaceServiceIfc {
public:
    explicit PhysicalInterfaceService(EventPoster& events);

    bool subscribe(physicalEventObserver* observer,
                   const std::vector<PhysDefs::SubscriptionGrp>& groups) override;

    // Posts an event for each subscriber. Nothing for what is no key of the telephone's own keypad:
    // a computer's keyboard, a row or a tab that was pointed at.
    // [event thread]
    void keyPressed(const PhoneKey& key);
    void hookChanged(bool offHook);

    // The phonelets were stopped: nobody listens any more.
    void dropObservers() { m_observers.clear(); }

private:
    void tell(const char* event, std::function<void(physicalEventObserver&)> call);

    EventPoster& m_events;
    std::vector<physicalEventObserver*> m_observers;
};
