// The PBX's phonebook feature and display, and calls on its line, against a PBX that does as it is told.

#include "calls/pbx/Pbx.h"

#include <future>
#include <mutex>

#include <gtest/gtest.h>

#include <framework/csta/CSTAEventObserverBase.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/communicationsServiceTexts.h>

#include "Heard.h"
#include "TestPbx.h"

namespace {

using namespace communicationsServiceTexts;
using namespace std::chrono_literals;

const char* word(CallState state)
{
    switch (state) {
    case CallState::Null:
        return "over";
    case CallState::Initiated:
        return "initiated";
    case CallState::Alerting:
        return "alerting";
    case CallState::Connected:
        return "connected";
    case CallState::Held:
        return "held";
    case CallState::Failed:
        return "failed";
    }
    return "?";
}

const char* word(CallEnd why)
{
    switch (why) {
    case CallEnd::Cleared:
        return "cleared";
    case CallEnd::Busy:
        return "busy";
    case CallEnd::NotFound:
        return "not found";
    case CallEnd::Declined:
        return "declined";
    case CallEnd::NoAnswer:
        return "no answer";
    case CallEnd::Unreachable:
        return "unreachable";
    case CallEnd::Other:
        return "other";
    }
    return "?";
}

class Observer final : public LineObserverIfc {
public:
    explicit Observer(Heard& heard)
        : m_heard(heard)
    {
    }
    void callStateChanged(const std::string& callId, CallState state, CallEnd why) override
    {
        const bool isOver = state == CallState::Null || state == CallState::Failed;
        m_heard.add(callId + " " + word(state) + (isOver ? ": " + std::string(word(why)) : ""));
    }
    std::string callOffered(LineIfc&, const Caller& caller) override
    {
        m_heard.add("offered by " + caller.number);
        return "offered";
    }
    void serviceChanged(LineIfc& line) override { m_heard.add(line.isInService() ? "in" : "out"); }

private:
    Heard& m_heard;
};

class EventWriter final : public CSTAEventObserverBase {
public:
    void handleCSTASystemStatusEvent(CSTASystemStatusEvent* event) override
    {
        const auto& feature = event->getFeatureData();
        text = "status <" + event->getSystemStatus() + "> " + feature.featureName + " " + feature.Status +
               feature.Availability;
    }
    void handleCSTADisplayUpdatedEvent(CSTADisplayUpdatedEvent* event) override
    {
        text = event->getDisplayID() + " " + event->getLogicalRows() + " " + event->getContentsOfDisplay();
    }
    std::string text;
};

class AttachedPbx : public testing::Test {
protected:
    AttachedPbx() { attach(peer.settings()); }
    ~AttachedPbx() override { pbx.reset(); }

    void attach(const PbxSettings& settings)
    {
        pbx.emplace(settings, [this](const std::shared_ptr<CSTAEvent>& event) {
            EventWriter writer;
            event->dispatch(&writer);
            events.add(writer.text);
            const std::lock_guard lock(keptMutex);
            if (keepsEvents)
                kept.push_back(event);
        });
        line = pbx->makeLine();
        line->setObserver(&observer);
    }

    // Hears events, and is not done with them, like a telephone that is busy.
    void beBusy(bool busy)
    {
        const std::lock_guard lock(keptMutex);
        keepsEvents = busy;
        kept.clear();
    }
    std::size_t unheard()
    {
        const std::lock_guard lock(keptMutex);
        return kept.size();
    }

    void connect(const std::string& availability = "available")
    {
        pbx->start();
        ASSERT_TRUE(peer.welcome(availability));
        ASSERT_EQ(calls.next(), "in");
        ASSERT_EQ(events.next(), "status <> PBXPhonebook " + availability);
    }

