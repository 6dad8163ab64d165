// The two menus of the directory's list, and where they lead.

#include "DirectoryListScreens.h"

namespace {

using Choice = DirectoryCommands::Choice;

class DirectoryMenu : public DirectoryListScreens {
protected:
    // Everybody's menu has Amy with all four numbers first.
    void startWithAmy(Bar bar = Bar::SoftKeys)
    {
        startOnItsTab(bar);
        finds({person("Miller", "Amy",
                      {{Utils::OFFICE, "100"},
                       {Utils::OFFICE2, "101"},
                       {Utils::MOBILE, "102"},
                       {Utils::PRIVATE, "103"}}),
               person("Milton", "Bob", {{Utils::PRIVATE, "203"}})});
        type("mil*");
        forget();
    }
    bool menuIsOpen() const { return top().role == DisplayAPI::FrameRole::Menu; }
};

} // namespace

TEST_F(DirectoryMenu, HasItsCommands)
{
    startOnItsTab();
    const std::vector<std::string> expected{"advanced.find", "display", "qualifier",
                                            "clear",         "details", "save"};
    ASSERT_EQ(expected.size(), std::size_t{DirectoryCommands::nCHOICES});
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto* pCommand = state().commands().command(static_cast<Choice>(i));
        EXPECT_EQ(pCommand->getLabel().getKey(), expected[i]);
        EXPECT_EQ(pCommand->getIcon(), 0);
    }
    const std::vector<int> icons{3, 4, 2, 5, 0};
    ASSERT_EQ(icons.size(), std::size_t{DialCommands::nCHOICES});
    for (std::size_t i = 0; i < icons.size(); ++i) {
        const auto* pCommand =
            state().commands().dialCommands().command(static_cast<DialCommands::Choice>(i));
        EXPECT_EQ(pCommand->getLabel().getKey(), "dial");
        EXPECT_EQ(pCommand->getIcon(), icons[i]);
    }
}

TEST_F(DirectoryMenu, MakesItsCommandsOnce)
{
    startOnItsTab();
    const auto* pDetails = state().commands().command(DirectoryCommands::DETAILS);
    const auto* pDial = state().commands().dialCommands().command(DialCommands::OFFICE);
    reenter();
    EXPECT_EQ(state().commands().command(DirectoryCommands::DETAILS), pDetails);
    EXPECT_EQ(state().commands().dialCommands().command(DialCommands::OFFICE), pDial);
}

TEST_F(DirectoryMenu, TakesNoCommandForOneThatIsNotMadeYet)
{
    EXPECT_FALSE(DialCommands().owns(nullptr));
    EXPECT_FALSE(DirectoryCommands().choiceOf(nullptr));
}

// --- What stands on the menus ---

TEST_F(DirectoryMenu, OffersLittleOverAnEmptyList)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        press(MENU);
        EXPECT_EQ(rows(), (Texts{"advanced.find", "qualifier"}));
        EXPECT_EQ(top().title, "");
    }
}

TEST_F(DirectoryMenu, OffersTheOptionsOnTheirRow)
{
    startWithAmy(Bar::None);
    press(UP);
    for (const auto key : {MENU, OK}) {
        press(key);
        EXPECT_EQ(rows(), (Texts{"advanced.find", "display", "qualifier", "clear"}));
        press(BACK);
    }
}

TEST_F(DirectoryMenu, OffersEverythingOfAnEntryWithSoftKeys)
{
    startWithAmy();
    press(MENU);
    EXPECT_EQ(rows(), (Texts{"dial", "details", "advanced.find", "clear", "save", "display", "qualifier"}));
    EXPECT_EQ(icons(), std::vector<int>(7, 0));
    EXPECT_EQ(top().title, "Miller, Amy");
}

TEST_F(DirectoryMenu, OffersEveryNumberOfAnEntryWithoutSoftKeys)
{
    startWithAmy(Bar::None);
    press(MENU);
    EXPECT_EQ(rows(), (Texts{"dial", "dial", "dial", "dial", "details", "advanced.find", "clear", "save"}));
    EXPECT_EQ(icons(), (std::vector<int>{3, 4, 5, 2, 0, 0, 0, 0}));
}

TEST_F(DirectoryMenu, LeavesOutTheNumbersThatAnEntryDoesNotHave)
{
    startWithAmy(Bar::None);
    press(DOWN);
    press(MENU);
    EXPECT_EQ(rows(), (Texts{"dial", "details", "advanced.find", "clear", "save"}));
    EXPECT_EQ(icons().front(), 2);
}

TEST_F(DirectoryMenu, OffersALoneEntryItsMenu)
{
    startOnItsTab();
    finds({person("Miller", "Amy")});
    type("mil*");
    press(MENU);
    EXPECT_EQ(rows().front(), "dial");
}

