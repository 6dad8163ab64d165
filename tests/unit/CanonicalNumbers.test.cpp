#include "PhonebookList.h"

#include <gtest/gtest.h>

#include <framework/services/Utils.h>
#include <testing/FakeDigitAnalysis.h>
#include <testing/FakeDirectoryService.h>

namespace {

using Strings = std::vector<std::string>;

class CanonicalNumbers : public testing::Test {
protected:
    CanonicalNumbers()
    {
        directory.status = DIRECTORY_SUCCESS;
        digitAnalysis.canonical = [](const std::string& number) { return "+" + number; };
    }

    void find(PhonebookList& list, std::vector<AttributeList> records)
    {
        records.push_back({{"trailer", "false"}});
        directory.found = std::move(records);
        PhonebookSearchCriteria criteria({}, "", true);
        list.populate(criteria, true);
    }

    FakeDirectoryService directory;
    FakeDigitAnalysis digitAnalysis;
};

} // namespace

TEST_F(CanonicalNumbers, ReplaceTheFourNumbersOfARow)
{
    PhonebookList list(&directory, &digitAnalysis);
    find(list, {{{Utils::SURNAME, "1"},
                 {Utils::PRIVATE, "4"},
                 {Utils::EMAIL, "5"},
                 {Utils::OFFICE, "1"},
                 {Utils::MOBILE, "3"},
                 {Utils::COMPANY, "6"},
                 {Utils::OFFICE2, "2"}}});
    list.convertToCanonical();
    EXPECT_EQ(digitAnalysis.converted, (Strings{"4", "1", "3", "2"}));

    PhonebookFullEntry entry;
    ASSERT_EQ(list.getFullEntry(0, entry), 1);
    EXPECT_EQ(entry.getOffice(), "+1");
    EXPECT_EQ(entry.getOffice2(), "+2");
    EXPECT_EQ(entry.getMobile(), "+3");
    EXPECT_EQ(entry.getPrivate(), "+4");
    EXPECT_EQ(entry.getSurname(), "1");
    EXPECT_EQ(entry.getEmail(), "5");
    EXPECT_EQ(entry.getCompany(), "6");
}

TEST_F(CanonicalNumbers, AreAskedForInTheOrderOfTheRows)
{
    PhonebookList list(&directory, &digitAnalysis);
    find(list, {{{Utils::SURNAME, "Zorn"}, {Utils::OFFICE, "9"}},
                {{Utils::SURNAME, "Adams"}, {Utils::OFFICE, "1"}, {Utils::MOBILE, "2"}}});
    list.convertToCanonical();
    EXPECT_EQ(digitAnalysis.converted, (Strings{"1", "2", "9"}));
}

TEST_F(CanonicalNumbers, AreNotAskedForEmptyNumbers)
{
    PhonebookList list(&directory, &digitAnalysis);
    find(list, {{{Utils::SURNAME, "Adams"}, {Utils::OFFICE, ""}, {Utils::MOBILE, "2"}}});
    list.convertToCanonical();
    EXPECT_EQ(digitAnalysis.converted, Strings{"2"});
}

TEST_F(CanonicalNumbers, ShowInTheQualifierWithoutANewSort)
{
    PhonebookList list(&directory, &digitAnalysis);
    list.setDisplayQualifier(displayQualifier::Office);
    find(list, {{{Utils::SURNAME, "Adams"}, {Utils::OFFICE, "1"}}});
    list.convertToCanonical();
    EXPECT_EQ(list.elementAt(0).getDisplayName(displayMode::SurnameFirstname, displayQualifier::Office),
              "Adams (+1)");
}

TEST_F(CanonicalNumbers, ConcernNoLocalRow)
{
    directory.add("Adams", "Zoe", "100");
    PhonebookList local(&directory);
    local.populate(-1);
    local.convertToCanonical();
    PhonebookList mixed(&directory, &digitAnalysis);
    mixed.populate(-1);
    mixed.convertToCanonical();
    EXPECT_TRUE(digitAnalysis.converted.empty());
}

TEST_F(CanonicalNumbers, StayAsTheyAreWithoutDigitAnalysis)
{
    PhonebookList list(&directory, nullptr);
    find(list, {{{Utils::SURNAME, "Adams"}, {Utils::OFFICE, "1"}}});
    list.convertToCanonical();
    PhonebookFullEntry entry;
    ASSERT_EQ(list.getFullEntry(0, entry), 1);
    EXPECT_EQ(entry.getOffice(), "1");
}
