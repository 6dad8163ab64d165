#include <csignal>

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ip/udp.hpp>
#include <boost/asio/write.hpp>

#include <gtest/gtest.h>

#include <testing/LogCapture.h>

#include "EngineProcess.h"
#include "LineWatcher.h"
#include "Sipp.h"
#include "Soon.h"
#include "TemporaryFolder.h"
#include "calls/sip/SipLine.h"

namespace {

namespace asio = boost::asio;
using std::chrono::milliseconds;

class SipCalls : public testing::Test {
protected:
    // In service, and everything it dials goes to `peer`, a port of this machine.
    void useLine(int peer)
    {
        settings.user = "100";
        settings.displayName = "Anna \"A\" Miller";
        settings.outboundProxy = SipHost{"127.0.0.1", peer};
        settings.profile = folder.path();
        settings.port = freeSipPort();
        line = std::make_unique<SipLine>(settings);
        line->setObserver(&watcher);
        ASSERT_TRUE(watcher.isInService(*line));
    }

    // A call to `peer` that the callee refuses with `status`.
    void expectRefusal(const std::string& status, CallEnd why)
    {
        for (const auto* scenario : {"refuses", "rings-and-refuses"}) {
            Sipp callee(scenario, status);
            useLine(callee.port());
            ASSERT_TRUE(line->placeCall("1", "201"));
            EXPECT_TRUE(watcher.ends("1", CallState::Failed, why)) << status << ' ' << scenario;
            EXPECT_TRUE(callee.succeeds());
            watcher.forget();
        }
    }
    // What the callee gets to see of a number.
    std::string dialled(const std::string& number)
    {
        Sipp callee("refuses", "404 Not Found");
        useLine(callee.port());
        EXPECT_TRUE(line->placeCall("1", number));
        EXPECT_TRUE(watcher.ends("1", CallState::Failed, CallEnd::NotFound)) << number;
        EXPECT_TRUE(callee.succeeds()) << number;
        watcher.forget();
        const auto messages = callee.messages();
        const auto begin = messages.find("INVITE sip:") + 11;
        return messages.substr(begin, messages.find('@', begin) - begin);
    }
    std::string request(const std::string& method, const std::string& id, const std::string& caller) const
    {
        return method + " sip:100@127.0.0.1 SIP/2.0\r\nVia: SIP/2.0/UDP 127.0.0.1;rport;branch=z9hG4bK" + id +
               "\r\nFrom: " + caller + ";tag=1\r\nTo: <sip:100@127.0.0.1>\r\nCall-ID: " + id +
               "\r\nCSeq: 1 " + method +
               "\r\nContact: <sip:300@127.0.0.1>\r\nMax-Forwards: 70\r\nContent-Length: 0\r\n\r\n";
    }
    template <typename Protocol> auto calledAt() const
    {
        return typename Protocol::endpoint(asio::ip::address_v4::loopback(),
                                           static_cast<std::uint16_t>(settings.port));
    }
    // A caller who gives up before the line can have said anything; what it says then.
    std::string callAndGiveUp(const std::string& id) const
    {
        asio::io_context io;
        asio::ip::udp::socket caller(io, {asio::ip::address_v4::loopback(), 0});
        for (const std::string method : {"INVITE", "CANCEL"})
            caller.send_to(asio::buffer(request(method, id, "<sip:300@127.0.0.1>")),
                           calledAt<asio::ip::udp>());
        std::string answer(2000, '\0');
        caller.async_receive(asio::buffer(answer), [](const auto&, std::size_t) {});
        io.run_for(std::chrono::seconds(10));
        return answer;
    }
    // A call that comes in from `caller` and rings.
    LineWatcher::Offer ringing()
    {
        auto offer = watcher.offer();
        EXPECT_NE(offer.callId, "");
        return offer;
    }

    TemporaryFolder folder;
    LogCapture log;
    SipSettings settings;
    LineWatcher watcher;
    std::unique_ptr<SipLine> line;
};

} // namespace

TEST_F(SipCalls, RingThenConnectThenEndWhenTheUserHangsUp)
{
    Sipp callee("answers");
    useLine(callee.port());
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Connected));
    line->clearCall("1");
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
    EXPECT_EQ(watcher.states("1"), (std::vector{CallState::Alerting, CallState::Connected, CallState::Null}));
    EXPECT_TRUE(callee.succeeds());
    const auto messages = callee.messages();
    EXPECT_NE(messages.find("INVITE sip:201@127.0.0.1:" + std::to_string(callee.port())), std::string::npos);
    EXPECT_NE(messages.find("From: \"Anna \\\"A\\\" Miller\" <sip:100@"), std::string::npos);
}

TEST_F(SipCalls, EndWhenTheCalleeHangsUp)
{
    Sipp callee("hangs-up");
    useLine(callee.port());
    ASSERT_TRUE(line->placeCall("1", "201"));
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
    EXPECT_EQ(watcher.states("1"), (std::vector{CallState::Alerting, CallState::Connected, CallState::Null}));
    EXPECT_TRUE(callee.succeeds());
}

