#include "DisplayTest.h"

#include <framework/display/Frame.h>
#include <framework/display/TabScreen.h>

using namespace DisplayAPI;

namespace {

class Tabs : public DisplayTest {
protected:
    Tabs()
    {
        office.append(row("Ann"));
        directory.append(row("no.results"));
        for (auto* list : {&office, &directory})
            list->setUsedWithTab(true, &tabs);
        listenTo(office, "office");
        listenTo(directory, "directory");
        listenTo(tabs, "tabs");
        tabs.addTab(key("office"), &office);
        tabs.addTab(key("ldap"), &directory);
        show(tabs);
    }

    TabScreen tabs{2, 1};
    SearchList office;
    SearchList directory;
};

} // namespace

TEST_F(Tabs, ShowTheCurrentTabsContent)
{
    EXPECT_EQ(screen(), "[office]| ldap |\n"
                        "> Ann\n"
                        "( phone.ok )( phone.menu )( phone.back )\n");

    tabs.setCurrentTabIndex(1);
    host.settle();

    EXPECT_EQ(screen(), "| office |[ldap]\n"
                        "> no.results\n"
                        "( phone.ok )( phone.menu )( phone.back )\n");
    EXPECT_EQ(heard(), "") << "what the program selects raises nothing";
}

TEST_F(Tabs, AreNoneAtFirst)
{
    TabScreen none(2, 1);

    none.nextTab();
    none.previousTab();
    none.setCurrentDisplayable(&office);

    EXPECT_EQ(none.numberOfTabs(), 0);
    EXPECT_EQ(none.getCurrentTabIndex(), -1);
    EXPECT_EQ(none.getCurrentDisplayable(), nullptr);
}

TEST_F(Tabs, WrapAroundWhenStepped)
{
    tabs.addTab(key("PBX.Phonebook"), nullptr);

    tabs.previousTab();
    EXPECT_EQ(tabs.getCurrentTabIndex(), 2);
    tabs.nextTab();
    EXPECT_EQ(tabs.getCurrentTabIndex(), 0);
}

TEST_F(Tabs, IgnoreIndicesThatDoNotExist)
{
    tabs.setCurrentTabIndex(1);

    for (const auto index : {-1, 2, 1000}) {
        tabs.setCurrentTabIndex(index);
        tabs.removeTab(index);
        tabs.setDisplayable(index, &office);
        EXPECT_EQ(tabs.getDisplayable(index), nullptr);
    }

    EXPECT_EQ(tabs.getCurrentTabIndex(), 1);
    EXPECT_EQ(tabs.numberOfTabs(), 2);
}

TEST_F(Tabs, SelectTheFirstWhenTheCurrentOneIsRemoved)
{
    tabs.addTab(key("PBX.Phonebook"), nullptr);
    tabs.setCurrentTabIndex(2);

    tabs.removeTab(2);

    EXPECT_EQ(tabs.getCurrentTabIndex(), 0);
}

TEST_F(Tabs, StayOnTheCurrentOneWhenAnotherIsRemoved)
{
    tabs.setCurrentTabIndex(1);

    tabs.removeTab(0);

    EXPECT_EQ(tabs.getCurrentTabIndex(), 0);
    EXPECT_EQ(tabs.getCurrentDisplayable(), &directory);
    tabs.removeTab(0);
    EXPECT_EQ(tabs.getCurrentTabIndex(), -1);
}

TEST_F(Tabs, LoseContentThatIsDestroyed)
{
    auto mortal = std::make_unique<SearchList>();
    tabs.setCurrentDisplayable(mortal.get());
    EXPECT_EQ(tabs.getCurrentDisplayable(), mortal.get());

    mortal.reset();
    host.settle();

    EXPECT_EQ(tabs.getCurrentDisplayable(), nullptr);
    EXPECT_EQ(screen(), "[office]| ldap |\n( phone.back )\n");
}

TEST_F(Tabs, RefuseContentThatIsNoLongerAlive)
{
    auto mortal = std::make_unique<SearchList>();
    auto* dangling = mortal.get();
    mortal.reset();

    tabs.setDisplayable(1, dangling);

    EXPECT_EQ(tabs.getDisplayable(1), nullptr);
}

TEST_F(Tabs, LeaveBackOnATabWithoutContentToTheTelephone)
{
    tabs.addTab(key("PBX.Phonebook"), nullptr);
    tabs.setCurrentTabIndex(2);

    EXPECT_FALSE(press(Kind::Back));
    EXPECT_FALSE(press(Kind::SoftKey, 0));
    EXPECT_EQ(heard(), "");
}

TEST_F(Tabs, AreEnteredFromTheFirstRow)
{
    press(Kind::Up);

    EXPECT_TRUE(tabs.isTabBarFocused());
    EXPECT_EQ(heard(), "TAB_BAR_ENTERED(tabs) ");
    EXPECT_EQ(recorder.lastType, 16);
    EXPECT_EQ(screen(), "[>office<]| ldap |\n"
                        "  Ann\n"
                        "( phone.ok )( phone.menu )( phone.back )\n");
}

