#include "PB_Error.h"

#include <gtest/gtest.h>

#include "TraceLines.h"

TEST(PB_Error, NamesATextForEveryCode)
{
    EXPECT_EQ(PB_Error::getErrorTxt(PB_Error::NAME), "PBerror.name");
    EXPECT_EQ(PB_Error::getErrorTxt(PB_Error::DB_WRITE), "PBerror.dbWrite");
    EXPECT_EQ(PB_Error::getErrorTxt(PB_Error::DB_DELETE), "PBerror.dbDelete");
    EXPECT_EQ(PB_Error::getErrorTxt(PB_Error::DB_DELETE_ALL), "PBerror.dbDeleteAll");
    EXPECT_EQ(PB_Error::getErrorTxt(PB_Error::DB_OUT_OF_SPACE), "PBerror.dbOutOfSpace");
    EXPECT_EQ(PB_Error::getErrorTxt(PB_Error::NO_INDEX), "PBerror.noIndex");
    EXPECT_EQ(PB_Error::getErrorTxt(PB_Error::NO_GROUP_NAME), "PBerror.no.group.name");
    EXPECT_EQ(PB_Error::getErrorTxt(PB_Error::GROUP_WRITE_FAILURE), "PBerror.group.write.failure");
}

TEST(PB_Error, KeepsTheNumbersOfTheCodes)
{
    EXPECT_EQ(PB_Error::SUCCESS, 0);
    EXPECT_EQ(PB_Error::NAME, 1);
    EXPECT_EQ(PB_Error::DB_WRITE, 100);
    EXPECT_EQ(PB_Error::DB_DELETE, 101);
    EXPECT_EQ(PB_Error::DB_DELETE_ALL, 102);
    EXPECT_EQ(PB_Error::DB_OUT_OF_SPACE, 103);
    EXPECT_EQ(PB_Error::NO_INDEX, 200);
    EXPECT_EQ(PB_Error::NO_GROUP_NAME, 300);
    EXPECT_EQ(PB_Error::GROUP_WRITE_FAILURE, 301);
}

TEST(PB_Error, HasNoTextForSuccessAndForCodesThatDoNotExist)
{
    EXPECT_EQ(PB_Error::getErrorTxt(PB_Error::SUCCESS), "");
    for (const int code : {-1, 2, 99, 104, 201, 302})
        EXPECT_EQ(PB_Error::getErrorTxt(static_cast<PB_Error::ErrorCode>(code)), "") << code;
}

TEST(PB_Error, LogsItsOperationByItsName)
{
    expectTraces("PB_Error", {{"getErrorTxt", [] { PB_Error::getErrorTxt(PB_Error::NAME); }}});
}
