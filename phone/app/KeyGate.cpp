#include "app/KeyGate.h"

using DisplayAPI::FrameRole;
using Kind = PhoneKey::Kind;

namespace {

bool belongsToTheTelephone(const PhoneKey& key)
{
    return key.kind == Kind::Hook || key.kind == Kind::HangUp || key.kind == Kind::Home ||
           key.kind == Kind::Answer || key.kind == Kind::End;
}

} // namespace

KeyGate::KeyGate(EventThread& events, const FrameStore& frames, Actions actions)
    : m_events(events)
    , m_frames(frames)
    , m_actions(std::move(actions))
{
}

KeyGate::Verdict KeyGate::press(const PhoneKey& key)
{
    if (!belongsToTheTelephone(key))
        return judge(key);
    if (leaves(key))
        ++m_timesLeft;
    countUrgent(+1);
    m_events.postFirst("key", [this, key] {
        countUrgent(-1);
        m_actions.route(key);
    });
    return Verdict::Passed;
}

// Whether the user ends what they were doing.
bool KeyGate::leaves(const PhoneKey& key) const
{
    const bool putsDown = key.kind == Kind::Hook && m_frames.newest()->signs.offHook;
    return putsDown || key.kind == Kind::HangUp || key.kind == Kind::Home;
}

void KeyGate::countUrgent(int by)
{
    const std::lock_guard lock(m_urgentMutex);
    const bool before = m_urgent > 0;
    m_urgent += by;
    if (before != (m_urgent > 0))
        m_actions.hurry(!before);
}

KeyGate::Verdict KeyGate::judge(const PhoneKey& key)
{
    const auto frame = m_frames.newest();
    const auto& top = frame->top();
    if (top.role == FrameRole::Progress)
        return Verdict::Busy;
    // The tab key closes a notification too, but acts all the same: it leaves the screen.
    if (top.role == FrameRole::Notification && key.kind != Kind::Phonebook) {
        m_events.post("close notification", [this, id = top.id] { m_actions.closeNotification(id); });
        return Verdict::Consumed;
    }
    queue(key);
    return Verdict::Passed;
}

void KeyGate::queue(const PhoneKey& key)
{
    m_events.post("key", [this, key, timesLeft = m_timesLeft.load()] {
        if (timesLeft == m_timesLeft)
            m_actions.route(key);
    });
}
