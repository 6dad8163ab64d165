#include "PhonebookList.h"

#include <algorithm>
#include <memory>
#include <random>
#include <stdexcept>

#include <gtest/gtest.h>

#include <framework/services/Utils.h>
#include <framework/util/Utf8Utils.h>
#include <testing/FakeDigitAnalysis.h>
#include <testing/FakeDirectoryService.h>
#include <testing/LogCapture.h>

#include "TraceLines.h"

namespace {

using Strings = std::vector<std::string>;

const char* const nSORTED = "PhonebookList::sortListBySortMode()";
const char* const nNOT_FOUND = "updateEntry - modified or new entry not found after sorting";

PhonebookFullEntry record(const std::string& surname, const std::string& firstname = "",
                          const std::string& group = "0")
{
    PhonebookFullEntry entry;
    entry.setBlank();
    entry.setSurname(surname);
    entry.setFirstname(firstname);
    entry.setGroup(group);
    return entry;
}

class LocalList : public testing::Test {
protected:
    LocalList() { Utf8Utils::create("en"); }
    ~LocalList() override { Utf8Utils::destroy(); }

    Strings names(PhonebookList& shown) const
    {
        Strings texts;
        for (unsigned int i = 0; i < shown.size(); ++i)
            texts.push_back(
                shown.elementAt(i).getDisplayName(shown.getDisplayMode(), shown.getDisplayQualifier()));
        return texts;
    }
    Strings names() { return names(list); }

    // The stored record of a row, to be changed and written again.
    PhonebookFullEntry recordAt(unsigned int row)
    {
        PhonebookFullEntry entry;
        EXPECT_EQ(list.getFullEntry(row, entry), 1);
        return entry;
    }

    FakeDirectoryService directory;
    PhonebookList list{&directory};
};

// Answers for itself what other operations of the list ask.
class AnsweringList final : public PhonebookList {
public:
    using PhonebookList::PhonebookList;

    std::vector<int> updatedRows;
    PhonebookListEntry row;

    int updateEntry(PhonebookFullEntry*, int& newIndex, int rowIndex) override
    {
        updatedRows.push_back(rowIndex);
        newIndex = 5;
        return 7;
    }
    PhonebookListEntry elementAt(unsigned int) override { return row; }
};

// As it stands, but for the group that it says it shows.
class GroupThreeList final : public PhonebookList {
public:
    using PhonebookList::PhonebookList;
    int getGroupIndication() override { return 3; }
};

class LdapResults : public LocalList {
protected:
    int find(std::vector<AttributeList> found, DirectoryStatus status = DIRECTORY_SUCCESS,
             bool ignoreNickname = true)
    {
        directory.found = std::move(found);
        directory.status = status;
        PhonebookSearchCriteria criteria({{Utils::SURNAME, "m*"}}, "", true);
        return ldap.populate(criteria, ignoreNickname);
    }

    const AttributeList trailer = {{"trailer", "false"}};
    const AttributeList miller = {{Utils::SURNAME, "Miller"}, {Utils::MOBILE, "3"}};
    const AttributeList adams = {{Utils::SURNAME, "Adams"}, {Utils::FIRSTNAME, "Zoe"}};

    FakeDigitAnalysis digitAnalysis;
    PhonebookList ldap{&directory, &digitAnalysis};
};

} // namespace

TEST_F(LocalList, StartsEmptyAndShowsAll)
{
    EXPECT_EQ(list.size(), 0u);
    EXPECT_EQ(list.getGroupIndication(), -1);
    EXPECT_FALSE(list.getNickNameResultIndicator());
    EXPECT_TRUE(directory.listCalls.empty());
}

TEST_F(LocalList, SortsWhatItIsFilledWith)
{
    directory.add("Miller", "Jane");
    directory.add("adams", "Zoe");
    directory.add("Äcker", "");
    const LogCapture log;
    EXPECT_EQ(list.populate(-1), 1);
    EXPECT_EQ(names(), (Strings{"Äcker", "adams, Zoe", "Miller, Jane"}));
    EXPECT_EQ(log.texts(5).front(), "populate - groupID = -1");
    EXPECT_EQ(directory.listCalls, Strings{"all"});
}

