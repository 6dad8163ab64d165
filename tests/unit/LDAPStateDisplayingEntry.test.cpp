#include <framework/services/InterDigitTimeOutEvent.h>

#include "DirectoryEntryScreens.h"
#include "TraceLines.h"

namespace {

constexpr auto nSOURCE = "./src/LDAPStateDisplayingEntry";

class DirectoryEntry : public DirectoryEntryScreens {
protected:
    LDAPStateDisplayingEntry& state() { return context().m_LdapDisplayingEntry; }
    bool inForm() { return current() == &state(); }

    void open(const PhonebookFullEntry& entry)
    {
        context().m_LdapEntry = entry;
        go(state());
    }
    void openAmy(Bar bar = Bar::SoftKeys)
    {
        startOnItsTab(bar);
        open(amy());
    }
    Texts values()
    {
        Texts texts;
        for (const auto& painted : fields())
            texts.push_back(painted.value);
        return texts;
    }
    std::pair<std::string, int> selectedNumberAndIcon()
    {
        std::string number = "something";
        auto icon = CallPartyIdentifier::MOBILE;
        state().getSelectedNumberAndIcon(number, icon);
        return {number, icon};
    }

    const std::vector<std::pair<std::string, std::string>> NUMBERS{
        {"business1", "1"}, {"business2", "2"}, {"mobile", "3"}, {"private", "4"}};
    const Texts OTHERS{"last.name", "first.name", "company", "address", "address2", "job.function", "email"};
};

} // namespace

// --- From the list, and back to it ---

TEST_F(DirectoryEntry, ShowsAndDialsWhoIsSelectedInTheList)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        csta.sent.clear();
        openMenuOf({amysAttributes(), {{Utils::SURNAME, "Zack"}}});
        const auto found = context().m_pLdapDisplayList->size();
        choose("details");
        EXPECT_TRUE(inForm());
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(value("last.name"), "Adams");
        EXPECT_EQ(value("email"), "amy@acme.uk");
        focus("business2");
        press(OK);
        EXPECT_EQ(calls(), Texts{"MakeCall 2"});
        EXPECT_TRUE(inList());
        EXPECT_EQ(context().m_pLdapDisplayList->size(), found);
        EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
        // Asked when the call is under way: the list knows whom the form dialled.
        CallPartyIdentifier party;
        party.setNumber("2");
        EXPECT_TRUE(mode().getDialPartyDetails(party));
        EXPECT_EQ(party.getSurname(), "Adams");
        EXPECT_EQ(party.getIcon(), 3);
        dialingStops();
    }
}

TEST_F(DirectoryEntry, LeavesTheListAsItWas)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        openMenuOf({amysAttributes(), {{Utils::SURNAME, "Zack"}}});
        press(BACK);
        const auto before = rows();
        press(MENU);
        choose("details");
        press(BACK);
        EXPECT_TRUE(inList());
        EXPECT_EQ(rows(), before);
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(directory.searches.size(), 1u);
        directory.searches.clear();
    }
}

// --- What is shown ---

TEST_F(DirectoryEntry, ShowsEveryFieldOfTheEntry)
{
    using enum FrameField::Kind;
    struct Expected {
        std::string label;
        std::string value;
        FrameField::Kind kind;
        int maxLength;
    };
    const std::vector<Expected> expected{{"form.options", "exit", Selection, -1},
                                         {"last.name", "Adams", Text, 30},
                                         {"first.name", "Amy", Text, 30},
                                         {"business1", "1", Number, 25},
                                         {"business2", "2", Number, 25},
                                         {"mobile", "3", Number, 25},
                                         {"private", "4", Number, 25},
                                         {"company", "Acme", Text, 25},
                                         {"address", "Lane 1", Text, 25},
                                         {"address2", "London", Text, 25},
                                         {"job.function", "Editor", Text, 25},
                                         {"email", "amy@acme.uk", Text, 25}};
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        openAmy(bar);
        const auto painted = fields();
        ASSERT_EQ(painted.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(painted[i].label, expected[i].label);
            EXPECT_EQ(painted[i].value, expected[i].value);
            EXPECT_EQ(painted[i].kind, expected[i].kind) << expected[i].label;
            EXPECT_EQ(painted[i].maxLength, expected[i].maxLength) << expected[i].label;
            EXPECT_EQ(painted[i].readOnly, i > 0) << expected[i].label;
            EXPECT_EQ(painted[i].icon, 0) << expected[i].label;
        }
        EXPECT_EQ(title(), "details");
        EXPECT_EQ(focused(), "last.name");
        EXPECT_EQ(display().getCurrent(), &form());
    }
}

