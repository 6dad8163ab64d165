// The engine's process, as the system sees it.

#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include <sys/types.h>

#include "ServerProcess.h"

inline std::string textOfProcess(pid_t process, const std::string& what)
{
    std::ostringstream text;
    text << std::ifstream("/proc/" + std::to_string(process) + "/" + what).rdbuf();
    return text.str();
}

// One of this program with `words` in its command line; -1 for none.
inline pid_t processOf(const std::string& program, const std::string& words)
{
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const auto name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos)
            continue;
        const auto process = static_cast<pid_t>(std::stoi(name));
        if (textOfProcess(process, "comm") == program + '\n' &&
            textOfProcess(process, "cmdline").find(words) != std::string::npos)
            return process;
    }
    return -1;
}

// The engine that works in this profile; -1 for none.
inline pid_t engineOf(const std::filesystem::path& profile)
{
    return processOf("baresip", profile.string());
}

// A port for calls that come in: the one behind it is free too, and the system gives neither to others.
inline int freeSipPort()
{
    std::random_device random;
    for (;;) {
        const int port = std::uniform_int_distribution(20001, 32000)(random);
        if (isFree(port) && isFree(port + 1))
            return port;
    }
}
