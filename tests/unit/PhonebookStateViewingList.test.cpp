#include <framework/services/CallPartyIdentifier.h>

#include "PhonebookScreens.h"

namespace {

class ViewingList : public PhonebookScreens {
protected:
    PhonebookStateViewingList& state() { return context().m_ViewingList; }
    DisplayAPI::SearchList& widget() { return *context().m_pDisplayList; }
    std::string selected() { return widget().getText(widget().getSelectedIndex()); }
    void enter()
    {
        state().enterStateEvent(&context());
        host.settle();
    }
    void threeContacts()
    {
        contact("Adams", "Amy", {{"Office", "100"}});
        contact("Baker", "Bob", {{"Mobile", "200"}});
        contact("Clark", "Cara");
    }
    int waitAnimations(DisplayAPI::SearchList& list)
    {
        DisplayAPI::FrameScreen painted;
        list.paint(painted, 1);
        return painted.waiting ? 1 : 0;
    }
};

} // namespace

// --- The rows ---

TEST_F(ViewingList, ShowsEveryContactWithTheIconOfItsDefaultNumber)
{
    contact("Adams", "Amy", {{"Office", "1"}});
    contact("Baker", "Bob", {{"Office2", "1"}});
    contact("Clark", "Cara", {{"Mobile", "1"}});
    contact("Dunn", "Dan", {{"Private", "1"}});
    contact("Evans", "Eve");
    start();
    EXPECT_EQ(rows(), (Texts{"Adams, Amy", "Baker, Bob", "Clark, Cara", "Dunn, Dan", "Evans, Eve"}));
    EXPECT_EQ(icons(), (std::vector<int>{3, 4, 5, 2, 0}));
    EXPECT_EQ(widget().getSelectedIndex(), 0);
    EXPECT_TRUE(log.has("PhonebookStateViewingList - Size = 5", 5));
}

TEST_F(ViewingList, WritesNamesAsTheOptionsSay)
{
    threeContacts();
    directory.options["DisplayOptions"] = 3;
    start();
    EXPECT_EQ(rows(), (Texts{"A Adams", "B Baker", "C Clark"}));
}

TEST_F(ViewingList, PutsTheOptionsFirstWithoutSoftKeys)
{
    threeContacts();
    start(Bar::None);
    EXPECT_EQ(rows(), (Texts{"list.options", "Adams, Amy", "Baker, Bob", "Clark, Cara"}));
    EXPECT_EQ(widget().getSelectedIndex(), 0);
}

TEST_F(ViewingList, SaysThatThereAreNoContacts)
{
    start();
    EXPECT_EQ(rows(), Texts{"no.contacts"});
    EXPECT_EQ(widget().getSelectedIndex(), 0);
}

TEST_F(ViewingList, ShowsTheOptionsAloneWithoutContactsAndSoftKeys)
{
    start(Bar::None);
    EXPECT_EQ(rows(), Texts{"list.options"});
    EXPECT_EQ(widget().getSelectedIndex(), 0);
}

TEST_F(ViewingList, TakesNoTimePerRowForLogging)
{
    for (int i = 0; i < 50; ++i)
        contact("Name" + std::to_string(100 + i), "");
    start();
    context().reallocateDisplayList(true);
    log.clear();
    enter();
    const auto lines = log.lines();
    EXPECT_EQ(widget().size(), 50);
    EXPECT_LT(
        std::count_if(lines.begin(), lines.end(),
                      [](const LogLine& line) { return line.file == "./src/PhonebookStateViewingList"; }),
        50);
}

TEST_F(ViewingList, KeepsRowsThatAreThere)
{
    threeContacts();
    start();
    widget().append(new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("mine"), 1));
    enter();
    EXPECT_EQ(widget().size(), 4);
}

TEST_F(ViewingList, HasNoTitleWhileTheWholePhonebookIsShown)
{
    start();
    EXPECT_EQ(title(), "");
}

TEST_F(ViewingList, IsTitledByTheGroupThatIsShown)
{
    directory.groups->updateGroup({1, "Friends"});
    telephone.translator.prefix = "de:";
    start();
    showGroup(0);
    EXPECT_EQ(title(), "de:no.group");
    showGroup(1);
    EXPECT_EQ(title(), "Friends");
    ASSERT_EQ(context().m_pGroupList->findGroup("group.copied.contacts"), 2);
    showGroup(2);
    EXPECT_EQ(title(), "de:group.copied.contacts");
}

