#include "calls/CallBar.h"

#include <gtest/gtest.h>

#include "app/EventThread.h"

namespace {

using DisplayAPI::FrameCall;
using std::chrono::milliseconds;
using std::chrono::seconds;

// Keys for texts.
class Keys final : public DisplayAPI::TranslatorIfc {
public:
    std::string translate(const std::string& key) const override { return key; }
    std::string translate(const std::string& key, const std::string& parameter) const override
    {
        return key + " " + parameter;
    }
};

class Bar : public testing::Test {
protected:
    static CallRecord dialled(CallState state, CallEnd why = CallEnd::Cleared)
    {
        return {"1", "20", false, "030123", "", state, why, false, false, "030 123", {}};
    }
    static CallRecord incoming(CallState state, CallEnd why = CallEnd::Cleared)
    {
        return {"1", "20", true, "030123", "Anna's telephone", state, why, false, false, "030 123", {}};
    }
    static CallRecord incoming(const std::vector<std::string>& names)
    {
        auto call = incoming(CallState::Alerting);
        call.names = names;
        return call;
    }

    // "Miller, Anna 030 123: phone.call.calling" for each call.
    std::vector<std::string> shown()
    {
        std::vector<std::string> texts;
        for (const auto& call : screen)
            texts.push_back(call.name + (call.number.empty() ? "" : " ") + call.number + ": " + call.text);
        return texts;
    }
    using Texts = std::vector<std::string>;

    Bar()
    {
        events.setDone([this] { bar.repaint(); });
    }

