#include <gtest/gtest.h>

#include <thread>

#include "app/FrameStore.h"

using namespace std::chrono_literals;
using DisplayAPI::Frame;
using DisplayAPI::FrameMoment;

namespace {

Frame titled(const std::string& title)
{
    Frame frame;
    frame.visible = true;
    frame.base.title = title;
    return frame;
}

class Frames : public testing::Test {
protected:
    std::string shown() { return store.latest()->base.title; }
    void make(const std::string& title, FrameMoment moment) { store.publish(titled(title), moment); }

    ManualClock clock;
    FrameStore store{clock};
};

} // namespace

using FrameStoreTest = Frames;

TEST_F(FrameStoreTest, HandsOutTheFrameAtTheEndOfAnEventAtOnce)
{
    make("list", FrameMoment::AfterEvent);
    EXPECT_EQ(shown(), "list");
}

TEST_F(FrameStoreTest, HandsOutAFrameMadeInsideAHandlerOnlyWhenTheHandlerGoesOnForAWhile)
{
    make("list", FrameMoment::AfterEvent);
    make("searching", FrameMoment::InsideEvent);
    EXPECT_EQ(shown(), "list");
    clock.advance(29ms);
    EXPECT_EQ(shown(), "list");

    clock.advance(1ms);

    EXPECT_EQ(shown(), "searching");
}

TEST_F(FrameStoreTest, ShowsItsSignsBesideTheFrameAtHandAndThoseToCome)
{
    make("list", FrameMoment::AfterEvent);
    const auto before = store.latest()->number;

    store.setHook(true, false);
    EXPECT_EQ(shown(), "list");
    EXPECT_TRUE(store.latest()->signs.offHook);
    EXPECT_GT(store.latest()->number, before);

    make("dialler", FrameMoment::AfterEvent);
    EXPECT_TRUE(store.latest()->signs.offHook);
}

TEST_F(FrameStoreTest, ShowsCallsBesideAFrameThatAHandlerStillHoldsBackAndDoesNotHurryIt)
{
    make("list", FrameMoment::AfterEvent);
    make("progress", FrameMoment::InsideEvent);
    DisplayAPI::FrameCall call;
    call.id = "7";
    store.setCalls({call});
    EXPECT_EQ(shown(), "list");
    EXPECT_EQ(store.latest()->signs.calls.size(), 1u);
    EXPECT_EQ(store.newest()->base.title, "progress");
    clock.advance(30ms);
    EXPECT_EQ(shown(), "progress");
    EXPECT_EQ(store.latest()->signs.calls.size(), 1u);
}

TEST_F(FrameStoreTest, MakesNoNewFrameOfTheSameSigns)
{
    make("list", FrameMoment::AfterEvent);
    const auto before = store.latest()->number;
    store.setHook(false, false);
    store.setCalls({});
    EXPECT_EQ(store.latest()->number, before);
}

TEST_F(FrameStoreTest, ForgetsAFrameThatWasPassedBy)
{
    make("list", FrameMoment::AfterEvent);
    make("tab 2", FrameMoment::InsideEvent);
    make("tab 3", FrameMoment::AfterEvent);
    EXPECT_EQ(shown(), "tab 3");
    clock.advance(1000ms);
    EXPECT_EQ(shown(), "tab 3");
}

TEST_F(FrameStoreTest, ForgetsAFrameWhenTheOneBeforeItIsBack)
{
    make("list", FrameMoment::AfterEvent);
    make("searching", FrameMoment::InsideEvent);
    make("list", FrameMoment::AfterEvent);
    clock.advance(1000ms);
    EXPECT_EQ(shown(), "list");
}

TEST_F(FrameStoreTest, JudgesByTheFrameMadeLastHandedOutOrNot)
{
    make("list", FrameMoment::AfterEvent);
    make("searching", FrameMoment::InsideEvent);
    EXPECT_EQ(store.newest()->base.title, "searching");
}

TEST_F(FrameStoreTest, NumbersOnlyFramesThatShowSomethingNew)
{
    make("list", FrameMoment::AfterEvent);
    const auto number = store.latest()->number;
    make("list", FrameMoment::AfterEvent);
    EXPECT_EQ(store.latest()->number, number);
    make("menu", FrameMoment::AfterEvent);
    EXPECT_GT(store.latest()->number, number);
}

TEST_F(FrameStoreTest, WaitsInVainWhenNothingNewComes)
{
    make("list", FrameMoment::AfterEvent);
    EXPECT_EQ(store.waitForFrameAfter(store.latest()->number, 1ms), nullptr);
}

TEST(FrameStore, WakesAReaderForAFrameThatAHandlerShowsWhileItBlocks)
{
    SystemClock clock;
    FrameStore store(clock);
    std::thread handler([&] { store.publish(titled("searching"), FrameMoment::InsideEvent); });
    const auto frame = store.waitForFrameAfter(0, 10s);
    handler.join();
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->base.title, "searching");
}

TEST(FrameStore, WakesReadersWhenItCloses)
{
    SystemClock clock;
    FrameStore store(clock);
    std::thread closer([&] { store.close(); });
    EXPECT_EQ(store.waitForFrameAfter(0, 1h), nullptr);
    closer.join();
}