TEST_F(ViewingList, IsTitledAnewEvenIfItsRowsStay)
{
    threeContacts();
    start();
    list().populate(0);
    enter();
    EXPECT_EQ(title(), "no.group");
}

TEST_F(ViewingList, HasNoTitleForAGroupThatIsNotThere)
{
    start();
    showGroup(99);
    EXPECT_EQ(title(), "");
    context().m_pGroupList.reset();
    showGroup(1);
    EXPECT_EQ(title(), "");
}

// --- Entering and leaving ---

TEST_F(ViewingList, TakesThePlaceOfTheEmptyListOfTheStart)
{
    start();
    EXPECT_EQ(context().m_pPlaceholderList, nullptr);
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(0), &widget());
    EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
}

TEST_F(ViewingList, KeepsOffTheScreenWhileAnotherTabIsShown)
{
    start();
    context().m_pPlaceholderList = std::move(context().m_pDisplayList);
    context().reallocateDisplayList(false);
    context().m_pTabScreen->setCurrentTabIndex(1);
    enter();
    EXPECT_NE(context().m_pPlaceholderList, nullptr);
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(0), context().m_pPlaceholderList.get());
}

TEST_F(ViewingList, IsTheScreenItselfWithoutTabs)
{
    start();
    context().m_pTabScreen->removeTab(1);
    context().m_pTabScreen->removeTab(0);
    context().m_pPlaceholderList = std::make_unique<DisplayAPI::SearchList>();
    enter();
    EXPECT_EQ(display().getCurrent(), &widget());
    EXPECT_EQ(context().m_pPlaceholderList, nullptr);
}

TEST_F(ViewingList, EntersInItsOrder)
{
    start();
    log.clear();
    enter();
    int last = -1;
    for (const char* step :
         {"PhonebookStateViewingList::enterStateEvent", "PhonebookStateBaseDialer::setCallContextProvider()",
          "PhonebookStateViewingList::constructDisplayList", "ListCommands::constructMenuCommands()",
          "ListPopups::construct()", "PhonebookStateViewingList::setDisplayListCurrent"}) {
        const int position = log.position(step);
        EXPECT_GT(position, last) << step;
        last = position;
    }
}

TEST_F(ViewingList, EndsTheWaitingOfTheGroupList)
{
    start();
    context().m_pGroupDisplayList->setWaitAnimation(true);
    enter();
    EXPECT_EQ(waitAnimations(*context().m_pGroupDisplayList), 0);
    context().m_pGroupDisplayList.reset();
    enter(); // without one too
}

TEST_F(ViewingList, ForgetsAPopupThatItBuildsAnew)
{
    threeContacts();
    start();
    press(MENU);
    choose("delete");
    choose("delete");
    ASSERT_EQ(screen(), "! delete.entry.confirm(Adams, Amy)\n");
    context().m_pDisplayableBeforePopup = display().getCurrent();
    const auto oldPopup = display().getCurrent()->watch();
    enter();
    EXPECT_TRUE(oldPopup.expired());
    EXPECT_EQ(context().m_pDisplayableBeforePopup, nullptr);

    context().m_pDisplayableBeforePopup = context().m_pTabScreen.get();
    enter();
    EXPECT_EQ(context().m_pDisplayableBeforePopup, context().m_pTabScreen.get());
}

TEST_F(ViewingList, KeepsItsCommandsForItsLife)
{
    start();
    const auto* pDetails = state().commands().command(ListCommands::DETAILS);
    enter();
    EXPECT_EQ(state().commands().command(ListCommands::DETAILS), pDetails);
}

TEST_F(ViewingList, ClosesMenusAndPopupsOfDiallingWhenItIsLeft)
{
    threeContacts();
    start();
    press(MENU);
    dialingStarts("0");
    EXPECT_EQ(popups(), 2u);
    state().exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(digits.provider, nullptr);
}

