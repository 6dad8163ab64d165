// The client against a real directory server.

#include <sys/stat.h>

#include "DirectoryCases.h"

namespace {

// One server for all; what a test wants otherwise it starts itself.
class Client : public CorporateDirectory {
protected:
    static void SetUpTestSuite()
    {
        s_folder = std::make_unique<TemporaryFolder>(std::filesystem::temp_directory_path());
        TemporaryFolder& folder = *s_folder;
        std::filesystem::create_directory(folder / "ca");
        std::filesystem::create_directory(folder / "server");
        s_authority = std::make_unique<TestAuthority>(folder / "ca");
        SlapdOptions options;
        options.people = DirectoryCase::people();
        options.certificate = s_authority->issue();
        s_server = std::make_unique<Slapd>(folder / "server", options);
    }
    static void TearDownTestSuite()
    {
        s_server.reset();
        s_authority.reset();
        s_folder.reset();
    }

    Items common() const override
    {
        return {{"ldap-servers", s_server->uri()},
                {"ldap-base", Slapd::base()},
                {"ldap-ca-file", s_authority->file()}};
    }

    void SetUp() override { configure({}); }

    // Another server with these options and the suite's certificate.
    std::unique_ptr<Slapd> server(SlapdOptions options)
    {
        const auto folder = *s_folder / ("server" + std::to_string(++s_servers));
        std::filesystem::create_directory(folder);
        if (options.people.empty())
            options.people = DirectoryCase::people();
        if (!options.certificate)
            options.certificate = s_authority->issue();
        return std::make_unique<Slapd>(folder, options);
    }

    void keepPassword(const std::string& password)
    {
        ASSERT_TRUE(LdapPassword(profile.path()).write(password, {"127.0.0.1"}));
    }

    static inline std::unique_ptr<TemporaryFolder> s_folder;
    static inline std::unique_ptr<TestAuthority> s_authority;
    static inline std::unique_ptr<Slapd> s_server;
    static inline int s_servers = 0;
};

} // namespace

TEST_F(Client, FindsNothingForEmptyCriteriaWithoutAsking)
{
    configure({{"ldap-servers", "ldap://127.0.0.1:1"}});
    EXPECT_EQ(search({}), DIRECTORY_NO_MATCHES);
    EXPECT_EQ(search({{Utils::SURNAME, ""}}), DIRECTORY_NO_MATCHES);
    EXPECT_EQ(search({{Utils::MOBILE, "letters"}}), DIRECTORY_NO_MATCHES);
    configure({{"ldap-servers", ""}});
    EXPECT_EQ(search({}), DIRECTORY_NO_MATCHES);
    EXPECT_EQ(log.texts(AppLog::ERROR), Strings{});
}

