#include "app/Clock.h"

using std::chrono::milliseconds;
using std::chrono::system_clock;

namespace {
// Monday, 2 January 2023, 09:00 UTC: where a manual clock's days begin.
constexpr std::chrono::seconds MANUAL_START{1672650000};
} // namespace

milliseconds SystemClock::now() const
{
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

system_clock::time_point SystemClock::wallClock() const
{
    return system_clock::now();
}

void SystemClock::sleep(std::chrono::microseconds time) const
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, time, [this] { return m_urgent; });
}

void SystemClock::setUrgent(bool urgent)
{
    {
        const std::lock_guard lock(m_mutex);
        m_urgent = urgent;
    }
    m_changed.notify_all();
}

system_clock::time_point ManualClock::wallClock() const
{
    return system_clock::time_point(MANUAL_START) + now();
}

void ManualClock::sleep(std::chrono::microseconds time) const
{
    m_now += std::chrono::ceil<milliseconds>(time).count();
}
