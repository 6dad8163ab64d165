#include "Toolbox.h"

#include <climits>
#include <locale>

#include <gtest/gtest.h>

#include <testing/FakeLocalMgmt.h>
#include <testing/LogCapture.h>

#include "TraceLines.h"

TEST(Toolbox, LeavesRowsAsTheyAreWithASoftKeyBar)
{
    EXPECT_EQ(Toolbox::displayToPhonebookIndex(0, true), 0u);
    EXPECT_EQ(Toolbox::displayToPhonebookIndex(7, true), 7u);
    EXPECT_EQ(Toolbox::displayToGroupListIndex(0, true), 0u);
    EXPECT_EQ(Toolbox::displayToGroupListIndex(7, true), 7u);
    EXPECT_EQ(Toolbox::phonebookToDisplayIndex(0, true), 0u);
    EXPECT_EQ(Toolbox::phonebookToDisplayIndex(7, true), 7u);
}

TEST(Toolbox, CountsTheOptionsRowWithoutASoftKeyBar)
{
    EXPECT_EQ(Toolbox::displayToPhonebookIndex(1, false), 0u);
    EXPECT_EQ(Toolbox::displayToPhonebookIndex(7, false), 6u);
    EXPECT_EQ(Toolbox::displayToGroupListIndex(1, false), 0u);
    EXPECT_EQ(Toolbox::displayToGroupListIndex(7, false), 6u);
    EXPECT_EQ(Toolbox::phonebookToDisplayIndex(0, false), 1u);
    EXPECT_EQ(Toolbox::phonebookToDisplayIndex(7, false), 8u);
}

TEST(Toolbox, TakesTheOptionsRowForTheFirstEntry)
{
    EXPECT_EQ(Toolbox::displayToPhonebookIndex(0, false), 0u);
    EXPECT_EQ(Toolbox::displayToGroupListIndex(0, false), 0u);
}

TEST(Toolbox, CountsOneRowMoreForEitherList)
{
    EXPECT_EQ(Toolbox::nNO_SOFT_KEY_BAR_OFFSET, 1u);
    EXPECT_EQ(Toolbox::nNO_SOFT_KEY_BAR_GROUPS_OFFSET, 1u);
}

TEST(Toolbox, ReadsLeadingDigits)
{
    EXPECT_EQ(Toolbox::stoi("30"), 30);
    EXPECT_EQ(Toolbox::stoi("  -12 rows"), -12);
    EXPECT_EQ(Toolbox::stoi("rows 12"), 0);
    EXPECT_EQ(Toolbox::stoi(""), 0);
}

TEST(Toolbox, WritesNumbersAsDecimalText)
{
    EXPECT_EQ(Toolbox::itos(0), "0");
    EXPECT_EQ(Toolbox::itos(1234567), "1234567");
    EXPECT_EQ(Toolbox::itos(INT_MIN), std::to_string(INT_MIN));
}

TEST(Toolbox, WritesNumbersWithoutThePointsOfALocale)
{
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    EXPECT_EQ(Toolbox::itos(-1234567), "-1234567");
    std::locale::global(before);
}

TEST(Toolbox, KeepsTextThatHasNoMoreBytesThanTheLimit)
{
    EXPECT_EQ(Toolbox::truncateStringsProperly("abc", 3), "abc");
    EXPECT_EQ(Toolbox::truncateStringsProperly("", 0), "");
    EXPECT_EQ(Toolbox::truncateStringsProperly("\x80", 2), "\x80");
}

TEST(Toolbox, CutsAfterWholeCharacters)
{
    EXPECT_EQ(Toolbox::truncateStringsProperly("abcd", 3), "abc");
    EXPECT_EQ(Toolbox::truncateStringsProperly("äöü", 2), "äö");
    EXPECT_EQ(Toolbox::truncateStringsProperly("a日本", 2), "a日");
    EXPECT_EQ(Toolbox::truncateStringsProperly("😀😀😀", 2), "😀😀");
    EXPECT_EQ(Toolbox::truncateStringsProperly("abcd", 0), "");
}

TEST(Toolbox, KeepsAsManyCharactersAsTheLimitAllowsWhateverTheirBytes)
{
    EXPECT_EQ(Toolbox::truncateStringsProperly("äöü", 3), "äöü");
    EXPECT_EQ(Toolbox::truncateStringsProperly("äöü", 5), "äöü");
}

TEST(Toolbox, CutsBeforeAByteThatBeginsNoCharacter)
{
    EXPECT_EQ(Toolbox::truncateStringsProperly("\x80"
                                               "abc",
                                               2),
              "");
    EXPECT_EQ(Toolbox::truncateStringsProperly("ab\x80"
                                               "cdef",
                                               4),
              "ab");
    EXPECT_EQ(Toolbox::truncateStringsProperly("a\xF8"
                                               "bcdef",
                                               3),
              "a");
}

TEST(Toolbox, KeepsACharacterThatLacksItsLastBytes)
{
    EXPECT_EQ(Toolbox::truncateStringsProperly("ääää\xE2\x82", 5), "ääää\xE2\x82");
}

