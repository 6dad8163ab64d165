#include <framework/display/PhonebookItem.h>
#include <framework/services/CallPartyIdentifier.h>
#include <framework/services/PhonebookSearchCriteria.h>
#include <framework/services/Utils.h>

#include "PhonebookScreens.h"

namespace {

class BareScreen final : public PhonebookStateBase {};

class StateBase : public PhonebookScreens {
protected:
    // What a search of the corporate directory found; the trailer is added.
    void directoryFinds(std::vector<AttributeList> entries)
    {
        entries.push_back({{"nickname", "false"}});
        directory.found = std::move(entries);
        directory.status = DIRECTORY_SUCCESS;
        PhonebookSearchCriteria criteria({}, "", true);
        context().m_pLdapPhonebookList->populate(criteria, true);
    }
    DisplayAPI::SearchList& ldapList() { return *context().m_pLdapDisplayList; }
    Texts ldapRows()
    {
        Texts texts;
        for (int row = 0; row < ldapList().size(); ++row)
            texts.push_back(ldapList().getText(row));
        return texts;
    }
    std::vector<int> ldapIcons()
    {
        DisplayAPI::FrameScreen painted;
        ldapList().paint(painted, ROWS);
        std::vector<int> numbers;
        for (const auto& row : painted.rows)
            numbers.push_back(row.icon);
        return numbers;
    }

    BareScreen state;
};

} // namespace

TEST_F(StateBase, StaysWhateverHappens)
{
    start();
    auto* pContext = &context();
    EXPECT_EQ(state.tabFrom(pContext), &state);
    EXPECT_EQ(state.tabTo(pContext), &state);
    EXPECT_EQ(state.backEvent(pContext, nullptr, nullptr), &state);
    EXPECT_EQ(state.okEvent(pContext, nullptr, nullptr), &state);
    EXPECT_EQ(state.saveEvent(pContext, nullptr, nullptr), &state);
    EXPECT_EQ(state.rightEvent(pContext, nullptr, nullptr), &state);
    EXPECT_EQ(state.screenEvent(pContext, nullptr, nullptr), &state);
    EXPECT_EQ(state.doCSTAServiceInitiatedEvent(pContext, nullptr), &state);
    EXPECT_EQ(state.itemStateChangedEvent(pContext, nullptr), &state);
    EXPECT_EQ(state.popupDiallerItemStateChangedEvent(pContext, nullptr), &state);
    EXPECT_EQ(state.dialingStartedEvent(pContext, "1"), &state);
    EXPECT_EQ(state.dialingStoppedEvent(pContext), &state);
    EXPECT_EQ(state.interDigitTimeoutEvent(pContext, nullptr), &state);
    EXPECT_EQ(state.stateAfterDialing(pContext), &state);
}

TEST_F(StateBase, LetsNobodyLeaveForAnotherTab)
{
    start();
    EXPECT_FALSE(state.tabValid(&context()));
}

TEST_F(StateBase, OffersNoPartyAndNothingToFetch)
{
    start();
    CallPartyIdentifier party;
    EXPECT_FALSE(state.getDialPartyDetails(party, &context()));
    EXPECT_FALSE(state.mobilityPhonebookRefreshActive(&context(), true));
    EXPECT_FALSE(state.mobilityPhonebookRefreshPending());
}

TEST_F(StateBase, IgnoresTimersAndKeysWithoutAnAnswer)
{
    start();
    EXPECT_EQ(state.timerEvent(&context(), 1), nullptr);
    EXPECT_EQ(state.buttonPressedEvent(&context(), PhysDefs::keyFunctionType::Digit, 1,
                                       PhysDefs::actionType::Pressed, "1"),
              nullptr);
    EXPECT_TRUE(log.has("PhonebookStateBase::timerEvent() - ignored", 5));
    EXPECT_TRUE(log.has("PhonebookStateBase::buttonPressedEvent() - ignored", 5));
}

TEST_F(StateBase, TracesUnderItsOwnSource)
{
    start();
    log.clear();
    state.setCallContextProvider(&context());
    state.clearCallContextProvider(&context());
    state.mobilityPhonebookRefreshActive(&context(), false);
    state.mobilityPhonebookRefreshPending();
    EXPECT_EQ(traces("./src/PhonebookStateBase"),
              (Texts{"PhonebookStateBase::setCallContextProvider()",
                     "PhonebookStateBase::clearCallContextProvider()",
                     "PhonebookStateBase::mobilityPhonebookRefreshActive()",
                     "PhonebookStateBase::mobilityPhonebookRefreshPending()"}));
    EXPECT_EQ(digits.clearings, 0);
}

TEST_F(StateBase, KnowsWhichTabIsShown)
{
    start();
    EXPECT_TRUE(state.isOfficeTabCurrent(&context()));
    EXPECT_FALSE(state.isLdapTabCurrent(&context()));
    context().m_pTabScreen->setCurrentTabIndex(1);
    EXPECT_FALSE(state.isOfficeTabCurrent(&context()));
    EXPECT_TRUE(state.isLdapTabCurrent(&context()));
}

TEST_F(StateBase, GoesToRefreshWhenTheDirectoryChanges)
{
    start();
    directory.options["DisplayOptions"] = 1;
    EXPECT_EQ(state.phonebookDatabaseUpdated(&context()), &context().m_Refreshing);
    EXPECT_EQ(list().getDisplayMode(), displayMode::FirstnameSurname);
}