    Keys keys;
    ManualClock clock;
    EventThread events{clock};
    std::vector<FrameCall> screen;
    CallBar bar{{clock, events, keys, [this](auto calls) { screen = std::move(calls); }}};
};

TEST_F(Bar, FollowsACallThatIsPlaced)
{
    EXPECT_EQ(shown(), Texts{});
    for (const auto& [state, text] : {std::pair{CallState::Initiated, "calling"},
                                      {CallState::Alerting, "alerting"},
                                      {CallState::Connected, "connected"},
                                      {CallState::Held, "held"}}) {
        bar.callChanged(dialled(state));
        EXPECT_EQ(shown(), Texts{std::string("030 123: phone.call.") + text});
    }
    bar.callChanged(dialled(CallState::Null));
    EXPECT_EQ(shown(), Texts{});
}

TEST_F(Bar, KnowsSinceWhenACallIsConnected)
{
    bar.callChanged(dialled(CallState::Alerting));
    EXPECT_EQ(screen[0].since, 0);
    bar.callChanged(dialled(CallState::Connected));
    const auto since = std::chrono::duration_cast<milliseconds>(clock.wallClock().time_since_epoch()).count();
    clock.advance(seconds(5));
    bar.callChanged(dialled(CallState::Held));
    bar.callChanged(dialled(CallState::Connected));
    EXPECT_EQ(screen[0].since, since);
}

TEST_F(Bar, SaysForSomeSecondsWhyACallFailed)
{
    for (const auto& [why, text] : {std::pair{CallEnd::Busy, "busy"},
                                    {CallEnd::NotFound, "notFound"},
                                    {CallEnd::Declined, "declined"},
                                    {CallEnd::NoAnswer, "noAnswer"},
                                    {CallEnd::Unreachable, "unreachable"},
                                    {CallEnd::Other, "failed"}}) {
        bar.callChanged(dialled(CallState::Initiated));
        bar.callChanged(dialled(CallState::Failed, why));
        EXPECT_EQ(shown(), Texts{std::string("030 123: phone.call.") + text});
        EXPECT_EQ(screen[0].state, FrameCall::State::Failed);
        events.advance(clock, seconds(5));
        EXPECT_EQ(shown().size(), 1u);
        events.advance(clock, seconds(1));
        EXPECT_EQ(shown(), Texts{});
    }
}

TEST_F(Bar, SaysNoLongerWhyACallFailedWhenTheNextOneBegins)
{
    bar.callChanged(dialled(CallState::Initiated));
    bar.callChanged(dialled(CallState::Failed, CallEnd::Busy));
    auto next = dialled(CallState::Initiated);
    next.id = "2";
    bar.callChanged(next);
    EXPECT_EQ(shown(), Texts{"030 123: phone.call.calling"});

    auto refused = dialled(CallState::Failed, CallEnd::Other);
    refused.id = "3";
    bar.callChanged(refused);
    EXPECT_EQ(shown().size(), 2U) << "it did not begin";
}

TEST_F(Bar, SaysWhyACallDidNotEvenBegin)
{
    auto call = dialled(CallState::Failed, CallEnd::Other);
    call.lineIsInUse = true;
    bar.callChanged(call);
    EXPECT_EQ(shown(), Texts{"030 123: phone.call.lineInUse"});
}

TEST_F(Bar, SaysThatTheLineIsOut)
{
    bar.callChanged(dialled(CallState::Initiated));
    auto call = dialled(CallState::Failed, CallEnd::Unreachable);
    call.lineIsOut = true;
    bar.callChanged(call);
    EXPECT_EQ(shown(), Texts{"030 123: phone.noLine"});
}

TEST_F(Bar, SaysThatAConnectionWasLost)
{
    bar.callOffered(incoming(CallState::Alerting));
    bar.callChanged(incoming(CallState::Connected));
    bar.callChanged(incoming(CallState::Null, CallEnd::Unreachable));
    EXPECT_EQ(shown(), Texts{"Anna's telephone 030 123: phone.call.lost"});
}

TEST_F(Bar, SaysNothingOfACallThatWasNotAnswered)
{
    bar.callOffered(incoming(CallState::Alerting));
    EXPECT_EQ(screen[0].state, FrameCall::State::Incoming);
    bar.callChanged(incoming(CallState::Null, CallEnd::NoAnswer));
    EXPECT_EQ(shown(), Texts{});
}

TEST_F(Bar, ShowsACallAsSoonAsItsLineTellsOfIt)
{
    bar.callOffered(incoming(CallState::Alerting));
    EXPECT_EQ(shown(), Texts{"Anna's telephone 030 123: phone.call.incoming"});
    bar.callChanged(incoming(CallState::Alerting));
    EXPECT_EQ(shown().size(), 1u);
    bar.callHeardOf("1", CallState::Connected, CallEnd::Cleared);
    EXPECT_EQ(shown(), Texts{"Anna's telephone 030 123: phone.call.connected"});
    EXPECT_NE(screen[0].since, 0);
    bar.callHeardOf("1", CallState::Null, CallEnd::Cleared);
    EXPECT_EQ(shown(), Texts{});
}

TEST_F(Bar, ForgetsACallerWhoGaveUpBeforeTheTelephoneKnewOfHim)
{
    bar.callOffered(incoming(CallState::Alerting));
    bar.callHeardOf("1", CallState::Null, CallEnd::NoAnswer);
    EXPECT_EQ(shown(), Texts{});
    bar.callChanged(incoming(CallState::Alerting));
    bar.callChanged(incoming(CallState::Null, CallEnd::NoAnswer));
    EXPECT_EQ(shown(), Texts{});
}

TEST_F(Bar, LeavesItToTheTelephoneToSayWhyACallHasFailed)
{
    bar.callChanged(dialled(CallState::Alerting));
    bar.callHeardOf("1", CallState::Failed, CallEnd::Unreachable);
    EXPECT_EQ(shown(), Texts{"030 123: phone.call.alerting"});
    auto call = dialled(CallState::Failed, CallEnd::Unreachable);
    call.lineIsOut = true;
    bar.callChanged(call);
    EXPECT_EQ(shown(), Texts{"030 123: phone.noLine"});
}

TEST_F(Bar, DoesNotGoBackToWhatTheTelephoneHearsLater)
{
    bar.callChanged(dialled(CallState::Initiated));
    bar.callHeardOf("1", CallState::Alerting, CallEnd::Cleared);
    bar.callHeardOf("1", CallState::Connected, CallEnd::Cleared);
    bar.callChanged(dialled(CallState::Alerting));
    EXPECT_EQ(shown(), Texts{"030 123: phone.call.connected"});
    bar.callChanged(dialled(CallState::Connected));
    bar.callChanged(dialled(CallState::Held));
    EXPECT_EQ(shown(), Texts{"030 123: phone.call.held"});
}

TEST_F(Bar, HearsNothingOfCallsThatItDoesNotShow)
{
    bar.callHeardOf("7", CallState::Connected, CallEnd::Cleared);
    EXPECT_EQ(shown(), Texts{});
}

TEST_F(Bar, NamesACallerByTheOwnPhonebook)
{
    bar.callOffered(incoming({"Miller, Anna"}));
    EXPECT_EQ(shown(), Texts{"Miller, Anna 030 123: phone.call.incoming"});
}

TEST_F(Bar, NamesAllWhoHaveTheNumber)
{
    bar.callOffered(incoming({"Adams, Bob", "Miller, Anna"}));
    EXPECT_EQ(screen[0].name, "Adams, Bob / Miller, Anna");
    bar.callChanged(incoming(CallState::Null));
    bar.callOffered(incoming({"Adams, Bob", "Miller, Anna", "Smith, Zoe", "Young, Max"}));
    EXPECT_EQ(screen[0].name, "Adams, Bob / Miller, Anna / …");
}

TEST_F(Bar, SaysThatACallerIsUnknown)
{
    auto call = incoming(CallState::Alerting);
    call.number = call.shownNumber = call.name = "";
    bar.callOffered(call);
    EXPECT_EQ(shown(), Texts{"phone.call.unknown: phone.call.incoming"});
}

TEST_F(Bar, ShowsCallsInTheOrderOfTheirBeginnings)
{
    bar.callChanged(dialled(CallState::Connected));
    auto second = incoming(CallState::Alerting);
    second.id = "2";
    bar.callOffered(second);
    bar.callChanged(dialled(CallState::Failed, CallEnd::Busy));
    ASSERT_EQ(shown().size(), 2u);
    EXPECT_EQ(screen[1].id, "2");
}

} // namespace
