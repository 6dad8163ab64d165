#include "PhonebookListEntry.h"

#include <type_traits>

#include <gtest/gtest.h>

#include <framework/services/Utils.h>

#include "TraceLines.h"

namespace {

PhonebookListEntry named(const std::string& firstname, const std::string& surname)
{
    PhonebookListEntry row;
    row.setFirstname(firstname);
    row.setSurname(surname);
    return row;
}

std::string shown(const PhonebookListEntry& row, displayMode mode)
{
    return row.getDisplayName(mode, displayQualifier::None);
}

} // namespace

TEST(PhonebookListEntry, StartsEmpty)
{
    const PhonebookListEntry row;
    EXPECT_EQ(row.getUniqueId(), "");
    EXPECT_EQ(row.getFirstname(), "");
    EXPECT_EQ(row.getSurname(), "");
    EXPECT_EQ(row.getDefaultNumber(), "");
    EXPECT_EQ(row.getFullRecordPointer(), nullptr);
}

TEST(PhonebookListEntry, ReadsALineOfTheDirectorysList)
{
    const PhonebookListEntry row(std::string("id7\tMiller\tJane\t3"));
    EXPECT_EQ(row.getUniqueId(), "id7");
    EXPECT_EQ(row.getSurname(), "Miller");
    EXPECT_EQ(row.getFirstname(), "Jane");
    EXPECT_EQ(row.getDefaultNumber(), "Mobile");
    EXPECT_EQ(row.getFullRecordPointer(), nullptr);
}

TEST(PhonebookListEntry, StaysEmptyForALineWithOtherThanFourFields)
{
    for (const char* line : {"", "id7", "id7\tMiller\tJane", "id7\tMiller\tJane\t3\t"}) {
        const PhonebookListEntry row{std::string(line)};
        EXPECT_EQ(row.getUniqueId(), "") << line;
        EXPECT_EQ(row.getSurname(), "") << line;
        EXPECT_EQ(row.getDefaultNumber(), "") << line;
    }
}

TEST(PhonebookListEntry, CutsTheNamesOfALineToThirtyCharacters)
{
    const PhonebookListEntry row("id7\t" + std::string(31, 's') + "\t" + std::string(31, 'f') + "\t0");
    EXPECT_EQ(row.getSurname(), std::string(30, 's'));
    EXPECT_EQ(row.getFirstname(), std::string(30, 'f'));
}

TEST(PhonebookListEntry, KeepsTheFirstThirtyCharactersOfALocalName)
{
    const std::string long31 = "ä" + std::string(30, 'x');
    const auto row = named(long31, long31);
    EXPECT_EQ(row.getSurname(), "ä" + std::string(29, 'x'));
    EXPECT_EQ(row.getFirstname(), "ä" + std::string(29, 'x'));
}

TEST(PhonebookListEntry, KeepsANameOfTheCorporateDirectoryWhole)
{
    PhonebookListEntry row;
    row.setLDAPPhonebookListEntry(true);
    row.setSurname(std::string(31, 's'));
    row.setFirstname(std::string(31, 'f'));
    EXPECT_EQ(row.getSurname(), std::string(31, 's'));
    EXPECT_EQ(row.getFirstname(), std::string(31, 'f'));

    row.setLDAPPhonebookListEntry(false);
    EXPECT_EQ(row.getSurname(), std::string(31, 's'));
    row.setSurname(std::string(31, 's'));
    EXPECT_EQ(row.getSurname(), std::string(30, 's'));
}

TEST(PhonebookListEntry, AssignsTheOtherFieldsAsTheyAre)
{
    PhonebookListEntry row;
    row.setUniqueId(std::string(200, 'i'));
    row.setDefaultNumber("Fax");
    EXPECT_EQ(row.getUniqueId(), std::string(200, 'i'));
    EXPECT_EQ(row.getDefaultNumber(), "Fax");
}

TEST(PhonebookListEntry, IsMadeFromAttributesWhichItKeepsAPointerTo)
{
    AttributeList attributes = {{Utils::SURNAME, std::string(31, 's')},
                                {Utils::EMAIL, "jane@example.org"},
                                {Utils::FIRSTNAME, "Jane"},
                                {Utils::FIRSTNAME, std::string(31, 'f')},
                                {Utils::OFFICE, "100"}};
    const PhonebookListEntry row(&attributes);
    EXPECT_EQ(row.getUniqueId(), "");
    EXPECT_EQ(row.getSurname(), std::string(31, 's'));
    EXPECT_EQ(row.getFirstname(), std::string(31, 'f'));
    EXPECT_EQ(row.getDefaultNumber(), "Office");
    EXPECT_EQ(row.getFullRecordPointer(), &attributes);
}

