#include "calls/CallService.h"

#include <gtest/gtest.h>

#include <framework/csta/CSTAEventIfc.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/communicationsServiceTexts.h>

#include "TestLine.h"
#include "app/EventThread.h"

namespace {

using namespace communicationsServiceTexts;

class Listener final : public Executable, public CSTAEventIfc {
public:
    void deliverEvent(CSTAEvent* event) override { heard.push_back(event); }
    std::vector<CSTAEvent*> heard;
};

class Watcher final : public CallWatcherIfc {
public:
    void callOffered(const CallRecord& call) override { offers.push_back(call); }
    void callHeardOf(const std::string& callId, CallState state, CallEnd) override
    {
        heard.emplace_back(callId, state);
    }
    void callChanged(const CallRecord& call) override { changes.push_back(call); }

    std::vector<CallRecord> offers;
    std::vector<std::pair<std::string, CallState>> heard;
    std::vector<CallRecord> changes;
};

class Calls : public testing::Test {
protected:
    TestLine& addLine(const std::string& number, TestLine::Behaviour behaviour = TestLine::Behaviour::Waits)
    {
        auto line = std::make_unique<TestLine>(number, behaviour);
        auto& added = *line;
        calls.addLine(std::move(line));
        return added;
    }

    // "ok", or the cause of the refusal.
    std::string dial(const std::string& number, const std::string& from = "")
    {
        CSTAMakeCallRequest request;
        request.SetCalledDevice(number);
        if (!from.empty())
            request.SetCallingDevice(from);
        calls.sendRequest(request);
        return outcome(request);
    }

    static std::string outcome(const CSTARequest& request)
    {
        if (request.getResponseCode() == 0)
            return "ok";
        const auto* error = dynamic_cast<CSTAErrorCode*>(request.getResponse());
        return error ? std::to_string(error->getErrorCause()) : "no cause";
    }

    std::string monitor(Executable* source, const std::string& device = "localDeviceID")
    {
        CSTAMonitorStartRequest request{CSTAMonitorFilter()};
        request.setSourceService(source);
        request.setDeviceObject(device);
        calls.sendRequest(request);
        const auto* response = dynamic_cast<CSTAMonitorStartResponse*>(request.getResponse());
        return request.getResponseCode() == 0 && response ? response->getMonitorCrossRefID() : "";
    }

    std::vector<int> states()
    {
        CSTASnapshotDeviceRequest request("localDeviceID");
        calls.sendRequest(request);
        const auto* response = dynamic_cast<CSTASnapshotDeviceResponse*>(request.getResponse());
        std::vector<int> states;
        for (int call = 1; response && call <= response->numberOfCalls(); ++call)
            states.push_back(response->getCallState(call));
        return states;
    }

    std::string hooked() { return std::exchange(m_hooked, ""); }
    std::string after()
    {
        events.runPending();
        return hooked();
    }

