#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>

#include <dlfcn.h>
#include <sys/socket.h>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ip/udp.hpp>

#include <gtest/gtest.h>

#include <testing/LogCapture.h>

#include "EngineProcess.h"
#include "LineWatcher.h"
#include "Sipp.h"
#include "Soon.h"
#include "TemporaryFolder.h"
#include "calls/sip/BaresipConfig.h"
#include "calls/sip/BaresipControl.h"
#include "calls/sip/BaresipProcess.h"
#include "calls/sip/SipLine.h"
#include "calls/sip/SipPassword.h"

namespace {

using boost::asio::ip::tcp;
using boost::asio::ip::udp;
using std::chrono::milliseconds;

std::atomic<bool> socketsAreOut = false; // the computer gives no more

} // namespace

// The program's own comes before the C library's.
extern "C" int socket(int domain, int type, int protocol) noexcept
{
    static const auto real = reinterpret_cast<decltype(&::socket)>(::dlsym(RTLD_NEXT, "socket"));
    if (!socketsAreOut)
        return real(domain, type, protocol);
    errno = EMFILE;
    return -1;
}

namespace {

class SipFaults : public testing::Test {
protected:
    SipFaults()
    {
        settings.user = settings.authUser = "100";
        settings.profile = folder.path();
        settings.restartDelay = milliseconds(10);
    }
    void useLine(int peer)
    {
        settings.outboundProxy = SipHost{"127.0.0.1", peer};
        line = std::make_unique<SipLine>(settings);
        line->setObserver(&watcher);
    }
    pid_t engine() const { return engineOf(folder.path()); }
    void signalEngine(int signal) const
    {
        const auto process = engine();
        ASSERT_GT(process, 0); // what is not positive means others
        ::kill(process, signal);
    }
    bool logs(const std::string& part) const
    {
        return soon([&] {
            return std::ranges::any_of(log.lines(), [&](const auto& written) {
                return written.text.find(part) != std::string::npos;
            });
        });
    }
    // A port that somebody else has, so many behind the line's.
    template <typename Socket> void expectToBeNamed(int behind)
    {
        settings.port = freeSipPort();
        const int port = settings.port + behind;
        SCOPED_TRACE(port);
        boost::asio::io_context io;
        Socket other(io, {boost::asio::ip::address_v4::loopback(), static_cast<std::uint16_t>(port)});
        useLine(freePort());
        EXPECT_TRUE(
            logs("another program has port " + std::to_string(port) + ": name a free one in \"sip-port\""));
        EXPECT_TRUE(soon([this] { return line->trouble() == LineTrouble::Failed; }));
        other.close();
        EXPECT_TRUE(watcher.isInService(*line));
        EXPECT_EQ(line->trouble(), LineTrouble::None);
    }
    int controlPort() const
    {
        const std::string item = "ctrl_tcp_listen 127.0.0.1:";
        const auto config = folder.read("sip-engine/config");
        return std::stoi(config.substr(config.find(item) + item.size()));
    }

    TemporaryFolder folder;
    LogCapture log;
    SipSettings settings;
    LineWatcher watcher;
    std::unique_ptr<SipLine> line;
};

} // namespace

TEST_F(SipFaults, AnEngineThatDiesTakesItsCallWithItAndComesBack)
{
    Sipp callee("answers");
    useLine(callee.port());
    ASSERT_TRUE(watcher.isInService(*line));
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Connected));
    signalEngine(SIGKILL);
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Unreachable));
    EXPECT_TRUE(watcher.isInService(*line));
    Sipp other("answers");
    ASSERT_TRUE(line->placeCall("2", "201@127.0.0.1:" + std::to_string(other.port())));
    EXPECT_TRUE(watcher.becomes("2", CallState::Connected));
    line->clearCall("2");
    EXPECT_TRUE(other.succeeds());
}

TEST_F(SipFaults, ACallThatWasNotAnsweredFailsWithTheEngine)
{
    Sipp callee("rings");
    useLine(callee.port());
    ASSERT_TRUE(watcher.isInService(*line));
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Alerting));
    signalEngine(SIGKILL);
    EXPECT_TRUE(watcher.ends("1", CallState::Failed, CallEnd::Unreachable));
}

TEST_F(SipFaults, ACallThatRingsHereEndsWithTheEngine)
{
    settings.port = freeSipPort();
    useLine(freePort());
    ASSERT_TRUE(watcher.isInService(*line));
    Sipp caller("calls-in-vain", "100", settings.port, "<sip:300@127.0.0.1>");
    const auto offer = watcher.offer();
    ASSERT_NE(offer.callId, "");
    signalEngine(SIGKILL);
    EXPECT_TRUE(watcher.ends(offer.callId, CallState::Null, CallEnd::Unreachable));
    line->answerCall(offer.callId); // too late: nothing
    EXPECT_TRUE(watcher.isInService(*line));
}

TEST_F(SipFaults, APortThatSomebodyElseHasIsNamed)
{
    expectToBeNamed<udp::socket>(0);
    expectToBeNamed<tcp::acceptor>(0);
    expectToBeNamed<tcp::acceptor>(1); // where the engine listens for TLS
}

TEST_F(SipFaults, AComputerThatGivesNothingIsWaitedFor)
{
    useLine(freePort());
    ASSERT_TRUE(watcher.isInService(*line));
    const auto process = engine();
    ASSERT_GT(process, 0);
    socketsAreOut = true;
    ::kill(process, SIGKILL);
    EXPECT_TRUE(soon([this] { return line->trouble() == LineTrouble::Failed; }));
    EXPECT_TRUE(watcher.isInService(*line, false));
    EXPECT_TRUE(logs("Too many open files"));
    socketsAreOut = false;
    EXPECT_TRUE(watcher.isInService(*line));
}

