#include <gtest/gtest.h>

#include <vector>

#include "app/KeyGate.h"

using namespace std::chrono_literals;
using DisplayAPI::Frame;
using DisplayAPI::FrameMoment;
using DisplayAPI::FrameRole;
using DisplayAPI::Key;
using Verdict = KeyGate::Verdict;

namespace {

class KeyGateTest : public testing::Test {
protected:
    void popup(FrameRole role, std::uint64_t id = 7)
    {
        Frame frame;
        frame.visible = true;
        frame.popups.emplace_back();
        frame.popups.back().role = role;
        frame.popups.back().id = id;
        frames.publish(frame, FrameMoment::InsideEvent);
    }
    void noPopup() { frames.publish({}, FrameMoment::AfterEvent); }

    Verdict press(PhoneKey::Kind kind) { return gate.press(PhoneKey::of(kind)); }
    Verdict press(Key::Kind kind) { return gate.press(PhoneKey::of(Key::of(kind))); }

    ManualClock clock;
    EventThread events{clock};
    FrameStore frames{clock};
    std::vector<PhoneKey::Kind> routed;
    std::vector<std::uint64_t> closed;
    std::vector<bool> hurries;
    KeyGate gate{events,
                 frames,
                 {[this](const PhoneKey& key) { routed.push_back(key.kind); },
                  [this](std::uint64_t id) { closed.push_back(id); },
                  [this](bool urgent) { hurries.push_back(urgent); }}};
};

using Kinds = std::vector<PhoneKey::Kind>;
constexpr auto DISPLAY = PhoneKey::Kind::Display;

} // namespace

TEST_F(KeyGateTest, QueuesAKeyThatNothingStandsAgainst)
{
    EXPECT_EQ(press(Key::Kind::Ok), Verdict::Passed);
    EXPECT_EQ(routed, Kinds{});
    events.runPending();
    EXPECT_EQ(routed, Kinds{DISPLAY});
}

TEST_F(KeyGateTest, DropsAKeyUnderAProgressPopupAlsoWhenThePopupIsGoneByTheTimeItWouldAct)
{
    events.post("search", [&] {
        popup(FrameRole::Progress);
        EXPECT_EQ(press(Key::Kind::Ok), Verdict::Busy);
        noPopup();
    });
    events.runPending();
    EXPECT_EQ(routed, Kinds{});
}

TEST_F(KeyGateTest, ClosesTheNotificationThatWasSeenAndDoesNothingElse)
{
    popup(FrameRole::Notification, 42);
    EXPECT_EQ(press(Key::Kind::Ok), Verdict::Consumed);
    noPopup();
    events.runPending();
    EXPECT_EQ(closed, std::vector<std::uint64_t>{42});
    EXPECT_EQ(routed, Kinds{});
}

TEST_F(KeyGateTest, LetsTheTabKeyThroughUnderANotification)
{
    popup(FrameRole::Notification);
    EXPECT_EQ(press(PhoneKey::Kind::Phonebook), Verdict::Passed);
    events.runPending();
    EXPECT_EQ(routed, Kinds{PhoneKey::Kind::Phonebook});
}

TEST_F(KeyGateTest, NeverHoldsUpHookHangUpAndHome)
{
    popup(FrameRole::Progress);
    for (const auto kind : {PhoneKey::Kind::Hook, PhoneKey::Kind::HangUp, PhoneKey::Kind::Home}) {
        EXPECT_EQ(press(kind), Verdict::Passed);
        events.runPending();
        EXPECT_EQ(routed.back(), kind);
    }
}

TEST_F(KeyGateTest, LetsNobodyWaitUntilHookHangUpAndHomeHaveHadTheirTurn)
{
    press(Key::Kind::Ok);
    EXPECT_EQ(hurries, std::vector<bool>{});
    press(PhoneKey::Kind::HangUp);
    press(PhoneKey::Kind::Home);
    EXPECT_EQ(hurries, std::vector<bool>{true});
    events.runPending();
    EXPECT_EQ(hurries, (std::vector<bool>{true, false}));
}

TEST_F(KeyGateTest, ForgetsKeysThatWaitWhenTheUserGoesHomeOrHangsUp)
{
    for (const auto leaving : {PhoneKey::Kind::Home, PhoneKey::Kind::HangUp}) {
        routed.clear();
        press(Key::Kind::Ok);
        press(leaving);
        press(PhoneKey::Kind::Phonebook);
        events.runPending();
        EXPECT_EQ(routed, (Kinds{leaving, PhoneKey::Kind::Phonebook}));
    }
}

TEST_F(KeyGateTest, ForgetsKeysThatWaitWhenTheHandsetIsPutDownButNotWhenItIsLifted)
{
    for (const bool offHook : {false, true}) {
        frames.setHook(offHook, false);
        routed.clear();
        press(Key::Kind::Ok);
        press(PhoneKey::Kind::Hook);
        events.runPending();
        EXPECT_EQ(routed, offHook ? Kinds{PhoneKey::Kind::Hook} : (Kinds{PhoneKey::Kind::Hook, DISPLAY}));
    }
}
