#include "CallService.h"

#include <algorithm>
#include <utility>

#include <framework/csta/CSTAEventIfc.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/communicationsServiceTexts.h>

#include "PbxIfc.h"
#include "app/PhoneLog.h"

namespace {

constexpr char nSOURCE[] = "./phone/calls/CallService";

constexpr char nOWN_DEVICE[] = "localDeviceID";
constexpr int nSUCCESS = 0;
constexpr int nERROR = 1;

void refuse(CSTARequest& request, int cause)
{
    request.setResponse(nERROR, std::make_unique<CSTAErrorCode>(cause));
}

// Whether there is something to hang up in it.
const auto isOn = [](const auto& call) { return !call.record.rings() && !call.ended; };
// Whether it can be taken.
const auto rings = [](const auto& call) { return call.record.rings() && !call.ended; };

} // namespace

CallService::CallService(EventPoster& events, CallHooks hooks)
    : m_events(events)
    , m_hooks(std::move(hooks))
{
}

CallService::~CallService()
{
    // They report on threads of their own, for as long as they live.
    m_lines.clear();
}

void CallService::addLine(std::unique_ptr<LineIfc> line)
{
    line->setObserver(this);
    m_lines.push_back(std::move(line));
}

void CallService::removeLine(const LineIfc& line)
{
    const auto found = std::ranges::find_if(m_lines, [&](const auto& own) { return own.get() == &line; });
    if (found == m_lines.end())
        return;
    for (auto& call : m_calls) {
        if (call.line != found->get())
            continue;
        call.line = nullptr;
        callStateChanged(call.record.id, CallState::Null, CallEnd::Unreachable);
    }
    m_lines.erase(found);
    hearReports(); // they know the line by its address, which another may have next
}

bool CallService::hasCalls()
{
    hearReports();
    return !m_calls.empty();
}

bool CallService::answer()
{
    hearReports();
    auto* call = ringing();
    return call && answer(*call);
}

bool CallService::reject()
{
    hearReports();
    auto* call = ringing();
    if (call)
        end(*call);
    return call != nullptr;
}

void CallService::hangUp()
{
    hearReports();
    const auto front = std::find_if(m_calls.rbegin(), m_calls.rend(), isOn);
    if (front != m_calls.rend())
        end(*front);
}

bool CallService::answer(const std::string& callId)
{
    hearReports();
    const auto call = find(callId);
    return call != m_calls.end() && rings(*call) && answer(*call);
}

bool CallService::end(const std::string& callId)
{
    hearReports();
    const auto call = find(callId);
    if (call == m_calls.end())
        return false;
    end(*call);
    return true;
}

bool CallService::isCalling()
{
    hearReports();
    return std::ranges::any_of(m_calls, isOn);
}

std::vector<CallService::Call>::iterator CallService::find(const std::string& callId)
{
    return std::ranges::find_if(m_calls, [&](const auto& call) { return call.record.id == callId; });
}

// The latest call that rings here; null when none does.
CallService::Call* CallService::ringing()
{
    const auto found = std::find_if(m_calls.rbegin(), m_calls.rend(), rings);
    return found == m_calls.rend() ? nullptr : &*found;
}

bool CallService::answer(Call& call)
{
    if (call.line)
        call.line->answerCall(call.record.id);
    return call.line != nullptr;
}

void CallService::end(Call& call)
{
    call.ended = true;
    if (call.line)
        call.line->clearCall(call.record.id);
}

void CallService::sendRequest(CSTARequest& request)
{
    if (auto* start = dynamic_cast<CSTAMonitorStartRequest*>(&request))
        startMonitor(*start);
    else if (auto* stop = dynamic_cast<CSTAMonitorStopRequest*>(&request))
        stopMonitor(*stop);
    else if (dynamic_cast<CSTASystemStatusRequest*>(&request))
        request.setResponse(nSUCCESS, std::make_unique<CSTASystemStatusResponse>());
    else if (auto* status = dynamic_cast<CSTARequestSystemStatusRequest*>(&request))
        answerSystemStatus(*status);
    else if (auto* call = dynamic_cast<CSTAMakeCallRequest*>(&request))
        makeCall(*call);
    else if (auto* pickup = dynamic_cast<CSTADirectedPickupCallRequest*>(&request))
        pickUp(*pickup);
    else if (auto* snapshot = dynamic_cast<CSTASnapshotDeviceRequest*>(&request))
        takeSnapshot(*snapshot);
    else if (auto* button = dynamic_cast<CSTAButtonPressRequest*>(&request); button && m_pPbx)
        m_pPbx->pressButton(*button);
    else
        refuse(request, CSTAErrorCode::OTHER);
}

