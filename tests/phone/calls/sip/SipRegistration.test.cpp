#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ip/udp.hpp>
#include <boost/asio/read.hpp>

#include <gtest/gtest.h>

#include <testing/LogCapture.h>

#include "EngineProcess.h"
#include "LineWatcher.h"
#include "Registrar.h"
#include "Sipp.h"
#include "Soon.h"
#include "TemporaryFolder.h"
#include "calls/sip/SipLine.h"
#include "calls/sip/SipPassword.h"

namespace {

// A telephone of its own, with the number `user`.
struct Telephone {
    explicit Telephone(std::string user) { settings.user = settings.authUser = std::move(user); }

    void keep(const std::string& password) const
    {
        ASSERT_TRUE(SipPassword(folder.path()).write(password, {"127.0.0.1"}));
    }
    void start(int registrar)
    {
        settings.registrar = SipHost{"127.0.0.1", registrar};
        start();
    }
    void start()
    {
        settings.profile = folder.path();
        line = std::make_unique<SipLine>(settings);
        line->setObserver(&watcher);
    }
    bool comesIntoService() { return watcher.isInService(*line); }
    bool goesOutOfService() { return watcher.isInService(*line, false); }

    TemporaryFolder folder;
    SipSettings settings;
    LineWatcher watcher;
    std::unique_ptr<SipLine> line;
};

class SipRegistration : public testing::Test {
protected:
    bool logged(const std::string& text) const
    {
        return std::ranges::any_of(
            log.lines(), [&](const auto& line) { return line.text.find(text) != std::string::npos; });
    }

    LogCapture log;
    Registrar registrar; // outlives the lines, which sign off
    Telephone anna{"101"};
    Telephone bernd{"102"};
};

} // namespace

TEST_F(SipRegistration, LetsTelephonesCallEachOther)
{
    for (auto* telephone : {&anna, &bernd}) {
        telephone->keep(Registrar::PASSWORD);
        telephone->start(registrar.port);
        ASSERT_TRUE(telephone->comesIntoService());
    }
    ASSERT_TRUE(anna.line->placeCall("1", "102"));
    const auto offer = bernd.watcher.offer();
    EXPECT_EQ(offer.caller.number, "101");
    bernd.line->answerCall(offer.callId);
    EXPECT_TRUE(anna.watcher.becomes("1", CallState::Connected));
    EXPECT_TRUE(bernd.watcher.becomes(offer.callId, CallState::Connected));
    bernd.line->clearCall(offer.callId);
    EXPECT_TRUE(anna.watcher.ends("1", CallState::Null, CallEnd::Cleared));
    ASSERT_TRUE(anna.line->placeCall("2", "999"));
    EXPECT_TRUE(anna.watcher.ends("2", CallState::Failed, CallEnd::NotFound));
}

TEST_F(SipRegistration, NeedsTheRightPasswordAndTakesItWhenItIsThere)
{
    anna.keep("wrong");
    anna.start(registrar.port);
    ASSERT_TRUE(soon([this] { return logged("does not take the line 101: 401"); }));
    EXPECT_FALSE(anna.line->isInService());
    EXPECT_FALSE(anna.line->placeCall("1", "102"));
    // It is not shown again.
    EXPECT_TRUE(soon([this] { return engineOf(anna.folder.path()) == -1; }));
    EXPECT_EQ(anna.line->trouble(), LineTrouble::Refused);
    anna.keep(Registrar::PASSWORD);
    EXPECT_TRUE(anna.comesIntoService());
    EXPECT_EQ(anna.line->trouble(), LineTrouble::None);
    EXPECT_FALSE(logged("wrong"));
    EXPECT_FALSE(logged(Registrar::PASSWORD));
}

TEST_F(SipRegistration, ShowsARefusedPasswordAgainAfterAWhile)
{
    anna.keep("right at last");
    anna.settings.refusedFor = std::chrono::milliseconds(50);
    anna.settings.retryDelay = std::chrono::milliseconds(100);
    anna.start(registrar.port);
    ASSERT_TRUE(soon([this] { return logged("does not take the line 101: 401"); }));
    registrar.kill();
    registrar.want("right at last");
    registrar.start();
    EXPECT_TRUE(anna.comesIntoService());
}

