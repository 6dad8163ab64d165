#include "calls/pbx/PbxSettings.h"

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "system/Configuration.h"

namespace {

using namespace std::chrono_literals;

std::optional<PbxSettings> settingsOf(const Configuration::Values& items)
{
    const TemporaryFolder folder;
    return pbxSettingsOf(Configuration(folder.path() / "config.toml", items));
}

std::string serverOf(const std::string& server)
{
    const auto settings = settingsOf({{"pbx-server", server}, {"pbx-device", "100"}});
    return settings ? settings->host + " " + std::to_string(settings->port) : "none";
}

} // namespace

TEST(PbxSettings, NameThePbxAndItsPort)
{
    EXPECT_EQ(serverOf("pbx.example.com:1040"), "pbx.example.com 1040");
    EXPECT_EQ(serverOf("192.0.2.1:65535"), "192.0.2.1 65535");
    EXPECT_EQ(serverOf("[2001:db8::1]:1040"), "2001:db8::1 1040");
    for (const auto* wrong :
         {"", "pbx.example.com", ":1040", "pbx:", "pbx:0", "pbx:65536", "pbx:10x", "pbx:-1", "[]:1040"})
        EXPECT_EQ(serverOf(wrong), "none") << wrong;
}

TEST(PbxSettings, NeedADevice)
{
    EXPECT_FALSE(settingsOf({{"pbx-server", "pbx:1040"}}));
    EXPECT_EQ(settingsOf({{"pbx-server", "pbx:1040"}, {"localDeviceID", "20"}})->device, "20");
    EXPECT_EQ(
        settingsOf({{"pbx-server", "pbx:1040"}, {"localDeviceID", "20"}, {"pbx-device", "100"}})->device,
        "100");
}

TEST(PbxSettings, HaveCallsOnOneLineOnly)
{
    Configuration::Values items{{"pbx-server", "pbx:1040"}, {"pbx-device", "100"}};
    EXPECT_TRUE(settingsOf(items)->takesCalls);
    items["sip-user"] = "101";
    EXPECT_FALSE(settingsOf(items)->takesCalls);
    items["sip-user"] = "";
    items["pbx-calls"] = "false";
    EXPECT_FALSE(settingsOf(items)->takesCalls);
}

TEST(PbxSettings, WaitAsLongAsTheyAreTold)
{
    const Configuration::Values items{
        {"pbx-server", "pbx:1040"}, {"pbx-device", "100"}, {"pbx-request-timeout", "7"}};
    EXPECT_EQ(settingsOf(items)->requestTimeout, 7s);
}