TEST_F(StateBase, ReadsTheOptionsOfBothDirectoriesInTheirOrder)
{
    start();
    log.clear();
    state.phonebookDatabaseUpdated(&context());
    Texts reads;
    for (const auto& text : traces("./src/PhonebookList")) {
        if (text.find("FromDatabase") != std::string::npos)
            reads.push_back(text);
    }
    EXPECT_EQ(reads, (Texts{"getDisplayOptionFromDatabase Function Entered",
                            "PhonebookList::getDisplayQualifierFromDatabase()",
                            "getDisplayOptionFromDatabase Function Entered"}));
}

TEST_F(StateBase, LeavesTheCorporateDirectoryAloneWhileItIsEmpty)
{
    start();
    directory.options["LdapDisplayOptions"] = 2;
    directory.options["LdapQualifier"] = 3;
    auto* pListBefore = &ldapList();
    EXPECT_EQ(state.phonebookDatabaseUpdated(&context()), &context().m_Refreshing);
    EXPECT_EQ(&ldapList(), pListBefore);
    EXPECT_EQ(context().m_pPreviousLdapDisplayList, nullptr);
    EXPECT_EQ(context().m_pLdapPhonebookList->getDisplayMode(), displayMode::SurnameInitial);
    EXPECT_EQ(context().m_pLdapPhonebookList->getDisplayQualifier(), displayQualifier::Email);
}

TEST_F(StateBase, DropsTheCorporateDirectorysRowsWhenTheDirectoryChanges)
{
    start();
    directoryFinds({{{Utils::SURNAME, "Found"}}});
    auto* pListBefore = &ldapList();
    context().m_pLdapCurrentState = &context().m_LdapFind;

    EXPECT_EQ(state.phonebookDatabaseUpdated(&context()), &context().m_Refreshing);

    EXPECT_EQ(context().m_pPreviousLdapDisplayList.get(), pListBefore);
    EXPECT_NE(&ldapList(), pListBefore);
    EXPECT_EQ(context().m_pLdapPhonebookList->size(), 0u);
    EXPECT_EQ(context().m_pLdapCurrentState, &context().m_LdapViewingList);
    EXPECT_EQ(context().m_pTabScreen->getDisplayable(1), &ldapList());
    EXPECT_TRUE(log.has("LDAPStateFind::clearForm()"));
    EXPECT_TRUE(state.isOfficeTabCurrent(&context()));
}

TEST_F(StateBase, KeepsOneReplacedDirectoryListOnly)
{
    start();
    for (int i = 0; i < 2; ++i) {
        directoryFinds({{{Utils::SURNAME, "Found"}}});
        auto* pListBefore = &ldapList();
        state.phonebookDatabaseUpdated(&context());
        EXPECT_EQ(context().m_pPreviousLdapDisplayList.get(), pListBefore);
    }
}

TEST_F(StateBase, GoesToRefreshOnTelephonesWithoutACorporateDirectory)
{
    HardwareVersion::setHWVariant(10);
    start();
    EXPECT_EQ(state.phonebookDatabaseUpdated(&context()), &context().m_Refreshing);
    EXPECT_EQ(context().m_pLdapPhonebookList, nullptr);
}

TEST_F(StateBase, FillsTheDirectoryListWithTheIconsOfTheDefaultNumbers)
{
    start();
    directoryFinds({{{Utils::SURNAME, "A"}, {Utils::OFFICE, "1"}},
                    {{Utils::SURNAME, "B"}, {Utils::OFFICE2, "1"}},
                    {{Utils::SURNAME, "C"}, {Utils::MOBILE, "1"}},
                    {{Utils::SURNAME, "D"}, {Utils::PRIVATE, "1"}},
                    {{Utils::SURNAME, "E"}}});
    ldapList().clear();
    state.constructLdapDisplayList(&context());
    EXPECT_EQ(ldapRows(), (Texts{"A", "B", "C", "D", "E"}));
    EXPECT_EQ(ldapIcons(), (std::vector<int>{3, 4, 5, 2, 0}));
    EXPECT_EQ(ldapList().getSelectedIndex(), 0);

    ldapList().setSelectedIndex(3);
    state.constructLdapDisplayList(&context());
    EXPECT_EQ(ldapList().getSelectedIndex(), 0);
}

TEST_F(StateBase, ShowsTheQualifierBesideNamesOfTheDirectory)
{
    start();
    context().m_pLdapPhonebookList->setDisplayMode(displayMode::FirstnameSurname);
    context().m_pLdapPhonebookList->setDisplayQualifier(displayQualifier::Company);
    directoryFinds({{{Utils::SURNAME, "Miller"}, {Utils::FIRSTNAME, "Jane"}, {Utils::COMPANY, "Acme"}}});
    ldapList().clear();
    state.constructLdapDisplayList(&context());
    EXPECT_EQ(ldapRows(), Texts{"Jane Miller (Acme)"});
}

TEST_F(StateBase, SaysThatTheDirectoryFoundNothing)
{
    start();
    ldapList().clear();
    state.constructLdapDisplayList(&context());
    EXPECT_EQ(ldapRows(), Texts{"no.results"});
    EXPECT_EQ(ldapList().getSelectedIndex(), 0);
}

TEST_F(StateBase, PutsTheOptionsFirstWithoutSoftKeys)
{
    start(Bar::None);
    ldapList().clear();
    state.constructLdapDisplayList(&context());
    EXPECT_EQ(ldapRows(), Texts{"list.options"});
    EXPECT_EQ(ldapList().getSelectedIndex(), 0);

    directoryFinds({{{Utils::SURNAME, "Found"}}});
    ldapList().clear();
    state.constructLdapDisplayList(&context());
    EXPECT_EQ(ldapRows(), (Texts{"list.options", "Found"}));
    EXPECT_EQ(ldapList().getSelectedIndex(), 0);
}