    // The Availability that a query is answered with.
    std::string query(const std::string& name = content_feature_name_pbxphonebook)
    {
        CSTARequestSystemStatusRequest request(featureOf(name, content_feature_query));
        pbx->answerSystemStatus(request);
        const auto* response = dynamic_cast<CSTARequestSystemStatusResponse*>(request.getResponse());
        return response ? response->getSystemStatus() + " " + response->getFeatureData().Availability
                        : "none";
    }

    static FeatureData featureOf(const std::string& name, const std::string& action)
    {
        FeatureData feature;
        feature.featureName = name;
        feature.Action = action;
        return feature;
    }

    // What comes of the request to activate the phonebook, to which the PBX says `answer`, after so many rows
    // of its display.
    std::string activate(const std::string& answer, int rowsBefore = 0)
    {
        auto done = std::async(std::launch::async, [this] {
            CSTARequestSystemStatusRequest request(
                featureOf(content_feature_name_pbxphonebook, content_localfeature_activate));
            pbx->answerSystemStatus(request);
            return request.getResponseCode() == 0 ? "done" : "refused";
        });
        const auto asked = peer.receive();
        EXPECT_NE(asked.xml.find("<Action>activate</Action>"), std::string::npos);
        for (int i = 0; i < rowsBefore; ++i)
            peer.event(TestPbx::row(0, "too much"));
        peer.send(asked.invokeId, answer);
        return done.get();
    }

    void place(const std::string& id, const std::string& pbxId = "7")
    {
        ASSERT_TRUE(line->placeCall(id, "4711"));
        EXPECT_EQ(peer.answer(ofCall(pbxId, "<MakeCallResponse><callingDevice><deviceID>100</deviceID>"
                                            "<callID>7</callID></callingDevice></MakeCallResponse>")),
                  "MakeCall");
    }
    // What is said of call 7, said of another.
    static std::string ofCall(const std::string& pbxId, const std::string& said)
    {
        const std::string usual = "<callID>7</callID>";
        return std::string(said).replace(said.find(usual), usual.size(), "<callID>" + pbxId + "</callID>");
    }
    // The PBX hears that call `pbxId` is to end, and ends it.
    void expectEnd(const std::string& pbxId)
    {
        const auto clear = peer.receive();
        EXPECT_NE(clear.xml.find("<connectionToBeCleared><callID>" + pbxId + "</callID>"), std::string::npos);
        peer.send(clear.invokeId, "<ClearConnectionResponse/>");
        peer.event(ofCall(pbxId, cleared("100", "normalClearing")));
    }

    // An event of call 7 at `at`.
    static std::string event(const std::string& name, const std::string& connection, const std::string& at,
                             const std::string& rest = "")
    {
        return "<" + name + "Event><monitorCrossRefID>m1</monitorCrossRefID><" + connection +
               "><callID>7</callID><deviceID>" + at + "</deviceID></" + connection + ">" + rest + "</" +
               name + "Event>";
    }
    static std::string device(const std::string& element, const std::string& number)
    {
        return "<" + element + "><deviceIdentifier>" + number + "</deviceIdentifier></" + element + ">";
    }
    void connectCall()
    {
        place("1");
        peer.event(event("Established", "establishedConnection", "4711", device("answeringDevice", "4711")));
        ASSERT_EQ(calls.next(), "1 connected");
    }
    void ringHere()
    {
        peer.event(event("Delivered", "connection", "100",
                         device("alertingDevice", "100") + device("callingDevice", "0301")));
        ASSERT_EQ(calls.next(), "offered by 0301");
    }
    std::string cleared(const std::string& at, const std::string& cause)
    {
        return event("ConnectionCleared", "droppedConnection", at,
                     device("releasingDevice", at) + "<cause>" + cause + "</cause>");
    }

    Heard events;
    Heard calls;
    std::mutex keptMutex;
    bool keepsEvents = false;
    std::vector<std::shared_ptr<CSTAEvent>> kept;
    Observer observer{calls};
    TestPbx peer;
    std::unique_ptr<LineIfc> line;
    std::optional<Pbx> pbx;
};

class AttachedPhonebook : public AttachedPbx {};
class PbxCalls : public AttachedPbx {};

} // namespace

