#include <gtest/gtest.h>

#include <framework/services/Utils.h>

#include "TemporaryFolder.h"
#include "directory/ldap/LdapSettings.h"
#include "system/Configuration.h"

namespace {

using Strings = std::vector<std::string>;

class Settings : public testing::Test {
protected:
    LdapSetup read(const std::string& configuration)
    {
        folder.write("config.toml", configuration);
        const Configuration items(folder / "config.toml");
        EXPECT_TRUE(items.refused().empty());
        return ldapSettingsOf(items, folder.path());
    }

    LdapSettings good(const std::string& configuration)
    {
        auto setup = read(configuration);
        EXPECT_EQ(setup.faults, Strings{});
        return setup.settings;
    }

    Strings faults(const std::string& configuration) { return read(configuration).faults; }

    // "ldap://host:port tls", or "" when it is refused.
    std::string server(const std::string& uri)
    {
        const auto setup = read("ldap-servers = [\"" + uri + "\"]\n");
        if (setup.settings.servers.empty())
            return "";
        const auto& one = setup.settings.servers.front();
        return one.uri + " " + one.host + " " + (one.tls == LdapTls::FromStart ? "tls" : "starttls");
    }

    TemporaryFolder folder;
};

constexpr char nONE[] = "ldap-servers = [\"ldap://one\"]\n";

} // namespace

TEST_F(Settings, SayThatNobodyWantsADirectory)
{
    const auto setup = read("");
    EXPECT_FALSE(setup.wanted);
    EXPECT_FALSE(setup.usable());
    EXPECT_EQ(setup.faults, Strings{"There is no corporate directory: name its server in \"ldap-servers\"."});
}

TEST_F(Settings, AreCompleteWithAServerAndABase)
{
    const auto settings = good(std::string(nONE) + "ldap-base = \"dc=example,dc=com\"\n");
    EXPECT_EQ(settings.base, "dc=example,dc=com");
    EXPECT_EQ(settings.bindDn, "");
    EXPECT_TRUE(settings.checkCertificate);
    EXPECT_EQ(settings.caFile, "/etc/ssl/certs/ca-certificates.crt");
    EXPECT_EQ(settings.scope, LdapScope::Subtree);
    EXPECT_EQ(settings.baseFilter, "(objectClass=person)");
    EXPECT_EQ(settings.sizeLimit, 100);
    EXPECT_EQ(settings.connectTime, std::chrono::seconds(3));
    EXPECT_EQ(settings.searchTime, std::chrono::seconds(10));
    EXPECT_FALSE(settings.nickname);
    EXPECT_EQ(settings.countryCode, "49");
    EXPECT_EQ(settings.password.file(), folder / "ldap-password");
}

TEST_F(Settings, UnderstandServers)
{
    EXPECT_EQ(server("ldap://one"), "ldap://one:389 one starttls");
    EXPECT_EQ(server("ldaps://one"), "ldaps://one:636 one tls");
    EXPECT_EQ(server("ldap://one:1389/"), "ldap://one:1389 one starttls");
    EXPECT_EQ(server("one.example.com"), "ldap://one.example.com:389 one.example.com starttls");
    EXPECT_EQ(server("one:3268"), "ldap://one:3268 one starttls");
    EXPECT_EQ(server("LDAPS://One"), "ldaps://One:636 One tls");
    EXPECT_EQ(server("ldap://192.0.2.1"), "ldap://192.0.2.1:389 192.0.2.1 starttls");
    EXPECT_EQ(server("ldaps://[::1]:1636"), "ldaps://[::1]:1636 ::1 tls");
    for (const auto* bad : {"", "ldap://", "ldapi:///", "http://one", "ldap://one:port", "ldap://one:70000",
                            "ldap://one:-1", "ldap://one/dc=com", "ldap://one/??sub", "ldap://on e"})
        EXPECT_EQ(server(bad), "") << bad;
}

TEST_F(Settings, KeepTheServersInTheirOrder)
{
    const auto settings = good("ldap-servers = [\"ldaps://b\", \"a\", \"c\"]\n");
    EXPECT_EQ(settings.hosts(), (Strings{"b", "a", "c"}));
}

TEST_F(Settings, NameTheServerThatIsNone)
{
    EXPECT_EQ(faults("ldap-servers = [\"one\", \"http://two\"]\n"),
              Strings{"\"http://two\" in \"ldap-servers\" is no server: write ldap://NAME or ldaps://NAME, "
                      "with :PORT if need be."});
}

TEST_F(Settings, SendNoPasswordWithoutCheckedTls)
{
    const auto bound = std::string(nONE) + "ldap-bind-dn = \"cn=phone\"\n";
    EXPECT_EQ(faults(bound), Strings{});
    EXPECT_EQ(faults(bound + "ldap-security = \"none\"\n").size(), 1u);
    EXPECT_EQ(faults(bound + "ldap-check-certificate = false\n").size(), 1u);
    EXPECT_EQ(
        faults("ldap-servers = [\"ldaps://one\"]\nldap-bind-dn = \"cn=phone\"\nldap-security = \"none\"\n"),
        Strings{});
    EXPECT_EQ(faults(std::string(nONE) + "ldap-security = \"none\"\nldap-check-certificate = false\n"),
              Strings{});
}

