#include <framework/services/InterDigitTimeOutEvent.h>

#include "ModeScreens.h"

namespace {

using DisplayAPI::Command;

class ModeRouting : public ModeScreens {
protected:
    void offerAndShowPbxTab()
    {
        offerPbxPhonebook();
        startNoting();
        selectTab(PBX_TAB);
    }
};

TEST_F(ModeRouting, HandsKeysToTheStateOfTheOfficeTab)
{
    startNoting();
    command(Command::OK);
    command(Command::SAVE);
    command(Command::BACK);
    command(Command::SCREEN);

    EXPECT_EQ(told, Texts({"local ok", "local save", "local back", "local screen"}));
    for (const auto* line : {"commandAction() - OK Event\n", "commandAction() - SAVE Event\n",
                             "commandAction() - BACK Event\n", "commandAction() - SCREEN Event\n"})
        EXPECT_EQ(log.count(line, 5), 1) << line;
    EXPECT_EQ(log.count("commandAction()", 5), 4);
    EXPECT_EQ(modeLines(5).front(), "commandAction()");
}

TEST_F(ModeRouting, HandsKeysToTheStateOfTheLdapTab)
{
    startNoting();
    selectTab(LDAP_TAB);
    command(Command::OK);

    EXPECT_EQ(told, Texts({"ldap ok"}));
}

TEST_F(ModeRouting, PassesTheContextTheCommandAndTheDisplayable)
{
    startNoting();
    Command back(Command::BACK, {});
    mode().commandAction(&back, &context().m_ContextMenu);

    EXPECT_EQ(local.context, &context());
    EXPECT_EQ(local.command, &back);
    EXPECT_EQ(local.displayable, &context().m_ContextMenu);
}

TEST_F(ModeRouting, TakesTheContextKeyFromWhatHasTheKeys)
{
    startNoting();
    command(Command::RIGHT, tabs().getCurrentDisplayable());

    EXPECT_EQ(told, Texts({"local right"}));
    EXPECT_TRUE(log.has("commandAction() - RIGHT Event\n", 5));
}

TEST_F(ModeRouting, DoesNotKnowTheContextKeyOfAnythingElse)
{
    startNoting();
    command(Command::RIGHT, &context().m_ContextMenu);

    EXPECT_TRUE(told.empty());
    EXPECT_FALSE(log.has("commandAction() - RIGHT Event\n"));
    EXPECT_TRUE(log.has("commandAction() - unknown Event\n", 5));
}

TEST_F(ModeRouting, IgnoresCommandsThatItDoesNotKnow)
{
    startNoting();
    command(2);
    command(0);

    EXPECT_TRUE(told.empty());
    EXPECT_EQ(log.count("commandAction() - unknown Event\n", 5), 2);
}

TEST_F(ModeRouting, LeavesTheOldStateAndEntersTheNewOne)
{
    startNoting();
    local.next = &other;
    command(Command::OK);

    EXPECT_EQ(told, Texts({"local ok", "local exit", "other enter"}));
    EXPECT_EQ(context().m_pCurrentState, &other);
    EXPECT_EQ(context().m_pLdapCurrentState, &ldap);
}

TEST_F(ModeRouting, EntersTheNewStateAsTheCurrentOne)
{
    startNoting();
    local.next = &other;
    PhonebookStateBase* currentThen = nullptr;
    other.onEvent = [&] { currentThen = context().m_pCurrentState; };
    command(Command::OK);

    EXPECT_EQ(currentThen, &other);
}

TEST_F(ModeRouting, StaysWhenAHandlerAnswersNoState)
{
    startNoting();
    local.next = nullptr;
    command(Command::OK);
    mode().itemStateChanged(nullptr);

    EXPECT_EQ(told, Texts({"local ok", "local item"}));
    EXPECT_EQ(context().m_pCurrentState, &local);
}

TEST_F(ModeRouting, FollowsTransitionsOfItemsAndDialling)
{
    startNoting();
    const std::vector<std::function<void()>> events{
        [&] { mode().itemStateChanged(nullptr); }, [&] { mode().handleDialingStarted("1"); },
        [&] { mode().handleDialingStopped(); }, [&] { mode().handleInterDigitTimeout(nullptr); }};
    local.next = &other;
    for (const auto& event : events) {
        context().m_pCurrentState = &local;
        event();
        EXPECT_EQ(context().m_pCurrentState, &other);
    }
}

TEST_F(ModeRouting, FollowsNoTransitionOfDiallerItemsKeysAndTimers)
{
    startNoting();
    local.next = &other;
    mode().handlePopupDiallerItemStateChanged(nullptr);
    mode().buttonPressedEvent(PhysDefs::keyFunctionType::Function, 9, PhysDefs::actionType::Released, "nine");
    mode().timerEvent(4);

    EXPECT_EQ(told, Texts({"local diallerItem", "local button 4 9 2 nine", "local timer 4"}));
    EXPECT_EQ(context().m_pCurrentState, &local);
}

TEST_F(ModeRouting, LogsTheNameOfEveryHandler)
{
    startNoting();
    mode().itemStateChanged(nullptr);
    mode().handlePopupDiallerItemStateChanged(nullptr);
    mode().handleDialingStarted("1");
    mode().handleDialingStopped();
    mode().handleInterDigitTimeout(nullptr);
    mode().buttonPressedEvent(PhysDefs::keyFunctionType::Digit, 1, PhysDefs::actionType::Pressed, "1");
    mode().timerEvent(1);

    for (const auto* line :
         {"itemStateChanged()", "handlePopupDiallerItemStateChanged()", "handleDialingStarted()",
          "handleDialingStopped()", "handleInterDigitTimeout()", "buttonPressedEvent()", "timerEvent()"})
        EXPECT_EQ(log.count(line, 5), 1) << line;
    for (const auto& line : log.lines())
        EXPECT_EQ(line.component, "PhonebookPhonelet");
    EXPECT_FALSE(modeLines(5).empty());
}

TEST_F(ModeRouting, DropsEverythingOnThePbxTab)
{
    offerAndShowPbxTab();
    CallPartyIdentifier party;
    for (const int type : {Command::OK, Command::SAVE, Command::BACK, Command::SCREEN})
        command(type);
    command(Command::RIGHT, &tabs());
    mode().itemStateChanged(nullptr);
    mode().handlePopupDiallerItemStateChanged(nullptr);
    mode().buttonPressedEvent(PhysDefs::keyFunctionType::Digit, 1, PhysDefs::actionType::Pressed, "1");
    mode().timerEvent(1);
    mode().handleDialingStarted("1");
    mode().handleDialingStopped();
    mode().handleInterDigitTimeout(nullptr);

    EXPECT_FALSE(mode().getDialPartyDetails(party));
    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(log.has("itemStateChanged() - event ignored if currentState==NULL (i.e. system tab)", 5));
    EXPECT_TRUE(log.has("buttonPressedEvent() - ignored if currentState==NULL (i.e. system tab)", 5));
    EXPECT_TRUE(log.has("getCurrentStateMachine() - system tab: returned NULL!", 5));
}

TEST_F(ModeRouting, ClosesTheDiallerBeforeItSaysThatDiallingStopped)
{
    startNoting();
    display().setCurrent(&context().m_PopupDialer);
    DisplayAPI::Displayable* pTop = nullptr;
    local.onEvent = [&] { pTop = display().getCurrent(); };
    mode().handleDialingStopped();

    EXPECT_EQ(told, Texts({"local dialingStopped"}));
    EXPECT_EQ(pTop, &tabs());
}

TEST_F(ModeRouting, HandsTheTimedOutDigitsOn)
{
    startNoting();
    InterDigitTimeOutEvent event("123");
    mode().handleInterDigitTimeout(&event);

    EXPECT_EQ(told, Texts({"local interDigitTimeout"}));
}

TEST_F(ModeRouting, OnlyPrintsADiallingWithAParty)
{
    startNoting();
    CallPartyIdentifier party;
    party.setNumber("4711");
    testing::internal::CaptureStdout();
    mode().handleDialingStarted("12", party);

    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "handleDialingStarted() - should not reach here, 12, 4711\n");
    EXPECT_TRUE(told.empty());
}

