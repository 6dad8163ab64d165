#include "calls/sip/SipSettings.h"

#include <sstream>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "app/Commands.h"
#include "calls/sip/SipPassword.h"
#include "calls/sip/SipPasswordCommand.h"
#include "system/Configuration.h"

namespace {

using Texts = std::vector<std::string>;

class SipItems : public testing::Test {
protected:
    SipSetup setup(const std::string& config)
    {
        folder.write("config.toml", config);
        const Configuration configuration(folder / "config.toml");
        EXPECT_TRUE(configuration.refused().empty());
        return sipSettingsOf(configuration, folder.path());
    }
    int keepPassword(const std::string& typed)
    {
        std::istringstream in(typed);
        return keepSipPassword(Profile::in(folder.path()), in, out, error);
    }

    TemporaryFolder folder;
    std::ostringstream out;
    std::ostringstream error;
};

} // namespace

TEST(SoundDevices, AreThoseThatMayBeOpened)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(hasSoundDevices(folder / "none"));
    EXPECT_FALSE(hasSoundDevices(folder.path()));
    folder.write("timer", "");
    EXPECT_FALSE(hasSoundDevices(folder.path()));
    std::filesystem::create_symlink("nowhere", folder / "pcmC0D0p");
    EXPECT_FALSE(hasSoundDevices(folder.path()));
    folder.write("pcmC1D0p", "");
    EXPECT_TRUE(hasSoundDevices(folder.path()));
}

TEST_F(SipItems, IsNotThereUntilItIsNamed)
{
    const auto none = setup("sip-server = \"pbx\"\n");
    EXPECT_FALSE(none.wanted);
    EXPECT_FALSE(none.usable());
    EXPECT_EQ(none.faults, Texts{"There is no line: name it in \"sip-user\"."});
}

TEST_F(SipItems, NeedsItsNameAndItsRegistrar)
{
    const auto line = setup("sip-user = \"101\"\nsip-server = \"pbx.example.com\"\n");
    ASSERT_TRUE(line.usable());
    EXPECT_EQ(line.settings.user, "101");
    EXPECT_EQ(line.settings.authUser, "101");
    EXPECT_EQ(line.settings.domain().text(), "pbx.example.com");
    EXPECT_EQ(line.settings.pickupCode, "*8");
    EXPECT_EQ(line.settings.transport, SipTransport::Udp);
    EXPECT_EQ(line.settings.noAnswerTime, std::chrono::seconds(60));
    EXPECT_EQ(line.settings.registrationTime, std::chrono::seconds(300));
}

TEST_F(SipItems, IsWhatTheItemsSay)
{
    const auto line =
        setup("sip-user = \"101\"\nsip-auth-user = \"anna\"\nsip-transport = \"tls\"\n"
              "sip-outbound-proxy = \"edge:5071\"\nsip-pickup-code = \"*20*\"\nsip-port = 5072\n"
              "sip-no-answer-time = 20\nsip-display-name = \"Anna\"\nsip-audio = \"devices\"\n");
    ASSERT_TRUE(line.usable());
    EXPECT_EQ(line.settings.domain().text(), "edge:5071");
    EXPECT_EQ(line.settings.authUser, "anna");
    EXPECT_EQ(line.settings.transport, SipTransport::Tls);
    EXPECT_EQ(line.settings.pickupCode, "*20*");
    EXPECT_EQ(line.settings.port, 5072);
    EXPECT_EQ(line.settings.noAnswerTime, std::chrono::seconds(20));
    EXPECT_EQ(line.settings.displayName, "Anna");
    EXPECT_EQ(line.settings.sound, SipSound::Devices);
}

TEST_F(SipItems, SaysWhatIsWrongWithIt)
{
    EXPECT_EQ(
        setup("sip-user = \"101\"\n").faults,
        Texts{"Nothing says where calls go: name the line's registrar in \"sip-server\", or whom calls are "
              "sent to in \"sip-outbound-proxy\"."});
    EXPECT_EQ(setup("sip-user = \"101\"\nsip-server = \"sip:pbx\"\n").faults,
              Texts{"\"sip:pbx\" in \"sip-server\" is no server: write NAME or NAME:PORT, an IPv6 address "
                    "in brackets."});
    EXPECT_EQ(setup("sip-user = \"a b\"\nsip-server = \"pbx\"\n").faults,
              Texts{"\"sip-user\" is no number or name of a line: letters, digits and + - _ . * # only."});
    EXPECT_EQ(setup("sip-user = \"1\"\nsip-auth-user = 'a\"b'\nsip-server = \"pbx\"\n").faults,
              Texts{"\"sip-auth-user\" cannot have a \" in it, nor end with a \\."});
}

TEST_F(SipItems, KeepsThePasswordForItsRegistrarOnly)
{
    setup("sip-user = \"101\"\nsip-server = \"pbx.example.com:5070\"\n");
    EXPECT_EQ(keepPassword("secret\n"), EXIT_DONE);
    EXPECT_EQ(out.str(), "The password is kept for pbx.example.com.\n");
    const SipPassword password(folder.path());
    ASSERT_TRUE(password.read({"pbx.example.com"}));
    EXPECT_EQ(password.read({"pbx.example.com"}).value(), "secret");
    EXPECT_EQ(password.file(), folder / "sip-password");
    setup("sip-user = \"101\"\nsip-server = \"other.example.com\"\n");
    EXPECT_FALSE(std::filesystem::exists(password.file()));
}

TEST_F(SipItems, RefusesAPasswordThatItCouldNotShow)
{
    setup("sip-user = \"101\"\nsip-server = \"pbx\"\n");
    for (const auto* typed : {"a\"b\n", "ab\\\n", "\n"})
        EXPECT_EQ(keepPassword(typed), EXIT_REFUSED) << typed;
    EXPECT_NE(error.str().find("The password of a line cannot have a \" in it, nor end with a \\."),
              std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(folder / "sip-password"));
}

TEST_F(SipItems, WantsItsRegistrarBeforeAPassword)
{
    setup("");
    EXPECT_EQ(keepPassword("secret\n"), EXIT_REFUSED);
    EXPECT_EQ(error.str(), "There is no line: name it in \"sip-user\".\n");
    error.str("");
    setup("sip-user = \"101\"\nsip-outbound-proxy = \"peer\"\n");
    EXPECT_EQ(keepPassword("secret\n"), EXIT_REFUSED);
    EXPECT_EQ(error.str(),
              "There is nobody to show a password: name the line's registrar in \"sip-server\".\n");
}
