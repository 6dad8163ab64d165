#include "calls/pbx/PbxLink.h"

#include <gtest/gtest.h>

#include "Heard.h"
#include "TestPbx.h"

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
    bool isBehind() override { return false; }

    Heard heard;
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
    for (const auto* group : {"operation", "security", "stateIncompatibility", "systemResourceAvailibility",
                              "subscribedResourceAvailability", "performanceManagement", "privateData",
                              "privateErrorCode", "unspecified"}) {
        const std::string name = group;
        ask();
        pbx.answer("<CSTAErrorCode><" + name + ">generic</" + name + "></CSTAErrorCode>");
        EXPECT_EQ(heard(), name + " generic");
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
    const auto delivered = [](const std::string& monitor, const std::string& call) {
        return "<DeliveredEvent><monitorCrossRefID>" + monitor + "</monitorCrossRefID><connection><callID>" +
               call + "</callID></connection></DeliveredEvent>";
    };
    pbx.event(delivered("another", "1"));
    pbx.event("<TeleportedEvent><monitorCrossRefID>m1</monitorCrossRefID></TeleportedEvent>");
    pbx.event("rubbish");
    pbx.event(delivered("m1", "2"));
    EXPECT_EQ(heard(), "call 2");
    pbx.event(TestPbx::feature("<Availability>unavailable</Availability>"));
    EXPECT_EQ(heard(), "status  unavailable");
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

    // As an event it has no answer: the next message is the telephone's own.
    pbx.event("<SystemStatus><systemStatus>enabled</systemStatus></SystemStatus>");
    EXPECT_EQ(heard(), "status enabled");
    ask();
    EXPECT_EQ(pbx.receiveName(), "MakeCall");
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
    ASSERT_TRUE(pbx.accept());
    pbx.answer("<CSTAErrorCode><operation>invalidMonitorObject</operation></CSTAErrorCode>");
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
    EXPECT_EQ(heard(), "row 0 " + text);
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
    start();
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
    auto named = pbx.settings();
    named.host = "localhost";
    start(named);
    ASSERT_TRUE(pbx.welcome());
    EXPECT_EQ(heard(), "up normal available");
}
