#include <algorithm>
#include <thread>

#include "ModeScreens.h"

namespace {

class ModeUpdates : public ModeScreens {
protected:
    Texts localRows() { return rowsOf(*context().m_pDisplayList); }
    static Texts rowsOf(DisplayAPI::SearchList& searchList)
    {
        Texts texts;
        for (int row = 0; row < searchList.size(); ++row)
            texts.push_back(searchList.getText(row));
        return texts;
    }
    static bool shows(DisplayAPI::SearchList& searchList, const std::string& text)
    {
        const Texts texts = rowsOf(searchList);
        return std::find(texts.begin(), texts.end(), text) != texts.end();
    }
    bool asksToRefresh() { return popups() == 1 && top().text == "directory.in.use"; }
    void hideAndSettle()
    {
        phonelet().hide();
        host.settle();
    }
};

// Reads, whenever a list is entered, whether the language changed in sight.
class FlagAtEntry final : public AppLogSink {
public:
    explicit FlagAtEntry(const EventContext& context)
        : m_context(context)
        , m_pBefore(AppLog::setSink(this))
    {
    }
    ~FlagAtEntry() override { AppLog::setSink(m_pBefore); }

    std::vector<bool> seen;

    bool isEnabled(const char*, int) const override { return true; }
    void write(const char*, const char*, int, int, const std::string& text) override
    {
        if (text == "LDAPStateViewingList::enterStateEvent()" ||
            text == "PhonebookStateViewingList::enterStateEvent")
            seen.push_back(m_context.m_LanguageChangeWhenVisible);
    }

private:
    const EventContext& m_context;
    AppLogSink* m_pBefore;
};

TEST_F(ModeUpdates, TellsTheLocalStateOfAnUpdate)
{
    startNoting();
    mode().phonebookDatabaseUpdated();

    EXPECT_EQ(told, Texts({"local databaseUpdated"}));
    EXPECT_EQ(modeLines(5).front(), "phonebookDatabaseUpdated()");
}

TEST_F(ModeUpdates, TellsOnlyTheRefreshingStateOnceMore)
{
    startNoting();
    local.next = &other;
    mode().phonebookDatabaseUpdated();

    EXPECT_EQ(told, Texts({"local databaseUpdated", "local exit", "other enter"}));
    EXPECT_EQ(context().m_pCurrentState, &other);

    told.clear();
    log.clear();
    other.next = &context().m_Refreshing;
    mode().phonebookDatabaseUpdated();
    EXPECT_EQ(told, Texts({"other databaseUpdated", "other exit"}));
    EXPECT_EQ(log.count("PhonebookStateRefreshing::phonebookDatabaseUpdated()", 5), 1);
}

TEST_F(ModeUpdates, AsksToRefreshInSight)
{
    start();
    contact("Miller", "Ann");
    mode().phonebookDatabaseUpdated();
    host.settle();

    EXPECT_EQ(context().m_pCurrentState, &context().m_Refreshing);
    EXPECT_TRUE(asksToRefresh());
}

TEST_F(ModeUpdates, RebuildsOutOfSight)
{
    start();
    hideAndSettle();
    contact("Miller", "Ann");
    mode().phonebookDatabaseUpdated();

    EXPECT_EQ(context().m_pCurrentState, &context().m_ViewingList);
    EXPECT_EQ(localRows(), Texts({"Miller, Ann"}));
}

// The question was not answered before the user left: the list must not be asked in its turn.
TEST_F(ModeUpdates, EndsInTheListWhenAnUpdateFindsTheQuestionOutOfSight)
{
    start();
    mode().phonebookDatabaseUpdated();
    hideAndSettle();
    EXPECT_EQ(context().m_pCurrentState, &context().m_Refreshing);
    contact("Miller", "Ann");
    mode().phonebookDatabaseUpdated();

    EXPECT_EQ(context().m_pCurrentState, &context().m_ViewingList);
    EXPECT_EQ(localRows(), Texts({"Miller, Ann"}));
}

TEST_F(ModeUpdates, ComesBackToTheTabInSight)
{
    offerPbxPhonebook();
    startNoting();
    int tabThen = -1;
    local.onEvent = [&] {
        tabThen = currentTab();
        EXPECT_EQ(display().getCurrent(), &tabs());
    };
    for (const int tab : {LDAP_TAB, PBX_TAB}) {
        selectTab(tab);
        tabThen = -1;
        display().setCurrent(&context().m_ContextMenu);
        mode().phonebookDatabaseUpdated();
        EXPECT_EQ(tabThen, OFFICE_TAB);
        EXPECT_EQ(currentTab(), tab);
    }
    EXPECT_EQ(told, Texts({"local databaseUpdated", "local databaseUpdated"}));
    EXPECT_TRUE(handle.pushes.empty());
}

TEST_F(ModeUpdates, AsksNothingOverAnotherTabUntilTheUserReturns)
{
    start();
    mode().tab();
    host.settle();
    mode().phonebookDatabaseUpdated();
    host.settle();
    EXPECT_EQ(currentTab(), LDAP_TAB);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(context().m_pCurrentState, &context().m_Refreshing);

    mode().tab();
    host.settle();
    EXPECT_TRUE(asksToRefresh());
}

TEST_F(ModeUpdates, EndsOnTheLocalTabWhenTheOtherOneVanished)
{
    offerPbxPhonebook();
    startNoting();
    selectTab(PBX_TAB);
    local.onEvent = [&] { mode().removePBXPhonebookTab(); };
    mode().phonebookDatabaseUpdated();
    EXPECT_EQ(currentTab(), OFFICE_TAB);

    mode().addPBXPhonebookTab();
    selectTab(PBX_TAB);
    local.onEvent = [&] {
        mode().removePBXPhonebookTab();
        selectTab(LDAP_TAB);
    };
    mode().phonebookDatabaseUpdated();
    EXPECT_EQ(currentTab(), OFFICE_TAB);
}

TEST_F(ModeUpdates, SaysThatTheMachineIsMissing)
{
    offerPbxPhonebook();
    startNoting();
    local.next = &context().m_Refreshing;
    local.onEvent = [&] { selectTab(PBX_TAB); };
    mode().phonebookDatabaseUpdated();

    EXPECT_TRUE(log.has("phonebookDatabaseUpdated() - getCurrentStateMachine() returned NULL", 2));
    EXPECT_EQ(context().m_pCurrentState, &context().m_Refreshing);
}

TEST_F(ModeUpdates, MergesUpdatesThatComeTogether)
{
    startNoting();
    makeLocalStateBusy();
    std::thread waiting([this] { mode().phonebookDatabaseUpdated(); });
    await("phonebookDatabaseUpdated()");
    std::thread later([this] {
        mode().phonebookDatabaseUpdated();
        mode().phonebookDatabaseUpdated();
    });
    // Whichever waits for the state, the others come back at once.
    await("phonebookDatabaseUpdated()", 3);
    letLocalStateGo();
    waiting.join();
    later.join();

    EXPECT_EQ(told, Texts({"local databaseUpdated"}));
    mode().phonebookDatabaseUpdated();
    EXPECT_EQ(told.size(), 2u); // the next one is a new one
}

TEST_F(ModeUpdates, RestartsBothDirectories)
{
    contact("Miller", "Ann");
    startNoting();
    directory.records.clear();
    contact("Young", "Neil");
    directory.groups->addGroup(PhonebookGroup(5, "Friends"));
    context().m_pGroupDisplayList->append(
        new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("old group"), 1));
    context().m_pLdapDisplayList->append(
        new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("found before"), 1));
    log.clear();
    mode().RestartLocalPhonebook();
    host.settle();

    EXPECT_EQ(modeLines(5).front(), "RestartLocalPhonebook()");
    EXPECT_EQ(context().m_pCurrentState, &context().m_ViewingList);
    EXPECT_EQ(context().m_pLdapCurrentState, &context().m_LdapViewingList);
    EXPECT_EQ(rows(), Texts({"Young, Neil"}));
    EXPECT_EQ(context().m_pGroupList->findGroup("Friends"), 5);
    EXPECT_FALSE(shows(*context().m_pLdapDisplayList, "found before"));
    EXPECT_EQ(context().m_pGroupDisplayList->size(), 0);
    EXPECT_EQ(currentTab(), OFFICE_TAB);
    const auto ldapEntered = log.position("LDAPStateViewingList::enterStateEvent()");
    EXPECT_GE(ldapEntered, 0);
    EXPECT_LT(ldapEntered, log.position("PhonebookStateViewingList::enterStateEvent"));
    EXPECT_EQ(tabs().getDisplayable(LDAP_TAB), context().m_pLdapDisplayList.get());
}

