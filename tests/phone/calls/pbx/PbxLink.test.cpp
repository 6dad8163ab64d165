#include "calls/pbx/PbxLink.h"

#include <atomic>

#include <gtest/gtest.h>

#include <testing/LogCapture.h>

#include "Heard.h"
#include "TestPbx.h"
#include "directory/ldap/KnownHost.h"

namespace {

using namespace std::chrono_literals;

class Listener final : public PbxListenerIfc {
public:
    void linkUp(const CstaSystemStatus& status) override
    {
        heard.add("up " + status.status + (status.feature ? " " + status.feature->Availability : ""));
    }
    void linkDown() override { heard.add("down"); }
    void received(const CstaEventContent& event) override
    {
        if (const auto* call = std::get_if<CstaCallEvent>(&event))
            heard.add("call " + call->connection.callId);
        else if (const auto* rows = std::get_if<CstaDisplayRows>(&event))
            heard.add("row " + std::to_string(rows->front().row) + " " + rows->front().text);
        else if (const auto* status = std::get_if<CstaSystemStatus>(&event))
            heard.add("status " + status->status +
                      (status->feature ? " " + status->feature->Availability : ""));
    }
    bool isBehind() override { return readsLeft == 0 || --readsLeft < 0; }

    Heard heard;
    std::atomic<int> readsLeft = 1000000; // then it is behind
};

class Link : public testing::Test {
protected:
    void start() { start(pbx.settings()); }
    void start(const PbxSettings& how)
    {
        m_link = std::make_unique<PbxLink>(how, listener);
        m_link->start();
    }
    void connect()
    {
        start();
        ASSERT_TRUE(pbx.welcome());
        ASSERT_EQ(heard(), "up normal available");
    }

    void connectImpatiently()
    {
        auto impatient = pbx.settings();
        impatient.requestTimeout = 500ms;
        start(impatient);
        ASSERT_TRUE(pbx.welcome());
        ASSERT_EQ(heard(), "up normal available");
    }

    void ask(const CstaElement& message = makeCall("100", "4711"))
    {
        m_link->request(message, [this](const Result<CstaElement>& answer) {
            const auto error = answer ? errorIn(answer.value()) : std::nullopt;
            if (!answer)
                listener.heard.add("no answer");
            else if (error)
                listener.heard.add(error->group + " " + error->value);
            else
                listener.heard.add(answer.value().name);
        });
    }

    std::string heard() { return listener.heard.next(); }

    TestPbx pbx;
    Listener listener;
    std::unique_ptr<PbxLink> m_link; // goes before its listener
};

const char* const ERRORS[] = {
    "<operation>invalidDeviceID</operation>",
    "<security>sequenceNumberViolated</security>",
    "<stateIncompatibility>invalidObjectState</stateIncompatibility>",
    "<systemResourceAvailibility>overallMonitorLimitExceeded</systemResourceAvailibility>",
    "<subscribedResourceAvailability>objectMonitorLimitExceeded"
    "</subscribedResourceAvailability>",
    "<performanceManagement>performanceLimitExceeded</performanceManagement>",
    "<privateData>privateDataInvalid</privateData>",
    "<privateErrorCode>E 4711</privateErrorCode>",
    "<unspecified/>"};

// An event of a monitor about a call.
std::string delivered(const std::string& monitor, const std::string& call)
{
    return "<DeliveredEvent><monitorCrossRefID>" + monitor + "</monitorCrossRefID><connection><callID>" +
           call + "</callID></connection></DeliveredEvent>";
}

const std::string MADE = "<MakeCallResponse><callingDevice><callID>7</callID><deviceID>100</deviceID></"
                         "callingDevice></MakeCallResponse>";

} // namespace

TEST_F(Link, IsUpWhenTheDeviceIsMonitored)
{
    start();
    ASSERT_TRUE(pbx.accept());
    const auto monitor = pbx.receive();
    EXPECT_EQ(TestPbx::nameIn(monitor.xml), "MonitorStart");
    EXPECT_NE(monitor.xml.find("<deviceObject>100</deviceObject>"), std::string::npos);
    pbx.send(monitor.invokeId,
             "<MonitorStartResponse><monitorCrossRefID>m1</monitorCrossRefID></MonitorStartResponse>");
    const auto status = pbx.receive();
    EXPECT_EQ(TestPbx::nameIn(status.xml), "RequestSystemStatus");
    EXPECT_NE(status.invokeId, monitor.invokeId);
    pbx.send(status.invokeId, "<RequestSystemStatusResponse><systemStatus>normal</systemStatus>"
                              "</RequestSystemStatusResponse>");
    EXPECT_EQ(heard(), "up normal");
}

