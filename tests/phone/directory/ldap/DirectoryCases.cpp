#include "DirectoryCases.h"

#include <map>

#include "directory/ldap/LdapConnection.h"

using namespace std::chrono_literals;

std::string DirectoryCase::people()
{
    return person("Miller", "Ann",
                  "uid: annie\ntelephoneNumber: +49 30 23125-001\ntelephoneNumber: +49 30 23125-002\n"
                  "mobile: +49 (171) 39200/01\nhomePhone: 030 555 1\nmail: ann@example.com\no: Example\n"
                  "title: Engineer\nstreet: Main St. 1\nl: Berlin\ndisplayName: Ann Miller\n") +
           person("Miller", "Bob", "telephoneNumber: +49 30 23125-003\nuid: bobby\n") +
           person("Milton", "Cleo", "mobile: 4711\nuid: anchor\n") +
           person("M\u00fcller", "Dora", "o: A*B (C)\\D\n") + person("Baker*", "Eve", "mobile: 47 2 11\n") +
           person("Zhang", "\u4f1f") + person("Par(en)(thesis", "Kim") + person("Back\\slash\\2a", "Lea") +
           person("Back", "Max", "sn: Forth\n") + person("Silent", "", "description: private\n");
}

DirectoryCase::Table& DirectoryCase::all()
{
    static Table table;
    return table;
}

DirectoryCase::Items DirectoryCase::common() const
{
    return {{"ldap-servers", s_server.uri}, {"ldap-base", Slapd::base()}, {"ldap-ca-file", s_server.caFile}};
}

void DirectoryCase::keepPassword(const std::string& password)
{
    ASSERT_TRUE(LdapPassword(profile.path()).write(password, {"127.0.0.1"}));
}

