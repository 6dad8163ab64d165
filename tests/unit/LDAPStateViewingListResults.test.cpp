// What is searched for as the user types, and what becomes of the answer.

#include <stdexcept>

#include "DirectoryListScreens.h"

namespace {

class DirectorySearch : public DirectoryListScreens {};

} // namespace

// --- Typing ---

TEST_F(DirectorySearch, StartsAtOnceWithTheAsterisk)
{
    startOnItsTab();
    finds({person("Miller", "Amy")});
    type("mil*");
    EXPECT_EQ(queries(), Texts{surnameQuery("mil*")});
    EXPECT_EQ(field(), "mil");
    EXPECT_EQ(rows(), Texts{"Miller, Amy"});
}

TEST_F(DirectorySearch, LooksForTheWholeNameWithTheHash)
{
    startOnItsTab();
    type("miller#");
    EXPECT_EQ(queries(), Texts{surnameQuery("miller")});
    EXPECT_EQ(field(), "miller");
}

TEST_F(DirectorySearch, DoesNotBeginWithACommaOrABlank)
{
    startOnItsTab();
    for (const auto* key : {",", " ", "*", "#"}) {
        type(key);
        EXPECT_EQ(field(), "") << key;
        EXPECT_FALSE(timer().running) << key;
    }
    quiet();
    EXPECT_EQ(queries(), Texts{});
}

TEST_F(DirectorySearch, TakesTheCommaForTheEndOfTheSurname)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        forget();
        finds({});
        type("miller,");
        EXPECT_EQ(queries(), Texts{surnameQuery("miller")});
        EXPECT_EQ(field(), "miller,");
    }
}

TEST_F(DirectorySearch, LooksForTheFirstNameBehindTheComma)
{
    startOnItsTab();
    finds({});
    type("Miller,j");
    EXPECT_EQ(field(), "Miller, j");
    forget();
    quiet();
    EXPECT_EQ(queries(), Texts{"surname=Miller nickname=Miller firstname=j*"});
    EXPECT_EQ(field(), "Miller, j");
}

TEST_F(DirectorySearch, MovesTheSelectionWhileTheTextBeginsARow)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        threeFound();
        const int first = bar == Bar::None ? 1 : 0;
        type("n");
        EXPECT_EQ(selectedRow(), first + 2);
        EXPECT_EQ(field(), "min");
        EXPECT_EQ(queries(), Texts{});
        EXPECT_FALSE(timer().running);
        EXPECT_TRUE(wroteInOrder({"Exact match found, index in directory list = 2",
                                  "Selected index on display = " + std::to_string(first + 2)}));
        press(Kind::Clear);
        EXPECT_EQ(selectedRow(), first);
    }
}

TEST_F(DirectorySearch, GoesToTheClosestRowWhenTheTextIsDeleted)
{
    startOnItsTab();
    threeFound();
    press(DOWN);
    // Nothing is searched for without a text, although it begins every row.
    press(Kind::ClearAll);
    EXPECT_EQ(field(), "");
    EXPECT_EQ(selectedRow(), 0);
    EXPECT_TRUE(log.has("Exact match found, index in directory list = 0"));
    EXPECT_EQ(queries(), Texts{});
}

TEST_F(DirectorySearch, SaysWhenARowIsOnlyTheClosest)
{
    startOnItsTab();
    threeFound();
    press(DOWN);
    // The rows stay, their entries are gone.
    results().depopulate();
    press(Kind::ClearAll);
    EXPECT_EQ(selectedRow(), 0);
    EXPECT_TRUE(
        wroteInOrder({"Closest match found, index in directory list = 0", "Selected index on display = 0"}));
}

TEST_F(DirectorySearch, StaysOnTheFirstRowOfAnEmptyList)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        log.clear();
        widget().setSelectionHighlight(false);
        type(",");
        EXPECT_EQ(selectedRow(), 0);
        EXPECT_TRUE(top().highlighted); // it was selected
        EXPECT_FALSE(log.has("getIndex entered"));
    }
}

