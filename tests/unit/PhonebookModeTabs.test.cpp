#include "ModeScreens.h"

namespace {

using DisplayAPI::Command;

class ModeTabs : public ModeScreens {
protected:
    // Neither a SIP telephone nor one that has a PBX tab.
    void startOnQra()
    {
        useSoftware("Veltrix QRA");
        startNoting();
    }
    void startOnSip()
    {
        useSoftware("Veltrix SIP");
        startNoting();
    }
    Texts shownTabs() const { return host.frame->tabs; }
    bool highlighted(DisplayAPI::SearchList& searchList)
    {
        DisplayAPI::FrameScreen screen;
        searchList.paint(screen, 5);
        return screen.highlighted;
    }
    bool searchOpen()
    {
        DisplayAPI::FrameScreen screen;
        context().m_pLdapDisplayList->paint(screen, 5);
        return screen.searchOpen;
    }
    // What the LDAP list shows, in so many rows.
    void fillLdapList(int rowCount)
    {
        context().m_pLdapDisplayList->clear();
        for (int row = 0; row < rowCount; ++row)
            context().m_pLdapDisplayList->append(
                new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("row"), 1));
    }
    void rememberDirectory(int state) { telephone.states["PhoneBookPhonelet"] = state; }
    int remembered() { return telephone.states["PhoneBookPhonelet"]; }
    void enterTabBar()
    {
        tabs().enterTabBar();
        host.settle();
    }
};

TEST_F(ModeTabs, ShowsTheOfficeAndTheLdapTab)
{
    start();

    EXPECT_EQ(shownTabs(), Texts({"office", "ldap"}));
    EXPECT_EQ(currentTab(), OFFICE_TAB);
    EXPECT_EQ(context().m_OfficeTabIndex, OFFICE_TAB);
    EXPECT_EQ(context().m_LdapTabIndex, LDAP_TAB);
    EXPECT_EQ(mode().getPBXTabIndex(), -1);
    EXPECT_NE(context().m_pLdapPhonebookList, nullptr);
    EXPECT_TRUE(log.has("PhonebookMode() - Create LDAP Tab for non-TDM variants", 5));
    EXPECT_TRUE(log.has("PhonebookMode() - Set LDAP State for non-TDM variants\n", 5));
    EXPECT_FALSE(log.has("TDM ZD_HI - set no scroll on Popup dialler"));
}

TEST_F(ModeTabs, EntersTheLdapStateBeforeTheLocalOne)
{
    start();

    EXPECT_GE(log.position("LDAPStateViewingList::enterStateEvent()"), 0);
    EXPECT_LT(log.position("LDAPStateViewingList::enterStateEvent()"),
              log.position("PhonebookStateViewingList::enterStateEvent"));
}

TEST_F(ModeTabs, IsBuiltInAFixedOrder)
{
    offerPbxPhonebook();
    load();

    EXPECT_TRUE(wroteInOrder(
        {"PhonebookMode::PhonebookMode()", "PhonebookMode() - Create LDAP Tab for non-TDM variants",
         "PhonebookMode() - Set LDAP State for non-TDM variants\n", "LDAPStateViewingList::enterStateEvent()",
         "PhonebookStateViewingList::enterStateEvent", "PhonebookMode::processRequestSystemStatusRequest()",
         "addPBXPhonebookTab() - Setting PBX Tab to pos 2 for non-TDM variants"}));
}

TEST_F(ModeTabs, IsBuiltInAFixedOrderOnTdmVariants)
{
    HardwareVersion::setHWVariant(11);
    offerPbxPhonebook();
    load();

    EXPECT_TRUE(wroteInOrder(
        {"PhonebookMode::PhonebookMode()", "PhonebookMode() - Don't create LDAP Tab for TDM variants",
         "PhonebookMode() - Don't set LDAP State for TDM variants\n",
         "PhonebookStateViewingList::enterStateEvent", "TDM ZD_HI - set no scroll on Popup dialler",
         "PhonebookMode::processRequestSystemStatusRequest()",
         "addPBXPhonebookTab() - Setting PBX Tab to pos 1 for non-TDM variants"}));
}

