// What a request to the PBX costs, from any thread and back, beside the same octets on a bare TCP connection
// to the same server, in the same run. The difference, "adds", is what the telephone adds.

#include <array>
#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "TestPbx.h"
#include "calls/pbx/PbxLink.h"

namespace {

const std::string MADE =
    "<MakeCallResponse><callingDevice><callID>7</callID><deviceID>100</deviceID></callingDevice>"
    "</MakeCallResponse>";

class NoListener final : public PbxListenerIfc {
public:
    void linkUp(const CstaSystemStatus&) override { up.set_value(); }
    void linkDown() override {}
    void received(const CstaEventContent&) override {}
    bool isBehind() override { return false; }

    std::promise<void> up;
};

// Answers every request on its connection with the same, until it ends.
void serve(TestPbx& pbx)
{
    for (auto request = pbx.receive(); request.invokeId >= 0; request = pbx.receive())
        pbx.send(request.invokeId, MADE);
}

int connectTo(std::uint16_t port)
{
    const int client = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    if (::connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("no connection");
    const int on = 1;
    ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return client;
}

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

Microseconds bareRoundTrip{0}; // as it was measured last

Microseconds perRoundTrip(Clock::time_point start, const benchmark::State& state)
{
    return (Clock::now() - start) / static_cast<double>(state.iterations());
}

void bareTcp(benchmark::State& state)
{
    TestPbx pbx;
    std::thread server([&pbx] {
        if (pbx.accept())
            serve(pbx);
    });
    const int client = connectTo(pbx.port());
    const auto request = octetsOf({1, writeCsta(makeCall("100", "4711"))}).value();
    const auto answered = octetsOf({1, TestPbx::csta(MADE)}).value().size();
    std::array<char, 4096> part{};
    const auto start = Clock::now();
    for ([[maybe_unused]] auto _ : state) {
        if (::send(client, request.data(), request.size(), MSG_NOSIGNAL) < 0)
            throw std::runtime_error("not sent");
        for (std::size_t size = 0; size < answered;) {
            const auto more = ::recv(client, part.data(), part.size(), 0);
            if (more <= 0)
                throw std::runtime_error("no answer");
            size += static_cast<std::size_t>(more);
        }
    }
    bareRoundTrip = perRoundTrip(start, state);
    ::close(client);
    server.join();
}

void csta(benchmark::State& state)
{
    TestPbx pbx;
    std::thread server([&pbx] {
        if (pbx.welcome())
            serve(pbx);
    });
    NoListener listener;
    PbxSettings settings;
    settings.host = "127.0.0.1";
    settings.port = pbx.port();
    settings.device = "100";
    auto link = std::make_unique<PbxLink>(settings, listener);
    link->start();
    listener.up.get_future().wait();
    const auto start = Clock::now();
    for ([[maybe_unused]] auto _ : state) {
        std::promise<bool> answered;
        link->request(makeCall("100", "4711"),
                      [&answered](const Result<CstaElement>& answer) { answered.set_value(answer.ok()); });
        if (!answered.get_future().get())
            throw std::runtime_error("no answer");
    }
    const auto added = perRoundTrip(start, state) - bareRoundTrip;
    state.counters["adds"] = benchmark::Counter(added.count() / 1e6);
    link->stop();
    server.join();
}

} // namespace

// In this order: the second is compared with the first.
BENCHMARK(bareTcp)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(csta)->UseRealTime()->Unit(benchmark::kMicrosecond);