TEST_F(AttachedPhonebook, IsUnavailableUntilThePbxIsThere)
{
    EXPECT_EQ(query(), "enabled unavailable");
    connect();
    EXPECT_EQ(query(), "enabled available");
    EXPECT_EQ(query("AnotherFeature"), "enabled unavailable");
    peer.close();
    EXPECT_EQ(calls.next(), "out");
    EXPECT_EQ(events.next(), "status <disabled>  ");
    EXPECT_EQ(query(), "enabled unavailable");
}

TEST_F(AttachedPhonebook, ComesAndGoesAsThePbxSays)
{
    connect("unavailable");
    EXPECT_EQ(query(), "enabled unavailable");
    peer.event(
        TestPbx::feature("<featureName>PBXPhonebook</featureName><Availability>available</Availability>"));
    EXPECT_EQ(events.next(), "status <> PBXPhonebook available");
    EXPECT_EQ(query(), "enabled available");
    peer.event(
        TestPbx::feature("<featureName>Another</featureName><Availability>unavailable</Availability>"));
    EXPECT_EQ(events.next(), "status <> Another unavailable");
    EXPECT_EQ(query(), "enabled available");
    peer.event(TestPbx::feature("<featureName>PBXPhonebook</featureName><Status>OFF</Status>"));
    EXPECT_EQ(events.next(), "status <> PBXPhonebook OFF");
    EXPECT_EQ(query(), "enabled available");
    peer.send(1, "<SystemStatus><systemStatus>normal</systemStatus>" +
                     TestPbx::extension("<featureName>PBXPhonebook</featureName><Availability>unavailable"
                                        "</Availability>") +
                     "</SystemStatus>");
    EXPECT_EQ(events.next(), "status <> PBXPhonebook unavailable");
    EXPECT_EQ(query(), "enabled unavailable");
}

TEST_F(AttachedPhonebook, GoesWithADisabledPbxAndReturnsWithIt)
{
    connect();
    for (const auto* state : {"disabled", "partiallyDisabled", "initializing"}) {
        const std::string wanted = state == std::string("initializing") ? "disabled" : state;
        peer.send(1, "<SystemStatus><systemStatus>" + std::string(state) + "</systemStatus></SystemStatus>");
        EXPECT_EQ(events.next(), "status <" + wanted + ">  ");
        EXPECT_EQ(query(), wanted + " available");
        peer.send(2, "<SystemStatus><systemStatus>enabled</systemStatus></SystemStatus>");
        EXPECT_EQ(events.next(), "status <> PBXPhonebook available");
        EXPECT_EQ(query(), "enabled available");
    }
}

TEST_F(AttachedPhonebook, ReturnsWithThePbxThatSpeaksOfAnotherFeature)
{
    connect();
    peer.event("<SystemStatus><systemStatus>disabled</systemStatus></SystemStatus>");
    EXPECT_EQ(events.next(), "status <disabled>  ");
    peer.event(
        "<SystemStatus><systemStatus>enabled</systemStatus>" +
        TestPbx::extension("<featureName>Another</featureName><Availability>unavailable</Availability>") +
        "</SystemStatus>");
    EXPECT_EQ(events.next(), "status <> Another unavailable");
    EXPECT_EQ(events.next(), "status <> PBXPhonebook available");
}

TEST_F(AttachedPhonebook, IsActivatedByThePbx)
{
    connect();
    EXPECT_EQ(activate("<RequestSystemStatusResponse><systemStatus>normal</systemStatus>"
                       "</RequestSystemStatusResponse>"),
              "done");
    for (const auto* group : {"operation", "security", "stateIncompatibility", "systemResourceAvailibility",
                              "subscribedResourceAvailability", "performanceManagement", "privateData",
                              "privateErrorCode", "unspecified"})
        EXPECT_EQ(activate("<CSTAErrorCode><" + std::string(group) + "/></CSTAErrorCode>"), "refused")
            << group;
    EXPECT_EQ(activate("rubbish"), "refused");
}