TEST_F(ModeRouting, AnswersDigitAnalysisByItsOwnName)
{
    startNoting();
    std::string name;
    mode().getEventHandlerName(name);
    mode().handleInitialDigitTimeout(nullptr);

    EXPECT_EQ(name, "PhonebookMode");
    EXPECT_TRUE(mode().isDiallingOk());
    EXPECT_TRUE(log.has("isDiallingOk() - not implemented", 5));
    EXPECT_TRUE(told.empty());
}

TEST_F(ModeRouting, IsTheOneThatDigitAnalysisReportsTo)
{
    start();

    EXPECT_EQ(digits.provider, static_cast<DigitAnalysisServiceEventIfc*>(&mode()));
}

TEST_F(ModeRouting, KnowsTheMachineOfEachTab)
{
    offerPbxPhonebook();
    startNoting();
    EXPECT_EQ(mode().getCurrentStateMachine(), &context().m_pCurrentState);
    EXPECT_EQ(mode().getCurrentState(), &local);
    selectTab(LDAP_TAB);
    EXPECT_EQ(mode().getCurrentStateMachine(), &context().m_pLdapCurrentState);
    EXPECT_EQ(mode().getCurrentState(), &ldap);
    selectTab(PBX_TAB);
    EXPECT_EQ(mode().getCurrentStateMachine(), nullptr);
    EXPECT_EQ(mode().getCurrentState(), nullptr);
    for (const auto* line : {"getCurrentStateMachine() - main tab", "getCurrentStateMachine() - ldap tab",
                             "getCurrentStateMachine() - system tab: returned NULL!"})
        EXPECT_EQ(log.count(line, 5), 2) << line;
}

