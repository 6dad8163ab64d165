// `deskphone backup` and `deskphone restore`, as they are called.

#include "directory/BackupCommand.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "../pictures/TestPictures.h"
#include "StoreTesting.h"
#include "directory/ContactStore.h"
#include "directory/DirectoryService.h"

namespace fs = std::filesystem;

namespace {

// What a profile holds, as people see it.
struct Content {
    std::map<std::string, std::string> contacts; // "Doe, Jane" -> group/picture's bytes
    std::vector<std::string> groups;
    int nameFormat = 0;

    bool operator==(const Content&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Content& content)
{
    for (const auto& [name, rest] : content.contacts)
        out << name << ": " << rest << "; ";
    return out << testing::PrintToString(content.groups) << " format " << content.nameFormat;
}

// A telephone's folder.
class Book {
public:
    Book() { fs::create_directory(pictures()); }

    fs::path folder() const { return m_folder.path(); }
    fs::path file() const { return DirectoryService::fileIn(m_folder.path()); }
    fs::path pictures() const { return m_folder / "pictures"; }
    fs::path operator/(const std::string& name) const { return m_folder / name; }

    void add(const std::string& surname, const std::string& firstname, int group = 0,
             const std::string& picture = "")
    {
        ContactStore store(file(), "en");
        Contact contact;
        contact.surname = surname;
        contact.firstname = firstname;
        contact.group = group;
        contact.picture = picture;
        ASSERT_TRUE(store.write(contact).ok());
    }
    void nameGroups(const std::vector<std::string>& names)
    {
        ASSERT_TRUE(ContactStore(file(), "en").writeGroupNames(names).ok());
    }
    void setNameFormat(int format)
    {
        ASSERT_TRUE(ContactStore(file(), "en").writeOption("DisplayOptions", format).ok());
    }
    void draw(const std::string& picture, const std::string& bytes)
    {
        writeFile(pictures() / picture, test_pictures::png() + bytes);
    }
    // Three contacts, two groups, two pictures.
    void fill()
    {
        nameGroups({"Work", "", "Family"});
        draw("jane.png", "jane's face");
        draw("dog.png", "a dog");
        add("Doe", "Jane", 3, "jane.png");
        add("Miller", "Ann", 1);
        add("Zander", "Zo\u00eb");
        setNameFormat(2);
    }

    Content content() const
    {
        ContactStore store(file(), "");
        Content content;
        content.groups = store.groupNames(3).value();
        content.nameFormat = store.readOption("DisplayOptions").value();
        (void)store.forEach([&](const Contact& contact, const KeptCard&) {
            content.contacts[contact.surname + ", " + contact.firstname] =
                std::to_string(contact.group) + "/" +
                (contact.picture.empty() ? "" : drawing(contact.picture));
            return true;
        });
        return content;
    }

    // What was drawn.
    std::string drawing(const std::string& picture) const
    {
        const auto bytes = contentOf(pictures() / picture);
        return bytes.substr(std::min(bytes.size(), test_pictures::png().size()));
    }

    // Those that a command left beside the book.
    std::vector<fs::path> filesLike(const std::string& part) const
    {
        std::vector<fs::path> files;
        for (const auto& entry : fs::directory_iterator(m_folder.path())) {
            if (entry.path().filename().string().find(part) != std::string::npos)
                files.push_back(entry.path());
        }
        return files;
    }

private:
    TemporaryFolder m_folder;
};

class Backups : public testing::Test {
protected:
    int backup(const Book& from, const fs::path& to)
    {
        return run(runBackup, {to, from.folder(), from.pictures()});
    }
    int restore(const Book& to, const fs::path& from)
    {
        return run(runRestore, {from, to.folder(), to.pictures()});
    }
    int restore(const Book& to) { return restore(to, file); }

    void changeBackup(const std::string& sql)
    {
        if (!fs::exists(book.file()))
            book.fill();
        ASSERT_EQ(backup(book, file), 0) << errors;
        Database(file, Database::Mode::ReadWrite).execute(sql);
    }
    void expectRefused(const std::string& why)
    {
        Book other;
        other.add("Old", "");
        const auto before = other.content();
        EXPECT_EQ(restore(other), 1);
        EXPECT_NE(errors.find(why), std::string::npos) << errors;
        EXPECT_EQ(other.content(), before);
        EXPECT_TRUE(other.filesLike(".backup").empty());
    }