TEST_F(Tabs, KeepTheFocusWhenARowIsSelectedMeanwhile)
{
    office.append(row("Bob"));
    press(Kind::Up);

    office.setSelectedIndex(1);
    host.settle();

    EXPECT_EQ(screen(), "[>office<]| ldap |\n"
                        "  Ann\n"
                        "  Bob\n"
                        "( phone.ok )( phone.menu )( phone.back )\n");
    press(Kind::Down);
    EXPECT_EQ(screen(), "[office]| ldap |\n"
                        "  Ann\n"
                        "> Bob\n"
                        "( phone.ok )( phone.menu )( phone.back )\n");
}

TEST_F(Tabs, AreNotEnteredFromAnotherRow)
{
    office.append(row("Bob"));
    press(Kind::Down);

    press(Kind::Up);

    EXPECT_FALSE(tabs.isTabBarFocused());
    EXPECT_EQ(office.getSelectedIndex(), 0);
}

TEST_F(Tabs, AreEnteredFromAnEmptyListAndAnEmptyTab)
{
    office.clear();
    press(Kind::Up);
    EXPECT_TRUE(tabs.isTabBarFocused());

    press(Kind::Down);
    tabs.setCurrentDisplayable(nullptr);
    press(Kind::Up);
    EXPECT_TRUE(tabs.isTabBarFocused());
}

TEST_F(Tabs, AreNotEnteredFromAListThatIsNotUsedWithThem)
{
    office.setUsedWithTab(false, &tabs);

    press(Kind::Up);

    EXPECT_FALSE(tabs.isTabBarFocused());
}

TEST_F(Tabs, ReportSteppingInTheBar)
{
    press(Kind::Up);
    heard();

    press(Kind::Right);
    EXPECT_EQ(recorder.lastType, 19);
    press(Kind::Left);
    EXPECT_EQ(recorder.lastType, 18);
    press(Kind::Up);

    EXPECT_EQ(heard(), "TAB_NEXT(tabs) TAB_PREVIOUS(tabs) ");
    EXPECT_EQ(tabs.getCurrentTabIndex(), 0) << "stepping is the phonelet's";
}

TEST_F(Tabs, AreLeftWithDownAndOk)
{
    for (const auto kind : {Kind::Down, Kind::Ok}) {
        press(Kind::Up);
        heard();

        press(kind);

        EXPECT_EQ(heard(), "TAB_BAR_LEFT(tabs) ");
        EXPECT_EQ(recorder.lastType, 17);
        EXPECT_FALSE(tabs.isTabBarFocused());
    }
}

TEST_F(Tabs, AreLeftByTheProgramOnce)
{
    press(Kind::Up);
    heard();

    tabs.leaveTabBar();
    tabs.leaveTabBar();
    host.settle();

    EXPECT_EQ(heard(), "TAB_BAR_LEFT(tabs) ");
}

TEST_F(Tabs, AreLeftByTyping)
{
    press(Kind::Up);
    heard();

    host.type("m");

    EXPECT_EQ(heard(), "TAB_BAR_LEFT(tabs) changed(office) ");
}

TEST_F(Tabs, GiveListsTheirHighlightBack)
{
    press(Kind::Up);
    office.setSelectionHighlight(false);
    directory.setSelectionHighlight(false);

    tabs.setCurrentTabIndex(1);
    press(Kind::Down);

    EXPECT_TRUE(host.frame->base.highlighted);
    tabs.setCurrentTabIndex(0);
    EXPECT_TRUE(display.paint().base.highlighted);
}

TEST_F(Tabs, CloseAnEmptySearchFieldWhenTheBarIsEntered)
{
    office.showSearchPopup();

    press(Kind::Up);

    EXPECT_FALSE(host.frame->base.searchOpen);
}

TEST_F(Tabs, PointedAtAreReportedAsSteps)
{
    tabs.addTab(key("PBX.Phonebook"), nullptr);

    press(Kind::Tab, 1);
    EXPECT_EQ(heard(), "TAB_NEXT(tabs) ");
    press(Kind::Tab, 2);
    EXPECT_EQ(heard(), "TAB_PREVIOUS(tabs) ");
    press(Kind::Tab, 0);
    press(Kind::Tab, 7);
    EXPECT_EQ(heard(), "");
}

TEST_F(Tabs, PointedAtCommitALetterThatWaitsFirst)
{
    host.tap("6");

    press(Kind::Tab, 1);

    EXPECT_EQ(office.getSearchText(), "m");
    EXPECT_EQ(heard(), "changed(office) TAB_NEXT(tabs) ");
}

TEST_F(Tabs, CommitALetterThatWaitsInAnotherTab)
{
    host.tap("6");
    tabs.setCurrentTabIndex(1);

    host.advance(1s);

    EXPECT_EQ(office.getSearchText(), "m");
    EXPECT_EQ(heard(), "changed(office) ");
}

TEST_F(Tabs, StartANewTextInAListReturnedTo)
{
    host.type("mi");
    tabs.setCurrentTabIndex(1);
    host.type("a");
    tabs.setCurrentTabIndex(0);

    host.type("x");

    EXPECT_EQ(office.getSearchText(), "x");
}