TEST_F(DirectoryMenu, ReadsTheWholeEntry)
{
    startOnItsTab();
    const std::string longName(60, 'm');
    finds({person("Aaa", "Al"), person(longName, "Amy", {{Utils::COMPANY, longName}})});
    type("a*");
    press(DOWN);
    press(MENU);
    EXPECT_EQ(context().m_LdapEntryIndex, 1);
    EXPECT_EQ(context().m_LdapEntry.getSurname(), longName);
    EXPECT_EQ(context().m_LdapEntry.getCompany(), longName);
}

TEST_F(DirectoryMenu, MarksTheListAsTheDirectorys)
{
    startOnItsTab();
    log.clear();
    press(MENU);
    EXPECT_EQ(log.count("PhonebookList::setLDAPPhonebookList()", 5), 1);
}

TEST_F(DirectoryMenu, StaysClosedOverARowThatIsNoEntry)
{
    startWithAmy();
    context().m_LdapEntryIndex = 7;
    results().depopulate();
    ASSERT_EQ(widget().size(), 2);
    press(MENU);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(context().m_LdapEntryIndex, 7);
}

TEST_F(DirectoryMenu, IsNotForOtherWidgets)
{
    startWithAmy();
    DisplayAPI::SearchList other;
    EXPECT_EQ(state().rightEvent(&context(), nullptr, &other), &state());
    EXPECT_EQ(log.count("LDAPStateViewingList::rightEvent - unrecognised widget", 3), 1);
    EXPECT_EQ(popups(), 0u);
}

TEST_F(DirectoryMenu, ClosesWithBack)
{
    startWithAmy();
    press(MENU);
    press(BACK);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(rows(), (Texts{"Miller, Amy", "Milton, Bob"}));
    EXPECT_EQ(handle.left, Texts{});
    EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
}

// --- Where its choices lead ---

TEST_F(DirectoryMenu, LeadsToTheOtherScreens)
{
    const std::vector<std::pair<std::string, PhonebookStateBase* (*)(EventContext&)>> table{
        {"advanced.find", [](EventContext& c) -> PhonebookStateBase* { return &c.m_LdapFind; }},
        {"display", [](EventContext& c) -> PhonebookStateBase* { return &c.m_LdapDisplayOptions; }},
        {"qualifier", [](EventContext& c) -> PhonebookStateBase* { return &c.m_LdapQualifierOptions; }},
        {"details", [](EventContext& c) -> PhonebookStateBase* { return &c.m_LdapDisplayingEntry; }},
        {"save", [](EventContext& c) -> PhonebookStateBase* { return &c.m_LdapSavingEntry; }}};
    for (const auto& [label, target] : table) {
        startWithAmy();
        press(MENU);
        choose(label);
        EXPECT_EQ(current(), target(context())) << label;
        EXPECT_EQ(log.count("save LDAP entry into phonebook", 5) > 0, label == "save");
    }
}

TEST_F(DirectoryMenu, SaysThatItSaves)
{
    startWithAmy();
    press(MENU);
    auto* pMenu = display().getCurrent();
    EXPECT_EQ(state().screenEvent(&context(), state().commands().command(DirectoryCommands::SAVE), pMenu),
              &context().m_LdapSavingEntry);
    EXPECT_EQ(log.count("save LDAP entry into phonebook", 5), 1);
}

TEST_F(DirectoryMenu, StaysForACommandThatItDoesNotKnow)
{
    startWithAmy();
    press(MENU);
    auto* pMenu = display().getCurrent();
    DisplayAPI::MenuCommand foreign(DisplayAPI::TranslationInfo::plain("clear"));
    EXPECT_EQ(state().screenEvent(&context(), &foreign, pMenu), &state());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, pMenu), &state());
    EXPECT_EQ(log.count("unrecognised event", 3), 2);
    EXPECT_EQ(results().size(), 2u);
}

TEST_F(DirectoryMenu, TakesItsCommandsFromItselfOnly)
{
    startWithAmy();
    EXPECT_EQ(state().screenEvent(&context(), state().commands().command(DirectoryCommands::DETAILS),
                                  &context().m_ContextMenu),
              &state());
    EXPECT_EQ(log.count("LDAPStateViewingListWithListOptionsContext::screenEvent - unrecognised widget", 3),
              1);
    // Not even before there is one.
    load();
    EXPECT_EQ(
        state().screenEvent(&context(), state().commands().command(DirectoryCommands::DETAILS), nullptr),
        &state());
}

// --- Clearing ---

TEST_F(DirectoryMenu, EmptiesTheList)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startWithAmy(bar);
        const auto* pOld = &widget();
        press(MENU);
        choose("clear");
        EXPECT_EQ(results().size(), 0u);
        EXPECT_EQ(context().m_pPreviousLdapDisplayList.get(), pOld);
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(rows(), Texts{bar == Bar::None ? "list.options" : "no.results"});
        EXPECT_EQ(field(), "");
        EXPECT_TRUE(top().searchOpen);
        EXPECT_EQ(state().getTreatedSearchText(), "");
        EXPECT_EQ(current(), &state());
        EXPECT_EQ(queries(), Texts{});
        press(MENU);
        EXPECT_EQ(rows(), (Texts{"advanced.find", "qualifier"}));
        EXPECT_EQ(top().title, "");
        press(BACK);
        // It works like the one before.
        finds({person("Abel", "Al")});
        type("a*");
        EXPECT_EQ(rows().back(), "Abel, Al");
    }
}

