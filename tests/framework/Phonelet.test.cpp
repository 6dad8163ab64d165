#include <gtest/gtest.h>

#include <framework/Phonelet.h>
#include <testing/FakeContext.h>

namespace {

// Does nothing but what every phonelet inherits.
class Bystander final : public Phonelet {
public:
    void shutdown() override {}
    void timerEvent(int) override {}
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

} // namespace

TEST(PhoneletBase, AsksItsContextForTheFocus)
{
    FakeContext context;
    Bystander phonelet;
    phonelet.init(&context);

    phonelet.requestFocus();
    phonelet.releaseFocus();
    phonelet.releaseFocus();

    EXPECT_EQ(context.focusRequests, 1);
    EXPECT_EQ(context.focusReleases, 2);
}

TEST(PhoneletBase, AsksNobodyWithoutAContext)
{
    Bystander phonelet;

    phonelet.requestFocus();
    phonelet.releaseFocus();

    EXPECT_EQ(phonelet.getPhoneletHandle(), nullptr);
}
