#include "calls/sip/BaresipEngine.h"

#include <algorithm>
#include <type_traits>
#include <utility>

#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ip/udp.hpp>

#include "app/PhoneLog.h"
#include "calls/sip/BaresipConfig.h"

using boost::asio::ip::tcp;
using boost::asio::ip::udp;

namespace {

constexpr char nSOURCE[] = "./phone/calls/sip/BaresipEngine";
constexpr char nACCOUNT[] = "account"; // of the command that gives it its account
constexpr std::chrono::minutes nLONGEST_DELAY{1};
// One that ran as long as this has not failed at its start.
constexpr std::chrono::minutes nPROVEN{1};

// One that is free now; that somebody else takes it meanwhile only costs another start.
int freePort(boost::asio::io_context& io)
{
    const tcp::acceptor acceptor(io, tcp::endpoint(boost::asio::ip::address_v4::loopback(), 0));
    return acceptor.local_endpoint().port();
}

// Of the addresses that calls may come in on, each counts. What is left of a connection that has just ended
// does not.
template <typename Protocol> bool isFree(boost::asio::io_context& io, IpVersion version, int port)
{
    const typename Protocol::endpoint own(version == IpVersion::V6 ? Protocol::v6() : Protocol::v4(),
                                          static_cast<std::uint16_t>(port));
    typename Protocol::socket socket(io, own.protocol());
    socket.set_option(boost::asio::socket_base::reuse_address(std::is_same_v<Protocol, tcp>));
    boost::system::error_code taken;
    socket.bind(own, taken);
    return !taken;
}

// The engine listens for each transport, whichever the line uses: for TLS on the port behind. 0 for none.
int takenPort(boost::asio::io_context& io, IpVersion version, int port)
{
    if (port == 0)
        return 0;
    if (!isFree<udp>(io, version, port) || !isFree<tcp>(io, version, port))
        return port;
    return isFree<tcp>(io, version, port + 1) ? 0 : port + 1;
}

} // namespace

BaresipEngine::BaresipEngine(boost::asio::io_context& io, SipSettings settings, Hooks hooks)
    : m_io(io)
    , m_settings(std::move(settings))
    , m_hooks(std::move(hooks))
    , m_passwordFile(m_settings.profile)
    , m_restart(io)
    , m_delay(m_settings.restartDelay)
{
}

BaresipEngine::~BaresipEngine()
{
    stop();
}

// What this computer does not give, such as IPv6 or another descriptor, it may give later.
void BaresipEngine::start()
{
    try {
        if (const auto started = tryToStart(); !started)
            fail(started.error().sentence);
    } catch (const boost::system::system_error& error) {
        fail(error.what());
    }
}

Result<void> BaresipEngine::tryToStart()
{
    const auto version = m_settings.nextHop().isIpv6() ? IpVersion::V6 : IpVersion::V4;
    if (const int taken = takenPort(m_io, version, m_settings.port); taken != 0)
        return Error{ErrorCode::Failed, "another program has port " + std::to_string(taken) +
                                            ": name a free one in \"sip-port\", with a free one behind it"};
    const int port = freePort(m_io);
    if (auto written = writeBaresipFiles(m_settings, port, folder()); !written)
        return written;
    m_process = std::make_unique<BaresipProcess>(m_io);
    if (auto started = m_process->start(folder(), version, [this] { fail("it ended"); }); !started)
        return started;
    m_control = std::make_shared<BaresipControl>(
        m_io, m_settings.enginePatience,
        BaresipControl::Hooks{[this, port] { connected(port); },
                              [this](const EngineMessage& message) { said(message); },
                              [this] {
                                  m_process->kill();
                                  fail("it does not answer");
                              }});
    m_control->connect(port);
    return {};
}

std::string BaresipEngine::readPassword() const
{
    if (!m_settings.registrar)
        return "";
    const auto password = m_passwordFile.read(m_settings.passwordHosts());
    if (!password) {
        PHONE_USER("%s", password.error().sentence.c_str());
        return "";
    }
    if (canStandInAccount(password.value()))
        return password.value();
    PHONE_USER("The password for the line cannot be used: run \"deskphone sip-password\".");
    return "";
}

void BaresipEngine::connected(int port)
{
    if (const auto closed = m_process->closePort(port); !closed)
        PHONE_ERROR(
            "other users of this computer could command the SIP engine: its port cannot be closed: %s",
            closed.error().sentence.c_str());
    m_up = true;
    m_upSince = std::chrono::steady_clock::now();
    m_password = readPassword();
    m_control->send({{"uanew", baresipAccount(m_settings, m_password), nACCOUNT}});
    m_hooks.up();
}

void BaresipEngine::said(const EngineMessage& message)
{
    const auto* response = std::get_if<EngineResponse>(&message);
    if (response && response->token == nACCOUNT && !response->ok)
        fail("it does not take the account");
    else
        m_hooks.said(message);
}

void BaresipEngine::send(const std::vector<EngineCommand>& commands)
{
    if (m_up)
        m_control->send(commands);
}

void BaresipEngine::restart()
{
    stop();
    start();
}

bool BaresipEngine::hasNewPassword() const
{
    const auto password = m_passwordFile.read(m_settings.passwordHosts());
    return password && password.value() != m_password;
}

void BaresipEngine::fail(const std::string& reason)
{
    const bool proven = m_up && std::chrono::steady_clock::now() - m_upSince >= nPROVEN;
    if (proven)
        m_delay = m_settings.restartDelay;
    PHONE_ERROR("the SIP engine (Debian's package baresip-core) is started again in %lld ms: %s",
                static_cast<long long>(m_delay.count()), reason.c_str());
    stop();
    m_hooks.failed();
    startLater();
}

void BaresipEngine::startLater()
{
    m_restart.expires_after(m_delay);
    m_restart.async_wait([this](const boost::system::error_code& cancelled) {
        if (!cancelled)
            start();
    });
    m_delay = std::min<std::chrono::milliseconds>(2 * m_delay, nLONGEST_DELAY);
}

void BaresipEngine::stop()
{
    m_restart.cancel();
    if (m_control)
        m_control->close();
    m_control.reset();
    m_process.reset();
    if (std::exchange(m_up, false))
        m_hooks.down();
}