// Makes a class of it and puts that into the table.
#define DIRECTORY_CASE(name)                                                                                 \
    class name final : public DirectoryCase {                                                                \
        void check() override;                                                                               \
    };                                                                                                       \
    [[maybe_unused]] const bool is##name##Known =                                                            \
        DirectoryCase::all().emplace(#name, [] { return std::make_unique<name>(); }).second;                 \
    void name::check()

namespace {

DIRECTORY_CASE(FindsWhoseSurnameBeginsAsTyped)
{
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    EXPECT_EQ(found(), (Strings{"Miller", "Miller", "Milton"}));
    EXPECT_EQ(found(Utils::FIRSTNAME), (Strings{"Ann", "Bob", "Cleo"}));
    EXPECT_EQ(trailer, "false");
}

DIRECTORY_CASE(FindsAllFieldsOfAnEntry)
{
    ASSERT_EQ(search({{Utils::SURNAME, "Miller"}, {Utils::FIRSTNAME, "a*"}}), DIRECTORY_SUCCESS) << errors();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records.front(), (AttributeList{{Utils::SURNAME, "Miller"},
                                              {Utils::FIRSTNAME, "Ann"},
                                              {Utils::OFFICE, "+49 30 23125-001"},
                                              {Utils::OFFICE2, "+49 30 23125-002"},
                                              {Utils::MOBILE, "+49 (171) 39200/01"},
                                              {Utils::PRIVATE, "030 555 1"},
                                              {Utils::EMAIL, "ann@example.com"},
                                              {Utils::COMPANY, "Example"},
                                              {Utils::JOBFUNCTION, "Engineer"},
                                              {Utils::ADDRESS1, "Main St. 1"},
                                              {Utils::ADDRESS2, "Berlin"}}));
}

DIRECTORY_CASE(SaysThatNothingWasFoundAndLeavesTheResultsEmpty)
{
    PhonebookSearchResults results;
    results.getRecords().push_back({{"old", "row"}});
    EXPECT_EQ(client.search({{{Utils::SURNAME, "nobody"}}, "", true}, results, true), DIRECTORY_NO_MATCHES);
    EXPECT_TRUE(results.getRecords().empty());
}

DIRECTORY_CASE(TakesEverythingTypedLiterallyButTheAsterisk)
{
    for (const auto* typed : {"Baker\\2a", "mil*)(uid=*", "*)(sn=*", "(", ")", "\\", "Baker?", "&|!"})
        EXPECT_EQ(searchSurname(typed), DIRECTORY_NO_MATCHES) << typed << errors();
    EXPECT_EQ(search({{Utils::COMPANY, "*(C)\\D"}}), DIRECTORY_SUCCESS) << errors();
    EXPECT_EQ(found(), Strings{"M\u00fcller"});
    EXPECT_EQ(searchSurname("*ak*"), DIRECTORY_SUCCESS) << errors();
    EXPECT_EQ(found(), Strings{"Baker*"});
}

DIRECTORY_CASE(FindsExactlyWhoseNameHasWhatAFilterIsMadeOf)
{
    const std::map<std::string, std::string> wanted{
        {"Par(en)(thesis", "Kim"}, {"par(*", "Kim"}, {"*)(*", "Kim"},  {"Back\\slash\\2a", "Lea"},
        {"back\\*", "Lea"},        {"*\\2A", "Lea"}, {"Baker*", "Eve"}};
    for (const auto& [typed, name] : wanted) {
        EXPECT_EQ(searchSurname(typed), DIRECTORY_SUCCESS) << typed << errors();
        EXPECT_EQ(found(Utils::FIRSTNAME), Strings{name}) << typed;
    }
}

DIRECTORY_CASE(FindsNamesOfAllScripts)
{
    EXPECT_EQ(searchSurname("m\u00fcl*"), DIRECTORY_SUCCESS);
    EXPECT_EQ(found(Utils::FIRSTNAME), Strings{"Dora"});
    EXPECT_EQ(search({{Utils::FIRSTNAME, "\u4f1f"}}), DIRECTORY_SUCCESS);
    EXPECT_EQ(found(), Strings{"Zhang"});
}

DIRECTORY_CASE(FindsNumbersHoweverTheyAreWritten)
{
    for (const auto* typed : {"3023125003", "030 23125 003", "+493023125003", "23125003", "302312500*"})
        EXPECT_EQ(search({{Utils::OFFICE, typed}, {Utils::FIRSTNAME, "Bob"}}), DIRECTORY_SUCCESS) << typed;
    EXPECT_EQ(search({{Utils::MOBILE, "1713920001"}}), DIRECTORY_SUCCESS);
    EXPECT_EQ(found(Utils::FIRSTNAME), Strings{"Ann"});
    EXPECT_EQ(search({{Utils::MOBILE, "4711"}}), DIRECTORY_SUCCESS);
    EXPECT_EQ(found(), Strings{"Milton"});
    EXPECT_EQ(search({{Utils::MOBILE, "4712"}}), DIRECTORY_NO_MATCHES);
}

DIRECTORY_CASE(ShowsTheNameThatWasLookedFor)
{
    for (const auto* name : {"Back", "Forth"}) {
        EXPECT_EQ(searchSurname(name), DIRECTORY_SUCCESS) << errors();
        EXPECT_EQ(found(), Strings{name});
        EXPECT_EQ(trailer, "false");
    }
}

DIRECTORY_CASE(SaysThatNobodyShowsTheNameThatWasLookedFor)
{
    configure({{"ldap-attribute-surname", "displayName,sn"}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    EXPECT_EQ(found(), (Strings{"Ann Miller", "Miller", "Milton"}));
    EXPECT_EQ(trailer, "false");
    EXPECT_EQ(search({{Utils::SURNAME, "mil*"}, {Utils::FIRSTNAME, "ann"}}), DIRECTORY_SUCCESS);
    EXPECT_EQ(trailer, "true");
}

DIRECTORY_CASE(FindsByNicknameWhenThatIsInUse)
{
    const AttributeList criteria{{Utils::SURNAME, "bob*"}, {Utils::NICKNAME, "bob*"}};
    EXPECT_FALSE(client.usesNickname());
    EXPECT_EQ(search(criteria), DIRECTORY_NO_MATCHES);

    configure({{"ldap-nickname", "true"}});
    EXPECT_TRUE(client.usesNickname());
    EXPECT_EQ(search(criteria), DIRECTORY_SUCCESS);
    EXPECT_EQ(found(Utils::FIRSTNAME), Strings{"Bob"});
    EXPECT_EQ(trailer, "true");
    EXPECT_EQ(search(criteria, true), DIRECTORY_NO_MATCHES);
}

DIRECTORY_CASE(SaysFoundByNicknameOnlyWhenNoSurnameWasFound)
{
    configure({{"ldap-nickname", "true"}});
    EXPECT_EQ(search({{Utils::SURNAME, "mil*"}, {Utils::NICKNAME, "mil*"}}), DIRECTORY_SUCCESS);
    EXPECT_EQ(trailer, "false");
    EXPECT_EQ(search({{Utils::SURNAME, "an*"}, {Utils::NICKNAME, "an*"}}), DIRECTORY_SUCCESS);
    EXPECT_EQ(found(Utils::FIRSTNAME), (Strings{"Ann", "Cleo"}));
    EXPECT_EQ(trailer, "true");
}

DIRECTORY_CASE(AsksOverLdapsToo)
{
    configure({{"ldap-servers", s_server.tlsUri}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
}

DIRECTORY_CASE(AsksWithoutEncryptionWhereThatIsWanted)
{
    configure({{"ldap-security", "none"}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
}

DIRECTORY_CASE(SearchesTheBaseAsFarAsConfigured)
{
    configure({{"ldap-scope", "base"}});
    EXPECT_EQ(searchSurname("*"), DIRECTORY_NO_MATCHES);
    configure({{"ldap-scope", "one"}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS);
    configure({{"ldap-filter", "(givenName=Bob)"}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS);
    EXPECT_EQ(found(Utils::FIRSTNAME), Strings{"Bob"});
}

DIRECTORY_CASE(SearchesTheBaseOfTheCriteria)
{
    base = "ou=nowhere,dc=example,dc=com";
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_WRONG_BASE);
    EXPECT_TRUE(said("there is no \"ou=nowhere,dc=example,dc=com\" to search in: correct \"ldap-base\""))
        << errors();
}

DIRECTORY_CASE(SaysThatTheBaseIsWrong)
{
    for (const auto* wrong : {"dc=nowhere", "no dn", "ou=nowhere,dc=example,dc=com"}) {
        configure({{"ldap-base", wrong}});
        EXPECT_EQ(searchSurname("mil*"), DIRECTORY_WRONG_BASE) << wrong << errors();
    }
}

DIRECTORY_CASE(SaysThatTheFilterIsWrong)
{
    for (const auto* wrong : {"(sn=a", "(sn=a))", "(sn=a)(sn=b)", "(&", "()", "(sn~a)", "(&(|(a))"}) {
        log.clear();
        configure({{"ldap-filter", wrong}});
        EXPECT_EQ(searchSurname("mil*"), DIRECTORY_WRONG_BASE) << wrong;
        EXPECT_TRUE(said("correct \"ldap-filter\"")) << errors();
    }
}

DIRECTORY_CASE(DeliversWhatCameWhenThereIsMore)
{
    for (const auto& [limit, status] : std::map<std::string, DirectoryStatus>{
             {"2", DIRECTORY_TOO_MANY_MATCHES}, {"3", DIRECTORY_SUCCESS}, {"4", DIRECTORY_SUCCESS}}) {
        configure({{"ldap-size-limit", limit}});
        EXPECT_EQ(searchSurname("mil*"), status) << limit << errors();
        EXPECT_EQ(found().size(), limit == "2" ? 2u : 3u);
        EXPECT_EQ(trailer, "false");
    }
}

DIRECTORY_CASE(SearchesNumbersUpToItsOwnLimit)
{
    configure({{"ldap-size-limit", "1"}});
    EXPECT_EQ(search({{Utils::OFFICE, "*"}}), DIRECTORY_TOO_MANY_MATCHES);
    EXPECT_EQ(found().size(), 1u);
    EXPECT_EQ(search({{Utils::MOBILE, "4711"}}), DIRECTORY_SUCCESS) << "47 2 11 is none of them";
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_TOO_MANY_MATCHES);
}

DIRECTORY_CASE(SaysThatThePasswordIsWrongAndTriesItOnce)
{
    keepPassword("wrong");
    configure({{"ldap-bind-dn", Slapd::bindDn()}, {"ldap-servers", s_server.uri + "," + s_server.tlsUri}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CREDENTIALS_REFUSED);
    EXPECT_EQ(log.texts(AppLog::ERROR).size(), 1u);
    EXPECT_TRUE(said("Directory server " + s_server.uri +
                     ": the name or the password is wrong: correct \"ldap-bind-dn\", or run \"deskphone "
                     "ldap-password\"."))
        << errors();
}

DIRECTORY_CASE(TakesANewPasswordAtOnce)
{
    keepPassword("wrong");
    configure({{"ldap-bind-dn", Slapd::bindDn()}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CREDENTIALS_REFUSED);
    keepPassword(Slapd::PASSWORD);
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
}

DIRECTORY_CASE(AsksAsConfiguredLast)
{
    ASSERT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS);
    configure({{"ldap-servers", "ldap://127.0.0.1:" + std::to_string(freePort())}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CONNECTION_FAILURE);
    configure({});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
}

DIRECTORY_CASE(ConnectionTellsStepByStep)
{
    LdapWatchdog watchdog;
    LdapConnection connection(setup.settings.servers.front(), setup.settings, watchdog);
    const auto deadline = LdapWatchdog::Clock::now() + 20s;
    EXPECT_FALSE(connection.isFit());
    ASSERT_FALSE(connection.resolve(deadline));
    EXPECT_FALSE(connection.addresses().empty());
    ASSERT_FALSE(connection.connect(deadline));
    ASSERT_FALSE(connection.startTls(deadline));
    ASSERT_FALSE(connection.bind(deadline));
    EXPECT_TRUE(connection.isFit());

    int entries = 0;
    const auto count = [&entries](const LdapEntryView& entry) {
        entry.forEachValue([](auto, auto) { FAIL() << "no attribute was asked for"; });
        return ++entries < 3;
    };
    EXPECT_FALSE(
        connection.search({Slapd::base(), LdapScope::Base, "(objectClass=*)", {"1.1"}, 0}, deadline, count)
            .fault);
    EXPECT_EQ(entries, 1);
    const auto end =
        connection.search({Slapd::base(), LdapScope::Subtree, "(sn=*)", {"1.1"}, 0}, deadline, count);
    EXPECT_TRUE(end.partial);
    EXPECT_EQ(entries, 3);
    EXPECT_FALSE(connection.isFit()) << "the rest of the answer is still to come";
}

} // namespace
