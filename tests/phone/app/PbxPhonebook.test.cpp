// The PBX's phonebook on a whole telephone: its tab, the phonelet behind it, and calls over the PBX.

#include <functional>

#include <gtest/gtest.h>

#include <framework/host/TextScreen.h>

#include <testing/LogCapture.h>

#include "../TemporaryFolder.h"
#include "../calls/pbx/TestPbx.h"
#include "app/Phone.h"
#include "app/Resources.h"

namespace {

using namespace std::chrono_literals;

constexpr char TAB[] = " System "; // as the tab bar shows it
const std::string ACTIVATED =
    "<RequestSystemStatusResponse><systemStatus>normal</systemStatus></RequestSystemStatusResponse>";

class PhoneAtAPbx : public testing::Test {
protected:
    PhoneAtAPbx()
    {
        const auto resources = Resources::beside(BIN_DIR);
        PhoneOptions options;
        options.profile = Profile::in(profile.path());
        options.catalogues = resources.catalogues;
        options.phonelets = {{"phonebook", resources.phonebook}, {"CorvanStimulus", resources.stimulus}};
        options.items = {{"language", "en"},
                         {"pbx-server", "127.0.0.1:" + std::to_string(pbx.port())},
                         {"pbx-device", "100"},
                         {"pbx-request-timeout", "60"}};
        phone = Phone::create(std::move(options)).value();
        phone->start();
    }
    ~PhoneAtAPbx() override { phone->stop(); }

    void press(const std::string& words)
    {
        std::istringstream in(words);
        for (std::string word; in >> word;) {
            const auto keys = keysFromWord(word);
            ASSERT_TRUE(keys) << word;
            for (const auto& key : *keys) {
                phone->keys().press(key);
                ASSERT_TRUE(phone->events().waitUntilDone(10s));
            }
        }
    }

    bool becomes(const std::function<bool(const std::string&)>& wanted)
    {
        auto frame = phone->frames().latest();
        while (frame && !wanted(DisplayAPI::toText(*frame)))
            frame = phone->frames().waitForFrameAfter(frame->number, 10s);
        return frame != nullptr;
    }
    bool shows(const std::string& text)
    {
        return becomes([&](const std::string& screen) { return screen.find(text) != std::string::npos; });
    }
    bool showsNo(const std::string& text)
    {
        return becomes([&](const std::string& screen) { return screen.find(text) == std::string::npos; });
    }

    void setFeature(const std::string& availability)
    {
        pbx.event(TestPbx::feature("<featureName>PBXPhonebook</featureName><Availability>" + availability +
                                   "</Availability>"));
    }

    // Goes to the PBX's tab, whose phonelet then shows a first line.
    void enterTab()
    {
        ASSERT_TRUE(pbx.welcome());
        press("phonebook");
        ASSERT_TRUE(shows(TAB));
        press("tab");
        phone->keys().press(keysFromWord("tab")->front());
        ASSERT_EQ(pbx.answer(ACTIVATED), "RequestSystemStatus");
        pbx.event(TestPbx::row(0, "PBX directory"));
        ASSERT_TRUE(shows("PBX directory"));
    }

    TestPbx pbx;
    TemporaryFolder profile;
    std::unique_ptr<Phone> phone;
};

class PbxTabOfAPhone : public PhoneAtAPbx {};
class PbxLineOfAPhone : public PhoneAtAPbx {};

constexpr char FAULTY[] = "The line cannot be used. The log says why.";

} // namespace

TEST_F(PbxTabOfAPhone, ComesAndGoesAsThePbxSays)
{
    ASSERT_TRUE(pbx.welcome("unavailable"));
    press("phonebook");
    EXPECT_TRUE(showsNo(TAB));
    setFeature("available");
    EXPECT_TRUE(shows(TAB));
    setFeature("unavailable");
    EXPECT_TRUE(showsNo(TAB));
    setFeature("available");
    EXPECT_TRUE(shows(TAB));
    pbx.close();
    EXPECT_TRUE(showsNo(TAB));
    ASSERT_TRUE(pbx.welcome());
    EXPECT_TRUE(shows(TAB));
}

TEST_F(PbxTabOfAPhone, ShowsTheLinesOfThePbxAndSendsKeysBack)
{
    enterTab();
    pbx.event(TestPbx::row(1, "Abel, Nora"));
    pbx.event(TestPbx::row(2, "Baumann, Timo"));
    EXPECT_TRUE(shows("Baumann, Timo"));
    pbx.event(TestPbx::row(2, ""));
    EXPECT_TRUE(showsNo("Baumann, Timo"));
    EXPECT_TRUE(shows("Abel, Nora"));
    for (const auto* key : {"down", "5", "ok"}) {
        press(key);
        EXPECT_NE(pbx.receive().xml.find("<button>" + std::string(key) + "</button>"), std::string::npos)
            << key;
    }
}

TEST_F(PbxTabOfAPhone, IsLeftByTheTabKey)
{
    enterTab();
    press("phonebook");
    EXPECT_TRUE(showsNo("PBX directory"));
    EXPECT_TRUE(shows("Contacts"));
    EXPECT_NE(pbx.receive().xml.find("<button>leave</button>"), std::string::npos);
}

TEST_F(PbxTabOfAPhone, GoesWhileItIsCurrent)
{
    enterTab();
    setFeature("unavailable");
    EXPECT_TRUE(showsNo("PBX directory"));
    press("phonebook");
    EXPECT_TRUE(shows("Contacts"));
    EXPECT_TRUE(showsNo(TAB));
}