TEST_F(SipCalls, FailForTheReasonThatTheCalleeGives)
{
    expectRefusal("486 Busy Here", CallEnd::Busy);
    expectRefusal("404 Not Found", CallEnd::NotFound);
    expectRefusal("603 Decline", CallEnd::Declined);
    expectRefusal("480 Temporarily Unavailable", CallEnd::Unreachable);
    expectRefusal("500 Server Internal Error", CallEnd::Other);
}

TEST_F(SipCalls, AreGivenUpWhenNobodyAnswers)
{
    Sipp callee("rings");
    settings.noAnswerTime = milliseconds(300);
    useLine(callee.port());
    ASSERT_TRUE(line->placeCall("1", "201"));
    EXPECT_TRUE(watcher.ends("1", CallState::Failed, CallEnd::NoAnswer));
    EXPECT_TRUE(callee.succeeds()); // it was told that the call is cancelled
}

TEST_F(SipCalls, AreGivenUpWhenThereIsNobody)
{
    settings.noAnswerTime = milliseconds(300);
    useLine(freePort());
    ASSERT_TRUE(line->placeCall("1", "201"));
    EXPECT_TRUE(watcher.ends("1", CallState::Failed, CallEnd::NoAnswer));
}

TEST_F(SipCalls, FailAtOnceWhereNobodyTakesConnections)
{
    settings.transport = SipTransport::Tcp;
    useLine(freePort());
    ASSERT_TRUE(line->placeCall("1", "201"));
    EXPECT_TRUE(watcher.ends("1", CallState::Failed, CallEnd::Unreachable));
}

TEST_F(SipCalls, CanBeCancelledWhileTheyRing)
{
    Sipp callee("rings");
    useLine(callee.port());
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Alerting));
    line->clearCall("1");
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
    EXPECT_TRUE(callee.succeeds());
}

TEST_F(SipCalls, CanBeCancelledBeforeAnybodyAnswers)
{
    useLine(freePort());
    ASSERT_TRUE(line->placeCall("1", "201"));
    line->clearCall("1");
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
}

TEST_F(SipCalls, AreRefusedWhileThereIsOne)
{
    Sipp callee("answers");
    useLine(callee.port());
    ASSERT_TRUE(line->placeCall("1", "201"));
    EXPECT_FALSE(line->placeCall("2", "202"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Connected));
    EXPECT_FALSE(line->placeCall("2", "202"));
    EXPECT_FALSE(line->pickUpCall("2", "202"));
    Sipp caller("calls-in-vain", "100", settings.port, "<sip:300@127.0.0.1>");
    EXPECT_TRUE(caller.succeeds());
    EXPECT_FALSE(watcher.hasOffer());
    line->clearCall("1");
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
    EXPECT_TRUE(callee.succeeds()); // nothing has disturbed it
}

TEST_F(SipCalls, GoOnWhoeverCallsAndGivesUpAtOnce)
{
    Sipp callee("answers");
    useLine(callee.port());
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Connected));
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(callAndGiveUp(std::to_string(i)).starts_with("SIP/2.0 486"));
    EXPECT_FALSE(watcher.hasOffer());
    EXPECT_EQ(watcher.states("1"), (std::vector{CallState::Alerting, CallState::Connected}));
    line->clearCall("1");
    EXPECT_TRUE(callee.succeeds());
}

TEST_F(SipCalls, GoNowhereThatOnlyThePeerWants)
{
    Sipp callee("transfers");
    useLine(callee.port());
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Connected));
    ASSERT_TRUE(soon([&] { return callee.messages().find("\nSIP/2.0 501 ") != std::string::npos; }));
    EXPECT_EQ(callee.messages().find("INVITE sip:premium"), std::string::npos);
    line->clearCall("1");
    EXPECT_TRUE(callee.succeeds());
}

TEST_F(SipCalls, CanFollowOneThatIsJustBeingEnded)
{
    Sipp callee("rings");
    Sipp next("answers");
    useLine(callee.port());
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Alerting));
    line->clearCall("1");
    ASSERT_TRUE(line->placeCall("2", "201@127.0.0.1:" + std::to_string(next.port())));
    EXPECT_TRUE(watcher.becomes("2", CallState::Connected));
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
    line->clearCall("2");
    EXPECT_TRUE(watcher.ends("2", CallState::Null, CallEnd::Cleared));
    EXPECT_TRUE(next.succeeds());
}

TEST_F(SipCalls, AreMadeOfWhateverIsDialled)
{
    EXPECT_EQ(dialled("+49 30 1234"), "+49301234");
    EXPECT_EQ(dialled("*8201"), "*8201");
    EXPECT_EQ(dialled("#31#201"), "%2331%23201");
    EXPECT_EQ(dialled("0800 FLOWERS"), "0800FLOWERS");
    EXPECT_EQ(dialled("1;x=\"<2>\"?y"), "1%3Bx%3D%22%3C2%3E%22%3Fy");
    const std::string longest(200, '7');
    EXPECT_EQ(dialled(longest), longest);
    EXPECT_EQ(dialled(std::string(200, '#')).size(), 600u);
}

