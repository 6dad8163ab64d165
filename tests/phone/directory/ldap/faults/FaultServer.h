// A directory server that misbehaves as a test wants it: a socket on this machine, and a script for
// those who connect.

#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "LdapBytes.h"

struct LdapRequest {
    int id = 0;
    std::uint8_t operation = 0; // its tag
};

// One connection, as the script sees it.
class Conversation {
public:
    using Recorder = std::function<void(std::string_view)>;

    Conversation(int socket, Recorder record)
        : m_socket(socket)
        , m_record(std::move(record))
    {
    }

    // The next whole request; nothing when the other end has gone, or says what is no LDAP.
    std::optional<LdapRequest> request();
    // False when the other end has gone.
    bool send(std::string_view bytes);
    // Sends `bytes` again and again until about `total` are sent or the other end has gone.
    void flood(std::string_view bytes, std::size_t total);
    // Listens for at most this long; true once the other end has gone.
    bool closedWithin(std::chrono::milliseconds time);
    // Listens until the other end has gone.
    void untilClosed();
    // Sends one byte after the other, each so long after the one before.
    void dribble(std::string_view bytes, std::chrono::milliseconds pause);
    // Joins the other end with a server on this machine until either has gone, or until the server
    // has said `most` bytes. How many it has said.
    std::size_t passOn(int port, std::size_t most = SIZE_MAX);

private:
    std::string take(std::size_t size);
    bool receive();

    const int m_socket;
    const Recorder m_record;
    std::string m_pending; // received, not yet taken
};

class FaultServer {
public:
    using Script = std::function<void(Conversation&)>;

    // Every connection gets a thread that runs `script`, and is closed when that returns.
    explicit FaultServer(Script script);
    // Breaks off what still goes on.
    ~FaultServer();

    FaultServer(const FaultServer&) = delete;
    FaultServer& operator=(const FaultServer&) = delete;

    std::string uri() const { return "ldap://127.0.0.1:" + std::to_string(m_port); }
    std::string tlsUri() const { return "ldaps://127.0.0.1:" + std::to_string(m_port); }

    // Breaks off all connections, and is well from now on: who connects is joined with the server on
    // this port.
    void recover(int port);

    // Returns when anybody has said anything; false if that takes too long.
    bool waitUntilAsked();
    int connections() const;
    // All that anybody said, to the misbehaving server.
    std::string received() const;

private:
    struct Guest {
        int socket;
        std::thread thread;
    };

    void accept();
    void serve(int socket);

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Script m_script;
    std::list<Guest> m_guests;
    std::string m_received;
    bool m_ended = false;
    int m_socket;
    int m_port = 0;
    std::thread m_thread;
};

// A port on which connections are neither accepted nor refused; 0: one that is free.
class BlackHole {
public:
    explicit BlackHole(const std::string& address = "127.0.0.1", int port = 0);
    ~BlackHole();

    BlackHole(const BlackHole&) = delete;
    BlackHole& operator=(const BlackHole&) = delete;

    std::string uri() const { return "ldap://127.0.0.1:" + std::to_string(m_port); }

private:
    const int m_socket;
    const int m_port;
    std::list<int> m_waiting;
};