    Book book;
    TemporaryFolder elsewhere;
    const fs::path file = elsewhere / "phonebook.backup";
    std::string said;
    std::string errors;

private:
    int run(int (*command)(const BackupOptions&, std::ostream&, std::ostream&), const BackupOptions& options)
    {
        std::ostringstream out;
        std::ostringstream err;
        const int code = command(options, out, err);
        said = out.str();
        errors = err.str();
        return code;
    }
};

TEST_F(Backups, BringContactsGroupsPicturesAndOptionsToAnotherTelephone)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0) << errors;
    EXPECT_EQ(said, "Backed up 3 contacts, 2 groups, 2 pictures.\n");

    Book other;
    ASSERT_EQ(restore(other), 0) << errors;
    EXPECT_EQ(said, "Restored 3 contacts, 2 groups, 2 pictures.\n");
    EXPECT_EQ(other.content(), book.content());
    EXPECT_EQ(other.drawing("dog.png"), "a dog");
}

TEST_F(Backups, CountOneAndNoneInPlainWords)
{
    book.add("Doe", "Jane");
    ASSERT_EQ(backup(book, file), 0);
    EXPECT_EQ(said, "Backed up 1 contact, no groups, no pictures.\n");
}

TEST_F(Backups, KeepIdsAndTheCardsThatContactsCameFrom)
{
    ContactStore store(book.file(), "en");
    Contact contact{
        "",        "Doe",    "Jane", "1",         "2",        "3",     "4", "j@d.org",
        "Doe Ltd", "Road 1", "Town", "Carpenter", "jane.png", "ext-7", 0,   DefaultNumber::Mobile};
    contact.id = ContactStore::newId();
    ASSERT_TRUE(store
                    .inTransaction([&] {
                        store.put(contact);
                        store.putCard(contact.id, {"uid-1", "BEGIN:VCARD", "{}"});
                        return true;
                    })
                    .ok());
    ASSERT_EQ(backup(book, file), 0);
    Book other;
    ASSERT_EQ(restore(other), 0);

    ContactStore restored(other.file(), "en");
    EXPECT_EQ(restored.read(contact.id).value(), contact);
    (void)restored.forEach([](const Contact&, const KeptCard& card) {
        EXPECT_EQ(card.uid, "uid-1");
        EXPECT_EQ(card.card, "BEGIN:VCARD");
        EXPECT_EQ(card.imported, "{}");
        return true;
    });
}

TEST_F(Backups, AreForTheirOwnersEyesOnly)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    Book other;
    ASSERT_EQ(restore(other), 0);
    ASSERT_EQ(restore(other), 0);
    const auto kept = other.filesLike(".backup");
    ASSERT_EQ(kept.size(), 1U);
    for (const auto& path : {file, other.file(), kept.front(), other.pictures() / "jane.png"})
        EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write) << path;
}

TEST_F(Backups, CanBeUnpackedWithStockTools)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    Database archive(file, Database::Mode::ReadOnly);
    EXPECT_EQ(archive.queryText("PRAGMA journal_mode"), "delete");
    EXPECT_EQ(archive.queryNumber("SELECT sz FROM sqlar WHERE name = 'pictures/jane.png'"),
              static_cast<std::int64_t>(fs::file_size(book.pictures() / "jane.png")));
    Statement data(archive.handle(), "SELECT data FROM sqlar WHERE name = 'pictures/jane.png'");
    ASSERT_TRUE(data.step());
    EXPECT_EQ(data.blob(0), contentOf(book.pictures() / "jane.png"));
}

TEST_F(Backups, OfATelephoneThatRunsHoldWhatIsInItsLogToo)
{
    book.fill();
    const ContactStore running(book.file(), "en");
    book.add("Latest", "");
    ASSERT_TRUE(fs::file_size(book.file().string() + "-wal") > 0);
    ASSERT_EQ(backup(book, file), 0);
    EXPECT_EQ(said, "Backed up 4 contacts, 2 groups, 2 pictures.\n");
}