TEST_F(SipCalls, AreRefusedWhereNoNumberIsDialled)
{
    useLine(freePort());
    for (const auto* number : {"", " ", "1\r\nVia: x", "1\t2", "sip:"})
        EXPECT_FALSE(line->placeCall("1", number)) << number;
    EXPECT_FALSE(line->pickUpCall("1", ""));
    EXPECT_FALSE(line->placeCall("1", std::string(256, '7')));
    EXPECT_TRUE(watcher.states("1").empty());
}

TEST_F(SipCalls, OfOthersArePickedUpWithTheExchangesCode)
{
    Sipp callee("answers");
    useLine(callee.port());
    ASSERT_TRUE(line->pickUpCall("1", "201"));
    EXPECT_TRUE(watcher.becomes("1", CallState::Connected));
    EXPECT_NE(callee.messages().find("INVITE sip:*8201@"), std::string::npos);
    line->clearCall("1");
    EXPECT_TRUE(callee.succeeds());
}

TEST_F(SipCalls, ComeInWithTheCallersNumberAndName)
{
    useLine(freePort());
    Sipp caller("calls", "100", settings.port,
                "\"M\u00fcller, \\\"Max\\\"\" <sip:+4930%23123;x=1@127.0.0.1>");
    const auto offer = ringing();
    EXPECT_EQ(offer.caller.name, "M\u00fcller, \"Max\"");
    EXPECT_EQ(offer.caller.number, "+4930#123");
    line->answerCall(offer.callId);
    ASSERT_TRUE(watcher.becomes(offer.callId, CallState::Connected));
    line->clearCall(offer.callId);
    EXPECT_TRUE(watcher.ends(offer.callId, CallState::Null, CallEnd::Cleared));
    EXPECT_TRUE(caller.succeeds());
}

TEST_F(SipCalls, ThatCameInEndWhenTheCallerHangsUp)
{
    useLine(freePort());
    Sipp caller("calls-and-hangs-up", "100", settings.port, "<sip:300@127.0.0.1>");
    const auto offer = ringing();
    EXPECT_EQ(offer.caller.name, "");
    line->answerCall(offer.callId);
    EXPECT_TRUE(watcher.ends(offer.callId, CallState::Null, CallEnd::Cleared));
    EXPECT_TRUE(caller.succeeds());
}

TEST_F(SipCalls, CanBeRejected)
{
    useLine(freePort());
    Sipp caller("calls-in-vain", "100", settings.port, "<sip:anonymous@anonymous.invalid>");
    const auto offer = ringing();
    EXPECT_EQ(offer.caller.number, "");
    line->clearCall(offer.callId);
    EXPECT_TRUE(watcher.ends(offer.callId, CallState::Null, CallEnd::Cleared));
    EXPECT_TRUE(caller.succeeds());
}

TEST_F(SipCalls, StopRingingWhenTheCallerGivesUp)
{
    useLine(freePort());
    Sipp caller("calls-and-gives-up", "100", settings.port, "<sip:300@127.0.0.1>");
    const auto offer = ringing();
    EXPECT_TRUE(watcher.ends(offer.callId, CallState::Null, CallEnd::Cleared));
    EXPECT_TRUE(caller.succeeds());
    line->answerCall(offer.callId); // too late: nothing
    EXPECT_EQ(watcher.states(offer.callId), (std::vector{CallState::Null}));
}

TEST_F(SipCalls, ComeInWhateverTheCallersNameIs)
{
    useLine(freePort());
    Sipp caller("calls-in-vain", "100", settings.port, "\"\xff\xfe \x01\" <sip:300@127.0.0.1>");
    const auto offer = ringing();
    EXPECT_EQ(offer.caller.number, "300");
    line->clearCall(offer.callId);
    EXPECT_TRUE(caller.succeeds());
}

TEST_F(SipCalls, ComeInHoweverLongTheCallersNameIs)
{
    useLine(freePort());
    const std::string longest(3000, 'n');
    Sipp caller("calls-in-vain", "100", settings.port, "\"" + longest + "\" <sip:" + longest + "@127.0.0.1>");
    const auto offer = ringing();
    EXPECT_EQ(offer.caller.name, longest.substr(0, 100));
    EXPECT_EQ(offer.caller.number, longest.substr(0, 100));
    line->clearCall(offer.callId);
    EXPECT_TRUE(caller.succeeds());
}

TEST_F(SipCalls, ComeInWithAMessageThatIsMadeToBeTooLong)
{
    useLine(freePort());
    // Each of these octets is told as six.
    const auto name = "\"" + std::string(60000, '\x01') + "\" ";
    asio::io_context io;
    asio::ip::tcp::socket caller(io);
    caller.connect(calledAt<asio::ip::tcp>());
    asio::write(caller, asio::buffer(request("INVITE", "long", name + "<sip:300@127.0.0.1>")));
    const auto offer = ringing();
    EXPECT_EQ(offer.caller.name, "");
    EXPECT_EQ(offer.caller.number, "300");
    line->clearCall(offer.callId);
    EXPECT_TRUE(watcher.ends(offer.callId, CallState::Null, CallEnd::Cleared));
    EXPECT_TRUE(line->isInService());
}
