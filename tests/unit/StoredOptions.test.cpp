#include "PhonebookList.h"

#include <climits>

#include <gtest/gtest.h>

#include <testing/FakeDigitAnalysis.h>
#include <testing/FakeDirectoryService.h>
#include <testing/FakeLocalMgmt.h>
#include <testing/LogCapture.h>

namespace {

using Strings = std::vector<std::string>;
using Writes = std::vector<std::pair<std::string, int>>;

class StoredOptions : public testing::Test {
protected:
    displayMode localModeFor(int stored)
    {
        directory.options["DisplayOptions"] = stored;
        return PhonebookList(&directory).getDisplayMode();
    }
    displayQualifier ldapQualifierFor(int stored)
    {
        directory.options["LdapQualifier"] = stored;
        return PhonebookList(&directory, &digitAnalysis).getDisplayQualifier();
    }
    int triggerTimeoutFor(const std::string& configured)
    {
        localMgmt.items["ldap-search-trigger-timeout"] = configured;
        return PhonebookList(&directory).getSearchTriggerTimeoutFromDatabase(&localMgmt);
    }

    FakeDirectoryService directory;
    FakeDigitAnalysis digitAnalysis;
    FakeLocalMgmt localMgmt;
    LogCapture log;
};

} // namespace

TEST_F(StoredOptions, EachListReadsItsOwnTags)
{
    directory.options = {{"DisplayOptions", 1}, {"LdapDisplayOptions", 2}, {"LdapQualifier", 8}};
    PhonebookList local(&directory);
    EXPECT_EQ(local.getDisplayMode(), displayMode::FirstnameSurname);
    EXPECT_EQ(local.getDisplayQualifier(), displayQualifier::None);

    PhonebookList ldap(&directory, &digitAnalysis);
    EXPECT_EQ(ldap.getDisplayMode(), displayMode::SurnameInitial);
    EXPECT_EQ(ldap.getDisplayQualifier(), displayQualifier::Company);
}

TEST_F(StoredOptions, TheLocalListNeverReadsAQualifier)
{
    directory.options = {{"", 5}, {"LdapQualifier", 8}};
    PhonebookList local(&directory);
    EXPECT_EQ(local.getDisplayQualifierFromDatabase(), displayQualifier::None);
    EXPECT_EQ(local.getDisplayQualifier(), displayQualifier::None);
}

TEST_F(StoredOptions, TheWayAListIsMadeDecidesOnItsTags)
{
    directory.options = {{"DisplayOptions", 1}, {"LdapDisplayOptions", 2}, {"LdapQualifier", 8}};
    PhonebookList ldap(&directory, nullptr);
    EXPECT_EQ(ldap.getDisplayMode(), displayMode::SurnameInitial);
    EXPECT_EQ(ldap.getDisplayQualifier(), displayQualifier::Company);
}

TEST_F(StoredOptions, TheModeIsReadBeforeTheQualifier)
{
    const PhonebookList ldap(&directory, &digitAnalysis);
    EXPECT_EQ(log.texts(5),
              (Strings{"PhonebookList::PhonebookList()", "getDisplayOptionFromDatabase Function Entered",
                       "PhonebookList::getDisplayQualifierFromDatabase()"}));
}

TEST_F(StoredOptions, ModesZeroToThreeAreTaken)
{
    for (int mode = 0; mode <= 3; ++mode)
        EXPECT_EQ(localModeFor(mode), static_cast<displayMode>(mode));
    EXPECT_TRUE(log.texts(2).empty());
}

TEST_F(StoredOptions, AModeOutOfRangeIsLoggedAndReplaced)
{
    EXPECT_EQ(localModeFor(4), displayMode::SurnameFirstname);
    EXPECT_EQ(log.texts(2), Strings{" Invalid Display Option from database =  4 "});
    EXPECT_EQ(localModeFor(-1), displayMode::SurnameFirstname);
    EXPECT_TRUE(log.has(" Invalid Display Option from database =  -1 ", 2));
}

TEST_F(StoredOptions, QualifiersZeroToNineAreTaken)
{
    for (int qualifier = 0; qualifier <= 9; ++qualifier)
        EXPECT_EQ(ldapQualifierFor(qualifier), static_cast<displayQualifier>(qualifier));
    EXPECT_TRUE(log.texts(2).empty());
}

TEST_F(StoredOptions, AQualifierOutOfRangeIsLoggedAndReplaced)
{
    EXPECT_EQ(ldapQualifierFor(10), displayQualifier::None);
    EXPECT_EQ(log.texts(2), Strings{" Invalid Qualifier from database =  10 "});
    EXPECT_EQ(ldapQualifierFor(-1), displayQualifier::None);
    EXPECT_TRUE(log.has(" Invalid Qualifier from database =  -1 ", 2));
}

TEST_F(StoredOptions, ReadingAgainGivesAndKeepsWhatIsStored)
{
    PhonebookList ldap(&directory, &digitAnalysis);
    directory.options = {{"LdapDisplayOptions", 3}, {"LdapQualifier", 5}};
    EXPECT_EQ(ldap.getDisplayOptionFromDatabase(), displayMode::InitialSurname);
    EXPECT_EQ(ldap.getDisplayMode(), displayMode::InitialSurname);
    EXPECT_EQ(ldap.getDisplayQualifierFromDatabase(), displayQualifier::Mobile);
    EXPECT_EQ(ldap.getDisplayQualifier(), displayQualifier::Mobile);
}