TEST_F(ModeUpdates, RestartsWithAllContactsAndNothingFound)
{
    directory.groups->updateGroup({3, "Family"});
    contact("Miller", "Ann");
    start();
    showGroup(3);
    ASSERT_EQ(title(), "Family");
    directory.found = {{{"lastname", "Found"}}, {{"nickname", "false"}}};
    directory.status = DIRECTORY_SUCCESS;
    PhonebookSearchCriteria criteria({}, "", true);
    context().m_pLdapPhonebookList->populate(criteria, false);
    ASSERT_EQ(context().m_pLdapPhonebookList->size(), 1u);
    mode().RestartLocalPhonebook();
    host.settle();

    EXPECT_EQ(title(), "");
    EXPECT_EQ(rows(), Texts({"Miller, Ann"}));
    EXPECT_EQ(context().m_pLdapPhonebookList->size(), 0u);
}

TEST_F(ModeUpdates, LeavesEachStateOnItsOwnTabForARestart)
{
    offerPbxPhonebook();
    for (const int tab : {OFFICE_TAB, LDAP_TAB, PBX_TAB}) {
        if (tab == OFFICE_TAB)
            start();
        note();
        int localThen = -1;
        int ldapThen = -1;
        local.onEvent = [&] { localThen = currentTab(); };
        ldap.onEvent = [&] { ldapThen = currentTab(); };
        selectTab(tab);
        mode().RestartLocalPhonebook();

        EXPECT_EQ(localThen, OFFICE_TAB);
        EXPECT_EQ(ldapThen, LDAP_TAB);
        EXPECT_EQ(told,
                  tab == LDAP_TAB ? Texts({"ldap exit", "local exit"}) : Texts({"local exit", "ldap exit"}));
        EXPECT_EQ(currentTab(), OFFICE_TAB);
    }
}

