#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "system/Log.h"

TEST(Log, WritesComponentFileLineAndTextOnOneLine)
{
    TemporaryFolder folder;
    {
        Log log(folder / "deskphone.log", Log::Echo::None);
        AppLog::log("PhonebookPhonelet", "./src/PhonebookList", AppLog::ERROR, 12, "%s\n", "first\nsecond");
    }
    const auto text = folder.read("deskphone.log");
    EXPECT_NE(text.find(" E PhonebookPhonelet ./src/PhonebookList:12 first second\n"), text.npos) << text;
}

TEST(Log, IsForItsOwnersEyesOnly)
{
    TemporaryFolder folder;
    folder.write("deskphone.log", "of an earlier start\n");
    const Log log(folder / "deskphone.log", Log::Echo::None);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(folder / "deskphone.log").permissions(),
              perms::owner_read | perms::owner_write);
}

TEST(Log, LeavesOutWhatIsBelowItsLevel)
{
    TemporaryFolder folder;
    {
        Log log(folder / "deskphone.log", Log::Echo::None);
        EXPECT_FALSE(AppLog::isEnabled("x", AppLog::TRACE));
        log.setLevel(AppLog::TRACE);
        EXPECT_TRUE(AppLog::isEnabled("x", AppLog::TRACE));
        log.setLevel(AppLog::ERROR);
        EXPECT_FALSE(AppLog::isEnabled("x", AppLog::USER));
    }
    EXPECT_FALSE(AppLog::isEnabled("x", AppLog::ERROR));
}
