// A SIP peer (Debian's sipp) on a free port of this machine, that calls or is called as a scenario says.

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "ServerProcess.h"

#include "TemporaryFolder.h"

class Sipp {
public:
    // Plays a file of scenarios/ once, and then ends. A callee is there when this returns. `status`
    // stands for "[status]" in the file, "486 Busy Here" say.
    explicit Sipp(const std::string& scenario, const std::string& status = "",
                  const std::vector<std::string>& more = {})
    {
        run(scenario, status, more, [this] { return receivesUdp(port); });
    }
    // Calls `user` on a port of this machine.
    Sipp(const std::string& scenario, const std::string& user, int calledPort, const std::string& caller)
    {
        run(scenario, "", {"-s", user, "-key", "caller", caller, "127.0.0.1:" + std::to_string(calledPort)},
            [] { return true; });
    }

    // Whether everything went as the scenario says.
    bool succeeds() { return m_process.exitCode(std::chrono::seconds(10)) == 0; }
    // What it sent and received until now.
    std::string messages() const { return textOf(m_folder / "messages"); }

    const int port = freePort();

private:
    void run(const std::string& scenario, const std::string& status, const std::vector<std::string>& more,
             const std::function<bool()>& ready)
    {
        auto text = textOf(SOURCE_DIR "/tests/phone/calls/sip/scenarios/" + scenario + ".xml");
        const std::string placeholder = "[status]";
        if (const auto found = text.find(placeholder); found != std::string::npos)
            text.replace(found, placeholder.size(), status);
        m_folder.write("scenario.xml", text);
        std::vector<std::string> words{"/usr/bin/sipp",
                                       "-sf",
                                       m_folder / "scenario.xml",
                                       "-i",
                                       "127.0.0.1",
                                       "-p",
                                       std::to_string(port),
                                       "-m",
                                       "1",
                                       "-nostdin",
                                       "-timeout",
                                       "20",
                                       "-trace_msg",
                                       "-message_file",
                                       m_folder / "messages"};
        words.insert(words.end(), more.begin(), more.end());
        m_process.start(words, m_folder / "log", ready, std::chrono::seconds(10));
    }

    TemporaryFolder m_folder;
    ServerProcess m_process;
};
