#include "DirectoryEntryScreens.h"

namespace {

class DirectoryCreating : public DirectoryEntryScreens {
protected:
    LDAPStateCreatingEntry& state() { return context().m_LdapCreatingEntry; }
    Texts ownTraces() { return traces("./src/LDAPStateCreatingEntry"); }
};

} // namespace

TEST_F(DirectoryCreating, OnlySaysThatItIsEnteredAndLeft)
{
    startOnItsTab();
    const auto before = host.screen();
    go(state());
    EXPECT_EQ(ownTraces(), Texts{"LDAPStateCreatingEntry::enterStateEvent\n"});
    EXPECT_EQ(host.screen(), before);
    state().exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(ownTraces(), (Texts{"LDAPStateCreatingEntry::enterStateEvent\n",
                                  "LDAPStateCreatingEntry::exitStateEvent\n"}));
    EXPECT_EQ(host.screen(), before);
}

TEST_F(DirectoryCreating, ReturnsToTheListWithBack)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        go(state());
        log.clear();
        press(BACK);
        EXPECT_TRUE(inList());
        EXPECT_EQ(ownTraces(),
                  (Texts{"LDAPStateCreatingEntry::backEvent\n", "LDAPStateCreatingEntry::exitStateEvent\n"}));
    }
}

TEST_F(DirectoryCreating, StaysWhateverElseHappens)
{
    startOnItsTab();
    go(state());
    press(OK);
    press(MENU);
    type("m");
    phonelet().tab();
    host.settle();
    EXPECT_EQ(current(), &state());
}
