#include "PhonebookScreens.h"

namespace {

class Refreshing : public PhonebookScreens {
protected:
    PhonebookStateRefreshing& state() { return context().m_Refreshing; }
    PhonebookStateBase* current() { return mode().getCurrentState(); }
};

} // namespace

TEST_F(Refreshing, RebuildsAHiddenListWithoutAsking)
{
    load();
    contact("Miller", "Jane");
    directoryChanges();
    EXPECT_EQ(current(), &context().m_ViewingList);
    EXPECT_EQ(popups(), 0u);
    phonelet().show();
    host.settle();
    EXPECT_EQ(rows(), Texts{"Miller, Jane"});
}

TEST_F(Refreshing, AsksBeforeItMovesRowsInSight)
{
    start();
    contact("Miller", "Jane");
    directoryChanges();
    EXPECT_EQ(current(), &state());
    EXPECT_EQ(screen(), "? directory.in.use\n");
    EXPECT_EQ(commands(), Texts{"refresh.directory"});
    EXPECT_EQ(top().state, 0);
    EXPECT_EQ(list().size(), 0u);

    choose("refresh.directory");
    EXPECT_EQ(current(), &context().m_ViewingList);
    EXPECT_EQ(rows(), Texts{"Miller, Jane"});
    EXPECT_TRUE(log.has("Phonebook should be populated, number of entries = 1", 5));
}

TEST_F(Refreshing, AsksWithoutSoftKeysToo)
{
    start(Bar::None);
    contact("Miller", "Jane");
    directoryChanges();
    EXPECT_EQ(screen(), "? directory.in.use\n> refresh.directory\n");
    press(OK);
    EXPECT_EQ(rows(), (Texts{"list.options", "Miller, Jane"}));
}

TEST_F(Refreshing, AsksOnceForTwoChanges)
{
    start();
    directoryChanges();
    const auto id = top().id;
    directoryChanges();
    EXPECT_EQ(popups(), 1u);
    EXPECT_EQ(top().id, id);
    choose("refresh.directory");
    EXPECT_EQ(popups(), 0u);
    directoryChanges();
    EXPECT_EQ(top().id, id);
}

TEST_F(Refreshing, TakesItsQuestionAwayAndBringsItBack)
{
    start();
    directoryChanges();
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(mode().isLdapTabActive());
    EXPECT_EQ(popups(), 0u);
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(mode().isLocalTabActive());
    EXPECT_EQ(screen(), "? directory.in.use\n");
}

TEST_F(Refreshing, ShowsNothingUntilTheUserReturnsToItsTab)
{
    start();
    phonelet().tab();
    host.settle();
    contact("Miller", "Jane");
    directoryChanges();
    EXPECT_TRUE(mode().isLdapTabActive());
    EXPECT_EQ(popups(), 0u);
    phonelet().tab();
    host.settle();
    EXPECT_EQ(screen(), "? directory.in.use\n");
    choose("refresh.directory");
    EXPECT_EQ(rows(), Texts{"Miller, Jane"});
}

