// Coming to the directory's list and leaving it, its keys, and dialling from it.

#include "DirectoryListScreens.h"

namespace {

class DirectoryList : public DirectoryListScreens {};

} // namespace

// --- Coming and leaving ---

TEST_F(DirectoryList, IsEmptyAtFirst)
{
    startOnItsTab();
    EXPECT_EQ(rows(), Texts{"no.results"});
    EXPECT_TRUE(top().rows[0].selected);
    EXPECT_TRUE(top().searchOpen);
}

TEST_F(DirectoryList, HasTheOptionsRowWithoutSoftKeys)
{
    startOnItsTab(Bar::None);
    EXPECT_EQ(rows(), Texts{"list.options"});
    EXPECT_TRUE(top().rows[0].selected);
}

TEST_F(DirectoryList, IsEnteredStepByStep)
{
    startOnItsTab();
    log.clear();
    state().enterStateEvent(&context());
    EXPECT_TRUE(wroteInOrder(
        {"LDAPStateViewingList::enterStateEvent()", "PhonebookStateBaseDialer::setCallContextProvider()",
         "DirectoryCommands::constructMenuCommands()", "LDAPStateViewingList::constructDisplayList()",
         "LDAPStateViewingList::setDisplayListCurrent()", "SearchPopups::construct()",
         "getSearchTriggerTimeoutFromDatabase Function Entered",
         "LDAPStateViewingList::clearTextMembers()"}));
}

TEST_F(DirectoryList, KeepsItsRowsHoweverOftenItIsEntered)
{
    startOnItsTab();
    threeFound();
    const auto* pPopup = state().getPErrorNotificationPopup();
    reenter();
    EXPECT_EQ(rows().size(), 3u);
    EXPECT_EQ(state().getPErrorNotificationPopup(), pPopup);
}

TEST_F(DirectoryList, ForgetsTheTextOnEntryAndOnExit)
{
    startOnItsTab();
    threeFound();
    reenter();
    EXPECT_EQ(state().getTreatedSearchText(), "");
    state().setTreatedSearchText("mi");
    state().exitStateEvent(&context());
    EXPECT_EQ(state().getTreatedSearchText(), "");
}

TEST_F(DirectoryList, IsLeftStepByStep)
{
    startOnItsTab();
    dialingStarts("0");
    log.clear();
    state().exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(digits.provider, nullptr);
    EXPECT_TRUE(wroteInOrder(
        {"LDAPStateViewingList::exitStateEvent()", "clearCallContextProvider()",
         "PhonebookStateBaseDialer::dismissDialingPopups()", "LDAPStateViewingList::clearTextMembers()",
         "LDAPStateViewingList::exitStateEvent - LdapSearchTrigger deleted. TimerId = 1"}));
}

TEST_F(DirectoryList, IsTheCallContextProviderWhileItIsShown)
{
    startOnItsTab();
    state().exitStateEvent(&context());
    EXPECT_EQ(digits.provider, nullptr);
    state().enterStateEvent(&context());
    EXPECT_EQ(digits.provider, &mode());
}

TEST_F(DirectoryList, ComesBackOverAFormThatTookTheScreen)
{
    startOnItsTab();
    DisplayAPI::SearchList form;
    display().setCurrent(&form);
    reenter();
    EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
    EXPECT_EQ(context().m_pTabScreen->getCurrentDisplayable(), &widget());
}

TEST_F(DirectoryList, KeepsOffTheScreenWhileAnotherTabIsShown)
{
    start();
    DisplayAPI::SearchList form;
    display().setCurrent(&form);
    auto* pShown = context().m_pTabScreen->getDisplayable(0);
    reenter();
    EXPECT_EQ(display().getCurrent(), &form);
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(0), pShown);
}

TEST_F(DirectoryList, IsTheScreenItselfWithoutTabs)
{
    start();
    context().m_pTabScreen->removeTab(1);
    context().m_pTabScreen->removeTab(0);
    reenter();
    EXPECT_EQ(display().getCurrent(), &widget());
}

