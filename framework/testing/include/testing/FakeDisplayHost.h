// A telephone around one display, for tests: a clock that is moved by hand, the keys, and the last
// published frame as text. After each key or time-out it delivers what the widgets raised and lets
// the display publish, as the telephone does.
//
//     FakeDisplayHost host;
//     DisplayAPI::Display display{host, {}};
//     host.drive(display);
//     host.tap("66");
//     host.advance(1000ms);
//     EXPECT_EQ(host.screen(), "...");

#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <framework/display/Display.h>
#include <framework/display/Frame.h>
#include <framework/host/DisplayHostIfc.h>
#include <framework/host/EventQueue.h>
#include <framework/host/Key.h>
#include <framework/host/TextScreen.h>

#include <testing/FakeTranslator.h>

class FakeDisplayHost final : public DisplayAPI::DisplayHostIfc {
public:
    FakeDisplayHost() { DisplayAPI::EventQueue::discardAll(); }
    ~FakeDisplayHost() override { DisplayAPI::EventQueue::discardAll(); }

    FakeTranslator phoneTexts; // "phone.ok" and so on
    std::vector<DisplayAPI::FrameMoment> moments;
    std::shared_ptr<const DisplayAPI::Frame> frame; // the last one; null before the first

    // Shows the display and hands it keys and time from now on. Not owned.
    void drive(DisplayAPI::Display& display)
    {
        m_pDisplay = &display;
        display.show();
    }

    // A key, and all that follows from it. False when it means nothing to the display.
    bool press(const DisplayAPI::Key& key)
    {
        const auto meant = m_pDisplay->keyPressed(key);
        settle();
        return meant;
    }
    bool press(DisplayAPI::Key::Kind kind, int index = 0) { return press(DisplayAPI::Key::of(kind, index)); }

    // Digit keys, one after the other without a pause.
    void tap(const std::string& digits)
    {
        for (const auto digit : digits)
            press(DisplayAPI::Key::ofDigit(digit));
    }

    // Characters of a computer's keyboard; ASCII only, press() takes others.
    void type(const std::string& text)
    {
        for (const auto character : text)
            press(DisplayAPI::Key::ofText(std::string(1, character)));
    }

    // Lets the time pass, with every wake-up that the display asked for on the way.
    void advance(std::chrono::milliseconds time)
    {
        const auto end = m_now + time;
        while (!m_wakeUps.empty() && *m_wakeUps.begin() <= end) {
            m_now = std::max(m_now, *m_wakeUps.begin());
            m_wakeUps.erase(m_wakeUps.begin());
            m_pDisplay->timePassed();
            settle();
        }
        m_now = end;
    }

    // Delivers what the widgets raised; then the display publishes.
    void settle()
    {
        DisplayAPI::EventQueue::deliver([this](const char*, const std::function<void()>& deliver) {
            deliver();
            m_pDisplay->eventDone();
        });
        m_pDisplay->eventDone();
    }

    // The last published frame; "" before the first.
    std::string screen() const { return frame ? DisplayAPI::toText(*frame) : std::string{}; }

    std::chrono::milliseconds now() const override { return m_now; }
    void wakeAt(std::chrono::milliseconds when) override { m_wakeUps.insert(when); }
    void publish(std::shared_ptr<const DisplayAPI::Frame> published, DisplayAPI::FrameMoment moment) override
    {
        frame = std::move(published);
        moments.push_back(moment);
    }
    std::vector<std::string> charactersOnKey(char digit) const override
    {
        static const std::vector<std::string> letters{" 0",   ".,-'&1", "abc2",  "def3", "ghi4",
                                                      "jkl5", "mno6",   "pqrs7", "tuv8", "wxyz9"};
        std::vector<std::string> characters;
        if (digit >= '0' && digit <= '9') {
            for (const auto character : letters[static_cast<std::size_t>(digit - '0')])
                characters.emplace_back(1, character);
        }
        return characters;
    }
    const DisplayAPI::TranslatorIfc* translator() const override { return &phoneTexts; }

private:
    DisplayAPI::Display* m_pDisplay = nullptr;
    std::chrono::milliseconds m_now{0};
    std::multiset<std::chrono::milliseconds> m_wakeUps;
};
