#include "directory/NewFile.h"

#include <chrono>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "StoreTesting.h"

namespace fs = std::filesystem;

namespace {

class NewFiles : public testing::Test {
protected:
    void leave(const std::string& name, std::chrono::minutes ago, mode_t mode = 0600)
    {
        folder.write(name, "left");
        ::chmod((folder / name).c_str(), mode);
        fs::last_write_time(folder / name, fs::file_time_type::clock::now() - ago);
    }
    std::set<std::string> names() const
    {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder.path()))
            names.insert(entry.path().filename());
        return names;
    }

    TemporaryFolder folder;
};

constexpr std::chrono::minutes nLONG_AGO{61};

} // namespace

TEST_F(NewFiles, OfProgramsThatWereKilledGoAgain)
{
    leave("a.vcf.part-a1B2c3", nLONG_AGO);
    leave("contacts.db.part-a1B2c3-wal", nLONG_AGO);
    removeLeftParts(folder.path());
    EXPECT_EQ(names(), std::set<std::string>());
}

TEST_F(NewFiles, ThatMayBeInTheMakingStay)
{
    leave("a.vcf.part-a1B2c3", std::chrono::minutes(58));
    removeLeftParts(folder.path());
    EXPECT_EQ(names().size(), 1u);
}

TEST_F(NewFiles, AreNotMistakenForWhatPeopleCallSo)
{
    leave("a.vcf", nLONG_AGO);
    leave("film.part-2", nLONG_AGO);
    leave("film.part-two.mkv", nLONG_AGO);
    leave("film.part-second", nLONG_AGO, 0644);
    fs::create_directory(folder / "x.part-a1B2c3");
    removeLeftParts(folder.path());
    EXPECT_EQ(names().size(), 5u);
}

TEST_F(NewFiles, OfAnotherTargetStay)
{
    leave("a.vcf.part-a1B2c3", nLONG_AGO);
    leave("b.vcf.part-a1B2c3", nLONG_AGO);
    removeLeftParts(folder.path(), "b.vcf");
    EXPECT_EQ(names(), std::set<std::string>{"a.vcf.part-a1B2c3"});
}

TEST_F(NewFiles, ThatRootMakesBelongToTheFoldersOwner)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root";
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(::chown(folder.path().c_str(), nobody, nobody), 0);
    {
        auto file = NewFile::beside(folder / "a");
        ASSERT_TRUE(file.ok());
        ASSERT_TRUE(file.value().putInPlace().ok());
    }
    struct stat status {};
    ASSERT_EQ(::stat((folder / "a").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, nobody);
    EXPECT_EQ(status.st_gid, nobody);
}
