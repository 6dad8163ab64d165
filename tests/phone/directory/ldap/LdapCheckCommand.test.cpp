// What an administrator is told of a directory that works, and of one that does not.

#include "directory/ldap/LdapCheckCommand.h"

#include <fstream>
#include <memory>
#include <sstream>

#include <sys/wait.h>

#include <gtest/gtest.h>

#include "Slapd.h"
#include "TemporaryFolder.h"
#include "app/Commands.h"
#include "directory/ldap/LdapSettings.h"
#include "faults/DirectoryFaults.h"
#include "system/Configuration.h"

namespace fs = std::filesystem;

namespace {

std::string people()
{
    return person("Miller", "Ann",
                  "telephoneNumber: +49 30 23125-001\ntelephoneNumber: +49 30 23125-002\nmobile: 4711\n"
                  "o: Example\nl: Berlin\n") +
           person("Miller", "Bob", "telephoneNumber: +49 30 23125-003\n") + person("Zhang", "\u4f1f");
}

// A server with an authority of its own.
class Company {
public:
    explicit Company(const CertificateWish& wish = {}, const std::string& serverLines = "",
                     const std::string& databaseLines = "", const std::string& employees = people())
    {
        for (const auto* folder : {"ca", "server"})
            fs::create_directory(m_folder / folder);
        m_authority = std::make_unique<TestAuthority>(m_folder / "ca");
        m_server =
            std::make_unique<Slapd>(m_folder / "server", SlapdOptions{employees, m_authority->issue(wish),
                                                                      serverLines, databaseLines});
    }

    const Slapd& server() const { return *m_server; }
    fs::path authority() const { return m_authority->file(); }

private:
    TemporaryFolder m_folder{fs::temp_directory_path()};
    std::unique_ptr<TestAuthority> m_authority;
    std::unique_ptr<Slapd> m_server;
};

class LdapCheck : public testing::Test {
protected:
    static void SetUpTestSuite() { s_company = std::make_unique<Company>(); }
    static void TearDownTestSuite() { s_company.reset(); }

    void SetUp() override { use(*s_company); }

    void use(const Company& company)
    {
        set("ldap-servers", company.server().uri());
        set("ldap-base", Slapd::base());
        set("ldap-ca-file", company.authority());
    }

    void set(const std::string& item, const std::string& value)
    {
        const auto written = Configuration(profile().configFile()).set(item, value);
        EXPECT_TRUE(written) << item;
    }

    void keepPassword(const std::string& password)
    {
        const Configuration configuration(profile().configFile());
        const auto settings = ldapSettingsOf(configuration, profile().data).settings;
        EXPECT_TRUE(settings.password.write(password, settings.hosts()));
    }

    Profile profile() const { return Profile::in(m_profile.path()); }

    // The lines of the report; `exitCode` is the command's.
    std::vector<std::string> check()
    {
        std::stringstream report;
        exitCode = checkLdap(profile(), report);
        std::vector<std::string> lines;
        for (std::string line; std::getline(report, line);)
            lines.push_back(line);
        return lines;
    }

    // The lines that begin so, and what is below them.
    std::string told(const std::string& beginning)
    {
        std::string found;
        bool below = false;
        for (const auto& line : check()) {
            below = line.rfind(beginning, 0) == 0 || (below && line.rfind("        ", 0) == 0);
            found += below ? line + "\n" : "";
        }
        return found;
    }

    static std::unique_ptr<Company> s_company;
    int exitCode = -1;

private:
    TemporaryFolder m_profile;
};
std::unique_ptr<Company> LdapCheck::s_company;

void expectWords(const std::string& text, const std::vector<std::string>& words)
{
    for (const auto& word : words)
        EXPECT_NE(text.find(word), std::string::npos) << "no " << word << " in: " << text;
}

} // namespace

TEST_F(LdapCheck, GoesThroughEveryStepOfADirectoryThatCanBeUsed)
{
    std::string steps;
    for (const auto& line : check()) {
        if (line.rfind("OK    ", 0) == 0)
            steps += line.substr(6, line.find(':') - 6) + "\n";
        EXPECT_NE(line.rfind("FAIL", 0), 0u) << line;
    }

    EXPECT_EQ(steps,
              "Configuration\nName\nConnection\nEncryption\nSigning in\nBase\nFilter\nFields\nExample\n");
    EXPECT_EQ(exitCode, EXIT_DONE);
    expectWords(told("OK    Encryption"), {"CN=localhost", "CN=Test authority", "good until 20"});
}