TEST_F(DirectorySearch, DropsTheRowsThatNoLongerFit)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        threeFound();
        type("x");
        EXPECT_EQ(rows(), Texts{bar == Bar::None ? "list.options" : "no.results"});
        EXPECT_EQ(results().size(), 0u);
        EXPECT_EQ(field(), "mix");
        EXPECT_TRUE(top().searchOpen);
        EXPECT_TRUE(timer().running);
        EXPECT_EQ(log.count("LDAPStateViewingList::itemStateChangedEvent - Clear non-empty list", 5), 1);
        // There is nothing left to drop.
        type("y");
        EXPECT_EQ(log.count("LDAPStateViewingList::itemStateChangedEvent - Clear non-empty list", 5), 1);
        EXPECT_EQ(field(), "mixy");
        quiet();
        EXPECT_EQ(queries(), Texts{surnameQuery("mixy*")});
    }
}

TEST_F(DirectorySearch, AsksAgainForTheSameTextWithTheAsterisk)
{
    startOnItsTab();
    threeFound();
    type("*");
    EXPECT_EQ(queries(), Texts{surnameQuery("mi*")});
    EXPECT_EQ(field(), "mi");
}

TEST_F(DirectorySearch, IsRepeatedByOkWhenNothingWasFound)
{
    startOnItsTab();
    type("mil*");
    press(OK); // closes the message
    press(OK);
    EXPECT_EQ(queries(), (Texts{surnameQuery("mil*"), surnameQuery("mil*")}));
    EXPECT_EQ(notification(), "no.matches.found");
}

TEST_F(DirectorySearch, DoesNotWaitWhenOkIsPressed)
{
    startOnItsTab();
    type("mil");
    finds({person("Miller", "Amy")});
    press(OK);
    EXPECT_EQ(queries(), Texts{surnameQuery("mil*")});
    EXPECT_FALSE(timer().running);
    EXPECT_EQ(calls(), Texts{});
}

TEST_F(DirectorySearch, StartsANewTextAfterAnArrow)
{
    startOnItsTab();
    threeFound();
    press(DOWN);
    type("s");
    EXPECT_EQ(field(), "s");
    finds({});
    quiet();
    EXPECT_EQ(queries(), Texts{surnameQuery("s*")});
}

// --- What the directory is asked ---

TEST_F(DirectorySearch, AsksTheCorporateDirectory)
{
    startOnItsTab();
    type("mil*");
    ASSERT_EQ(directory.searches.size(), 1u);
    const auto& search = directory.searches[0];
    EXPECT_EQ(search.attributes, (AttributeList{{Utils::SURNAME, "mil*"}, {Utils::NICKNAME, "mil*"}}));
    EXPECT_EQ(search.base, "");
    EXPECT_EQ(search.source, 1);
    EXPECT_TRUE(search.ignoreNickname);
}

TEST_F(DirectorySearch, AsksForTheNicknameWhereItIsInUse)
{
    directory.nicknames = true;
    startOnItsTab();
    type("bob*");
    ASSERT_EQ(directory.searches.size(), 1u);
    EXPECT_EQ(directory.searches[0].attributes,
              (AttributeList{{Utils::SURNAME, "bob"}, {Utils::NICKNAME, "bob"}}));
    EXPECT_FALSE(directory.searches[0].ignoreNickname);
    EXPECT_EQ(field(), "bob");
}

TEST_F(DirectorySearch, NoticesThatNicknamesAreNoLongerInUse)
{
    directory.nicknames = true;
    startOnItsTab();
    finds({});
    type("b");
    directory.nicknames = false;
    type("o*");
    EXPECT_EQ(queries(), Texts{surnameQuery("bo*")});
    EXPECT_TRUE(directory.searches[0].ignoreNickname);
}