TEST_F(LocalList, SortsAsTheLanguageDoes)
{
    for (const char* surname : {"Zorn", "Åberg", "Adams"})
        directory.add(surname, "");
    list.populate(-1);
    EXPECT_EQ(names(), (Strings{"Åberg", "Adams", "Zorn"}));
    Utf8Utils::setSortOrder("sv");
    list.sortListBySortMode();
    EXPECT_EQ(names(), (Strings{"Adams", "Zorn", "Åberg"}));
}

TEST_F(LocalList, FillsFromOneGroup)
{
    directory.add("Miller", "Jane", "", "", "3");
    directory.add("Adams", "Zoe");
    EXPECT_EQ(list.populate(3), 1);
    EXPECT_EQ(names(), Strings{"Miller, Jane"});
    EXPECT_EQ(list.getGroupIndication(), 3);
    EXPECT_EQ(list.populate(0), 1);
    EXPECT_EQ(names(), Strings{"Adams, Zoe"});
    EXPECT_EQ(list.getGroupIndication(), 0);
    EXPECT_EQ(directory.listCalls, (Strings{"3", "0"}));
}

TEST_F(LocalList, RemembersAnEmptyGroup)
{
    directory.add("Miller", "Jane");
    list.populate(-1);
    EXPECT_EQ(list.populate(5), 0);
    EXPECT_EQ(list.size(), 0u);
    EXPECT_EQ(list.getGroupIndication(), 5);
}

TEST_F(LocalList, KeepsAnEmptyRowForALineThatIsNotAnEntry)
{
    directory.list = "id1\tMiller\tJane\t1\nnonsense";
    EXPECT_EQ(list.populate(-1), 1);
    EXPECT_EQ(names(), (Strings{"", "Miller, Jane"}));
}

TEST_F(LocalList, SortsInEveryMode)
{
    directory.add("Adams", "Zoe");
    directory.add("Baker", "Ann");
    directory.add("Baker", "Abe");
    list.populate(-1);
    EXPECT_EQ(names(), (Strings{"Adams, Zoe", "Baker, Abe", "Baker, Ann"}));
    list.setDisplayMode(displayMode::FirstnameSurname);
    EXPECT_EQ(names(), (Strings{"Abe Baker", "Ann Baker", "Zoe Adams"}));
    list.setDisplayMode(displayMode::SurnameInitial);
    EXPECT_EQ(names(), (Strings{"Adams, Z", "Baker, A", "Baker, A"}));
    EXPECT_EQ(list.elementAt(1).getFirstname(), "Abe");
    list.setDisplayMode(displayMode::InitialSurname);
    EXPECT_EQ(names(), (Strings{"A Baker", "A Baker", "Z Adams"}));
}

TEST_F(LocalList, SortsAnewOnlyForAModeThatSortsDifferently)
{
    using enum displayMode;
    const displayMode modes[] = {SurnameFirstname, FirstnameSurname, SurnameInitial, InitialSurname};
    for (const auto before : modes) {
        for (const auto after : modes) {
            list.setDisplayMode(before);
            directory.optionWrites.clear();
            const LogCapture log;
            list.setDisplayMode(after);
            const bool sameOrder = before == after ||
                                   (before == SurnameFirstname && after == SurnameInitial) ||
                                   (before == SurnameInitial && after == SurnameFirstname);
            EXPECT_EQ(log.has(nSORTED), !sameOrder);
            EXPECT_EQ(list.getDisplayMode(), after);
            EXPECT_EQ(directory.optionWrites.size(), 1u);
        }
    }
}

TEST_F(LocalList, StoresANewModeBeforeItSorts)
{
    const LogCapture log;
    list.setDisplayMode(displayMode::FirstnameSurname);
    const int stored = log.position("saveDisplayOptionsInDatabase Function Entered");
    EXPECT_EQ(log.position("PhonebookList::setDisplayMode()"), 0);
    EXPECT_GT(stored, 0);
    EXPECT_GT(log.position(nSORTED), stored);
}

