#include "PhonebookScreens.h"

namespace {

class NotThereYet : public PhonebookScreens {
protected:
    struct Screen {
        PhonebookStateBase* state;
        const char* message;
        PhonebookStateBase* list;
    };

    std::vector<Screen> screens()
    {
        auto& c = context();
        return {{&c.m_LdapFind, "phone.notThere.form", &c.m_LdapViewingList},
                {&c.m_LdapDisplayOptions, "phone.notThere.options", &c.m_LdapViewingList},
                {&c.m_LdapQualifierOptions, "phone.notThere.options", &c.m_LdapViewingList},
                {&c.m_LdapCreatingEntry, "phone.notThere.form", &c.m_LdapViewingList},
                {&c.m_LdapDisplayingEntry, "phone.notThere.form", &c.m_LdapViewingList},
                {&c.m_LdapSavingEntry, "phone.notThere.form", &c.m_LdapViewingList}};
    }
    // Leaves the list for a screen, as a menu does.
    void go(PhonebookStateBase& screen)
    {
        const bool ldap = isLdap(screen);
        context().m_pTabScreen->setCurrentTabIndex(ldap ? 1 : 0);
        auto& pMachine = ldap ? context().m_pLdapCurrentState : context().m_pCurrentState;
        pMachine->exitStateEvent(&context());
        pMachine = &screen;
        screen.enterStateEvent(&context());
        host.settle();
    }
    bool isLdap(const PhonebookStateBase& screen)
    {
        for (const auto& known : screens()) {
            if (known.state == &screen)
                return known.list == &context().m_LdapViewingList;
        }
        return false;
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
        EXPECT_EQ(current(), screen.list);
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
            EXPECT_EQ(current(), screen.list);
            EXPECT_EQ(popups(), 0u);
        }
    }
}

TEST_F(NotThereYet, AnswersOkAndBackThatReachItOtherwise)
{
    start();
    for (const auto& screen : screens()) {
        EXPECT_EQ(screen.state->okEvent(&context(), nullptr, nullptr), screen.list);
        EXPECT_EQ(screen.state->backEvent(&context(), nullptr, nullptr), screen.list);
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
    go(context().m_LdapCreatingEntry);
    context().m_LdapCreatingEntry.exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(current(), &context().m_LdapCreatingEntry); // its own dismissal reports nothing
}

TEST_F(NotThereYet, LeavesTheTabWithTheTabKeyOnceTheMessageClosed)
{
    start();
    go(context().m_LdapCreatingEntry);
    EXPECT_FALSE(context().m_LdapCreatingEntry.tabValid(&context()));
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