TEST_F(AttachedPhonebook, IsActivatedHoweverMuchThePbxHasSaidBefore)
{
    connect();
    beBusy(true);
    EXPECT_EQ(activate("<RequestSystemStatusResponse/>", 5000), "done");
}

TEST_F(AttachedPhonebook, HasItsPbxWaitWhileTheTelephoneIsBusy)
{
    constexpr int ROWS = 5000;
    auto impatient = peer.settings();
    impatient.requestTimeout = 500ms;
    attach(impatient);
    connect();
    beBusy(true);
    auto sent = std::async(std::launch::async, [this] {
        for (int i = 0; i < ROWS; ++i)
            peer.event(TestPbx::row(1, std::to_string(i)));
    });
    int heard = 0;
    for (; heard < 2000; ++heard)
        ASSERT_EQ(events.next(), "Display 1 " + std::to_string(heard));
    // A call that cannot be answered in time would give the link all the time to read on.
    ASSERT_TRUE(line->placeCall("1", "4711"));
    EXPECT_EQ(calls.next(), "1 failed: unreachable");
    EXPECT_LT(unheard(), 2500U);
    beBusy(false);
    sent.get();
    for (; heard < ROWS; ++heard)
        ASSERT_EQ(events.next(), "Display 1 " + std::to_string(heard));
}

TEST_F(AttachedPhonebook, TakesLeaveWithItsPbx)
{
    connect();
    pbx->stop();
    EXPECT_EQ(calls.next(), "out");
    EXPECT_EQ(events.next(), "status <disabled>  ");
    EXPECT_EQ(query(), "enabled unavailable");
    pbx->stop();
    pbx.reset();
    events.add("nothing more");
    EXPECT_EQ(events.next(), "nothing more");
}

TEST_F(AttachedPhonebook, TakesNoKeysWithoutThePbx)
{
    pbx->start();
    CSTAButtonPressRequest key("down");
    pbx->pressButton(key);
    EXPECT_NE(key.getResponseCode(), 0);
}

TEST_F(AttachedPhonebook, CannotBeActivatedWithoutThePbx)
{
    pbx->start();
    CSTARequestSystemStatusRequest request(
        featureOf(content_feature_name_pbxphonebook, content_localfeature_activate));
    pbx->answerSystemStatus(request);
    EXPECT_NE(request.getResponseCode(), 0);
}

TEST_F(AttachedPhonebook, KeepsNobodyWaitingWhoIsInAHurry)
{
    connect();
    auto done = std::async(std::launch::async, [this] {
        CSTARequestSystemStatusRequest request(
            featureOf(content_feature_name_pbxphonebook, content_localfeature_activate));
        pbx->answerSystemStatus(request);
        return request.getResponseCode() == 0;
    });
    EXPECT_EQ(peer.receiveName(), "RequestSystemStatus"); // and is not answered
    pbx->setUrgent(true);
    EXPECT_FALSE(done.get());
    pbx->setUrgent(false);
    EXPECT_EQ(activate("<RequestSystemStatusResponse><systemStatus>normal</systemStatus>"
                       "</RequestSystemStatusResponse>"),
              "done");
}

TEST_F(AttachedPhonebook, ShowsItsRowsAndTakesKeys)
{
    connect();
    peer.event(TestPbx::row(3, "Miller, Anna"));
    EXPECT_EQ(events.next(), "Display 3 Miller, Anna");
    CSTAButtonPressRequest key("down");
    pbx->pressButton(key);
    EXPECT_EQ(key.getResponseCode(), 0);
    const auto sent = peer.receive();
    EXPECT_NE(sent.xml.find("<ButtonPress "), std::string::npos);
    EXPECT_NE(sent.xml.find("<device>100</device><button>down</button>"), std::string::npos);
}

