// One way through the telephone on every variant: what differs between them is what they are.

#include <gtest/gtest.h>

#include "JourneyPhone.h"

namespace {

struct Variant {
    std::string name;
    std::string softwareType;
    std::string hardware;
    bool softKeys;
    std::string absent;
};

std::ostream& operator<<(std::ostream& out, const Variant& variant)
{
    return out << variant.name;
}

class Matrix : public testing::TestWithParam<Variant> {
protected:
    static Journey journeyOf(const Variant& variant)
    {
        Journey journey;
        journey.items = {{"software-type", variant.softwareType},
                         {"hardware-variant", variant.hardware},
                         {"soft-key-bar", variant.softKeys ? "true" : "false"},
                         {"language", "en"}};
        if (!variant.absent.empty())
            journey.absent = {variant.absent};
        journey.contacts = {"Adams, Bob; office=030 1111", "Miller, Anna; mobile=0170 333; default=mobile"};
        return journey;
    }

    bool shows(const std::string& text) { return screen.find(text) != screen.npos; }
    void run(const std::string& words) { screen = phone.run(words); }
    bool has(const std::string& service) const { return GetParam().absent != service; }
    bool isTdm() const { return GetParam().hardware == "10"; }

    JourneyPhone phone{journeyOf(GetParam())};
    std::string screen;
};

std::vector<Variant> variants()
{
    std::vector<Variant> all;
    for (const bool softKeys : {true, false}) {
        const std::string keys = softKeys ? "SoftKeys" : "NoSoftKeys";
        all.push_back({"Sip" + keys, "Veltrix SIP", "1", softKeys, ""});
        all.push_back({"Qra4" + keys, "Veltrix QRA", "4", softKeys, ""});
        all.push_back({"Tdm10" + keys, "Veltrix TDM", "10", softKeys, ""});
    }
    for (const char* service : {"DirectoryServiceIfc", "CSTAServiceIfc", "DigitAnalysisServiceIfc",
                                "LocalMgmtIfc", "DataAccessServiceIfc", "TeamServiceIfc", "JournalServiceIfc",
                                "OBEXServiceIfc", "PhysicalInterfaceServiceIfc"})
        all.push_back({std::string("Without") + service, "Veltrix SIP", "1", true, service});
    return all;
}

} // namespace

TEST_P(Matrix, ShowsFindsAndLeaves)
{
    run("phonebook");
    EXPECT_EQ(shows("Miller, Anna"), has("DirectoryServiceIfc"));
    EXPECT_EQ(shows("Directory"), !isTdm());
    EXPECT_EQ(shows("( OK )"), GetParam().softKeys);

    run("text:m text:i");
    EXPECT_EQ(shows("> Miller, Anna"), has("DirectoryServiceIfc"));

    run("menu");
    EXPECT_TRUE(shows("New contact"));
    run("back");
    EXPECT_FALSE(shows("New contact"));

    run("tab tab home");
    EXPECT_TRUE(shows("No line"));
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

TEST_P(Matrix, SaysThatThereIsNoLine)
{
    run("phonebook text:m ok");
    EXPECT_EQ(shows("! No line available"), has("DirectoryServiceIfc") && has("CSTAServiceIfc"));
    run("wait:3000");
    EXPECT_FALSE(shows("!"));
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

TEST_P(Matrix, OpensTheDiallerForDigitsOffHook)
{
    run("phonebook hook 0 3 0");
    EXPECT_EQ(shows("#030"), has("DigitAnalysisServiceIfc"));
    run("hook");
    EXPECT_FALSE(shows("#030"));
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

INSTANTIATE_TEST_SUITE_P(All, Matrix, testing::ValuesIn(variants()),
                         [](const auto& variant) { return variant.param.name; });
