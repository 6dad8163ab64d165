#include <framework/display/ExclusiveList.h>

#include "DirectorySearchScreens.h"
#include "TraceLines.h"

namespace {

class Qualifiers : public DirectorySearchScreens {
protected:
    LDAPStateQualifierOptions& state() { return context().m_LdapQualifierOptions; }
    DisplayAPI::ExclusiveList& options()
    {
        return dynamic_cast<DisplayAPI::ExclusiveList&>(*context().m_pTabScreen->getCurrentDisplayable());
    }

    void open(Bar bar = Bar::SoftKeys)
    {
        startOnItsTab(bar);
        listShows({amysAttributes()});
        go(state());
    }
};

// Row and what Amy is shown with.
const std::vector<std::pair<std::string, std::string>> nQUALIFIERS{
    {"no.qualifier", "Adams, Amy"},     {"job.function", "Adams, Amy (Editor)"},
    {"address", "Adams, Amy (Lane 1)"}, {"email", "Adams, Amy (amy@acme.uk)"},
    {"business1", "Adams, Amy (1)"},    {"mobile", "Adams, Amy (3)"},
    {"business2", "Adams, Amy (2)"},    {"private", "Adams, Amy (4)"},
    {"company", "Adams, Amy (Acme)"},   {"address2", "Adams, Amy (London)"}};

} // namespace

TEST_F(Qualifiers, OpenFromTheListsMenu)
{
    startOnItsTab();
    listShows({amysAttributes()});
    press(MENU);
    choose("qualifier");
    EXPECT_EQ(current(), &state());
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(title(), "qualifier.options");
}

TEST_F(Qualifiers, OffersNothingAndNineAttributes)
{
    open();
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::ExclusiveList);
    EXPECT_EQ(title(), "qualifier.options");
    Texts labels;
    for (const auto& [label, name] : nQUALIFIERS)
        labels.push_back(label);
    EXPECT_EQ(rows(), labels);
    EXPECT_FALSE(host.frame->tabs.empty());
    EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
}

TEST_F(Qualifiers, StandsByItselfWithoutTabs)
{
    open();
    const auto* pOptions = &options();
    while (context().m_pTabScreen->numberOfTabs() > 0)
        context().m_pTabScreen->removeTab(0);
    state().enterStateEvent(&context());
    EXPECT_EQ(display().getCurrent(), pOptions);
}

TEST_F(Qualifiers, BuildsItsRowsOnce)
{
    open();
    const auto* pOptions = &options();
    press(BACK);
    go(state());
    EXPECT_EQ(&options(), pOptions);
    EXPECT_EQ(options().size(), 10);
}

TEST_F(Qualifiers, BeginsAtTheQualifierInUse)
{
    for (int qualifier = 0; qualifier < 10; ++qualifier) {
        directory.options["LdapQualifier"] = qualifier;
        open();
        EXPECT_EQ(options().getSelectedIndex(), qualifier);
    }
}

TEST_F(Qualifiers, BeginsAtTheFirstForAQualifierThatIsNone)
{
    directory.options["LdapQualifier"] = 2;
    open();
    for (const int qualifier : {10, -1}) {
        press(BACK);
        people().setDisplayQualifier(static_cast<displayQualifier>(qualifier));
        go(state());
        EXPECT_TRUE(top().rows[0].selected) << qualifier;
    }
}

TEST_F(Qualifiers, WritesTheChosenAttributeBesideTheNamesWhenTheUserGoesBack)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.options.clear();
        open(bar);
        for (const int qualifier : {9, 1, 2, 3, 4, 5, 6, 7, 8, 0}) {
            directory.optionWrites.clear();
            options().setSelectedIndex(qualifier);
            press(BACK);
            EXPECT_TRUE(inList());
            EXPECT_EQ(people().getDisplayQualifier(), static_cast<displayQualifier>(qualifier));
            EXPECT_EQ(directory.optionWrites,
                      (std::vector<std::pair<std::string, int>>{{"LdapQualifier", qualifier}}));
            EXPECT_EQ(names(), Texts{nQUALIFIERS[static_cast<std::size_t>(qualifier)].second});
            EXPECT_EQ(context().m_pTabScreen->getCurrentDisplayable(), &peopleRows());
            go(state());
        }
        EXPECT_TRUE(directory.searches.empty());
    }
}

TEST_F(Qualifiers, ReplacesTheListsWidgetWithItsRows)
{
    open();
    const auto before = peopleRows().id();
    press(DOWN);
    int rowsWhenStored = -1;
    directory.whileBusy = [&] { rowsWhenStored = peopleRows().size(); };
    EXPECT_EQ(state().backEvent(&context(), nullptr, nullptr), &context().m_LdapViewingList);
    EXPECT_EQ(rowsWhenStored, 1);
    EXPECT_NE(peopleRows().id(), before);
    EXPECT_EQ(peopleRows().size(), 0);
    EXPECT_EQ(context().m_pPreviousLdapDisplayList, nullptr); // deleted, not retired
    EXPECT_EQ(people().size(), 1u);
}

TEST_F(Qualifiers, LeavesTheListAloneWithoutAChoice)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        const auto before = peopleRows().id();
        press(DOWN);
        press(UP);
        press(BACK);
        EXPECT_TRUE(inList());
        EXPECT_EQ(peopleRows().id(), before);
        EXPECT_EQ(names(), Texts{"Adams, Amy"});
        EXPECT_TRUE(directory.optionWrites.empty());
    }
}

TEST_F(Qualifiers, StaysWithOk)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        press(DOWN);
        press(OK);
        EXPECT_EQ(current(), &state());
        EXPECT_EQ(title(), "qualifier.options");
        EXPECT_TRUE(top().rows[1].selected);
        EXPECT_TRUE(directory.optionWrites.empty());
    }
}

TEST_F(Qualifiers, RebuildsTheListForARowThatIsNoQualifier)
{
    open();
    const auto before = peopleRows().id();
    options().setSelectedIndex(
        options().append(new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("another"), 0)));
    press(BACK);
    EXPECT_TRUE(inList());
    EXPECT_NE(peopleRows().id(), before);
    EXPECT_EQ(names(), Texts{"Adams, Amy"});
    EXPECT_TRUE(directory.optionWrites.empty());
}

TEST_F(Qualifiers, AppliesAQualifierThatCannotBeStored)
{
    open();
    directory.optionResult = 1;
    press(DOWN);
    press(BACK);
    EXPECT_EQ(names(), Texts{"Adams, Amy (Editor)"});
    EXPECT_TRUE(log.has("write failed tag = LdapQualifier, New value = 1", 2));
}

TEST_F(Qualifiers, KeepsTheTabWhileItIsShown)
{
    open();
    EXPECT_FALSE(state().tabValid(&context()));
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(mode().isLdapTabActive());
    EXPECT_EQ(current(), &state());
}

TEST_F(Qualifiers, TracesItsOperations)
{
    open();
    auto* pContext = &context();
    auto& screen = state();
    expectTraces("LDAPStateQualifierOptions",
                 {{"enterStateEvent", [&] { screen.enterStateEvent(pContext); }},
                  {"backEvent", [&] { screen.backEvent(pContext, nullptr, nullptr); }},
                  {"exitStateEvent", [&] { screen.exitStateEvent(pContext); }},
                  {"constructDisplayList", [&] { screen.constructDisplayList(pContext); }}});
}