TEST(PhonebookListEntry, DialsTheFirstNumberThatIsNotEmpty)
{
    AttributeList attributes = {
        {Utils::PRIVATE, "4"}, {Utils::MOBILE, "3"}, {Utils::OFFICE2, "2"}, {Utils::OFFICE, "1"}};
    EXPECT_EQ(PhonebookListEntry(&attributes).getDefaultNumber(), "Office");
    attributes[3].second = "";
    EXPECT_EQ(PhonebookListEntry(&attributes).getDefaultNumber(), "Office2");
    attributes[2].second = "";
    EXPECT_EQ(PhonebookListEntry(&attributes).getDefaultNumber(), "Mobile");
    attributes[1].second = "";
    EXPECT_EQ(PhonebookListEntry(&attributes).getDefaultNumber(), "Private");
    attributes[0].second = "";
    EXPECT_EQ(PhonebookListEntry(&attributes).getDefaultNumber(), "None");
    AttributeList none;
    EXPECT_EQ(PhonebookListEntry(&none).getDefaultNumber(), "None");
}

TEST(PhonebookListEntry, WritesTheNameInEachMode)
{
    const auto row = named("Jane", "Miller");
    EXPECT_EQ(shown(row, displayMode::SurnameFirstname), "Miller, Jane");
    EXPECT_EQ(shown(row, displayMode::FirstnameSurname), "Jane Miller");
    EXPECT_EQ(shown(row, displayMode::SurnameInitial), "Miller, J");
    EXPECT_EQ(shown(row, displayMode::InitialSurname), "J Miller");
}

TEST(PhonebookListEntry, WritesASingleNameWholeInEveryMode)
{
    for (int mode = 0; mode <= 3; ++mode) {
        EXPECT_EQ(shown(named("Jane", ""), static_cast<displayMode>(mode)), "Jane") << mode;
        EXPECT_EQ(shown(named("", "Miller"), static_cast<displayMode>(mode)), "Miller") << mode;
        EXPECT_EQ(shown(named("", ""), static_cast<displayMode>(mode)), "") << mode;
    }
}

TEST(PhonebookListEntry, TakesAWholeLetterForTheInitial)
{
    EXPECT_EQ(shown(named("Émile", "Zola"), displayMode::SurnameInitial), "Zola, É");
    EXPECT_EQ(shown(named("Émile", "Zola"), displayMode::InitialSurname), "É Zola");
    EXPECT_EQ(shown(named("明美", "山田"), displayMode::SurnameInitial), "山田, 明");
}

TEST(PhonebookListEntry, ShowsNothingInAModeThatDoesNotExist)
{
    for (const int mode : {-1, 4, 5}) {
        EXPECT_EQ(shown(named("Jane", "Miller"), static_cast<displayMode>(mode)), "") << mode;
        EXPECT_EQ(shown(named("Jane", ""), static_cast<displayMode>(mode)), "") << mode;
        EXPECT_EQ(shown(named("", "Miller"), static_cast<displayMode>(mode)), "") << mode;
    }
}

TEST(PhonebookListEntry, AddsTheQualifierOfACorporateDirectoryRow)
{
    AttributeList attributes = {{Utils::SURNAME, "Miller"}, {Utils::JOBFUNCTION, "1"}, {Utils::ADDRESS1, "2"},
                                {Utils::EMAIL, "3"},        {Utils::OFFICE, "4"},      {Utils::MOBILE, "5"},
                                {Utils::OFFICE2, "6"},      {Utils::PRIVATE, "7"},     {Utils::COMPANY, "8"},
                                {Utils::ADDRESS2, "9"}};
    const PhonebookListEntry row(&attributes);
    for (int qualifier = 1; qualifier <= 9; ++qualifier)
        EXPECT_EQ(row.getDisplayName(displayMode::SurnameFirstname, static_cast<displayQualifier>(qualifier)),
                  "Miller (" + std::to_string(qualifier) + ")");
}

