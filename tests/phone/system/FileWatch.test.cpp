#include <gtest/gtest.h>

#include <future>

#include "TemporaryFolder.h"
#include "system/FileWatch.h"

namespace {

// True when the watch spoke within a time that only a broken one needs.
bool tellsOf(const TemporaryFolder& folder, const std::function<void()>& change)
{
    std::promise<void> told;
    std::atomic_flag once;
    FileWatch watch(folder / "config.toml", [&] {
        if (!once.test_and_set())
            told.set_value();
    });
    change();
    return told.get_future().wait_for(std::chrono::seconds(20)) == std::future_status::ready;
}

} // namespace

TEST(FileWatch, TellsWhenTheFileIsWritten)
{
    TemporaryFolder folder;
    EXPECT_TRUE(tellsOf(folder, [&] { folder.write("config.toml", "a"); }));
}

TEST(FileWatch, TellsWhenAnotherFileTakesItsPlace)
{
    TemporaryFolder folder;
    folder.write("config.toml", "a");
    folder.write("other", "b");
    EXPECT_TRUE(tellsOf(folder, [&] { std::filesystem::rename(folder / "other", folder / "config.toml"); }));
}

TEST(FileWatch, LivesWithAFolderThatDoesNotExist)
{
    FileWatch watch("/nowhere/at/all/config.toml", [] { FAIL(); });
}