TEST_F(PbxCalls, AreRefusedWithoutThePbx)
{
    EXPECT_FALSE(line->placeCall("1", "4711"));
    EXPECT_FALSE(line->pickUpCall("1", "201"));
    connect();
    EXPECT_TRUE(line->isInService());
    EXPECT_EQ(line->number(), "100");
}

TEST_F(PbxCalls, RingAreAnsweredAndEnd)
{
    connect();
    place("1");
    peer.event(event("Originated", "originatedConnection", "100", device("callingDevice", "100")));
    peer.event(event("Delivered", "connection", "4711",
                     device("alertingDevice", "4711") + device("callingDevice", "100")));
    EXPECT_EQ(calls.next(), "1 alerting");
    peer.event(event("Established", "establishedConnection", "4711", device("answeringDevice", "4711")));
    EXPECT_EQ(calls.next(), "1 connected");

    line->clearCall("1");
    const auto clear = peer.receive();
    EXPECT_NE(clear.xml.find("<connectionToBeCleared><callID>7</callID><deviceID>100</deviceID>"),
              std::string::npos);
    peer.send(clear.invokeId, "<ClearConnectionResponse/>");
    peer.event(cleared("100", "normalClearing"));
    EXPECT_EQ(calls.next(), "1 over: cleared");
}

TEST_F(PbxCalls, GoTheirOwnWaysWhenThereAreTwo)
{
    connect();
    place("1");
    place("2", "8");
    const auto alerting = event("Delivered", "connection", "4711",
                                device("alertingDevice", "4711") + device("callingDevice", "100"));
    const auto established =
        event("Established", "establishedConnection", "4711", device("answeringDevice", "4711"));
    peer.event(ofCall("8", alerting));
    EXPECT_EQ(calls.next(), "2 alerting");
    peer.event(alerting);
    EXPECT_EQ(calls.next(), "1 alerting");
    peer.event(established);
    EXPECT_EQ(calls.next(), "1 connected");
    peer.event(ofCall("8", established));
    EXPECT_EQ(calls.next(), "2 connected");

    line->clearCall("1");
    expectEnd("7");
    EXPECT_EQ(calls.next(), "1 over: cleared");
    line->clearCall("2");
    expectEnd("8");
    EXPECT_EQ(calls.next(), "2 over: cleared");
}

TEST_F(PbxCalls, GoOnWhenThePbxRefusesAnother)
{
    connect();
    connectCall();
    ASSERT_TRUE(line->placeCall("2", "4712"));
    EXPECT_EQ(peer.answer("<CSTAErrorCode><operation>invalidCalledDeviceID</operation></CSTAErrorCode>"),
              "MakeCall");
    EXPECT_EQ(calls.next(), "2 failed: not found");
    line->clearCall("1");
    expectEnd("7");
    EXPECT_EQ(calls.next(), "1 over: cleared");
}

TEST_F(PbxCalls, SayWhyTheyFail)
{
    connect();
    const std::pair<const char*, const char*> causes[] = {{"busy", "busy"},
                                                          {"destNotObtainable", "not found"},
                                                          {"callNotAnswered", "no answer"},
                                                          {"callRejected", "declined"},
                                                          {"networkOutOfOrder", "unreachable"},
                                                          {"silentMonitor", "other"}};
    for (const auto& [cause, why] : causes) {
        place(cause);
        peer.event(event("Failed", "failedConnection", "100", "<cause>" + std::string(cause) + "</cause>"));
        EXPECT_EQ(calls.next(), std::string(cause) + " failed: " + why);
        EXPECT_EQ(peer.answer("<ClearConnectionResponse/>"), "ClearConnection"); // it hangs up
    }
}