TEST_F(Refreshing, StaysSilentWhileItsTabIsNotShown)
{
    start();
    context().m_pTabScreen->setCurrentTabIndex(1);
    EXPECT_EQ(state().phonebookDatabaseUpdated(&context()), &state());
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(Refreshing, AsksOnReturnEvenIfItNeverAskedBefore)
{
    start();
    EXPECT_EQ(state().tabFrom(&context()), &state()); // nothing to take away
    EXPECT_EQ(state().tabTo(&context()), &state());
    host.settle();
    EXPECT_EQ(screen(), "? directory.in.use\n");
}

TEST_F(Refreshing, ShowsWhatChangedWhenTheLanguageTakesItsQuestionAway)
{
    start();
    contact("Miller", "Jane");
    directory.groups->updateGroup({3, "Friends"});
    directoryChanges();
    mode().updateAlphaOrder(true);
    host.settle();
    EXPECT_EQ(current(), &context().m_ViewingList);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(rows(), Texts{"Miller, Jane"});
    EXPECT_EQ(context().m_pGroupList->findGroup("Friends"), 3);

    phonelet().tab();
    contact("Adams", "Amy");
    directoryChanges();
    mode().updateAlphaOrder(true);
    host.settle();
    EXPECT_TRUE(mode().isLdapTabActive());
    phonelet().tab();
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(rows(), (Texts{"Adams, Amy", "Miller, Jane"}));
}

TEST_F(Refreshing, TakesItsQuestionAwayItself)
{
    start();
    directoryChanges();
    EXPECT_EQ(state().tabFrom(&context()), &state());
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(Refreshing, LetsTheUserLeaveForAnotherTab)
{
    start();
    EXPECT_TRUE(state().tabValid(&context()));
}

TEST_F(Refreshing, DoesNothingOnEntryAndExit)
{
    start();
    const auto before = host.screen();
    state().enterStateEvent(&context());
    state().exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(host.screen(), before);
}

TEST_F(Refreshing, NamesWhatItDoesNotKnow)
{
    start();
    EXPECT_EQ(state().screenEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, context().m_pTabScreen.get()), &state());
    EXPECT_EQ(log.count("PhonebookStateRefreshing::screenEvent - unrecognised widget", 3), 2);

    directoryChanges();
    auto* pPopup = display().getCurrent();
    EXPECT_EQ(state().screenEvent(&context(), nullptr, pPopup), &state());
    EXPECT_EQ(log.count("PhonebookStateRefreshing::screenEvent - unhandled screen event", 3), 1);
    EXPECT_EQ(popups(), 1u);
}

TEST_F(Refreshing, KeepsTheQuestionWhenTheUserGoesBack)
{
    start();
    directoryChanges();
    press(BACK);
    EXPECT_EQ(screen(), "? directory.in.use\n");
    EXPECT_EQ(current(), &state());
}

TEST_F(Refreshing, RetiresTheListThatMayStillBeShown)
{
    start();
    auto* pShown = context().m_pDisplayList.get();
    state().updateList(&context());
    EXPECT_EQ(context().m_pPlaceholderList.get(), pShown);
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(0), pShown);
    EXPECT_NE(context().m_pDisplayList.get(), pShown);
    EXPECT_FALSE(log.has("PhonebookStateRefreshing::updateList: remove OldDisplayList from TabScreen"));

    state().updateList(&context());
    EXPECT_TRUE(log.has("PhonebookStateRefreshing::updateList: remove OldDisplayList from TabScreen", 5));
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(0), nullptr);
}

TEST_F(Refreshing, DeletesARetiredListThatNoTabShows)
{
    start();
    context().m_pPlaceholderList = std::make_unique<DisplayAPI::SearchList>();
    const auto gone = context().m_pPlaceholderList->watch();
    state().updateList(&context());
    EXPECT_TRUE(gone.expired());
    EXPECT_FALSE(log.has("PhonebookStateRefreshing::updateList: remove OldDisplayList from TabScreen"));
}

TEST_F(Refreshing, ReadsAllEntriesAndTheGroupsAnew)
{
    contact("Miller", "Jane");
    start();
    list().populate(5);
    context().m_pGroupDisplayList->append(
        new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("old"), 1));
    directory.groups->updateGroup({3, "Friends"});
    state().updateList(&context());
    EXPECT_EQ(list().getGroupIndication(), -1);
    EXPECT_EQ(list().size(), 1u);
    EXPECT_EQ(context().m_pGroupDisplayList->size(), 0);
    EXPECT_EQ(context().m_pGroupList->findGroup("Friends"), 3);
}

TEST_F(Refreshing, GoesOnWithoutGroupsWhenThereAreNone)
{
    start();
    directory.groups.reset();
    state().updateList(&context());
    ASSERT_NE(context().m_pGroupList, nullptr);
    EXPECT_EQ(context().m_pGroupList->numberOfGroups(), 0);

    context().m_pDirectoryService = nullptr;
    state().updateList(&context());
    EXPECT_NE(context().m_pGroupList, nullptr);
}
