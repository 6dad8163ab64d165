// What a person who dials waits for: from the request for a call to its INVITE on the wire.
//
// The line's engine runs as it does in the telephone; the callee is a socket that answers nothing.

#include <array>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include <framework/csta/CSTARequests.h>

#include "calls/CallService.h"
#include "calls/sip/SipLine.h"

namespace {

// What lines report is run when somebody waits for it.
class Events final : public EventPoster {
public:
    void post(std::string, std::function<void()> event) override
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(event));
        m_changed.notify_all();
    }
    // Runs events until `condition` holds.
    void runUntil(const std::function<bool()>& condition)
    {
        while (!condition()) {
            std::function<void()> event;
            {
                std::unique_lock lock(m_mutex);
                if (!m_changed.wait_for(lock, std::chrono::seconds(10),
                                        [this] { return !m_waiting.empty(); }))
                    throw std::runtime_error("the line does nothing");
                event = std::move(m_waiting.front());
                m_waiting.erase(m_waiting.begin());
            }
            event();
        }
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::function<void()>> m_waiting;
};

// Receives on a free port of this machine.
class Callee {
public:
    Callee()
        : m_socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* any = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_socket, any, size) != 0 || ::getsockname(m_socket, any, &size) != 0)
            throw std::runtime_error("there is no port for the callee");
        port = ntohs(address.sin_port);
    }
    ~Callee() { ::close(m_socket); }
    Callee(const Callee&) = delete;
    Callee& operator=(const Callee&) = delete;

    // Waits for the INVITE to `number`; what is repeated of earlier calls does not count.
    void awaitInvite(const std::string& number)
    {
        const auto wanted = "INVITE sip:" + number + "@";
        for (std::array<char, 65536> bytes;;) {
            const auto size = ::recv(m_socket, bytes.data(), bytes.size(), 0);
            if (size < 0)
                throw std::runtime_error("the callee receives nothing");
            if (std::string_view(bytes.data(), static_cast<std::size_t>(size)).starts_with(wanted))
                return;
        }
    }

    int port = 0;

private:
    const int m_socket;
};

void BM_MakeCallToInvite(benchmark::State& state)
{
    char folder[] = "/tmp/bench-calls-XXXXXX";
    if (!mkdtemp(folder))
        throw std::runtime_error("no folder for the profile");
    Callee callee;
    SipSettings settings;
    settings.user = "100";
    settings.outboundProxy = SipHost{"127.0.0.1", callee.port};
    settings.profile = folder;
    Events events;
    {
        CallService calls(events, {});
        auto own = std::make_unique<SipLine>(settings);
        const auto& line = *own;
        calls.addLine(std::move(own));
        events.runUntil([&line] { return line.isInService(); });

        int dialled = 1000;
        for (auto _ : state) {
            const auto number = std::to_string(++dialled);
            CSTAMakeCallRequest request;
            request.SetCalledDevice(number);
            calls.sendRequest(request);
            callee.awaitInvite(number);
            state.PauseTiming();
            calls.hangUp();
            events.runUntil([&calls] { return !calls.hasCalls(); });
            state.ResumeTiming();
        }
    }
    std::filesystem::remove_all(folder);
}
// Every call that nobody answers keeps the engine busy for half a minute.
BENCHMARK(BM_MakeCallToInvite)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(100);

} // namespace