TEST_F(PbxCalls, SayWhyTheyAreRefused)
{
    connect();
    const std::pair<const char*, const char*> errors[] = {
        {"operation>invalidCalledDeviceID", "not found"},
        {"systemResourceAvailibility>networkBusy", "busy"},
        {"systemResourceAvailibility>deviceOutOfService", "unreachable"},
        {"stateIncompatibility>connectedCallExists", "other"},
        {"security>generic", "other"},
        {"subscribedResourceAvailability>generic", "other"},
        {"performanceManagement>generic", "other"},
        {"privateData>generic", "other"},
        {"privateErrorCode>busy lamp", "other"},
        {"unspecified>", "other"}};
    for (const auto& [error, why] : errors) {
        const std::string named = error;
        const auto group = named.substr(0, named.find('>'));
        ASSERT_TRUE(line->placeCall(named, "4711"));
        peer.answer("<CSTAErrorCode><" + named + "</" + group + "></CSTAErrorCode>");
        EXPECT_EQ(calls.next(), named + " failed: " + why);
    }
}

TEST_F(PbxCalls, MayBeToldOfBeforeTheyAreAnswered)
{
    connect();
    ASSERT_TRUE(line->placeCall("1", "4711"));
    const auto made = peer.receive();
    peer.event(event("Originated", "originatedConnection", "100", device("callingDevice", "100")));
    peer.event(event("Established", "establishedConnection", "4711", device("answeringDevice", "4711")));
    EXPECT_EQ(calls.next(), "1 connected");
    peer.send(made.invokeId,
              "<MakeCallResponse><callingDevice><callID>7</callID></callingDevice></MakeCallResponse>");
    peer.event(cleared("100", "normalClearing"));
    EXPECT_EQ(calls.next(), "1 over: cleared");
}

TEST_F(PbxCalls, EndedBeforeThePbxHasNamedThemAreEndedThen)
{
    connect();
    ASSERT_TRUE(line->placeCall("1", "4711"));
    const auto made = peer.receive();
    line->clearCall("1");
    peer.send(made.invokeId,
              "<MakeCallResponse><callingDevice><callID>7</callID></callingDevice></MakeCallResponse>");
    EXPECT_EQ(peer.answer("<CSTAErrorCode><operation>invalidConnectionID</operation></CSTAErrorCode>"),
              "ClearConnection");
    EXPECT_EQ(calls.next(), "1 over: cleared");
}

TEST_F(PbxCalls, GoOnWhenThePbxTellsOfThemAndNeverAnswers)
{
    auto settings = peer.settings();
    settings.requestTimeout = std::chrono::milliseconds(1000);
    attach(settings);
    connect();
    ASSERT_TRUE(line->placeCall("1", "4711"));
    EXPECT_EQ(peer.receiveName(), "MakeCall");
    peer.event(event("Originated", "originatedConnection", "100", device("callingDevice", "100")));
    peer.event(event("Established", "establishedConnection", "4711", device("answeringDevice", "4711")));
    EXPECT_EQ(calls.next(), "1 connected");
    ASSERT_TRUE(line->placeCall("2", "4712"));
    EXPECT_EQ(peer.receiveName(), "MakeCall");
    peer.event(TestPbx::row(0, "not silent"));
    EXPECT_EQ(calls.next(), "2 failed: unreachable"); // nobody has told of this one

    line->clearCall("1");
    EXPECT_EQ(peer.receiveName(), "ClearConnection");
}

TEST_F(PbxCalls, AreThoseThatThePbxAnswersWithWhateverEventsCameBefore)
{
    connect();
    ASSERT_TRUE(line->placeCall("1", "4711"));
    const auto made = peer.receive();
    peer.event(event("Originated", "originatedConnection", "100", device("callingDevice", "100")));
    peer.send(made.invokeId,
              "<MakeCallResponse><callingDevice><callID>8</callID></callingDevice></MakeCallResponse>");
    line->clearCall("1");
    EXPECT_NE(peer.receive().xml.find("<callID>8</callID>"), std::string::npos);
}

