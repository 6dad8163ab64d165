// A link that several threads ask at once, while its PBX answers, falls silent, ends and comes back.

#include <atomic>
#include <future>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Heard.h"
#include "TestPbx.h"
#include "calls/pbx/PbxLink.h"

namespace {

using namespace std::chrono_literals;

constexpr int THREADS = 3;
constexpr int REQUESTS = 200; // of each thread

class Listener final : public PbxListenerIfc {
public:
    void linkUp(const CstaSystemStatus&) override { ups.add("up"); }
    void linkDown() override {}
    void received(const CstaEventContent&) override { ++events; }
    bool isBehind() override { return false; }

    Heard ups;
    std::atomic<int> events = 0;
};

// Answers so many requests, with an event before each.
void serve(TestPbx& pbx, int requests)
{
    for (int i = 0; i < requests; ++i) {
        const auto request = pbx.receive();
        if (request.invokeId < 0)
            return;
        pbx.event(TestPbx::row(0, "row"));
        pbx.send(request.invokeId, "<MakeCallResponse/>");
    }
}

// Asks one thing after the other, and waits for each answer: from the PBX, or that it is not there.
void ask(PbxLink& link, int requests, std::atomic<int>& answers)
{
    for (int i = 0; i < requests; ++i) {
        std::promise<void> answered;
        link.request(makeCall("100", "4711"), [&](const Result<CstaElement>& answer) {
            answers += answer ? 1 : 0;
            answered.set_value();
        });
        answered.get_future().wait();
    }
}

} // namespace

TEST(PbxLinkThreads, EachGetTheirAnswersWhileTheConnectionComesAndGoes)
{
    TestPbx pbx;
    Listener listener;
    PbxLink link(pbx.settings(), listener);
    link.start();
    std::atomic<bool> over = false;
    auto server = std::async(std::launch::async, [&] {
        while (!over && pbx.welcome()) {
            serve(pbx, 50);
            pbx.close();
        }
    });
    ASSERT_EQ(listener.ups.next(), "up");
    std::atomic<int> answers = 0;
    std::vector<std::thread> askers;
    for (int i = 0; i < THREADS; ++i)
        askers.emplace_back([&] { ask(link, REQUESTS, answers); });
    for (auto& asker : askers)
        asker.join();
    over = true;
    // The server may wait for the next connection, or for its next request.
    while (server.wait_for(1ms) != std::future_status::ready)
        ask(link, 1, answers);
    link.stop();
    EXPECT_GT(answers, 0);
    EXPECT_GE(listener.events, answers);
}

TEST(PbxLinkThreads, HearNothingAfterTheStop)
{
    for (int i = 0; i < 20; ++i) {
        TestPbx pbx;
        Listener listener;
        PbxLink link(pbx.settings(), listener);
        link.start();
        ASSERT_TRUE(pbx.welcome());
        ASSERT_EQ(listener.ups.next(), "up");
        std::thread server([&] { serve(pbx, REQUESTS); });
        std::atomic<bool> stopped = false;
        std::atomic<bool> late = false;
        std::thread asker([&] {
            for (int request = 0; request < REQUESTS; ++request)
                link.request(makeCall("100", "4711"),
                             [&](const Result<CstaElement>&) { late = late || stopped; });
        });
        link.stop();
        stopped = true;
        asker.join();
        server.join();
        EXPECT_FALSE(late);
    }
}