TEST_F(Backups, OfAPhonebookThatCanOnlyBeReadWork)
{
    book.fill();
    fs::permissions(book.file(), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    fs::permissions(book.folder(), fs::perms(0555));
    fs::permissions(elsewhere.path(), fs::perms(0777));
    const AsOrdinaryUser user;
    EXPECT_EQ(backup(book, file), 0) << errors;
    EXPECT_EQ(said, "Backed up 3 contacts, 2 groups, 2 pictures.\n");
}

TEST_F(Backups, ReplaceEarlierBackupsOnly)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    book.add("Further", "");
    ASSERT_EQ(backup(book, file), 0);
    EXPECT_EQ(said, "Backed up 4 contacts, 2 groups, 2 pictures.\n");

    writeFile(elsewhere / "letter.txt", "Dear Jane,");
    EXPECT_EQ(backup(book, elsewhere / "letter.txt"), 1);
    EXPECT_EQ(contentOf(elsewhere / "letter.txt"), "Dear Jane,");
}

TEST_F(Backups, RefuseToBecomeWhatIsNoOrdinaryFileOrOneOfTheTelephonesOwn)
{
    book.fill();
    const auto before = book.content();
    for (const auto& target :
         {book.file(), book / "contacts.db-wal", book / "config.toml", book.pictures() / "new.png",
          book.folder(), fs::path("/dev/null"), elsewhere / "missing" / "b.backup", fs::path("")}) {
        SCOPED_TRACE(target);
        EXPECT_EQ(backup(book, target), 1);
        EXPECT_NE(errors, "");
    }
    EXPECT_EQ(book.content(), before);
    EXPECT_FALSE(fs::exists(book / "config.toml"));
    EXPECT_EQ(backup(book, book / "mine.backup"), 0) << errors;
}

TEST_F(Backups, OfNothingAreRefused)
{
    const TemporaryFolder empty;
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runBackup({file, empty.path(), empty / "pictures"}, out, err), 1);
    EXPECT_EQ(err.str(), "There is no phonebook in \"" + empty.path().string() + "\".\n");
    EXPECT_TRUE(fs::is_empty(empty.path()));

    fs::create_symlink("loop", empty / "loop");
    EXPECT_EQ(runBackup({file, empty / "loop", empty / "loop"}, out, err), 1);
    EXPECT_NE(err.str().find("/loop\" (Too many levels of symbolic links).\n"), std::string::npos);

    writeFile(book.file(), "rubbish");
    EXPECT_EQ(backup(book, file), 1);
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(Backups, LeaveOutWhatIsNoPictureAndSaySo)
{
    book.fill();
    fs::create_directory(book.pictures() / "holidays");
    book.draw(".hidden", "x");
    book.draw(std::string(92, 'n') + ".png", "x");
    writeFile(book.pictures() / "letter.png", "Dear Jane,");
    fs::create_symlink("/nowhere", book.pictures() / "gone.png");
    ::mkfifo((book.pictures() / "pipe.png").c_str(), 0600);
    ASSERT_EQ(backup(book, file), 0);
    EXPECT_EQ(said, "Backed up 3 contacts, 2 groups, 2 pictures.\n");
    for (const auto* name : {"holidays", "gone.png", "pipe.png", "nnnn", "letter.png"})
        EXPECT_NE(errors.find(name), std::string::npos) << name;
    EXPECT_EQ(errors.find("hidden"), std::string::npos);
}

// Each write of the backup finds the disk full in turn.
TEST_F(Backups, ReplaceAnEarlierOneOnlyByAWholeOne)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    const auto earlier = contentOf(file);
    book.add("Further", "");
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        const FailingDisk disk(FailingDisk::What::Write, nth, ENOSPC);
        const int code = backup(book, file);
        if (!disk.hasFailed())
            break;
        EXPECT_EQ(code, 1);
        EXPECT_EQ(errors, "The disk is full. Delete something and try again.\n");
        EXPECT_EQ(contentOf(file), earlier);
        ASSERT_LT(nth, 200);
    }
    EXPECT_NE(contentOf(file), earlier);
    EXPECT_EQ(std::distance(fs::directory_iterator(elsewhere.path()), {}), 1);
}