TEST_F(DirectoryEntry, OffersToLeaveAndToSave)
{
    openAmy();
    EXPECT_EQ(choices("form.options"), (Texts{"exit", "ldap.save.entry.prompt"}));
    EXPECT_EQ(selection("form.options").getSelectedCommand()->getIcon(), 0);
}

TEST_F(DirectoryEntry, OffersNothingTwice)
{
    openAmy();
    open(amy());
    EXPECT_EQ(choices("form.options"), (Texts{"exit", "ldap.save.entry.prompt"}));
    EXPECT_EQ(fields().size(), 12u);
}

TEST_F(DirectoryEntry, ShowsNothingOfTheEntryBefore)
{
    openAmy();
    open(person({{Utils::FIRSTNAME, "Bob"}, {Utils::MOBILE, "5"}}));
    EXPECT_EQ(values(), (Texts{"exit", "", "Bob", "", "", "5", "", "", "", "", "", ""}));
}

TEST_F(DirectoryEntry, BeginsAtItsNameAndToLeaveEachTime)
{
    openAmy();
    step("form.options");
    ASSERT_EQ(value("form.options"), "ldap.save.entry.prompt");
    press(BACK);
    log.clear();
    open(amy());
    EXPECT_EQ(value("form.options"), "exit");
    EXPECT_EQ(focused(), "last.name");
    EXPECT_FALSE(log.has("LDAPStateDisplayingEntry::itemStateChangedEvent()"));
}

TEST_F(DirectoryEntry, KeepsItsWidgets)
{
    openAmy();
    const auto id = top().id;
    auto* pField = &widget<DisplayAPI::TextField>("mobile");
    auto* pDial = state().getDialCommand();
    open(amyWith(Utils::MOBILE, "5"));
    EXPECT_EQ(top().id, id);
    EXPECT_EQ(&widget<DisplayAPI::TextField>("mobile"), pField);
    EXPECT_EQ(state().getDialCommand(), pDial);
}

TEST_F(DirectoryEntry, CannotBeChanged)
{
    openAmy();
    const auto before = values();
    for (const auto& painted : fields()) {
        if (painted.label == "form.options")
            continue;
        fill(painted.label, "7");
        host.tap("7");
        wait(2000ms);
    }
    EXPECT_EQ(values(), before);
    EXPECT_TRUE(inForm());
    EXPECT_FALSE(log.has("LDAPStateDisplayingEntry::itemStateChangedEvent()"));
}

TEST_F(DirectoryEntry, IsReadOnlyAgainOnEveryVisit)
{
    openAmy();
    widget<DisplayAPI::TextField>("company").setReadOnly(false);
    open(amy());
    EXPECT_TRUE(field("company").readOnly);
}

TEST_F(DirectoryEntry, ShowsAndDialsWhatIsLongerThanAFieldTakes)
{
    const std::string name(200, 'x');
    const std::string number(60, '7');
    startOnItsTab();
    open(person({{Utils::SURNAME, name}, {Utils::MOBILE, number}, {Utils::EMAIL, name}}));
    EXPECT_EQ(value("last.name"), name);
    EXPECT_EQ(value("mobile"), number);
    EXPECT_EQ(value("email"), name);
    focus("mobile");
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall " + number});
}

TEST_F(DirectoryEntry, ShowsANumberAsTheDirectoryWritesIt)
{
    startOnItsTab();
    open(amyWith(Utils::OFFICE, "+44 (0)20 7946-0001 ext. 5"));
    focus("business1");
    EXPECT_EQ(value("business1"), "+44 (0)20 7946-0001 ext. 5");
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall +44 (0)20 7946-0001 ext. 5"});
}

// --- OK on a number ---

TEST_F(DirectoryEntry, DialsTheNumberInFocusAndReturnsToTheList)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        csta.sent.clear();
        Texts expected;
        for (const auto& [label, number] : NUMBERS) {
            open(amy());
            focus(label);
            press(OK);
            expected.push_back("MakeCall " + number);
            EXPECT_EQ(calls(), expected);
            EXPECT_TRUE(inList());
            EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
            EXPECT_TRUE(context().m_CallRequestInitiated);
            EXPECT_EQ(context().m_LastDialledNumber, number);
            dialingStops();
        }
    }
}

