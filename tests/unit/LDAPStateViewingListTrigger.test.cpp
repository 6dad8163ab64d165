// The quiet period that a search of the directory waits for.

#include "DirectoryListScreens.h"

namespace {

class DirectorySearchTrigger : public DirectoryListScreens {
protected:
    static constexpr auto PREFIX = "LDAPStateViewingList::startLdapSearchTriggerTimer - ";

    std::string said(const std::string& what, int result) const
    {
        return PREFIX + what + " = " + std::to_string(result) + ", TimerId = " + std::to_string(timerId());
    }
    std::string created(const std::string& where, int ms) const
    {
        return "LDAPStateViewingList::" + where +
               " - Timer LdapSearchTrigger created TimerId = " + std::to_string(timerId()) +
               " Duration = " + std::to_string(ms);
    }
    void withoutConfiguration()
    {
        telephone.services.erase("LocalMgmtIfc");
        startOnItsTab();
    }
};

} // namespace

TEST_F(DirectorySearchTrigger, SearchesOnceAfterTheLastKey)
{
    startOnItsTab();
    EXPECT_EQ(timer().ms, 3000u);
    EXPECT_FALSE(timer().running);
    type("m");
    EXPECT_EQ(timer().starts, 1);
    type("i");
    type("l");
    EXPECT_EQ(timer().starts, 1);
    EXPECT_EQ(timer().resets, 2);
    EXPECT_EQ(queries(), Texts{});
    finds({person("Miller", "Amy")});
    quiet();
    EXPECT_EQ(queries(), Texts{surnameQuery("mil*")});
    EXPECT_EQ(field(), "mil");
    EXPECT_EQ(rows(), Texts{"Miller, Amy"});
    EXPECT_FALSE(timer().running);
}

TEST_F(DirectorySearchTrigger, SaysHowItBegins)
{
    startOnItsTab();
    log.clear();
    type("m");
    EXPECT_TRUE(
        wroteInOrder({said("Timer reset done", 0), said("Timer running", 0),
                      "getSearchTriggerTimeoutFromDatabase Function Entered", said("Timer started", 1)}));
    log.clear();
    type("i");
    EXPECT_TRUE(wroteInOrder({said("Timer reset done", 1), said("Timer running", 1)}));
    EXPECT_FALSE(log.has(said("Timer started", 1)));
    EXPECT_FALSE(log.has("getSearchTriggerTimeoutFromDatabase Function Entered"));
}

TEST_F(DirectorySearchTrigger, IsMadeOnEntryAndGoesOnExit)
{
    startOnItsTab();
    const int id = timerId();
    EXPECT_EQ(timer().owner, &phonelet());
    EXPECT_EQ(log.count(created("enterStateEvent", 3000), 5), 1);
    state().exitStateEvent(&context());
    EXPECT_TRUE(telephone.timers.empty());
    EXPECT_EQ(log.count("LDAPStateViewingList::exitStateEvent - LdapSearchTrigger deleted. TimerId = " +
                            std::to_string(id),
                        5),
              1);
    // There is none any more.
    log.clear();
    state().exitStateEvent(&context());
    EXPECT_EQ(log.texts(2), Texts{});
    reenter();
    EXPECT_EQ(telephone.timers.size(), 1u);
    EXPECT_NE(timerId(), id);
}

TEST_F(DirectorySearchTrigger, KeepsTheTimerThatCannotBeDeleted)
{
    startOnItsTab();
    const int id = timerId();
    telephone.timers.clear();
    state().exitStateEvent(&context());
    EXPECT_EQ(log.count("LDAPStateViewingList::exitStateEvent - LdapSearchTrigger NOT deleted. TimerId = " +
                            std::to_string(id),
                        2),
              1);
    reenter();
    EXPECT_TRUE(telephone.timers.empty());
}

TEST_F(DirectorySearchTrigger, BeginsAnewOnReturnFromATabThatWasShownAtItsEnd)
{
    startOnItsTab();
    type("m");
    nextTab();
    telephone.timers.at(timerId()).running = false;
    timerExpires();
    EXPECT_EQ(queries(), Texts{});
    goToTab();
    EXPECT_TRUE(timer().running);
    quiet();
    EXPECT_EQ(queries(), Texts{surnameQuery("m*")});
}

TEST_F(DirectorySearchTrigger, IsNotRepeatedOnReturnFromAnotherTab)
{
    startOnItsTab();
    type("m");
    quiet();
    nextTab();
    goToTab();
    EXPECT_FALSE(timer().running);
}

TEST_F(DirectorySearchTrigger, LeavesNoTimerBehind)
{
    startOnItsTab();
    type("m");
    load();
    EXPECT_EQ(telephone.timers.size(), 1u);
}

