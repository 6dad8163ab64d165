#include "calls/sip/BaresipEvents.h"

#include <gtest/gtest.h>

namespace {

bool means(const std::string& json, std::size_t alternative)
{
    return engineMessageOf(json).index() == alternative;
}

constexpr std::size_t nNOTHING = 0;

} // namespace

TEST(EngineMessages, OfCallsSayWhatHappenedToWhich)
{
    const auto message = engineMessageOf(
        R"({"event":true,"type":"CALL_INCOMING","class":"call","accountaor":"sip:200@h","direction":"incoming",)"
        R"("peeruri":"sip:100@h","peerdisplayname":"Caller \\\"100\\\"","id":"f999","param":"sip:100@h"})");
    const auto& event = std::get<EngineCallEvent>(message);
    EXPECT_EQ(event.kind, EngineCallEvent::Kind::Incoming);
    EXPECT_EQ(event.id, "f999");
    EXPECT_FALSE(event.outgoing);
    EXPECT_EQ(event.peerUri, "sip:100@h");
    EXPECT_EQ(event.peerName, "Caller \"100\"");

    const auto closed = engineMessageOf(
        R"({"event":true,"type":"CALL_CLOSED","direction":"outgoing","id":"f999","param":"486 Busy Here"})");
    EXPECT_EQ(std::get<EngineCallEvent>(closed).kind, EngineCallEvent::Kind::Closed);
    EXPECT_TRUE(std::get<EngineCallEvent>(closed).outgoing);
    EXPECT_EQ(std::get<EngineCallEvent>(closed).reason, "486 Busy Here");
}

TEST(EngineMessages, OfRegistrationsSayWhetherAndWhy)
{
    const auto good = engineMessageOf(R"({"event":true,"type":"REGISTER_OK","param":"200 OK"})");
    EXPECT_TRUE(std::get<EngineRegistration>(good).registered);
    const auto bad = engineMessageOf(R"({"event":true,"type":"REGISTER_FAIL","param":"401 Unauthorized"})");
    EXPECT_FALSE(std::get<EngineRegistration>(bad).registered);
    EXPECT_EQ(std::get<EngineRegistration>(bad).reason, "401 Unauthorized");
}

TEST(EngineMessages, AnswerCommandsByTheirToken)
{
    const auto message = engineMessageOf(R"({"response":true,"ok":false,"data":"no\n","token":"t1"})");
    const auto& response = std::get<EngineResponse>(message);
    EXPECT_FALSE(response.ok);
    EXPECT_EQ(response.data, "no\n");
    EXPECT_EQ(response.token, "t1");
}

TEST(EngineMessages, AreNothingWhenTheyMakeNoSense)
{
    for (const auto* text :
         {"", "x", "[]", "null", "3", "{", "{}", R"({"event":true})",
          R"({"event":true,"type":"CALL_CLOSED"})", R"({"event":true,"type":"CALL_CLOSED","id":7})",
          R"({"event":true,"type":"CALL_MENC","id":"a"})", R"({"event":"yes","type":"REGISTER_OK"})",
          R"({"type":"REGISTER_OK"})", R"({"response":1,"ok":true})"})
        EXPECT_TRUE(means(text, nNOTHING)) << text;
    EXPECT_TRUE(means(std::string(100000, '['), nNOTHING));
}

TEST(EngineMessages, SurviveWhateverACallerWritesIntoItsName)
{
    const auto message = engineMessageOf("{\"event\":true,\"type\":\"CALL_INCOMING\",\"id\":\"a\","
                                         "\"peerdisplayname\":\"\xff\x01 M\xc3\xbcller\xe2\x80\xae\"}");
    EXPECT_EQ(std::get<EngineCallEvent>(message).peerName, "\xEF\xBF\xBD M\xc3\xbcller");
}

TEST(EngineCallEnds, AreReadFromStatusCodesAndTheEnginesTexts)
{
    EXPECT_EQ(callEndOf("486 Busy Here"), CallEnd::Busy);
    EXPECT_EQ(callEndOf("600 Busy Everywhere"), CallEnd::Busy);
    EXPECT_EQ(callEndOf("404 Not Found"), CallEnd::NotFound);
    EXPECT_EQ(callEndOf("484"), CallEnd::NotFound);
    EXPECT_EQ(callEndOf("603 Decline"), CallEnd::Declined);
    EXPECT_EQ(callEndOf("408 Request Timeout"), CallEnd::NoAnswer);
    EXPECT_EQ(callEndOf("487 Request Terminated"), CallEnd::Cleared);
    EXPECT_EQ(callEndOf("503 Service Unavailable"), CallEnd::Unreachable);
    EXPECT_EQ(callEndOf("Connection reset by user"), CallEnd::Cleared);
    EXPECT_EQ(callEndOf("Connection reset by peer"), CallEnd::Cleared);
    EXPECT_EQ(callEndOf("Connection timed out"), CallEnd::Unreachable);
    for (const auto* reason : {"", "4860 x", "40", "500 Server Internal Error", "Operation not supported"})
        EXPECT_EQ(callEndOf(reason), CallEnd::Other) << reason;
}

TEST(EngineCallStatus, TellsTheIdOfTheCallThatWasDialled)
{
    const std::string status = "\n===== Call debug (OUTGOING) =====\n local_uri:  <sip:100@h>\n"
                               " peer_uri:   <sip:201@h;transport=udp>\n af=AF_INET id=9eed8d\n"
                               " direction: Outgoing\nSDP session\n";
    EXPECT_EQ(callIdIn(status, "sip:201@h"), "9eed8d");
    EXPECT_EQ(callIdIn(status, "sip:202@h"), "");
    auto incoming = status;
    incoming.replace(incoming.find("Outgoing"), 8, "Incoming");
    EXPECT_EQ(callIdIn(incoming, "sip:201@h"), "");
    EXPECT_EQ(callIdIn("(no active calls)", "sip:201@h"), "");
}
