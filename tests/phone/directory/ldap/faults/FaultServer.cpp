#include "FaultServer.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

using std::chrono::milliseconds;

namespace {

constexpr std::size_t nBLOCK = 65536;
constexpr std::chrono::seconds nPATIENCE{20};

sockaddr_in loopback(int port, const std::string& text = "127.0.0.1")
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    ::inet_pton(AF_INET, text.c_str(), &address.sin_addr);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

int listener(int backlog, const sockaddr_in& address = loopback(0))
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket, backlog) != 0)
        throw std::runtime_error("nobody can listen here");
    return socket;
}

sockaddr_in addressOf(int socket)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    return address;
}

int portOf(int socket)
{
    return ntohs(addressOf(socket).sin_port);
}

int connected(const sockaddr_in& address, int flags = 0)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
    static_cast<void>(::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    return socket;
}

bool readable(int socket, milliseconds time)
{
    pollfd one{socket, POLLIN, 0};
    return ::poll(&one, 1, static_cast<int>(time.count())) > 0;
}

} // namespace

bool Conversation::receive()
{
    std::array<char, nBLOCK> block{};
    const auto size = ::recv(m_socket, block.data(), block.size(), 0);
    if (size <= 0)
        return false;
    const std::string_view bytes(block.data(), static_cast<std::size_t>(size));
    m_record(bytes);
    m_pending += bytes;
    return true;
}

std::string Conversation::take(std::size_t size)
{
    while (m_pending.size() < size) {
        if (!receive())
            return "";
    }
    auto taken = m_pending.substr(0, size);
    m_pending.erase(0, size);
    return taken;
}

std::optional<LdapRequest> Conversation::request()
{
    const auto byteOf = [](char c) { return static_cast<std::uint8_t>(c); };
    const auto start = take(2);
    if (start.empty() || byteOf(start[0]) != ldap_bytes::Sequence)
        return std::nullopt;
    std::size_t size = byteOf(start[1]);
    if (size >= 0x80) {
        const auto digits = take(size & 0x7F);
        size = 0;
        for (const char digit : digits)
            size = size << 8 | byteOf(digit);
    }
    const auto content = take(size);
    const std::size_t idSize = content.size() > 2 ? byteOf(content[1]) : 0;
    if (idSize == 0 || content.size() < 3 + idSize)
        return std::nullopt;
    LdapRequest request;
    for (std::size_t i = 0; i < idSize; ++i)
        request.id = request.id << 8 | byteOf(content[2 + i]);
    request.operation = byteOf(content[2 + idSize]);
    return request;
}

bool Conversation::send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void Conversation::flood(std::string_view bytes, std::size_t total)
{
    for (std::size_t sent = 0; sent < total && send(bytes); sent += bytes.size()) {
    }
}

bool Conversation::closedWithin(milliseconds time)
{
    const auto until = std::chrono::steady_clock::now() + time;
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(until - std::chrono::steady_clock::now());
        if (!readable(m_socket, std::max(left, milliseconds(0))))
            return false;
        if (!receive())
            return true;
    }
}

void Conversation::untilClosed()
{
    while (receive()) {
    }
}

void Conversation::dribble(std::string_view bytes, milliseconds pause)
{
    for (const char& byte : bytes) {
        if (!send({&byte, 1}) || closedWithin(pause))
            return;
    }
}

std::size_t Conversation::passOn(int port, std::size_t most)
{
    std::size_t passed = 0;
    const int server = connected(loopback(port));
    std::array<pollfd, 2> both{{{m_socket, POLLIN, 0}, {server, POLLIN, 0}}};
    std::array<char, nBLOCK> block{};
    while (passed<most&& ::poll(both.data(), both.size(), -1)> 0) {
        const bool fromServer = both[1].revents != 0;
        const auto wanted = fromServer ? std::min(most - passed, block.size()) : block.size();
        const auto size = ::recv(fromServer ? server : m_socket, block.data(), wanted, 0);
        if (size <= 0)
            break;
        const std::string_view bytes(block.data(), static_cast<std::size_t>(size));
        if (fromServer)
            passed += bytes.size();
        if (fromServer ? !send(bytes) : ::send(server, bytes.data(), bytes.size(), MSG_NOSIGNAL) != size)
            break;
    }
    ::close(server);
    return passed;
}

FaultServer::FaultServer(Script script)
    : m_script(std::move(script))
    , m_socket(listener(SOMAXCONN))
    , m_port(portOf(m_socket))
    , m_thread([this] { accept(); })
{
}

FaultServer::~FaultServer()
{
    {
        std::lock_guard lock(m_mutex);
        m_ended = true;
        for (const auto& guest : m_guests)
            ::shutdown(guest.socket, SHUT_RDWR);
    }
    ::shutdown(m_socket, SHUT_RDWR);
    m_thread.join();
    for (auto& guest : m_guests) {
        guest.thread.join();
        ::close(guest.socket);
    }
    ::close(m_socket);
}

void FaultServer::accept()
{
    for (;;) {
        const int socket = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC);
        std::lock_guard lock(m_mutex);
        if (m_ended || socket < 0) {
            if (socket >= 0)
                ::close(socket);
            return;
        }
        m_guests.push_back({socket, std::thread([this, socket] { serve(socket); })});
    }
}

void FaultServer::serve(int socket)
{
    Script script;
    {
        std::lock_guard lock(m_mutex);
        script = m_script;
    }
    Conversation conversation(socket, [this](std::string_view bytes) {
        std::lock_guard lock(m_mutex);
        m_received += bytes;
        m_changed.notify_all();
    });
    script(conversation);
    ::shutdown(socket, SHUT_RDWR);
}

void FaultServer::recover(int port)
{
    std::lock_guard lock(m_mutex);
    m_script = [port](Conversation& conversation) { conversation.passOn(port); };
    for (const auto& guest : m_guests)
        ::shutdown(guest.socket, SHUT_RDWR);
}

bool FaultServer::waitUntilAsked()
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, nPATIENCE, [this] { return !m_received.empty(); });
}

int FaultServer::connections() const
{
    std::lock_guard lock(m_mutex);
    return static_cast<int>(m_guests.size());
}

std::string FaultServer::received() const
{
    std::lock_guard lock(m_mutex);
    return m_received;
}

BlackHole::BlackHole(const std::string& address, int port)
    : m_socket(listener(0, loopback(port, address)))
    , m_port(portOf(m_socket))
{
    // Its queue is full when one more has to wait.
    pollfd last{};
    do {
        m_waiting.push_back(connected(addressOf(m_socket), SOCK_NONBLOCK));
        last = {m_waiting.back(), POLLOUT, 0};
    } while (::poll(&last, 1, 100) > 0);
}

BlackHole::~BlackHole()
{
    for (const int socket : m_waiting)
        ::close(socket);
    ::close(m_socket);
}