TEST_F(DirectorySearchTrigger, IsAsLongAsConfigured)
{
    const std::vector<std::pair<std::string, unsigned>> table{
        {"2", 2000}, {"0", 0}, {"-1", 0}, {"abc", 0}, {"60", 60000}};
    for (const auto& [seconds, ms] : table) {
        configuration.items[TIMEOUT] = seconds;
        startOnItsTab();
        EXPECT_EQ(timer().ms, ms) << seconds;
    }
    configuration.items.erase(TIMEOUT);
    startOnItsTab();
    EXPECT_EQ(timer().ms, 0u);
    EXPECT_EQ(log.texts(3), Texts{});
}

TEST_F(DirectorySearchTrigger, LastsThreeSecondsWhereTheConfigurationCannotBeRead)
{
    withoutConfiguration();
    EXPECT_EQ(timer().ms, 3000u);
    EXPECT_EQ(log.count("LDAPStateViewingList::enterStateEvent - could not read timer value from DB", 3), 1);
    const int id = timerId();
    type("m");
    EXPECT_EQ(log.count(PREFIX + std::string("could not read timer value from DB"), 3), 1);
    EXPECT_EQ(timerId(), id);
    EXPECT_TRUE(timer().running);
}

TEST_F(DirectorySearchTrigger, LastsThreeSecondsWithoutThePhonelet)
{
    startOnItsTab();
    state().exitStateEvent(&context());
    auto* pPhonelet = std::exchange(context().m_pPhonelet, nullptr);
    configuration.items[TIMEOUT] = "7";
    state().enterStateEvent(&context());
    context().m_pPhonelet = pPhonelet;
    EXPECT_EQ(timer().ms, 3000u);
    EXPECT_EQ(log.count("LDAPStateViewingList::enterStateEvent - could not read timer value from DB", 3), 1);
}

TEST_F(DirectorySearchTrigger, FollowsTheConfigurationAtTheNextKey)
{
    startOnItsTab();
    finds({});
    const int id = timerId();
    configuration.items[TIMEOUT] = "5";
    log.clear();
    type("m");
    EXPECT_NE(timerId(), id);
    EXPECT_EQ(telephone.timers.size(), 1u);
    EXPECT_EQ(timer().ms, 5000u);
    EXPECT_TRUE(timer().running);
    EXPECT_TRUE(wroteInOrder({created("startLdapSearchTriggerTimer", 5000), said("Timer started", 1)}));
    // It is made once.
    quiet();
    type("n");
    EXPECT_EQ(log.count(created("startLdapSearchTriggerTimer", 5000), 5), 1);
}

TEST_F(DirectorySearchTrigger, KeepsItsLengthWhileItRuns)
{
    startOnItsTab();
    type("m");
    configuration.items[TIMEOUT] = "5";
    type("i");
    EXPECT_EQ(timer().ms, 3000u);
}

TEST_F(DirectorySearchTrigger, KeepsItsLengthWhenNoneIsConfiguredAnyMore)
{
    startOnItsTab();
    finds({});
    const int id = timerId();
    for (const auto* seconds : {"0", "abc"}) {
        configuration.items[TIMEOUT] = seconds;
        type("m");
        EXPECT_EQ(timerId(), id) << seconds;
        EXPECT_TRUE(timer().running);
        quiet();
    }
}

TEST_F(DirectorySearchTrigger, FollowsTheConfigurationAfterTheStateWasEnteredAgain)
{
    startOnItsTab();
    configuration.items[TIMEOUT] = "5";
    reenter();
    EXPECT_EQ(timer().ms, 3000u);
    type("m");
    EXPECT_EQ(timer().ms, 5000u);
}

TEST_F(DirectorySearchTrigger, StopsWhenTheTextIsDeleted)
{
    startOnItsTab();
    type("m");
    log.clear();
    press(Kind::Clear);
    EXPECT_FALSE(timer().running);
    EXPECT_EQ(log.count("LDAPStateViewingList::stopLdapSearchTriggerTimer - Timer stopped = 1, TimerId = " +
                            std::to_string(timerId()),
                        5),
              1);
    EXPECT_EQ(queries(), Texts{});
}

TEST_F(DirectorySearchTrigger, StopsWhenTheStateIsEnteredAgain)
{
    startOnItsTab();
    type("m");
    reenter();
    EXPECT_FALSE(timer().running);
}

TEST_F(DirectorySearchTrigger, StopsWhenASearchStartsAtOnce)
{
    startOnItsTab();
    type("mil");
    directory.whileSearching = [&] { EXPECT_FALSE(timer().running); };
    type("*");
    EXPECT_EQ(queries(), Texts{surnameQuery("mil*")});
}

