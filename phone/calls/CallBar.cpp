#include "CallBar.h"

#include <algorithm>
#include <utility>

using DisplayAPI::FrameCall;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

constexpr seconds nFAILED_STAYS{6};
constexpr std::size_t nMOST_NAMES = 2;

// Whether there is something to say about its end. Who rang and was not answered in time, or who has
// hung up, is simply gone.
bool hasFailed(const CallRecord& call, bool wasConnected)
{
    if (call.incoming && !wasConnected)
        return false;
    return call.why != CallEnd::Cleared || call.state == CallState::Failed;
}

FrameCall::State stateOf(const CallRecord& call)
{
    if (call.rings())
        return FrameCall::State::Incoming;
    switch (call.state) {
    case CallState::Initiated:
        return FrameCall::State::Calling;
    case CallState::Alerting:
        return FrameCall::State::Alerting;
    case CallState::Connected:
        return FrameCall::State::Connected;
    case CallState::Held:
        return FrameCall::State::Held;
    case CallState::Null:
    case CallState::Failed:
        break;
    }
    return FrameCall::State::Failed;
}

const char* reason(const CallRecord& call, bool wasConnected)
{
    if (call.lineIsOut)
        return "phone.noLine";
    if (call.lineIsInUse)
        return "phone.call.lineInUse";
    if (wasConnected)
        return "phone.call.lost";
    switch (call.why) {
    case CallEnd::Busy:
        return "phone.call.busy";
    case CallEnd::NotFound:
        return "phone.call.notFound";
    case CallEnd::Declined:
        return "phone.call.declined";
    case CallEnd::NoAnswer:
        return "phone.call.noAnswer";
    case CallEnd::Unreachable:
        return "phone.call.unreachable";
    case CallEnd::Cleared:
    case CallEnd::Other:
        break;
    }
    return "phone.call.failed";
}

const char* textOf(FrameCall::State state)
{
    switch (state) {
    case FrameCall::State::Calling:
        return "phone.call.calling";
    case FrameCall::State::Alerting:
        return "phone.call.alerting";
    case FrameCall::State::Incoming:
        return "phone.call.incoming";
    case FrameCall::State::Connected:
        return "phone.call.connected";
    case FrameCall::State::Held:
        return "phone.call.held";
    case FrameCall::State::Failed:
        break;
    }
    return "phone.call.failed";
}

// A number that several have is never guessed at: it is one of them.
std::string nameOf(const CallRecord& call)
{
    std::string text;
    for (std::size_t i = 0; i < call.names.size() && i <= nMOST_NAMES; ++i)
        text += (text.empty() ? "" : " / ") + (i < nMOST_NAMES ? call.names[i] : "…");
    return text.empty() ? call.name : text;
}

} // namespace

CallBar::CallBar(Parts parts)
    : m_parts(std::move(parts))
{
}

void CallBar::callOffered(const CallRecord& call)
{
    const std::lock_guard lock(m_mutex);
    m_shown.push_back({call});
    paint();
}

void CallBar::callHeardOf(const std::string& callId, CallState state, CallEnd why)
{
    const std::lock_guard lock(m_mutex);
    const auto shown = find(callId);
    if (shown == m_shown.end())
        return;
    const bool isOver = state == CallState::Null || state == CallState::Failed;
    if (!isOver)
        follow(*shown, state);
    else if (shown->call.rings() || (state == CallState::Null && why == CallEnd::Cleared))
        m_shown.erase(shown);
    else
        return; // the telephone knows better why
    paint();
}

void CallBar::callChanged(const CallRecord& call)
{
    const std::lock_guard lock(m_mutex);
    auto shown = find(call.id);
    if (shown == m_shown.end()) {
        // One that is not shown any more has gone before the telephone knew.
        if (call.incoming || (call.isOver() && !hasFailed(call, false)))
            return;
        // Who calls again has read why the last one failed.
        if (!call.isOver())
            std::erase_if(m_shown, [](const auto& other) { return other.call.isOver(); });
        shown = m_shown.insert(m_shown.end(), {call});
    }
    const bool wasConnected = shown->since != 0;
    const auto before = std::exchange(shown->call, call).state;
    shown->call.state = before;
    follow(*shown, call.state);
    if (call.isOver() && hasFailed(call, wasConnected))
        keepFailed(*shown);
    else if (call.isOver())
        m_shown.erase(shown);
    paint();
}

void CallBar::repaint()
{
    const std::lock_guard lock(m_mutex);
    paint();
}

CallBar::AllShown::iterator CallBar::find(const std::string& callId)
{
    return std::ranges::find_if(m_shown, [&](const auto& shown) { return shown.call.id == callId; });
}

void CallBar::follow(Shown& shown, CallState state) const
{
    // The telephone may hear later than the screen; what was connected does not ring any more.
    if (shown.since != 0 && (state == CallState::Initiated || state == CallState::Alerting))
        return;
    shown.call.state = state;
    if (state == CallState::Connected && shown.since == 0)
        shown.since =
            std::chrono::duration_cast<milliseconds>(m_parts.clock.wallClock().time_since_epoch()).count();
}

void CallBar::keepFailed(Shown& shown)
{
    shown.until = m_parts.clock.now() + nFAILED_STAYS;
    m_parts.timers.callAt(shown.until, "failed call", [] {}); // the screen is painted anew
}

void CallBar::paint()
{
    std::erase_if(m_shown, [now = m_parts.clock.now()](const auto& shown) {
        return shown.call.isOver() && shown.until <= now;
    });
    std::vector<FrameCall> calls;
    for (const auto& shown : m_shown)
        calls.push_back(paint(shown));
    m_parts.show(std::move(calls));
}

FrameCall CallBar::paint(const Shown& shown) const
{
    FrameCall painted;
    painted.id = shown.call.id;
    painted.state = stateOf(shown.call);
    painted.since = shown.since;
    const bool failed = painted.state == FrameCall::State::Failed;
    painted.text =
        m_parts.translator.translate(failed ? reason(shown.call, shown.since != 0) : textOf(painted.state));
    painted.name = nameOf(shown.call);
    painted.number = shown.call.shownNumber;
    if (painted.name.empty())
        painted.name = std::exchange(painted.number, "");
    if (painted.name.empty())
        painted.name = m_parts.translator.translate("phone.call.unknown");
    return painted;
}