TEST_F(LdapCheck, CountsWhoHasWhatAndNamesWhatNobodyHas)
{
    EXPECT_EQ(told("OK    Fields"),
              "OK    Fields: what the entries have, and in brackets which attributes they carry:\n"
              "        surname: 3 of 3 (sn 3)\n"
              "        firstname: 3 of 3 (givenName 3)\n"
              "        office: 2 of 3 (telephoneNumber 2)\n"
              "        office2: 1 of 3 (otherTelephone 0, telephoneNumber 2)\n"
              "        mobile: 1 of 3 (mobile 1)\n"
              "        private: 0 of 3 (homePhone 0)\n"
              "        email: 0 of 3 (mail 0)\n"
              "        company: 1 of 3 (o 1)\n"
              "        jobfunction: 0 of 3 (title 0)\n"
              "        address1: 0 of 3 (street 0, postalAddress 0)\n"
              "        address2: 1 of 3 (l 1)\n");
    expectWords(told("NOTE  Fields"), {"\"ldap-attribute-private\"", "\"ldap-attribute-address1\""});
    EXPECT_EQ(told("OK    Example"),
              "OK    Example: surname \"Miller\", firstname \"Ann\", office \"+49 30 23125-001\", office2 "
              "\"+49 30 23125-002\", mobile \"4711\", company \"Example\", address2 \"Berlin\".\n");
}

TEST_F(LdapCheck, CountsNicknamesOnlyWhereTheyAreUsed)
{
    EXPECT_EQ(told("OK    Fields").find("nickname"), std::string::npos);
    set("ldap-nickname", "true");
    expectWords(told("OK    Fields"), {"nickname: 3 of 3 (uid 3)"});
}

TEST_F(LdapCheck, LeavesOutAFieldThatIsNotWanted)
{
    set("ldap-attribute-private", "-");
    expectWords(told("OK    Fields"), {"private: not asked for"});
    EXPECT_EQ(told("NOTE  Fields").find("private"), std::string::npos);
}

TEST_F(LdapCheck, NamesTheStepThatFailsAndTheItemToChange)
{
    struct Mistake {
        const char* item;
        std::string value;
        const char* step;
        std::vector<std::string> words;
    };
    const auto closed = "ldap://127.0.0.1:" + std::to_string(freePort());
    // The port of one way to speak, with the name of the other.
    const auto startTlsOnTlsPort = "ldap" + s_company->server().tlsUri().substr(5);
    const auto tlsOnPlainPort = "ldaps" + s_company->server().uri().substr(4);
    const std::vector<Mistake> mistakes{
        {"ldap-servers", "http://localhost", "FAIL  Configuration", {"\"ldap-servers\"", "http://localhost"}},
        {"ldap-servers", "ldap://nobody.invalid", "FAIL  Name", {"\"ldap-servers\"", "nobody.invalid"}},
        {"ldap-servers", closed, "FAIL  Connection", {"\"ldap-servers\"", closed}},
        {"ldap-servers", startTlsOnTlsPort, "FAIL  Encryption", {"\"ldap-servers\"", "ldaps://"}},
        {"ldap-servers", tlsOnPlainPort, "FAIL  Encryption", {"\"ldap-servers\"", "ldap://"}},
        {"ldap-ca-file", "/dev/null", "FAIL  Encryption", {"\"ldap-ca-file\"", "/dev/null"}},
        {"ldap-bind-dn", Slapd::bindDn(), "FAIL  Signing in", {"ldap-password"}},
        {"ldap-base",
         "dc=nowhere",
         "FAIL  Base",
         {"\"ldap-base\"", "The server holds \"dc=example,dc=com\""}},
        {"ldap-base", "", "FAIL  Filter", {"\"ldap-base\"", "The server holds \"dc=example,dc=com\""}},
        {"ldap-filter", "(sn=", "FAIL  Filter", {"\"ldap-filter\""}},
        {"ldap-filter", "(sn=Nobody)", "FAIL  Filter", {"\"ldap-filter\"", "(sn=Nobody)"}},
        {"ldap-attribute-colour", "x", "FAIL  Configuration", {"ldap-attribute-colour"}},
    };
    const auto before = profile().configFile().string() + ".before";
    fs::copy_file(profile().configFile(), before);
    for (const auto& mistake : mistakes) {
        SCOPED_TRACE(std::string(mistake.item) + " = " + mistake.value);
        fs::copy_file(before, profile().configFile(), fs::copy_options::overwrite_existing);
        if (mistake.item == std::string("ldap-attribute-colour"))
            std::ofstream(profile().configFile(), std::ios::app) << "\nldap-attribute-colour = \"x\"\n";
        else
            set(mistake.item, mistake.value);
        expectWords(told(mistake.step), mistake.words);
        EXPECT_EQ(exitCode, EXIT_REFUSED);
    }
}

