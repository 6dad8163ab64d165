#include "app/FrameStore.h"

#include <utility>

using DisplayAPI::Frame;
using DisplayAPI::FrameCall;
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

void FrameStore::setHook(bool offHook, bool dialPad)
{
    setSigns([&](FrameSigns& signs) {
        signs.offHook = offHook;
        signs.dialPad = dialPad;
    });
}

void FrameStore::setCalls(std::vector<FrameCall> calls)
{
    setSigns([&](FrameSigns& signs) { signs.calls = std::move(calls); });
}

void FrameStore::setSigns(const std::function<void(FrameSigns&)>& set)
{
    {
        std::lock_guard lock(m_mutex);
        const auto before = m_signs;
        set(m_signs);
        if (m_signs == before)
            return;
        promoteWhenDue();
        m_latest = withSigns(*m_latest);
        if (m_waiting)
            m_waiting = withSigns(*m_waiting);
    }
    m_changed.notify_all();
}

FrameStore::FramePtr FrameStore::withSigns(const Frame& frame)
{
    auto changed = std::make_shared<Frame>(frame);
    changed->signs = m_signs;
    changed->number = ++m_number;
    return changed;
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