TEST_F(DirectoryEntry, SaysDialOnTheSoftKeyOfANumber)
{
    openAmy();
    for (const auto& [label, number] : NUMBERS) {
        focus(label);
        EXPECT_EQ(host.frame->softKeys[0].label, "dial") << label;
    }
    EXPECT_EQ(state().getDialCommand()->getCommandType(), 6);
    for (const auto& label : OTHERS) {
        focus(label);
        EXPECT_EQ(host.frame->softKeys[0].label, "phone.ok") << label;
    }
}

TEST_F(DirectoryEntry, HearsNothingOfOkWhereThereIsNoNumber)
{
    startOnItsTab();
    open(person({{Utils::SURNAME, "Adams"}, {Utils::COMPANY, "Acme"}}));
    log.clear();
    for (const auto& [label, number] : NUMBERS) {
        focus(label);
        press(OK);
    }
    for (const auto& label : OTHERS) {
        focus(label);
        press(OK);
    }
    EXPECT_FALSE(log.has("LDAPStateDisplayingEntry::okEvent()"));
    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(inForm());
    EXPECT_EQ(calls(), Texts{});
}

TEST_F(DirectoryEntry, KnowsAnewWhichNumbersThereAre)
{
    openAmy();
    open(amyWith(Utils::MOBILE, ""));
    focus("mobile");
    press(OK);
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(host.frame->softKeys[0].label, "phone.ok");
    open(amyWith(Utils::MOBILE, "5"));
    focus("mobile");
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 5"});
}

TEST_F(DirectoryEntry, RefusesACallWhileAnotherOneIsPlaced)
{
    openAmy();
    context().setCallRequestInitiated(true);
    focus("mobile");
    press(OK);
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(log.count("okEvent received when call already initiated - ignore", 3), 1);
    EXPECT_TRUE(inForm());
    EXPECT_TRUE(context().m_CallRequestInitiated);
    dialingStops();
    EXPECT_FALSE(context().m_CallRequestInitiated);
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 3"});
}

TEST_F(DirectoryEntry, RefusesNoCallOnSipTelephones)
{
    configuration.items["software-type"] = "Veltrix SIP";
    openAmy();
    context().setCallRequestInitiated(true);
    focus("mobile");
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 3"});
}

TEST_F(DirectoryEntry, StaysWhenTheCallFails)
{
    openAmy();
    focus("mobile");
    for (const auto& [cause, message] : std::vector<std::pair<int, std::string>>{
             {0, "! no.line.available\n"}, {1, "! line.selection.needed\n"}}) {
        callsFail(cause);
        press(OK);
        EXPECT_EQ(screen(), message);
        EXPECT_TRUE(inForm());
        EXPECT_FALSE(context().m_CallRequestInitiated);
        wait(15000ms);
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(focused(), "mobile");
    }
    callsFail(2);
    press(OK);
    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(inForm());
    EXPECT_EQ(calls().size(), 3u);
}

TEST_F(DirectoryEntry, LeavesTheNumberToAHostThatDialsItself)
{
    openAmy();
    handle.answer = 1;
    focus("business2");
    press(OK);
    ASSERT_EQ(handle.offers.size(), 1u);
    EXPECT_EQ(handle.offers[0].number, "2");
    EXPECT_EQ(calls(), Texts{});
    EXPECT_TRUE(inList());
}

TEST_F(DirectoryEntry, SaysThatThereIsNoNumberWhenAskedForOneElsewhere)
{
    openAmy();
    EXPECT_EQ(state().okEvent(&context(), nullptr, &form()), &state());
    host.settle();
    EXPECT_EQ(screen(), "! dialler.noNumber\n");
    EXPECT_FALSE(context().m_CallRequestInitiated);
}