TEST_F(ViewingList, LetsTheUserLeaveForAnotherTabUnlessTheDiallerIsUp)
{
    threeContacts();
    start();
    EXPECT_TRUE(state().tabValid(&context()));
    press(MENU);
    EXPECT_TRUE(state().tabValid(&context()));
    dialingStarts("0");
    EXPECT_FALSE(state().tabValid(&context()));
}

// --- Somebody else's phonebook being fetched ---

TEST_F(ViewingList, SaysThatADirectoryIsFetched)
{
    start();
    EXPECT_TRUE(state().mobilityPhonebookRefreshActive(&context(), true));
    host.settle();
    EXPECT_EQ(screen(), "~ Mobility.Fetching.Directory\n");
    EXPECT_EQ(top().type, 1);
    EXPECT_TRUE(state().mobilityPhonebookRefreshPending());
    const auto id = top().id;

    EXPECT_FALSE(state().mobilityPhonebookRefreshActive(&context(), false));
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_FALSE(state().mobilityPhonebookRefreshPending());

    state().mobilityPhonebookRefreshActive(&context(), true);
    host.settle();
    EXPECT_EQ(top().id, id); // the same one again
}

TEST_F(ViewingList, HasNothingFetchedAtFirst)
{
    start();
    EXPECT_FALSE(state().mobilityPhonebookRefreshActive(&context(), false));
    EXPECT_FALSE(state().mobilityPhonebookRefreshPending());
    EXPECT_EQ(state().tabFrom(&context()), &state());
    EXPECT_EQ(state().tabTo(&context()), &state());
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ViewingList, TakesTheFetchingMessageAlongWithItsTab)
{
    start();
    state().mobilityPhonebookRefreshActive(&context(), true);
    EXPECT_EQ(state().tabFrom(&context()), &state());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(
        log.has("PhonebookStateViewingList::tabFrom - mFetchingPopupActive = true - dismiss popup", 5));
    EXPECT_EQ(state().tabTo(&context()), &state());
    host.settle();
    EXPECT_EQ(screen(), "~ Mobility.Fetching.Directory\n");
}

TEST_F(ViewingList, ShowsTheFetchingMessageAgainOnReturn)
{
    start();
    state().mobilityPhonebookRefreshActive(&context(), true);
    state().exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(state().mobilityPhonebookRefreshPending());
    enter();
    EXPECT_EQ(screen(), "~ Mobility.Fetching.Directory\n");
    EXPECT_TRUE(log.has("PhonebookStateViewingList::enterStateEvent - mFetchingPopupActive = true - call "
                        "mobilityPhonebookRefreshActive(true)",
                        5));
}

// --- Typing ---

TEST_F(ViewingList, JumpsToTheNameThatIsTyped)
{
    threeContacts();
    start();
    type("ba");
    EXPECT_EQ(selected(), "Baker, Bob");
    EXPECT_TRUE(log.has("Exact match found, index in directory list = 1", 5));
    EXPECT_TRUE(log.has("Selected index on display = 1", 5));
}

TEST_F(ViewingList, JumpsToTheClosestName)
{
    threeContacts();
    start();
    type("bz");
    EXPECT_EQ(selected(), "Baker, Bob");
    EXPECT_TRUE(log.has("Closest match found, index in directory list = 1", 5));
}

TEST_F(ViewingList, CountsTheOptionsRowWhenItJumps)
{
    threeContacts();
    start(Bar::None);
    type("b");
    EXPECT_EQ(selected(), "Baker, Bob");
    EXPECT_TRUE(log.has("Selected index on display = 2", 5));
}

TEST_F(ViewingList, StaysOnItsOnlyRowWhenThereAreNoContacts)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        type("b");
        EXPECT_EQ(widget().getSelectedIndex(), 0);
    }
}

// --- OK ---

TEST_F(ViewingList, DialsTheDefaultNumber)
{
    threeContacts();
    start();
    press(DOWN);
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 200"});
    EXPECT_EQ(context().m_SelectedEntry.getSurname(), "Baker");
    EXPECT_EQ(context().m_SelectedEntryIndex, 1);
    EXPECT_TRUE(context().m_CallRequestInitiated);
    EXPECT_EQ(mode().getCurrentState(), &state());
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ViewingList, DialsTheEntryBelowTheOptionsRow)
{
    threeContacts();
    start(Bar::None);
    press(DOWN);
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 100"});
}