TEST_F(SipFaults, NoCallIsPlacedWhileTheEngineIsGone)
{
    settings.restartDelay = std::chrono::hours(1);
    useLine(freePort());
    ASSERT_TRUE(watcher.isInService(*line));
    signalEngine(SIGKILL);
    ASSERT_TRUE(watcher.isInService(*line, false));
    EXPECT_FALSE(line->placeCall("1", "201"));
    EXPECT_FALSE(line->pickUpCall("1", "201"));
    EXPECT_TRUE(watcher.states("1").empty());
}

TEST_F(SipFaults, AnEngineThatHangsIsReplaced)
{
    settings.enginePatience = milliseconds(300);
    useLine(freePort());
    ASSERT_TRUE(watcher.isInService(*line));
    const auto hanging = engine();
    signalEngine(SIGSTOP);
    ASSERT_TRUE(line->placeCall("1", "201"));
    EXPECT_TRUE(watcher.ends("1", CallState::Failed, CallEnd::Unreachable));
    EXPECT_TRUE(watcher.isInService(*line));
    EXPECT_NE(engine(), hanging);
}

TEST_F(SipFaults, NobodyElseCanCommandTheEngine)
{
    namespace asio = boost::asio;
    Sipp callee("answers");
    useLine(callee.port());
    ASSERT_TRUE(watcher.isInService(*line));
    const auto before = engine();
    asio::io_context io;
    asio::ip::tcp::socket stranger(io);
    bool connects = false;
    stranger.async_connect({asio::ip::address_v4::loopback(), static_cast<std::uint16_t>(controlPort())},
                           [&](const boost::system::error_code& error) { connects = !error; });
    // As long as a whole call takes.
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Connected));
    line->clearCall("1");
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
    io.poll();
    EXPECT_FALSE(connects);
    EXPECT_EQ(engine(), before);
}

// It serves the last one who connected, which only somebody who is as quick as the telephone can be.
TEST_F(SipFaults, AnEngineThatSomebodyElseCommandsIsNoticed)
{
    boost::asio::io_context io;
    BaresipProcess process(io);
    settings.outboundProxy = SipHost{"127.0.0.1", freePort()};
    const int port = freePort();
    ASSERT_TRUE(writeBaresipFiles(settings, port, folder / "sip-engine"));
    ASSERT_TRUE(process.start(folder / "sip-engine", IpVersion::V4, [] {}));
    bool lost = false;
    const auto nothing = [](const EngineMessage&) {};
    const auto stranger = std::make_shared<BaresipControl>(io, std::chrono::seconds(10),
                                                           BaresipControl::Hooks{[] {}, nothing, [] {}});
    const auto own =
        std::make_shared<BaresipControl>(io, std::chrono::seconds(10),
                                         BaresipControl::Hooks{[&] { stranger->connect(port); }, nothing,
                                                               [&] {
                                                                   lost = true;
                                                                   io.stop();
                                                               }});
    own->connect(port);
    io.run_for(std::chrono::seconds(10));
    EXPECT_TRUE(lost);
}

TEST_F(SipFaults, ThePasswordIsNowhereButInItsOwnFile)
{
    namespace fs = std::filesystem;
    const std::string password = "se cret;42";
    ASSERT_TRUE(SipPassword(folder.path()).write(password, {"127.0.0.1"}));
    settings.registrar = SipHost{"127.0.0.1", freePort()};
    settings.transport = SipTransport::Tcp;
    useLine(settings.registrar->port);
    ASSERT_TRUE(soon([&] { return !log.lines().empty(); })); // nobody was there to be shown it

    for (const auto* what : {"cmdline", "environ"})
        EXPECT_EQ(textOfProcess(engine(), what).find("se cret"), std::string::npos) << what;
    EXPECT_EQ(fs::status(folder / "sip-engine").permissions(), fs::perms::owner_all);
    for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
        const bool isOther = entry.is_regular_file() && entry.path() != folder / "sip-password";
        EXPECT_FALSE(isOther && textOf(entry.path()).find("se cret") != std::string::npos) << entry.path();
    }
    line.reset();
    EXPECT_EQ(engine(), -1);
    for (const auto& written : log.lines())
        EXPECT_EQ(written.text.find("se cret"), std::string::npos) << written.text;
}

TEST_F(SipFaults, TheEngineEndsWithTheThreadThatStartedIt)
{
    boost::asio::io_context io;
    BaresipProcess process(io);
    bool ended = false;
    settings.outboundProxy = SipHost{"127.0.0.1", freePort()};
    ASSERT_TRUE(writeBaresipFiles(settings, freePort(), folder / "sip-engine"));
    std::thread([&] {
        ASSERT_TRUE(process.start(folder / "sip-engine", IpVersion::V4, [&] { ended = true; }));
        ASSERT_TRUE(soon([&] { return engine() == process.id(); }));
    }).join();
    io.run_for(std::chrono::seconds(10));
    EXPECT_TRUE(ended);
    EXPECT_EQ(process.id(), -1);
}

TEST_F(SipFaults, WhatCannotBeWrittenIsSaidAndTriedAgain)
{
    folder.write("sip-engine", "in the way");
    useLine(freePort());
    ASSERT_TRUE(soon([&] { return !log.lines().empty(); }));
    EXPECT_NE(log.lines().front().text.find("cannot be written"), std::string::npos);
    EXPECT_FALSE(line->isInService());
    std::filesystem::remove(folder / "sip-engine");
    EXPECT_TRUE(watcher.isInService(*line));
}
