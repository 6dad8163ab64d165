#include "PhonebookScreens.h"

namespace {

class NotThereYet : public PhonebookScreens {
protected:
    struct Screen {
        PhonebookStateBase* state;
        const char* message;
    };

    std::vector<Screen> screens()
    {
        auto& c = context();
        return {{&c.m_LdapFind, "phone.notThere.form"},
                {&c.m_LdapDisplayOptions, "phone.notThere.options"},
                {&c.m_LdapQualifierOptions, "phone.notThere.options"}};
    }
    // Leaves the directory's list for a screen, as a menu does.
    void go(PhonebookStateBase& screen)
    {
        context().m_pTabScreen->setCurrentTabIndex(1);
        context().m_pLdapCurrentState->exitStateEvent(&context());
        context().m_pLdapCurrentState = &screen;
        screen.enterStateEvent(&context());
        host.settle();
    }
    PhonebookStateBase* current() { return mode().getCurrentState(); }
};

} // namespace

TEST_F(NotThereYet, SaysSoAndReturnsToItsListAfterThreeSeconds)
{
    start();
    for (const auto& screen : screens()) {
        go(*screen.state);
        EXPECT_EQ(this->screen(), "! " + std::string(screen.message) + "\n");
        EXPECT_EQ(top().type, 6);
        wait(2999ms);
        EXPECT_EQ(current(), screen.state);
        wait(1ms);
        EXPECT_EQ(current(), &context().m_LdapViewingList);
        EXPECT_EQ(popups(), 0u);
    }
}

TEST_F(NotThereYet, ReturnsToItsListWithAnyKey)
{
    start(Bar::None);
    for (const auto key : {OK, BACK, DOWN}) {
        for (const auto& screen : screens()) {
            go(*screen.state);
            press(key);
            EXPECT_EQ(current(), &context().m_LdapViewingList);
            EXPECT_EQ(popups(), 0u);
        }
    }
}

TEST_F(NotThereYet, AnswersOkAndBackThatReachItOtherwise)
{
    start();
    for (const auto& screen : screens()) {
        EXPECT_EQ(screen.state->okEvent(&context(), nullptr, nullptr), &context().m_LdapViewingList);
        EXPECT_EQ(screen.state->backEvent(&context(), nullptr, nullptr), &context().m_LdapViewingList);
    }
}

TEST_F(NotThereYet, IgnoresOtherPopups)
{
    start();
    for (const auto& screen : screens()) {
        EXPECT_EQ(screen.state->screenEvent(&context(), nullptr, nullptr), screen.state);
        EXPECT_EQ(screen.state->screenEvent(&context(), nullptr, &context().m_PopupConfirm), screen.state);
    }
}

TEST_F(NotThereYet, TakesItsMessageAlong)
{
    start();
    go(context().m_LdapFind);
    context().m_LdapFind.exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(current(), &context().m_LdapFind); // its own dismissal reports nothing
}

TEST_F(NotThereYet, LeavesTheTabWithTheTabKeyOnceTheMessageClosed)
{
    start();
    go(context().m_LdapFind);
    EXPECT_FALSE(context().m_LdapFind.tabValid(&context()));
    display().closeNotification();
    host.settle();
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(mode().isLocalTabActive());
}

TEST_F(NotThereYet, ClearsTheFindFormOfItsMessage)
{
    start();
    go(context().m_LdapFind);
    context().m_LdapFind.clearForm(&context());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(log.has("LDAPStateFind::clearForm()", 5));
}