TEST_F(LocalList, KeepsAllRowsThatHaveTheSameName)
{
    Strings ids;
    for (int i = 0; i < 1000; ++i)
        ids.push_back(directory.add("Miller", "Jane"));
    list.populate(-1);
    Strings shown;
    for (unsigned int i = 0; i < list.size(); ++i)
        shown.push_back(list.elementAt(i).getUniqueId());
    std::sort(shown.begin(), shown.end());
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(shown, ids);
}

TEST_F(LocalList, SortsManyRowsInWhateverOrderTheyCome)
{
    std::mt19937 random(1);
    for (const int shape : {0, 1, 2}) {
        std::string text;
        for (int i = 0; i < 3000; ++i) {
            const int number = shape == 0 ? i : shape == 1 ? 3000 - i : static_cast<int>(random() % 50);
            text +=
                (i ? "\nid" : "id") + std::to_string(i) + "\tname" + std::to_string(10000 + number) + "\t\t0";
        }
        directory.list = text;
        ASSERT_EQ(list.populate(-1), 1);
        const auto shown = names();
        EXPECT_EQ(shown.size(), 3000u);
        EXPECT_TRUE(std::is_sorted(shown.begin(), shown.end())) << shape;
    }
}

TEST_F(LocalList, IsEmptiedWithoutTheDirectory)
{
    directory.add("Miller", "Jane");
    list.populate(-1);
    const LogCapture log;
    list.depopulate();
    EXPECT_EQ(log.texts(5), Strings{"depopulate"});
    EXPECT_EQ(list.size(), 0u);
    EXPECT_TRUE(directory.requests.empty());
}

TEST_F(LocalList, ThrowsForARowPastTheEnd)
{
    directory.add("Miller", "Jane");
    list.populate(-1);
    PhonebookFullEntry entry;
    EXPECT_EQ(list.elementAt(0).getSurname(), "Miller");
    EXPECT_THROW(list.elementAt(1), std::out_of_range);
    EXPECT_THROW(list.getFullEntry(1, entry), std::out_of_range);
    EXPECT_THROW(list.deleteEntry(1), std::out_of_range);
    EXPECT_TRUE(directory.requests.empty());
    try {
        list.elementAt(1);
    } catch (const std::out_of_range& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("vector::_M_range_check"));
    }
    EXPECT_EQ(list.size(), 1u) << "the lock is free again";
}

TEST_F(LocalList, ReadsTheWholeRecordOfARow)
{
    const std::string id = directory.add("Miller", "Jane", "100");
    list.populate(-1);
    PhonebookFullEntry entry;
    EXPECT_EQ(list.getFullEntry(0, entry), 1);
    EXPECT_EQ(entry.getUniqueId(), id);
    EXPECT_EQ(entry.getOffice(), "100");
    EXPECT_EQ(entry.getDefaultPhonebookNo(), "100");
}

TEST_F(LocalList, LeavesTheRecordAloneWhenItCannotBeRead)
{
    directory.add("Miller", "Jane");
    list.populate(-1);
    directory.failure = "gone";
    auto entry = record("before");
    EXPECT_EQ(list.getFullEntry(0, entry), 0);
    EXPECT_EQ(entry.getSurname(), "before");
}

TEST_F(LocalList, HasNoRecordForAnEmptyRow)
{
    directory.list = "nonsense";
    list.populate(-1);
    PhonebookFullEntry entry;
    EXPECT_EQ(list.getFullEntry(0, entry), 0);
    EXPECT_TRUE(directory.requests.empty());
}

TEST_F(LocalList, DeletesARowAndItsRecord)
{
    const std::string miller = directory.add("Miller", "Jane");
    directory.add("Adams", "Zoe");
    list.populate(-1);
    EXPECT_EQ(list.deleteEntry(1), 0);
    EXPECT_EQ(names(), Strings{"Adams, Zoe"});
    EXPECT_FALSE(directory.records.contains(miller));
}

TEST_F(LocalList, KeepsARowWhoseRecordCannotBeDeleted)
{
    directory.add("Miller", "Jane");
    list.populate(-1);
    directory.failure = "read-only";
    EXPECT_EQ(list.deleteEntry(0), 101);
    EXPECT_EQ(list.size(), 1u);
}

