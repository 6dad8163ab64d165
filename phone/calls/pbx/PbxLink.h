// The connection to a PBX: CSTA XML over TCP, with a monitor on the telephone's own device.
//
// It connects by itself, again and again with growing pauses, and works on a thread of its own; whoever
// listens is told there. It is up once the PBX monitors the device and has said how it is. A PBX that says
// nothing at all for as long as a request may take is taken for dead.

#pragma once

#include <functional>
#include <memory>
#include <string>

#include "CstaMessages.h"
#include "PbxSettings.h"
#include "app/Result.h"

// [link's thread]
class PbxListenerIfc {
public:
    virtual ~PbxListenerIfc() = default;

    virtual void linkUp(const CstaSystemStatus& status) = 0;
    virtual void linkDown() = 0;
    // An attempt to get it up has failed; there will be another one.
    virtual void linkFailed() {}
    virtual void received(const CstaEventContent& event) = 0;
    // Whether what was received is not worked off yet: the PBX has to wait then.
    virtual bool isBehind() = 0;
};

class PbxLink {
public:
    // What the PBX answered, which may be a CSTAErrorCode; or why there is no answer.
    using Answer = std::function<void(const Result<CstaElement>&)>;

    // The listener outlives the link.
    PbxLink(PbxSettings settings, PbxListenerIfc& listener);
    ~PbxLink();

    PbxLink(const PbxLink&) = delete;
    PbxLink& operator=(const PbxLink&) = delete;

    void start();
    // Nobody is told or answered any more when it returns.
    void stop();

    // Answered once, on the link's thread, and no later than the request's time-out; not at all when the
    // link is stopped before.
    // [any-thread]
    void request(CstaElement message, Answer answer);

private:
    class Impl;
    std::shared_ptr<Impl> m_impl;
};