TEST_F(LdapCheck, SaysThatNoDirectoryIsConfigured)
{
    set("ldap-servers", "");
    expectWords(told("FAIL  Configuration"), {"\"ldap-servers\""});
    EXPECT_EQ(exitCode, EXIT_REFUSED);
}

TEST_F(LdapCheck, SaysWhatIsWrongWithACertificate)
{
    struct Case {
        CertificateWish wish;
        const char* word;
    };
    const std::vector<Case> cases{
        {{.from = -20, .until = -10}, "expired"},
        {{.subject = "127.0.0.1", .names = "DNS:elsewhere,DNS:*.else.where,IP:192.0.2.1,IP:2001:db8::1"},
         "but for elsewhere, *.else.where, 192.0.2.1, 2001:db8::1: name the server in \"ldap-servers\""},
        {{.subject = "elsewhere", .names = "email:no@body"}, "but for CN=elsewhere"},
        {{.selfSigned = true}, "signed by itself"},
    };
    for (const auto& [wish, word] : cases) {
        const Company company(wish);
        use(company);
        expectWords(told("FAIL  Encryption"), {word});
        EXPECT_EQ(exitCode, EXIT_REFUSED);
    }
}

TEST_F(LdapCheck, WarnsOfACertificateThatExpiresSoon)
{
    const Company company({.until = 5});
    use(company);
    expectWords(told("NOTE  Encryption"), {"new certificate before 20"});
    EXPECT_EQ(exitCode, EXIT_DONE);
}

TEST_F(LdapCheck, WarnsOfWhatIsNotProtected)
{
    set("ldap-check-certificate", "false");
    expectWords(told("NOTE  Encryption"), {"\"ldap-check-certificate\""});
    EXPECT_EQ(exitCode, EXIT_DONE);
    set("ldap-security", "none");
    expectWords(told("NOTE  Encryption"), {"\"ldap-security\""});
    EXPECT_EQ(exitCode, EXIT_DONE);
}

TEST_F(LdapCheck, SaysThatAServerOffersNoEncryption)
{
    TemporaryFolder folder(fs::temp_directory_path());
    const Slapd server(folder.path(), {people(), std::nullopt, "", ""});
    set("ldap-servers", server.uri());
    expectWords(told("FAIL  Encryption"), {"no encryption"});
}

TEST_F(LdapCheck, TellsAWrongPasswordFromARightOneAndShowsNeither)
{
    set("ldap-bind-dn", Slapd::bindDn());
    keepPassword("wrong-password");
    expectWords(told("FAIL  Signing in"), {"\"ldap-bind-dn\"", "ldap-password"});
    EXPECT_EQ(told("").find("wrong-password"), std::string::npos);

    keepPassword(Slapd::PASSWORD);
    expectWords(told("OK    Signing in"), {"cn=telephone,dc=example,dc=com"});
    EXPECT_EQ(exitCode, EXIT_DONE);
    EXPECT_EQ(told("").find(Slapd::PASSWORD), std::string::npos);
}

TEST_F(LdapCheck, SaysThatMoreIsThereThanTheServerGives)
{
    const Company company({}, "", "limits anonymous size=2");
    use(company);
    expectWords(told("OK    Filter"), {"finds more than 2 entries"});
    EXPECT_EQ(exitCode, EXIT_DONE);
}

TEST_F(LdapCheck, SaysThatEntriesHaveNoNames)
{
    set("ldap-filter", "(objectClass=organization)");
    expectWords(told("FAIL  Fields"), {"\"ldap-attribute-surname\""});
    EXPECT_EQ(exitCode, EXIT_REFUSED);

    set("ldap-filter", "(|(objectClass=organization)(sn=*))");
    expectWords(told("NOTE  Fields"), {"1 entry has no name", "\"ldap-filter\""});
    EXPECT_EQ(exitCode, EXIT_DONE);
}

