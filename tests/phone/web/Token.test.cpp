#include "web/Token.h"

#include <fstream>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "../TemporaryFolder.h"

namespace {

class PageToken : public testing::Test {
protected:
    std::filesystem::path file() const { return m_folder / "page-access"; }

    const TemporaryFolder m_folder;
    const std::filesystem::path m_profile = m_folder.path();
};

TEST_F(PageToken, IsMadeOnceAndSurvivesARestart)
{
    const auto first = loadWebAccess(m_profile);
    ASSERT_TRUE(first);
    EXPECT_EQ(first.value().token.size(), 32u);

    EXPECT_EQ(loadWebAccess(m_profile).value().token, first.value().token);
}

TEST_F(PageToken, IsReadableByItsOwnerOnly)
{
    ASSERT_TRUE(loadWebAccess(m_profile));
    struct stat status = {};
    ASSERT_EQ(stat(file().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(PageToken, IsKeptWithThePort)
{
    auto access = loadWebAccess(m_profile).value();
    access.port = 4711;
    ASSERT_TRUE(saveWebAccess(m_profile, access));
    EXPECT_EQ(loadWebAccess(m_profile).value().port, 4711);
}

TEST_F(PageToken, IsReplacedOnRequestAndThePortStays)
{
    auto access = loadWebAccess(m_profile).value();
    access.port = 4711;
    ASSERT_TRUE(saveWebAccess(m_profile, access));

    const auto renewed = renewToken(m_profile);
    ASSERT_TRUE(renewed);
    EXPECT_NE(renewed.value().token, access.token);
    EXPECT_EQ(renewed.value().port, 4711);
    EXPECT_EQ(loadWebAccess(m_profile).value().token, renewed.value().token);
}

TEST_F(PageToken, IsMadeAnewWhenItsFileIsDamaged)
{
    std::ofstream(file()) << "not a token";
    const auto access = loadWebAccess(m_profile);
    ASSERT_TRUE(access);
    EXPECT_EQ(access.value().token.size(), 32u);
}

TEST_F(PageToken, LastsUntilTheTelephoneStopsWhereItCannotBeKept)
{
    const auto access = loadWebAccess(m_profile / "gone");
    ASSERT_TRUE(access);
    EXPECT_EQ(access.value().token.size(), 32u);

    const auto saved = saveWebAccess(m_profile / "gone", access.value());
    ASSERT_FALSE(saved);
    EXPECT_NE(saved.error().sentence.find("page-access"), std::string::npos);
    EXPECT_FALSE(renewToken(m_profile / "gone"));
}

} // namespace
