// The latest frame, for everybody who shows it.
//
// A frame that was made while a handler still runs is handed to readers only when the handler has
// gone on for another 30 ms, so that a screen that is passed by does not flicker; the frame at the
// end of an event always is.

#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include <framework/display/Frame.h>
#include <framework/host/DisplayHostIfc.h>

#include "app/Clock.h"

class FrameStore {
public:
    using FramePtr = std::shared_ptr<const DisplayAPI::Frame>;

    explicit FrameStore(const Clock& clock);

    // A frame that shows the same as the one before it is not a new one. Frames are numbered anew,
    // in one row whichever display they come from.
    // [event thread]
    void publish(const DisplayAPI::Frame& painted, DisplayAPI::FrameMoment moment);

    // These are shown beside every frame from now on, and beside the one that is to be seen.
    // [any-thread]
    void setHook(bool offHook, bool dialPad);
    void setCalls(std::vector<DisplayAPI::FrameCall> calls);

    // What is to be seen now; never null.
    // [any-thread]
    FramePtr latest();

    // The frame made last, be it handed to readers or not: what a key is judged by.
    // [any-thread]
    FramePtr newest() const;

    // Waits for a frame with a greater number; null when `limit` passed first, or after close().
    // [any-thread]
    FramePtr waitForFrameAfter(std::uint64_t number, std::chrono::milliseconds limit);

    // Wakes everybody who waits, for ever.
    // [any-thread]
    void close();

private:
    void setSigns(const std::function<void(DisplayAPI::FrameSigns&)>& set);
    FramePtr withSigns(const DisplayAPI::Frame& frame);
    void promoteWhenDue();

    const Clock& m_clock;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    DisplayAPI::FrameSigns m_signs;
    FramePtr m_latest;
    FramePtr m_waiting; // made inside a handler, not handed out yet
    std::chrono::milliseconds m_waitingSince{0};
    std::uint64_t m_number = 0;
    bool m_closed = false;
};
