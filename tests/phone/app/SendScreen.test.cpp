#include "app/SendScreen.h"

#include <chrono>

#include <gtest/gtest.h>

#include <framework/display/Display.h>
#include <framework/display/SearchList.h>
#include <testing/FakeDisplayHost.h>

#include "app/EventThread.h"

namespace {

using Kind = DisplayAPI::Key::Kind;
using Phase = SendStatus::Phase;

class SendScreenTest : public testing::Test {
protected:
    SendScreenTest()
    {
        host.drive(display);
        display.setCurrent(&list);
    }

    void becomes(Phase phase, SendOutcome outcome = SendOutcome::None)
    {
        status.phase = phase;
        status.outcome = outcome;
        status.device = phase == Phase::Choosing ? "" : "Tablet";
        screen.sendStatusChanged(status);
        events.runPending();
        host.settle();
    }

    void press(Kind kind)
    {
        host.press(kind);
        events.runPending();
    }

    bool shows(const std::string& text) const { return host.screen().find(text) != std::string::npos; }

    DisplayAPI::Displayable* onTop() const { return display.getCurrent(); }

    ManualClock clock;
    EventThread events{clock};
    FakeTranslator translator;
    FakeDisplayHost host;
    DisplayAPI::Display display{host, {}};
    DisplayAPI::SearchList list;
    DisplayAPI::Display* pFront = &display;
    std::string asked; // of the sender
    SendStatus status{
        Phase::Idle, SendOutcome::None, "Ann.vcf", "", {{"00:11", "Ann's phone"}, {"00:22", "Tablet"}}, 0, 0,
        false};
    SendScreen screen{{events, translator, [this] { return pFront; },
                       [this](const std::string& address) { asked += "choose(" + address + ") "; },
                       [this] { asked += "cancel "; }}};
};

} // namespace

TEST_F(SendScreenTest, OffersTheDevices)
{
    becomes(Phase::Choosing);
    EXPECT_TRUE(shows("phone.send.choose")) << host.screen();
    EXPECT_TRUE(shows("Ann's phone"));
    press(Kind::Down);
    press(Kind::Ok);
    EXPECT_EQ(asked, "choose(00:22) ");
}

TEST_F(SendScreenTest, IsCancelledByBack)
{
    becomes(Phase::Choosing);
    press(Kind::Back);
    EXPECT_EQ(asked, "cancel ");
    becomes(Phase::Over, SendOutcome::Cancelled);
    EXPECT_TRUE(shows("phone.send.cancelled"));
    EXPECT_FALSE(shows("Ann's phone"));
}

TEST_F(SendScreenTest, TellsHowItStandsUntilItIsOver)
{
    becomes(Phase::Choosing);
    becomes(Phase::Connecting);
    EXPECT_TRUE(shows("phone.send.connecting(Tablet)")) << host.screen();
    EXPECT_FALSE(shows("Ann's phone"));
    becomes(Phase::Sending);
    EXPECT_TRUE(shows("phone.send.sending(Tablet)"));
    becomes(Phase::Over, SendOutcome::Sent);
    EXPECT_FALSE(shows("phone.send.sending"));
    EXPECT_TRUE(shows("phone.send.sent(Tablet)"));
    host.advance(std::chrono::seconds(6));
    EXPECT_EQ(onTop(), &list);
}

TEST_F(SendScreenTest, NamesTheDeviceOnlyWhereItIsTheDeviceThatMatters)
{
    becomes(Phase::Choosing);
    EXPECT_FALSE(shows("phone.send.choose("));
    for (const auto outcome :
         {SendOutcome::Cancelled, SendOutcome::NoDevice, SendOutcome::NoService, SendOutcome::Failed}) {
        becomes(Phase::Over, outcome);
        EXPECT_FALSE(shows("(Tablet)")) << host.screen();
    }
    for (const auto outcome :
         {SendOutcome::Sent, SendOutcome::Refused, SendOutcome::NotSupported, SendOutcome::OutOfRange}) {
        becomes(Phase::Over, outcome);
        EXPECT_TRUE(shows("(Tablet)")) << host.screen();
    }
}

TEST_F(SendScreenTest, CanBeCancelledOnItsWay)
{
    becomes(Phase::Connecting);
    becomes(Phase::Sending);
    press(Kind::Back);
    EXPECT_EQ(asked, "cancel ");
    press(Kind::Ok); // the only answer
    EXPECT_EQ(asked, "cancel cancel ");
}

TEST_F(SendScreenTest, DoesNotComeBackOverAScreenThatTookItsPlace)
{
    becomes(Phase::Connecting);
    display.setCurrent(&list);
    becomes(Phase::Sending);
    EXPECT_EQ(onTop(), &list);
    becomes(Phase::Over, SendOutcome::Refused);
    EXPECT_TRUE(shows("phone.send.refused(Tablet)"));
}

TEST_F(SendScreenTest, ComesBackForWhoWantsToSendAnotherMeanwhile)
{
    becomes(Phase::Connecting);
    becomes(Phase::Sending);
    display.setCurrent(&list);
    status.isAskedFor = true;
    becomes(Phase::Sending);
    EXPECT_TRUE(shows("phone.send.sending(Tablet)")) << host.screen();
    press(Kind::Back);
    EXPECT_EQ(asked, "cancel ");
}

TEST_F(SendScreenTest, IsNotShownWhileTheTelephoneIsIdle)
{
    pFront = nullptr;
    becomes(Phase::Connecting);
    becomes(Phase::Over, SendOutcome::Failed);
    EXPECT_EQ(onTop(), &list);
}
