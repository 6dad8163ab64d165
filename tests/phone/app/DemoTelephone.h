// "deskphone --demo", with a profile and servers of its own.

#pragma once

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "../TemporaryFolder.h"
#include "app/Profile.h"

// A user's data, in which the demo keeps its profile.
class DemoHome {
public:
    const std::filesystem::path& data() const { return m_folder.path(); }
    Profile profile() const { return Profile::in(data() / "deskbook-demo"); }

private:
    // A server is started in it: not in memory, which programs may not be started from everywhere.
    TemporaryFolder m_folder{std::filesystem::temp_directory_path()};
};

class DemoTelephone {
public:
    // Returns when the telephone is there.
    explicit DemoTelephone(const DemoHome& home)
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
    ~DemoTelephone()
    {
        if (m_process > 0)
            end(SIGKILL);
        ::close(m_output);
    }

    DemoTelephone(const DemoTelephone&) = delete;
    DemoTelephone& operator=(const DemoTelephone&) = delete;

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