TEST_F(ModeTabs, ReachesTheTabBarAboveItsListsAndEndsBelowThem)
{
    contact("Adams", "Amy");
    contact("Baker", "Bob");
    start();
    for (const int tab : {OFFICE_TAB, LDAP_TAB}) {
        selectTab(tab);
        fillLdapList(2);
        host.settle();
        auto& searchList = tab == OFFICE_TAB ? *context().m_pDisplayList : *context().m_pLdapDisplayList;
        for (int times = 0; times < 3; ++times)
            press(DOWN);
        EXPECT_EQ(searchList.getSelectedIndex(), 1) << tab;
        for (int times = 0; times < 2; ++times)
            press(UP);
        EXPECT_TRUE(tabs().isTabBarFocused()) << tab;
        tabs().leaveTabBar();
    }
}

TEST_F(ModeTabs, HasNoLdapTabOnTdmVariants)
{
    for (const int variant : {10, 11}) {
        HardwareVersion::setHWVariant(variant);
        log.clear();
        load();

        EXPECT_EQ(tabs().numberOfTabs(), 1) << variant;
        EXPECT_EQ(context().m_LdapTabIndex, -1);
        EXPECT_EQ(context().m_pLdapPhonebookList, nullptr);
        EXPECT_TRUE(log.has("PhonebookMode() - Don't create LDAP Tab for TDM variants", 5));
        EXPECT_TRUE(log.has("PhonebookMode() - Don't set LDAP State for TDM variants\n", 5));
        EXPECT_TRUE(log.has("TDM ZD_HI - set no scroll on Popup dialler", 5));
        EXPECT_FALSE(log.has("LDAPStateViewingList::enterStateEvent()"));
        DisplayAPI::FrameScreen dialler;
        context().m_PopupDialer.paint(dialler, 3);
        EXPECT_FALSE(dialler.dialler.scrolls);
        phonelet().stopPhonelet();
    }
}

TEST_F(ModeTabs, TakesWhatItNeedsFromTheTelephone)
{
    start(Bar::None);

    EXPECT_FALSE(context().m_HasSoftKeyBar);
    EXPECT_EQ(context().m_pDisplay, &display());
    EXPECT_EQ(context().m_pTranslator, telephone.getTranslator());
    EXPECT_EQ(context().m_pPhoneletHandle, &handle);
    EXPECT_EQ(context().m_pPhonelet, &phonelet());
    EXPECT_EQ(context().m_pPhoneletContext, &telephone);
    EXPECT_EQ(context().m_pListener, &mode());
    EXPECT_EQ(context().m_pPhonebookList, phonelet().getPhonebookList());
    EXPECT_EQ(context().m_pCstaService, &csta);
    EXPECT_EQ(context().m_pDirectoryService, &directory);
    EXPECT_EQ(context().m_pLocalMgmt, &configuration);
    EXPECT_EQ(context().m_pDataAccessService, &dataAccess);
    EXPECT_EQ(context().m_pDigitAnalysisService, &digits);
    EXPECT_EQ(context().m_pTeamService, &team);
    EXPECT_EQ(context().m_pObexService, &obex);
}

TEST_F(ModeTabs, ListensToTheSharedWidgets)
{
    start();
    for (DisplayAPI::Displayable* pWidget : std::vector<DisplayAPI::Displayable*>{
             context().m_pDisplayList.get(), context().m_pLdapDisplayList.get(),
             context().m_pGroupDisplayList.get(), &context().m_ContextMenu, &context().m_PopupConfirm,
             &tabs(), &context().m_PopupDialer, &context().m_PopupNoLineAvailable,
             &context().m_PopupLineSelectionNeeded})
        EXPECT_EQ(pWidget->getCommandListener(), static_cast<DisplayAPI::CommandListener*>(&mode()));
}

TEST_F(ModeTabs, HearsOfTheListsItemsAndThePhoneletOfTheDiallers)
{
    startNoting();
    host.type("m");
    host.advance(2s);
    EXPECT_EQ(told, Texts({"local item"}));

    log.clear();
    told.clear();
    display().setCurrent(&context().m_PopupDialer);
    host.tap("1");
    EXPECT_EQ(told, Texts({"local diallerItem"}));
    EXPECT_TRUE(log.has("PhonebookPhonelet::itemStateChanged() - entering", 5));
}

TEST_F(ModeTabs, HearsOfTheLdapListsItems)
{
    startNoting();
    selectTab(LDAP_TAB);
    host.settle();
    host.type("m");
    host.advance(2s);
    EXPECT_EQ(told, Texts({"ldap item"}));
}

