// The SIP engine, a program of its own: started, watched, ended.

#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>

#include <sys/types.h>

#include "app/Result.h"

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

    // Starts it with the files in `folder`. It ends with this object, and with the calling thread,
    // however that ends; `ended` is called when it ends before. Nothing but the folder's name is in its
    // arguments. That the engine is not installed shows in its ending at once.
    Result<void> start(const std::filesystem::path& folder, std::function<void()> ended);

    // Ends it as a crash would; `ended` is not called.
    void kill();

    pid_t id() const { return m_process; } // -1: there is none

private:
    void bury();

    pid_t m_process = -1;
    boost::asio::posix::stream_descriptor m_ending; // readable when the process has ended
};