TEST_F(PbxCalls, FailWithAnAnswerThatNamesNone)
{
    connect();
    ASSERT_TRUE(line->placeCall("1", "4711"));
    peer.answer("<MakeCallResponse/>");
    EXPECT_EQ(calls.next(), "1 failed: other");
}

TEST_F(PbxCalls, HangUpWhenTheOtherHasGone)
{
    connect();
    connectCall();
    peer.event(cleared("4711", "normalClearing"));
    EXPECT_EQ(peer.answer("<ClearConnectionResponse/>"), "ClearConnection");
    peer.event(cleared("100", "normalClearing"));
    EXPECT_EQ(calls.next(), "1 over: cleared");
}

TEST_F(PbxCalls, EndWithTheConnection)
{
    connect();
    connectCall();
    ASSERT_TRUE(line->placeCall("2", "4712"));
    EXPECT_EQ(peer.receiveName(), "MakeCall");
    peer.close();
    EXPECT_EQ(calls.next(), "2 failed: unreachable");
    EXPECT_EQ(calls.next(), "1 over: unreachable");
    EXPECT_EQ(calls.next(), "out");
    EXPECT_FALSE(line->isInService());
}

TEST_F(PbxCalls, ComeInAndAreAnswered)
{
    connect();
    ringHere();
    line->answerCall("offered");
    const auto answer = peer.receive();
    EXPECT_NE(answer.xml.find("<callToBeAnswered><callID>7</callID><deviceID>100</deviceID>"),
              std::string::npos);
    peer.send(answer.invokeId, "<AnswerCallResponse/>");
    peer.event(event("Established", "establishedConnection", "100", device("answeringDevice", "100")));
    EXPECT_EQ(calls.next(), "offered connected");
}

TEST_F(PbxCalls, ComeInWhateverTheCallerCallsHimself)
{
    connect();
    peer.event(event("Delivered", "connection", "100",
                     device("alertingDevice", "100") +
                         device("callingDevice", "\u202E0301\n" + std::string(500, '2'))));
    EXPECT_EQ(calls.next(), "offered by 0301 " + std::string(95, '2'));
}

TEST_F(PbxCalls, AreAnsweredOnceHoweverOftenThatIsAskedFor)
{
    connect();
    ringHere();
    line->answerCall("offered");
    line->answerCall("offered");
    EXPECT_EQ(peer.answer("<AnswerCallResponse/>"), "AnswerCall");
    peer.event(event("Established", "establishedConnection", "100", device("answeringDevice", "100")));
    EXPECT_EQ(calls.next(), "offered connected");
    line->answerCall("offered");
    line->clearCall("offered");
    EXPECT_EQ(peer.receiveName(), "ClearConnection");
}

TEST_F(PbxCalls, ComeInAndAreRejectedOrGiveUp)
{
    connect();
    ringHere();
    line->clearCall("offered");
    EXPECT_EQ(peer.answer("<ClearConnectionResponse/>"), "ClearConnection");
    peer.event(cleared("100", "callRejected"));
    EXPECT_EQ(calls.next(), "offered over: declined");
    ringHere();
    peer.event(cleared("100", "callCancelled"));
    EXPECT_EQ(calls.next(), "offered over: cleared");
}

TEST_F(PbxCalls, RingOnWhenThePbxDoesNotLetThemBeAnswered)
{
    connect();
    ringHere();
    line->answerCall("offered");
    EXPECT_EQ(peer.answer("<CSTAErrorCode><stateIncompatibility>connectedCallExists</stateIncompatibility>"
                          "</CSTAErrorCode>"),
              "AnswerCall");
    peer.event(event("Delivered", "connection", "100", device("alertingDevice", "100")));
    EXPECT_EQ(calls.next(), "offered alerting");
    line->answerCall("offered");
    EXPECT_EQ(peer.receiveName(), "AnswerCall");
    peer.event(cleared("100", "callCancelled"));
    EXPECT_EQ(calls.next(), "offered over: cleared");

    ringHere();
    line->answerCall("offered");
    peer.answer("<CSTAErrorCode><stateIncompatibility>noCallToAnswer</stateIncompatibility></CSTAErrorCode>");
    EXPECT_EQ(calls.next(), "offered failed: not found");
}