TEST_F(DirectoryEntry, IgnoresOkOnAnotherWidget)
{
    const auto line = "LDAPStateDisplayingEntry::okEvent - ok event on unrecognised widget";
    startOnItsTab();
    EXPECT_EQ(state().okEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(log.count(line), 1);
    open(amy());
    EXPECT_EQ(state().okEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().okEvent(&context(), nullptr, context().m_pLdapDisplayList.get()), &state());
    EXPECT_EQ(log.count(line), 3);
    EXPECT_EQ(popups(), 0u);
}

TEST_F(DirectoryEntry, KnowsTheNumberInFocusAndItsIcon)
{
    using NumberAndIcon = std::pair<std::string, int>;
    const auto noItem = "LDAPStateDisplayingEntry::getSelectedNumberAndIcon - no selected item";
    const auto noForm = "LDAPStateDisplayingEntry::getSelectedNumberAndIcon - form not created yet";
    startOnItsTab();
    EXPECT_EQ(selectedNumberAndIcon(), NumberAndIcon("", 0));
    EXPECT_EQ(log.count(noForm), 1);

    open(amy());
    const std::vector<int> icons{2, 3, 4, 1};
    for (std::size_t i = 0; i < NUMBERS.size(); ++i) {
        focus(NUMBERS[i].first);
        EXPECT_EQ(selectedNumberAndIcon(), NumberAndIcon(NUMBERS[i].second, icons[i]));
    }
    EXPECT_FALSE(log.has(noItem));
    for (const auto& label : OTHERS) {
        focus(label);
        EXPECT_EQ(selectedNumberAndIcon(), NumberAndIcon("", 0)) << label;
    }
    EXPECT_EQ(log.count(noItem), static_cast<int>(OTHERS.size()));
    form().clear();
    EXPECT_EQ(selectedNumberAndIcon(), NumberAndIcon("", 0));
    EXPECT_EQ(log.count(noItem), static_cast<int>(OTHERS.size()) + 1);
    EXPECT_EQ(log.count(noForm), 1);
}

// --- The options ---

TEST_F(DirectoryEntry, LeavesForTheListWhenAskedTo)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        openAmy(bar);
        log.clear();
        focus("form.options");
        press(OK);
        EXPECT_TRUE(inList());
        EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
        EXPECT_TRUE(log.has("LDAPStateDisplayingEntry::itemStateChangedEvent()"));
        EXPECT_FALSE(log.has("LDAPStateDisplayingEntry::okEvent()"));
    }
}

TEST_F(DirectoryEntry, SavesWhenAskedTo)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        openAmy(bar);
        pick("form.options", "ldap.save.entry.prompt");
        press(OK);
        EXPECT_EQ(current(), &context().m_LdapSavingEntry);
        EXPECT_EQ(screen(), "! ldap.entry.saved\n");
        EXPECT_EQ(directory.records.size(), 1u);
        wait(3000ms);
        EXPECT_TRUE(inList());
        EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
    }
}

TEST_F(DirectoryEntry, StepsThroughTheOptionsInSilence)
{
    openAmy();
    log.clear();
    for (const auto direction : {RIGHT, RIGHT, LEFT})
        step("form.options", direction);
    EXPECT_TRUE(inForm());
    EXPECT_FALSE(log.has("LDAPStateDisplayingEntry::itemStateChangedEvent()"));
}

TEST_F(DirectoryEntry, OnlyLeavesWhenTheOptionsReportOk)
{
    openAmy();
    pick("form.options", "ldap.save.entry.prompt");
    EXPECT_EQ(state().okEvent(&context(), nullptr, &form()), &context().m_LdapViewingList);
    EXPECT_EQ(directory.records.size(), 0u);
}

TEST_F(DirectoryEntry, IgnoresAnOptionThatItDoesNotKnow)
{
    openAmy();
    DisplayAPI::MenuCommand other(DisplayAPI::TranslationInfo::plain("other"));
    auto& options = selection("form.options");
    options.setSelectedCommand(&other);
    EXPECT_EQ(state().itemStateChangedEvent(&context(), &options), &state());
    EXPECT_EQ(log.count("PhonebookMode::CreatingEntry - unrecognised command on options selection field"), 1);
}

TEST_F(DirectoryEntry, IgnoresAChangeOfAnotherField)
{
    const auto line = "Item state change on unknown field";
    startOnItsTab();
    EXPECT_EQ(state().itemStateChangedEvent(&context(), nullptr), &state());
    EXPECT_EQ(log.count(line), 1);
    open(amy());
    EXPECT_EQ(state().itemStateChangedEvent(&context(), nullptr), &state());
    EXPECT_EQ(state().itemStateChangedEvent(&context(), &widget<DisplayAPI::TextField>("mobile")), &state());
    EXPECT_EQ(log.count(line), 3);
    EXPECT_TRUE(inForm());
}

// --- Other keys ---