TEST_F(PbxTabOfAPhone, SaysThatThePbxRefuses)
{
    ASSERT_TRUE(pbx.welcome());
    press("phonebook");
    ASSERT_TRUE(shows(TAB));
    press("tab");
    phone->keys().press(keysFromWord("tab")->front());
    pbx.answer(
        "<CSTAErrorCode><stateIncompatibility>invalidObjectState</stateIncompatibility></CSTAErrorCode>");
    EXPECT_TRUE(shows("does not answer"));
}

TEST_F(PbxTabOfAPhone, IsGivenUpByWhoGoesHomeMeanwhile)
{
    ASSERT_TRUE(pbx.welcome());
    press("phonebook");
    ASSERT_TRUE(shows(TAB));
    press("tab");
    phone->keys().press(keysFromWord("tab")->front());
    EXPECT_EQ(pbx.receiveName(), "RequestSystemStatus"); // and is not answered
    press("home");
    EXPECT_TRUE(shows("Line ready"));
}

TEST_F(PbxTabOfAPhone, GetsNoKeyThatWasPressedBeforeItsLinesWereThere)
{
    ASSERT_TRUE(pbx.welcome());
    press("phonebook");
    ASSERT_TRUE(shows(TAB));
    press("tab");
    phone->keys().press(keysFromWord("tab")->front());
    phone->keys().press(keysFromWord("ok")->front());
    phone->keys().press(keysFromWord("5")->front());
    ASSERT_EQ(pbx.answer(ACTIVATED), "RequestSystemStatus");
    pbx.event(TestPbx::row(0, "PBX directory"));
    ASSERT_TRUE(shows("PBX directory"));
    press("down");
    EXPECT_NE(pbx.receive().xml.find("<button>down</button>"), std::string::npos);
}

TEST_F(PbxTabOfAPhone, LosesNoneOfAThousandRows)
{
    const LogCapture log;
    enterTab();
    for (int i = 1; i <= 1000; ++i)
        pbx.event(TestPbx::row(5, "update " + std::to_string(i)));
    EXPECT_TRUE(shows("update 1000"));
    press("up"); // the phonebook has heard them all then, too
    EXPECT_EQ(log.count("handleCSTADisplayUpdatedEvent()", AppLog::USER), 1001); // with the first line
}

TEST_F(PhoneAtAPbx, CallsOverIt)
{
    ASSERT_TRUE(pbx.welcome());
    ASSERT_TRUE(shows("Line ready")) << DisplayAPI::toText(*phone->frames().latest());
    press("hook 4 7 1 1 ok");
    const auto call = pbx.receive();
    EXPECT_NE(call.xml.find("<calledDirectoryNumber>4711</calledDirectoryNumber>"), std::string::npos)
        << call.xml;
}

TEST_F(PbxLineOfAPhone, IsMissedOnTheIdleScreen)
{
    ASSERT_TRUE(pbx.welcome());
    EXPECT_TRUE(shows("Line ready"));
    EXPECT_TRUE(showsNo(FAULTY));
    pbx.close();
    EXPECT_TRUE(shows(FAULTY));
    ASSERT_TRUE(pbx.welcome());
    EXPECT_TRUE(showsNo(FAULTY));
}

TEST_F(PbxLineOfAPhone, IsMissedWhereThePbxWasNeverReached)
{
    ASSERT_TRUE(pbx.accept());
    pbx.close();
    EXPECT_TRUE(shows(FAULTY));
}

TEST_F(PbxLineOfAPhone, ChangesAfterTheCallThatThereIs)
{
    ASSERT_TRUE(pbx.welcome());
    pbx.event("<DeliveredEvent><monitorCrossRefID>m1</monitorCrossRefID><connection><callID>7</callID>"
              "<deviceID>100</deviceID></connection><alertingDevice><deviceIdentifier>100</deviceIdentifier>"
              "</alertingDevice><callingDevice><deviceIdentifier>0301</deviceIdentifier></callingDevice>"
              "</DeliveredEvent>");
    ASSERT_TRUE(shows("Incoming call"));
    profile.write("config.toml", "pbx-calls = false\n");
    phone->reloadConfiguration();
    ASSERT_TRUE(phone->events().waitUntilDone(10s));
    EXPECT_TRUE(shows("Incoming call"));

    phone->keys().press(keysFromWord("hangup")->front());
    EXPECT_EQ(pbx.answer("<CSTAErrorCode><operation>invalidConnectionID</operation></CSTAErrorCode>"),
              "ClearConnection");
    ASSERT_TRUE(pbx.welcome()); // under the new setting
    EXPECT_TRUE(shows("No line"));
}

TEST(PbxLineOfAnotherPhone, IsMissedWithoutUsableSettings)
{
    const TemporaryFolder folder;
    PhoneOptions options;
    options.profile = Profile::in(folder.path());
    options.catalogues = Resources::beside(BIN_DIR).catalogues;
    const auto advice = [&](std::map<std::string, std::string> items) {
        items["language"] = "en";
        options.items = std::move(items);
        auto phone = Phone::create(options).value();
        phone->start();
        EXPECT_TRUE(phone->events().waitUntilDone(10s));
        const auto screen = DisplayAPI::toText(*phone->frames().latest());
        phone->stop();
        return screen.find(FAULTY) != screen.npos;
    };
    EXPECT_TRUE(advice({{"pbx-server", "pbx.example.com"}, {"pbx-device", "100"}}));
    EXPECT_TRUE(advice({{"pbx-server", "127.0.0.1:1040"}}));
    EXPECT_FALSE(advice({{"pbx-server", "pbx.example.com"}, {"pbx-device", "100"}, {"pbx-calls", "false"}}));
    EXPECT_FALSE(advice({}));
}
