// The demonstration's PBX, which shares no code with the telephone: each checks the other.

#include <gtest/gtest.h>

#include <framework/csta/CSTAEventObserverBase.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/communicationsServiceTexts.h>

#include "Heard.h"
#include "calls/pbx/Pbx.h"
#include "directory/ChildProgram.h"

namespace {

using namespace communicationsServiceTexts;
using namespace std::chrono_literals;

class Demo {
public:
    explicit Demo(const std::vector<std::string>& arguments)
    {
        std::vector<std::string> words{"--pdeathsig", "KILL", SOURCE_DIR "/demo/pbx/serve"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        auto started = ChildProgram::start("/usr/bin/setpriv", words, ChildProgram::Talk::WeRead);
        if (!started)
            return;
        m_program = std::move(started).value();
        const auto line = m_program->readLine(100);
        const std::string before = "pbx-server=127.0.0.1:";
        if (line && line.value() && line.value()->starts_with(before))
            port = static_cast<std::uint16_t>(std::stoi(line.value()->substr(before.size())));
    }
    std::uint16_t port = 0;

private:
    std::unique_ptr<ChildProgram> m_program;
};

// Writes down what it hears: events, and what becomes of calls.
class Listener final : public LineObserverIfc, private CSTAEventObserverBase {
public:
    void hear(CSTAEvent& event) { event.dispatch(this); }

    void callStateChanged(const std::string&, CallState state, CallEnd why) override
    {
        calls.add(std::to_string(static_cast<int>(state)) + " " + std::to_string(static_cast<int>(why)));
    }
    std::string callOffered(LineIfc&, const Caller&) override { return "offered"; }
    void serviceChanged(LineIfc& line) override { calls.add(line.isInService() ? "in" : "out"); }

    Heard calls;
    Heard phonebook;
    Heard rows;

private:
    void handleCSTASystemStatusEvent(CSTASystemStatusEvent* event) override
    {
        phonebook.add(event->getSystemStatus() + event->getFeatureData().Availability);
    }
    void handleCSTADisplayUpdatedEvent(CSTADisplayUpdatedEvent* event) override
    {
        rows.add(event->getLogicalRows() + " " + event->getContentsOfDisplay());
    }
};

class DemonstrationPbx : public testing::Test {
protected:
    void attach(const std::vector<std::string>& arguments = {})
    {
        m_demo = std::make_unique<Demo>(arguments);
        ASSERT_NE(m_demo->port, 0);
        PbxSettings settings;
        settings.host = "127.0.0.1";
        settings.port = m_demo->port;
        settings.device = "100";
        settings.requestTimeout = m_requestTimeout;
        settings.firstPause = 1ms;
        settings.longestPause = 20ms;
        m_pbx = std::make_unique<Pbx>(
            settings, [this](const std::shared_ptr<CSTAEvent>& event) { listener.hear(*event); });
        line = m_pbx->makeLine();
        line->setObserver(&listener);
        m_pbx->start();
        auto service = listener.calls.next();
        if (service == "out") // the first attempts failed
            service = listener.calls.next();
        ASSERT_EQ(service, "in");
        ASSERT_EQ(listener.phonebook.next(), "available");
    }
    ~DemonstrationPbx() override { m_pbx.reset(); }

    bool activate()
    {
        FeatureData feature;
        feature.featureName = content_feature_name_pbxphonebook;
        feature.Action = content_localfeature_activate;
        CSTARequestSystemStatusRequest request(feature);
        m_pbx->answerSystemStatus(request);
        return request.getResponseCode() == 0;
    }
    void press(const std::string& button)
    {
        CSTAButtonPressRequest request(button);
        m_pbx->pressButton(request);
    }
    std::string rows(int count)
    {
        std::string all;
        for (int i = 0; i < count; ++i)
            all += listener.rows.next() + "\n";
        return all;
    }
    static std::string told(CallState state, CallEnd why = CallEnd::Cleared)
    {
        return std::to_string(static_cast<int>(state)) + " " + std::to_string(static_cast<int>(why));
    }

