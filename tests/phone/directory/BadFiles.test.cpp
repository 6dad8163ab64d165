// Files that are not what they should be.

#include <cerrno>
#include <optional>

#include <gtest/gtest.h>

#include "StoreTesting.h"
#include "directory/ContactStore.h"

namespace {

class BadFile : public testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path file = folder / "contacts.db";

    void fill(int contacts = 3)
    {
        ContactStore store(file, "en");
        for (int i = 0; i < contacts; ++i) {
            Contact contact;
            contact.surname = "Name" + std::to_string(i);
            contact.company = std::string(200, 'x');
            ASSERT_TRUE(store.write(contact).ok());
        }
    }

    // The store says what is wrong, is empty, changes nothing, and leaves the file as it is.
    void expectLeftAlone(ContactStore::Problem problem)
    {
        const auto before = contentOf(file);
        {
            ContactStore store(file, "en");
            EXPECT_EQ(store.state(), ContactStore::State::Unusable);
            EXPECT_EQ(store.problem(), problem);
            EXPECT_NE(store.notice().find(file.string()), std::string::npos);
            EXPECT_EQ(store.listText(std::nullopt).value(), "empty");
            const auto written = store.write(Contact());
            ASSERT_FALSE(written.ok());
            EXPECT_EQ(written.error().sentence, store.notice());
            EXPECT_FALSE(store.writeOption("DisplayOptions", 1).ok());
        }
        EXPECT_EQ(contentOf(file), before);
    }
};

TEST_F(BadFile, ThatIsNoDatabaseIsLeftAlone)
{
    writeFile(file, "Dear diary,\n");
    expectLeftAlone(ContactStore::Problem::Foreign);
}

TEST_F(BadFile, OfAnotherProgramIsLeftAlone)
{
    Database(file, Database::Mode::ReadWrite).execute("CREATE TABLE bookmarks(url)");
    expectLeftAlone(ContactStore::Problem::Foreign);
}

TEST_F(BadFile, OfALaterVersionIsLeftAlone)
{
    fill();
    Database(file, Database::Mode::ReadWrite)
        .execute("PRAGMA journal_mode = DELETE; PRAGMA user_version = 99");
    expectLeftAlone(ContactStore::Problem::LaterVersion);
}

TEST_F(BadFile, ThatLacksATableIsLeftAlone)
{
    fill();
    Database(file, Database::Mode::ReadWrite).execute("PRAGMA journal_mode = DELETE; DROP TABLE options");
    expectLeftAlone(ContactStore::Problem::Damaged);
}

TEST_F(BadFile, ThatWasCutOffIsLeftAlone)
{
    fill(100);
    std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
    expectLeftAlone(ContactStore::Problem::Damaged);
}

TEST_F(BadFile, WithDamagedPagesIsLeftAlone)
{
    fill(100);
    auto bytes = contentOf(file);
    for (std::size_t at = 4096; at < bytes.size(); ++at)
        bytes[at] = static_cast<char>(bytes[at] ^ 0x5a);
    writeFile(file, bytes);
    expectLeftAlone(ContactStore::Problem::Damaged);
}

TEST_F(BadFile, ThatIsEmptyBecomesAnEmptyPhonebook)
{
    writeFile(file, "");
    ContactStore store(file, "en");
    EXPECT_EQ(store.state(), ContactStore::State::Ready);
    Contact contact;
    contact.surname = "Miller";
    EXPECT_TRUE(store.write(contact).ok());
}

TEST_F(BadFile, WhoseLogWasCutOffKeepsWhatWasCompleteInIt)
{
    const auto log = folder / "contacts.db-wal";
    const auto copy = folder / "copy.db";
    ContactStore store(file, "en");
    Contact contact;
    for (const char* name : {"First", "Second"}) {
        contact.surname = name;
        ASSERT_TRUE(store.write(contact).ok());
    }
    std::filesystem::copy_file(file, copy);
    auto bytes = contentOf(log);
    bytes.resize(bytes.size() - 100);
    writeFile(folder / "copy.db-wal", bytes);

    ContactStore crashed(copy, "en");
    EXPECT_EQ(crashed.state(), ContactStore::State::Ready);
    const auto list = crashed.listText(std::nullopt).value();
    EXPECT_NE(list.find("First"), std::string::npos);
    EXPECT_EQ(list.find("Second"), std::string::npos);
}