TEST_F(SipRegistration, SaysWhyTheRegistrarRefusesIt)
{
    const std::vector<std::pair<std::string, std::string>> refusals{
        {"403 Forbidden",
         "403 Forbidden. Check \"sip-user\" and \"sip-auth-user\", and run \"deskphone sip-password\"."},
        {"423 Interval Too Brief", "423 Interval Too Brief. Set a greater \"sip-registration-time\"."},
        {"503 Service Unavailable", "503 Service Unavailable"},
        {"301 Moved Permanently", "301 Moved Permanently"}};
    anna.keep("any");
    for (const auto& [status, said] : refusals) {
        Sipp refusing("refuses-to-register", status);
        anna.start(refusing.port());
        EXPECT_TRUE(soon([&] { return logged("does not take the line 101: " + said); })) << status;
        EXPECT_TRUE(refusing.succeeds());
        EXPECT_FALSE(anna.line->isInService());
        const bool isAccounts = status.starts_with("403");
        EXPECT_EQ(anna.line->trouble(), isAccounts ? LineTrouble::Refused : LineTrouble::Failed) << status;
    }
}

TEST_F(SipRegistration, IsAskedForOverIpv6)
{
    namespace asio = boost::asio;
    asio::io_context io;
    asio::ip::udp::socket asked(io, asio::ip::udp::v6());
    boost::system::error_code none;
    asked.bind({asio::ip::address_v6::loopback(), 0}, none);
    if (none)
        GTEST_SKIP() << "this machine has no IPv6";
    ASSERT_TRUE(SipPassword(anna.folder.path()).write("any", {"[::1]"}));
    anna.settings.registrar = SipHost{"[::1]", asked.local_endpoint().port()};
    anna.start();
    std::string message(2000, '\0');
    asked.async_receive(asio::buffer(message), [](const auto&, std::size_t) {});
    io.run_for(std::chrono::seconds(10));
    EXPECT_TRUE(message.starts_with("REGISTER sip:[::1];")) << message;
}

TEST_F(SipRegistration, IsNotAskedForInTheClearOnATlsLine)
{
    namespace asio = boost::asio;
    using asio::ip::tcp;
    using asio::ip::udp;
    asio::io_context io;
    tcp::acceptor server(io, {asio::ip::address_v4::loopback(), 0});
    const auto port = server.local_endpoint().port();
    udp::socket inTheClear(io, {asio::ip::address_v4::loopback(), port});
    anna.keep("any");
    anna.settings.transport = SipTransport::Tls;
    anna.start(port);
    tcp::socket asking(io);
    std::string said;
    server.async_accept(asking, [&](const auto&) {
        asio::async_read(asking, asio::dynamic_buffer(said), asio::transfer_at_least(2),
                         [&](const auto&, std::size_t) { asking.close(); });
    });
    io.run_for(std::chrono::seconds(10));
    EXPECT_TRUE(said.starts_with("\x16\x03")) << said; // a handshake of TLS
    EXPECT_TRUE(soon([this] { return logged("does not take the line 101"); }));
    EXPECT_EQ(said.find("REGISTER"), std::string::npos);
    EXPECT_EQ(inTheClear.available(), 0u);
}

TEST_F(SipRegistration, SaysThatNobodyKnowsTheRegistrarsName)
{
    ASSERT_TRUE(SipPassword(anna.folder.path()).write("any", {"registrar.invalid"}));
    anna.settings.registrar = SipHost{"registrar.invalid", 0};
    anna.start();
    EXPECT_TRUE(soon([this] {
        return logged("Destination address required. The DNS does not know this name: check \"sip-server\".");
    }));
    EXPECT_FALSE(anna.line->placeCall("1", "102"));
}

TEST_F(SipRegistration, SaysThatThereIsNoPassword)
{
    anna.start(registrar.port);
    EXPECT_TRUE(soon(
        [this] { return logged("There is no password for the line. Run \"deskphone sip-password\"."); }));
    EXPECT_FALSE(anna.line->isInService());
}

TEST_F(SipRegistration, IsLostWithTheRegistrarAndComesBackWithIt)
{
    anna.keep(Registrar::PASSWORD);
    anna.settings.transport = SipTransport::Tcp;
    anna.settings.registrationTime = std::chrono::seconds(1);
    anna.settings.retryDelay = std::chrono::milliseconds(100);
    anna.start(registrar.port);
    ASSERT_TRUE(anna.comesIntoService());
    registrar.kill();
    EXPECT_TRUE(anna.goesOutOfService());
    EXPECT_FALSE(anna.line->placeCall("1", "102"));
    registrar.start();
    EXPECT_TRUE(anna.comesIntoService());
}
