#include "app/UpdateGate.h"

UpdateGate::UpdateGate(EventPoster& events, std::function<bool()> mustWait)
    : m_events(events)
    , m_mustWait(std::move(mustWait))
{
}

void UpdateGate::post(std::string name, std::function<void()> event)
{
    m_events.post(std::move(name), [this, event = std::move(event)] {
        if (!m_held.empty() || m_mustWait())
            m_held.push_back(event);
        else
            event();
    });
}

void UpdateGate::eventDone()
{
    if (m_held.empty() || m_releasing || m_mustWait())
        return;
    m_releasing = true;
    m_events.post("held change", [this] { releaseOne(); });
}

void UpdateGate::releaseOne()
{
    m_releasing = false;
    if (m_mustWait())
        return;
    const auto event = std::move(m_held.front());
    m_held.pop_front();
    event();
}
