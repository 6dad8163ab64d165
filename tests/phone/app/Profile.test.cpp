#include <sys/fsuid.h>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "app/PhoneletStates.h"
#include "app/Profile.h"
#include "app/ProfileLock.h"

namespace fs = std::filesystem;

TEST(Profile, LiesWhereDesktopProgramsKeepTheirFiles)
{
    setenv("HOME", "/home/anna", 1);
    setenv("XDG_CONFIG_HOME", "/etc/anna", 1);
    setenv("XDG_DATA_HOME", "relative", 1);
    unsetenv("XDG_STATE_HOME");

    const auto profile = Profile::ofUser();

    EXPECT_EQ(profile.configFile(), "/etc/anna/deskbook/config.toml");
    EXPECT_EQ(profile.data, "/home/anna/.local/share/deskbook");
    EXPECT_EQ(profile.log, "/home/anna/.local/state/deskbook");
    EXPECT_EQ(Profile::demo().data, "/home/anna/.local/share/deskbook-demo");
}

TEST(Profile, MakesItsFoldersForTheirOwnerOnly)
{
    TemporaryFolder folder;
    const auto profile = Profile::in(folder / "mine");
    ASSERT_TRUE(profile.create());
    EXPECT_EQ(fs::status(profile.data).permissions(), fs::perms::owner_all);
    EXPECT_TRUE(fs::is_directory(profile.pictures()));
}

TEST(Profile, SaysWhichFolderCannotBeUsed)
{
    TemporaryFolder folder;
    folder.write("file", "");
    const auto made = Profile::in(folder / "file").create();
    ASSERT_FALSE(made);
    EXPECT_NE(made.error().sentence.find((folder / "file").string()), std::string::npos);
}

TEST(Profile, IsSeededWithTheDemoOnce)
{
    TemporaryFolder demo;
    demo.write("config.toml", "language = \"en\"\n");
    fs::create_directory(demo / "pictures");
    demo.write("pictures/anna.png", "x");
    TemporaryFolder folder;
    const auto profile = Profile::in(folder.path());
    ASSERT_TRUE(profile.create());
    int imports = 0;
    bool importable = false;
    const auto import = [&](const fs::path& contacts) {
        ++imports;
        EXPECT_EQ(contacts, demo / "contacts.vcf");
        return importable;
    };

    EXPECT_FALSE(seedDemo(profile, demo.path(), import));
    EXPECT_FALSE(fs::exists(profile.configFile()));

    importable = true;
    EXPECT_TRUE(seedDemo(profile, demo.path(), import));
    EXPECT_EQ(folder.read("pictures/anna.png"), "x");

    folder.write("config.toml", "language = \"fr\"\n");
    EXPECT_TRUE(seedDemo(profile, demo.path(), import));
    EXPECT_EQ(folder.read("config.toml"), "language = \"fr\"\n");
    EXPECT_EQ(imports, 2);
}

TEST(Profile, BelongsToOneTelephoneAtATime)
{
    TemporaryFolder folder;
    const auto profile = Profile::in(folder.path());
    {
        const auto first = ProfileLock::take(profile);
        ASSERT_TRUE(first);
        EXPECT_EQ(ProfileLock::take(profile).error().sentence,
                  "A telephone already runs with the profile " + folder.path().string() + ".");
    }
    EXPECT_TRUE(ProfileLock::take(profile));
}

TEST(Profile, ThatItsUserMayOnlyReadNeedsNeitherLockNorPictures)
{
    using fs::perms;
    TemporaryFolder folder;
    const auto profile = Profile::in(folder.path());
    fs::permissions(folder.path(), perms::owner_read | perms::owner_exec | perms::group_read |
                                       perms::group_exec | perms::others_read | perms::others_exec);
    constexpr uid_t nobody = 65534;
    const int before = ::setfsuid(nobody); // root may write everywhere
    const auto made = profile.create();
    const auto lock = ProfileLock::take(profile);
    ::setfsuid(static_cast<uid_t>(before));
    EXPECT_TRUE(made);
    EXPECT_TRUE(lock);
}

TEST(PhoneletStates, StartAnewWhereAFolderHasTheirName)
{
    TemporaryFolder folder;
    fs::create_directory(folder / "states.json");
    EXPECT_EQ(PhoneletStates(folder / "states.json").get("PhoneBookPhonelet"), 0);
}

TEST(PhoneletStates, SurviveARestart)
{
    TemporaryFolder folder;
    EXPECT_EQ(PhoneletStates(folder / "states.json").get("PhoneBookPhonelet"), 0);
    PhoneletStates(folder / "states.json").set("PhoneBookPhonelet", 2);
    EXPECT_EQ(PhoneletStates(folder / "states.json").get("PhoneBookPhonelet"), 2);
}

TEST(PhoneletStates, StartAnewFromADamagedFile)
{
    TemporaryFolder folder;
    folder.write("states.json", "{\"a\": ");
    PhoneletStates states(folder / "states.json");
    EXPECT_EQ(states.get("a"), 0);
    states.set("a", 1);
    EXPECT_EQ(PhoneletStates(folder / "states.json").get("a"), 1);
}