TEST_F(DirectoryEntry, ReturnsToTheListWithBack)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        openAmy(bar);
        press(BACK);
        EXPECT_TRUE(inList());
        EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
        EXPECT_EQ(handle.left, Texts{});
    }
}

TEST_F(DirectoryEntry, StaysWithBackOnThePopupsOfDialling)
{
    openAmy();
    DisplayAPI::Displayable* const popups[] = {
        &context().m_PopupDialer, &context().m_PopupLineSelectionNeeded, &context().m_PopupNoLineAvailable};
    for (auto* pPopup : popups)
        EXPECT_EQ(state().backEvent(&context(), nullptr, pPopup), &state());
}

TEST_F(DirectoryEntry, SavesWithTheSaveKey)
{
    openAmy();
    press(SAVE);
    EXPECT_EQ(current(), &context().m_LdapSavingEntry);
    EXPECT_EQ(screen(), "! ldap.entry.saved\n");
    EXPECT_EQ(directory.records.size(), 1u);
    EXPECT_TRUE(log.has("LDAPStateDisplayingEntry::saveEvent()"));
}

TEST_F(DirectoryEntry, StaysWithEveryOtherKey)
{
    openAmy();
    const auto before = host.screen();
    press(MENU);
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(inForm());
    EXPECT_TRUE(mode().isLdapTabActive());
    EXPECT_EQ(host.screen(), before);
    EXPECT_TRUE(log.has("LDAPStateDisplayingEntry::rightEvent()", 5));
    EXPECT_TRUE(log.has("tab() - tab not allowed"));
}

// --- Digits that are dialled meanwhile ---

TEST_F(DirectoryEntry, OpensTheDiallerAndReturnsToTheListAfterTheCall)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        openAmy(bar);
        dialingStarts("0");
        EXPECT_EQ(top().dialler.edit, "0");
        type("30");
        EXPECT_TRUE(inForm());
        choose("dialler.dial");
        EXPECT_EQ(calls().back(), "MakeCall 030");
        EXPECT_TRUE(inList());
        dialingStops();
        EXPECT_EQ(popups(), 0u);
        EXPECT_FALSE(context().m_CallRequestInitiated);
    }
}

TEST_F(DirectoryEntry, OffersTheNumberInFocusOffHook)
{
    openAmy();
    focus("mobile");
    dialingStarts("");
    EXPECT_EQ(screen(), "Adams, Amy\n3\n#\n");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 3"});
    EXPECT_TRUE(inList());
}

TEST_F(DirectoryEntry, WritesTheNameAsTheDirectorysListDoes)
{
    openAmy();
    context().m_pLdapPhonebookList->setDisplayMode(displayMode::FirstnameSurname);
    focus("mobile");
    dialingStarts("");
    EXPECT_EQ(top().dialler.line1, "Amy Adams");
}

TEST_F(DirectoryEntry, AsksForANumberOffHookElsewhere)
{
    openAmy();
    dialingStarts("");
    EXPECT_EQ(screen(), "dialler.Please.Dial\n#\n");
    choose("cancel");
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Form);
    EXPECT_TRUE(inForm());
}

TEST_F(DirectoryEntry, ShowsTheDiallerAfreshOnBack)
{
    openAmy();
    dialingStarts("0");
    type("30");
    ASSERT_EQ(top().dialler.edit, "030");
    press(BACK);
    EXPECT_EQ(top().dialler.line2, "0");
    EXPECT_EQ(top().dialler.edit, "");
    EXPECT_TRUE(inForm());
}

TEST_F(DirectoryEntry, ClosesTheDiallerWhenDiallingEnds)
{
    openAmy();
    dialingStarts("0");
    EXPECT_EQ(state().dialingStoppedEvent(&context()), &state());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(display().getCurrent(), &form());
}

TEST_F(DirectoryEntry, DialsWhenTheDigitsAreComplete)
{
    openAmy();
    InterDigitTimeOutEvent event("0815");
    mode().handleInterDigitTimeout(&event);
    host.settle();
    EXPECT_EQ(calls(), Texts{"MakeCall 0815"});
    EXPECT_TRUE(inList());
}

TEST_F(DirectoryEntry, HearsOfDigitsWhileItIsShown)
{
    openAmy();
    EXPECT_EQ(digits.provider, &mode());
    dialingStarts("0");
    state().exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(digits.provider, nullptr);
    EXPECT_EQ(popups(), 0u);
    phonelet().hide();
    open(amy());
    EXPECT_EQ(digits.provider, nullptr);
}

