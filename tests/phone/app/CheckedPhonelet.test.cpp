#include <gtest/gtest.h>

#include <thread>

#include <testing/CheckedPhonelet.h>
#include <testing/FakeContext.h>

using Strings = std::vector<std::string>;

namespace {

class Idle final : public Phonelet {
public:
    PhoneletContext& context() { return *m_pContext; }

    void shutdown() override {}
    void timerEvent(int id) override { m_pContext->timerEvent(id); }
    std::string getInterfaces() override { return ""; }
    void startPhonelet() override {}
    void stopPhonelet() override {}
    void hide() override {}
    void show() override {}
    void tab() override {}
    void pause() override {}
    void resume() override {}
    void localeChanged(const std::string&) override {}
    void dateFormatChanged() override {}
    void timeFormatChanged() override {}
    void childGainedFocus(const std::string&) override {}
    void childLostFocus(const std::string&) override {}
};

class CheckedPhoneletTest : public testing::Test {
protected:
    void start()
    {
        checked->init(&context);
        checked->startPhonelet();
    }

    FakeContext context;
    Strings complaints;
    Idle* idle = new Idle;
    std::unique_ptr<CheckedPhonelet> checked = std::make_unique<CheckedPhonelet>(
        std::unique_ptr<Phonelet>(idle),
        [this](const std::string& sentence) { complaints.push_back(sentence); });
};

} // namespace

TEST_F(CheckedPhoneletTest, HasNothingToSayWhenTheRulesAreKept)
{
    start();
    const int id = idle->context().createTimer(idle, 10);
    checked->show();
    checked->timerEvent(id);
    idle->context().deleteTimer(id);
    checked->hide();
    checked->stopPhonelet();
    checked->shutdown();
    checked.reset();
    EXPECT_EQ(complaints, Strings{});
}

TEST_F(CheckedPhoneletTest, PassesOnHowLongThePhoneletSleeps)
{
    start();
    idle->context().sleep(std::chrono::microseconds(5));
    EXPECT_EQ(context.sleeps, std::vector{std::chrono::microseconds(5)});
}

TEST_F(CheckedPhoneletTest, BlamesTheTelephoneForShowBeforeStart)
{
    checked->init(&context);
    checked->show();
    EXPECT_EQ(complaints, Strings{"telephone: show() before startPhonelet()"});
}

TEST_F(CheckedPhoneletTest, BlamesTheTelephoneForAnEventAfterStop)
{
    start();
    checked->stopPhonelet();
    checked->tab();
    EXPECT_EQ(complaints, Strings{"telephone: tab() after stop"});
}

TEST_F(CheckedPhoneletTest, BlamesTheTelephoneForACallOnAnotherThread)
{
    start();
    std::thread other([this] { checked->show(); });
    other.join();
    checked->stopPhonelet();
    EXPECT_EQ(complaints, Strings{"telephone: show() on another thread than init()"});
}

TEST_F(CheckedPhoneletTest, BlamesTheTelephoneForDeletingWhatItDidNotStop)
{
    start();
    checked.reset();
    EXPECT_EQ(complaints, Strings{"telephone: deleted before stopPhonelet()"});
}

TEST_F(CheckedPhoneletTest, BlamesThePhoneletForATimerLeftAtStop)
{
    start();
    idle->context().createTimer(idle, 10);
    checked->stopPhonelet();
    checked->shutdown();
    EXPECT_EQ(complaints, Strings{"phonelet: timer 1 left at stop"});
}

TEST_F(CheckedPhoneletTest, BlamesThePhoneletForUsingItsContextOnAnotherThread)
{
    start();
    std::thread other([this] { idle->context().startTimer(7); });
    other.join();
    checked->stopPhonelet();
    EXPECT_EQ(complaints, Strings{"phonelet: startTimer() on another thread than init()"});
}