TEST_F(ModeTabs, MakesTheDiallersCommands)
{
    load();
    Texts labels;
    for (const auto& pCommand : context().m_DialerCommands)
        labels.push_back(pCommand->getLabel().getKey());
    EXPECT_EQ(labels, Texts({"dialler.dial", "cancel", "edit.number"}));

    host.drive(display());
    display().setCurrent(&context().m_PopupDialer);
    host.settle();
    EXPECT_EQ(commands(), Texts({"dialler.dial"}));
}

TEST_F(ModeTabs, SaysForThreeSecondsThatThereIsNoLine)
{
    start();
    display().setCurrent(&context().m_PopupNoLineAvailable);
    host.settle();
    EXPECT_EQ(top().text, "no.line.available");
    EXPECT_EQ(top().type, 6);
    host.advance(2999ms);
    EXPECT_EQ(popups(), 1u);
    host.advance(1ms);
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ModeTabs, AsksForFifteenSecondsToChooseALine)
{
    start();
    display().setCurrent(&context().m_PopupLineSelectionNeeded);
    host.settle();
    EXPECT_EQ(top().text, "line.selection.needed");
    EXPECT_EQ(top().type, 7);
    host.advance(14999ms);
    EXPECT_EQ(popups(), 1u);
    host.advance(1ms);
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ModeTabs, StepsToTheNextTabWithTheTabKey)
{
    startOnQra();
    mode().tab();

    EXPECT_EQ(currentTab(), LDAP_TAB);
    EXPECT_EQ(told, Texts({"local tabValid", "local tabFrom", "ldap tabTo"}));
    EXPECT_EQ(modeLines(5).front(), "tab()");
    EXPECT_TRUE(log.has("tab() - new tab index: 1", 5));
    EXPECT_EQ(remembered(), 2);
    mode().tab();
    EXPECT_EQ(currentTab(), OFFICE_TAB);
    EXPECT_EQ(remembered(), 1);
}

TEST_F(ModeTabs, MovesTheCallContextProviderOnSipTelephones)
{
    startOnSip();
    mode().tab();

    EXPECT_EQ(told, Texts({"local tabValid", "local tabFrom", "local clearProvider", "ldap tabTo",
                           "ldap setProvider"}));
}

TEST_F(ModeTabs, LeavesTheProviderToTheTransitions)
{
    startOnSip();
    RecordingState ldapOther{told, "ldapOther"};
    local.next = &other;
    ldap.next = &ldapOther;
    mode().tab();

    EXPECT_EQ(told, Texts({"local tabValid", "local tabFrom", "local exit", "other enter", "ldap tabTo",
                           "ldap exit", "ldapOther enter"}));
    EXPECT_EQ(context().m_pCurrentState, &other);
    EXPECT_EQ(context().m_pLdapCurrentState, &ldapOther);
    note();
}

TEST_F(ModeTabs, StaysWhereTheStateDoesNotLetGo)
{
    startOnSip();
    local.mayLeave = false;
    mode().tab();

    EXPECT_EQ(currentTab(), OFFICE_TAB);
    EXPECT_EQ(told, Texts({"local tabValid"}));
    EXPECT_TRUE(log.has("tab() - tab not allowed", 5));
    EXPECT_EQ(remembered(), 1);
}

TEST_F(ModeTabs, ShowsTheTabsWhenTheTabChanges)
{
    startOnQra();
    display().setCurrent(&context().m_ContextMenu);
    display().hide();
    mode().tab();

    EXPECT_EQ(display().getCurrent(), &tabs());
    EXPECT_TRUE(display().paint().visible);
}

TEST_F(ModeTabs, LeavesTheTabBarWithTheTabKeyOnly)
{
    startOnQra();
    enterTabBar();
    command(Command::TAB_NEXT);
    EXPECT_TRUE(tabs().isTabBarFocused());
    EXPECT_EQ(currentTab(), LDAP_TAB);

    mode().tab();
    EXPECT_FALSE(tabs().isTabBarFocused());
}

TEST_F(ModeTabs, StepsBothWaysInTheTabBar)
{
    offerPbxPhonebook();
    startOnQra();
    command(Command::TAB_PREVIOUS);
    EXPECT_EQ(currentTab(), PBX_TAB);
    command(Command::TAB_PREVIOUS);
    EXPECT_EQ(currentTab(), LDAP_TAB);
    command(Command::TAB_NEXT);
    EXPECT_EQ(currentTab(), PBX_TAB);
    EXPECT_FALSE(log.has("commandAction() - unknown Event\n"));
}

