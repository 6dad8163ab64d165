// Calls that come and go on a line's thread while the user takes and ends them on the telephone's.

#include <gtest/gtest.h>

#include <thread>

#include "app/EventThread.h"
#include "app/FrameStore.h"
#include "calls/CallBar.h"
#include "calls/CallService.h"

using namespace std::chrono_literals;

namespace {

class Keys final : public DisplayAPI::TranslatorIfc {
public:
    std::string translate(const std::string& key) const override { return key; }
    std::string translate(const std::string& key, const std::string&) const override { return key; }
};

// Does at once what it is asked to.
class PromptLine final : public LineIfc {
public:
    void setObserver(LineObserverIfc* observer) override { m_pObserver = observer; }
    std::string number() const override { return "20"; }
    bool isInService() const override { return true; }
    bool placeCall(const std::string&, const std::string&) override { return true; }
    bool pickUpCall(const std::string&, const std::string&) override { return true; }
    void answerCall(const std::string& callId) override { tell(callId, CallState::Connected); }
    void clearCall(const std::string& callId) override { tell(callId, CallState::Null); }

    std::string ring() { return m_pObserver->callOffered(*this, {"030123", "Anna"}); }
    void giveUp(const std::string& callId) { tell(callId, CallState::Null); }

private:
    void tell(const std::string& callId, CallState state)
    {
        m_pObserver->callStateChanged(callId, state, CallEnd::Cleared);
    }

    LineObserverIfc* m_pObserver = nullptr;
};

class CallThreads : public testing::Test {
protected:
    CallThreads()
    {
        auto added = std::make_unique<PromptLine>();
        line = added.get();
        calls.addLine(std::move(added));
        events.setDone([this] { bar.repaint(); });
        events.start();
    }
    ~CallThreads() override { events.stop(); }

    CallHooks hooks()
    {
        CallHooks hooks;
        hooks.watcher = &bar;
        return hooks;
    }

    Keys keys;
    SystemClock clock;
    EventThread events{clock};
    FrameStore frames{clock};
    CallBar bar{{clock, events, keys, [this](auto shown) { frames.setCalls(std::move(shown)); }}};
    CallService calls{events, hooks()};
    PromptLine* line = nullptr;
};

} // namespace

TEST_F(CallThreads, LeaveNoCallOnTheScreenThatIsOver)
{
    constexpr int CALLS = 200;
    std::thread callers([this] {
        for (int i = 0; i < CALLS; ++i) {
            const auto call = line->ring();
            if (i % 2 == 0)
                line->giveUp(call);
        }
    });
    for (int i = 0; i < CALLS; ++i) {
        events.post("user", [this] {
            calls.answer();
            calls.hangUp();
        });
    }
    callers.join();
    events.post("user", [this] {
        while (calls.reject() || calls.isCalling())
            calls.hangUp();
    });
    ASSERT_TRUE(events.waitUntilDone(20s));
    ASSERT_TRUE(events.waitUntilDone(20s)); // for what the line said then
    events.stop();
    EXPECT_FALSE(calls.hasCalls());
    EXPECT_TRUE(frames.latest()->signs.calls.empty());
}