    std::string m_hooked;
    std::string knownName;
    Watcher watcher;
    std::vector<CallRecord>& changes = watcher.changes;
    ManualClock clock;
    EventThread events{clock};
    CallService calls{events,
                      {[this](const std::string& number) {
                           m_hooked += "placed(" + number + ") ";
                           return knownName;
                       },
                       [this] { m_hooked += "stopped "; },
                       [](const std::string& number) { return "0" + number; },
                       [](const std::string& number) { return "extension " + number; },
                       [](CallRecord& call) { call.shownNumber = "number " + call.number; }, &watcher}};
};

TEST_F(Calls, FailWithoutALine)
{
    EXPECT_EQ(dial("4711"), std::to_string(CSTAErrorCode::NO_LINE_AVAILABLE));
    addLine("20").inService = false;
    EXPECT_EQ(dial("4711"), std::to_string(CSTAErrorCode::NO_LINE_AVAILABLE));
    EXPECT_EQ(after(), "");
    EXPECT_TRUE(states().empty());
}

TEST_F(Calls, NeedAChoiceAmongSeveralLines)
{
    auto& first = addLine("20");
    auto& second = addLine("21");
    EXPECT_EQ(dial("4711"), std::to_string(CSTAErrorCode::LINE_SELECTION_NEEDED));
    EXPECT_EQ(dial("4711", "21"), "ok");
    EXPECT_EQ(second.calls, std::vector<std::string>{"04711"});
    EXPECT_EQ(dial("4712", "localDeviceID"), std::to_string(CSTAErrorCode::LINE_SELECTION_NEEDED));
    second.inService = false;
    EXPECT_EQ(dial("4712", "localDeviceID"), "ok");
    EXPECT_EQ(first.calls, std::vector<std::string>{"04712"});
}

TEST_F(Calls, FromADeviceThatIsNoLineFail)
{
    addLine("20");
    EXPECT_EQ(dial("4711", "99"), std::to_string(CSTAErrorCode::NO_LINE_AVAILABLE));
}

TEST_F(Calls, ThatTheLineRefusesFailForAnotherReason)
{
    addLine("20", TestLine::Behaviour::Refuses);
    EXPECT_EQ(dial("4711"), std::to_string(CSTAErrorCode::OTHER));
    EXPECT_EQ(after(), ""); // a refused request does not stop dialling
    EXPECT_TRUE(states().empty());
    addLine("21");
    EXPECT_EQ(dial("", "21"), std::to_string(CSTAErrorCode::OTHER));
}

TEST_F(Calls, ThatTheLineRefusesFailInSight)
{
    auto& line = addLine("20");
    line.behaves = TestLine::Behaviour::Refuses;
    dial("4711");
    EXPECT_EQ(after(), ""); // not placed
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].number, "4711");
    EXPECT_EQ(changes[0].state, CallState::Failed);
    EXPECT_EQ(changes[0].why, CallEnd::Other);
    EXPECT_FALSE(changes[0].lineIsInUse);

    line.behaves = TestLine::Behaviour::Waits;
    dial("4711");
    line.behaves = TestLine::Behaviour::Refuses;
    dial("4712");
    EXPECT_EQ(after(), "placed(4711) ");
    EXPECT_EQ(changes.back().number, "4712");
    EXPECT_TRUE(changes.back().lineIsInUse);
    EXPECT_TRUE(calls.isCalling());
}

TEST_F(Calls, ThatCannotBeTakenOverFailInSight)
{
    CSTADirectedPickupCallRequest request;
    request.setCallToBePickedUp("33");
    calls.sendRequest(request);
    events.runPending();
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].number, "33");
    EXPECT_TRUE(changes[0].lineIsOut);
    dial("4711");
    events.runPending();
    EXPECT_EQ(changes.size(), 1u); // the phonelet says so
}

TEST_F(Calls, StopDiallingOnceWhenConnected)
{
    auto& line = addLine("20");
    EXPECT_EQ(dial("4711"), "ok");
    EXPECT_EQ(hooked(), ""); // never on the caller's stack
    EXPECT_EQ(after(), "placed(4711) ");
    EXPECT_EQ(states(), std::vector<int>{1});
    line.tell(CallState::Alerting);
    EXPECT_EQ(after(), "");
    line.tell(CallState::Connected);
    EXPECT_EQ(after(), "stopped ");
    EXPECT_EQ(states(), std::vector<int>{3});
    line.tell(CallState::Null);
    EXPECT_EQ(after(), "");
    EXPECT_TRUE(states().empty());
}

TEST_F(Calls, StopDiallingWhenTheyFailLater)
{
    addLine("20", TestLine::Behaviour::Busy);
    EXPECT_EQ(dial("4711"), "ok");
    EXPECT_EQ(after(), "placed(4711) stopped ");
    EXPECT_FALSE(calls.hasCalls());
}

TEST_F(Calls, StopDiallingWhenTheUserHangsUp)
{
    addLine("20");
    EXPECT_EQ(dial("4711"), "ok");
    calls.hangUp();
    EXPECT_EQ(after(), "placed(4711) stopped ");
    EXPECT_FALSE(calls.hasCalls());
    calls.hangUp();
}

