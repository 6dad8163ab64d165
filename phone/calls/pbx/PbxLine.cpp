#include "PbxLine.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/PhoneLog.h"
#include "directory/ContactText.h"

namespace {

constexpr char nSOURCE[] = "./phone/calls/pbx/PbxLine";
constexpr std::size_t nMOST_CALLS = 16;      // more do not come in
constexpr std::size_t nLONGEST_CALLER = 100; // characters

struct Reason {
    std::string_view word; // an event's cause, or an error's value
    CallEnd why;
};
constexpr std::array REASONS = {
    Reason{"busy", CallEnd::Busy},
    Reason{"resourceBusy", CallEnd::Busy},
    Reason{"networkBusy", CallEnd::Busy},
    Reason{"trunksBusy", CallEnd::Busy},
    Reason{"destNotObtainable", CallEnd::NotFound},
    Reason{"invalidCalledDeviceID", CallEnd::NotFound},
    Reason{"invalidDestination", CallEnd::NotFound},
    Reason{"objectNotKnown", CallEnd::NotFound},
    Reason{"invalidNumberFormat", CallEnd::NotFound},
    Reason{"noCallToAnswer", CallEnd::NotFound},
    Reason{"callRejected", CallEnd::Declined},
    Reason{"callNotAnswered", CallEnd::NoAnswer},
    Reason{"normalClearing", CallEnd::Cleared},
    Reason{"callCancelled", CallEnd::Cleared},
    Reason{"networkNotObtainable", CallEnd::Unreachable},
    Reason{"networkOutOfOrder", CallEnd::Unreachable},
    Reason{"deviceOutOfService", CallEnd::Unreachable},
};

CallEnd reasonOf(const std::string& word)
{
    const auto known = std::ranges::find(REASONS, word, &Reason::word);
    return known == REASONS.end() ? CallEnd::Other : known->why;
}

// Why a request was of no use; nothing when it was.
std::optional<CallEnd> refusalIn(const Result<CstaElement>& answer)
{
    if (!answer)
        return CallEnd::Unreachable;
    const auto error = errorIn(answer.value());
    if (!error)
        return std::nullopt;
    PHONE_USER("the PBX refused a call: %s %s", error->group.c_str(), error->value.c_str());
    return reasonOf(error->value);
}

} // namespace

PbxLine::PbxLine(std::string device, PbxLink& link)
    : m_device(std::move(device))
    , m_link(link)
{
}

void PbxLine::setInService(bool inService)
{
    const auto trouble = inService ? LineTrouble::None : LineTrouble::Failed;
    if (m_trouble.exchange(trouble) == trouble && !inService)
        return;
    {
        std::lock_guard lock(m_mutex);
        m_inService = inService;
        while (!inService && !m_calls.empty())
            end(m_calls.begin(), CallState::Null, CallEnd::Unreachable);
    }
    m_pObserver->serviceChanged(*this);
}

bool PbxLine::placeCall(const std::string& callId, const std::string& number)
{
    std::lock_guard lock(m_mutex);
    if (!m_inService)
        return false;
    m_calls.push_back({callId, ""});
    begin(callId, makeCall(m_device, number), {"callingDevice", "callID"});
    return true;
}

// A PBX wants to know which call of the other device is meant.
bool PbxLine::pickUpCall(const std::string& callId, const std::string& device)
{
    std::lock_guard lock(m_mutex);
    if (!m_inService)
        return false;
    m_calls.push_back({callId, ""});
    m_link.request(snapshotDevice(device), [this, callId, device](const Result<CstaElement>& snapshot) {
        std::lock_guard answered(m_mutex);
        pickUp(callId, device, snapshot);
    });
    return true;
}

void PbxLine::pickUp(const std::string& callId, const std::string& device,
                     const Result<CstaElement>& snapshot)
{
    if (const auto refusal = refusalIn(snapshot)) {
        end(callId, CallState::Failed, *refusal);
        return;
    }
    const auto calls = callsIn(snapshot.value());
    const auto ringing = std::ranges::find_if(calls, &CstaCallAtDevice::rings);
    const auto call = find(callId);
    if (call == m_calls.end())
        return;
    if (ringing == calls.end() || call->toBeCleared) {
        end(call, CallState::Failed, call->toBeCleared ? CallEnd::Cleared : CallEnd::NotFound);
        return;
    }
    begin(callId, directedPickupCall({ringing->connection.callId, device}, m_device),
          {"pickedCall", "callID"});
}

// The answer to `request` has the PBX's name for the call at `idAt`. Without an answer, what events have said
// of the call holds.
void PbxLine::begin(const std::string& callId, CstaElement request,
                    std::initializer_list<std::string_view> idAt)
{
    m_link.request(std::move(request),
                   [this, callId, path = std::vector(idAt)](const Result<CstaElement>& answer) {
                       std::lock_guard lock(m_mutex);
                       const auto call = find(callId);
                       const bool goesOn = !answer && call != m_calls.end() && !call->pbxId.empty();
                       if (goesOn)
                           known(callId, "");
                       else if (const auto refusal = refusalIn(answer))
                           end(callId, CallState::Failed, *refusal);
                       else
                           known(callId, answer.value().textAt({path[0], path[1]}));
                   });
}