TEST_F(ViewingList, SaysThatAContactHasNoNumber)
{
    threeContacts();
    start();
    type("c");
    press(OK);
    EXPECT_EQ(screen(), "! dialler.noNumber\n");
    EXPECT_FALSE(context().m_CallRequestInitiated);
    wait(1000ms);
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ViewingList, RefusesASecondCall)
{
    threeContacts();
    start();
    press(OK);
    press(OK);
    EXPECT_EQ(calls().size(), 1u);
    EXPECT_EQ(log.count("okEvent received when call already initiated - ignore", 2), 1);
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ViewingList, RefusesNoCallOnSipTelephones)
{
    configuration.items["software-type"] = "Veltrix SIP";
    threeContacts();
    start();
    press(OK);
    press(OK);
    EXPECT_EQ(calls().size(), 2u);
}

TEST_F(ViewingList, MayDialAgainAfterAFailedCall)
{
    threeContacts();
    start();
    callsFail(0);
    press(OK);
    EXPECT_FALSE(context().m_CallRequestInitiated);
    EXPECT_EQ(screen(), "! no.line.available\n");
    wait(3000ms);
    press(OK);
    EXPECT_EQ(calls().size(), 2u);
}

TEST_F(ViewingList, NeverDialsAnEntryThatItCouldNotRead)
{
    threeContacts();
    start();
    press(OK);
    dialingStops();
    directory.failure = "damaged";
    press(DOWN);
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 100"});
    EXPECT_EQ(context().m_SelectedEntryIndex, 0);
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ViewingList, OpensTheOptionsFromTheirRow)
{
    threeContacts();
    start(Bar::None);
    press(OK);
    EXPECT_EQ(rows(), (Texts{"new.contact", "display", "delete.all", "groups.menu"}));
    EXPECT_EQ(calls(), Texts{});
}

TEST_F(ViewingList, DoesNothingWithOkWithoutContacts)
{
    start();
    press(OK);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(calls(), Texts{});
}

TEST_F(ViewingList, OpensTheOptionsWithOkWithoutContactsAndSoftKeys)
{
    start(Bar::None);
    press(OK);
    EXPECT_EQ(rows(), (Texts{"new.contact", "groups.menu"}));
}

TEST_F(ViewingList, TakesKeysOfItsListOnlyButClearsTheDirectorysMarksForAll)
{
    threeContacts();
    start();
    const std::string longText(60, 'x');
    using Handler = PhonebookStateBase* (PhonebookStateViewingList::*)(EventContext*, DisplayAPI::Command*,
                                                                       DisplayAPI::Displayable*);
    for (const Handler handler :
         {&PhonebookStateViewingList::okEvent, &PhonebookStateViewingList::rightEvent}) {
        context().m_SelectedEntry.setLDAPPhonebookListEntry(true);
        context().m_SelectedEntry.setLDAPPhonebookFullEntry(true);
        log.clear();
        EXPECT_EQ((state().*handler)(&context(), nullptr, &context().m_ContextMenu), &state());
        EXPECT_TRUE(log.has("PhonebookList::setLDAPPhonebookList()", 5));
        context().m_SelectedEntry.setSurname(longText);
        context().m_SelectedEntry.setOffice(longText);
        EXPECT_EQ(context().m_SelectedEntry.getSurname().size(), 30u);
        EXPECT_EQ(context().m_SelectedEntry.getOffice().size(), 50u);
    }
    host.settle();
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(popups(), 0u);
}

// --- Back ---

TEST_F(ViewingList, LeavesThePhonebookFromTheWholeList)
{
    threeContacts();
    start();
    press(BACK);
    EXPECT_EQ(handle.left, Texts{"PhoneBookPhonelet"});
    EXPECT_EQ(mode().getCurrentState(), &state());
}

TEST_F(ViewingList, ToleratesAHostWithoutAHandle)
{
    start();
    context().m_pPhoneletHandle = nullptr;
    press(BACK);
    EXPECT_EQ(handle.left, Texts{});
}