TEST_F(DirectorySearch, MarksItsRowsAsTheDirectorys)
{
    startOnItsTab();
    const std::string longName(40, 'm');
    finds({person(longName, "Amy")});
    type("m*");
    EXPECT_EQ(rows(), Texts{longName + ", Amy"});
    results().setLDAPPhonebookList(false);
    log.clear();
    type("*");
    EXPECT_TRUE(log.has("PhonebookList::setLDAPPhonebookList()"));
}

TEST_F(DirectorySearch, BringsNumbersIntoCanonicalForm)
{
    digits.canonical = [](const std::string& number) { return "+49" + number; };
    startOnItsTab();
    finds({person("Miller", "Amy", {{Utils::OFFICE, "30100"}})});
    type("mil*");
    press(OK);
    EXPECT_EQ(digits.converted, Texts{"30100"});
    EXPECT_EQ(calls(), Texts{"MakeCall +4930100"});
}

TEST_F(DirectorySearch, IsShownWhileItRuns)
{
    startOnItsTab();
    threeFound();
    std::string shown;
    int rowsLeft = -1;
    unsigned entriesLeft = 1;
    int type1 = 0;
    directory.whileSearching = [&] {
        shown = top().text;
        type1 = top().type;
        rowsLeft = widget().size();
        entriesLeft = results().size();
    };
    type("*");
    EXPECT_EQ(shown, "retrieving.entries");
    EXPECT_EQ(type1, 1);
    EXPECT_EQ(rowsLeft, 0);
    EXPECT_EQ(entriesLeft, 0u);
    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(wroteInOrder({"depopulate", "populate - source enum value = 1",
                              "LDAPStateViewingList::doLdapSearch - dismiss ProgressPopup",
                              "PhonebookList::convertToCanonical()"}));
}

TEST_F(DirectorySearch, TakesItsMessageAwayWhateverHappens)
{
    startOnItsTab();
    type("mil");
    endsWith(DIRECTORY_SUCCESS); // without the trailer record
    EXPECT_THROW(type("*"), std::out_of_range);
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

// --- The answer ---

TEST_F(DirectorySearch, SelectsTheFirstEntryFound)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        threeFound();
        Texts expected{"Miller, Amy", "Milton, Bob", "Minter, Zoe"};
        if (bar == Bar::None)
            expected.insert(expected.begin(), "list.options");
        EXPECT_EQ(rows(), expected);
        EXPECT_EQ(selectedRow(), bar == Bar::None ? 1 : 0);
        EXPECT_EQ(popups(), 0u);
        EXPECT_TRUE(top().searchOpen);
    }
}

TEST_F(DirectorySearch, SaysWhatWentWrong)
{
    startOnItsTab();
    const std::vector<std::pair<int, std::string>> table{{1, "no.matches.found"},
                                                         {2, "connection.failure"},
                                                         {3, "configuration.error"},
                                                         {4, "configuration.error"},
                                                         {5, "configuration.error"},
                                                         {6, "ldap.find.unexpected.error"},
                                                         {7, "ldap.find.unexpected.error"},
                                                         {8, "ldap.find.unexpected.error"},
                                                         {10, "ldap.find.unexpected.error"},
                                                         {-1, "ldap.find.unexpected.error"}};
    type("mil");
    for (const auto& [status, key] : table) {
        endsWith(status);
        type("*");
        EXPECT_EQ(notification(), key) << status;
        EXPECT_EQ(top().type, 6);
        EXPECT_EQ(host.frame->base.rows.at(0).text, "no.results");
        EXPECT_EQ(field(), "mil");
        press(OK); // closes the message, and nothing else
        EXPECT_EQ(popups(), 0u);
    }
    EXPECT_EQ(directory.searches.size(), table.size());
}

TEST_F(DirectorySearch, SaysNothingUnlessItIsAsked)
{
    startOnItsTab();
    state().showLdapSearchResult(&context(), DIRECTORY_CONNECTION_FAILURE, false);
    host.settle();
    EXPECT_EQ(popups(), 0u);
    state().showLdapSearchResult(&context(), DIRECTORY_CONNECTION_FAILURE, true);
    host.settle();
    EXPECT_EQ(notification(), "connection.failure");
}