// --- Restoring ---

TEST_F(Backups, ReplaceWhatIsThereAndKeepIt)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    Book other;
    other.add("Old", "Friend");
    other.nameGroups({"Club"});
    other.draw("old.png", "old");
    const auto before = other.content();

    ASSERT_EQ(restore(other), 0);
    EXPECT_EQ(other.content(), book.content());
    const auto kept = other.filesLike(".backup");
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(said, "Restored 3 contacts, 2 groups, 2 pictures.\nWhat was there before is kept in \"" +
                        kept.front().string() + "\".\n");

    ASSERT_EQ(restore(other, kept.front()), 0);
    EXPECT_EQ(other.content(), before);
}

TEST_F(Backups, LeavePicturesAloneThatHaveTheirNameTakenMeanwhile)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    const auto content = book.content();
    book.draw("jane.png", "somebody else");
    ASSERT_EQ(restore(book), 0);
    EXPECT_EQ(book.content(), content);
    EXPECT_EQ(book.drawing("jane.png"), "somebody else");
    EXPECT_EQ(book.drawing("jane-2.png"), "jane's face");

    ASSERT_EQ(restore(book), 0);
    EXPECT_EQ(book.content(), content);
    EXPECT_FALSE(fs::exists(book.pictures() / "jane-3.png"));
}

TEST_F(Backups, ReplaceAContactsFileThatCannotBeUsed)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    const auto later = [](const fs::path& path) {
        Database(path, Database::Mode::ReadWrite)
            .execute("PRAGMA journal_mode = DELETE; PRAGMA user_version = 99");
    };
    const auto foreign = [](const fs::path& path) { writeFile(path, "Dear diary,\n"); };
    const auto damaged = [](const fs::path& path) {
        auto bytes = contentOf(path);
        for (std::size_t at = 4096; at < bytes.size(); ++at)
            bytes[at] = static_cast<char>(bytes[at] ^ 0x5a);
        writeFile(path, bytes);
    };
    for (const std::function<void(const fs::path&)>& spoil :
         std::vector<std::function<void(const fs::path&)>>{later, foreign, damaged}) {
        Book other;
        other.fill();
        spoil(other.file());
        const auto before = contentOf(other.file());

        ASSERT_EQ(restore(other), 0) << errors;
        EXPECT_EQ(other.content(), book.content());
        const auto aside = other.filesLike("unusable");
        ASSERT_FALSE(aside.empty());
        const auto kept = *std::min_element(aside.begin(), aside.end()); // its logs have longer names
        EXPECT_EQ(contentOf(kept), before);
        EXPECT_NE(said.find("\"" + kept.string() + "\""), std::string::npos);
        EXPECT_TRUE(other.filesLike(".part").empty());
    }
}

TEST_F(Backups, KeepTheLogOfAnUnusableFileWithItAndAwayFromTheNewOne)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    Book other;
    writeFile(other.file(), "rubbish");
    writeFile(other / "contacts.db-wal", "log");
    writeFile(other / "contacts.db-journal", "journal");
    ASSERT_EQ(restore(other), 0);
    EXPECT_EQ(other.content(), book.content());
    std::set<std::string> aside;
    for (const auto& kept : other.filesLike("unusable"))
        aside.insert(contentOf(kept));
    EXPECT_EQ(aside, (std::set<std::string>{"rubbish", "log", "journal"}));
    EXPECT_FALSE(fs::exists(other / "contacts.db-journal"));
}

TEST_F(Backups, AreRefusedWhenTheyAreSomethingElse)
{
    expectRefused("cannot be read: No such file or directory");
    writeFile(file, "");
    expectRefused("is no backup of this telephone");
    writeFile(file, "Dear diary,\n");
    expectRefused("is no backup of this telephone");
    book.fill();
    fs::copy_file(book.file(), file, fs::copy_options::overwrite_existing);
    expectRefused("is no backup of this telephone");
    fs::remove(file);
    fs::create_directory(file);
    expectRefused("is no file");
}

