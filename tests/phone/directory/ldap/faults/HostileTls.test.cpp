// Servers that are not whom they say, and networks that do not want TLS.

#include <future>

#include "DirectoryFaults.h"

using namespace std::chrono_literals;
using namespace ldap_bytes;

namespace {

class HostileTls : public DirectoryFaults {
protected:
    void keepPassword() { ASSERT_TRUE(LdapPassword(profile.path()).write(Slapd::PASSWORD, {"127.0.0.1"})); }

    // Whatever the server answers to the wish for TLS: nothing else than that wish and handshakes is
    // ever said to it.
    void expectNoPassword(DirectoryStatus expected, FaultServer::Script script)
    {
        FaultServer server(std::move(script));
        keepPassword();
        configure({{"ldap-servers", server.uri()}, {"ldap-bind-dn", Slapd::bindDn()}});
        expectSearchEnds(expected);
        const auto seen = server.received();
        EXPECT_NE(seen.find("1.3.6.1.4.1.1466.20037"), std::string::npos) << "it was asked for TLS";
        for (const std::string secret : {Slapd::PASSWORD, "cn=telephone", "objectClass", "Mil", "mil"})
            EXPECT_EQ(seen.find(secret), std::string::npos) << secret;
        for (const auto& line : log.lines())
            EXPECT_EQ(line.text.find(Slapd::PASSWORD), std::string::npos) << line.text;
    }

    // After how many bytes of the good server it is in the middle of talking.
    std::vector<std::size_t> placesUnderTls()
    {
        std::promise<std::size_t> said;
        FaultServer whole([&said](Conversation& c) { said.set_value(c.passOn(s_good->port())); });
        configure({{"ldap-servers", whole.uri()}});
        EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
        configure({});
        const auto size = said.get_future().get();
        return {size / 4, size / 2, size * 3 / 4};
    }
};

// Answers the wish for TLS so, and goes on without.
FaultServer::Script stripping(int code, const std::string& more = "")
{
    return [code, more](Conversation& c) {
        if (const auto wish = c.request())
            c.send(result(wish->id, ExtendedResponse, code) + more);
        while (const auto request = c.request())
            c.send(result(request->id, BindResponse, 0));
        c.untilClosed();
    };
}

} // namespace

TEST_F(HostileTls, ServerThatKnowsNoTlsGetsNoPassword)
{
    expectNoPassword(DIRECTORY_WRONG_BASE, stripping(2));
}

TEST_F(HostileTls, ServerThatIsOutOfTlsGetsNoPassword)
{
    expectNoPassword(DIRECTORY_WRONG_BASE, stripping(52));
}

TEST_F(HostileTls, ServerThatSendsUsElsewhereForTlsGetsNoPassword)
{
    expectNoPassword(DIRECTORY_WRONG_BASE, stripping(10));
}

TEST_F(HostileTls, ServerThatGoesOnWithoutTlsGetsNoPassword)
{
    expectNoPassword(DIRECTORY_CONNECTION_FAILURE, stripping(0));
}

TEST_F(HostileTls, ServerThatAnswersBeforeTlsIsInPlaceGetsNoPassword)
{
    expectNoPassword(DIRECTORY_CONNECTION_FAILURE,
                     stripping(0, result(2, BindResponse, 0) + result(3, BindResponse, 0)));
}

TEST_F(HostileTls, ServerThatAnswersTheWishForTlsWithABindGetsNoPassword)
{
    expectNoPassword(DIRECTORY_CONNECTION_FAILURE, [](Conversation& c) {
        while (const auto request = c.request())
            c.send(result(request->id, BindResponse, 0));
        c.untilClosed();
    });
}

TEST_F(HostileTls, ServerThatHangsUpWhenAskedForTlsGetsNoPassword)
{
    expectNoPassword(DIRECTORY_CONNECTION_FAILURE, [](Conversation& c) { c.request(); });
}