TEST_F(Link, IsUpWithAPbxThatKnowsNothingOfFeatures)
{
    start();
    ASSERT_TRUE(pbx.accept());
    pbx.answer("<MonitorStartResponse><monitorCrossRefID>m1</monitorCrossRefID></MonitorStartResponse>");
    pbx.answer("<CSTAErrorCode><operation>serviceNotSupported</operation></CSTAErrorCode>");
    EXPECT_EQ(heard(), "up ");
}

TEST_F(Link, TellsNoEventsBeforeItIsUp)
{
    start();
    ASSERT_TRUE(pbx.accept());
    pbx.answer("<MonitorStartResponse><monitorCrossRefID>m1</monitorCrossRefID></MonitorStartResponse>");
    pbx.event(delivered("m1", "7"));
    pbx.answer("<RequestSystemStatusResponse><systemStatus>normal</systemStatus>"
               "</RequestSystemStatusResponse>");
    EXPECT_EQ(heard(), "up normal");
    pbx.event(delivered("m1", "8"));
    EXPECT_EQ(heard(), "call 8");
}

TEST_F(Link, GivesEveryRequestItsAnswer)
{
    connect();
    ask(snapshotDevice("100"));
    ask();
    const auto snapshot = pbx.receive();
    const auto call = pbx.receive();
    EXPECT_NE(snapshot.invokeId, call.invokeId);
    pbx.send(call.invokeId, MADE);
    EXPECT_EQ(heard(), "MakeCallResponse");
    pbx.send(snapshot.invokeId, "<SnapshotDeviceResponse/>");
    EXPECT_EQ(heard(), "SnapshotDeviceResponse");
}

TEST_F(Link, PassesErrorsOfEveryGroupOn)
{
    connect();
    for (const std::string error : ERRORS) {
        ask();
        pbx.answer("<CSTAErrorCode>" + error + "</CSTAErrorCode>");
        const auto group = error.substr(1, error.find_first_of("/>") - 1);
        const auto value = error.substr(error.find('>') + 1);
        EXPECT_EQ(heard(), group + " " + value.substr(0, value.find('<')));
    }
}

TEST_F(Link, UsesNoNumberOfARequestThatIsUnderWay)
{
    connect();
    ask(snapshotDevice("100"));
    const auto first = pbx.receive();
    for (int i = 0; i <= CstaFrame::GREATEST_REQUEST_ID; ++i) {
        ask();
        const auto call = pbx.receive();
        ASSERT_NE(call.invokeId, first.invokeId);
        ASSERT_LE(call.invokeId, CstaFrame::GREATEST_REQUEST_ID);
        pbx.send(call.invokeId, MADE);
        ASSERT_EQ(heard(), "MakeCallResponse");
    }
    pbx.send(first.invokeId, "<SnapshotDeviceResponse/>");
    EXPECT_EQ(heard(), "SnapshotDeviceResponse");
}

TEST_F(Link, IgnoresAnswersToWhatNobodyAsked)
{
    connect();
    ask();
    const auto call = pbx.receive();
    pbx.send((call.invokeId + 17) % 9998, MADE);
    pbx.event(MADE);
    pbx.send(call.invokeId, MADE);
    EXPECT_EQ(heard(), "MakeCallResponse");
    pbx.send(call.invokeId, MADE);
    pbx.event(TestPbx::row(1, "still there"));
    EXPECT_EQ(heard(), "row 1 still there");
}

TEST_F(Link, TakesAnotherAnswerThanTheRightOneForNone)
{
    connect();
    ask();
    pbx.answer("<SnapshotDeviceResponse/>");
    EXPECT_EQ(heard(), "no answer");
    ask();
    pbx.answer("rubbish");
    EXPECT_EQ(heard(), "no answer");
    ask();
    pbx.answer(MADE);
    EXPECT_EQ(heard(), "MakeCallResponse");
}

TEST_F(Link, AsksNothingWithoutAConnection)
{
    start();
    ask();
    EXPECT_EQ(heard(), "no answer");
}

