// The demo's corporate directory, as "deskphone --demo" starts and ends it.

#include <array>
#include <csignal>
#include <fstream>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "app/Profile.h"
#include "directory/ldap/LdapConnection.h"
#include "system/Configuration.h"

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

// A user's data, in which the demo keeps its profile.
class Home {
public:
    const fs::path& data() const { return m_folder.path(); }
    Profile profile() const { return Profile::in(data() / "deskbook-demo"); }
    fs::path directory() const { return profile().data / "directory"; }

private:
    // A server is started in it: not in memory, which programs may not be started from everywhere.
    TemporaryFolder m_folder{fs::temp_directory_path()};
};

class Demo {
public:
    // Returns when the telephone is there.
    explicit Demo(const Home& home)
    {
        // What the telephone leaves behind becomes ours, and stays in its group.
        ::prctl(PR_SET_CHILD_SUBREAPER, 1);
        ::setenv("XDG_DATA_HOME", home.data().c_str(), 1);
        std::array<int, 2> output{};
        EXPECT_EQ(::pipe2(output.data(), O_CLOEXEC), 0);
        m_process = ::fork();
        if (m_process == 0) {
            ::setpgid(0, 0);
            ::dup2(output[1], STDOUT_FILENO);
            ::dup2(output[1], STDERR_FILENO);
            ::execl(BIN_DIR "/deskphone", "deskphone", "--demo", "--no-open", nullptr);
            ::_exit(127);
        }
        ::close(output[1]);
        m_output = output[0];
        std::array<char, 1024> part{};
        while (m_said.find("The telephone is at") == std::string::npos) {
            const auto count = ::read(m_output, part.data(), part.size());
            if (count <= 0)
                break;
            m_said.append(part.data(), static_cast<std::size_t>(count));
        }
    }
    ~Demo()
    {
        if (m_process > 0)
            end(SIGKILL);
        ::close(m_output);
    }

    Demo(const Demo&) = delete;
    Demo& operator=(const Demo&) = delete;

    const std::string& said() const { return m_said; }

    // Returns when the telephone has ended and every program that it had started: never, if one stays.
    void end(int signal)
    {
        ::kill(m_process, signal);
        while (::waitpid(-m_process, nullptr, 0) > 0) {
        }
        m_process = -1;
    }

private:
    pid_t m_process = -1;
    int m_output = -1;
    std::string m_said;
};

struct Answer {
    std::string fault; // "" when there was none
    int people = 0;
};

// What a telephone with this profile gets from its corporate directory.
Answer ask(const Home& home, LdapTls tls = LdapTls::StartTls)
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

ino_t fileOf(const fs::path& path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

TEST(DemoDirectory, HoldsAThousandPeople)
{
    const Home home;
    const Demo demo(home);
    const auto answer = ask(home);
    EXPECT_EQ(answer.fault, "");
    EXPECT_EQ(answer.people, 1000);
    EXPECT_EQ(std::system(BIN_DIR "/deskphone --demo ldap-check >/dev/null"), 0);
}

TEST(DemoDirectory, TellsNothingWithoutTls)
{
    const Home home;
    const Demo demo(home);
    EXPECT_EQ(ask(home).people, 1000);
    const auto answer = ask(home, LdapTls::None);
    EXPECT_NE(answer.fault, "");
    EXPECT_EQ(answer.people, 0);
}

TEST(DemoDirectory, EndsWithTheTelephone)
{
    for (const int signal : {SIGTERM, SIGKILL}) {
        const Home home;
        Demo demo(home);
        ASSERT_EQ(ask(home).people, 1000);
        demo.end(signal);
        EXPECT_NE(ask(home).fault, "") << signal;
    }
}

TEST(DemoDirectory, IsThereAgainAfterAnythingThatEndedIt)
{
    const Home home;
    Demo(home).end(SIGKILL);
    const auto database = fileOf(home.directory() / "database/data.mdb");
    const auto certificate = fileOf(home.directory() / "certificates/server.pem");
    fs::create_directories(home.directory() / "database.new");

    const Demo demo(home);
    EXPECT_EQ(ask(home).people, 1000);
    EXPECT_EQ(fileOf(home.directory() / "database/data.mdb"), database);
    EXPECT_EQ(fileOf(home.directory() / "certificates/server.pem"), certificate);
}

TEST(DemoDirectory, IsMadeAnewWhereSomethingIsMissingOrOfOtherPeople)
{
    const Home home;
    Demo(home).end(SIGTERM);
    fs::remove(home.directory() / "certificates/server.pem");
    std::ofstream(home.directory() / "database/people.ldif") << "dn: dc=deskbook,dc=example\n";
    std::ofstream(home.directory() / "database/data.mdb") << "other people\n";

    const Demo demo(home);
    EXPECT_EQ(ask(home).people, 1000);
}

TEST(DemoDirectory, IsEveryDemosOwn)
{
    const Home one;
    const Home other;
    const Demo here(one);
    {
        const Demo there(other);
        EXPECT_EQ(ask(one).people, 1000);
        EXPECT_EQ(ask(other).people, 1000);
    }
    EXPECT_NE(ask(other).fault, "");
}

TEST(DemoDirectory, OfATelephoneThatRunsIsNotDisturbedByASecondStart)
{
    const Home home;
    const Demo demo(home);
    {
        const Demo second(home);
        EXPECT_NE(second.said().find("A telephone already runs"), std::string::npos) << second.said();
    }
    EXPECT_EQ(ask(home).people, 1000);
}

TEST(DemoDirectory, ThatCannotBeStartedIsSaidAndMissedByNobodyElse)
{
    const Home home;
    ASSERT_TRUE(home.profile().create());
    std::ofstream(home.directory()) << "in the way\n";

    const Demo demo(home);
    EXPECT_NE(demo.said().find("The demo has no corporate directory. "), std::string::npos) << demo.said();
    EXPECT_NE(demo.said().find("The telephone is at"), std::string::npos);
}

TEST(DemoDirectory, IsNotStartedForAProfileOfOnesOwn)
{
    const Home home;
    const auto command =
        "echo | " BIN_DIR "/deskphone --text --profile '" + home.data().string() + "' >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_FALSE(fs::exists(home.data() / "directory"));
}
