// The one connection on which the SIP engine takes commands and tells what happens.
//
// The engine serves a single client, the last one, and keeps nothing for a client to come: so it is
// connected to first of all, and a connection that ends means that somebody else has taken it.

#pragma once

#include <array>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>

#include "calls/sip/BaresipEvents.h"
#include "calls/sip/Netstring.h"

struct EngineCommand {
    std::string name;
    std::string parameter;
    std::string token; // comes back with the response
};

// Everything on the thread that runs the io_context.
class BaresipControl : public std::enable_shared_from_this<BaresipControl> {
public:
    struct Hooks {
        std::function<void()> connected;
        std::function<void(const EngineMessage&)> said;
        // It could not be connected to, it sent what is no message, a command was not answered, or the
        // connection ended. Called once, and nothing after it.
        std::function<void()> lost;
    };

    // `patience` is how long the engine may take to listen, and to answer a command.
    BaresipControl(boost::asio::io_context& io, std::chrono::milliseconds patience, Hooks hooks);

    // Tries until somebody listens on `port` of this machine.
    void connect(int port);
    // Nothing is heard of it any more.
    void close();
    // The engine runs commands that are sent together without doing anything else between them.
    void send(const std::vector<EngineCommand>& commands);

private:
    void tryToConnect();
    bool isConnectedToItself() const;
    void read();
    void take(std::size_t bytes);
    void write();
    void watch();
    void lose();

    using Error = boost::system::error_code;

    boost::asio::ip::tcp::socket m_socket;
    boost::asio::steady_timer m_retry;
    boost::asio::steady_timer m_deadline; // of the connection, then of the next response
    const std::chrono::milliseconds m_patience;
    boost::asio::ip::tcp::endpoint m_engine;
    Hooks m_hooks;
    NetstringReader m_reader;
    std::array<char, 16384> m_buffer;
    std::deque<std::string> m_toWrite;
    std::size_t m_unanswered = 0;
    bool m_open = true;
};
