#include <gtest/gtest.h>

#include <vector>

#include "app/EventThread.h"
#include "app/TimerService.h"

using namespace std::chrono_literals;

namespace {

class Timers : public testing::Test {
protected:
    Phonelet* const owner = reinterpret_cast<Phonelet*>(this); // never looked into
    ManualClock clock;
    EventThread events{clock};
    std::vector<int> expired;
    TimerService timers{events, clock, [this](Phonelet&, int id) { expired.push_back(id); }};
};

} // namespace

using TimerServiceTest = Timers;

TEST_F(TimerServiceTest, NumbersTimersFromOne)
{
    EXPECT_EQ(timers.create(owner, 10), 1);
    EXPECT_EQ(timers.create(owner, 10), 2);
}

TEST_F(TimerServiceTest, ExpiresOnceAfterItsTime)
{
    const int id = timers.create(owner, 3000);
    EXPECT_FALSE(timers.isRunning(id));
    EXPECT_TRUE(timers.start(id));
    events.advance(clock, 2999ms);
    EXPECT_EQ(expired, std::vector<int>{});

    events.advance(clock, 1ms);
    events.advance(clock, 9000ms);

    EXPECT_EQ(expired, std::vector{id});
}

TEST_F(TimerServiceTest, CountsAsRunningUntilItsOwnerWasTold)
{
    const int id = timers.create(owner, 10);
    timers.start(id);
    events.advance(clock, 10ms);
    EXPECT_TRUE(timers.isRunning(id));
    timers.reached(id);
    EXPECT_FALSE(timers.isRunning(id));
}

TEST_F(TimerServiceTest, ExpiresAtTheNextDispatchForNoTimeAtAll)
{
    const int id = timers.create(owner, 0);
    timers.start(id);
    EXPECT_EQ(expired, std::vector<int>{});
    events.runPending();
    EXPECT_EQ(expired, std::vector{id});
}

TEST_F(TimerServiceTest, RestartsARunningTimerAndLeavesAStoppedOneStopped)
{
    const int id = timers.create(owner, 100);
    EXPECT_FALSE(timers.reset(id));
    timers.start(id);
    events.advance(clock, 99ms);
    EXPECT_TRUE(timers.reset(id));
    events.advance(clock, 99ms);
    EXPECT_EQ(expired, std::vector<int>{});
    events.advance(clock, 1ms);
    EXPECT_EQ(expired, std::vector{id});
}

TEST_F(TimerServiceTest, DropsAnExpiryThatWasQueuedWhenItsTimerWasStopped)
{
    const int first = timers.create(owner, 10);
    const int second = timers.create(owner, 10);
    timers.start(first);
    timers.start(second);
    events.callAt(5ms, "busy", [&] {
        clock.advance(10ms); // both are due while this event runs
        events.post("stop", [&, second] { timers.stop(second); });
    });
    events.advance(clock, 5ms);
    EXPECT_EQ(expired, std::vector{first});
}

TEST_F(TimerServiceTest, KnowsNoOtherIds)
{
    EXPECT_FALSE(timers.start(1));
    EXPECT_FALSE(timers.stop(0));
    EXPECT_FALSE(timers.reset(-1));
    EXPECT_FALSE(timers.remove(1));
    EXPECT_FALSE(timers.isRunning(1));
}

TEST_F(TimerServiceTest, SaysWhichTimersWereLeft)
{
    const int id = timers.create(owner, 10);
    timers.start(id);
    EXPECT_EQ(timers.removeAll(), std::vector{id});
    events.advance(clock, 10ms);
    EXPECT_EQ(expired, std::vector<int>{});
}