void CallService::startMonitor(CSTAMonitorStartRequest& request)
{
    if (!isOwnDevice(request.getDeviceObject())) {
        PHONE_REFUSED("no monitor on \"%s\": not a device of this telephone",
                      request.getDeviceObject().c_str());
        refuse(request, CSTAErrorCode::OTHER);
        return;
    }
    const auto id = nextId();
    m_monitors[id] = dynamic_cast<CSTAEventIfc*>(request.getSourceService());
    request.setResponse(nSUCCESS, std::make_unique<CSTAMonitorStartResponse>(id));
}

void CallService::stopMonitor(CSTAMonitorStopRequest& request)
{
    if (m_monitors.erase(request.getMonitorCrossRefID()) == 0) {
        refuse(request, CSTAErrorCode::OTHER);
        return;
    }
    request.setResponse(nSUCCESS, std::make_unique<CSTAMonitorStopResponse>());
}

// Without a PBX nobody has such a feature.
void CallService::answerSystemStatus(CSTARequestSystemStatusRequest& request)
{
    if (m_pPbx) {
        m_pPbx->answerSystemStatus(request);
        return;
    }
    using namespace communicationsServiceTexts;
    if (request.getFeatureData().Action != content_feature_query) {
        refuse(request, CSTAErrorCode::OTHER);
        return;
    }
    auto feature = request.getFeatureData();
    feature.Availability = content_feature_unavailable;
    request.setResponse(nSUCCESS,
                        std::make_unique<CSTARequestSystemStatusResponse>(systemState_enabled, feature));
}

void CallService::makeCall(CSTAMakeCallRequest& request)
{
    const auto number = request.getCalledDevice();
    if (number.empty()) {
        refuse(request, CSTAErrorCode::OTHER);
        return;
    }
    const auto toDial = m_hooks.toDialString ? m_hooks.toDialString(number) : number;
    const auto place = [&](LineIfc& line, const std::string& callId) {
        return line.placeCall(callId, toDial);
    };
    const auto id = startCall(request, request.getCallingDevice(), Kind::Dialled, number, place);
    if (!id.empty())
        request.setResponse(nSUCCESS, std::make_unique<CSTAMakeCallResponse>(id));
}

void CallService::pickUp(CSTADirectedPickupCallRequest& request)
{
    const auto& number = request.getCallToBePickedUp();
    const auto device = m_hooks.toExtension ? m_hooks.toExtension(number) : number;
    const auto take = [&](LineIfc& line, const std::string& callId) {
        return line.pickUpCall(callId, device);
    };
    const auto id = startCall(request, request.getRequestingDeviceID(), Kind::PickedUp, number, take);
    if (!id.empty())
        request.setResponse(nSUCCESS, std::make_unique<CSTADirectedPickupCallResponse>(id));
}

// The id of the call that has begun; "" with the refusal in the request. It is reported before anything
// that the line says of the call.
std::string CallService::startCall(CSTARequest& request, const std::string& device, Kind kind,
                                   const std::string& number, const Start& start)
{
    auto* line = lineFor(device);
    if (!line) {
        const int cause = causeWithoutLine();
        const bool several = cause == CSTAErrorCode::LINE_SELECTION_NEEDED;
        PHONE_USER("no call: %s", several ? "no line is chosen" : "no line is available");
        refuse(request, cause);
        // Who dials is told by the phonelet; of a call that cannot be taken over it says nothing.
        if (kind == Kind::PickedUp)
            reportRefused(number, Refusal{!several, false});
        return "";
    }
    const bool wasInUse = isInUse(*line);
    auto id = nextId();
    m_calls.push_back({{id, line->number(), false, number, ""}, line, kind == Kind::Dialled});
    reportBegun(id);
    if (start(*line, id))
        return id;
    PHONE_USER("the line %s refused a call", line->number().c_str());
    m_calls.erase(find(id));
    refuse(request, CSTAErrorCode::OTHER);
    reportRefused(number, Refusal{false, wasInUse});
    return "";
}

bool CallService::isInUse(const LineIfc& line) const
{
    return std::ranges::any_of(m_calls, [&](const auto& call) { return call.line == &line; });
}

void CallService::takeSnapshot(CSTASnapshotDeviceRequest& request)
{
    if (!isOwnDevice(request.getDevice())) {
        refuse(request, CSTAErrorCode::OTHER);
        return;
    }
    std::vector<int> states;
    for (const auto& call : m_calls)
        states.push_back(static_cast<int>(call.record.state));
    request.setResponse(nSUCCESS, std::make_unique<CSTASnapshotDeviceResponse>(std::move(states)));
}

LineIfc* CallService::lineFor(const std::string& device) const
{
    std::vector<LineIfc*> usable;
    for (const auto& line : m_lines) {
        if (line->isInService())
            usable.push_back(line.get());
    }
    if (device.empty() || device == nOWN_DEVICE)
        return usable.size() == 1 ? usable.front() : nullptr;
    const auto named =
        std::find_if(usable.begin(), usable.end(), [&](auto* line) { return line->number() == device; });
    return named == usable.end() ? nullptr : *named;
}

