#include "app/TimerService.h"

TimerService::TimerService(EventTimers& timers, const Clock& clock, Expired expired)
    : m_timers(timers)
    , m_clock(clock)
    , m_expired(std::move(expired))
{
}

TimerService::~TimerService()
{
    removeAll();
}

int TimerService::create(Phonelet* owner, unsigned ms)
{
    m_all[++m_lastId] = {owner, std::chrono::milliseconds(ms)};
    return m_lastId;
}

bool TimerService::start(int id)
{
    const auto timer = m_all.find(id);
    if (timer == m_all.end())
        return false;
    stop(id);
    timer->second.running = true;
    timer->second.current = ++m_starts;
    auto expiry = [this, id, start = m_starts, alive = std::weak_ptr(m_alive)] {
        if (!alive.expired())
            expire(id, start);
    };
    timer->second.event = m_timers.callAt(m_clock.now() + timer->second.duration, "timer", std::move(expiry));
    return true;
}

bool TimerService::stop(int id)
{
    const auto timer = m_all.find(id);
    if (timer == m_all.end())
        return false;
    m_timers.cancel(timer->second.event);
    timer->second.running = false;
    timer->second.current = 0;
    return true;
}

bool TimerService::reset(int id)
{
    return isRunning(id) && start(id);
}

bool TimerService::remove(int id)
{
    if (!stop(id))
        return false;
    m_all.erase(id);
    return true;
}

bool TimerService::isRunning(int id) const
{
    const auto timer = m_all.find(id);
    return timer != m_all.end() && timer->second.running;
}

void TimerService::reached(int id)
{
    if (const auto timer = m_all.find(id); timer != m_all.end())
        timer->second.running = false;
}

std::vector<int> TimerService::removeAll()
{
    std::vector<int> ids;
    for (const auto& [id, timer] : m_all)
        ids.push_back(id);
    for (const int id : ids)
        remove(id);
    return ids;
}

void TimerService::expire(int id, unsigned long start)
{
    const auto timer = m_all.find(id);
    if (timer == m_all.end() || timer->second.current != start)
        return;
    timer->second.current = 0;
    m_expired(*timer->second.owner, id);
}
