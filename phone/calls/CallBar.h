// What the screen shows of calls: who, how it stands, and for some seconds why one has failed.
//
// A call that comes in is shown when its line says so, and what a line says of a call is shown at once,
// even while the event thread waits for a directory.

#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include <framework/display/Frame.h>
#include <framework/display/TranslatorIfc.h>

#include "CallRecord.h"
#include "app/Clock.h"
#include "app/EventTimers.h"

class CallBar final : public CallWatcherIfc {
public:
    struct Parts {
        const Clock& clock;
        EventTimers& timers;
        const DisplayAPI::TranslatorIfc& translator;
        // Puts the calls on the screen, in the order in which they began. Called one at a time, and never
        // calls back. [any-thread]
        std::function<void(std::vector<DisplayAPI::FrameCall> calls)> show;
    };

    explicit CallBar(Parts parts);

    void callOffered(const CallRecord& call) override;
    void callHeardOf(const std::string& callId, CallState state, CallEnd why) override;
    void callChanged(const CallRecord& call) override;

    // Shows the calls anew: time has passed, or the language is another.
    // [any-thread]
    void repaint();

private:
    struct Shown {
        CallRecord call;
        std::int64_t since = 0;
        std::chrono::milliseconds until{0}; // of one that has failed, by Clock::now()
    };
    using AllShown = std::vector<Shown>;

    // What follows is called with the lock.
    AllShown::iterator find(const std::string& callId);
    void follow(Shown& shown, CallState state) const;
    void keepFailed(Shown& shown);
    void paint();
    DisplayAPI::FrameCall paint(const Shown& shown) const;

    const Parts m_parts;
    std::mutex m_mutex;
    AllShown m_shown;
};
