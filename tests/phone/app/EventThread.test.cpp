#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <vector>

#include <framework/display/Command.h>
#include <framework/display/ContextMenu.h>
#include <framework/display/Listeners.h>
#include <framework/host/EventQueue.h>

#include <testing/LogCapture.h>

#include "app/EventThread.h"

using namespace std::chrono_literals;
using DisplayAPI::EventQueue;

namespace {

class Pumped : public testing::Test {
protected:
    std::function<void()> note(std::string what)
    {
        return [this, what] { order.push_back(what); };
    }

    ManualClock clock;
    EventThread events{clock};
    std::vector<std::string> order;
};

using EventThreadPumped = Pumped;

class Notes final : public DisplayAPI::CommandListener {
public:
    explicit Notes(std::vector<std::string>& order)
        : m_order(order)
    {
    }
    void commandAction(DisplayAPI::Command*, DisplayAPI::Displayable*) override
    {
        m_order.push_back("command");
    }

private:
    std::vector<std::string>& m_order;
};

} // namespace

TEST_F(EventThreadPumped, RunsEventsInTheOrderTheyCame)
{
    events.post("a", note("a"));
    events.post("b", note("b"));
    EXPECT_EQ(order, std::vector<std::string>{});

    events.runPending();

    EXPECT_EQ(order, (std::vector<std::string>{"a", "b"}));
}

TEST_F(EventThreadPumped, RunsAnEventThatIsPostedInsideAnotherAfterIt)
{
    events.post("a", [this] {
        events.post("b", note("b"));
        order.push_back("a");
    });
    events.runPending();
    EXPECT_EQ(order, (std::vector<std::string>{"a", "b"}));
}

TEST_F(EventThreadPumped, LetsWhatIsUrgentGoFirst)
{
    events.post("a", note("a"));
    events.postFirst("home", note("home"));
    events.runPending();
    EXPECT_EQ(order, (std::vector<std::string>{"home", "a"}));
}

TEST_F(EventThreadPumped, KeepsTheOrderOfWhatIsUrgent)
{
    events.post("a", note("a"));
    events.postFirst("home", note("home"));
    events.postFirst("hook", note("hook"));
    events.runPending();
    EXPECT_EQ(order, (std::vector<std::string>{"home", "hook", "a"}));
}

TEST_F(EventThreadPumped, DeliversWhatWidgetsRaisedBeforeTheNextEventAndThenTheFrame)
{
    Notes notes(order);
    DisplayAPI::Command command(DisplayAPI::Command::OK, {});
    DisplayAPI::ContextMenu menu(1);
    events.setDone(note("frame"));
    events.post("key", [&] {
        EventQueue::post(&command, &menu, &notes);
        order.push_back("key");
    });
    events.post("next", note("next"));

    events.runPending();

    EXPECT_EQ(order, (std::vector<std::string>{"key", "command", "frame", "next", "frame"}));
}

TEST_F(EventThreadPumped, LogsAnExceptionWithTheEventsNameAndGoesOn)
{
    LogCapture log;
    events.post("key", [] { throw std::out_of_range("row 7"); });
    events.post("next", note("next"));

    events.runPending();

    EXPECT_TRUE(log.has("event \"key\" ended with an exception: row 7", AppLog::ERROR));
    EXPECT_EQ(order, std::vector<std::string>{"next"});
}

TEST_F(EventThreadPumped, RunsNothingAfterStop)
{
    events.post("a", note("a"));
    events.callAt(clock.now(), "b", note("b"));
    events.stop();
    events.post("c", note("c"));
    events.callAt(clock.now(), "d", note("d"));

    events.runPending();
    events.stop();

    EXPECT_EQ(order, std::vector<std::string>{});
}

TEST_F(EventThreadPumped, RunsTheLastEventBeforeWhatIsQueuedAndNothingElse)
{
    events.post("a", note("a"));
    events.stopAfter("last", note("last"));
    EXPECT_EQ(order, std::vector<std::string>{"last"});
}

TEST_F(EventThreadPumped, RunsTimedEventsEachAtItsTime)
{
    std::vector<std::chrono::milliseconds> times;
    const auto noteTime = [&] { times.push_back(clock.now()); };
    events.callAt(3000ms, "later", noteTime);
    events.callAt(1000ms, "sooner", noteTime);
    const auto cancelled = events.callAt(2000ms, "cancelled", noteTime);
    events.cancel(cancelled);

    events.advance(clock, 2999ms);
    EXPECT_EQ(times, std::vector{1000ms});

    events.advance(clock, 1ms);
    EXPECT_EQ(times, (std::vector{1000ms, 3000ms}));
}

TEST_F(EventThreadPumped, RunsATimedEventThatATimedEventAsksForInTheSameAdvance)
{
    events.callAt(10ms, "a", [this] { events.callAt(20ms, "b", note("b")); });
    events.advance(clock, 30ms);
    EXPECT_EQ(order, std::vector<std::string>{"b"});
}

TEST(EventThread, RunsEveryEventOnItsOneThread)
{
    SystemClock clock;
    EventThread events(clock);
    events.start();
    std::promise<std::thread::id> first;
    std::promise<std::thread::id> second;
    std::thread poster([&] { events.post("a", [&] { first.set_value(std::this_thread::get_id()); }); });
    events.callAt(clock.now(), "b", [&] { second.set_value(std::this_thread::get_id()); });

    const auto thread = first.get_future().get();

    EXPECT_EQ(thread, second.get_future().get());
    EXPECT_NE(thread, std::this_thread::get_id());
    poster.join();
}

TEST(EventThread, ReturnsFromStopWhenTheRunningEventHasEnded)
{
    SystemClock clock;
    EventThread events(clock);
    events.start();
    std::promise<void> began;
    std::promise<void> mayEnd;
    bool ended = false;
    events.post("long", [&] {
        began.set_value();
        mayEnd.get_future().wait();
        ended = true;
    });
    began.get_future().wait();
    std::thread ender([&] { mayEnd.set_value(); });

    events.stop();

    EXPECT_TRUE(ended);
    ender.join();
}

TEST(EventThread, CanBeStoppedByAnEvent)
{
    SystemClock clock;
    EventThread events(clock);
    events.start();
    bool ran = false;
    events.post("last", [&] {
        events.stop();
        events.post("too late", [&] { ran = true; });
    });
    EXPECT_FALSE(events.waitUntilDone(1000ms) && ran);
    events.stop();
    EXPECT_FALSE(ran);
}
