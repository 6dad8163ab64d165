#include "app/DemoPbx.h"

#include <gtest/gtest.h>

#include "../TemporaryFolder.h"
#include "calls/pbx/PbxSettings.h"
#include "system/Configuration.h"

TEST(DemoPbx, IsWhatTheTelephoneIsAttachedTo)
{
    const TemporaryFolder folder;
    const auto profile = Profile::in(folder.path());
    const auto pbx = startDemoPbx(profile, SOURCE_DIR "/demo");
    ASSERT_TRUE(pbx) << pbx.error().sentence;
    const auto settings = pbxSettingsOf(Configuration(profile.configFile()));
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->host, "127.0.0.1");
    EXPECT_NE(settings->port, 0);
    EXPECT_EQ(settings->device, "100");
}

TEST(DemoPbx, ThatCannotBeStartedIsMissedByNobody)
{
    const TemporaryFolder folder;
    const auto profile = Profile::in(folder.path());
    folder.write("config.toml", "pbx-server = \"127.0.0.1:1040\"\npbx-device = \"100\"\n");
    const auto pbx = startDemoPbx(profile, folder.path() / "nowhere");
    ASSERT_FALSE(pbx);
    EXPECT_NE(pbx.error().sentence.find("pbx/serve"), std::string::npos) << pbx.error().sentence;
    EXPECT_FALSE(pbxSettingsOf(Configuration(profile.configFile())));
}