TEST_F(Calls, EndWithTheirLine)
{
    const auto& line = addLine("20");
    EXPECT_EQ(dial("4711"), "ok");
    calls.removeLine(line);
    calls.removeLine(line);
    calls.hangUp();
    EXPECT_EQ(after(), "placed(4711) stopped ");
    EXPECT_EQ(dial("4711"), std::to_string(CSTAErrorCode::NO_LINE_AVAILABLE));
}

TEST_F(Calls, ArePickedUpOnALineOnly)
{
    CSTADirectedPickupCallRequest none;
    none.setCallToBePickedUp("33");
    calls.sendRequest(none);
    EXPECT_EQ(outcome(none), std::to_string(CSTAErrorCode::NO_LINE_AVAILABLE));

    auto& line = addLine("20", TestLine::Behaviour::Answers);
    CSTADirectedPickupCallRequest pickup;
    pickup.setCallToBePickedUp("33");
    calls.sendRequest(pickup);
    EXPECT_EQ(outcome(pickup), "ok");
    const auto* response = dynamic_cast<CSTADirectedPickupCallResponse*>(pickup.getResponse());
    ASSERT_NE(response, nullptr);
    EXPECT_EQ(response->getCallID(), line.lastCall);
    EXPECT_EQ(line.calls, std::vector<std::string>{"pick up extension 33"});
    EXPECT_EQ(after(), ""); // nobody was dialling
    ASSERT_FALSE(changes.empty());
    EXPECT_EQ(changes.back().number, "33");
}

TEST_F(Calls, AreMonitoredOnTheOwnDevice)
{
    Listener listener;
    const auto id = monitor(&listener);
    EXPECT_NE(id, "");
    EXPECT_EQ(monitor(&listener, "somewhere"), "");

    const auto event = std::make_shared<CSTAServiceInitiatedEvent>();
    calls.raise(event);
    EXPECT_TRUE(listener.heard.empty());
    events.runPending();
    EXPECT_EQ(listener.heard, std::vector<CSTAEvent*>{event.get()});

    CSTAMonitorStopRequest stop(id);
    calls.sendRequest(stop);
    EXPECT_EQ(outcome(stop), "ok");
    EXPECT_NE(dynamic_cast<CSTAMonitorStopResponse*>(stop.getResponse()), nullptr);
    calls.raise(event);
    events.runPending();
    EXPECT_EQ(listener.heard.size(), 1u);

    CSTAMonitorStopRequest again(id);
    calls.sendRequest(again);
    EXPECT_NE(outcome(again), "ok");
}

TEST_F(Calls, AreNotToldToAPhoneletThatWasStopped)
{
    Listener listener;
    monitor(&listener);
    calls.raise(std::make_shared<CSTAServiceInitiatedEvent>());
    calls.dropObservers();
    events.runPending();
    EXPECT_TRUE(listener.heard.empty());
}

TEST_F(Calls, HaveASystemThatIsUp)
{
    CSTASystemStatusRequest request;
    calls.sendRequest(request);
    EXPECT_EQ(outcome(request), "ok");
}

TEST_F(Calls, HaveNoPhonebookOfThePbx)
{
    FeatureData query;
    query.featureName = content_feature_name_pbxphonebook;
    query.Action = content_feature_query;
    CSTARequestSystemStatusRequest request(query);
    calls.sendRequest(request);
    EXPECT_EQ(outcome(request), "ok");
    const auto* response = dynamic_cast<CSTARequestSystemStatusResponse*>(request.getResponse());
    ASSERT_NE(response, nullptr);
    EXPECT_EQ(response->getFeatureData().Availability, content_feature_unavailable);
    EXPECT_EQ(response->getFeatureData().featureName, content_feature_name_pbxphonebook);

    query.Action = content_localfeature_activate;
    CSTARequestSystemStatusRequest activate(query);
    calls.sendRequest(activate);
    EXPECT_NE(outcome(activate), "ok");
}