TEST_F(Settings, LookForTheCertificatesInTheProfile)
{
    EXPECT_EQ(good(std::string(nONE) + "ldap-ca-file = \"company.pem\"\n").caFile, folder / "company.pem");
    EXPECT_EQ(good(std::string(nONE) + "ldap-ca-file = \"/etc/company.pem\"\n").caFile, "/etc/company.pem");
}

TEST_F(Settings, PutTheBaseFilterInParentheses)
{
    EXPECT_EQ(good(std::string(nONE) + "ldap-filter = \"ou=sales\"\n").baseFilter, "(ou=sales)");
    EXPECT_EQ(good(std::string(nONE) + "ldap-filter = \"(&(a=b)(c=d))\"\n").baseFilter, "(&(a=b)(c=d))");
}

TEST_F(Settings, KnowTheSchemas)
{
    const auto standard = good(nONE).attributes;
    EXPECT_EQ(standard.of(Utils::SURNAME), Strings{"sn"});
    EXPECT_EQ(standard.of(Utils::OFFICE2), (Strings{"otherTelephone", "telephoneNumber"}));
    EXPECT_EQ(standard.of(Utils::COMPANY), Strings{"o"});
    EXPECT_EQ(standard.of(Utils::NICKNAME), Strings{"uid"});
    EXPECT_EQ(standard.of("shoe size"), Strings{});
    EXPECT_FALSE(standard.findsByDisplayName);

    const auto settings = good(std::string(nONE) + "ldap-schema = \"activeDirectory\"\n");
    EXPECT_EQ(settings.baseFilter, "(objectCategory=person)");
    EXPECT_EQ(settings.attributes.of(Utils::OFFICE2), Strings{"otherTelephone"});
    EXPECT_EQ(settings.attributes.of(Utils::COMPANY), Strings{"company"});
    EXPECT_EQ(settings.attributes.of(Utils::NICKNAME), Strings{"mailNickname"});
    EXPECT_TRUE(settings.attributes.findsByDisplayName);
}

TEST_F(Settings, LetAttributesBeChosen)
{
    const auto map = good(std::string(nONE) + "ldap-attribute-company = [\"department\", \"o\"]\n"
                                              "ldap-attribute-private = [\"-\"]\n"
                                              "ldap-attribute-nickname = [\"initials\"]\n"
                                              "ldap-attribute-display-name = [\"name\"]\n")
                         .attributes;
    EXPECT_EQ(map.of(Utils::COMPANY), (Strings{"department", "o"}));
    EXPECT_EQ(map.of(Utils::PRIVATE), Strings{});
    EXPECT_EQ(map.of(Utils::NICKNAME), Strings{"initials"});
    EXPECT_EQ(map.displayName, Strings{"name"});
    EXPECT_EQ(map.of(Utils::SURNAME), Strings{"sn"});
}

TEST_F(Settings, EveryFieldHasAnItem)
{
    std::string all = nONE;
    for (const auto* field : {"surname", "firstname", "nickname", "office", "office2", "mobile", "private",
                              "email", "company", "jobfunction", "address1", "address2", "display-name"})
        all += std::string("ldap-attribute-") + field + " = [\"x-" + field + "\"]\n";
    const auto map = good(all).attributes;
    EXPECT_EQ(map.fields.size(), 11u);
    for (const auto& field : map.fields)
        EXPECT_EQ(field.attributes, Strings{"x-" + field.name});
    EXPECT_EQ(map.of(Utils::NICKNAME), Strings{"x-nickname"});
    EXPECT_EQ(map.displayName, Strings{"x-display-name"});
}

TEST_F(Settings, RefuseAttributesThatCannotBeOne)
{
    EXPECT_EQ(faults(std::string(nONE) + "ldap-attribute-mobile = [\"mobile)(uid=*\"]\n"),
              Strings{"\"mobile)(uid=*\" in \"ldap-attribute-mobile\" is no attribute's name."});
    EXPECT_EQ(faults(std::string(nONE) + "ldap-attribute-mobile = [\"-\", \"mobile\"]\n").size(), 1u);
}

TEST_F(Settings, ForgetThePasswordOfAnotherServer)
{
    const LdapPassword password(folder.path());
    ASSERT_TRUE(password.write("secret", {"one"}));
    read("ldap-servers = [\"ldaps://one:1636\"]\n");
    EXPECT_TRUE(password.read({"one"}));
    read("");
    EXPECT_TRUE(password.read({"one"}));
    read("ldap-servers = [\"ldaps://one\", \"two\"]\n");
    EXPECT_FALSE(std::filesystem::exists(password.file()));
}
