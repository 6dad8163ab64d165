#include "CallService.h"

#include <algorithm>
#include <utility>

#include <framework/csta/CSTAEventIfc.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/communicationsServiceTexts.h>

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

} // namespace

CallService::CallService(EventPoster& events, CallHooks hooks)
    : m_events(events)
    , m_hooks(std::move(hooks))
{
}

CallService::~CallService() = default;

void CallService::addLine(std::unique_ptr<LineIfc> line)
{
    line->setObserver(this);
    m_lines.push_back(std::move(line));
}

void CallService::removeLine(const std::string& number)
{
    const auto found = std::find_if(m_lines.begin(), m_lines.end(),
                                    [&](const auto& line) { return line->number() == number; });
    if (found == m_lines.end())
        return;
    std::vector<std::string> cut;
    for (const auto& [id, call] : m_calls) {
        if (call.line == found->get())
            cut.push_back(id);
    }
    for (const auto& id : cut)
        callStateChanged(id, CallState::Null, CallEnd::Unreachable);
    for (const auto& id : cut)
        m_calls.at(id).line = nullptr;
    m_lines.erase(found);
}

void CallService::hangUp()
{
    for (const auto& [id, call] : m_calls) {
        if (call.line)
            call.line->clearCall(id);
    }
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

// No line here leads to a PBX that has such a feature.
void CallService::answerSystemStatus(CSTARequestSystemStatusRequest& request)
{
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
    const auto id = startCall(request, request.getCallingDevice(), place, number);
    if (!id.empty())
        request.setResponse(nSUCCESS, std::make_unique<CSTAMakeCallResponse>(id));
}

void CallService::pickUp(CSTADirectedPickupCallRequest& request)
{
    const auto take = [&](LineIfc& line, const std::string& callId) {
        return line.pickUpCall(callId, request.getCallToBePickedUp());
    };
    const auto id = startCall(request, request.getRequestingDeviceID(), take, "");
    if (!id.empty())
        request.setResponse(nSUCCESS, std::make_unique<CSTAMakeCallResponse>(id));
}

// The id of the call that has begun; "" with the refusal in the request. A number that is dialled is
// reported before anything that the line says of the call.
std::string CallService::startCall(CSTARequest& request, const std::string& device, const Start& start,
                                   const std::string& dialledNumber)
{
    auto* line = lineFor(device);
    if (!line) {
        const int cause = causeWithoutLine();
        const bool several = cause == CSTAErrorCode::LINE_SELECTION_NEEDED;
        PHONE_USER("no call: %s", several ? "no line is chosen" : "no line is available");
        refuse(request, cause);
        return "";
    }
    auto id = nextId();
    m_calls[id] = {line, !dialledNumber.empty()};
    if (!dialledNumber.empty())
        reportPlaced(id, dialledNumber);
    if (start(*line, id))
        return id;
    PHONE_USER("the line %s refused a call", line->number().c_str());
    m_calls.erase(id);
    refuse(request, CSTAErrorCode::OTHER);
    return "";
}

void CallService::takeSnapshot(CSTASnapshotDeviceRequest& request)
{
    if (!isOwnDevice(request.getDevice())) {
        refuse(request, CSTAErrorCode::OTHER);
        return;
    }
    std::vector<int> states;
    for (const auto& [id, call] : m_calls)
        states.push_back(static_cast<int>(call.state));
    request.setResponse(nSUCCESS, std::make_unique<CSTASnapshotDeviceResponse>(std::move(states)));
}

LineIfc* CallService::lineFor(const std::string& device) const
{
    std::vector<LineIfc*> usable;
    for (const auto& line : m_lines) {
        if (line->isInService())
            usable.push_back(line.get());
    }
    const bool named = !device.empty() && device != nOWN_DEVICE;
    const auto& wanted = named ? device : m_chosenLine;
    const auto found =
        std::find_if(usable.begin(), usable.end(), [&](auto* line) { return line->number() == wanted; });
    if (found != usable.end())
        return *found;
    return usable.size() == 1 && !named ? usable.front() : nullptr;
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

void CallService::callStateChanged(const std::string& callId, CallState state, CallEnd /*why*/)
{
    post("call state", [this, callId, state] { follow(callId, state); });
}

std::string CallService::callOffered(LineIfc& line, const Caller& /*caller*/)
{
    auto id = nextId();
    post("call offered", [this, id, &line] {
        // The line may have gone meanwhile.
        if (std::ranges::any_of(m_lines, [&](const auto& own) { return own.get() == &line; }))
            m_calls[id] = {&line, false, CallState::Alerting};
    });
    return id;
}

void CallService::serviceChanged(LineIfc& /*line*/)
{
    post("line service", [] {}); // the screen is painted anew
}

void CallService::follow(const std::string& callId, CallState state)
{
    const auto found = m_calls.find(callId);
    if (found == m_calls.end())
        return;
    found->second.state = state;
    const bool ended = state == CallState::Null || state == CallState::Failed;
    if (ended || state == CallState::Connected)
        reportStopped(found->second);
    if (ended)
        m_calls.erase(callId);
}

void CallService::reportPlaced(const std::string& callId, const std::string& number)
{
    post("call placed", [this, callId, number] {
        if (m_calls.count(callId) > 0 && m_hooks.placed)
            m_hooks.placed(number);
    });
}

void CallService::reportStopped(Call& call)
{
    if (std::exchange(call.dialing, false) && m_hooks.dialingStopped)
        m_hooks.dialingStopped();
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

void CallService::post(const char* name, std::function<void()> event)
{
    m_events.post(name, [alive = std::weak_ptr(m_alive), event = std::move(event)] {
        if (!alive.expired())
            event();
    });
}