TEST_F(Calls, CountACallThatComesInUntilItIsOver)
{
    auto& line = addLine("20");
    line.ring({"030123", "Anna"});
    EXPECT_TRUE(states().empty()); // not heard of yet
    EXPECT_EQ(after(), "");
    EXPECT_EQ(states(), std::vector<int>{2});
    EXPECT_TRUE(calls.answer());
    EXPECT_EQ(after(), "");
    EXPECT_EQ(states(), std::vector<int>{3});
    calls.hangUp();
    EXPECT_EQ(after(), "");
    EXPECT_TRUE(states().empty());
}

TEST_F(Calls, KnowNoCallOfALineThatIsGone)
{
    auto& line = addLine("20");
    line.ring({"030123", ""});
    calls.removeLine(line);
    ASSERT_FALSE(changes.empty());        // at once: another line may have its address next
    EXPECT_TRUE(changes.back().isOver()); // for those who saw it offered
    events.runPending();
    EXPECT_FALSE(calls.hasCalls());
}

TEST_F(Calls, AreThereBeforeTheirEventHasHadItsTurn)
{
    addLine("20").ring({"030123", ""});
    EXPECT_TRUE(calls.hasCalls());
}

TEST_F(Calls, LoseTheLineThatIsMeantOfTwoWithTheSameNumber)
{
    auto& first = addLine("20");
    auto& second = addLine("20");
    first.ring({"030123", ""});
    second.ring({"030124", ""});
    events.runPending();
    calls.removeLine(second);
    events.runPending();
    EXPECT_EQ(states(), std::vector<int>{2});
    EXPECT_TRUE(calls.answer());
    EXPECT_EQ(first.lastCall, watcher.offers[0].id);
}

TEST_F(Calls, AreSeenTheMomentTheyComeInWhateverTheTelephoneDoes)
{
    auto& line = addLine("20");
    line.ring({"030123", "Anna"});
    ASSERT_EQ(watcher.offers.size(), 1u);
    EXPECT_EQ(watcher.offers[0].shownNumber, "number 030123");
    EXPECT_TRUE(changes.empty());
    line.tell(CallState::Null, CallEnd::NoAnswer);
    EXPECT_EQ(watcher.heard, (std::vector{std::pair{watcher.offers[0].id, CallState::Null}}));
    EXPECT_TRUE(changes.empty());
}

TEST_F(Calls, CanBeTakenBeforeTheirEventHasHadItsTurn)
{
    auto& line = addLine("20");
    line.ring({"030123", ""});
    EXPECT_TRUE(calls.answer());
    events.runPending();
    EXPECT_EQ(states(), std::vector<int>{3});

    line.ring({"030124", ""});
    EXPECT_TRUE(calls.reject());
    events.runPending();
    EXPECT_EQ(states(), std::vector<int>{3});
}

TEST_F(Calls, HaveTheNameThatWhoPlacedThemKnows)
{
    addLine("20");
    knownName = "Miller, Anna";
    EXPECT_EQ(dial("4711"), "ok");
    events.runPending();
    EXPECT_EQ(changes.back().name, "Miller, Anna");
    EXPECT_EQ(changes.back().shownNumber, "number 4711");
}

TEST_F(Calls, AreToldOfFromTheirBeginningToTheirEnd)
{
    auto& line = addLine("20");
    EXPECT_EQ(dial("4711"), "ok");
    EXPECT_TRUE(changes.empty()); // never on the caller's stack
    line.tell(CallState::Alerting);
    line.tell(CallState::Failed, CallEnd::Busy);
    events.runPending();

    ASSERT_EQ(changes.size(), 3u);
    EXPECT_EQ(changes[0].line, "20");
    EXPECT_EQ(changes[0].number, "4711");
    EXPECT_FALSE(changes[0].incoming);
    EXPECT_EQ(changes[0].state, CallState::Initiated);
    EXPECT_EQ(changes[1].state, CallState::Alerting);
    EXPECT_EQ(changes[2].state, CallState::Failed);
    EXPECT_EQ(changes[2].why, CallEnd::Busy);
    EXPECT_FALSE(changes[2].lineIsOut);
}