TEST_F(PbxCalls, AreOverWhenTheyAreTakenElsewhere)
{
    connect();
    ringHere();
    peer.event(event("Diverted", "connection", "100", device("divertingDevice", "100")));
    EXPECT_EQ(calls.next(), "offered over: cleared");

    connectCall();
    peer.event(event("Diverted", "connection", "4711", device("divertingDevice", "4711")));
    peer.event(cleared("100", "normalClearing"));
    EXPECT_EQ(calls.next(), "1 over: cleared");
}

TEST_F(PbxCalls, ComeInAsManyAsATelephoneCanBearOnly)
{
    connect();
    for (int i = 0; i < 17; ++i) {
        peer.event("<DeliveredEvent><monitorCrossRefID>m1</monitorCrossRefID><connection><callID>c" +
                   std::to_string(i) + "</callID><deviceID>100</deviceID></connection>" +
                   device("alertingDevice", "100") + device("callingDevice", "0301") + "</DeliveredEvent>");
    }
    for (int i = 0; i < 16; ++i)
        ASSERT_EQ(calls.next(), "offered by 0301");
    peer.close();
    for (int i = 0; i < 16; ++i)
        ASSERT_EQ(calls.next(), "offered over: unreachable");
    EXPECT_EQ(calls.next(), "out");
}

TEST_F(PbxCalls, ThatRingElsewhereArePickedUp)
{
    connect();
    const auto snapshot = [](const std::string& state) {
        return "<SnapshotDeviceResponse><crossRefIDorSnapshotData><snapshotData><snapshotDeviceResponseInfo>"
               "<connectionIdentifier><callID>7</callID><deviceID>201</deviceID></connectionIdentifier>"
               "<localCallState><compoundCallState><localConnectionState>" +
               state +
               "</localConnectionState></compoundCallState></localCallState></snapshotDeviceResponseInfo>"
               "</snapshotData></crossRefIDorSnapshotData></SnapshotDeviceResponse>";
    };
    ASSERT_TRUE(line->pickUpCall("1", "201"));
    EXPECT_EQ(peer.answer(snapshot("alerting")), "SnapshotDevice");
    const auto pickup = peer.receive();
    EXPECT_NE(pickup.xml.find("<callToBePickedUp><callID>7</callID><deviceID>201</deviceID>"),
              std::string::npos);
    peer.send(pickup.invokeId,
              "<DirectedPickupCallResponse><pickedCall><callID>7</callID><deviceID>100</deviceID>"
              "</pickedCall></DirectedPickupCallResponse>");
    peer.event(event("Established", "establishedConnection", "100", device("answeringDevice", "100")));
    EXPECT_EQ(calls.next(), "1 connected");

    ASSERT_TRUE(line->pickUpCall("2", "201"));
    EXPECT_EQ(peer.answer(snapshot("connected")), "SnapshotDevice");
    EXPECT_EQ(calls.next(), "2 failed: not found");
    ASSERT_TRUE(line->pickUpCall("3", "999"));
    peer.answer("<CSTAErrorCode><operation>invalidDeviceID</operation></CSTAErrorCode>");
    EXPECT_EQ(calls.next(), "3 failed: other");
}

TEST_F(PbxCalls, OfOthersAreNotOurs)
{
    connect();
    peer.event(event("Delivered", "connection", "201",
                     device("alertingDevice", "201") + device("callingDevice", "202")));
    peer.event(cleared("100", "normalClearing"));
    place("1");
    peer.event(event("Established", "establishedConnection", "4711", device("answeringDevice", "4711")));
    EXPECT_EQ(calls.next(), "1 connected");
}