    std::chrono::milliseconds m_requestTimeout = 60s;
    Listener listener;
    std::unique_ptr<LineIfc> line;

private:
    std::unique_ptr<Demo> m_demo;
    std::unique_ptr<Pbx> m_pbx;
};

} // namespace

TEST_F(DemonstrationPbx, ShowsItsPhonebookAndTakesKeys)
{
    attach();
    ASSERT_TRUE(activate());
    EXPECT_EQ(rows(6),
              "0 PBX phonebook\n1 > Abel, Nora\n2   Baumann, Timo\n3   Castell, Ida\n4   Dorn, Felix\n"
              "5 1 of 11\n");
    press("3");
    EXPECT_EQ(rows(6),
              "0 PBX phonebook\n1   Castell, Ida\n2 > Dorn, Felix\n3   Engel, Mira\n4   Fiedler, Jost\n"
              "5 4 of 11\n");
    press("ok");
    EXPECT_EQ(rows(6), "4 \n3 \n0 PBX phonebook\n1 Dorn, Felix\n2 Extension 2104\n5 OK: back\n");
}

TEST_F(DemonstrationPbx, LeavesNothingOnTheDisplayOfWhoHasLeft)
{
    attach();
    ASSERT_TRUE(activate());
    rows(6);
    press("leave");
    EXPECT_EQ(rows(1), "0 \n");
    ASSERT_TRUE(activate());
    EXPECT_EQ(rows(1), "0 PBX phonebook\n");
}

TEST_F(DemonstrationPbx, SwitchesItsPhonebookOff)
{
    attach();
    ASSERT_TRUE(activate());
    rows(6);
    press("up");
    EXPECT_NE(rows(6).find("> Switch off"), std::string::npos);
    press("ok");
    EXPECT_EQ(rows(1), "0 \n"); // nothing of it stays
    EXPECT_EQ(listener.phonebook.next(), "unavailable");
    EXPECT_FALSE(activate());
}

TEST_F(DemonstrationPbx, RoutesCalls)
{
    attach();
    ASSERT_TRUE(line->placeCall("1", "4711"));
    EXPECT_EQ(listener.calls.next(), told(CallState::Alerting));
    EXPECT_EQ(listener.calls.next(), told(CallState::Connected));
    line->clearCall("1");
    EXPECT_EQ(listener.calls.next(), told(CallState::Null));
    ASSERT_TRUE(line->placeCall("2", "486"));
    EXPECT_EQ(listener.calls.next(), told(CallState::Failed, CallEnd::Busy));
    ASSERT_TRUE(line->placeCall("3", "404"));
    EXPECT_EQ(listener.calls.next(), told(CallState::Failed, CallEnd::NotFound));
    ASSERT_TRUE(line->placeCall("4", "603"));
    EXPECT_EQ(listener.calls.next(), told(CallState::Failed, CallEnd::Declined));
    ASSERT_TRUE(line->placeCall("5", "408"));
    EXPECT_EQ(listener.calls.next(), told(CallState::Alerting));
    line->clearCall("5");
    EXPECT_EQ(listener.calls.next(), told(CallState::Null));
}

TEST_F(DemonstrationPbx, NeverPretendsThatHelpWasReached)
{
    attach();
    for (const auto* number : {"110", "112", "0112", "911", "17"}) {
        ASSERT_TRUE(line->placeCall(number, number));
        EXPECT_EQ(listener.calls.next(), told(CallState::Failed, CallEnd::Unreachable)) << number;
    }
}

TEST_F(DemonstrationPbx, LetsACallBePickedUp)
{
    attach();
    ASSERT_TRUE(line->pickUpCall("1", "201"));
    EXPECT_EQ(listener.calls.next(), told(CallState::Connected));
    ASSERT_TRUE(line->pickUpCall("2", "999"));
    EXPECT_EQ(listener.calls.next(), told(CallState::Failed, CallEnd::Other));
}

TEST_F(DemonstrationPbx, IsAttachedToInTheEndHoweverItFails)
{
    m_requestTimeout = 500ms;
    attach({"--fail", "silent,garbage,errors,close,ids"});
}

TEST_F(DemonstrationPbx, IsUnderstoodInWrongOrder)
{
    attach({"--fail", "order"});
    EXPECT_TRUE(activate());
    EXPECT_EQ(listener.rows.next(), "0 PBX phonebook");
}

TEST_F(DemonstrationPbx, IsUnderstoodAmongLargeAndUnknownEventsInAnotherEdition)
{
    attach({"--fail", "unknown", "--edition", "6"});
    EXPECT_TRUE(activate());
    EXPECT_EQ(listener.rows.next(), "0 PBX phonebook");
}

TEST_F(DemonstrationPbx, SendsAThousandRowsASecondOfWhichNoneIsLost)
{
    attach({"--fail", "flood"});
    ASSERT_TRUE(activate());
    rows(6);
    for (int i = 1; i <= 1000; ++i)
        ASSERT_EQ(listener.rows.next(), "5 update " + std::to_string(i) + " of 1000");
}
