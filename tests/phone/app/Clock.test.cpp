#include <gtest/gtest.h>

#include <future>

#include "app/Clock.h"

using namespace std::chrono_literals;

namespace {

// A sleep that is not cut short is longer than any test.
constexpr auto nFOR_EVER = 1h;

} // namespace

TEST(SystemClock, WakesWhoSleepsWhenThereIsNoTime)
{
    SystemClock clock;
    auto sleeper = std::async(std::launch::async, [&] { clock.sleep(nFOR_EVER); });
    clock.setUrgent(true);
    EXPECT_EQ(sleeper.wait_for(10s), std::future_status::ready);
}

TEST(SystemClock, LetsNobodySleepUntilThereIsTimeAgain)
{
    SystemClock clock;
    clock.setUrgent(true);
    clock.sleep(nFOR_EVER);

    clock.setUrgent(false);
    const auto begun = clock.now();
    clock.sleep(20ms);
    EXPECT_GE(clock.now() - begun, 20ms);
}