TEST_F(ModeTabs, TellsNoStateOfAStepFromThePbxTab)
{
    offerPbxPhonebook();
    startOnSip();
    selectTab(PBX_TAB);
    rememberDirectory(2);
    display().hide();
    mode().tab();

    EXPECT_EQ(currentTab(), OFFICE_TAB);
    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(log.has("tab() - new tab index: 0", 5));
    EXPECT_TRUE(display().paint().visible);
    EXPECT_EQ(remembered(), 1);
}

TEST_F(ModeTabs, RemembersNoDirectoryForThePbxTab)
{
    offerPbxPhonebook();
    startOnQra();
    selectTab(LDAP_TAB);
    rememberDirectory(2);
    mode().tab();

    EXPECT_EQ(currentTab(), PBX_TAB);
    EXPECT_EQ(remembered(), 2);
}

TEST_F(ModeTabs, HandsOverOnTheWayToThePbxTab)
{
    offerPbxPhonebook();
    startOnSip();
    selectTab(LDAP_TAB);
    mode().tab();

    EXPECT_EQ(told, Texts({"ldap tabValid", "ldap tabFrom", "ldap clearProvider"}));
    ASSERT_EQ(handle.pushes.size(), 1u);
    EXPECT_EQ(handle.pushes[0].phonelet, "CorvanStimulus");
    EXPECT_TRUE(log.has("tab() - new tab index: 2", 5));
}

TEST_F(ModeTabs, TakesTheHighlightOffWhileTheTabBarHasTheFocus)
{
    startOnQra();
    context().m_pPlaceholderList = std::make_unique<DisplayAPI::SearchList>();
    EXPECT_TRUE(highlighted(*context().m_pPlaceholderList));
    enterTabBar();

    EXPECT_FALSE(highlighted(*context().m_pPlaceholderList));
    EXPECT_FALSE(highlighted(*context().m_pDisplayList));
    EXPECT_FALSE(highlighted(*context().m_pLdapDisplayList));
    EXPECT_TRUE(told.empty());
    EXPECT_FALSE(log.has("commandAction() - unknown Event\n"));
}

TEST_F(ModeTabs, OpensTheSearchAgainAboveALoneRow)
{
    startOnQra();
    context().m_pLdapCurrentState = &context().m_LdapViewingList;
    selectTab(LDAP_TAB);
    fillLdapList(1);
    command(Command::TAB_BAR_ENTERED);
    EXPECT_FALSE(searchOpen());
    command(Command::TAB_BAR_LEFT);

    EXPECT_TRUE(searchOpen());
    EXPECT_TRUE(log.has("Showing the search popup. The number of entries in the LdapDisplayList -> 1", 5));
}

TEST_F(ModeTabs, KeepsTheSearchClosedAboveSeveralRows)
{
    startOnQra();
    context().m_pLdapCurrentState = &context().m_LdapViewingList;
    selectTab(LDAP_TAB);
    fillLdapList(2);
    command(Command::TAB_BAR_LEFT);

    EXPECT_FALSE(searchOpen());
    EXPECT_TRUE(
        log.has("The search popup is not being shown. The number of entries in the LdapDisplayList -> 2", 5));
}

TEST_F(ModeTabs, KeepsTheSearchClosedOnAnotherScreen)
{
    startOnQra();
    fillLdapList(1);
    command(Command::TAB_BAR_LEFT);
    selectTab(LDAP_TAB);
    command(Command::TAB_BAR_LEFT);

    EXPECT_FALSE(searchOpen());
    EXPECT_EQ(
        log.count("The search popup is not being shown. The number of entries in the LdapDisplayList -> 1",
                  5),
        2);
}

TEST_F(ModeTabs, SetsTheProviderWhenItIsShown)
{
    startOnQra();
    display().setCurrent(&context().m_PopupDialer);
    mode().show();

    EXPECT_EQ(told, Texts({"local setProvider"}));
    EXPECT_EQ(display().getCurrent(), &tabs());
    EXPECT_EQ(modeLines(5).front(), "show()");
    EXPECT_TRUE(log.has("show() - calling setCallContextProvider()", 5));
    EXPECT_TRUE(
        log.has("The search popup is not being shown. The number of entries in the LdapDisplayList -> 1", 5));
}

TEST_F(ModeTabs, ComesBackToTheRememberedDirectory)
{
    startOnQra();
    rememberDirectory(2);
    mode().show();
    EXPECT_EQ(currentTab(), LDAP_TAB);

    rememberDirectory(1);
    mode().show();
    EXPECT_EQ(currentTab(), OFFICE_TAB);

    selectTab(LDAP_TAB);
    rememberDirectory(0);
    mode().show();
    EXPECT_EQ(currentTab(), LDAP_TAB);
}