TEST_F(Backups, OfALaterVersionAreRefused)
{
    changeBackup("PRAGMA user_version = 2");
    expectRefused("was written by a later version");
}

TEST_F(Backups, WithTablesTriggersOrViewsOfSomebodyElseAreRefused)
{
    for (const auto* sql : {
             "CREATE TABLE more(x)",
             "CREATE VIEW v AS SELECT * FROM contacts",
             "CREATE TRIGGER t AFTER INSERT ON contacts BEGIN DELETE FROM contacts; END",
             "CREATE INDEX i ON contacts(surname)",
             "DROP TABLE sqlar",
             "DROP TABLE sqlar; CREATE VIEW sqlar AS SELECT 1 AS name, 1 AS mode, 1 AS mtime, 1 AS sz, 1 AS "
             "data",
             "ALTER TABLE contacts ADD COLUMN x",
             "DROP TABLE options; CREATE VIRTUAL TABLE options USING fts5(tag, value)",
         }) {
        SCOPED_TRACE(sql);
        fs::remove(file);
        changeBackup(sql);
        expectRefused("is damaged");
    }
}

TEST_F(Backups, WithPicturesThatLeadElsewhereAreRefused)
{
    const std::string tooLong = std::string(88, 'n') + ".png";
    for (const std::string name :
         {"../evil.png", "pictures/../evil.png", "pictures/a/b.png", "/etc/passwd", "pictures/",
          "pictures/..", "pictures/.profile", "pictures/evil.sh", "evil.png", ""}) {
        SCOPED_TRACE(name);
        fs::remove(file);
        changeBackup("INSERT INTO sqlar VALUES('" + name + "', 33188, 0, 1, x'00')");
        expectRefused("a picture with an impossible name");
    }
    fs::remove(file);
    changeBackup("INSERT INTO sqlar VALUES('pictures/" + tooLong + "', 33188, 0, 1, x'00')");
    expectRefused("a picture with an impossible name");
}

TEST_F(Backups, WithPicturesThatAreCutOffOrTooLargeAreRefused)
{
    changeBackup("INSERT INTO sqlar VALUES('pictures/a.png', 33188, 0, 100, x'00')");
    expectRefused("cut off or too large");
    fs::remove(file);
    changeBackup("INSERT INTO sqlar VALUES('pictures/a.png', 33188, 0, 17000000, zeroblob(17000000))");
    expectRefused("cut off or too large");
}

TEST_F(Backups, ThatWereCutOffOrOverwrittenAreRefused)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    const auto whole = contentOf(file);
    writeFile(file, whole.substr(0, whole.size() / 2));
    expectRefused("is damaged");
    auto bytes = whole;
    for (std::size_t at = 4096; at < bytes.size(); at += 7)
        bytes[at] = static_cast<char>(bytes[at] ^ 0x5a);
    writeFile(file, bytes);
    expectRefused("is damaged");
}

// Whatever byte of a backup is wrong, it is restored or refused, and nothing crashes.
TEST_F(Backups, WithAnyWrongByteDoNoHarm)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    const auto whole = contentOf(file);
    for (std::size_t at = 0; at < whole.size(); at += 509) {
        SCOPED_TRACE(at);
        auto bytes = whole;
        bytes[at] = static_cast<char>(bytes[at] ^ 0xff);
        writeFile(file, bytes);
        Book other;
        const int code = restore(other);
        EXPECT_TRUE(code == 0 || !errors.empty());
        EXPECT_EQ(ContactStore(other.file(), "en").problem(), ContactStore::Problem::None);
    }
}

TEST_F(Backups, WithRowsThatNoTelephoneWroteAreMadeFit)
{
    changeBackup("INSERT INTO contacts(id, surname) VALUES('a<b', CAST(x'4DFF' AS TEXT)), (NULL, x'58'), "
                 "('same', printf('%.*c', 200, 'n'));"
                 "INSERT INTO groups VALUES(-3, 'minus'), (2000000000, 'far'), (2, NULL);"
                 "INSERT INTO options VALUES('Other', 'x'), (NULL, NULL);"
                 "UPDATE contacts SET slot = 'three', default_number = 1e300");
    Book other;
    ASSERT_EQ(restore(other), 0) << errors;
    const auto content = other.content();
    EXPECT_EQ(content.groups, (std::vector<std::string>{"Work", "", "Family"}));
    ASSERT_EQ(content.contacts.size(), 6U);
    EXPECT_EQ(content.contacts.count("M\ufffd, "), 1U);
    EXPECT_EQ(content.contacts.count(std::string(30, 'n') + ", "), 1U);
}