TEST_F(ModeUpdates, RestartsOnATelephoneWithoutLdap)
{
    HardwareVersion::setHWVariant(10);
    offerPbxPhonebook();
    startNoting();
    selectTab(1); // the PBX tab
    contact("Young", "Neil");
    mode().RestartLocalPhonebook();
    host.settle();

    EXPECT_EQ(told, Texts({"local exit"}));
    EXPECT_EQ(currentTab(), OFFICE_TAB);
    EXPECT_EQ(localRows(), Texts({"Young, Neil"}));
}

TEST_F(ModeUpdates, KeepsAnEmptyGroupListWhenARestartGetsNone)
{
    startNoting();
    directory.groups.reset();
    mode().RestartLocalPhonebook();

    ASSERT_NE(context().m_pGroupList, nullptr);
    EXPECT_EQ(context().m_pGroupList->numberOfGroups(), 0);
}

TEST_F(ModeUpdates, IsNoCallContextProviderAfterARestartOutOfSight)
{
    start();
    mode().RestartLocalPhonebook();
    EXPECT_NE(digits.provider, nullptr);
    hideAndSettle();
    digits.clearings = 0;
    mode().RestartLocalPhonebook();

    EXPECT_EQ(digits.provider, nullptr);
    EXPECT_EQ(digits.clearings, 3); // both states when they are left, the list once more
}

TEST_F(ModeUpdates, EntersBothListsAgainInAnotherAlphabet)
{
    startNoting();
    context().m_pGroupDisplayList->append(
        new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("no.group"), 1));
    context().m_pLdapDisplayList->append(
        new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("found before"), 1));
    EXPECT_TRUE(mode().updateAlphaOrder(true));

    EXPECT_EQ(told, Texts({"local exit", "ldap exit"}));
    EXPECT_EQ(context().m_pCurrentState, &context().m_ViewingList);
    EXPECT_EQ(context().m_pLdapCurrentState, &context().m_LdapViewingList);
    EXPECT_EQ(log.count("LDAPStateViewingList::enterStateEvent()"), 1);
    EXPECT_EQ(log.count("PhonebookStateViewingList::enterStateEvent"), 1);
    EXPECT_LT(log.position("LDAPStateViewingList::enterStateEvent()"),
              log.position("PhonebookStateViewingList::enterStateEvent"));
    EXPECT_EQ(modeLines(5).front(), "phonebookAlphabeticOrderChanged()");
    EXPECT_FALSE(shows(*context().m_pLdapDisplayList, "found before"));
    EXPECT_EQ(context().m_pGroupDisplayList->size(), 0);
    EXPECT_EQ(tabs().getDisplayable(OFFICE_TAB), context().m_pDisplayList.get());
    EXPECT_EQ(tabs().getDisplayable(LDAP_TAB), context().m_pLdapDisplayList.get());
}

TEST_F(ModeUpdates, KeepsTheTabInSightInAnotherAlphabet)
{
    offerPbxPhonebook();
    startNoting();
    for (const int tab : {LDAP_TAB, PBX_TAB, OFFICE_TAB}) {
        selectTab(tab);
        log.clear();
        EXPECT_TRUE(mode().updateAlphaOrder(false));
        EXPECT_EQ(currentTab(), tab);
        EXPECT_EQ(log.count("PhonebookStateViewingList::enterStateEvent"), 1);
        EXPECT_EQ(log.count("LDAPStateViewingList::enterStateEvent()"), 1);
        EXPECT_EQ(tabs().getDisplayable(OFFICE_TAB), context().m_pDisplayList.get());
        EXPECT_EQ(tabs().getDisplayable(LDAP_TAB), context().m_pLdapDisplayList.get());
    }
}

