#include "PhonebookScreens.h"

namespace {

class LdapList : public PhonebookScreens {
protected:
    void startOnItsTab(Bar bar = Bar::SoftKeys)
    {
        start(bar);
        phonelet().tab();
        host.settle();
        ASSERT_TRUE(mode().isLdapTabActive());
    }
    LDAPStateViewingList& state() { return context().m_LdapViewingList; }
};

} // namespace

TEST_F(LdapList, SaysThatTheDirectoryIsNotThereYet)
{
    startOnItsTab();
    EXPECT_EQ(rows(), Texts{"phone.notThere.directory"});
    EXPECT_TRUE(top().rows[0].selected);
}

TEST_F(LdapList, SaysItOnceHoweverOftenItIsEntered)
{
    startOnItsTab(Bar::None);
    state().enterStateEvent(&context());
    host.settle();
    EXPECT_EQ(rows(), Texts{"phone.notThere.directory"});
}

TEST_F(LdapList, LetsTheUserLeaveForAnotherTab)
{
    startOnItsTab();
    EXPECT_TRUE(state().tabValid(&context()));
    phonelet().tab();
    EXPECT_TRUE(mode().isLocalTabActive());
}

TEST_F(LdapList, KeepsTheTabWhileTheDiallerIsUp)
{
    startOnItsTab();
    dialingStarts("0");
    EXPECT_FALSE(state().tabValid(&context()));
    phonelet().tab();
    EXPECT_TRUE(mode().isLdapTabActive());
}

TEST_F(LdapList, LeavesThePhonebookWithBack)
{
    startOnItsTab();
    press(BACK);
    EXPECT_EQ(handle.left, Texts{"PhoneBookPhonelet"});
}

TEST_F(LdapList, ToleratesAHostWithoutAHandle)
{
    startOnItsTab();
    context().m_pPhoneletHandle = nullptr;
    EXPECT_EQ(state().backEvent(&context(), nullptr, context().m_pLdapDisplayList.get()), &state());
}

TEST_F(LdapList, DoesNothingWithOkAndTheContextKey)
{
    startOnItsTab();
    press(OK);
    press(MENU);
    type("m");
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(mode().getCurrentState(), &state());
}

TEST_F(LdapList, DialsDigitsThatAreTypedOffHook)
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

TEST_F(LdapList, UndoesEditingOfTheDiallerWithBack)
{
    startOnItsTab();
    dialingStarts("0");
    type("30");
    press(BACK);
    EXPECT_EQ(screen(), "0\n#\n");
    EXPECT_EQ(handle.left, Texts{});
}

TEST_F(LdapList, IsTheCallContextProviderWhileItIsShown)
{
    startOnItsTab();
    state().exitStateEvent(&context());
    EXPECT_EQ(digits.provider, nullptr);
    state().enterStateEvent(&context());
    EXPECT_EQ(digits.provider, &mode());
}

TEST_F(LdapList, ComesBackOverAFormThatTookTheScreen)
{
    startOnItsTab();
    DisplayAPI::SearchList form;
    display().setCurrent(&form);
    state().enterStateEvent(&context());
    EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
    EXPECT_EQ(context().m_pTabScreen->getCurrentDisplayable(), context().m_pLdapDisplayList.get());
}

TEST_F(LdapList, KeepsOffTheScreenWhileAnotherTabIsShown)
{
    start();
    DisplayAPI::SearchList form;
    display().setCurrent(&form);
    auto* pShown = context().m_pTabScreen->getDisplayable(0);
    state().enterStateEvent(&context());
    EXPECT_EQ(display().getCurrent(), &form);
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(0), pShown);
}

TEST_F(LdapList, IsTheScreenItselfWithoutTabs)
{
    start();
    context().m_pTabScreen->removeTab(1);
    context().m_pTabScreen->removeTab(0);
    state().enterStateEvent(&context());
    EXPECT_EQ(display().getCurrent(), context().m_pLdapDisplayList.get());
}

TEST_F(LdapList, ClosesThePopupsOfDiallingWhenItIsLeft)
{
    startOnItsTab();
    dialingStarts("0");
    state().exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(popups(), 0u);
}
