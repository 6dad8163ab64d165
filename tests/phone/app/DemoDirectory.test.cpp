// The demo's corporate directory, as "deskphone --demo" starts and ends it.

#include <csignal>
#include <fstream>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "DemoTelephone.h"
#include "directory/ldap/LdapConnection.h"
#include "system/Configuration.h"

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

struct Answer {
    std::string fault; // "" when there was none
    int people = 0;
};

// What a telephone with this profile gets from its corporate directory.
Answer ask(const DemoHome& home, LdapTls tls = LdapTls::StartTls)
{
    const Configuration configuration(home.profile().configFile());
    const auto setup = ldapSettingsOf(configuration, home.profile().data);
    if (!setup.usable())
        return {setup.faults.front()};
    auto server = setup.settings.servers.front();
    server.tls = tls;
    LdapWatchdog watchdog;
    LdapConnection connection(server, setup.settings, watchdog);
    const auto deadline = LdapWatchdog::Clock::now() + 20s;
    if (const auto fault = connection.open(deadline))
        return {fault->sentence};
    Answer answer;
    const LdapSearch people{setup.settings.base, LdapScope::Subtree, "(objectClass=inetOrgPerson)", {"1.1"}};
    const auto end = connection.search(people, deadline, [&answer](const LdapEntryView&) {
        ++answer.people;
        return true;
    });
    if (end.fault)
        answer.fault = end.fault->sentence;
    return answer;
}

fs::path directoryOf(const DemoHome& home)
{
    return home.profile().data / "directory";
}

ino_t fileOf(const fs::path& path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

TEST(DemoDirectory, HoldsAThousandPeople)
{
    const DemoHome home;
    const DemoTelephone demo(home);
    const auto answer = ask(home);
    EXPECT_EQ(answer.fault, "");
    EXPECT_EQ(answer.people, 1000);
    EXPECT_EQ(std::system(BIN_DIR "/deskphone --demo ldap-check >/dev/null"), 0);
}

TEST(DemoDirectory, TellsNothingWithoutTls)
{
    const DemoHome home;
    const DemoTelephone demo(home);
    EXPECT_EQ(ask(home).people, 1000);
    const auto answer = ask(home, LdapTls::None);
    EXPECT_NE(answer.fault, "");
    EXPECT_EQ(answer.people, 0);
}

TEST(DemoDirectory, EndsWithTheTelephone)
{
    for (const int signal : {SIGTERM, SIGKILL}) {
        const DemoHome home;
        DemoTelephone demo(home);
        ASSERT_EQ(ask(home).people, 1000);
        demo.end(signal);
        EXPECT_NE(ask(home).fault, "") << signal;
    }
}

TEST(DemoDirectory, IsThereAgainAfterAnythingThatEndedIt)
{
    const DemoHome home;
    DemoTelephone(home).end(SIGKILL);
    const auto database = fileOf(directoryOf(home) / "database/data.mdb");
    const auto certificate = fileOf(directoryOf(home) / "certificates/server.pem");
    fs::create_directories(directoryOf(home) / "database.new");

    const DemoTelephone demo(home);
    EXPECT_EQ(ask(home).people, 1000);
    EXPECT_EQ(fileOf(directoryOf(home) / "database/data.mdb"), database);
    EXPECT_EQ(fileOf(directoryOf(home) / "certificates/server.pem"), certificate);
}

TEST(DemoDirectory, IsMadeAnewWhereSomethingIsMissingOrOfOtherPeople)
{
    const DemoHome home;
    DemoTelephone(home).end(SIGTERM);
    fs::remove(directoryOf(home) / "certificates/server.pem");
    std::ofstream(directoryOf(home) / "database/people.ldif") << "dn: dc=deskbook,dc=example\n";
    std::ofstream(directoryOf(home) / "database/data.mdb") << "other people\n";

    const DemoTelephone demo(home);
    EXPECT_EQ(ask(home).people, 1000);
}

TEST(DemoDirectory, IsEveryDemosOwn)
{
    const DemoHome one;
    const DemoHome other;
    const DemoTelephone here(one);
    {
        const DemoTelephone there(other);
        EXPECT_EQ(ask(one).people, 1000);
        EXPECT_EQ(ask(other).people, 1000);
    }
    EXPECT_NE(ask(other).fault, "");
}

TEST(DemoDirectory, OfATelephoneThatRunsIsNotDisturbedByASecondStart)
{
    const DemoHome home;
    const DemoTelephone demo(home);
    {
        const DemoTelephone second(home);
        EXPECT_NE(second.said().find("A telephone already runs"), std::string::npos) << second.said();
    }
    EXPECT_EQ(ask(home).people, 1000);
}

TEST(DemoDirectory, ThatCannotBeStartedIsSaidAndMissedByNobodyElse)
{
    const DemoHome home;
    ASSERT_TRUE(home.profile().create());
    std::ofstream(directoryOf(home)) << "in the way\n";

    const DemoTelephone demo(home);
    EXPECT_NE(demo.said().find("The demo has no corporate directory. "), std::string::npos) << demo.said();
    EXPECT_NE(demo.said().find("The telephone is at"), std::string::npos);
}

TEST(DemoDirectory, IsNotStartedForAProfileOfOnesOwn)
{
    const DemoHome home;
    const auto command =
        "echo | " BIN_DIR "/deskphone --text --profile '" + home.data().string() + "' >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_FALSE(fs::exists(home.data() / "directory"));
}