TEST_F(ModeUpdates, ChangesTheAlphabetOnATelephoneWithoutLdap)
{
    HardwareVersion::setHWVariant(11);
    offerPbxPhonebook();
    startNoting();
    for (const int tab : {1, OFFICE_TAB}) {
        note();
        selectTab(tab);
        EXPECT_TRUE(mode().updateAlphaOrder(true));
        EXPECT_EQ(told, Texts({"local exit"}));
        EXPECT_EQ(currentTab(), tab);
        EXPECT_EQ(log.count("PhonebookStateViewingList::enterStateEvent"), 1);
        EXPECT_EQ(log.count("LDAPStateViewingList::enterStateEvent()"), 0);
    }
}

TEST_F(ModeUpdates, SaysWhetherTheLanguageChangedInSight)
{
    start();
    for (const bool visible : {true, false}) {
        FlagAtEntry flag(context());
        mode().updateAlphaOrder(visible);
        EXPECT_EQ(flag.seen, std::vector<bool>({visible, visible}));
        EXPECT_TRUE(context().m_LanguageChangeWhenVisible); // until the next change
    }
}

TEST_F(ModeUpdates, TakesOverTheMobilityItems)
{
    startNoting();
    change("mobility-mode", "1");
    change("disable-access-phonebook", "true");

    EXPECT_TRUE(log.has("manageableDataChanged()", 5));
    EXPECT_TRUE(log.has("manageableDataChanged() - mobility mode = 1", 5));
    EXPECT_TRUE(log.has("manageableDataChanged() - disable access phonebook = true", 5));
    EXPECT_FALSE(log.has("PhonebookStateViewingList::mobilityPhonebookRefreshActive")); // not a mobile user
}

TEST_F(ModeUpdates, SaysOnlyOfDisabledAccessThatItChanged)
{
    startNoting();
    change("disable-access-phonebook", "false");
    change("disable-access-phonebook", "TRUE");

    EXPECT_FALSE(log.has("manageableDataChanged() - disable access phonebook = true"));
}

TEST_F(ModeUpdates, ShowsThatAMobileUsersPhonebookIsFetched)
{
    start();
    change("mobility-mode", "2");
    host.settle();
    EXPECT_EQ(popups(), 0u);
    change("disable-access-phonebook", "true");
    host.settle();
    ASSERT_EQ(popups(), 1u);
    EXPECT_EQ(top().text, "Mobility.Fetching.Directory");
    change("disable-access-phonebook", "false");
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ModeUpdates, OnlyAsksWhetherAFetchIsPendingOnAnotherTab)
{
    start();
    change("mobility-mode", "2");
    selectTab(LDAP_TAB);
    log.clear();
    change("disable-access-phonebook", "true");
    host.settle();

    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(log.count("isLocalTabActive() - local tab not active", 5), 1);
}

TEST_F(ModeUpdates, RefreshesAMobileUserAfterAnUnknownItemToo)
{
    start();
    change("mobility-mode", "2");
    change("disable-access-phonebook", "true");
    log.clear();
    change("brightness", "3");

    EXPECT_TRUE(log.has("isLocalTabActive() - local tab active", 5));
}

TEST_F(ModeUpdates, ReadsTheLdapOptionsAnew)
{
    startNoting();
    directory.options["LdapQualifier"] = 3;
    directory.options["LdapDisplayOptions"] = 1;
    change("ldap-qualifier", "ignored");
    EXPECT_EQ(static_cast<int>(context().m_pLdapPhonebookList->getDisplayQualifier()), 3);
    EXPECT_EQ(static_cast<int>(context().m_pLdapPhonebookList->getDisplayMode()), 0);
    change("ldap-display-option", "ignored");
    EXPECT_EQ(static_cast<int>(context().m_pLdapPhonebookList->getDisplayMode()), 1);
}

TEST_F(ModeUpdates, HasNoLdapOptionsOnTdmVariants)
{
    HardwareVersion::setHWVariant(10);
    startNoting();
    log.clear();
    change("ldap-qualifier", "1");
    change("ldap-display-option", "1");

    EXPECT_EQ(modeLines(5), Texts({"manageableDataChanged()", "manageableDataChanged()"}));
}

} // namespace