TEST_F(LocalList, DeletesAllOrTheShownGroup)
{
    directory.add("Miller", "Jane", "", "", "3");
    directory.add("Adams", "Zoe");
    list.populate(3);
    EXPECT_EQ(list.deleteAll(), 0);
    EXPECT_EQ(list.size(), 0u);
    EXPECT_EQ(directory.records.size(), 1u);
    EXPECT_NE(directory.requests.back().find("<Group>3</Group>"), std::string::npos);

    list.populate(-1);
    EXPECT_EQ(list.size(), 1u);
    EXPECT_EQ(list.deleteAll(), 0);
    EXPECT_TRUE(directory.records.empty());
    EXPECT_EQ(directory.requests.back().find("<Entry>"), std::string::npos);
}

TEST_F(LocalList, DeletesOnlyThoseWithoutAGroupWhenTheyAreShown)
{
    directory.add("Miller", "Jane", "", "", "3");
    directory.add("Adams", "Zoe");
    list.populate(0);
    EXPECT_EQ(list.deleteAll(), 0);
    EXPECT_EQ(list.size(), 0u);
    EXPECT_EQ(directory.records.size(), 1u);
    EXPECT_NE(directory.requests.back().find("<Entry><Group>0</Group></Entry>"), std::string::npos);
}

TEST_F(LocalList, KeepsTheRowsWhenTheyCannotBeDeleted)
{
    directory.add("Miller", "Jane");
    list.populate(-1);
    directory.failure = "read-only";
    EXPECT_EQ(list.deleteAll(), 102);
    EXPECT_EQ(list.size(), 1u);
}

TEST_F(LocalList, AddsANewRecordInItsPlace)
{
    directory.add("Adams", "");
    directory.add("Zorn", "");
    list.populate(-1);
    auto entry = record("Miller", "Jane");
    entry.setOffice("100");
    entry.setDefaultNumber("Office");
    int index = -7;
    EXPECT_EQ(list.addEntry(&entry, index), 0);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(names(), (Strings{"Adams", "Miller, Jane", "Zorn"}));
    EXPECT_EQ(list.elementAt(1).getDefaultNumber(), "Office");
    EXPECT_EQ(directory.records.at(list.elementAt(1).getUniqueId())["Office"], "100");
    EXPECT_EQ(entry.getUniqueId(), "");
}

TEST_F(LocalList, WritesEveryFieldInTheOrderOfTheRecord)
{
    PhonebookFullEntry entry;
    entry.setAll(
        Strings{"1", "2", "3", "4", "5", "6", "0", "Private", "9", "10", "11", "12", "13", "14", "15"});
    int index = -7;
    ASSERT_EQ(list.addEntry(&entry, index), 0);
    EXPECT_TRUE(directory.requests.back().ends_with(
        "<Entry><Surname>1</Surname><Firstname>2</Firstname><Office>3</Office><Mobile>4</Mobile>"
        "<Private>5</Private><Email>6</Email><Group>0</Group><DefaultNumber>4</DefaultNumber>"
        "<Company>9</Company><Office2>10</Office2><Address>11</Address><Address2>12</Address2>"
        "<JobFunction>13</JobFunction><VoiceDial></VoiceDial><Picture>14</Picture>"
        "<ExternalID>15</ExternalID></Entry></Schema>"));
}

TEST_F(LocalList, MovesAChangedRowToItsPlace)
{
    const std::string id = directory.add("Adams", "Zoe", "100");
    directory.add("Miller", "Jane");
    list.populate(-1);
    auto entry = recordAt(0);
    entry.setSurname("Zorn");
    entry.setFirstname("Abe");
    entry.setDefaultNumber("None");
    int index = -7;
    EXPECT_EQ(list.updateEntry(&entry, index, 0), 0);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(names(), (Strings{"Miller, Jane", "Zorn, Abe"}));
    EXPECT_EQ(list.elementAt(1).getUniqueId(), id);
    EXPECT_EQ(list.elementAt(1).getDefaultNumber(), "None");
    EXPECT_EQ(directory.records.at(id)["Surname"], "Zorn");
}

