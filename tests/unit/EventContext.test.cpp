#include <algorithm>
#include <functional>

#include "PhonebookScreens.h"

namespace {

class SharedContext : public PhonebookScreens {};

TEST(EventContext, StartsWithTheTwoListsAndNothingSelected)
{
    EventContext context;
    EXPECT_EQ(context.m_pCurrentState, &context.m_ViewingList);
    EXPECT_EQ(context.m_pLdapCurrentState, &context.m_LdapViewingList);
    EXPECT_EQ(context.m_SelectedEntry.getGroup(), "0");
    EXPECT_EQ(context.m_SelectedEntry.getDefaultNumber(), "None");
    EXPECT_EQ(context.m_LdapEntry.getGroup(), "0");
    EXPECT_EQ(context.m_LdapEntry.getDefaultNumber(), "None");
    EXPECT_EQ(context.m_SelectedEntryIndex, 0);
    EXPECT_EQ(context.m_SelectedGroupIndex, 0);
    EXPECT_EQ(context.m_LdapEntryIndex, 0);
    EXPECT_EQ(context.m_RedialNumber, "");
    EXPECT_EQ(context.m_LastDialledNumber, "");
    EXPECT_TRUE(context.languageChangeWhenVisible());
    EXPECT_FALSE(context.getCallRequestInitiated());
    EXPECT_EQ(context.m_SoftwareType, 0);
    EXPECT_EQ(context.m_pTabScreen->numberOfTabs(), 0);
    EXPECT_NE(context.m_pDisplayList, nullptr);
    EXPECT_NE(context.m_pPlaceholderList, nullptr);
    EXPECT_NE(context.m_pLdapDisplayList, nullptr);
    EXPECT_NE(context.m_pGroupDisplayList, nullptr);
    EXPECT_EQ(context.m_pPreviousLdapDisplayList, nullptr);
    EXPECT_EQ(context.m_pGroupList, nullptr);
}

// Screens come first: they are made before, and die after, the widgets that all of them use.
TEST(EventContext, KeepsEveryPartInItsPlace)
{
    const EventContext c;
    const std::vector<const void*> parts{&c.m_ViewingList,
                                         &c.m_CreatingEntry,
                                         &c.m_DisplayOptions,
                                         &c.m_EditGroup,
                                         &c.m_FatalError,
                                         &c.m_ViewingGroups,
                                         &c.m_Refreshing,
                                         &c.m_LdapViewingList,
                                         &c.m_LdapFind,
                                         &c.m_LdapDisplayOptions,
                                         &c.m_LdapQualifierOptions,
                                         &c.m_LdapCreatingEntry,
                                         &c.m_LdapDisplayingEntry,
                                         &c.m_LdapSavingEntry,
                                         &c.m_pCurrentState,
                                         &c.m_pLdapCurrentState,
                                         &c.m_ContextMenu,
                                         &c.m_PopupConfirm,
                                         &c.m_PopupNotification,
                                         &c.m_PopupDialer,
                                         &c.m_PopupLineSelectionNeeded,
                                         &c.m_PopupNoLineAvailable,
                                         &c.m_DialerCommands,
                                         &c.m_pDisplayList,
                                         &c.m_pPlaceholderList,
                                         &c.m_pLdapDisplayList,
                                         &c.m_pPreviousLdapDisplayList,
                                         &c.m_pGroupDisplayList,
                                         &c.m_pPhonelet,
                                         &c.m_pPhoneletHandle,
                                         &c.m_pTabScreen,
                                         &c.m_pDisplay,
                                         &c.m_HasSoftKeyBar,
                                         &c.m_pDisplayableBeforePopup,
                                         &c.m_pListener,
                                         &c.m_pPhoneletContext,
                                         &c.m_pPhonebookList,
                                         &c.m_pLdapPhonebookList,
                                         &c.m_pGroupList,
                                         &c.m_pTranslator,
                                         &c.m_pCstaService,
                                         &c.m_pDirectoryService,
                                         &c.m_pLocalMgmt,
                                         &c.m_pDataAccessService,
                                         &c.m_pDigitAnalysisService,
                                         &c.m_pTeamService,
                                         &c.m_pObexService,
                                         &c.m_SelectedEntryIndex,
                                         &c.m_SelectedEntry,
                                         &c.m_SelectedGroupIndex,
                                         &c.m_LdapEntryIndex,
                                         &c.m_LdapEntry,
                                         &c.m_RedialNumber,
                                         &c.m_LastDialledNumber,
                                         &c.m_OfficeTabIndex,
                                         &c.m_LdapTabIndex,
                                         &c.m_CallRequestInitiated,
                                         &c.m_LanguageChangeWhenVisible,
                                         &c.m_SoftwareType};
    EXPECT_TRUE(std::is_sorted(parts.begin(), parts.end(), std::less<>()));
}

TEST(EventContext, GoesWhileItsListsStandInTabs)
{
    EventContext context;
    context.m_pTabScreen->addTab(DisplayAPI::TranslationInfo::plain("a"), context.m_pDisplayList.get());
    context.m_pTabScreen->addTab(DisplayAPI::TranslationInfo::plain("b"), context.m_pLdapDisplayList.get());
    EXPECT_EQ(context.m_pTabScreen->getDisplayable(1), context.m_pLdapDisplayList.get());
}

TEST(EventContext, KeepsTheLanguageChange)
{
    EventContext context;
    context.setLanguageChangeWhenVisible(false);
    EXPECT_FALSE(context.languageChangeWhenVisible());
}

TEST(EventContext, AnswersTheFlagWhileNobodyKnowsTheSoftware)
{
    EventContext context;
    context.setCallRequestInitiated(true);
    EXPECT_TRUE(context.getCallRequestInitiated());

    PhonebookPhonelet withoutMode;
    context.m_pPhonelet = &withoutMode;
    EXPECT_TRUE(context.getCallRequestInitiated());
    EXPECT_EQ(context.m_SoftwareType, 0);
}

TEST_F(SharedContext, AsksTheSoftwareOnceAndAnswersTheFlag)
{
    start();
    context().setCallRequestInitiated(true);
    EXPECT_TRUE(context().getCallRequestInitiated());
    EXPECT_EQ(context().m_SoftwareType, 2);
    context().setCallRequestInitiated(false);
    EXPECT_FALSE(context().getCallRequestInitiated());
}

TEST_F(SharedContext, NeverRefusesACallOnSipTelephones)
{
    configuration.items["software-type"] = "Veltrix SIP";
    start();
    context().setCallRequestInitiated(true);
    EXPECT_FALSE(context().getCallRequestInitiated());
    EXPECT_TRUE(context().m_CallRequestInitiated);
    EXPECT_EQ(context().m_SoftwareType, 1);
}

TEST_F(SharedContext, MakesANewListThatReportsToTheMode)
{
    start();
    context().reallocateDisplayList(true);
    EXPECT_EQ(context().m_pDisplayList->getCommandListener(), &mode());
    EXPECT_EQ(context().m_pDisplayList->size(), 0);
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(0), nullptr);