TEST_F(DirectoryList, StartsEmptyAfterTheLocalPhonebookChanged)
{
    startOnItsTab();
    threeFound();
    directoryChanges();
    goToTab();
    EXPECT_EQ(current(), &state());
    EXPECT_EQ(rows(), Texts{"no.results"});
    EXPECT_EQ(telephone.timers.size(), 1u);
    type("mi*");
    EXPECT_EQ(rows().size(), 3u);
}

TEST_F(DirectoryList, StartsEmptyAfterARestart)
{
    startOnItsTab();
    threeFound();
    phonelet().phonebookDatabaseUpdated(true);
    host.settle();
    goToTab();
    EXPECT_EQ(rows(), Texts{"no.results"});
    EXPECT_EQ(telephone.timers.size(), 1u);
}

TEST_F(DirectoryList, KeepsItsEntriesInAnotherLanguage)
{
    startOnItsTab();
    threeFound();
    EXPECT_TRUE(mode().updateAlphaOrder(true));
    host.settle();
    EXPECT_EQ(rows().size(), 3u);
    EXPECT_EQ(telephone.timers.size(), 1u);
}

// --- Keys ---

TEST_F(DirectoryList, LetsTheUserLeaveForAnotherTab)
{
    startOnItsTab();
    EXPECT_TRUE(state().tabValid(&context()));
    nextTab();
    EXPECT_TRUE(mode().isLocalTabActive());
}

TEST_F(DirectoryList, KeepsTheTabWhileTheDiallerIsUp)
{
    startOnItsTab();
    dialingStarts("0");
    EXPECT_FALSE(state().tabValid(&context()));
    nextTab();
    EXPECT_TRUE(mode().isLdapTabActive());
}

TEST_F(DirectoryList, LeavesThePhonebookWithBack)
{
    startOnItsTab();
    press(BACK);
    EXPECT_EQ(handle.left, Texts{"PhoneBookPhonelet"});
}

TEST_F(DirectoryList, ToleratesAHostWithoutAHandle)
{
    startOnItsTab();
    context().m_pPhoneletHandle = nullptr;
    EXPECT_EQ(state().backEvent(&context(), nullptr, &widget()), &state());
}

TEST_F(DirectoryList, LeavesButtonsToTheTelephone)
{
    startOnItsTab();
    log.clear();
    EXPECT_EQ(state().buttonPressedEvent(&context(), {}, 0, {}, "name"), nullptr);
    EXPECT_TRUE(wroteInOrder({"LDAPStateViewingList::buttonPressedEvent()",
                              "PhonebookStateBase::buttonPressedEvent() - ignored"}));
}

TEST_F(DirectoryList, DoesNothingWithOkOverAnEmptyList)
{
    startOnItsTab();
    press(OK);
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(queries(), Texts{});
    EXPECT_EQ(popups(), 0u);
}

TEST_F(DirectoryList, TakesOkFromItsOwnWidgetOnly)
{
    startOnItsTab();
    threeFound();
    DisplayAPI::SearchList other;
    EXPECT_EQ(state().okEvent(&context(), nullptr, &other), &state());
    EXPECT_EQ(log.count("LDAPStateViewingList::okEvent - unrecognised widget", 3), 1);
    EXPECT_EQ(calls(), Texts{});
}

// --- Dialling ---

TEST_F(DirectoryList, DialsTheSelectedEntryWithOk)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        threeFound();
        press(OK);
        dialingStops();
        press(DOWN);
        press(OK);
        dialingStops();
        EXPECT_EQ(context().m_LdapEntryIndex, 1);
        EXPECT_EQ(current(), &state());
        EXPECT_EQ(queries(), Texts{});
    }
    EXPECT_EQ(calls(), (Texts{"MakeCall 100", "MakeCall 200", "MakeCall 100", "MakeCall 200"}));
}