// --- Who is dialled ---

TEST_F(DirectoryEntry, TellsWhoHasTheNumberInFocus)
{
    openAmy();
    const std::vector<int> icons{2, 3, 4, 1};
    for (std::size_t i = 0; i < NUMBERS.size(); ++i) {
        focus(NUMBERS[i].first);
        CallPartyIdentifier party;
        EXPECT_TRUE(mode().getDialPartyDetails(party));
        EXPECT_EQ(party.getFirstname(), "Amy");
        EXPECT_EQ(party.getSurname(), "Adams");
        EXPECT_EQ(party.getNumber(), NUMBERS[i].second);
        EXPECT_EQ(party.getIcon(), icons[i]);
        EXPECT_EQ(party.getPicture(), "");
    }
}

TEST_F(DirectoryEntry, KnowsNobodyElsewhereOrWithoutANumber)
{
    startOnItsTab();
    CallPartyIdentifier party;
    EXPECT_FALSE(state().getDialPartyDetails(party, &context()));
    open(amyWith(Utils::MOBILE, ""));
    for (const auto* label : {"form.options", "last.name", "mobile", "email"}) {
        focus(label);
        EXPECT_FALSE(mode().getDialPartyDetails(party)) << label;
        EXPECT_EQ(party.getSurname(), "");
        EXPECT_EQ(party.getIcon(), 0);
    }
}

TEST_F(DirectoryEntry, KnowsNobodyForAnotherNumberThanTheOneInFocus)
{
    openAmy();
    focus("mobile");
    CallPartyIdentifier party;
    party.setNumber("999");
    EXPECT_FALSE(mode().getDialPartyDetails(party));
    EXPECT_EQ(party.getSurname(), "");
    party.setNumber("3");
    EXPECT_TRUE(mode().getDialPartyDetails(party));
    EXPECT_EQ(party.getSurname(), "Adams");
}

// --- The log ---

TEST_F(DirectoryEntry, FillsTheFormBeforeTheCommandsAndShowsItLast)
{
    startOnItsTab();
    log.clear();
    open(amy());
    Texts steps;
    for (const auto& line : traces(nSOURCE)) {
        if (line.find("Form") != std::string::npos || line.find("Commands") != std::string::npos)
            steps.push_back(line);
    }
    EXPECT_EQ(steps,
              (Texts{"LDAPStateDisplayingEntry::populateForm()", "LDAPStateDisplayingEntry::createForm()",
                     "LDAPStateDisplayingEntry::constructMenuCommands()",
                     "LDAPStateDisplayingEntry::setFormAsCurrentDisplay()"}));
    EXPECT_TRUE(wroteInOrder(
        {"PhonebookStateBaseDialer::setCallContextProvider()", "LDAPStateDisplayingEntry::populateForm()"}));
}

TEST_F(DirectoryEntry, TracesItsOperations)
{
    openAmy();
    auto* pContext = &context();
    auto& entry = state();
    CallPartyIdentifier party;
    std::string number;
    auto icon = CallPartyIdentifier::NONE;
    expectTraces("LDAPStateDisplayingEntry",
                 {{"getSelectedNumberAndIcon", [&] { entry.getSelectedNumberAndIcon(number, icon); }},
                  {"getDialCommand", [&] { entry.getDialCommand(); }},
                  {"getDialPartyDetails", [&] { entry.getDialPartyDetails(party, pContext); }},
                  {"backEvent", [&] { entry.backEvent(pContext, nullptr, nullptr); }},
                  {"okEvent", [&] { entry.okEvent(pContext, nullptr, nullptr); }},
                  {"rightEvent", [&] { entry.rightEvent(pContext, nullptr, nullptr); }},
                  {"saveEvent", [&] { entry.saveEvent(pContext, nullptr, nullptr); }},
                  {"itemStateChangedEvent", [&] { entry.itemStateChangedEvent(pContext, nullptr); }},
                  {"dialingStartedEvent", [&] { entry.dialingStartedEvent(pContext, ""); }},
                  {"dialingStoppedEvent", [&] { entry.dialingStoppedEvent(pContext); }},
                  {"stateAfterDialing", [&] { entry.stateAfterDialing(pContext); }},
                  {"exitStateEvent", [&] { entry.exitStateEvent(pContext); }},
                  {"enterStateEvent", [&] { entry.enterStateEvent(pContext); }}});
}
