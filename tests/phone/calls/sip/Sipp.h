// A SIP peer (Debian's sipp) on a free port of this machine, that calls or is called as a scenario says.

#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ServerProcess.h"

#include "TemporaryFolder.h"

class Sipp {
public:
    // Plays a file of scenarios/ once, and then ends. A callee is there when this returns. `status`
    // stands for "[status]" in the file, "486 Busy Here" say.
    explicit Sipp(const std::string& scenario, const std::string& status = "")
    {
        write(scenario, status);
        for (int attempt = 1;; ++attempt) {
            try {
                run({}, [this] { return receivesUdp(m_port); });
                return;
            } catch (const std::runtime_error&) {
                // Somebody else may have taken the port.
                if (attempt == ATTEMPTS)
                    throw;
                m_port = freePort();
            }
        }
    }
    // Calls `user` on a port of this machine.
    Sipp(const std::string& scenario, const std::string& user, int calledPort, const std::string& caller)
    {
        write(scenario, "");
        run({"-s", user, "-key", "caller", caller, "127.0.0.1:" + std::to_string(calledPort)},
            [] { return true; });
    }

    int port() const { return m_port; }
    // Whether everything went as the scenario says.
    bool succeeds() { return m_process.exitCode(std::chrono::seconds(10)) == 0; }
    // What it sent and received until now.
    std::string messages() const { return textOf(m_folder / "messages"); }

private:
    static constexpr int ATTEMPTS = 5;

    void write(const std::string& scenario, const std::string& status) const
    {
        auto text = textOf(SOURCE_DIR "/tests/phone/calls/sip/scenarios/" + scenario + ".xml");
        const std::string placeholder = "[status]";
        if (const auto found = text.find(placeholder); found != std::string::npos)
            text.replace(found, placeholder.size(), status);
        m_folder.write("scenario.xml", text);
    }
    void run(const std::vector<std::string>& more, const std::function<bool()>& ready)
    {
        std::vector<std::string> words{"/usr/bin/sipp", "-nostdin", "-trace_msg"};
        const auto option = [&words](const std::string& name, const std::string& value) {
            words.insert(words.end(), {name, value});
        };
        option("-sf", m_folder / "scenario.xml");
        option("-message_file", m_folder / "messages");
        option("-i", "127.0.0.1");
        option("-p", std::to_string(m_port));
        option("-m", "1");        // call
        option("-timeout", "20"); // s
        words.insert(words.end(), more.begin(), more.end());
        m_process.start(words, m_folder / "log", ready, std::chrono::seconds(10));
    }

    TemporaryFolder m_folder;
    int m_port = freePort();
    ServerProcess m_process;
};