TEST_F(Link, TellsEventsOfItsMonitorOnly)
{
    connect();
    pbx.event(delivered("another", "1"));
    pbx.event("<TeleportedEvent><monitorCrossRefID>m1</monitorCrossRefID></TeleportedEvent>");
    pbx.event("rubbish");
    pbx.event(delivered("m1", "2"));
    EXPECT_EQ(heard(), "call 2");
    pbx.event(TestPbx::feature("<Availability>unavailable</Availability>"));
    EXPECT_EQ(heard(), "status  unavailable");
}

TEST_F(Link, TellsEventsUnderAnyNumberAndAnswersNone)
{
    connect();
    pbx.send(5, delivered("m1", "3"));
    EXPECT_EQ(heard(), "call 3");
    pbx.send(6, "<TeleportedEvent/>");
    ask();
    EXPECT_EQ(pbx.receiveName(), "MakeCall");
}

TEST_F(Link, SurvivesWhateverAMessageSays)
{
    connect();
    std::string deep;
    for (int i = 0; i < 15000; ++i)
        deep += "<a>";
    pbx.event("");
    pbx.event("<TeleportedEvent>" + std::string(65000, 'x') + "</TeleportedEvent>");
    pbx.event("<PrivateEvent>" + deep);
    pbx.event("<!DOCTYPE a [<!ENTITY b \"" + std::string(1000, 'b') +
              "\">]><PrivateEvent>&b;</PrivateEvent>");
    pbx.event(std::string("<PrivateEvent>\0</PrivateEvent>", 29));
    pbx.event("<PrivateEvent>\xFF</PrivateEvent>");
    pbx.event(TestPbx::row(1, "still there"));
    EXPECT_EQ(heard(), "row 1 still there");
}

TEST_F(Link, AnswersWhatThePbxAsks)
{
    connect();
    pbx.send(1, "<SystemStatus><systemStatus>disabled</systemStatus></SystemStatus>");
    const auto status = pbx.receive();
    EXPECT_EQ(status.invokeId, 1);
    EXPECT_EQ(TestPbx::nameIn(status.xml), "SystemStatusResponse");
    EXPECT_EQ(heard(), "status disabled");

    pbx.send(4711, "<SetForwarding/>");
    const auto refusal = pbx.receive();
    EXPECT_EQ(refusal.invokeId, 4711);
    EXPECT_NE(refusal.xml.find("<operation>serviceNotSupported</operation>"), std::string::npos);

    pbx.send(4712, "<RequestSystemStatus/>");
    const auto own = pbx.receive();
    EXPECT_EQ(own.invokeId, 4712);
    EXPECT_EQ(TestPbx::nameIn(own.xml), "RequestSystemStatusResponse");
    EXPECT_NE(own.xml.find("<systemStatus>normal</systemStatus>"), std::string::npos);

    // As an event it has no answer: the next message is the telephone's own.
    pbx.event("<SystemStatus><systemStatus>enabled</systemStatus></SystemStatus>");
    EXPECT_EQ(heard(), "status enabled");
    ask();
    EXPECT_EQ(pbx.receiveName(), "MakeCall");
}

TEST_F(Link, TellsThePbxsNumbersFromItsOwn)
{
    connect();
    ask();
    const auto call = pbx.receive();
    pbx.send(call.invokeId, "<SystemStatus><systemStatus>disabled</systemStatus></SystemStatus>");
    EXPECT_EQ(heard(), "status disabled");
    const auto status = pbx.receive();
    EXPECT_EQ(TestPbx::nameIn(status.xml), "SystemStatusResponse");
    EXPECT_EQ(status.invokeId, call.invokeId);
    pbx.send(call.invokeId, MADE);
    EXPECT_EQ(heard(), "MakeCallResponse");
}

TEST_F(Link, LosesItsMonitorOnlyWhenItIsItsOwn)
{
    connect();
    pbx.send(1, "<MonitorStop><monitorCrossRefID>another</monitorCrossRefID></MonitorStop>");
    const auto refusal = pbx.receive();
    EXPECT_EQ(refusal.invokeId, 1);
    EXPECT_NE(refusal.xml.find("<operation>invalidMonitorCrossRefID</operation>"), std::string::npos);
    pbx.event(delivered("m1", "1"));
    EXPECT_EQ(heard(), "call 1");

    pbx.send(2, "<MonitorStop><monitorCrossRefID>m1</monitorCrossRefID></MonitorStop>");
    const auto stopped = pbx.receive();
    EXPECT_EQ(stopped.invokeId, 2);
    EXPECT_EQ(TestPbx::nameIn(stopped.xml), "MonitorStopResponse");
    EXPECT_EQ(heard(), "down");
    EXPECT_TRUE(pbx.isClosed());
}