TEST_F(Client, SaysThatItIsNotConfigured)
{
    configure({{"ldap-servers", ""}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_NOT_CONFIGURED);
    configure({{"ldap-servers", "http://wrong"}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_NOT_CONFIGURED);
    EXPECT_TRUE(said("\"http://wrong\" in \"ldap-servers\" is no server"));
}

TEST_F(Client, SaysThatNoBaseIsWrong)
{
    configure({{"ldap-base", ""}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_WRONG_BASE) << errors();
}

// Other servers take it for an end.
TEST_F(Client, FindsExactlyWhoseNameHasANul)
{
    // "Mil" and "Mil\0ler"
    const auto odd = server({person("Mil", "Ann") + person("-", "Bob", "sn:: TWlsAGxlcg==\n"), {}, "", ""});
    configure({{"ldap-servers", odd->uri()}});
    for (const auto& typed :
         {std::string("mil\0ler", 7), std::string("mil\0*", 5), std::string("*\0ler", 5)}) {
        EXPECT_EQ(searchSurname(typed), DIRECTORY_SUCCESS) << errors();
        EXPECT_EQ(found(Utils::FIRSTNAME), Strings{"Bob"});
    }
    EXPECT_EQ(searchSurname(std::string("mil\0", 4)), DIRECTORY_NO_MATCHES) << errors();
}

TEST_F(Client, DeliversWhatTheServerGivesWhenThatHasALimit)
{
    const auto limited = server({"", {}, "", "limits * size.soft=2 size.hard=2\n"});
    configure({{"ldap-servers", limited->uri()}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_TOO_MANY_MATCHES) << errors();
    EXPECT_EQ(found().size(), 2u);
}

TEST_F(Client, BindsWithThePassword)
{
    const auto closed = server({"", {}, "", "access to * by users read by anonymous auth\n"});
    configure({{"ldap-servers", closed->uri()}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CREDENTIALS_REFUSED);
    EXPECT_TRUE(said("nobody may search unnamed: set another \"ldap-bind-dn\"")) << errors();

    keepPassword(Slapd::PASSWORD);
    configure({{"ldap-servers", closed->uri()}, {"ldap-bind-dn", Slapd::bindDn()}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    EXPECT_EQ(found().size(), 3u);
    for (const auto& line : log.lines())
        EXPECT_EQ(line.text.find(Slapd::PASSWORD), std::string::npos) << line.text;
}

TEST_F(Client, SaysThatThePasswordIsMissing)
{
    configure({{"ldap-bind-dn", Slapd::bindDn()}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_NOT_CONFIGURED);
    EXPECT_TRUE(said("There is no password for the directory. Run \"deskphone ldap-password\"."));
}

TEST_F(Client, SaysThatNobodyMayAskUnnamed)
{
    const auto closed = server({"", {}, "disallow bind_anon\nrequire authc\n", ""});
    configure({{"ldap-servers", closed->uri()}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CREDENTIALS_REFUSED);
    EXPECT_TRUE(said("nobody may ask unnamed: set \"ldap-bind-dn\"")) << errors();
}

TEST_F(Client, AsksTheNextServerWhenOneDoesNotAnswer)
{
    const auto silent = "ldap://127.0.0.1:" + std::to_string(freePort());
    configure({{"ldap-servers", silent + "," + s_server->uri()}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    EXPECT_EQ(log.texts(AppLog::REFUSED).size(), 1u);
}

TEST_F(Client, SaysThatThereIsNoConnection)
{
    configure({{"ldap-servers", "ldap://127.0.0.1:" + std::to_string(freePort())}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CONNECTION_FAILURE);
    EXPECT_TRUE(
        said("there is no connection (Connection refused): correct host and port in \"ldap-servers\""))
        << errors();
}

TEST_F(Client, SaysThatTheNameIsUnknown)
{
    configure({{"ldap-servers", "ldap://no-such-host.invalid"}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CONNECTION_FAILURE);
    EXPECT_TRUE(said("the name is unknown")) << errors();
}

TEST_F(Client, KeepsItsConnection)
{
    const auto counted = server({"", {}, "", ""});
    configure({{"ldap-servers", counted->uri()}});
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    counted->kill();
    const auto seen = counted->log();
    std::size_t accepted = 0;
    for (auto at = seen.find("ACCEPT from"); at != std::string::npos; at = seen.find("ACCEPT from", at + 1))
        ++accepted;
    EXPECT_EQ(accepted, 2u) << "one of them the test's own\n" << seen;
}

TEST_F(Client, RenewsAConnectionThatWasLost)
{
    const auto other = server({});
    configure({{"ldap-servers", other->uri()}});
    ASSERT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    other->restart();
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    other->kill();
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CONNECTION_FAILURE);
    other->restart();
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
}

TEST_F(Client, AsksOnlyForWhatIsShown)
{
    const auto watched = server({"", {}, "", ""});
    configure({{"ldap-servers", watched->uri()}});
    ASSERT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS);
    watched->kill();
    EXPECT_NE(watched->log().find(
                  "SRCH attr=sn givenName telephoneNumber otherTelephone mobile homePhone mail o title "
                  "street postalAddress l displayName cn\n"),
              std::string::npos)
        << watched->log();
}

TEST_F(Client, RefusesWhoIsNotTrusted)
{
    const std::map<std::string, std::string> wrong{
        {"is not for \"127.0.0.1\" but for other.example.com: name the server in", "name"},
        {"expired on ", "expired"},
        {"is not valid before ", "early"},
        {"is signed by itself", "self"},
        {"is signed in a way that is no longer safe", "weak"},
        {"is signed by CN=Test authority, which \"ldap-ca-file\" (", "unknown"},
    };
    std::filesystem::create_directory(*s_folder / "other");
    TestAuthority stranger(*s_folder / "other");
    const std::map<std::string, TestCertificate> certificates{
        {"name", s_authority->issue({"other.example.com", "DNS:other.example.com", -1, 30, false})},
        {"expired", s_authority->issue({"localhost", "IP:127.0.0.1", -20, -10, false})},
        {"early", s_authority->issue({"localhost", "IP:127.0.0.1", 10, 20, false})},
        {"self", s_authority->issue({"localhost", "IP:127.0.0.1", -1, 30, true})},
        {"weak", s_authority->issue({"localhost", "IP:127.0.0.1", -1, 30, false, "sha1"})},
        {"unknown", stranger.issue()},
    };
    keepPassword(Slapd::PASSWORD);
    for (const auto& [sentence, kind] : wrong) {
        const auto suspicious = server({"", certificates.at(kind), "", ""});
        for (const auto& uri : {suspicious->uri(), suspicious->tlsUri()}) {
            log.clear();
            configure({{"ldap-servers", uri}, {"ldap-bind-dn", Slapd::bindDn()}});
            EXPECT_EQ(searchSurname("mil*"), DIRECTORY_WRONG_BASE) << uri << kind << errors();
            EXPECT_TRUE(said("its certificate " + sentence)) << kind << errors();
        }
        suspicious->kill();
        EXPECT_EQ(suspicious->log().find(" BIND "), std::string::npos) << suspicious->log();
    }
}

TEST_F(Client, TrustsACertificateSignedByItselfThatItHolds)
{
    const auto certificate = s_authority->issue({"localhost", "IP:127.0.0.1", -1, 30, true});
    const auto own = server({"", certificate, "", ""});
    configure({{"ldap-servers", own->uri()}, {"ldap-ca-file", certificate.certificate}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
}

TEST_F(Client, RefusesTlsThatIsTooOld)
{
    for (const std::string version : {"1.0", "1.1", "1.2", "1.3"}) {
        const auto old = server({"", {}, "TLSCipherSuite NORMAL:-VERS-ALL:+VERS-TLS" + version + "\n", ""});
        for (const auto& uri : {old->uri(), old->tlsUri()}) {
            log.clear();
            configure({{"ldap-servers", uri}});
            const auto expected = version < "1.2" ? DIRECTORY_CONNECTION_FAILURE : DIRECTORY_SUCCESS;
            EXPECT_EQ(searchSurname("mil*"), expected) << uri << version << errors();
            EXPECT_EQ(said("TLS 1.2 or later could not be agreed on"), version < "1.2") << errors();
        }
    }
}

TEST_F(Client, SendsNoPasswordWithoutTlsWhateverTheSettingsSay)
{
    const auto watched = server({"", {}, "", ""});
    keepPassword(Slapd::PASSWORD);
    configure({{"ldap-servers", watched->uri()}, {"ldap-bind-dn", Slapd::bindDn()}});
    ASSERT_EQ(setup.faults, Strings{});
    auto plain = setup.settings;
    plain.servers.front().tls = LdapTls::None;
    auto unchecked = setup.settings;
    unchecked.checkCertificate = false;
    for (const auto& settings : {plain, unchecked}) {
        LdapWatchdog watchdog;
        LdapConnection connection(settings.servers.front(), settings, watchdog);
        const auto fault = connection.open(LdapWatchdog::Clock::now() + std::chrono::seconds(20));
        ASSERT_TRUE(fault);
        EXPECT_EQ(statusOf(fault->failure), DIRECTORY_NOT_CONFIGURED) << fault->sentence;
    }
    watched->kill();
    EXPECT_EQ(watched->log().find(" BIND "), std::string::npos) << watched->log();
}

TEST_F(Client, TrustsWhoIsNotTrustedIfToldSo)
{
    const auto suspicious = server({"", s_authority->issue({"other", "DNS:other", -1, 30, true}), "", ""});
    configure(
        {{"ldap-servers", suspicious->uri()}, {"ldap-check-certificate", "false"}, {"ldap-ca-file", ""}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
}

TEST_F(Client, SaysThatTheTrustedCertificatesCannotBeRead)
{
    profile.write("nonsense.pem", "no certificate\n");
    ASSERT_EQ(::mkfifo((profile / "pipe.pem").c_str(), 0600), 0);
    for (const auto* file : {"missing.pem", "nonsense.pem", "pipe.pem", ""}) {
        log.clear();
        configure({{"ldap-ca-file", file}});
        EXPECT_EQ(searchSurname("mil*"), DIRECTORY_NOT_CONFIGURED) << file << errors();
        EXPECT_TRUE(said("name a PEM file in \"ldap-ca-file\"")) << file << errors();
    }
}

TEST_F(Client, SaysThatTheServerOffersNoEncryption)
{
    const auto folder = *s_folder / "plain";
    std::filesystem::create_directory(folder);
    SlapdOptions options;
    options.people = DirectoryCase::people();
    Slapd plain(folder, options);
    keepPassword(Slapd::PASSWORD);
    configure({{"ldap-servers", plain.uri()}, {"ldap-bind-dn", Slapd::bindDn()}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_WRONG_BASE);
    EXPECT_TRUE(said("the server offers no encryption")) << errors();
    plain.kill();
    EXPECT_EQ(plain.log().find(" BIND "), std::string::npos) << plain.log();
}

TEST_F(Client, KnowsActiveDirectorysSchema)
{
    const std::string schema =
        "attributetype ( 1.1.2.1 NAME 'company' SUP name )\n"
        "attributetype ( 1.1.2.2 NAME 'otherTelephone' SUP telephoneNumber )\n"
        "attributetype ( 1.1.2.3 NAME 'mailNickname' SUP name )\n"
        "attributetype ( 1.1.2.4 NAME 'objectCategory' SUP name )\n"
        "objectclass ( 1.1.3.1 NAME 'user' SUP top STRUCTURAL MAY ( objectCategory $ company $ "
        "cn $ sn $ givenName $ displayName $ otherTelephone $ telephoneNumber $ mailNickname $ "
        "streetAddress $ l ) )\n";
    const std::string category = "objectClass: user\nobjectCategory: person\n";
    const auto active = server(
        {"dn: cn=Ann,dc=example,dc=com\n" + category +
             "sn: Miller\ngivenName: Ann\ndisplayName: Ann Miller\ntelephoneNumber: 1\notherTelephone: 2\n"
             "company: Example\nstreetAddress: Main St. 1\nmailNickname: annie\n\n"
             "dn: cn=Mill,dc=example,dc=com\n" +
             category + "displayName: Mill, meeting room\ntelephoneNumber: 3\n\n" +
             "dn: cn=Milli,dc=example,dc=com\nobjectClass: user\nsn: Milli\nobjectCategory: group\n\n",
         {},
         schema,
         ""});
    configure(
        {{"ldap-servers", active->uri()}, {"ldap-schema", "activeDirectory"}, {"ldap-nickname", "true"}});
    EXPECT_EQ(searchSurname("mill*"), DIRECTORY_SUCCESS) << errors();
    EXPECT_EQ(found(), (Strings{"Mill, meeting room", "Miller"}));
    EXPECT_EQ(found(Utils::OFFICE2), Strings{"2"});
    EXPECT_EQ(found(Utils::COMPANY), Strings{"Example"});
    EXPECT_EQ(found(Utils::ADDRESS1), Strings{"Main St. 1"});
    EXPECT_EQ(searchSurname("ann*"), DIRECTORY_NO_MATCHES)
        << "who has a surname is not found by the display name";
    EXPECT_EQ(search({{Utils::SURNAME, "annie"}, {Utils::NICKNAME, "annie"}}), DIRECTORY_SUCCESS);
    EXPECT_EQ(trailer, "true");
}

namespace {

class ClientOfSlapd : public Client, public testing::WithParamInterface<DirectoryCase::Table::value_type> {};

} // namespace

TEST_P(ClientOfSlapd, Keeps)
{
    GetParam().second()->run({s_server->uri(), s_server->tlsUri(), s_authority->file()});
}

INSTANTIATE_TEST_SUITE_P(Case, ClientOfSlapd, testing::ValuesIn(DirectoryCase::all()),
                         [](const auto& testCase) { return testCase.param.first; });