TEST(Toolbox, RemovesBlanksAtTheEndsOnly)
{
    EXPECT_EQ(Toolbox::removeLeadingSpaces("  a b "), "a b ");
    EXPECT_EQ(Toolbox::removeTrailingSpaces(" a b  "), " a b");
    EXPECT_EQ(Toolbox::removeLeadingAndTrailingSpaces("  a b  "), "a b");
    EXPECT_EQ(Toolbox::removeLeadingAndTrailingSpaces("ab"), "ab");
}

TEST(Toolbox, TakesOnlyTheBlankForASpace)
{
    EXPECT_EQ(Toolbox::removeLeadingAndTrailingSpaces("\ta\n"), "\ta\n");
    EXPECT_EQ(Toolbox::removeLeadingAndTrailingSpaces(" \ta\n "), "\ta\n");
}

TEST(Toolbox, LeavesTextOfNothingButBlanksAsItIs)
{
    EXPECT_EQ(Toolbox::removeLeadingSpaces("   "), "   ");
    EXPECT_EQ(Toolbox::removeTrailingSpaces("   "), "   ");
    EXPECT_EQ(Toolbox::removeLeadingAndTrailingSpaces("   "), "   ");
    EXPECT_EQ(Toolbox::removeLeadingAndTrailingSpaces(""), "");
}

TEST(Toolbox, FindsTheFirstSizeOfAField)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(Toolbox::getFieldSizeFromVector({{"email", "35"}, {"mobile", "50"}, {"mobile", "9"}}, "mobile"),
              50);
    EXPECT_EQ(Toolbox::getFieldSizeFromVector({{"email", "many"}}, "email"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Toolbox, SaysOnTheStandardOutputWhichFieldHasNoSize)
{
    const LogCapture log;
    testing::internal::CaptureStdout();
    EXPECT_EQ(Toolbox::getFieldSizeFromVector({}, "email"), -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Error - didn't find field email in the field size vector\n");
    EXPECT_TRUE(log.texts(AppLog::ERROR).empty());

    testing::internal::CaptureStdout();
    EXPECT_EQ(Toolbox::getFieldSizeFromVector({{"Email", "35"}}, "email"), -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Error - didn't find field email in the field size vector\n");
}

namespace {

// Says that it read the item but leaves no value.
class ForgetfulLocalMgmt : public LocalMgmtIfc {
public:
    bool read(ManageableData&) override { return true; }
    void observeManageableData(const std::string&, MgmtAgentIfc*) override {}
    std::vector<std::string> getPictureClips() override { return {}; }
    std::string pictureNameFromPath(const std::string&) override { return ""; }
    std::string picturePathFromName(const std::string&) override { return ""; }
};

// Leaves a value but says that it could not read the item.
class RefusingLocalMgmt final : public ForgetfulLocalMgmt {
public:
    bool read(ManageableData& data) override
    {
        data.setValue(data.getRootId(), "de");
        return false;
    }
};

} // namespace

TEST(Toolbox, ReadsAConfigurationItem)
{
    FakeLocalMgmt localMgmt;
    localMgmt.items = {{"language", "de"}, {"bt-active", ""}};
    EXPECT_EQ(Toolbox::getValueFromOCMS(&localMgmt, "language"), "de");
    EXPECT_EQ(Toolbox::getValueFromOCMS(&localMgmt, "bt-active"), "");
    EXPECT_EQ(localMgmt.reads, (std::vector<std::string>{"language", "bt-active"}));
}

TEST(Toolbox, GivesQuestionMarksForAnItemThatItCannotRead)
{
    FakeLocalMgmt localMgmt;
    ForgetfulLocalMgmt forgetful;
    RefusingLocalMgmt refusing;
    EXPECT_EQ(Toolbox::getValueFromOCMS(nullptr, "language"), "???");
    EXPECT_EQ(Toolbox::getValueFromOCMS(&localMgmt, "language"), "???");
    EXPECT_EQ(Toolbox::getValueFromOCMS(&forgetful, "language"), "???");
    EXPECT_EQ(Toolbox::getValueFromOCMS(&refusing, "language"), "???");
}

TEST(Toolbox, LogsEachOperationByItsName)
{
    testing::internal::CaptureStdout();
    expectTraces("Toolbox",
                 {
                     {"displayToPhonebookIndex", [] { Toolbox::displayToPhonebookIndex(1, true); }},
                     {"phonebookToDisplayIndex", [] { Toolbox::phonebookToDisplayIndex(1, true); }},
                     {"displayToGroupListIndex", [] { Toolbox::displayToGroupListIndex(1, true); }},
                     {"stoi", [] { Toolbox::stoi("1"); }},
                     {"itos", [] { Toolbox::itos(1); }},
                     {"truncateStringsProperly", [] { Toolbox::truncateStringsProperly("a", 1); }},
                     {"removeLeadingSpaces", [] { Toolbox::removeLeadingSpaces("a"); }},
                     {"removeTrailingSpaces", [] { Toolbox::removeTrailingSpaces("a"); }},
                     {"removeLeadingAndTrailingSpaces", [] { Toolbox::removeLeadingAndTrailingSpaces("a"); }},
                     {"getFieldSizeFromVector", [] { Toolbox::getFieldSizeFromVector({}, "a"); }},
                     {"getValueFromOCMS", [] { Toolbox::getValueFromOCMS(nullptr, "a"); }},
                 });
    testing::internal::GetCapturedStdout();
}