TEST_F(HostileTls, ConversationThatEndsAnywhereHasFailed)
{
    // Up to where everything was said: TLS, who we are, and two people.
    constexpr std::size_t step = 61;
    bool whole = false;
    for (std::size_t most = 1; !whole; most += step) {
        FaultServer server([most](Conversation& c) { c.passOn(s_good->port(), most); });
        configure({{"ldap-servers", server.uri()}});
        const auto begun = Clock::now();
        const auto status = searchSurname("mil*");
        EXPECT_LT(Clock::now() - begun, SEARCH_TIME + SLACK) << most;
        whole = status == DIRECTORY_SUCCESS;
        if (whole)
            EXPECT_EQ(found(Utils::FIRSTNAME), (Strings{"Ann", "Bob"}));
        else
            EXPECT_EQ(status, DIRECTORY_CONNECTION_FAILURE) << most << errors();
        ASSERT_LT(most, 20000u);
    }
}

TEST_F(HostileTls, ConversationThatFallsSilentUnderTlsIsEndedByTheDeadline)
{
    for (const auto most : placesUnderTls()) {
        FaultServer server([most](Conversation& c) {
            c.passOn(s_good->port(), most);
            c.untilClosed();
        });
        configure({{"ldap-servers", server.uri()}});
        expectSearchEnds(DIRECTORY_CONNECTION_FAILURE);
        expectRecovery(server);
    }
}

TEST_F(HostileTls, GarbageUnderTlsEndsTheSearch)
{
    for (const auto most : placesUnderTls()) {
        FaultServer server([most](Conversation& c) {
            c.passOn(s_good->port(), most);
            c.flood(std::string(65536, '\x17'), 600u * 1024 * 1024);
            c.untilClosed();
        });
        configure({{"ldap-servers", server.uri()}});
        expectSearchEnds(DIRECTORY_CONNECTION_FAILURE);
        expectRecovery(server);
    }
}

namespace {

struct Doubtful {
    const char* name;
    CertificateWish wish;
    bool ofAStranger;
};

void PrintTo(const Doubtful& doubtful, std::ostream* out)
{
    *out << doubtful.name;
}

const Doubtful nDOUBTFUL[] = {
    {"OfAnotherHost", {.subject = "other.example.com", .names = "DNS:other.example.com"}, false},
    {"ThatExpired", {.from = -20, .until = -10}, false},
    {"SignedByItself", {.selfSigned = true}, false},
    {"OfAnUnknownIssuer", {}, true},
};

class Certificate : public HostileTls, public testing::WithParamInterface<Doubtful> {};

} // namespace

TEST_P(Certificate, GetsNoPassword)
{
    std::filesystem::create_directory(profile / "stranger");
    TestAuthority stranger(profile / "stranger");
    auto& authority = GetParam().ofAStranger ? stranger : *s_authority;
    TemporaryFolder folder(std::filesystem::temp_directory_path());
    Slapd suspect(folder.path(), {person("Miller", "Eve"), authority.issue(GetParam().wish), "", ""});
    keepPassword();
    for (const auto& uri : {suspect.uri(), suspect.tlsUri()}) {
        configure({{"ldap-servers", uri}, {"ldap-bind-dn", Slapd::bindDn()}});
        expectSearchEnds(DIRECTORY_WRONG_BASE);
        EXPECT_TRUE(records.empty());
        configure({{"ldap-servers", uri + "," + s_good->uri()}, {"ldap-bind-dn", Slapd::bindDn()}});
        expectSearchEnds(DIRECTORY_SUCCESS);
        EXPECT_EQ(found(Utils::FIRSTNAME), (Strings{"Ann", "Bob"})) << "and none of the suspect's";
    }
    suspect.kill();
    EXPECT_EQ(suspect.log().find(" BIND "), std::string::npos) << suspect.log();
}

INSTANTIATE_TEST_SUITE_P(Doubtful, Certificate, testing::ValuesIn(nDOUBTFUL),
                         [](const auto& doubtful) { return std::string(doubtful.param.name); });
