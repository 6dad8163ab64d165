// Call control on the telephone's lines, as CSTA sees it (ECMA-269).
//
// It never pretends: without a line, calls fail with "no line available", and the PBX's phonebook is
// unavailable. The telephone's own device can always be monitored.

#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <framework/csta/CSTAServiceIfc.h>

#include "CallRecord.h"
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
class PbxIfc;

// What the telephone does when calls come and go. Called as events, where nothing else is said; each may
// be empty.
struct CallHooks {
    // A call was placed to this number, as it was asked for. Gives the name of who has it, as far as the
    // one who asked knows; "" for nobody.
    std::function<std::string(const std::string& number)> placed;
    // A placed call was connected, failed or was cleared: once for each.
    std::function<void()> dialingStopped;
    // What is sent to the line for a number that a phonelet asks for. Asked at once.
    std::function<std::string(const std::string& number)> toDialString;
    // What the exchange calls the device with a number that a phonelet asks for. Asked at once.
    std::function<std::string(const std::string& number)> toExtension;
    // Adds to a record who that is. [any-thread]
    std::function<void(CallRecord& call)> identify;
    // Not owned; outlives the service.
    CallWatcherIfc* watcher = nullptr;
};

class CallService final : public CSTAServiceIfc, private LineObserverIfc {
public:
    CallService(EventPoster& events, CallHooks hooks);
    ~CallService() override;

    // [phonelet-thread]
    void addLine(std::unique_ptr<LineIfc> line);
    // Its calls count as cleared. Nothing when it was removed before.
    void removeLine(const LineIfc& line);
    // Who is asked about features of the PBX; null for no PBX. Not owned. [phonelet-thread]
    void setPbx(PbxIfc* pbx) { m_pPbx = pbx; }

    // What the user does with calls. [phonelet-thread]

    // Takes the call that rings, the latest of several. False when none does. Never while a call of a
    // phonelet is on the stack, as all of these.
    bool answer();
    // Rejects it. False when none rings.
    bool reject();
    // Ends the call in front: the one that was begun or taken last. One that rings is not meant.
    void hangUp();
    // Takes or ends a certain call. False when it is over, or does not ring.
    bool answer(const std::string& callId);
    bool end(const std::string& callId);

    bool hasCalls();
    // Whether there is a call in front.
    bool isCalling();

    void sendRequest(CSTARequest& request) override;

    // Tells every monitor of an event that a line or the PBX raised. [any-thread]
    void raise(std::shared_ptr<CSTAEvent> event);
    // Forgets the monitors of phonelets that were stopped.
    void dropObservers() { m_monitors.clear(); }

private:
    struct Call {
        CallRecord record;
        LineIfc* line;
        bool dialing;       // its end of dialling is still to be reported
        bool ended = false; // the user has ended it: how it ends is of no interest
    };

    void startMonitor(CSTAMonitorStartRequest& request);
    void stopMonitor(CSTAMonitorStopRequest& request);
    void answerSystemStatus(CSTARequestSystemStatusRequest& request);
    void makeCall(CSTAMakeCallRequest& request);
    void pickUp(CSTADirectedPickupCallRequest& request);
    void takeSnapshot(CSTASnapshotDeviceRequest& request);

    using Start = std::function<bool(LineIfc& line, const std::string& callId)>;
    enum class Kind { Dialled, PickedUp };
    std::string startCall(CSTARequest& request, const std::string& device, Kind kind,
                          const std::string& number, const Start& start);
    bool isInUse(const LineIfc& line) const;
    LineIfc* lineFor(const std::string& device) const;
    int causeWithoutLine() const;
    bool isOwnDevice(const std::string& device) const;
    std::string nextId();

    void callStateChanged(const std::string& callId, CallState state, CallEnd why) override;
    std::string callOffered(LineIfc& line, const Caller& caller) override;
    void serviceChanged(LineIfc& line) override;
    void follow(const std::string& callId, CallState state, CallEnd why);
    std::vector<Call>::iterator find(const std::string& callId);
    Call* ringing();
    bool answer(Call& call);
    void end(Call& call);
    void reportBegun(const std::string& callId);
    struct Refusal {
        bool lineIsOut;
        bool lineIsInUse;
    };
    void reportRefused(const std::string& number, Refusal why);
    void reportChanged(const CallRecord& call);
    void identify(CallRecord& call) const;
    void report(std::function<void()> news);
    void hearReports();
    void post(const char* name, std::function<void()> event);

    EventPoster& m_events;
    CallHooks m_hooks;
    std::vector<std::unique_ptr<LineIfc>> m_lines;
    PbxIfc* m_pPbx = nullptr;
    std::vector<Call> m_calls;                       // the one that was begun or taken last is the last
    std::map<std::string, CSTAEventIfc*> m_monitors; // null for one that hears no events
    std::atomic<unsigned long> m_lastId = 0;
    // What is new of calls, in its order. Whatever the user does comes after all of it.
    std::mutex m_reportsMutex;
    std::deque<std::function<void()>> m_reports;
    // Tells an event that is queued that the service is gone.
    std::shared_ptr<const char> m_alive = std::make_shared<const char>();
};
