#include "TestPbx.h"

#include <array>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int LONG_ENOUGH_MS = 10000;

bool isReadable(int socket)
{
    pollfd wanted{socket, POLLIN, 0};
    return ::poll(&wanted, 1, LONG_ENOUGH_MS) == 1;
}

std::string privatePart(const std::string& name, const std::string& content)
{
    return "<privateData><private><" + name + " xmlns=\"urn:deskbook:csta:1\">" + content + "</" + name +
           "></private></privateData>";
}

} // namespace

TestPbx::TestPbx()
    : m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    ::bind(m_listener, generic, length);
    ::listen(m_listener, 8);
    ::getsockname(m_listener, generic, &length);
    m_port = ntohs(address.sin_port);
}

TestPbx::~TestPbx()
{
    close();
    ::close(m_listener);
}

PbxSettings TestPbx::settings() const
{
    PbxSettings settings;
    settings.host = "127.0.0.1";
    settings.port = m_port;
    settings.device = "100";
    settings.requestTimeout = std::chrono::seconds(60);
    settings.firstPause = std::chrono::milliseconds(1);
    settings.longestPause = std::chrono::milliseconds(20);
    settings.probeInterval = std::chrono::hours(1);
    return settings;
}

bool TestPbx::accept()
{
    close();
    m_reader = {};
    if (isReadable(m_listener))
        m_peer = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    const int on = 1;
    ::setsockopt(m_peer, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return m_peer >= 0;
}

CstaFrame TestPbx::receive()
{
    for (;;) {
        auto frame = m_reader.next();
        if (!frame)
            return {-1, frame.error().sentence};
        if (frame.value())
            return *std::move(frame.value());
        std::array<char, 4096> part{};
        const auto size = isReadable(m_peer) ? ::recv(m_peer, part.data(), part.size(), 0) : -1;
        if (size <= 0)
            return {-1, ""};
        m_reader.append({part.data(), static_cast<std::size_t>(size)});
    }
}

std::string TestPbx::receiveName()
{
    return nameIn(receive().xml);
}

std::string TestPbx::answer(const std::string& xml)
{
    const auto request = receive();
    send(request.invokeId, xml);
    return nameIn(request.xml);
}

void TestPbx::send(int id, const std::string& xml)
{
    if (const auto octets = octetsOf({id, csta(xml)}))
        sendRaw(octets.value());
}

void TestPbx::sendRaw(const std::string& octets)
{
    for (std::size_t sent = 0; sent < octets.size();) {
        const auto size = ::send(m_peer, octets.data() + sent, octets.size() - sent, MSG_NOSIGNAL);
        if (size <= 0)
            return;
        sent += static_cast<std::size_t>(size);
    }
}

void TestPbx::close()
{
    if (m_peer >= 0)
        ::close(m_peer);
    m_peer = -1;
}

void TestPbx::hangUp()
{
    if (m_peer >= 0)
        ::shutdown(m_peer, SHUT_WR);
}

bool TestPbx::isClosed()
{
    while (isReadable(m_peer)) {
        std::array<char, 4096> part{};
        if (::recv(m_peer, part.data(), part.size(), 0) <= 0)
            return true;
    }
    return false;
}

bool TestPbx::welcome(const std::string& availability)
{
    return accept() &&
           answer("<MonitorStartResponse><monitorCrossRefID>m1</monitorCrossRefID></MonitorStartResponse>") ==
               "MonitorStart" &&
           answer("<RequestSystemStatusResponse><systemStatus>normal</systemStatus>" +
                  extension("<featureName>PBXPhonebook</featureName><Availability>" + availability +
                            "</Availability>") +
                  "</RequestSystemStatusResponse>") == "RequestSystemStatus";
}

std::string TestPbx::csta(const std::string& xml)
{
    const auto end = xml.find_first_of(" />", 1);
    if (!xml.starts_with("<") || end == std::string::npos)
        return xml;
    return xml.substr(0, end) + " xmlns=\"http://www.ecma-international.org/standards/ecma-323/csta/ed4\"" +
           xml.substr(end);
}

std::string TestPbx::nameIn(const std::string& xml)
{
    const auto declaration = xml.find("?>");
    const auto start = xml.find('<', declaration == std::string::npos ? 0 : declaration);
    return start == std::string::npos
               ? ""
               : xml.substr(start + 1, xml.find_first_of(" />", start + 1) - start - 1);
}

std::string TestPbx::feature(const std::string& content)
{
    return "<PrivateEvent><monitorCrossRefID>m1</monitorCrossRefID>" + privatePart("feature", content) +
           "</PrivateEvent>";
}

std::string TestPbx::row(int row, const std::string& text)
{
    return "<PrivateEvent><monitorCrossRefID>m1</monitorCrossRefID>" +
           privatePart("displayRow", "<displayID>Display</displayID><row>" + std::to_string(row) +
                                         "</row><text>" + text + "</text>") +
           "</PrivateEvent>";
}

std::string TestPbx::extension(const std::string& content)
{
    return "<extensions>" + privatePart("feature", content) + "</extensions>";
}