int CallService::causeWithoutLine() const
{
    const auto usable =
        std::count_if(m_lines.begin(), m_lines.end(), [](const auto& line) { return line->isInService(); });
    return usable > 1 ? CSTAErrorCode::LINE_SELECTION_NEEDED : CSTAErrorCode::NO_LINE_AVAILABLE;
}

bool CallService::isOwnDevice(const std::string& device) const
{
    return device == nOWN_DEVICE || std::any_of(m_lines.begin(), m_lines.end(),
                                                [&](const auto& line) { return line->number() == device; });
}

std::string CallService::nextId()
{
    return std::to_string(++m_lastId);
}

void CallService::callStateChanged(const std::string& callId, CallState state, CallEnd why)
{
    if (m_hooks.watcher)
        m_hooks.watcher->callHeardOf(callId, state, why);
    report([this, callId, state, why] { follow(callId, state, why); });
}

std::string CallService::callOffered(LineIfc& line, const Caller& caller)
{
    CallRecord record{nextId(), line.number(), true, caller.number, caller.name, CallState::Alerting};
    identify(record);
    if (m_hooks.watcher)
        m_hooks.watcher->callOffered(record);
    report([this, record, &line]() mutable {
        // The line may have gone meanwhile, and the call with it.
        if (std::ranges::any_of(m_lines, [&](const auto& own) { return own.get() == &line; }))
            m_calls.push_back({record, &line, false});
        else
            record.state = CallState::Null;
        reportChanged(record);
    });
    return record.id;
}

void CallService::serviceChanged(LineIfc& /*line*/)
{
    post("line service", [] {}); // the screen is painted anew
}

void CallService::follow(const std::string& callId, CallState state, CallEnd why)
{
    auto call = find(callId);
    if (call == m_calls.end())
        return;
    const bool isTaken = call->record.rings() && state == CallState::Connected;
    call->record.state = state;
    if (isTaken)
        call = std::rotate(call, call + 1, m_calls.end());
    const bool isOver = call->record.isOver();
    const bool stopsDialling =
        (isOver || state == CallState::Connected) && std::exchange(call->dialing, false);
    auto record = call->record;
    if (isOver) {
        record.why = call->ended ? CallEnd::Cleared : why;
        record.state = call->ended ? CallState::Null : state;
        record.lineIsOut = !call->line || !call->line->isInService();
        m_calls.erase(call);
    }
    if (stopsDialling && m_hooks.dialingStopped)
        m_hooks.dialingStopped();
    reportChanged(record);
}

void CallService::reportBegun(const std::string& callId)
{
    report([this, callId] {
        auto call = find(callId);
        if (call == m_calls.end())
            return;
        if (call->dialing && m_hooks.placed)
            call->record.name = m_hooks.placed(call->record.number);
        identify(call->record);
        reportChanged(call->record);
    });
}

void CallService::reportRefused(const std::string& number, Refusal why)
{
    CallRecord record{nextId(), "", false, number, "", CallState::Failed};
    record.why = CallEnd::Other;
    record.lineIsOut = why.lineIsOut;
    record.lineIsInUse = why.lineIsInUse;
    report([this, record]() mutable {
        identify(record);
        reportChanged(record);
    });
}

void CallService::reportChanged(const CallRecord& call)
{
    if (m_hooks.watcher)
        m_hooks.watcher->callChanged(call);
}

void CallService::identify(CallRecord& call) const
{
    if (m_hooks.identify)
        m_hooks.identify(call);
}

void CallService::raise(std::shared_ptr<CSTAEvent> event)
{
    post("CSTA event", [this, event = std::move(event)] {
        // A monitor may be stopped while another one is told.
        const auto monitors = m_monitors;
        for (const auto& [id, listener] : monitors) {
            if (listener && m_monitors.count(id) > 0)
                listener->deliverEvent(event.get());
        }
    });
}

// Each has an event of its own, should one end with an exception; it may find its work done.
void CallService::report(std::function<void()> news)
{
    {
        const std::lock_guard lock(m_reportsMutex);
        m_reports.push_back(std::move(news));
    }
    post("call", [this] { hearReports(); });
}

void CallService::hearReports()
{
    for (;;) {
        std::function<void()> news;
        {
            const std::lock_guard lock(m_reportsMutex);
            if (m_reports.empty())
                return;
            news = std::move(m_reports.front());
            m_reports.pop_front();
        }
        news();
    }
}

void CallService::post(const char* name, std::function<void()> event)
{
    m_events.post(name, [alive = std::weak_ptr(m_alive), event = std::move(event)] {
        if (!alive.expired())
            event();
    });
}
