#include "calls/sip/BaresipConfig.h"

#include <gtest/gtest.h>

#include "TemporaryFolder.h"

namespace {

SipSettings registered()
{
    SipSettings settings;
    settings.user = "101";
    settings.authUser = "anna m";
    settings.registrar = SipHost{"pbx.example.com", 0};
    return settings;
}

class EngineFiles : public testing::Test {
protected:
    // The value of an item in the engine's "config".
    std::string configured(const SipSettings& settings, const std::string& item)
    {
        EXPECT_TRUE(writeBaresipFiles(settings, 4445, folder / "engine"));
        std::istringstream config(folder.read("engine/config"));
        for (std::string line; std::getline(config, line);) {
            if (line.starts_with(item + " "))
                return line.substr(item.size() + 1);
        }
        return "";
    }

    TemporaryFolder folder;
};

} // namespace

TEST(SipAccount, IsTheLineAtItsRegistrar)
{
    EXPECT_EQ(baresipAccount(registered(), "se cret;"),
              "<sip:101@pbx.example.com;transport=udp>;answermode=manual;call_transfer=no;regint=300;"
              "auth_user=\"anna m\";auth_pass=\"se cret;\";outbound=\"sip:pbx.example.com;transport=udp\"");
}

TEST(SipAccount, SendsEverythingToTheRegistrarOrTheProxyThatIsNamed)
{
    auto settings = registered();
    settings.transport = SipTransport::Tls;
    settings.registrar->port = 5071;
    EXPECT_TRUE(
        baresipAccount(settings, "").ends_with(";outbound=\"sip:pbx.example.com:5071;transport=tls\""));
    EXPECT_TRUE(baresipAccount(settings, "").starts_with("<sip:101@pbx.example.com;transport=tls>"));
    settings.outboundProxy = SipHost{"edge.example.com", 0};
    EXPECT_TRUE(baresipAccount(settings, "").ends_with(";outbound=\"sip:edge.example.com;transport=tls\""));
}

TEST(SipAccount, WithoutARegistrarShowsNobodyAPassword)
{
    auto settings = registered();
    settings.registrar.reset();
    settings.outboundProxy = SipHost{"127.0.0.1", 5081};
    settings.displayName = "Anna \"A\" \\ M\u00fcller";
    EXPECT_EQ(baresipAccount(settings, "secret"),
              "\"Anna \\\"A\\\" \\\\ M\u00fcller\" <sip:101@127.0.0.1:5081;transport=udp>;answermode=manual;"
              "call_transfer=no;regint=0");
}

TEST(SipAccount, CannotHoldEveryText)
{
    EXPECT_TRUE(canStandInAccount(""));
    EXPECT_TRUE(canStandInAccount("a;b <c>, \\d \u00e4'"));
    for (const auto* text : {"a\"b", "a\\", "a\nb", "a\x7f"})
        EXPECT_FALSE(canStandInAccount(text)) << text;
    EXPECT_TRUE(isSipUser("+4930*#a.b_c-d"));
    for (const auto* text : {"", "a b", "a@b", "a;b", "a>b", "a\"b", "\u00e4"})
        EXPECT_FALSE(isSipUser(text)) << text;
}

TEST_F(EngineFiles, KeepALineThatNeedsNoNetworkOnThisMachine)
{
    auto settings = registered();
    EXPECT_EQ(configured(settings, "sip_listen"), "0.0.0.0:0");
    EXPECT_EQ(configured(settings, "net_interface"), "");
    settings.registrar = sipHostOf("localhost:5060");
    settings.port = 5072;
    EXPECT_EQ(configured(settings, "sip_listen"), "127.0.0.1:5072");
    EXPECT_EQ(configured(settings, "net_interface"), "127.0.0.1");
    settings.outboundProxy = SipHost{"edge.example.com", 0};
    EXPECT_EQ(configured(settings, "sip_listen"), "0.0.0.0:5072");
}

TEST_F(EngineFiles, SpeakTheRegistrarsVersionOfIp)
{
    auto settings = registered();
    settings.registrar = SipHost{"[2001:db8::1]", 5060};
    EXPECT_EQ(configured(settings, "sip_listen"), "[::]:0");
    settings.outboundProxy = SipHost{"[::1]", 5060};
    EXPECT_EQ(configured(settings, "sip_listen"), "[::1]:0");
    EXPECT_EQ(configured(settings, "net_interface"), "::1");
}

TEST_F(EngineFiles, UseTheDevicesOrASilentBridge)
{
    auto settings = registered();
    EXPECT_EQ(configured(settings, "audio_source"), "aubridge,line");
    EXPECT_EQ(configured(settings, "audio_player"), "aubridge,line");
    settings.sound = SipSound::Devices;
    EXPECT_EQ(configured(settings, "audio_source"), "alsa,default");
    EXPECT_EQ(configured(settings, "audio_player"), "alsa,default");
}

TEST_F(EngineFiles, TakeCommandsOnThisMachineOnly)
{
    EXPECT_EQ(configured(registered(), "ctrl_tcp_listen"), "127.0.0.1:4445");
}

TEST_F(EngineFiles, AreMadeAnewWhoeverHadThem)
{
    namespace fs = std::filesystem;
    fs::create_directory(folder / "engine");
    folder.write("elsewhere", "untouched");
    fs::create_symlink(folder / "elsewhere", folder / "engine/accounts");
    folder.write("engine/config", "old");
    fs::permissions(folder / "engine/config", fs::perms::all);
    ASSERT_TRUE(writeBaresipFiles(registered(), 4445, folder / "engine"));
    EXPECT_EQ(folder.read("elsewhere"), "untouched");
    for (const auto* name : {"config", "accounts", "contacts"})
        EXPECT_EQ(fs::symlink_status(folder / "engine" / name).permissions(),
                  fs::perms::owner_read | fs::perms::owner_write)
            << name;
    EXPECT_EQ(fs::status(folder / "engine").permissions(), fs::perms::owner_all);
}