TEST_F(LocalList, SendsNoRecordWithoutANameAndSaysSo)
{
    auto entry = record("", "");
    entry.setOffice("100");
    int index = -7;
    EXPECT_EQ(list.addEntry(&entry, index), 1);
    EXPECT_EQ(index, -1);
    EXPECT_TRUE(directory.requests.empty());
}

TEST_F(LocalList, StaysAsItWasWhenARecordCannotBeWritten)
{
    directory.add("Adams", "");
    list.populate(-1);
    auto entry = recordAt(0);
    entry.setSurname("Zorn");
    int index = -7;
    directory.failure = "Not enough memory";
    EXPECT_EQ(list.updateEntry(&entry, index, 0), 103);
    EXPECT_EQ(index, -1);
    directory.failure = "read-only";
    EXPECT_EQ(list.updateEntry(&entry, index, 0), 100);
    EXPECT_EQ(names(), Strings{"Adams"});
}

TEST_F(LocalList, RemovesARowThatLeftTheShownGroup)
{
    directory.add("Adams", "", "", "", "3");
    directory.add("Zorn", "", "", "", "3");
    list.populate(3);
    auto entry = recordAt(0);
    entry.setGroupIndex(4);
    const LogCapture log;
    int index = -7;
    EXPECT_EQ(list.updateEntry(&entry, index, 0), 0);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(names(), Strings{"Zorn"});
    EXPECT_EQ(directory.records.at(entry.getUniqueId())["Group"], "4");
    EXPECT_FALSE(log.has(nSORTED));
}

TEST_F(LocalList, DoesNotShowANewRecordOfAnotherGroup)
{
    directory.add("Adams", "", "", "", "3");
    list.populate(3);
    auto entry = record("Miller", "", "4");
    int index = -7;
    EXPECT_EQ(list.addEntry(&entry, index), 0);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(names(), Strings{"Adams"});
    EXPECT_EQ(directory.records.size(), 2u);
}

TEST_F(LocalList, RemovesNothingForARecordWithoutARow)
{
    directory.add("Adams", "", "", "", "3");
    list.populate(3);
    auto entry = recordAt(0);
    entry.setGroupIndex(4);
    int index = -7;
    EXPECT_EQ(list.updateEntry(&entry, index, -1), 0);
    EXPECT_EQ(names(), Strings{"Adams"});
    EXPECT_THROW(list.updateEntry(&entry, index, 1), std::out_of_range);
}

TEST_F(LocalList, RemovesNoRowForANewRecordOfAnotherGroup)
{
    directory.add("Adams", "", "", "", "3");
    list.populate(3);
    auto entry = record("Miller", "", "4");
    int index = -7;
    EXPECT_EQ(list.updateEntry(&entry, index, 0), 0);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(names(), Strings{"Adams"});
}

TEST_F(LocalList, ShowsANewRecordOfTheShownGroup)
{
    list.populate(3);
    auto entry = record("Miller", "", "3");
    int index = -7;
    EXPECT_EQ(list.addEntry(&entry, index), 0);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(names(), Strings{"Miller"});
}

TEST_F(LocalList, ThrowsForAChangedRecordWhoseRowDoesNotExist)
{
    directory.add("Adams", "");
    list.populate(-1);
    auto entry = recordAt(0);
    int index = -7;
    EXPECT_THROW(list.updateEntry(&entry, index, 1), std::out_of_range);
    EXPECT_THROW(list.addEntry(&entry, index), std::out_of_range);
}

TEST_F(LocalList, SaysWhenAWrittenEntryIsNotInTheList)
{
    directory.add("Adams", "");
    list.populate(-1);
    auto entry = recordAt(0);
    directory.answer =
        "<Schema name=\"PhoneBook\"><ReasonForMessage>write_response</ReasonForMessage></Schema>";
    const LogCapture log;
    int index = -7;
    EXPECT_EQ(list.updateEntry(&entry, index, 0), 200);
    EXPECT_EQ(index, -1);
    const auto lines = log.lines();
    const auto said =
        std::find_if(lines.begin(), lines.end(), [](const LogLine& line) { return line.level == 2; });
    ASSERT_NE(said, lines.end());
    EXPECT_EQ(said->text, nNOT_FOUND);
    EXPECT_EQ(said->component, "PhonebookPhonelet");
    EXPECT_EQ(said->file, "./src/PhonebookList");
    EXPECT_NE(list.elementAt(0).getUniqueId(), "") << "the row still knows its record";
}

