// What the screen shows of calls: who, how it stands, and for some seconds why one has failed.
// [event thread]

#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <framework/display/Frame.h>
#include <framework/display/TranslatorIfc.h>

#include "CallRecord.h"
#include "app/Clock.h"
#include "app/EventTimers.h"

class CallBar {
public:
    struct Parts {
        const Clock& clock;
        EventTimers& timers;
        const DisplayAPI::TranslatorIfc& translator;
        // Who has a number, by the own phonebook: the names of all who do.
        std::function<std::vector<std::string>(const std::string& number)> namesOf;
    };

    explicit CallBar(Parts parts);

    // A call has come, has changed, or is over.
    void callChanged(const CallRecord& call);

    // In the order in which they began.
    std::vector<DisplayAPI::FrameCall> paint();

private:
    struct Shown {
        CallRecord call;
        std::string name; // from the phonebook; "" for none
        std::int64_t since = 0;
        std::chrono::milliseconds until{0}; // of one that has failed, by Clock::now()
    };

    std::string nameOf(const CallRecord& call) const;
    void keepFailed(Shown& shown);
    void dropFailed();
    DisplayAPI::FrameCall paint(const Shown& shown) const;

    const Parts m_parts;
    std::vector<Shown> m_shown;
};
