// Servers that are found by a name: which of its addresses is asked, and which certificates are for it.

#include "../KnownHost.h"
#include "DirectoryFaults.h"

namespace {

class ServerName : public DirectoryFaults {
protected:
    static std::string portOf(const std::string& uri) { return uri.substr(uri.rfind(':')); }

    // Another server, whose certificate is for these names.
    std::unique_ptr<Slapd> serverFor(const std::string& names, const std::string& subject = "somebody")
    {
        std::filesystem::create_directory(profile / "server");
        return std::make_unique<Slapd>(
            profile / "server", SlapdOptions{person("Miller", "Ann") + person("Milton", "Bob"),
                                             s_authority->issue({subject, names, -1, 30, false}), "", ""});
    }

    // What a search of `server` under this name comes to, with StartTLS and with LDAPS.
    void expectSearch(const Slapd& server, const std::string& name, DirectoryStatus expected)
    {
        const KnownHost known(name, {"127.0.0.1"});
        for (const auto& uri :
             {"ldap://" + name + portOf(server.uri()), "ldaps://" + name + portOf(server.tlsUri())}) {
            configure({{"ldap-servers", uri}});
            EXPECT_EQ(searchSurname("mil*"), expected) << uri << errors();
        }
    }
};

} // namespace

TEST_F(ServerName, IsAskedAtTheFirstAddressThatAnswers)
{
    const auto server = serverFor("DNS:ldap.example.com");
    // Nobody listens at the first two.
    const KnownHost known("ldap.example.com", {"::1", "127.0.0.2", "127.0.0.1"});
    configure({{"ldap-servers", "ldap://ldap.example.com" + portOf(server->uri())}});
    expectSearchEnds(DIRECTORY_SUCCESS);
}

TEST_F(ServerName, IsAskedAtTheNextAddressWhenOneSwallowsConnections)
{
    const auto server = serverFor("DNS:ldap.example.com");
    const BlackHole hole("127.0.0.2", server->port());
    const KnownHost known("ldap.example.com", {"127.0.0.2", "127.0.0.1"});
    configure({{"ldap-servers", "ldap://ldap.example.com" + portOf(server->uri())},
               {"ldap-search-timeout", "3"},
               {"ldap-connect-timeout", "2"}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
}

TEST_F(ServerName, ThatLeadsNowhereIsLeftForTheNext)
{
    configure({{"ldap-servers", "ldap://nobody.invalid," + s_good->uri()}, {"ldap-search-timeout", "5"}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
}

TEST_F(ServerName, MustBeTheOneOfTheCertificate)
{
    const auto server = serverFor("DNS:ldap.example.com");
    expectSearch(*server, "ldap.example.com", DIRECTORY_SUCCESS);
    expectSearch(*server, "LDAP.Example.COM", DIRECTORY_SUCCESS);
    for (const auto* other :
         {"example.com", "ldap.example.co", "ldap.example.com.evil.org", "x.ldap.example.com"})
        expectSearch(*server, other, DIRECTORY_WRONG_BASE);
}

TEST_F(ServerName, MayBeAnyInTheDomainOfAWildcardButNoneBelow)
{
    const auto server = serverFor("DNS:*.example.com");
    expectSearch(*server, "ldap.example.com", DIRECTORY_SUCCESS);
    for (const auto* other : {"example.com", "a.ldap.example.com", "ldap.example.org"})
        expectSearch(*server, other, DIRECTORY_WRONG_BASE);
}

TEST_F(ServerName, IsNotTheSubjectOfACertificateThatNamesHosts)
{
    const auto server = serverFor("DNS:other.example.com", "ldap.example.com");
    expectSearch(*server, "ldap.example.com", DIRECTORY_WRONG_BASE);
    EXPECT_TRUE(said("its certificate is not for \"ldap.example.com\" but for other.example.com: name the "
                     "server in \"ldap-servers\" as its certificate does"))
        << errors();
}

TEST_F(ServerName, ThatIsAnAddressMustBeInTheCertificateAsOne)
{
    const auto named = [this](const std::string& names) {
        const auto server = serverFor(names);
        configure({{"ldap-servers", server->uri()}});
        const auto status = searchSurname("mil*");
        std::filesystem::remove_all(profile / "server");
        return status;
    };
    EXPECT_EQ(named("IP:127.0.0.1"), DIRECTORY_SUCCESS) << errors();
    EXPECT_EQ(named("DNS:127.0.0.1"), DIRECTORY_WRONG_BASE);
    EXPECT_EQ(named("DNS:*.0.0.1"), DIRECTORY_WRONG_BASE);
    EXPECT_EQ(named("IP:127.0.0.2,IP:::1"), DIRECTORY_WRONG_BASE);
}