TEST_F(ModeRouting, HasNoMachineForAForeignTab)
{
    startNoting();
    const int foreign = tabs().addTab(DisplayAPI::TranslationInfo::plain("?"), nullptr);
    selectTab(foreign);

    EXPECT_EQ(mode().getCurrentStateMachine(), nullptr);
    EXPECT_TRUE(log.has("getCurrentStateMachine() - unrecognized tab: returned NULL!", 5));
}

TEST_F(ModeRouting, SaysWhichTabIsActive)
{
    offerPbxPhonebook();
    startNoting();
    EXPECT_TRUE(mode().isLocalTabActive());
    EXPECT_FALSE(mode().isLdapTabActive());
    EXPECT_FALSE(mode().isPBXTabActive());
    EXPECT_EQ(modeLines(5),
              Texts({"isLocalTabActive() - local tab active", "isLdapTabActive() - LDAP tab not active",
                     "isPBXTabActive() - PBX tab not active"}));
    log.clear();
    selectTab(LDAP_TAB);
    EXPECT_TRUE(mode().isLdapTabActive());
    selectTab(PBX_TAB);
    EXPECT_TRUE(mode().isPBXTabActive());
    EXPECT_FALSE(mode().isLocalTabActive());
    EXPECT_EQ(modeLines(5), Texts({"isLdapTabActive() - LDAP tab active", "isPBXTabActive() - PBX tab active",
                                   "isLocalTabActive() - local tab not active"}));
}

TEST_F(ModeRouting, TracesTheStateByItsName)
{
    startNoting();
    EventContext& c = context();
    const std::vector<std::pair<PhonebookStateBase*, std::string>> names{
        {&c.m_ViewingList, "stateViewingList"},
        {&c.m_CreatingEntry, "stateCreatingEntry"},
        {&c.m_DisplayOptions, "stateDisplayOptions"},
        {&c.m_EditGroup, "stateEditGroup"},
        {&c.m_FatalError, "stateFatalError"},
        {&c.m_ViewingGroups, "stateViewingGroups"},
        {&c.m_Refreshing, "stateRefreshing"},
        {&c.m_LdapViewingList, "ldapStateViewingList"},
        {&c.m_LdapFind, "ldapStateFind"},
        {&c.m_LdapDisplayOptions, "ldapStateDisplayOptions"},
        {&c.m_LdapCreatingEntry, "ldapStateCreatingEntry"},
        {&c.m_LdapDisplayingEntry, "ldapStateDisplayingEntry"},
        {&c.m_LdapSavingEntry, "ldapStateSavingEntry"},
        {&c.m_LdapQualifierOptions, "unrecognised"},
        {&local, "unrecognised"},
    };
    for (const auto& [pState, name] : names) {
        c.m_pCurrentState = pState;
        log.clear();
        EXPECT_EQ(mode().getCurrentState(), pState);
        EXPECT_TRUE(log.has("traceState(----state is " + name + ")", 5)) << name;
    }
}

TEST_F(ModeRouting, KeepsTheRedialNumber)
{
    startNoting();
    mode().updateRedialNumber("0301234");

    EXPECT_EQ(context().m_RedialNumber, "0301234");
}

TEST_F(ModeRouting, ReadsAKnownSoftwareTypeOnce)
{
    const std::vector<std::pair<std::string, int>> types{
        {"Veltrix SIP", 1}, {"Veltrix QRA", 2}, {"Veltrix TDM", 3}};
    start();
    for (const auto& [name, number] : types) {
        PhonebookMode fresh(&phonelet(), &telephone, &list(), &directory, nullptr, nullptr, nullptr, nullptr,
                            nullptr, &configuration, nullptr, true);
        useSoftware(name);
        EXPECT_EQ(fresh.getSoftwareType(), number);
        configuration.reads.clear();
        EXPECT_EQ(fresh.getSoftwareType(), number);
        EXPECT_TRUE(configuration.reads.empty());
    }
}

TEST_F(ModeRouting, ReadsAnUnknownSoftwareTypeEachTime)
{
    useSoftware("Veltrix H323");
    startNoting();
    EXPECT_EQ(mode().getSoftwareType(), 0);
    EXPECT_EQ(mode().getSoftwareType(), 0);
    EXPECT_EQ(log.count("initSoftwareType() - unrecognized value", 3), 2);

    useSoftware("Veltrix SIP");
    EXPECT_EQ(mode().getSoftwareType(), 1);
}

TEST_F(ModeRouting, KeepsGoingWhenAHandlerThrows)
{
    startNoting();
    local.onEvent = [] { throw std::out_of_range("past the end"); };
    EXPECT_THROW(command(Command::OK), std::out_of_range);
    EXPECT_THROW(mode().handleDialingStarted("1"), std::out_of_range);
    local.onEvent = nullptr;
    told.clear();
    command(Command::OK);
    mode().handleDialingStarted("1");

    EXPECT_EQ(told, Texts({"local ok", "local dialingStarted 1"}));
}

} // namespace