    context().reallocateLdapDisplayList(true);
    EXPECT_EQ(context().m_pLdapDisplayList->getCommandListener(), &mode());
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(1), nullptr);
}

TEST_F(SharedContext, KeepsTheOldListThatWasMovedOut)
{
    start();
    const auto oldList = std::move(context().m_pDisplayList);
    context().reallocateDisplayList(false);
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(0), oldList.get());
    EXPECT_NE(context().m_pDisplayList, nullptr);

    const auto oldLdapList = std::move(context().m_pLdapDisplayList);
    context().reallocateLdapDisplayList(false);
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(1), oldLdapList.get());
    EXPECT_NE(context().m_pLdapDisplayList, nullptr);
}

TEST_F(SharedContext, MakesListsThatSearchAndReachTheTabBar)
{
    contact("Adams", "Amy");
    contact("Baker", "Bob");
    start();
    context().reallocateDisplayList(true);
    context().m_ViewingList.enterStateEvent(&context());
    type("b");
    EXPECT_EQ(context().m_pDisplayList->getSelectedIndex(), 1);
    press(DOWN);
    EXPECT_EQ(context().m_pDisplayList->getSelectedIndex(), 1); // no wrap-around
    press(UP);
    press(UP);
    EXPECT_TRUE(context().m_pTabScreen->isTabBarFocused());
}

TEST_F(SharedContext, MakesDirectoryListsThatReportWhatIsTyped)
{
    start();
    context().reallocateLdapDisplayList(true);
    phonelet().tab();
    context().m_LdapViewingList.enterStateEvent(&context());
    host.settle();
    log.clear();
    type("m");
    EXPECT_TRUE(log.has("itemStateChanged()"));
    press(UP);
    EXPECT_TRUE(context().m_pTabScreen->isTabBarFocused());
}

} // namespace