TEST_F(Calls, ThatComeInAreToldOfWithWhatTheLineSays)
{
    addLine("20").ring({"030123", "Anna"});
    events.runPending();
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_TRUE(changes[0].rings());
    EXPECT_EQ(changes[0].number, "030123");
    EXPECT_EQ(changes[0].name, "Anna");
}

TEST_F(Calls, ThatTheUserEndsAreClearedWhateverTheLineSays)
{
    auto& line = addLine("20");
    EXPECT_EQ(dial("4711"), "ok");
    line.answersClear = false;
    calls.hangUp();
    line.tell(CallState::Failed, CallEnd::NoAnswer);
    events.runPending();
    EXPECT_EQ(changes.back().state, CallState::Null);
    EXPECT_EQ(changes.back().why, CallEnd::Cleared);
}

TEST_F(Calls, SayThatTheirLineIsOut)
{
    auto& line = addLine("20");
    EXPECT_EQ(dial("4711"), "ok");
    line.inService = false;
    line.tell(CallState::Null, CallEnd::Unreachable);
    events.runPending();
    EXPECT_TRUE(changes.back().lineIsOut);

    line.inService = true;
    EXPECT_EQ(dial("4712"), "ok");
    calls.removeLine(line);
    events.runPending();
    EXPECT_EQ(changes.back().why, CallEnd::Unreachable);
    EXPECT_TRUE(changes.back().lineIsOut);
}

TEST_F(Calls, AreEndedFromTheFrontOneByOne)
{
    auto& line = addLine("20");
    EXPECT_EQ(dial("4711"), "ok");
    line.tell(CallState::Connected);
    line.ring({"030123", ""});
    events.runPending();
    EXPECT_TRUE(calls.isCalling());

    calls.hangUp(); // the one that rings is not meant
    events.runPending();
    EXPECT_EQ(changes.back().number, "4711");
    EXPECT_TRUE(changes.back().isOver());
    EXPECT_FALSE(calls.isCalling());
    calls.hangUp();
    events.runPending();
    EXPECT_EQ(states(), std::vector<int>{2});
    EXPECT_TRUE(calls.reject());
    events.runPending();
    EXPECT_FALSE(calls.hasCalls());
    EXPECT_FALSE(calls.reject());
    EXPECT_FALSE(calls.answer());
}

TEST_F(Calls, ThatAreTakenComeToTheFront)
{
    auto& line = addLine("20");
    line.ring({"030123", ""});
    events.runPending();
    EXPECT_EQ(dial("4711"), "ok");
    EXPECT_TRUE(calls.answer());
    events.runPending();
    calls.hangUp();
    events.runPending();
    EXPECT_EQ(changes.back().number, "030123");
    EXPECT_EQ(states(), std::vector<int>{1});
}

TEST_F(Calls, AreAnsweredAndEndedByTheirIds)
{
    auto& line = addLine("20");
    line.ring({"1", ""});
    const auto first = line.lastCall;
    line.ring({"2", ""});
    events.runPending();
    EXPECT_TRUE(calls.answer(first));
    events.runPending();
    EXPECT_EQ(changes.back().number, "1");
    EXPECT_FALSE(calls.answer(first)); // it does not ring any more
    EXPECT_TRUE(calls.end(first));
    events.runPending();
    EXPECT_FALSE(calls.end(first));
    EXPECT_EQ(states(), std::vector<int>{2});
}

TEST_F(Calls, ThatWereRejectedAreNotTakenByWhoComesLater)
{
    auto& line = addLine("20");
    line.answersClear = false;
    line.ring({"1", ""});
    const auto id = line.lastCall;
    events.runPending();
    EXPECT_TRUE(calls.end(id));
    EXPECT_FALSE(calls.answer(id));
    EXPECT_FALSE(calls.answer());
}

} // namespace