TEST_F(LocalList, GivesTheFirstOfSeveralRowsWithTheSameId)
{
    directory.list = "id1\tAdams\t\t0\nid1\tMiller\t\t0\nid1\tZorn\t\t0";
    list.populate(-1);
    directory.answer = "<Schema name=\"PhoneBook\"><ReasonForMessage>write_response</ReasonForMessage>"
                       "<Entry><UniqueID>id1</UniqueID></Entry></Schema>";
    auto entry = record("Miller");
    entry.setUniqueId("id1");
    int index = -7;
    EXPECT_EQ(list.updateEntry(&entry, index, 1), 0);
    EXPECT_EQ(index, 0);
}

TEST_F(LocalList, MakesRoomBeforeARowWhileThereIsSome)
{
    directory.add("Adams", "");
    list.populate(-1); // room for 11
    const LogCapture log;
    for (int i = 0; i < 9; ++i) {
        auto entry = record("Miller");
        int index = -7;
        ASSERT_EQ(list.addEntry(&entry, index), 0);
    }
    EXPECT_EQ(list.size(), 10u);
    EXPECT_EQ(log.count("PhonebookList::bumpPhonebookCapacity()"), 9);
}

TEST_F(LocalList, LetsTheRowsGrowByTheirOwnRuleWhenTheRoomIsUsedUp)
{
    const LogCapture log;
    for (int i = 0; i < 2; ++i) {
        auto entry = record("Miller");
        int index = -7;
        ASSERT_EQ(list.addEntry(&entry, index), 0);
    }
    EXPECT_EQ(log.count("PhonebookList::bumpPhonebookCapacity()"), 0);
}

TEST_F(LocalList, MakesRoomAgainOnceTheRowsHaveGrownByThemselves)
{
    const LogCapture log;
    const int bumps[] = {0, 0, 0, 0, 0, 1, 2}; // a vector doubles its room: 1, 2, 4, 8
    for (const int expected : bumps) {
        auto entry = record("Miller");
        int index = -7;
        ASSERT_EQ(list.addEntry(&entry, index), 0);
        EXPECT_EQ(log.count("PhonebookList::bumpPhonebookCapacity()"), expected) << list.size();
    }
}

TEST_F(LocalList, MakesRoomOnceBeforeItIsFilled)
{
    directory.add("Miller", "Jane");
    directory.add("Adams", "Zoe");
    const LogCapture log;
    list.populate(-1);
    EXPECT_EQ(log.count("PhonebookList::bumpPhonebookCapacity()"), 1);
}

TEST_F(LocalList, AddsThroughTheUpdateOfADerivedList)
{
    AnsweringList derived(&directory);
    auto entry = record("Miller");
    int index = -7;
    EXPECT_EQ(derived.addEntry(&entry, index), 7);
    EXPECT_EQ(index, 5);
    EXPECT_EQ(derived.updatedRows, std::vector<int>{-1});
}

TEST_F(LocalList, AsksADerivedListForTheRowThatItReadsOrDeletes)
{
    directory.add("Miller", "Jane");
    AnsweringList derived(&directory);
    derived.populate(-1);
    derived.row.setUniqueId("elsewhere");
    PhonebookFullEntry entry;
    EXPECT_EQ(derived.getFullEntry(0, entry), 0);
    EXPECT_EQ(derived.deleteEntry(0), 101);
    ASSERT_EQ(directory.requests.size(), 2u);
    for (const auto& request : directory.requests)
        EXPECT_NE(request.find("<UniqueID>elsewhere</UniqueID>"), std::string::npos) << request;
}

TEST_F(LocalList, AsksADerivedListForTheGroupThatItShows)
{
    GroupThreeList derived(&directory);
    auto other = record("Miller", "", "4");
    auto member = record("Miller", "", "3");
    int index = -7;
    EXPECT_EQ(derived.addEntry(&other, index), 0);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(derived.size(), 0u);
    EXPECT_EQ(derived.addEntry(&member, index), 0);
    EXPECT_EQ(index, 0);
}