TEST_F(DirectorySearch, LetsItsMessageGoAfterThreeSeconds)
{
    startOnItsTab();
    type("mil*");
    wait(2999ms);
    EXPECT_EQ(notification(), "no.matches.found");
    EXPECT_EQ(display().getCurrent(), state().getPErrorNotificationPopup());
    log.clear();
    wait(1ms);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(rows(), Texts{"no.results"});
    // There is nothing to do when it goes.
    EXPECT_EQ(log.count("LDAPStateViewingListWithListOptionsContext::screenEvent - unrecognised widget", 3),
              1);
    EXPECT_EQ(current(), &state());
}

TEST_F(DirectorySearch, SaysNothingWhenNothingIsWrong)
{
    startOnItsTab();
    finds({});
    type("mil*");
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(rows(), Texts{"no.results"});
    EXPECT_EQ(field(), "mil");
}

TEST_F(DirectorySearch, ShowsWhatCameOfTooManyMatches)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.options["LdapDisplayOptions"] = 1; // would empty the field after a success
        startOnItsTab(bar);
        finds({person("Miller", "Amy"), person("Milton", "Bob")}, DIRECTORY_TOO_MANY_MATCHES);
        type("mil*");
        EXPECT_EQ(notification(), "too.many.matches");
        press(OK);
        EXPECT_EQ(rows().back(), "Bob Milton");
        EXPECT_EQ(selectedRow(), 0);
        EXPECT_EQ(field(), "mil");
    }
}

TEST_F(DirectorySearch, ForgetsTheTextWhereNamesBeginWithTheFirstName)
{
    for (const int displayMode : {1, 2, 3}) {
        directory.options["LdapDisplayOptions"] = displayMode;
        startOnItsTab();
        forget();
        finds({person("Miller", "Amy", {{Utils::OFFICE, "100"}})});
        type("mil*");
        EXPECT_EQ(field(), "");
        EXPECT_EQ(state().getTreatedSearchText(), "");
        EXPECT_TRUE(top().searchOpen);
        EXPECT_EQ(selectedRow(), 0);
        EXPECT_EQ(log.count("LDAPStateViewingList::itemStateChangedEvent - DISMISS SEARCH POPUP", 5), 1);
        press(OK);
        EXPECT_EQ(directory.searches.size(), 1u);
    }
    EXPECT_EQ(calls().size(), 3u);
}

TEST_F(DirectorySearch, KeepsTheTextWhereNamesBeginWithTheSurname)
{
    startOnItsTab();
    threeFound();
    EXPECT_EQ(field(), "mi");
    EXPECT_FALSE(log.has("LDAPStateViewingList::itemStateChangedEvent - DISMISS SEARCH POPUP"));
}

TEST_F(DirectorySearch, ForgetsTheTextWhenNicknamesWereFound)
{
    directory.nicknames = true;
    startOnItsTab();
    finds({person("Miller", "Amy"), person("Smith", "Bob")}, DIRECTORY_SUCCESS, true);
    type("bob*");
    EXPECT_EQ(field(), "");
    EXPECT_EQ(selectedRow(), 0);
    // Forgotten with the names: nothing is searched for any more.
    forget();
    timerExpires();
    EXPECT_EQ(queries(), Texts{""});
}

TEST_F(DirectorySearch, KeepsTheTextWhenNicknamesWereFoundOnlyInPart)
{
    startOnItsTab();
    finds({person("Miller", "Amy")}, DIRECTORY_TOO_MANY_MATCHES, true);
    type("bob*");
    EXPECT_EQ(field(), "bob");
}

TEST_F(DirectorySearch, TakesAMenuAwayWithItsResult)
{
    startOnItsTab();
    type("mil");
    press(MENU);
    finds({person("Miller", "Amy")});
    quiet();
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(rows(), Texts{"Miller, Amy"});
}