TEST(PhonebookListEntry, AddsNothingForNoUnknownOrEmptyQualifier)
{
    AttributeList attributes = {{Utils::SURNAME, "Miller"}, {Utils::EMAIL, ""}, {Utils::OFFICE, "4"}};
    const PhonebookListEntry row(&attributes);
    for (const int qualifier : {0, 3, 8, 10, 11, -1})
        EXPECT_EQ(row.getDisplayName(displayMode::SurnameFirstname, static_cast<displayQualifier>(qualifier)),
                  "Miller")
            << qualifier;
}

TEST(PhonebookListEntry, ShowsAQualifierWithTheLengthThatALocalRecordHolds)
{
    AttributeList attributes = {{Utils::SURNAME, "Miller"}, {Utils::JOBFUNCTION, std::string(31, 'j')}};
    EXPECT_EQ(PhonebookListEntry(&attributes)
                  .getDisplayName(displayMode::SurnameFirstname, displayQualifier::JobFunction),
              "Miller (" + std::string(30, 'j') + ")");
}

TEST(PhonebookListEntry, NeverShowsAQualifierForALocalRow)
{
    auto row = named("Jane", "Miller");
    row.setLDAPPhonebookListEntry(true);
    EXPECT_EQ(row.getDisplayName(displayMode::SurnameFirstname, displayQualifier::Office), "Miller, Jane");
}

TEST(PhonebookListEntry, MovesItsTexts)
{
    static_assert(std::is_nothrow_move_constructible_v<PhonebookListEntry>);
    static_assert(std::is_nothrow_move_assignable_v<PhonebookListEntry>);
    const std::string surname(30, 's');
    auto row = named("", surname);
    const char* text = row.getSurname().data();
    const PhonebookListEntry moved = std::move(row);
    EXPECT_EQ(moved.getSurname().data(), text);
}

TEST(PhonebookListEntry, ShowsAQualifierAloneWhereThereIsNoName)
{
    AttributeList attributes = {{Utils::SURNAME, "Miller"}, {Utils::COMPANY, "Acme"}};
    EXPECT_EQ(PhonebookListEntry(&attributes)
                  .getDisplayName(static_cast<displayMode>(4), displayQualifier::Company),
              " (Acme)");
    AttributeList nameless = {{Utils::COMPANY, "Acme"}};
    EXPECT_EQ(PhonebookListEntry(&nameless).getDisplayName(displayMode::FirstnameSurname,
                                                           displayQualifier::Company),
              " (Acme)");
}

TEST(PhonebookListEntry, DialsANumberThatIsRepeatedEmpty)
{
    AttributeList attributes = {{Utils::OFFICE, "1"}, {Utils::OFFICE, ""}, {Utils::MOBILE, "3"}};
    EXPECT_EQ(PhonebookListEntry(&attributes).getDefaultNumber(), "Office");
}

TEST(PhonebookListEntry, LogsEachOperationByItsName)
{
    PhonebookListEntry row;
    AttributeList attributes;
    const auto none = displayQualifier::None;
    expectTraces("PhonebookListEntry",
                 {
                     {"PhonebookListEntry", [] { PhonebookListEntry(); }},
                     {"PhonebookListEntry", [] { PhonebookListEntry(std::string("a")); }},
                     {"PhonebookListEntry", [&] { PhonebookListEntry made(&attributes); }},
                     {"getUniqueId", [&] { row.getUniqueId(); }},
                     {"getFirstname", [&] { row.getFirstname(); }},
                     {"getSurname", [&] { row.getSurname(); }},
                     {"getDefaultNumber", [&] { row.getDefaultNumber(); }},
                     {"getFullRecordPointer", [&] { row.getFullRecordPointer(); }},
                     {"setUniqueId", [&] { row.setUniqueId("a"); }},
                     {"setDefaultNumber", [&] { row.setDefaultNumber("a"); }},
                     {"setFirstname", [&] { row.setFirstname("a"); }},
                     {"setSurname", [&] { row.setSurname("a"); }},
                     {"setLDAPPhonebookListEntry", [&] { row.setLDAPPhonebookListEntry(true); }},
                     {"getDisplayName", [&] { row.getDisplayName(displayMode::SurnameFirstname, none); }},
                 });
}