TEST_F(ViewingList, ReturnsFromAGroupToTheWholePhonebook)
{
    directory.groups->updateGroup({1, "Friends"});
    threeContacts();
    directory.records.begin()->second["Group"] = "1";
    start();
    showGroup(1);
    ASSERT_EQ(rows(), Texts{"Adams, Amy"});
    const auto groupsList = widget().watch();
    bool waited = false;
    directory.whileBusy = [&] { waited = host.frame->base.waiting && title() == "Friends"; };

    press(BACK);

    EXPECT_TRUE(waited);
    EXPECT_TRUE(groupsList.expired());
    EXPECT_EQ(rows(), (Texts{"Adams, Amy", "Baker, Bob", "Clark, Cara"}));
    EXPECT_EQ(title(), "");
    EXPECT_FALSE(host.frame->base.waiting);
    EXPECT_EQ(context().m_pPlaceholderList, nullptr);
    EXPECT_EQ(handle.left, Texts{});
    press(BACK);
    EXPECT_EQ(handle.left, Texts{"PhoneBookPhonelet"});
}

TEST_F(ViewingList, LetsNoListWaitAfterItReturnedFromAGroup)
{
    start();
    showGroup(0);
    context().m_pTabScreen->setCurrentTabIndex(1);
    state().backEvent(&context(), nullptr, &widget());
    ASSERT_NE(context().m_pPlaceholderList, nullptr); // its tab still holds it
    EXPECT_EQ(waitAnimations(*context().m_pPlaceholderList), 0);
}

TEST_F(ViewingList, ReturnsFromTheEntriesWithoutGroupToo)
{
    threeContacts();
    start();
    showGroup(0);
    press(BACK);
    EXPECT_EQ(list().getGroupIndication(), -1);
    EXPECT_EQ(handle.left, Texts{});
}

TEST_F(ViewingList, StaysOnBackFromElsewhere)
{
    start();
    EXPECT_EQ(state().backEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().backEvent(&context(), nullptr, context().m_pTabScreen.get()), &state());
    EXPECT_EQ(handle.left, Texts{});
}

// --- Dialling that begins and ends elsewhere ---

TEST_F(ViewingList, OpensTheDiallerWithTheFirstDigitsAndGoesOnFromThere)
{
    threeContacts();
    start();
    dialingStarts("0");
    EXPECT_EQ(top().dialler.edit, "0");
    EXPECT_TRUE(top().dialler.editMode);
    type("3012");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 03012"});
}

TEST_F(ViewingList, OffersTheSelectedContactOffHook)
{
    threeContacts();
    start();
    press(DOWN);
    dialingStarts("");
    EXPECT_EQ(screen(), "Baker, Bob\n200\n#\n");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 200"});
}

TEST_F(ViewingList, AsksForANumberOffHookWhenTheContactHasNone)
{
    threeContacts();
    start();
    type("c");
    dialingStarts("");
    EXPECT_EQ(screen(), "dialler.Please.Dial\n#\n");
    EXPECT_EQ(commands(), Texts{"cancel"});
}

TEST_F(ViewingList, AsksForANumberOffHookWhenNoContactIsSelected)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        dialingStarts("");
        EXPECT_EQ(screen().substr(0, 19), "dialler.Please.Dial");
    }
}

TEST_F(ViewingList, AsksForANumberOnTheOptionsRow)
{
    threeContacts();
    start(Bar::None);
    dialingStarts("");
    EXPECT_EQ(screen(), "dialler.Please.Dial\n#\n> cancel\n");
}

TEST_F(ViewingList, ClosesTheDiallerWhenDiallingStops)
{
    threeContacts();
    start();
    press(OK);
    dialingStarts("0");
    dialingStops();
    EXPECT_EQ(popups(), 0u);
    EXPECT_FALSE(context().m_CallRequestInitiated);
    press(OK);
    EXPECT_EQ(calls().size(), 2u);
}

TEST_F(ViewingList, KeepsTheMenuWhenDiallingStopsWithoutADialler)
{
    threeContacts();
    start();
    callsFail(0);
    press(OK);
    wait(3000ms);
    press(MENU);
    dialingStops();
    EXPECT_EQ(popups(), 1u);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Menu);
}