TEST_F(StoredOptions, WithoutADirectoryServiceAllAreZero)
{
    PhonebookList ldap(nullptr, &digitAnalysis);
    ldap.setDisplayMode(displayMode::InitialSurname);
    ldap.setDisplayQualifier(displayQualifier::Mobile);
    EXPECT_EQ(ldap.getDisplayMode(), displayMode::InitialSurname);
    EXPECT_EQ(ldap.getDisplayQualifier(), displayQualifier::Mobile);
    EXPECT_EQ(ldap.savePhonebookOptionsInDatabase("LdapQualifier", 5), 0);
    EXPECT_EQ(ldap.getDisplayOptionFromDatabase(), displayMode::SurnameFirstname);
    EXPECT_EQ(ldap.getDisplayMode(), displayMode::SurnameFirstname);
    EXPECT_EQ(ldap.getDisplayQualifierFromDatabase(), displayQualifier::None);
    EXPECT_EQ(ldap.getDisplayQualifier(), displayQualifier::None);
    EXPECT_TRUE(log.texts(2).empty());
}

TEST_F(StoredOptions, SavingWritesTheValueUnderTheTag)
{
    PhonebookList local(&directory);
    log.clear();
    EXPECT_EQ(local.savePhonebookOptionsInDatabase("DisplayOptions", 2), 0);
    EXPECT_EQ(log.texts(5), Strings{"saveDisplayOptionsInDatabase Function Entered"});
    directory.optionResult = 7;
    EXPECT_EQ(local.savePhonebookOptionsInDatabase("DisplayOptions", 3), 7);
    EXPECT_EQ(directory.optionWrites, (Writes{{"DisplayOptions", 2}, {"DisplayOptions", 3}}));
}

TEST_F(StoredOptions, ANewModeIsSavedUnderTheListsTag)
{
    PhonebookList(&directory).setDisplayMode(displayMode::InitialSurname);
    PhonebookList(&directory, &digitAnalysis).setDisplayMode(displayMode::SurnameInitial);
    EXPECT_EQ(directory.optionWrites, (Writes{{"DisplayOptions", 3}, {"LdapDisplayOptions", 2}}));
}

TEST_F(StoredOptions, AModeThatCannotBeSavedIsUsedAllTheSame)
{
    PhonebookList local(&directory);
    directory.optionResult = 1;
    local.setDisplayMode(displayMode::InitialSurname);
    EXPECT_EQ(local.getDisplayMode(), displayMode::InitialSurname);
    EXPECT_TRUE(log.texts(2).empty());
}

TEST_F(StoredOptions, ANewQualifierIsSavedAndSortsNothing)
{
    PhonebookList ldap(&directory, &digitAnalysis);
    log.clear();
    ldap.setDisplayQualifier(displayQualifier::Company);
    EXPECT_EQ(ldap.getDisplayQualifier(), displayQualifier::Company);
    EXPECT_EQ(directory.optionWrites, (Writes{{"LdapQualifier", 8}}));
    EXPECT_FALSE(log.has("PhonebookList::sortListBySortMode()"));
    EXPECT_TRUE(log.texts(2).empty());
}

TEST_F(StoredOptions, AQualifierThatCannotBeSavedIsLoggedAndUsed)
{
    PhonebookList ldap(&directory, &digitAnalysis);
    directory.optionResult = 1;
    ldap.setDisplayQualifier(displayQualifier::Company);
    EXPECT_EQ(ldap.getDisplayQualifier(), displayQualifier::Company);
    EXPECT_EQ(log.texts(2), Strings{"write failed tag = LdapQualifier, New value = 8"});
}

TEST_F(StoredOptions, TheSearchTriggerTimeoutIsInMilliseconds)
{
    EXPECT_EQ(triggerTimeoutFor("2"), 2000);
    EXPECT_EQ(triggerTimeoutFor("15s"), 15000);
    EXPECT_EQ(triggerTimeoutFor("abc"), 0);
    EXPECT_EQ(triggerTimeoutFor(""), 0);
    EXPECT_EQ(triggerTimeoutFor("???"), 0);
    EXPECT_TRUE(log.has("getSearchTriggerTimeoutFromDatabase Function Entered", 5));
}

TEST_F(StoredOptions, ASearchTriggerTimeoutBeyondAllMeasureStaysALongTime)
{
    EXPECT_EQ(triggerTimeoutFor("2147483647"), INT_MAX);
}

TEST_F(StoredOptions, AnAbsentSearchTriggerTimeoutIsZero)
{
    PhonebookList local(&directory);
    EXPECT_EQ(local.getSearchTriggerTimeoutFromDatabase(&localMgmt), 0);
    EXPECT_EQ(localMgmt.reads, Strings{"ldap-search-trigger-timeout"});
    EXPECT_EQ(local.getSearchTriggerTimeoutFromDatabase(nullptr), 0);
}