TEST_F(Link, ConnectsAgainAfterAnyEnd)
{
    connect();
    pbx.close();
    EXPECT_EQ(heard(), "down");
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");

    ask();
    EXPECT_EQ(pbx.receiveName(), "MakeCall");
    const auto half = octetsOf({2, MADE}).value().substr(0, 30);
    pbx.sendRaw(half);
    pbx.close();
    EXPECT_EQ(heard(), "no answer");
    EXPECT_EQ(heard(), "down");
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");

    pbx.send(3, "<MonitorStop><monitorCrossRefID>m1</monitorCrossRefID></MonitorStop>");
    EXPECT_EQ(heard(), "down");
    ASSERT_TRUE(pbx.welcome("unavailable"));
    EXPECT_EQ(heard(), "up normal unavailable");
}

TEST_F(Link, ConnectsAgainUntilItIsMonitored)
{
    start();
    for (const std::string error : ERRORS) {
        ASSERT_TRUE(pbx.accept());
        pbx.answer("<CSTAErrorCode>" + error + "</CSTAErrorCode>");
    }
    ASSERT_TRUE(pbx.accept());
    pbx.sendRaw("SSH-2.0-Server\r\n");
    ASSERT_TRUE(pbx.accept());
    pbx.answer("<MonitorStartResponse/>");
    ASSERT_TRUE(pbx.accept());
    pbx.answer("rubbish");
    ASSERT_TRUE(pbx.accept());
    pbx.close();
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");
}

TEST_F(Link, EndsWithAPbxThatSendsGarbage)
{
    connect();
    pbx.sendRaw("HTTP/1.1 400 Bad Request\r\n\r\n");
    EXPECT_EQ(heard(), "down");
    EXPECT_TRUE(pbx.isClosed());
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");
}

TEST_F(Link, WaitsLongerBeforeEachAttemptUntilOneSucceeds)
{
    const LogCapture log;
    auto patient = pbx.settings();
    patient.longestPause = 4ms;
    start(patient);
    for (int i = 0; i < 4; ++i)
        ASSERT_TRUE(pbx.accept());
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");
    pbx.close();
    EXPECT_EQ(heard(), "down");
    std::string pauses;
    for (const auto& line : log.texts(AppLog::ERROR))
        pauses += line.substr(line.find("again in"));
    EXPECT_EQ(pauses, "again in 1 msagain in 2 msagain in 4 msagain in 4 msagain in 1 ms");
}

TEST_F(Link, EndsWithAPbxThatStopsInTheMiddleOfAMessage)
{
    connectImpatiently();
    const auto row = octetsOf({CstaFrame::EVENT_ID, TestPbx::csta(TestPbx::row(0, "x"))}).value();
    pbx.sendRaw(row + row.substr(0, 40));
    EXPECT_EQ(heard(), "row 0 x");
    ask();
    EXPECT_EQ(heard(), "no answer");
    EXPECT_EQ(heard(), "down");
}

TEST_F(Link, GivesALateAnswerToNobody)
{
    connectImpatiently();
    ask();
    const auto call = pbx.receive();
    pbx.event(TestPbx::row(0, "busy"));
    EXPECT_EQ(heard(), "row 0 busy");
    EXPECT_EQ(heard(), "no answer");
    ask(snapshotDevice("100"));
    pbx.send(call.invokeId, MADE);
    EXPECT_EQ(pbx.answer("<SnapshotDeviceResponse/>"), "SnapshotDevice");
    EXPECT_EQ(heard(), "SnapshotDeviceResponse");
}

// What the PBX says then waits in the network, its answers as well: it is not silent.
TEST_F(Link, ReadsNothingWhileItsListenerIsBehind)
{
    listener.readsLeft = 3; // two for the greeting
    connectImpatiently();
    pbx.event(TestPbx::row(0, "one too many"));
    EXPECT_EQ(heard(), "row 0 one too many");
    pbx.event(TestPbx::row(1, "later"));
    ask();
    EXPECT_EQ(pbx.answer(MADE), "MakeCall");
    EXPECT_EQ(heard(), "no answer");
    listener.readsLeft = 1000000;
    EXPECT_EQ(heard(), "row 1 later");
    ask();
    EXPECT_EQ(pbx.answer(MADE), "MakeCall");
    EXPECT_EQ(heard(), "MakeCallResponse");
}