TEST_F(LocalList, LogsEachOperationByItsName)
{
    directory.add("Miller", "Jane");
    list.populate(-1);
    auto entry = record("Adams");
    int index = 0;
    auto gone = std::make_unique<PhonebookList>(&directory);
    const auto mode = displayMode::SurnameFirstname;
    expectTraces("PhonebookList",
                 {
                     {"PhonebookList", [&] { PhonebookList made(&directory); }},
                     {"PhonebookList", [&] { PhonebookList made(&directory, nullptr); }},
                     {"~PhonebookList", [&] { gone.reset(); }},
                     {"addEntry", [&] { list.addEntry(&entry, index); }},
                     {"updateEntry", [&] { list.updateEntry(&entry, index, -1); }},
                     {"elementAt", [&] { list.elementAt(0); }},
                     {"getFullEntry", [&] { list.getFullEntry(0, entry); }},
                     {"deleteEntry", [&] { list.deleteEntry(0); }},
                     {"setDisplayMode", [&] { list.setDisplayMode(mode); }},
                     {"setDisplayQualifier", [&] { list.setDisplayQualifier(displayQualifier::None); }},
                     {"setLDAPPhonebookList", [&] { list.setLDAPPhonebookList(false); }},
                     {"bumpPhonebookCapacity", [&] { list.bumpPhonebookCapacity(1); }},
                     {"size", [&] { list.size(); }},
                     {"deleteAll", [&] { list.deleteAll(); }},
                     {"getDisplayMode", [&] { list.getDisplayMode(); }},
                     {"getDisplayQualifier", [&] { list.getDisplayQualifier(); }},
                     {"getGroupIndication", [&] { list.getGroupIndication(); }},
                     {"convertToCanonical", [&] { list.convertToCanonical(); }},
                     {"getNickNameResultIndicator", [&] { list.getNickNameResultIndicator(); }},
                     {"isNicknameAttributeActive", [&] { list.isNicknameAttributeActive(); }},
                     {"sortListBySortMode", [&] { list.sortListBySortMode(); }},
                     {"getDisplayQualifierFromDatabase", [&] { list.getDisplayQualifierFromDatabase(); }},
                 });
}

TEST_F(LocalList, NeedsNoDirectoryService)
{
    PhonebookList alone(nullptr);
    PhonebookFullEntry entry = record("Miller");
    PhonebookSearchCriteria criteria({}, "", true);
    int index = -7;
    EXPECT_EQ(alone.populate(-1), 0);
    EXPECT_EQ(alone.populate(criteria, true), DIRECTORY_CONNECTION_FAILURE);
    EXPECT_EQ(alone.addEntry(&entry, index), 100);
    EXPECT_EQ(alone.deleteAll(), 102);
    EXPECT_FALSE(alone.isNicknameAttributeActive());
    alone.convertToCanonical();
    EXPECT_EQ(alone.size(), 0u);
}

TEST_F(LocalList, AsksTheDirectoryAboutTheNicknameAttribute)
{
    EXPECT_FALSE(list.isNicknameAttributeActive());
    directory.nicknames = true;
    EXPECT_TRUE(list.isNicknameAttributeActive());
}

TEST_F(LdapResults, ShowsWhatASearchFindsWithoutItsTrailer)
{
    const LogCapture log;
    EXPECT_EQ(find({miller, adams, trailer}), 0);
    EXPECT_EQ(names(ldap), (Strings{"Adams, Zoe", "Miller"}));
    EXPECT_EQ(ldap.elementAt(1).getDefaultNumber(), "Mobile");
    EXPECT_EQ(log.texts(5).front(), "populate - source enum value = 1");
    EXPECT_EQ(ldap.getGroupIndication(), -1);
}

