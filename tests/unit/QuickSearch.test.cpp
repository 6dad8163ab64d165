#include "PhonebookList.h"

#include <gtest/gtest.h>

#include <framework/services/Utils.h>
#include <framework/util/Utf8Utils.h>
#include <testing/FakeDirectoryService.h>
#include <testing/LogCapture.h>

namespace {

class QuickSearch : public testing::Test {
protected:
    QuickSearch() { Utf8Utils::create("en"); }
    ~QuickSearch() override { Utf8Utils::destroy(); }

    void showSurnames(const std::vector<std::string>& surnames)
    {
        for (const auto& surname : surnames)
            directory.add(surname, "");
        list.populate(-1);
    }

    // (result, index)
    std::pair<int, int> search(const std::string& text)
    {
        int index = -7;
        const int found = list.getIndex(text, index);
        return {found, index};
    }

    using Result = std::pair<int, int>;

    FakeDirectoryService directory;
    PhonebookList list{&directory};
};

} // namespace

TEST_F(QuickSearch, FindsTheFirstOfSeveralNamesThatBeginWithTheText)
{
    showSurnames({"adams", "baker", "bakker", "carter"});
    EXPECT_EQ(search("bak"), (Result{1, 1}));
    EXPECT_EQ(search("bakk"), (Result{1, 2}));
    EXPECT_EQ(search("a"), (Result{1, 0}));
    EXPECT_EQ(search("c"), (Result{1, 3}));
}

TEST_F(QuickSearch, FallsBackToTheLastRowThatSortsBefore)
{
    showSurnames({"adams", "baker", "bakker", "carter"});
    EXPECT_EQ(search("bz"), (Result{0, 2}));
    EXPECT_EQ(search("zz"), (Result{0, 3}));
    EXPECT_EQ(search("bakes"), (Result{0, 1}));
}

TEST_F(QuickSearch, FallsBackToTheFirstRowWhenTheTextSortsBeforeAll)
{
    showSurnames({"adams", "baker", "bakker", "carter"});
    EXPECT_EQ(search("0"), (Result{0, 0}));
}

TEST_F(QuickSearch, GivesRowZeroOfAnEmptyList)
{
    const LogCapture log;
    EXPECT_EQ(search("a"), (Result{0, 0}));
    EXPECT_EQ(log.texts(5),
              (std::vector<std::string>{"getIndex entered", "getIndex QuickSearchString = a "}));
}

TEST_F(QuickSearch, FindsTheFirstRowForNoText)
{
    showSurnames({"adams", "baker", "bakker", "carter"});
    EXPECT_EQ(search(""), (Result{1, 0}));
}

TEST_F(QuickSearch, FindsTheFirstOfManyRowsThatAllMatch)
{
    showSurnames(std::vector<std::string>(100, "baker"));
    EXPECT_EQ(search("b"), (Result{1, 0}));
}

TEST_F(QuickSearch, TellsNeitherCaseNorAccentsApart)
{
    showSurnames({"Adams", "Müller", "Mulligan", "Nagy"});
    EXPECT_EQ(search("mu"), (Result{1, 1}));
    EXPECT_EQ(search("MÜ"), (Result{1, 1}));
    EXPECT_EQ(search("mullig"), (Result{1, 2}));
}

TEST_F(QuickSearch, TakesAnotherLetterOfTheLanguageForAnother)
{
    Utf8Utils::setSortOrder("sv");
    showSurnames({"Adams", "Mulligan", "Zorn", "Åberg"});
    EXPECT_EQ(search("mu"), (Result{1, 1}));
    EXPECT_EQ(search("å"), (Result{1, 3}));
    EXPECT_EQ(search("ab"), (Result{0, 0}));
}

TEST_F(QuickSearch, LooksAtTheNameAsItIsShown)
{
    directory.add("Miller", "Jane");
    directory.add("Adams", "Zoe");
    list.populate(-1);
    EXPECT_EQ(search("miller, j"), (Result{1, 1}));

    list.setDisplayMode(displayMode::FirstnameSurname);
    EXPECT_EQ(search("zoe"), (Result{1, 1}));
    EXPECT_EQ(search("miller"), (Result{0, 0}));
}

TEST_F(QuickSearch, LooksAtTheInitialWhereOnlyThatIsShown)
{
    directory.add("Miller", "Jane");
    list.populate(-1);
    list.setDisplayMode(displayMode::SurnameInitial);
    EXPECT_EQ(search("miller, j"), (Result{1, 0}));
    EXPECT_EQ(search("miller, ja"), (Result{0, 0}));
}

TEST_F(QuickSearch, LooksAtTheQualifierToo)
{
    PhonebookList ldap(&directory, nullptr);
    directory.status = DIRECTORY_SUCCESS;
    directory.found = {{{Utils::SURNAME, "Miller"}, {Utils::COMPANY, "Acme"}},
                       {{Utils::SURNAME, "Miller"}, {Utils::COMPANY, "Zenith"}},
                       {{"trailer", "false"}}};
    ldap.setDisplayQualifier(displayQualifier::Company);
    PhonebookSearchCriteria criteria({}, "", true);
    ldap.populate(criteria, true);
    int index = -7;
    EXPECT_EQ(ldap.getIndex("miller (z", index), 1);
    EXPECT_EQ(index, 1);
}

TEST_F(QuickSearch, FindsEveryTypedBeginningWhereALinearSearchFindsIt)
{
    const std::vector<std::string> letters = {"a", "b", "B", "ä", "Ä", "z", " ", "-", "é"};
    std::vector<std::string> names;
    for (const auto& first : letters)
        for (const auto& second : letters)
            for (const auto& third : letters)
                names.push_back(first + second + third);
    showSurnames(names);

    for (const auto& text : names) {
        for (const auto& typed : {text.substr(0, text.size()), Utf8Utils::getFirstUnicodeChar(text)}) {
            std::string wanted = typed;
            Utf8Utils::normalize(wanted);
            int expected = -1;
            for (unsigned int row = 0; row < list.size() && expected < 0; ++row) {
                std::string name =
                    list.elementAt(row).getDisplayName(displayMode::SurnameFirstname, displayQualifier::None);
                Utf8Utils::normalize(name);
                if (Utf8Utils::find(name, wanted) == 0)
                    expected = static_cast<int>(row);
            }
            EXPECT_EQ(search(typed), (Result{1, expected})) << typed;
        }
    }
}

TEST_F(QuickSearch, LogsEachProbe)
{
    showSurnames({"adams", "baker"});
    const LogCapture log;
    EXPECT_EQ(search("x"), (Result{0, 1}));

    EXPECT_EQ(log.texts(5).front(), "getIndex entered");
    EXPECT_EQ(log.count("getIndex QuickSearchString = x "), 1);
    EXPECT_EQ(log.count("getIndex - foundPos = -1 "), 2);
    EXPECT_EQ(log.count("getIndex IndexFound = 1 "), 1);
    EXPECT_EQ(log.texts(5).back(), "getIndex IndexFound = 1 ");
    std::string adams = "adams";
    Utf8Utils::normalize(adams);
    EXPECT_LT(log.position("getIndex - normalized gotName = " + adams + " "),
              log.position("getIndex - foundPos = -1 "));
    EXPECT_EQ(log.count("getIndex - normalized gotName = " + adams + " "), 1);
}