TEST_F(Link, EndsWithAPbxThatIsSilent)
{
    auto impatient = pbx.settings();
    impatient.requestTimeout = 500ms;
    start(impatient);
    ASSERT_TRUE(pbx.accept()); // and says nothing
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");
    ask();
    EXPECT_EQ(heard(), "no answer");
    EXPECT_EQ(heard(), "down");
}

TEST_F(Link, StaysWithAPbxThatOnlyLeavesOneRequestUnanswered)
{
    auto impatient = pbx.settings();
    impatient.requestTimeout = 1s;
    start(impatient);
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");
    ask();
    EXPECT_EQ(pbx.receiveName(), "MakeCall");
    pbx.event(TestPbx::row(0, "busy with something else"));
    EXPECT_EQ(heard(), "row 0 busy with something else");
    EXPECT_EQ(heard(), "no answer");
    pbx.event(TestPbx::row(1, "still there"));
    EXPECT_EQ(heard(), "row 1 still there");
}

TEST_F(Link, AsksAgainHowThePbxIs)
{
    auto curious = pbx.settings();
    curious.probeInterval = 1ms;
    start(curious);
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");
    for (const auto* state : {"normal", "overloadReached"}) {
        EXPECT_EQ(pbx.answer("<RequestSystemStatusResponse><systemStatus>" + std::string(state) +
                             "</systemStatus></RequestSystemStatusResponse>"),
                  "RequestSystemStatus");
        EXPECT_EQ(heard(), "status " + std::string(state));
    }
}

TEST_F(Link, TakesTheGreatestMessages)
{
    connect();
    const auto around = TestPbx::csta(TestPbx::row(0, "")).size() + CstaFrame::HEADER_SIZE;
    const std::string text(CstaFrame::GREATEST_SIZE - around, 'x');
    pbx.event(TestPbx::row(0, text));
    EXPECT_EQ(heard(), "row 0 " + text.substr(0, 256));
    ask(makeCall("100", std::string(70000, '1')));
    EXPECT_EQ(heard(), "no answer");
}

TEST_F(Link, HasNoMoreRequestsUnderWayThanIsSane)
{
    connect();
    for (int i = 0; i < 65; ++i)
        ask();
    EXPECT_EQ(heard(), "no answer");
}

TEST_F(Link, KeepsNoEndlessAnswersForAPbxThatDoesNotListen)
{
    constexpr int QUESTIONS = 100000; // whose answers are more than a network keeps
    connect();
    const auto question = octetsOf({1, TestPbx::csta("<SetForwarding/>")}).value();
    std::string all;
    for (int i = 0; i < QUESTIONS; ++i)
        all += question;
    pbx.sendRaw(all);
    pbx.event(TestPbx::row(0, "the end"));
    EXPECT_EQ(heard(), "row 0 the end");
    m_link->stop();
    int answers = 0;
    while (pbx.receive().invokeId == 1)
        ++answers;
    EXPECT_GT(answers, 0);
    EXPECT_LT(answers, QUESTIONS);
}

TEST_F(Link, LosesNoDisplayRow)
{
    connect();
    std::string all;
    for (int i = 0; i < 5000; ++i)
        all += octetsOf({CstaFrame::EVENT_ID, TestPbx::csta(TestPbx::row(0, std::to_string(i)))}).value();
    pbx.sendRaw(all);
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(heard(), "row 0 " + std::to_string(i));
}

TEST_F(Link, IsStoppedAtAnyTime)
{
    TestPbx neverAccepts; // a connection may be left in its queue
    start(neverAccepts.settings());
    m_link->stop();
    start();
    ASSERT_TRUE(pbx.accept());
    m_link->stop();
    connect();
    ask();
    EXPECT_EQ(pbx.receiveName(), "MakeCall");
    m_link->stop();
    m_link->stop();
    EXPECT_TRUE(pbx.isClosed());
}

TEST_F(Link, LooksNamesUp)
{
    const KnownHost known("pbx.example.com", {"127.0.0.1"});
    auto named = pbx.settings();
    named.host = "pbx.example.com";
    start(named);
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");
}
