// Call control on the telephone's lines, as CSTA sees it (ECMA-269).
//
// It never pretends: without a line, calls fail with "no line available", and the PBX's phonebook is
// unavailable. The telephone's own device can always be monitored.

#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <framework/csta/CSTAServiceIfc.h>

#include "LineIfc.h"
#include "app/EventPoster.h"

class CSTADirectedPickupCallRequest;
class CSTAEvent;
class CSTAEventIfc;
class CSTAMakeCallRequest;
class CSTAMonitorStartRequest;
class CSTAMonitorStopRequest;
class CSTARequestSystemStatusRequest;
class CSTASnapshotDeviceRequest;

// What the telephone does when calls come and go. Called as events; each may be empty.
struct CallHooks {
    // A call was placed to this number, as it was asked for.
    std::function<void(const std::string& number)> placed;
    // A placed call was connected, failed or was cleared: once for each.
    std::function<void()> dialingStopped;
    // What is sent to the line for a number that a phonelet asks for. Asked at once.
    std::function<std::string(const std::string& number)> toDialString;
};

class CallService final : public CSTAServiceIfc, private LineObserverIfc {
public:
    CallService(EventPoster& events, CallHooks hooks);
    ~CallService() override;

    // [phonelet-thread]
    void addLine(std::unique_ptr<LineIfc> line);
    // Its calls count as cleared.
    void removeLine(const std::string& number);
    // The line for calls that name none; "" for none chosen.
    void chooseLine(const std::string& number) { m_chosenLine = number; }

    // Ends all calls: the user hangs up. [phonelet-thread]
    void hangUp();
    bool hasCalls() const { return !m_calls.empty(); }

    void sendRequest(CSTARequest& request) override;

    // Tells every monitor of an event that a line or the PBX raised. [any-thread]
    void raise(std::shared_ptr<CSTAEvent> event);
    // Forgets the monitors of phonelets that were stopped.
    void dropObservers() { m_monitors.clear(); }

private:
    struct Call {
        LineIfc* line;
        bool dialing; // its end of dialling is still to be reported
        CallState state = CallState::Initiated;
    };

    void startMonitor(CSTAMonitorStartRequest& request);
    void stopMonitor(CSTAMonitorStopRequest& request);
    void answerSystemStatus(CSTARequestSystemStatusRequest& request);
    void makeCall(CSTAMakeCallRequest& request);
    void pickUp(CSTADirectedPickupCallRequest& request);
    void takeSnapshot(CSTASnapshotDeviceRequest& request);

    using Start = std::function<bool(LineIfc& line, const std::string& callId)>;
    std::string startCall(CSTARequest& request, const std::string& device, const Start& start,
                          const std::string& dialledNumber);
    LineIfc* lineFor(const std::string& device) const;
    int causeWithoutLine() const;
    bool isOwnDevice(const std::string& device) const;
    std::string nextId();

    void callStateChanged(const std::string& callId, CallState state, CallEnd why) override;
    std::string callOffered(LineIfc& line, const Caller& caller) override;
    void serviceChanged(LineIfc& line) override;
    void follow(const std::string& callId, CallState state);
    void reportPlaced(const std::string& callId, const std::string& number);
    void reportStopped(Call& call);
    void post(const char* name, std::function<void()> event);

    EventPoster& m_events;
    CallHooks m_hooks;
    std::vector<std::unique_ptr<LineIfc>> m_lines;
    std::string m_chosenLine;
    std::map<std::string, Call> m_calls;
    std::map<std::string, CSTAEventIfc*> m_monitors; // null for one that hears no events
    std::atomic<unsigned long> m_lastId = 0;
    // Tells an event that is queued that the service is gone.
    std::shared_ptr<const char> m_alive = std::make_shared<const char>();
};
