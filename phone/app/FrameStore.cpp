#include "app/FrameStore.h"

using DisplayAPI::Frame;
using DisplayAPI::FrameMoment;
using DisplayAPI::FrameSigns;
using std::chrono::milliseconds;

namespace {
constexpr milliseconds WORTH_SHOWING_AFTER{30};
} // namespace

FrameStore::FrameStore(const Clock& clock)
    : m_clock(clock)
    , m_latest(std::make_shared<const Frame>())
{
}

void FrameStore::publish(const Frame& painted, FrameMoment moment)
{
    {
        std::lock_guard lock(m_mutex);
        Frame frame = painted;
        frame.signs = m_signs;
        const bool inside = moment == FrameMoment::InsideEvent;
        if (inside)
            promoteWhenDue();
        if (frame.showsTheSameAs(*m_latest)) {
            m_waiting.reset();
            return;
        }
        if (inside && m_waiting && frame.showsTheSameAs(*m_waiting))
            return;
        frame.number = ++m_number;
        auto numbered = std::make_shared<const Frame>(std::move(frame));
        m_waiting = inside ? numbered : nullptr;
        m_waitingSince = m_clock.now();
        if (!inside)
            m_latest = std::move(numbered);
    }
    m_changed.notify_all();
}

void FrameStore::setSigns(const FrameSigns& signs)
{
    {
        std::lock_guard lock(m_mutex);
        if (m_signs == signs)
            return;
        m_signs = signs;
    }
    publish(*newest(), FrameMoment::AfterEvent);
}

FrameStore::FramePtr FrameStore::latest()
{
    std::lock_guard lock(m_mutex);
    promoteWhenDue();
    return m_latest;
}

FrameStore::FramePtr FrameStore::newest() const
{
    std::lock_guard lock(m_mutex);
    return m_waiting ? m_waiting : m_latest;
}

FrameStore::FramePtr FrameStore::waitForFrameAfter(std::uint64_t number, milliseconds limit)
{
    const auto until = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(m_mutex);
    for (;;) {
        promoteWhenDue();
        if (m_latest->number > number)
            return m_latest;
        if (m_closed || std::chrono::steady_clock::now() >= until)
            return nullptr;
        auto wake = until;
        if (m_waiting) {
            const auto due = m_waitingSince + WORTH_SHOWING_AFTER - m_clock.now();
            wake = std::min(wake, std::chrono::steady_clock::now() + due);
        }
        m_changed.wait_until(lock, wake);
    }
}

void FrameStore::close()
{
    {
        std::lock_guard lock(m_mutex);
        m_closed = true;
    }
    m_changed.notify_all();
}

void FrameStore::promoteWhenDue()
{
    if (m_waiting && m_clock.now() - m_waitingSince >= WORTH_SHOWING_AFTER)
        m_latest = std::move(m_waiting);
}
