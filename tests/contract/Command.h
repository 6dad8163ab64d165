// What a tool of the machine prints.

#pragma once

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

inline std::string outputOf(const std::string& command)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen((command + " 2>&1").c_str(), "r"), pclose);
    if (!pipe)
        throw std::runtime_error("cannot run " + command);
    std::string output;
    char part[4096];
    while (std::fgets(part, sizeof part, pipe.get()))
        output += part;
    return output;
}
