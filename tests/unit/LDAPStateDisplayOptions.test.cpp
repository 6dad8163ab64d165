#include <framework/display/ExclusiveList.h>

#include "DirectorySearchScreens.h"
#include "TraceLines.h"

namespace {

class DirectoryNameFormats : public DirectorySearchScreens {
protected:
    LDAPStateDisplayOptions& state() { return context().m_LdapDisplayOptions; }
    DisplayAPI::ExclusiveList& options()
    {
        return dynamic_cast<DisplayAPI::ExclusiveList&>(*context().m_pTabScreen->getCurrentDisplayable());
    }

    void open(Bar bar = Bar::SoftKeys)
    {
        startOnItsTab(bar);
        listShows(threePeople());
        go(state());
    }
};

const std::vector<std::vector<std::string>> nNAMES{{"Adams, Zoe", "Baker, Mia", "Clark, Amy"},
                                                   {"Amy Clark", "Mia Baker", "Zoe Adams"},
                                                   {"Adams, Z", "Baker, M", "Clark, A"},
                                                   {"A Clark", "M Baker", "Z Adams"}};

} // namespace

TEST_F(DirectoryNameFormats, OpenFromTheListsMenu)
{
    startOnItsTab();
    listShows(threePeople());
    press(MENU);
    choose("display");
    EXPECT_EQ(current(), &state());
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(title(), "display.options");
}

TEST_F(DirectoryNameFormats, OffersFourWaysToWriteAName)
{
    open();
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::ExclusiveList);
    EXPECT_EQ(title(), "display.options");
    EXPECT_EQ(rows(), (Texts{"lastname.firstname", "firstname.lastname", "lastname.f", "f.lastname"}));
    EXPECT_FALSE(host.frame->tabs.empty());
    EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
}

TEST_F(DirectoryNameFormats, StandsByItselfWithoutTabs)
{
    open();
    const auto* pOptions = &options();
    while (context().m_pTabScreen->numberOfTabs() > 0)
        context().m_pTabScreen->removeTab(0);
    state().enterStateEvent(&context());
    EXPECT_EQ(display().getCurrent(), pOptions);
}

TEST_F(DirectoryNameFormats, BuildsItsRowsOnce)
{
    open();
    const auto* pOptions = &options();
    press(BACK);
    go(state());
    EXPECT_EQ(&options(), pOptions);
    EXPECT_EQ(rows().size(), 4u);
}

TEST_F(DirectoryNameFormats, BeginsAtTheDirectorysFormatWhateverTheLocalListUses)
{
    directory.options["DisplayOptions"] = 1;
    for (int mode = 0; mode < 4; ++mode) {
        directory.options["LdapDisplayOptions"] = mode;
        open();
        EXPECT_TRUE(top().rows[static_cast<std::size_t>(mode)].selected) << mode;
    }
}

TEST_F(DirectoryNameFormats, BeginsAtTheFirstForAFormatThatIsNone)
{
    directory.options["LdapDisplayOptions"] = 2;
    open();
    for (const int mode : {4, -1}) {
        press(DOWN);
        press(OK);
        people().setDisplayMode(static_cast<displayMode>(mode));
        go(state());
        EXPECT_TRUE(top().rows[0].selected) << mode;
    }
}

TEST_F(DirectoryNameFormats, WritesTheNamesAsChosenWhenTheUserGoesBack)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.options.clear();
        open(bar);
        for (const int mode : {1, 2, 3, 0, 3, 1, 0, 2}) {
            directory.optionWrites.clear();
            options().setSelectedIndex(mode);
            press(BACK);
            EXPECT_TRUE(inList());
            EXPECT_EQ(people().getDisplayMode(), static_cast<displayMode>(mode));
            EXPECT_EQ(directory.optionWrites,
                      (std::vector<std::pair<std::string, int>>{{"LdapDisplayOptions", mode}}));
            EXPECT_EQ(names(), nNAMES[static_cast<std::size_t>(mode)]);
            EXPECT_EQ(context().m_pTabScreen->getCurrentDisplayable(), &peopleRows());
            go(state());
        }
        EXPECT_EQ(list().getDisplayMode(), displayMode::SurnameFirstname); // the local one
        EXPECT_TRUE(directory.searches.empty());
    }
}

TEST_F(DirectoryNameFormats, ReplacesTheListsWidgetAfterItsRowsAreCleared)
{
    open();
    const auto before = peopleRows().id();
    press(DOWN);
    int rowsWhenStored = -1;
    directory.whileBusy = [&] { rowsWhenStored = peopleRows().size(); };
    EXPECT_EQ(state().backEvent(&context(), nullptr, nullptr), &context().m_LdapViewingList);
    EXPECT_EQ(rowsWhenStored, 0);
    EXPECT_NE(peopleRows().id(), before);
    EXPECT_EQ(peopleRows().size(), 0);
    EXPECT_EQ(context().m_pPreviousLdapDisplayList, nullptr); // deleted, not retired
    EXPECT_EQ(people().size(), 3u);
}

TEST_F(DirectoryNameFormats, LeavesTheListAloneWithoutAChoice)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        const auto before = peopleRows().id();
        peopleRows().setSelectedIndex(2);
        press(DOWN);
        press(UP);
        press(BACK);
        EXPECT_TRUE(inList());
        EXPECT_EQ(peopleRows().id(), before);
        EXPECT_EQ(peopleRows().getSelectedIndex(), 2);
        EXPECT_EQ(names(), nNAMES[0]);
        EXPECT_TRUE(directory.optionWrites.empty());
    }
}

TEST_F(DirectoryNameFormats, DropsTheChoiceWithOk)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        const auto before = peopleRows().id();
        press(DOWN);
        press(OK);
        EXPECT_TRUE(inList());
        EXPECT_EQ(peopleRows().id(), before);
        EXPECT_EQ(names(), nNAMES[0]);
        EXPECT_EQ(people().getDisplayMode(), displayMode::SurnameFirstname);
        EXPECT_TRUE(directory.optionWrites.empty());
        go(state());
        EXPECT_TRUE(top().rows[0].selected);
    }
}

TEST_F(DirectoryNameFormats, RebuildsTheListForARowThatIsNoFormat)
{
    open();
    const auto before = peopleRows().id();
    options().setSelectedIndex(
        options().append(new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("a fifth"), 0)));
    press(BACK);
    EXPECT_TRUE(inList());
    EXPECT_NE(peopleRows().id(), before);
    EXPECT_EQ(names(), nNAMES[0]);
    EXPECT_TRUE(directory.optionWrites.empty());
}

TEST_F(DirectoryNameFormats, KeepsTheTabWhileItIsShown)
{
    open();
    EXPECT_FALSE(state().tabValid(&context()));
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(mode().isLdapTabActive());
    EXPECT_EQ(current(), &state());
}

TEST_F(DirectoryNameFormats, TracesItsOperations)
{
    open();
    auto* pContext = &context();
    auto& screen = state();
    expectTraces("LDAPStateDisplayOptions",
                 {{"enterStateEvent", [&] { screen.enterStateEvent(pContext); }},
                  {"backEvent", [&] { screen.backEvent(pContext, nullptr, nullptr); }},
                  {"okEvent", [&] { screen.okEvent(pContext, nullptr, nullptr); }},
                  {"exitStateEvent", [&] { screen.exitStateEvent(pContext); }},
                  {"constructDisplayList", [&] { screen.constructDisplayList(pContext); }}});
}
