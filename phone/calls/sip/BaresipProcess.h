// The SIP engine, a program of its own: started, watched, ended.

#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>

#include <sys/types.h>

#include "app/Result.h"

enum class IpVersion { V4, V6 };

// Everything on the thread that runs the io_context.
class BaresipProcess {
public:
    explicit BaresipProcess(boost::asio::io_context& io)
        : m_ending(io)
    {
    }
    // Lets the engine hang up and sign off, a second long; then it is killed.
    ~BaresipProcess();

    BaresipProcess(const BaresipProcess&) = delete;
    BaresipProcess& operator=(const BaresipProcess&) = delete;

    // Starts it with the files in `folder`, to speak this version of IP only. It ends with this object, and
    // with the calling thread, however that ends; `ended` is called when it ends before. Nothing but the
    // folder's name is in its arguments. That the engine is not installed shows in its ending at once.
    Result<void> start(const std::filesystem::path& folder, IpVersion version, std::function<void()> ended);

    // Ends it as a crash would; `ended` is not called.
    void kill();

    // Nobody can connect to `port` of this machine, where the engine listens, any more; connections that
    // there are stay. The engine asks nobody for a password, and would load any library for whoever tells
    // it to. An error where the system does not let us.
    Result<void> closePort(int port);

    pid_t id() const { return m_process; } // -1: there is none

private:
    void bury();

    pid_t m_process = -1;
    boost::asio::posix::stream_descriptor m_ending; // readable when the process has ended
};