TEST_F(DirectoryList, NeedsTwoKeysAfterTheName)
{
    startOnItsTab();
    finds({person("Miller", "Amy", {{Utils::OFFICE, "100"}})});
    type("mil");
    type("*");
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 100"});
}

TEST_F(DirectoryList, SaysThatAnEntryHasNoNumber)
{
    startOnItsTab();
    threeFound();
    type("n");
    press(OK);
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(notification(), "dialler.noNumber");
    EXPECT_FALSE(context().m_CallRequestInitiated);
}

TEST_F(DirectoryList, RefusesASecondCall)
{
    startOnItsTab();
    threeFound();
    press(OK);
    EXPECT_TRUE(context().m_CallRequestInitiated);
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 100"});
    EXPECT_EQ(log.count("okEvent received when call already initiated - ignore", 3), 1);
}

TEST_F(DirectoryList, AllowsAnotherCallAfterOneThatFailed)
{
    startOnItsTab();
    threeFound();
    callsFail(0);
    press(OK);
    EXPECT_EQ(notification(), "no.line.available");
    EXPECT_FALSE(context().m_CallRequestInitiated);
}

TEST_F(DirectoryList, DialsNobodyFromARowThatIsNoEntry)
{
    startOnItsTab();
    threeFound();
    press(OK);
    dialingStops();
    // The rows stay, their entries are gone.
    state().clearTextMembers();
    results().depopulate();
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 100"});
}

TEST_F(DirectoryList, DialsDigitsThatAreTypedOffHook)
{
    startOnItsTab();
    dialingStarts("0");
    type("30");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 030"});
    dialingStops();
    EXPECT_EQ(popups(), 0u);
    EXPECT_FALSE(context().m_CallRequestInitiated);
}

TEST_F(DirectoryList, OffersTheSelectedEntryOffHook)
{
    startOnItsTab();
    threeFound();
    press(DOWN);
    dialingStarts("");
    EXPECT_EQ(screen(), "Milton, Bob\n200\n#\n");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 200"});
}

TEST_F(DirectoryList, AsksForANumberOffHookWhereNoEntryIsSelected)
{
    startOnItsTab();
    dialingStarts("");
    EXPECT_EQ(screen(), "dialler.Please.Dial\n#\n");

    startOnItsTab(Bar::None);
    threeFound();
    press(UP);
    dialingStarts("");
    EXPECT_EQ(screen().substr(0, 19), "dialler.Please.Dial");
}

TEST_F(DirectoryList, UndoesEditingOfTheDiallerWithBack)
{
    startOnItsTab();
    dialingStarts("0");
    type("30");
    press(BACK);
    EXPECT_EQ(screen(), "0\n#\n");
    EXPECT_EQ(handle.left, Texts{});
}

TEST_F(DirectoryList, TellsWhoIsDialled)
{
    startOnItsTab();
    threeFound();
    CallPartyIdentifier nobody;
    EXPECT_FALSE(mode().getDialPartyDetails(nobody));
    press(OK);
    CallPartyIdentifier party;
    EXPECT_TRUE(mode().getDialPartyDetails(party));
    EXPECT_EQ(party.getFirstname(), "Amy");
    EXPECT_EQ(party.getSurname(), "Miller");
    EXPECT_EQ(party.getNumber(), "100");
    EXPECT_EQ(party.getIcon(), CallPartyIdentifier::OFFICE);
    CallPartyIdentifier atHome;
    atHome.setNumber("101");
    EXPECT_TRUE(mode().getDialPartyDetails(atHome));
    EXPECT_EQ(atHome.getIcon(), CallPartyIdentifier::PRIVATE);
    CallPartyIdentifier stranger;
    stranger.setNumber("999");
    EXPECT_FALSE(mode().getDialPartyDetails(stranger));
    EXPECT_EQ(stranger.getSurname(), "");
}