TEST_F(ViewingList, TellsWhoIsDialled)
{
    contact("Adams", "Amy", {{"Office2", "100"}, {"Picture", "amy.png"}});
    start();
    press(OK);
    CallPartyIdentifier party;
    EXPECT_TRUE(mode().getDialPartyDetails(party));
    EXPECT_EQ(party.getFirstname(), "Amy");
    EXPECT_EQ(party.getSurname(), "Adams");
    EXPECT_EQ(party.getNumber(), "100");
    EXPECT_EQ(party.getPicture(), "amy.png");
    EXPECT_EQ(party.getIcon(), CallPartyIdentifier::OFFICE2);
}

TEST_F(ViewingList, TellsWhoHasTheNumberThatIsDialled)
{
    contact("Adams", "Amy", {{"Office", "100"}, {"Office2", "101"}, {"Mobile", "102"}, {"Private", "103"}});
    start();
    press(OK);
    const std::vector<std::pair<std::string, int>> icons{{"100", 2}, {"101", 3}, {"102", 4}, {"103", 1}};
    for (const auto& [number, icon] : icons) {
        CallPartyIdentifier party;
        party.setNumber(number);
        EXPECT_TRUE(mode().getDialPartyDetails(party));
        EXPECT_EQ(party.getSurname(), "Adams");
        EXPECT_EQ(party.getNumber(), number);
        EXPECT_EQ(party.getIcon(), icon);
    }
    CallPartyIdentifier stranger;
    stranger.setNumber("999");
    EXPECT_FALSE(mode().getDialPartyDetails(stranger));
    EXPECT_EQ(stranger.getSurname(), "");
}

TEST_F(ViewingList, KnowsNobodyWithoutANumber)
{
    threeContacts();
    start();
    CallPartyIdentifier party;
    EXPECT_FALSE(mode().getDialPartyDetails(party));
    type("c");
    press(OK);
    EXPECT_FALSE(mode().getDialPartyDetails(party));
}

TEST_F(ViewingList, RedialsTheJournalsNumberByDefault)
{
    threeContacts();
    start();
    mode().updateRedialNumber("0815");
    type("c");
    dialingStarts("");
    choose("dialler.redial(0815)");
    EXPECT_EQ(calls(), Texts{"MakeCall 0815"});
}

TEST_F(ViewingList, RedialsTheSelectedContactWhenItIsAllowedOnce)
{
    threeContacts();
    start();
    mode().updateRedialNumber("0815");
    press(OK);
    context().setCallRequestInitiated(false);
    type("c");
    press(MENU); // reads Clark, who has no number
    press(BACK);
    dialingStarts("");
    context().m_SelectedEntry.setOffice("300");
    context().m_SelectedEntry.setDefaultNumber("Office");
    state().allowRedial();
    choose("dialler.redial(0815)");
    context().setCallRequestInitiated(false);
    choose("dialler.redial(0815)");
    EXPECT_EQ(calls(), (Texts{"MakeCall 100", "MakeCall 300", "MakeCall 0815"}));
}

TEST_F(ViewingList, DialsWhatIsTypedEvenIfRedialIsAllowed)
{
    threeContacts();
    start();
    mode().updateRedialNumber("0815");
    type("c");
    dialingStarts("");
    state().allowRedial();
    type("42");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 42"});
}

TEST_F(ViewingList, RefusesRedialWhileACallIsUnderWay)
{
    threeContacts();
    start();
    mode().updateRedialNumber("0815");
    type("c");
    dialingStarts("");
    context().setCallRequestInitiated(true);
    state().allowRedial();
    choose("dialler.redial(0815)");
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(log.count("- okEvent received when call already initiated - ignore", 2), 1);
}

TEST_F(ViewingList, ForgetsThatRedialIsAllowedOnEntryAndWhenDiallingStops)
{
    threeContacts();
    start();
    mode().updateRedialNumber("0815");
    state().allowRedial();
    enter();
    type("c");
    dialingStarts("");
    choose("dialler.redial(0815)");
    state().allowRedial();
    dialingStops();
    dialingStarts("");
    choose("dialler.redial(0815)");
    EXPECT_EQ(calls(), (Texts{"MakeCall 0815", "MakeCall 0815"}));
}

TEST_F(ViewingList, StaysWhenCallControlReportsItsService)
{
    start();
    EXPECT_EQ(state().doCSTAServiceInitiatedEvent(&context(), nullptr), &state());
    EXPECT_TRUE(log.has("PhonebookStateViewingList::doCSTAServiceInitiatedEvent", 5));
}