TEST_F(BadFile, InAFolderThatCannotBeWrittenCanBeRead)
{
    using std::filesystem::perms;
    fill();
    std::filesystem::permissions(file, perms::owner_read | perms::group_read | perms::others_read);
    std::filesystem::permissions(folder.path(), perms::owner_read | perms::owner_exec | perms::others_read |
                                                    perms::others_exec | perms::group_read |
                                                    perms::group_exec);
    const auto before = contentOf(file);
    {
        const AsOrdinaryUser user;
        ContactStore store(file, "en");
        EXPECT_EQ(store.state(), ContactStore::State::ReadOnly);
        EXPECT_EQ(store.problem(), ContactStore::Problem::ReadOnly);
        EXPECT_NE(store.notice().find(file.string()), std::string::npos);
        EXPECT_NE(store.listText(std::nullopt).value().find("Name1"), std::string::npos);
        EXPECT_FALSE(store.write(Contact()).ok());
        EXPECT_FALSE(store.eraseAll(std::nullopt).ok());
    }
    EXPECT_EQ(contentOf(file), before);
}

TEST_F(BadFile, OnAFullDiskCanBeReadAndIsWrittenOnceThereIsSpace)
{
    fill();
    std::optional<FailingDisk> full;
    full.emplace(FailingDisk::What::Write, 1, ENOSPC);
    ContactStore store(file, "en");
    EXPECT_TRUE(full->hasFailed());
    EXPECT_EQ(store.problem(), ContactStore::Problem::DiskFull);
    EXPECT_NE(store.listText(std::nullopt).value().find("Name1"), std::string::npos);
    const auto written = store.write(Contact());
    ASSERT_FALSE(written.ok());
    EXPECT_EQ(written.error().code, ErrorCode::Full);

    full.reset();
    EXPECT_TRUE(store.write(Contact()).ok());
    EXPECT_EQ(store.problem(), ContactStore::Problem::None);
    EXPECT_NE(store.listText(std::nullopt).value().find("Name1"), std::string::npos);
}

TEST_F(BadFile, ThatFindsNoSpaceAtFirstIsNotCalledDamaged)
{
    const FailingDisk full(FailingDisk::What::Write, 1, ENOSPC);
    ContactStore store(file, "en");
    EXPECT_EQ(store.state(), ContactStore::State::Unusable);
    EXPECT_EQ(store.problem(), ContactStore::Problem::DiskFull);
    EXPECT_EQ(store.write(Contact()).error().code, ErrorCode::Full);
}

TEST_F(BadFile, ThatAnotherProgramHasToItselfIsNotCalledDamagedAndIsReadLater)
{
    fill();
    const ImpatientSqlite impatient;
    std::optional<Database> other;
    other.emplace(file, Database::Mode::ReadWrite);
    other->execute("PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE");
    ContactStore store(file, "en");
    EXPECT_EQ(store.problem(), ContactStore::Problem::Busy);
    EXPECT_EQ(store.write(Contact()).error().code, ErrorCode::Unavailable);
    other.reset();
    EXPECT_TRUE(store.write(Contact()).ok());
    EXPECT_EQ(store.problem(), ContactStore::Problem::None);
    EXPECT_TRUE(store.takeReplaced());
    EXPECT_NE(store.listText(std::nullopt).value().find("Name1"), std::string::npos);
}

// A telephone starts in another language while a long import writes: only the order has to wait.
TEST_F(BadFile, ThatAnotherProgramWritesCanBeReadInAnotherLanguage)
{
    fill();
    const ImpatientSqlite impatient;
    ContactStore other(file, "en");
    const Transaction theirs(*other.database());
    ContactStore store(file, "sv");
    EXPECT_EQ(store.problem(), ContactStore::Problem::None);
    EXPECT_NE(store.listText(std::nullopt).value().find("Name1"), std::string::npos);
}

TEST_F(BadFile, InAFolderThatCannotBeMadeIsSaid)
{
    writeFile(folder / "not-a-folder", "x");
    ContactStore store(folder / "not-a-folder" / "contacts.db", "en");
    EXPECT_EQ(store.state(), ContactStore::State::Unusable);
    EXPECT_NE(store.notice(), "");
}

// Whatever byte of a small file is wrong, the store opens or says why not, and never crashes.
TEST_F(BadFile, WithAnyWrongByteDoesNoHarm)
{
    fill(5);
    const auto sound = contentOf(file);
    for (std::size_t at = 0; at < sound.size(); at += 251) {
        auto bytes = sound;
        bytes[at] = static_cast<char>(bytes[at] ^ 0xff);
        writeFile(file, bytes);
        ContactStore store(file, "");
        (void)store.listText(std::nullopt);
        (void)store.forEach([](const Contact&, const KeptCard&) { return true; });
        (void)store.groupNames(20);
    }
}

} // namespace