TEST_F(LdapCheck, CountsAnAttributeOfALanguage)
{
    const Company company({}, "attributeoptions lang-\n", "", person("Miller", "Ann", "sn;lang-de: M\n"));
    use(company);
    set("ldap-attribute-surname", "sn;lang-de,sn");
    expectWords(told("OK    Fields"), {"surname: 1 of 1 (sn;lang-de 1, sn 1)"});
}

TEST_F(LdapCheck, IsDoneInTimeAndInLittleMemoryWithAServerThatDoesNotEnd)
{
    using namespace ldap_bytes;
    // Nobody asked for any of these attributes, nor for so many people.
    FaultServer server([](Conversation& c) {
        for (int question = 1; const auto request = c.request(); ++question) {
            if (question == 1)
                c.send(result(request->id, BindResponse, 0));
            else if (question == 2)
                c.send(result(request->id, SearchDone, 0));
            for (int i = 0, names = 0; question == 3; ++i) {
                std::vector<Attribute> attributes{{"sn", {"Miller"}}};
                for (int last = names + 200; names < last; ++names)
                    attributes.push_back({"attribute" + std::to_string(names), {"x"}});
                if (!c.send(entry(request->id, "cn=" + std::to_string(i), attributes)))
                    return;
            }
        }
    });
    set("ldap-servers", server.uri());
    set("ldap-security", "none");
    set("ldap-search-timeout", "20");
    const MemoryGrowth memory;
    const auto begun = std::chrono::steady_clock::now();
    expectWords(told("OK    Filter"), {"finds more than 1000 entries"});
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(20));
#ifndef __SANITIZE_ADDRESS__
    EXPECT_LT(memory.kilobytesMore(), 16 * 1024);
#endif
    EXPECT_EQ(exitCode, EXIT_DONE);
}

TEST_F(LdapCheck, LooksAtEveryServer)
{
    const auto gone = "ldap://127.0.0.1:" + std::to_string(freePort());
    set("ldap-servers", gone + "," + s_company->server().uri());
    expectWords(told("FAIL  Connection"), {gone});
    EXPECT_EQ(exitCode, EXIT_REFUSED);
    expectWords(told("OK    Filter"), {"finds 3 entries"});
}

namespace {

class LdapCheckProgram : public LdapCheck {
protected:
    // The exit code, with these variables ("NAME=value") in its environment.
    int run(const std::string& environment = "")
    {
        const auto command = "env " + environment + " '" BIN_DIR "/deskphone' ldap-check --profile '" +
                             profile().data.string() + "' >/dev/null 2>&1";
        return WEXITSTATUS(std::system(command.c_str()));
    }
};

} // namespace

TEST_F(LdapCheckProgram, TellsByItsExitCode)
{
    EXPECT_EQ(run(), EXIT_DONE);
    set("ldap-base", "dc=nowhere");
    EXPECT_EQ(run(), EXIT_REFUSED);
}

// libldap reads them once, when a process begins.
TEST_F(LdapCheckProgram, IsKeptFromNoServerByTheEnvironment)
{
    EXPECT_EQ(run("LDAPTLS_CACERT=/dev/null LDAPTLS_CACERTDIR=/dev/null"), EXIT_DONE);
    EXPECT_EQ(run("LDAPTLS_CERT=/dev/null LDAPTLS_KEY=/dev/null LDAPTLS_CRLFILE=/dev/null"), EXIT_DONE);
    EXPECT_EQ(run("LDAPTLS_CIPHER_SUITE=NULL LDAPTLS_REQSAN=hard LDAPTLS_CRLCHECK=all"), EXIT_DONE);
    EXPECT_EQ(run("LDAPTLS_PEERKEY_HASH=sha256:AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA="), EXIT_DONE);
    EXPECT_EQ(run("LDAPSIZELIMIT=1 LDAPTIMELIMIT=1 LDAPTIMEOUT=1 LDAPNETWORK_TIMEOUT=1"), EXIT_DONE);
}

TEST_F(LdapCheckProgram, TrustsNobodyByTheEnvironment)
{
    const Company stranger({.selfSigned = true});
    set("ldap-servers", stranger.server().uri());
    EXPECT_EQ(run("LDAPTLS_REQCERT=never LDAPTLS_REQSAN=never"), EXIT_REFUSED);
    const Company other({.subject = "127.0.0.1", .names = "DNS:other.example.com"});
    use(other);
    EXPECT_EQ(run("LDAPTLS_REQCERT=allow LDAPTLS_REQSAN=never"), EXIT_REFUSED);
}
