// A server that a test starts, and that ends with the test, even when that is killed.

#pragma once

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

class ServerProcess {
public:
    // `signal` ends it with this object, or when the test is killed: one that has processes of its own
    // must end them itself.
    explicit ServerProcess(int signal = SIGKILL)
        : m_signal(signal)
    {
    }
    ~ServerProcess();

    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    // Starts `arguments`, the program's path first, with its output in `log`, and returns when it
    // accepts connections on `port` of this machine. Throws when it ends before, or needs longer than
    // `patience`.
    void start(const std::vector<std::string>& arguments, const std::filesystem::path& log, int port,
               std::chrono::milliseconds patience);
    // The same for one that has no such port: it is there when `ready` says so.
    void start(const std::vector<std::string>& arguments, const std::filesystem::path& log,
               const std::function<bool()>& ready, std::chrono::milliseconds patience);
    // What a program that ends by itself within `patience` returns; -1 if it does not, or was killed.
    int exitCode(std::chrono::milliseconds patience);
    // Ends it as a crash would, and its processes with it.
    void kill();

private:
    bool ended();

    const int m_signal;
    pid_t m_process = -1;
};

// A port that nobody listened on a moment ago, neither with TCP nor with UDP.
int freePort();

// Whether one can listen on this port of this machine with TCP, and receive UDP.
bool isFree(int port);

// Whether somebody receives UDP on this port of this machine.
bool receivesUdp(int port);

// What a file holds; "" for none.
std::string textOf(const std::filesystem::path& file);