TEST_F(LdapResults, PassesTheFlagOn)
{
    find({trailer}, DIRECTORY_SUCCESS, true);
    find({trailer}, DIRECTORY_SUCCESS, false);
    ASSERT_EQ(directory.searches.size(), 2u);
    EXPECT_TRUE(directory.searches[0].ignoreNickname);
    EXPECT_FALSE(directory.searches[1].ignoreNickname);
}

TEST_F(LdapResults, TakesPartialResults)
{
    EXPECT_EQ(find({miller, trailer}, DIRECTORY_TOO_MANY_MATCHES), 9);
    EXPECT_EQ(names(ldap), Strings{"Miller"});
}

TEST_F(LdapResults, KeepsItsRowsWhenASearchFails)
{
    find({miller, trailer});
    for (const int status : {1, 2, 3, 4, 5, 6, 8, 10, -1})
        EXPECT_EQ(find({adams, trailer}, static_cast<DirectoryStatus>(status)), status);
    EXPECT_EQ(names(ldap), Strings{"Miller"});
    PhonebookFullEntry entry;
    EXPECT_EQ(ldap.getFullEntry(0, entry), 1);
    EXPECT_EQ(entry.getMobile(), "3");
}

TEST_F(LdapResults, IsEmptyForATrailerAlone)
{
    find({miller, trailer});
    EXPECT_EQ(find({trailer}), 0);
    EXPECT_EQ(ldap.size(), 0u);
}

TEST_F(LdapResults, ThrowsForResultsWithoutATrailer)
{
    EXPECT_THROW(find({}), std::out_of_range);
    EXPECT_THROW(find({AttributeList()}), std::out_of_range);
    EXPECT_EQ(ldap.size(), 0u) << "the lock is free again";
}

TEST_F(LdapResults, KnowsFromTheTrailerWhetherNicknamesWereFound)
{
    const std::pair<const char*, bool> values[] = {
        {"true", true}, {"TRUE", false}, {"true ", false}, {"", false}, {"false", false}};
    for (const auto& [value, indicated] : values) {
        find({miller, {{"trailer", "true"}}});
        EXPECT_TRUE(ldap.getNickNameResultIndicator());
        find({miller, {{"trailer", value}, {"more", "true"}}});
        EXPECT_EQ(ldap.getNickNameResultIndicator(), indicated) << value;
    }
}

TEST_F(LdapResults, ReadsAWholeRecordFromItsAttributes)
{
    find({miller, trailer});
    PhonebookFullEntry entry;
    EXPECT_EQ(ldap.getFullEntry(0, entry), 1);
    EXPECT_EQ(entry.getSurname(), "Miller");
    EXPECT_EQ(entry.getDefaultPhonebookNo(), "3");
    EXPECT_TRUE(directory.requests.empty());
}

TEST_F(LdapResults, MarksItsRowsInEitherCase)
{
    const AttributeList longName = {{Utils::SURNAME, std::string(40, 's')}};
    for (const bool marked : {false, true}) {
        ldap.setLDAPPhonebookList(marked);
        find({longName, trailer});
        auto row = ldap.elementAt(0);
        EXPECT_EQ(row.getSurname(), std::string(40, 's'));
        row.setFirstname(std::string(40, 'f'));
        EXPECT_EQ(row.getFirstname(), std::string(40, 'f'));
    }
}

TEST_F(LdapResults, MakesRoomOnceBeforeItIsFilled)
{
    const LogCapture log;
    find({miller, adams, trailer});
    EXPECT_EQ(log.count("PhonebookList::bumpPhonebookCapacity()"), 1);
}

TEST_F(LdapResults, SortsByTheQualifierToo)
{
    ldap.setDisplayQualifier(displayQualifier::Company);
    find({{{Utils::SURNAME, "Miller"}, {Utils::COMPANY, "Zenith"}},
          {{Utils::SURNAME, "Miller"}, {Utils::COMPANY, "Acme"}},
          trailer});
    EXPECT_EQ(names(ldap), (Strings{"Miller (Acme)", "Miller (Zenith)"}));
}

TEST_F(LdapResults, DropsItsRecordsWhenItIsEmptied)
{
    find({miller, trailer});
    ldap.depopulate();
    EXPECT_EQ(ldap.size(), 0u);
    EXPECT_TRUE(directory.requests.empty());
}