// Each write of a restore finds the disk full in turn, the disk fails for good, or it cannot be synced:
// afterwards the telephone has the old phonebook or the new one, and success means the new one.
TEST_F(Backups, AreRestoredWholeOrNotAtAll)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    for (const auto& [what, error] :
         {std::pair{FailingDisk::What::Write, ENOSPC}, std::pair{FailingDisk::What::Write, EIO},
          std::pair{FailingDisk::What::Sync, EIO}}) {
        bool failed = true;
        for (int nth = 1; failed; ++nth) {
            SCOPED_TRACE(testing::Message() << "error " << error << " at " << nth);
            ASSERT_LT(nth, 300);
            Book other;
            other.add("Old", "Friend");
            other.draw("jane.png", "somebody else");
            const auto before = other.content();
            int code = 0;
            {
                const FailingDisk disk(what, nth, error);
                code = restore(other);
                failed = disk.hasFailed();
            }
            const bool outcomeIsOpen = error == EIO && code != 0;
            const auto after = other.content();
            EXPECT_TRUE(after == (code == 0 ? book.content() : before) ||
                        (outcomeIsOpen && after == book.content()))
                << after;
            EXPECT_TRUE(other.filesLike(".part").empty());
            const auto kept = other.filesLike(".backup");
            EXPECT_TRUE(kept.empty() || (said + errors).find(kept.back().string()) != std::string::npos);
        }
    }
}

TEST_F(Backups, CannotBeRestoredIntoWhatCannotBeWritten)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    Book other;
    other.add("Old", "Friend");
    const auto before = other.content();
    fs::permissions(file, fs::perms(0644));
    fs::permissions(elsewhere.path(), fs::perms(0755));
    fs::permissions(other.file(), fs::perms(0444));
    fs::permissions(other.folder(), fs::perms(0555));
    {
        const AsOrdinaryUser user;
        EXPECT_EQ(restore(other), 1);
        EXPECT_NE(errors.find("read-only"), std::string::npos) << errors;
    }
    fs::permissions(other.folder(), fs::perms(0755));
    EXPECT_EQ(other.content(), before);
}

TEST_F(Backups, AreRestoredUnderAnotherProgramsOpenBook)
{
    book.fill();
    ASSERT_EQ(backup(book, file), 0);
    Book other;
    other.add("Old", "Friend");
    ContactStore running(other.file(), "sv");
    EXPECT_FALSE(running.changedByOthers());

    ASSERT_EQ(restore(other), 0);
    EXPECT_TRUE(running.changedByOthers());
    EXPECT_TRUE(running.takeReplaced());
    EXPECT_EQ(running.fileState(), ContactStore::FileState::Same);
    EXPECT_EQ(running.groupNames(3).value(), book.content().groups);
    Contact further;
    further.surname = "Further";
    ASSERT_TRUE(running.write(further).ok());
    EXPECT_EQ(other.content().contacts.size(), 4U);
    EXPECT_FALSE(running.changedByOthers());
    EXPECT_FALSE(running.takeReplaced());
}

// A file that this very version wrote, kept for the versions to come.
TEST_F(Backups, OfTheFirstVersionCanBeRestored)
{
    ASSERT_EQ(restore(book, fs::path(SOURCE_DIR) / "tests" / "data" / "first-version.backup"), 0) << errors;
    EXPECT_EQ(said, "Restored 2 contacts, 1 group, 1 picture.\n");
    const auto content = book.content();
    EXPECT_EQ(content.contacts.count("Doe, Jane"), 1U);
    EXPECT_EQ(content.groups, (std::vector<std::string>{"", "Family", ""}));
    EXPECT_EQ(content.nameFormat, 1);
}

} // namespace
