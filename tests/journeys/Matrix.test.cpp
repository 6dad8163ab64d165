// The ways through the telephone on every variant: what differs between them is what they are.

#include <gtest/gtest.h>

#include <algorithm>

#include <framework/display/Frame.h>

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
                         {"language", "en"},
                         {"ldap-servers", "company"}};
        if (!variant.absent.empty())
            journey.absent = {variant.absent};
        journey.contacts = {"Adams, Bob; office=030 1111", "Miller, Anna; mobile=0170 333; default=mobile"};
        return journey;
    }

    bool shows(const std::string& text) { return screen.find(text) != screen.npos; }
    void run(const std::string& words) { screen = phone.run(words); }
    // The word that points at the row of this text.
    std::string rowOf(const std::string& text)
    {
        const auto& rows = phone.phone().frames().latest()->top().rows;
        const auto row = std::ranges::find(rows, text, &DisplayAPI::FrameRow::text);
        EXPECT_NE(row, rows.end()) << text << " in\n" << screen;
        return "row" + std::to_string(row - rows.begin() + 1);
    }
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

TEST_P(Matrix, MakesAContact)
{
    run("phonebook");
    const bool isEmpty = !has("DirectoryServiceIfc");
    run(!GetParam().softKeys ? "ok ok" : isEmpty ? "menu ok" : "menu");
    if (GetParam().softKeys && !isEmpty)
        run(rowOf("New contact"));
    EXPECT_TRUE(shows("Last name:"));

    run("text:Lee down text:Amy save");
    EXPECT_EQ(shows("! Changes saved"), has("DirectoryServiceIfc"));
    run("wait:3000");
    EXPECT_EQ(shows("> Lee, Amy"), has("DirectoryServiceIfc"));
    EXPECT_EQ(shows("> Last name: Lee") || shows("> First name: Amy"), isEmpty); // nothing typed is lost

    run("back");
    EXPECT_EQ(shows("? Save the changes?"), isEmpty);
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

TEST_P(Matrix, ChangesAContact)
{
    if (!has("DirectoryServiceIfc"))
        return; // there is none
    run("phonebook text:m menu");
    run(rowOf("Details"));
    EXPECT_TRUE(shows("Mobile: 0170 333"));
    run("clearall text:Zorn back");
    EXPECT_TRUE(shows("? Save the changes?"));
    run(GetParam().softKeys ? "soft1" : "ok");
    run("wait:3000");
    EXPECT_TRUE(shows("> Zorn, Anna"));
    EXPECT_FALSE(shows("Miller"));
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

TEST_P(Matrix, MakesShowsAndDeletesAGroup)
{
    run(GetParam().softKeys ? "phonebook menu" : "phonebook ok");
    run(rowOf("Groups"));
    EXPECT_TRUE(shows("No group"));
    run(GetParam().softKeys ? "menu" : "ok");
    run(rowOf("New group"));
    run("text:Club save");
    EXPECT_EQ(shows("! Changes saved"), has("DirectoryServiceIfc"));
    run("wait:3000");
    EXPECT_TRUE(shows("Club")); // in the list, or still in the form
    if (!has("DirectoryServiceIfc"))
        return;

    run(rowOf("Club"));
    run("ok");
    run(rowOf("Delete"));
    EXPECT_TRUE(shows("? Delete the group Club?"));
    run(GetParam().softKeys ? "soft1" : "ok");
    run("wait:3000");
    EXPECT_FALSE(shows("Club"));
    run("back");
    EXPECT_TRUE(shows("Miller, Anna"));
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

TEST_P(Matrix, WritesNamesInAnotherWay)
{
    if (!has("DirectoryServiceIfc"))
        return; // there are no names
    run(GetParam().softKeys ? "phonebook menu" : "phonebook ok");
    run(rowOf("Name format"));
    run("down back");
    EXPECT_TRUE(shows("Anna Miller"));
    EXPECT_LT(screen.find("Anna Miller"), screen.find("Bob Adams"));
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

TEST_P(Matrix, FindsShowsAndSavesAColleague)
{
    run("phonebook");
    if (isTdm()) {
        EXPECT_FALSE(shows("Directory"));
        return;
    }
    run("tab text:mil *");
    EXPECT_EQ(shows("Miller, John"), has("DirectoryServiceIfc"));
    EXPECT_EQ(shows("! The directory cannot be reached."), !has("DirectoryServiceIfc"));
    if (!has("DirectoryServiceIfc"))
        return;

    run("down menu");
    run(rowOf("Details"));
    EXPECT_TRUE(shows("First name: John"));
    run("back menu");
    run(rowOf("Save"));
    EXPECT_TRUE(shows("! Saved to contacts"));
    run("ok menu");
    run(rowOf("Save"));
    EXPECT_TRUE(shows("! This contact is already saved."));
    run("ok tab1");
    EXPECT_TRUE(shows("Miller, John"));
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

TEST_P(Matrix, FindsAColleagueByAnyField)
{
    if (isTdm())
        return; // there is no directory
    run(GetParam().softKeys ? "phonebook tab menu" : "phonebook tab ok");
    run(rowOf("Advanced search"));
    EXPECT_TRUE(shows("Options: <Find>"));
    run("up ok");
    EXPECT_TRUE(shows("! Nothing to search for."));
    run("ok down text:Miller down text:J* up up ok");
    EXPECT_EQ(shows("Miller, John"), has("DirectoryServiceIfc"));
    EXPECT_FALSE(shows("Miller, Anna"));
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

TEST_P(Matrix, ShowsThePeopleOfTheDirectoryInAnotherWay)
{
    if (isTdm() || !has("DirectoryServiceIfc"))
        return; // there is nobody
    run("phonebook tab text:mil *");
    run(GetParam().softKeys ? "menu" : "up ok");
    run(rowOf("Name format"));
    run("down back");
    EXPECT_TRUE(shows("Ada Milner"));
    run(GetParam().softKeys ? "menu" : "ok");
    run(rowOf("Shown beside the name"));
    run("down back");
    EXPECT_TRUE(shows("Anna Miller (Engineer)"));
    EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
}

INSTANTIATE_TEST_SUITE_P(All, Matrix, testing::ValuesIn(variants()),
                         [](const auto& variant) { return variant.param.name; });