TEST_F(DirectorySearchTrigger, NeverTakesTheDiallerAway)
{
    startOnItsTab();
    type("m");
    dialingStarts("0");
    EXPECT_FALSE(timer().running);
    EXPECT_EQ(top().dialler.edit, "0");
}

TEST_F(DirectorySearchTrigger, NeverTakesTheDiallerAwayForALetterThatWaited)
{
    startOnItsTab();
    type("mi");
    host.tap("555");
    dialingStarts("0");
    EXPECT_EQ(field(), "mil");
    wait(1000ms);
    EXPECT_FALSE(timer().running);
    EXPECT_EQ(top().dialler.edit, "0");
    // The letter is searched for when the user comes back.
    dialingStops();
    press(OK);
    EXPECT_EQ(queries(), Texts{surnameQuery("mil*")});
}

TEST_F(DirectorySearchTrigger, IgnoresAForeignTimer)
{
    startOnItsTab();
    type("m");
    log.clear();
    EXPECT_EQ(state().timerEvent(&context(), timerId() + 1), &state());
    EXPECT_EQ(log.count("LDAPStateViewingList::timerEvent : invalid timerID", 2), 1);
    EXPECT_EQ(queries(), Texts{});
    EXPECT_TRUE(timer().running);
}

TEST_F(DirectorySearchTrigger, SearchesForNothingOnAnotherTab)
{
    startOnItsTab();
    type("m");
    nextTab();
    ASSERT_TRUE(mode().isLocalTabActive());
    quiet();
    EXPECT_EQ(queries(), Texts{});
    // The text is still there to be searched for.
    goToTab();
    press(OK);
    EXPECT_EQ(queries(), Texts{surnameQuery("m*")});
}

TEST_F(DirectorySearchTrigger, SearchesOnceWhenNothingIsFound)
{
    startOnItsTab();
    type("xyz");
    quiet();
    EXPECT_EQ(notification(), "no.matches.found");
    for (int seconds = 0; seconds < 60; seconds += 3) {
        quiet();
        wait(3000ms);
    }
    EXPECT_EQ(queries(), Texts{surnameQuery("xyz*")});
    EXPECT_EQ(field(), "xyz");
    EXPECT_FALSE(timer().running);
}

TEST_F(DirectorySearchTrigger, SearchesOnceWhenTheTextGoesWithTheResult)
{
    directory.options["LdapDisplayOptions"] = 1;
    startOnItsTab();
    finds({person("Miller", "Amy")});
    type("mil");
    quiet();
    quiet();
    EXPECT_EQ(queries(), Texts{surnameQuery("mil*")});
    EXPECT_EQ(field(), "");
    EXPECT_EQ(rows(), Texts{"Amy Miller"});
}

TEST_F(DirectorySearchTrigger, TakesThePendingLetterIntoTheFieldButNotIntoTheSearch)
{
    startOnItsTab();
    type("mi");
    host.tap("555");
    ASSERT_EQ(field(), "mi");
    timerExpires();
    EXPECT_EQ(field(), "mil");
    EXPECT_EQ(state().getTreatedSearchText(), "mil");
    EXPECT_EQ(queries(), Texts{surnameQuery("mi*")});
    EXPECT_FALSE(timer().running);
}

TEST_F(DirectorySearchTrigger, SwallowsTheLettersOwnEventOnly)
{
    startOnItsTab();
    finds({});
    type("mi");
    host.tap("555");
    timerExpires();
    type("l");
    EXPECT_EQ(state().getTreatedSearchText(), "mill");
    EXPECT_TRUE(timer().running);
}

TEST_F(DirectorySearchTrigger, TreatsThePendingLetterLikeATypedOne)
{
    startOnItsTab();
    finds({person("Miller", "Jo")});
    type("miller,");
    host.tap("5");
    timerExpires();
    EXPECT_EQ(field(), "miller, j");
}

TEST_F(DirectorySearchTrigger, AsksForTheNicknameModeWithThePendingLetter)
{
    startOnItsTab();
    type("mi");
    directory.nicknames = true;
    host.tap("555");
    timerExpires();
    EXPECT_FALSE(directory.searches.at(0).ignoreNickname);
}

TEST_F(DirectorySearchTrigger, SwallowsNothingAfterTheStateWasEnteredAgain)
{
    startOnItsTab();
    type("mi");
    host.tap("555");
    phonelet().timerEvent(timerId());
    reenter();
    EXPECT_EQ(state().getTreatedSearchText(), "mil");
}