void PbxLine::known(const std::string& callId, const std::string& pbxId)
{
    const auto call = find(callId);
    if (call == m_calls.end())
        return;
    if (!pbxId.empty()) // what an event said before was a guess
        call->pbxId = pbxId;
    if (call->pbxId.empty())
        end(call, CallState::Failed, CallEnd::Other);
    else if (call->toBeCleared)
        clear(*call);
}

void PbxLine::answerCall(const std::string& callId)
{
    std::lock_guard lock(m_mutex);
    const auto call = find(callId);
    // Asked twice, a PBX would say that there is nothing to answer, as of a call that is over.
    if (call == m_calls.end() || call->pbxId.empty() || std::exchange(call->answering, true))
        return;
    m_link.request(::answerCall({call->pbxId, m_device}), [this, callId](const Result<CstaElement>& answer) {
        std::lock_guard answered(m_mutex);
        const auto refusal = refusalIn(answer);
        const auto refused = find(callId);
        if (!refusal || refused == m_calls.end())
            return;
        // Otherwise it still rings, and the PBX says how it goes on.
        refused->answering = false;
        if (refusal == CallEnd::NotFound)
            end(refused, CallState::Failed, CallEnd::NotFound);
    });
}

void PbxLine::clearCall(const std::string& callId)
{
    std::lock_guard lock(m_mutex);
    const auto call = find(callId);
    if (call == m_calls.end())
        return;
    call->toBeCleared = true;
    if (!call->pbxId.empty())
        clear(*call);
}

// The PBX says that the call is over; if it cannot, it is over here.
void PbxLine::clear(const Call& call)
{
    m_link.request(clearConnection({call.pbxId, m_device}),
                   [this, callId = call.id](const Result<CstaElement>& answer) {
                       std::lock_guard lock(m_mutex);
                       if (refusalIn(answer))
                           end(callId, CallState::Null, CallEnd::Cleared);
                   });
}

void PbxLine::follow(const CstaCallEvent& event)
{
    using Kind = CstaCallEvent::Kind;
    std::lock_guard lock(m_mutex);
    auto call = callOf(event);
    if (call == m_calls.end()) {
        if (event.kind == Kind::Delivered && event.device == m_device && m_calls.size() < nMOST_CALLS)
            m_calls.push_back({m_pObserver->callOffered(*this, {fitText(event.calling, nLONGEST_CALLER), ""}),
                               event.connection.callId});
        return;
    }
    switch (event.kind) {
    case Kind::Originated:
        break;
    case Kind::Delivered:
        m_pObserver->callStateChanged(call->id, CallState::Alerting, CallEnd::Cleared);
        break;
    case Kind::Established:
        m_pObserver->callStateChanged(call->id, CallState::Connected, CallEnd::Cleared);
        break;
    case Kind::Failed:
        clear(*call); // the device stays in the call until it hangs up
        end(call, CallState::Failed, reasonOf(event.cause));
        break;
    case Kind::ConnectionCleared:
        if (event.connection.deviceId == m_device || event.connection.deviceId.empty())
            end(call, CallState::Null, reasonOf(event.cause));
        else
            clear(*call); // the other one has gone
        break;
    case Kind::Diverted:
        if (event.device == m_device || event.connection.deviceId == m_device)
            end(call, CallState::Null, CallEnd::Cleared); // it rings elsewhere, or was taken there
        break;
    }
}

// A call's first events may come before the answer that names it. Its last ones never do: those are of a call
// that was given up before.
PbxLine::Calls::iterator PbxLine::callOf(const CstaCallEvent& event)
{
    using Kind = CstaCallEvent::Kind;
    const auto named = std::ranges::find(m_calls, event.connection.callId, &Call::pbxId);
    const bool isOffer = event.kind == Kind::Delivered && event.device == m_device;
    const bool isEnd =
        event.kind == Kind::Failed || event.kind == Kind::ConnectionCleared || event.kind == Kind::Diverted;
    const bool isOwn =
        event.calling == m_device || event.device == m_device || event.connection.deviceId == m_device;
    if (named != m_calls.end() || isOffer || isEnd || !isOwn)
        return named;
    const auto unnamed = std::ranges::find(m_calls, "", &Call::pbxId);
    if (unnamed != m_calls.end())
        unnamed->pbxId = event.connection.callId;
    return unnamed;
}

PbxLine::Calls::iterator PbxLine::find(const std::string& callId)
{
    return std::ranges::find(m_calls, callId, &Call::id);
}

void PbxLine::end(const std::string& callId, CallState state, CallEnd why)
{
    if (const auto call = find(callId); call != m_calls.end())
        end(call, state, why);
}

void PbxLine::end(Calls::iterator call, CallState state, CallEnd why)
{
    const auto id = call->id;
    m_calls.erase(call);
    m_pObserver->callStateChanged(id, state, why);
}