TEST_F(DirectoryMenu, RetiresTheListBeforeAtTheNextClearing)
{
    startWithAmy();
    press(MENU);
    choose("clear");
    type("mil*");
    const auto* pSecond = &widget();
    press(MENU);
    choose("clear");
    EXPECT_EQ(context().m_pPreviousLdapDisplayList.get(), pSecond);
    EXPECT_NE(&widget(), pSecond);
}

TEST_F(DirectoryMenu, SearchesNoMoreAfterClearing)
{
    startWithAmy(Bar::None);
    press(UP);
    type("mix");
    ASSERT_TRUE(timer().running);
    type("mil*x");
    finds({});
    ASSERT_TRUE(timer().running);
    results().depopulate();
    press(MENU);
    state().screenEvent(&context(), state().commands().command(DirectoryCommands::CLEAR),
                        display().getCurrent());
    host.settle();
    EXPECT_FALSE(timer().running);
}

// --- Dialling ---

TEST_F(DirectoryMenu, DialsTheDefaultNumberWithSoftKeys)
{
    startWithAmy();
    press(MENU);
    choose("dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 100"});
    EXPECT_TRUE(context().m_CallRequestInitiated);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(rows(), (Texts{"Miller, Amy", "Milton, Bob"}));
    EXPECT_EQ(current(), &state());
}

TEST_F(DirectoryMenu, DialsTheChosenNumberWithoutSoftKeys)
{
    startWithAmy(Bar::None);
    for (int row = 0; row < 4; ++row) {
        press(MENU);
        host.press(Kind::Row, row);
        if (menuIsOpen())
            press(OK);
        dialingStops();
    }
    EXPECT_EQ(calls(), (Texts{"MakeCall 100", "MakeCall 101", "MakeCall 102", "MakeCall 103"}));
}

TEST_F(DirectoryMenu, EmptiesItselfAfterDialling)
{
    startWithAmy();
    press(MENU);
    auto* pMenu = display().getCurrent();
    choose("dial");
    display().setCurrent(pMenu);
    host.settle();
    EXPECT_EQ(rows(), Texts{});
}

TEST_F(DirectoryMenu, EmptiesItselfWithBack)
{
    startWithAmy();
    press(MENU);
    auto* pMenu = display().getCurrent();
    press(BACK);
    display().setCurrent(pMenu);
    host.settle();
    EXPECT_EQ(rows(), Texts{});
}

TEST_F(DirectoryMenu, StaysOpenWhenTheCallFails)
{
    startWithAmy();
    callsFail(0);
    press(MENU);
    choose("dial");
    EXPECT_EQ(notification(), "no.line.available");
    EXPECT_FALSE(context().m_CallRequestInitiated);
    wait(3000ms);
    EXPECT_TRUE(menuIsOpen());
    EXPECT_EQ(rows().front(), "dial");
}

TEST_F(DirectoryMenu, RefusesASecondCall)
{
    startWithAmy();
    press(MENU);
    context().setCallRequestInitiated(true);
    choose("dial");
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(log.count("screenEvent received when call already initiated - ignore", 3), 1);
    EXPECT_TRUE(menuIsOpen());
    EXPECT_TRUE(context().m_CallRequestInitiated);
}

TEST_F(DirectoryMenu, KnowsTheCallPartysIconOfEveryDialCommand)
{
    startWithAmy();
    press(MENU);
    context().m_LdapEntry.setDefaultNumber("Mobile");
    struct Expected {
        DialCommands::Choice choice;
        std::string number;
        int icon;
    };
    for (const auto& [choice, expectedNumber, expectedIcon] :
         std::vector<Expected>{{DialCommands::OFFICE, "100", 2},
                               {DialCommands::OFFICE2, "101", 3},
                               {DialCommands::PRIVATE, "103", 1},
                               {DialCommands::MOBILE, "102", 4},
                               {DialCommands::DEFAULT, "102", 4}}) {
        std::string number;
        auto icon = CallPartyIdentifier::NONE;
        state().transformCommandToPhoneNumberAndIcon(
            &context(), state().commands().dialCommands().command(choice), number, icon);
        EXPECT_EQ(number, expectedNumber);
        EXPECT_EQ(icon, expectedIcon);
    }
    std::string number = "1";
    auto icon = CallPartyIdentifier::OFFICE;
    state().transformCommandToPhoneNumberAndIcon(&context(), nullptr, number, icon);
    EXPECT_EQ(number, "");
    EXPECT_EQ(icon, CallPartyIdentifier::NONE);
}
