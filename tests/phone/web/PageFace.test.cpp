#include "web/PageFace.h"

#include <condition_variable>

#include <gtest/gtest.h>

#include "app/FrameStore.h"
#include "app/KeyGate.h"
#include "system/Translator.h"

using namespace std::chrono_literals;

namespace {

class PageFaceTest : public testing::Test {
protected:
    PageFaceTest()
    {
        face.setFaceListener([this] {
            const std::lock_guard lock(mutex);
            ++told;
            changed.notify_all();
        });
    }
    ~PageFaceTest() override { face.setFaceListener({}); }

    bool isToldTimes(int times)
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, 10s, [&] { return told >= times; });
    }

    ManualClock clock;
    EventThread events{clock};
    FrameStore frames{clock};
    KeyGate keys{events, frames, {[](const PhoneKey&) {}, [](std::uint64_t) {}, [](bool) {}}};
    Translator translator{std::filesystem::path(BIN_DIR).parent_path() / "locale", "en"};
    std::mutex mutex;
    std::condition_variable changed;
    int told = 0;
    PageFace face{frames, keys, translator, "pictures"};
};

} // namespace

// Not that of the configuration, which changes earlier while a form holds the change back: the page
// would ask for its texts once, and too soon.
TEST_F(PageFaceTest, HasTheLanguageThatItsTextsAreIn)
{
    EXPECT_EQ(face.language(), "en");
    EXPECT_EQ(face.text("phone.back"), "Back");
    translator.setLanguage("sv");
    EXPECT_EQ(face.language(), "sv");
    EXPECT_EQ(face.text("phone.back"), "Tillbaka");
    translator.setLanguage("tlh");
    EXPECT_EQ(face.language(), "en");
}

TEST_F(PageFaceTest, TellsWhenTheTextsAreInAnotherLanguage)
{
    translator.setLanguage("de");
    EXPECT_TRUE(isToldTimes(1));
}

TEST_F(PageFaceTest, TellsWhenAFrameIsThere)
{
    DisplayAPI::Frame frame;
    frame.visible = true;
    frames.publish(frame, DisplayAPI::FrameMoment::AfterEvent);
    EXPECT_TRUE(isToldTimes(1));
}
