// Servers that are not there, or there and silent.

#include <future>

#include "DirectoryFaults.h"

using namespace std::chrono_literals;
using namespace ldap_bytes;

namespace {

// At which step of a search a server falls silent.
struct Silence {
    const char* name;
    const char* scheme;
    const char* security; // "ldap-security"
    FaultServer::Script script;
};

void PrintTo(const Silence& silence, std::ostream* out)
{
    *out << silence.name;
}

const Silence nSILENCES[] = {
    {"AfterAccepting", "ldap", "none", [](Conversation& c) { c.untilClosed(); }},
    {"InTheHandshakeOfLdaps", "ldaps", "none", [](Conversation& c) { c.untilClosed(); }},
    {"WhenAskedForTls", "ldap", "starttls", [](Conversation& c) { c.untilClosed(); }},
    {"InTheHandshakeOfStartTls", "ldap", "starttls",
     [](Conversation& c) {
         if (const auto request = c.request())
             c.send(result(request->id, ExtendedResponse, 0));
         c.untilClosed();
     }},
    {"AfterTheBeginningOfTheHandshake", "ldaps", "none",
     [](Conversation& c) {
         c.send(std::string("\x16\x03\x03\x40\x00\x02", 6));
         c.untilClosed();
     }},
    {"WhenSearched", "ldap", "none",
     [](Conversation& c) {
         if (const auto bind = c.request())
             c.send(result(bind->id, BindResponse, 0));
         c.untilClosed();
     }},
    {"InTheMiddleOfAnAnswer", "ldap", "none",
     [](Conversation& c) {
         c.request();
         c.send(std::string("\x30\x0c\x02", 3));
         c.untilClosed();
     }},
    {"ByOneByteAtATime", "ldap", "none",
     [](Conversation& c) {
         if (const auto bind = c.request())
             c.dribble(result(bind->id, BindResponse, 0, std::string(1000, '.')), 100ms);
     }},
    {"ByOneByteASecond", "ldap", "none",
     [](Conversation& c) {
         if (const auto bind = c.request())
             c.send(result(bind->id, BindResponse, 0));
         if (const auto search = c.request())
             c.dribble(entry(search->id, "cn=x", {{"sn", {std::string(1000, 'x')}}}), 1s);
     }},
    {"ByOneByteOfTheHandshakeAtATime", "ldaps", "none",
     [](Conversation& c) { c.dribble("\x16\x03\x03\x40" + std::string(1000, '\2'), 100ms); }},
};

class SilentServer : public DirectoryFaults, public testing::WithParamInterface<Silence> {
protected:
    static std::string uri(const FaultServer& server)
    {
        return GetParam().scheme == std::string("ldaps") ? server.tlsUri() : server.uri();
    }
};

} // namespace

TEST_P(SilentServer, IsWaitedForUntilTheDeadline)
{
    FaultServer server(GetParam().script);
    configurePlain(uri(server), {{"ldap-security", GetParam().security}});
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE);
    EXPECT_TRUE(records.empty());
}

TEST_P(SilentServer, IsLeftForTheNext)
{
    FaultServer server(GetParam().script);
    configurePlain(uri(server) + "," + s_good->uri(),
                   {{"ldap-security", GetParam().security}, {"ldap-search-timeout", "4"}});
    const auto begun = Clock::now();
    // A search that was accepted may take its whole time: then the next search goes elsewhere.
    const bool accepted = server.connections() == 0 && searchSurname("mil*") != DIRECTORY_SUCCESS;
    EXPECT_LT(Clock::now() - begun, 4s + SLACK);
    EXPECT_EQ(accepted, std::string(GetParam().name) == "WhenSearched" ||
                            std::string(GetParam().name) == "ByOneByteASecond");
    const int connections = server.connections();
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    EXPECT_EQ(found(Utils::FIRSTNAME), (Strings{"Ann", "Bob"}));
    EXPECT_EQ(server.connections(), connections) << "it was asked again";
}

TEST_P(SilentServer, KeepsNobodyFromSwitchingOff)
{
    FaultServer server(GetParam().script);
    configurePlain(uri(server), {{"ldap-security", GetParam().security},
                                 {"ldap-connect-timeout", "60"},
                                 {"ldap-search-timeout", "60"}});
    expectOffAtOnce([&server] { ASSERT_TRUE(server.waitUntilAsked()); });
}

TEST_P(SilentServer, IsLeftAloneOnceOthersAreConfigured)
{
    FaultServer server(GetParam().script);
    configurePlain(uri(server), {{"ldap-security", GetParam().security}});
    const auto begun = Clock::now();
    auto search = std::async(std::launch::async, [this] {
        PhonebookSearchResults results;
        return client.search({{{Utils::SURNAME, "mil*"}}, "", true}, results, true);
    });
    ASSERT_TRUE(server.waitUntilAsked());
    configure({{"ldap-search-timeout", "10"}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    EXPECT_LT(Clock::now() - begun, SEARCH_TIME + SLACK) << "the search before it had its own deadline";
    EXPECT_EQ(search.get(), DIRECTORY_CONNECTION_FAILURE);
}

INSTANTIATE_TEST_SUITE_P(Falls, SilentServer, testing::ValuesIn(nSILENCES),
                         [](const auto& silence) { return std::string(silence.param.name); });

namespace {

class AbsentServer : public DirectoryFaults {};

std::string refusing()
{
    return "ldap://127.0.0.1:" + std::to_string(freePort());
}

} // namespace

TEST_F(AbsentServer, RefusesAtOnce)
{
    configurePlain(refusing());
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE);
    EXPECT_TRUE(said("there is no connection (Connection refused)")) << errors();
}

TEST_F(AbsentServer, SwallowsConnectionsUntilTheDeadline)
{
    BlackHole hole;
    configurePlain(hole.uri());
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE);
    EXPECT_TRUE(said("nothing answers there")) << errors();
}

TEST_F(AbsentServer, IsLeftForTheNext)
{
    BlackHole hole;
    for (const auto& absent : {refusing(), hole.uri()}) {
        configure({{"ldap-servers", absent + "," + s_good->uri()}, {"ldap-search-timeout", "3"}});
        const auto begun = Clock::now();
        EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << absent << errors();
        EXPECT_LT(Clock::now() - begun, 3s + SLACK);
    }
}

TEST_F(AbsentServer, KeepsNobodyFromSwitchingOff)
{
    // Sends away whom the hole swallows next.
    FaultServer before([](Conversation& c) { c.request(); });
    BlackHole hole;
    configurePlain(before.uri() + "," + hole.uri(),
                   {{"ldap-connect-timeout", "60"}, {"ldap-search-timeout", "60"}});
    expectOffAtOnce([&before] { ASSERT_TRUE(before.waitUntilAsked()); });
}
