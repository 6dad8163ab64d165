#include <framework/util/CriticalSection.h>
#include <framework/util/Semaphore.h>

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

TEST(Semaphore, IsTakenAsOftenAsItWasGiven)
{
    Semaphore semaphore(2);
    EXPECT_TRUE(semaphore.take(0));
    EXPECT_TRUE(semaphore.take(0));
    EXPECT_FALSE(semaphore.take(0));
    semaphore.give();
    EXPECT_TRUE(semaphore.take(0));
}

TEST(Semaphore, IsNotReentrant)
{
    Semaphore semaphore;
    ASSERT_TRUE(semaphore.take());
    EXPECT_FALSE(semaphore.take(1));
}

TEST(Semaphore, WakesAWaiterThatWaitsWithoutLimit)
{
    Semaphore semaphore(0);
    std::thread giver([&] { semaphore.give(); });
    EXPECT_TRUE(semaphore.take());
    giver.join();
}

TEST(SemaphoreGuard, GivesBackAtTheEndOfItsScope)
{
    Semaphore semaphore;
    {
        const SemaphoreGuard guard(semaphore);
        EXPECT_TRUE(static_cast<bool>(guard));
        EXPECT_FALSE(static_cast<bool>(SemaphoreGuard(semaphore, 0)));
    }
    EXPECT_TRUE(semaphore.take(0));
}

TEST(SemaphoreGuard, GivesBackOnceWhenItIsReleased)
{
    Semaphore semaphore;
    SemaphoreGuard guard(semaphore);
    guard.release();
    guard.release();
    EXPECT_TRUE(semaphore.take(0));
    EXPECT_FALSE(semaphore.take(0));
}

TEST(CriticalSection, MayBeEnteredAgainByTheThreadThatHoldsIt)
{
    Semaphore semaphore;
    {
        const CriticalSection outer(semaphore);
        {
            const CriticalSection inner(semaphore);
        }
        EXPECT_FALSE(semaphore.take(0)) << "the inner one must not give it back";
    }
    EXPECT_TRUE(semaphore.take(0));
}

TEST(CriticalSection, KeepsSeveralSemaphoresApart)
{
    Semaphore one;
    Semaphore other;
    const CriticalSection first(one);
    {
        const CriticalSection second(other);
        EXPECT_FALSE(other.take(0));
    }
    EXPECT_TRUE(other.take(0));
    EXPECT_FALSE(one.take(0));
}

TEST(CriticalSection, KeepsOtherThreadsOut)
{
    Semaphore semaphore;
    int counted = 0; // guarded by it
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 1000; ++i) {
                const CriticalSection outer(semaphore);
                const CriticalSection inner(semaphore);
                ++counted;
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(counted, 4000);
}

} // namespace