// Its keys would go to the screen of the other tab.
TEST_F(ModeTabs, StaysOnTheTabOfAnOpenMenuOrForm)
{
    start();
    phonelet().tab();
    mode().RestartLocalPhonebook(); // ends on the local tab
    ASSERT_EQ(remembered(), 2);
    const auto hideAndShow = [this] {
        phonelet().hide();
        phonelet().show();
        host.settle();
    };

    press(MENU);
    hideAndShow();
    EXPECT_EQ(currentTab(), OFFICE_TAB);
    choose("new.contact");
    ASSERT_EQ(mode().getCurrentState(), &context().m_CreatingEntry);
    type("Lee");
    hideAndShow();
    EXPECT_EQ(currentTab(), OFFICE_TAB);
    press(DisplayAPI::Key::Kind::Save);
    EXPECT_EQ(directory.records.size(), 1u);
    wait(3000ms);

    hideAndShow();
    EXPECT_EQ(currentTab(), LDAP_TAB);
}

TEST_F(ModeTabs, DoesNotFindARememberedLdapTabOnTdmVariants)
{
    HardwareVersion::setHWVariant(10);
    startOnQra();
    rememberDirectory(2);
    mode().show();

    EXPECT_EQ(currentTab(), OFFICE_TAB);
}

TEST_F(ModeTabs, OpensTheSearchWhenTheLdapListIsShown)
{
    startOnQra();
    context().m_pLdapCurrentState = &context().m_LdapViewingList;
    fillLdapList(3);
    rememberDirectory(2);
    mode().show();

    EXPECT_TRUE(searchOpen());
    EXPECT_TRUE(log.has("Showing the search popup. The number of entries in the LdapDisplayList -> 3", 5));
}

TEST_F(ModeTabs, DoesNotOpenTheSearchWhileTheTabBarHasTheFocus)
{
    startOnQra();
    context().m_pLdapCurrentState = &context().m_LdapViewingList;
    selectTab(LDAP_TAB);
    fillLdapList(1);
    command(Command::TAB_BAR_ENTERED);
    mode().show();

    EXPECT_FALSE(searchOpen());
    EXPECT_FALSE(log.has("Showing the search popup. The number of entries in the LdapDisplayList -> 1"));
}

TEST_F(ModeTabs, OpensTheSearchOnceTheTabBarWasLeft)
{
    startOnQra();
    context().m_pLdapCurrentState = &context().m_LdapViewingList;
    selectTab(LDAP_TAB);
    fillLdapList(2);
    command(Command::TAB_BAR_ENTERED);
    command(Command::TAB_BAR_LEFT);
    mode().show();

    EXPECT_TRUE(searchOpen());
}

TEST_F(ModeTabs, HandsOverAgainWhenThePbxTabIsShown)
{
    offerPbxPhonebook();
    startOnQra();
    selectTab(PBX_TAB);
    mode().show();

    EXPECT_TRUE(told.empty());
    EXPECT_EQ(handle.pushes.size(), 1u);
    EXPECT_TRUE(log.has("show() - activate PhonebookPhoneletQRA", 5));
}

TEST_F(ModeTabs, SaysThatAForeignTabHasNoState)
{
    startOnQra();
    selectTab(tabs().addTab({}, nullptr));
    mode().show();
    mode().hide();

    EXPECT_TRUE(log.has("show() - unable to setCallContextProvider due to null m_pCurrentState pointer", 5));
    EXPECT_TRUE(
        log.has("hide() - unable to clearCallContextProvider due to null m_pCurrentState pointer", 5));
}

TEST_F(ModeTabs, EndsDiallingWhenItIsHidden)
{
    startOnQra();
    tabs().enterTabBar();
    context().setCallRequestInitiated(true);
    mode().hide();

    EXPECT_EQ(told, Texts({"local clearProvider"}));
    EXPECT_FALSE(context().m_CallRequestInitiated);
    EXPECT_FALSE(tabs().isTabBarFocused());
    EXPECT_EQ(modeLines(5).front(), "hide()");
    EXPECT_TRUE(log.has("hide() - calling clearCallContextProvider()", 5));
}

TEST_F(ModeTabs, LeavesBothStatesWhenItGoes)
{
    startOnQra();
    phonelet().stopPhonelet();

    EXPECT_EQ(told, Texts({"local exit", "ldap exit"}));
}

} // namespace
