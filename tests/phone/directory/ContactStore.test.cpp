#include "directory/ContactStore.h"

#include <cerrno>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "StoreTesting.h"

namespace {

class Store : public testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path file = folder / "contacts.db";
    std::unique_ptr<ContactStore> store = std::make_unique<ContactStore>(file, "en");

    void restart(const std::string& language = "en")
    {
        store.reset();
        store = std::make_unique<ContactStore>(file, language);
    }

    static Contact person(const std::string& surname, const std::string& firstname)
    {
        Contact contact;
        contact.surname = surname;
        contact.firstname = firstname;
        return contact;
    }

    std::string add(const std::string& surname, const std::string& firstname = "")
    {
        const auto id = store->write(person(surname, firstname));
        EXPECT_TRUE(id.ok());
        return id.value();
    }

    // Surnames in the order of the list, separated by blanks.
    std::string surnames(std::optional<int> group = std::nullopt)
    {
        const auto list = store->listText(group).value();
        std::string names;
        for (std::size_t start = 0; list != "empty" && start < list.size();) {
            const auto end = std::min(list.find('\n', start), list.size());
            const auto tab = list.find('\t', start) + 1;
            names += (names.empty() ? "" : " ") + list.substr(tab, list.find('\t', tab) - tab);
            start = end + 1;
        }
        return names;
    }

    void nameGroups(const std::vector<std::string>& names)
    {
        EXPECT_TRUE(store->writeGroupNames(names).ok());
    }

    std::optional<Contact> read(const std::string& id) { return store->read(id).value(); }

    std::string everything()
    {
        std::string text = testing::PrintToString(store->groupNames(2).value());
        (void)store->forEach([&](const Contact& contact, const KeptCard&) {
            text += contact.id + contact.surname + std::to_string(contact.group) + "\n";
            return true;
        });
        return text + std::to_string(store->readOption("DisplayOptions").value());
    }

    template <typename T> static Result<void> toVoid(const Result<T>& result)
    {
        return result ? Result<void>() : Result<void>(result.error());
    }
};

TEST_F(Store, StartsEmptyInAFileForItsOwnerOnly)
{
    EXPECT_EQ(store->state(), ContactStore::State::Ready);
    EXPECT_EQ(store->notice(), "");
    EXPECT_EQ(store->listText(std::nullopt).value(), "empty");
    EXPECT_EQ(std::filesystem::status(file).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(Store, KeepsEveryFieldOverARestart)
{
    nameGroups({"", "", "Family"});
    Contact contact{
        "",        "Doe",    "Jane", "1",         "2",        "3",     "4", "j@d.org",
        "Doe Ltd", "Road 1", "Town", "Carpenter", "jane.png", "ext-7", 3,   DefaultNumber::Mobile};
    contact.id = store->write(contact).value();
    restart();
    EXPECT_EQ(read(contact.id), contact);
}

TEST_F(Store, GivesShortIdsThatNeverComeAgain)
{
    std::set<std::string> ids;
    for (int i = 0; i < 1000; ++i)
        ids.insert(ContactStore::newId());
    EXPECT_EQ(ids.size(), 1000u);
    EXPECT_LE(ids.begin()->size(), 15u);
}

TEST_F(Store, ChangesAContactUnderItsId)
{
    const auto id = add("Miller", "Ann");
    auto contact = *read(id);
    contact.firstname = "Anna";
    EXPECT_EQ(store->write(contact).value(), id);
    EXPECT_EQ(store->listText(std::nullopt).value(), id + "\tMiller\tAnna\t0");
}

TEST_F(Store, WritesAContactThatWasDeletedMeanwhileAgainUnderItsId)
{
    const auto id = add("Miller");
    auto contact = *read(id);
    ASSERT_TRUE(store->erase(id).ok());
    EXPECT_EQ(store->write(contact).value(), id);
    EXPECT_EQ(surnames(), "Miller");
}

TEST_F(Store, DeletesWhatIsGoneAlreadyWithoutComplaint)
{
    EXPECT_TRUE(store->erase("nobody").ok());
    EXPECT_EQ(read("nobody"), std::nullopt);
}

TEST_F(Store, ListsNamesInTheOrderOfTheLanguage)
{
    for (const char* name : {"Zander", "\u00d6ster", "Oster", "abel", "Olsen"})
        add(name);
    EXPECT_EQ(surnames(), "abel Olsen Oster \u00d6ster Zander");
    restart("sv");
    EXPECT_EQ(surnames(), "abel Olsen Oster Zander \u00d6ster");
    ASSERT_TRUE(store->setLanguage("de").ok());
    EXPECT_EQ(surnames(), "abel Olsen Oster \u00d6ster Zander");
}

TEST_F(Store, KeepsTheOrderThatTheFileHasForWhoNamesNoLanguage)
{
    restart("sv");
    restart("");
    add("\u00d6ster");
    add("Zander");
    EXPECT_EQ(surnames(), "Zander \u00d6ster");
}

TEST_F(Store, ComposesTextAndDropsWhatNoLineOfTextHolds)
{
    auto contact = person("Mu\u0308ller", "A\tB\nC");
    contact.email = std::string("x\x01\x7f\u202e") + "\xff" + "y";
    const auto id = store->write(contact).value();
    EXPECT_EQ(read(id)->surname, "M\u00fcller");
    EXPECT_EQ(read(id)->firstname, "A B C");
    EXPECT_EQ(read(id)->email, "x\ufffdy");
}

TEST_F(Store, ShowsCleanTextEvenWhenAnotherProgramWroteAnythingElse)
{
    const auto id = add("Miller");
    Database other(file, Database::Mode::ReadWrite);
    other.execute(
        "UPDATE contacts SET surname = CAST(x'4D09FF0A69' AS TEXT), slot = 77, default_number = 99");
    EXPECT_EQ(store->listText(std::nullopt).value(), id + "\tM \ufffd i\t\t0");
    EXPECT_EQ(read(id)->surname, "M \ufffd i");
    EXPECT_EQ(read(id)->group, 0);
    EXPECT_EQ(read(id)->defaultNumber, DefaultNumber::None);
}

TEST_F(Store, HoldsTextsToTheirLimitsWhateverAnotherProgramWrote)
{
    const auto id = add("Miller");
    Database other(file, Database::Mode::ReadWrite);
    other.execute("UPDATE contacts SET surname = printf('%.*c', 10000000, 'n'), firstname = 'J\u00f6rg', "
                  "company = printf('%.*c', 41, 'c'), picture = printf('%.*c', 92, 'p')");
    EXPECT_EQ(store->listText(std::nullopt).value(), id + "\t" + std::string(30, 'n') + "\tJ\u00f6rg\t0");
    const auto contact = *read(id);
    EXPECT_EQ(contact.surname, std::string(30, 'n'));
    EXPECT_EQ(contact.company, std::string(40, 'c'));
    EXPECT_EQ(contact.picture, std::string(91, 'p'));
    EXPECT_EQ(store->write(contact).value(), id);
    EXPECT_EQ(other.queryNumber("SELECT length(surname) FROM contacts"), 30);
}

TEST_F(Store, TakesValuesOfOtherTypesForWhatTheyCanMean)
{
    const auto id = add("Miller");
    Database other(file, Database::Mode::ReadWrite);
    other.execute("UPDATE contacts SET surname = 4711, firstname = x'c3bc', office = 3.5, slot = 'three', "
                  "default_number = 'four', name_key = 'no key'");
    other.execute("INSERT INTO options VALUES('DisplayOptions', 'x')");
    EXPECT_EQ(store->listText(std::nullopt).value(), id + "\t4711\t\u00fc\t0");
    const auto contact = *read(id);
    EXPECT_EQ(contact.office, "3.5");
    EXPECT_EQ(contact.group, 0);
    EXPECT_EQ(contact.defaultNumber, DefaultNumber::None);
    EXPECT_EQ(store->readOption("DisplayOptions").value(), 0);
}

TEST_F(Store, GivesContactsNewIdsThatCameWithImpossibleOnes)
{
    const auto good = add("Good");
    {
        Database other(file, Database::Mode::ReadWrite);
        other.execute(
            "INSERT INTO contacts SELECT '', 'Empty', '', '', '', '', '', '', '', '', '', '', '', '', "
            "NULL, 0, x'00'");
        other.execute(
            "INSERT INTO contacts SELECT x'41', 'Blob', '', '', '', '', '', '', '', '', '', '', '', "
            "'', NULL, 0, x'00'");
        other.execute(
            "INSERT INTO contacts SELECT 'a' || char(9) || '<b', 'Tab', '', '', '', '', '', '', '', "
            "'', '', '', '', '', NULL, 0, x'00'");
        other.execute("INSERT INTO cards SELECT 'a' || char(9) || '<b', 'uid', 1, 'card', ''");
    }
    EXPECT_TRUE(store->changedByOthers());
    std::istringstream lines(store->listText(std::nullopt).value());
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        const auto contact = read(line.substr(0, line.find('\t')));
        ASSERT_TRUE(contact) << line;
        names.insert(contact->surname);
    }
    EXPECT_EQ(names, (std::set<std::string>{"Blob", "Empty", "Good", "Tab"}));
    EXPECT_NE(read(good), std::nullopt);
    EXPECT_FALSE(store->changedByOthers());
    bool cardKept = false;
    (void)store->forEach([&](const Contact& contact, const KeptCard& card) {
        cardKept = cardKept || (contact.surname == "Tab" && card.card == "card");
        return true;
    });
    EXPECT_TRUE(cardKept);
}

TEST_F(Store, TakesGroupNumbersThatNameNoGroupForNone)
{
    nameGroups({"Work"});
    const auto id = add("Miller");
    Database other(file, Database::Mode::ReadWrite);
    for (const auto* slot : {"77", "-1", "1001", "3000000000", "'x'", "NULL"}) {
        SCOPED_TRACE(slot);
        other.execute("INSERT OR IGNORE INTO groups VALUES(1001, 'far'), (3000000000, 'further')");
        other.execute(std::string("UPDATE contacts SET slot = ") + slot);
        EXPECT_EQ(read(id)->group, 0);
        EXPECT_EQ(surnames(0), "Miller");
        EXPECT_EQ(surnames(1), "");
        EXPECT_EQ(store->groupNames(2).value(), (std::vector<std::string>{"Work", ""}));
    }
    ASSERT_TRUE(store->eraseAll(0).ok());
    EXPECT_EQ(surnames(), "");
}

TEST_F(Store, NamesAGroupWhoseNameCannotBeRead)
{
    Database(file, Database::Mode::ReadWrite).execute("INSERT INTO groups VALUES(1, char(7)), (2, x'')");
    EXPECT_EQ(store->groupNames(3).value(), (std::vector<std::string>{"\ufffd", "\ufffd", ""}));
}

TEST_F(Store, CutsTheNamesOfGroups)
{
    nameGroups({std::string(40, 'g')});
    EXPECT_EQ(store->groupNames(1).value().front(), std::string(30, 'g'));
}

// Another program deletes a group without the database's help: its members are not those of the next.
TEST_F(Store, GivesANewGroupNoMembersThatAnotherProgramLeftBehind)
{
    nameGroups({"Work"});
    auto contact = person("Miller", "");
    contact.group = 1;
    ASSERT_TRUE(store->write(contact).ok());
    Database(file, Database::Mode::ReadWrite).execute("PRAGMA foreign_keys = OFF; DELETE FROM groups");
    nameGroups({"Club"});
    EXPECT_EQ(surnames(1), "");
    EXPECT_EQ(surnames(0), "Miller");
}

TEST_F(Store, WritesOnlyTheGroupsThatWereChanged)
{
    nameGroups({"Work", "", ""});
    ContactStore other(file, "");
    ASSERT_TRUE(other.writeGroupNames({"Work", "Club", ""}).ok());
    ASSERT_TRUE(store->writeGroupNames({"Office", "", "Choir"}, {"Work", "", ""}).ok());
    EXPECT_EQ(store->groupNames(3).value(), (std::vector<std::string>{"Office", "Club", "Choir"}));
}

TEST_F(Store, RefusesToGiveAGroupAnotherNameThanSomebodyElseJustDid)
{
    nameGroups({"Work", ""});
    ContactStore other(file, "");
    ASSERT_TRUE(other.writeGroupNames({"Work", "Club"}).ok());
    const auto outcome = store->writeGroupNames({"Office", "Choir"}, {"Work", ""});
    ASSERT_FALSE(outcome.ok());
    EXPECT_EQ(outcome.error().code, ErrorCode::Unavailable);
    EXPECT_EQ(store->groupNames(2).value(), (std::vector<std::string>{"Work", "Club"}));
    EXPECT_TRUE(store->writeGroupNames({"Work", "Club"}, {"Work", ""}).ok());
}

TEST_F(Store, KeepsWhatWasSavedLastWhenTwoProgramsSaveOneContact)
{
    const auto id = add("Miller", "Ann");
    ContactStore other(file, "");
    auto mine = *read(id);
    auto theirs = *read(id);
    mine.firstname = "Anna";
    theirs.firstname = "Anne";
    ASSERT_TRUE(other.write(theirs).ok());
    ASSERT_TRUE(store->write(mine).ok());
    EXPECT_EQ(other.listText(std::nullopt).value(), id + "\tMiller\tAnna\t0");
    EXPECT_TRUE(other.changedByOthers());
    EXPECT_TRUE(store->changedByOthers());
}

TEST_F(Store, SaysThatAnotherProgramWritesAndSavesLater)
{
    const auto id = add("Miller");
    ContactStore other(file, "");
    const ImpatientSqlite impatient;
    {
        const Transaction theirs(*other.database());
        const auto saved = store->write(person("Baker", ""));
        ASSERT_FALSE(saved.ok());
        EXPECT_EQ(saved.error().code, ErrorCode::Unavailable);
        EXPECT_EQ(store->erase(id).error().code, ErrorCode::Unavailable);
        EXPECT_EQ(store->writeOption("DisplayOptions", 1).error().code, ErrorCode::Unavailable);
        EXPECT_EQ(store->reassignGroup(1, 0).error().code, ErrorCode::Unavailable);
        EXPECT_EQ(surnames(), "Miller");
    }
    add("Baker");
    EXPECT_EQ(surnames(), "Baker Miller");
}

TEST_F(Store, DeletesTheContactsOfOneGroupOrOfNone)
{
    nameGroups({"Work"});
    auto worker = person("Worker", "");
    worker.group = 1;
    ASSERT_TRUE(store->write(worker).ok());
    add("Loner");
    EXPECT_EQ(surnames(1), "Worker");
    EXPECT_EQ(surnames(0), "Loner");
    ASSERT_TRUE(store->eraseAll(0).ok());
    EXPECT_EQ(surnames(), "Worker");
    ASSERT_TRUE(store->eraseAll(1).ok());
    EXPECT_EQ(surnames(), "");
}

TEST_F(Store, DeletesAll)
{
    add("One");
    add("Two");
    ASSERT_TRUE(store->eraseAll(std::nullopt).ok());
    EXPECT_EQ(store->listText(std::nullopt).value(), "empty");
}

TEST_F(Store, TakesAGroupWithoutANameForNone)
{
    auto contact = person("Miller", "");
    contact.group = 5;
    EXPECT_EQ(read(store->write(contact).value())->group, 0);
}

TEST_F(Store, LeavesTheMembersOfAGroupThatBecomesSpareWithoutOne)
{
    nameGroups({"Work", "Club"});
    auto contact = person("Miller", "");
    contact.group = 2;
    const auto id = store->write(contact).value();
    ASSERT_TRUE(store->writeGroupNames({"Work", ""}).ok());
    EXPECT_EQ(read(id)->group, 0);
    ASSERT_TRUE(store->writeGroupNames({"Work", "Choir"}).ok());
    EXPECT_EQ(read(id)->group, 0);
}

TEST_F(Store, MovesTheMembersOfAGroup)
{
    nameGroups({"Work", "Club"});
    auto contact = person("Miller", "");
    contact.group = 1;
    const auto id = store->write(contact).value();
    ASSERT_TRUE(store->reassignGroup(1, 2).ok());
    EXPECT_EQ(read(id)->group, 2);
    ASSERT_TRUE(store->reassignGroup(2, 0).ok());
    EXPECT_EQ(read(id)->group, 0);
    EXPECT_EQ(store->groupNames(4).value(), (std::vector<std::string>{"Work", "Club", "", ""}));
}

TEST_F(Store, KeepsOptions)
{
    EXPECT_EQ(store->readOption("DisplayOptions").value(), 0);
    ASSERT_TRUE(store->writeOption("DisplayOptions", 3).ok());
    restart();
    EXPECT_EQ(store->readOption("DisplayOptions").value(), 3);
}

TEST_F(Store, RefusesToGrowOnAFullDiskAndLosesNothing)
{
    const auto id = add("Miller");
    {
        const FailingDisk disk(FailingDisk::What::Write, 1, ENOSPC);
        const auto outcome = store->write(person("Baker", ""));
        ASSERT_FALSE(outcome.ok());
        EXPECT_EQ(outcome.error().code, ErrorCode::Full);
        EXPECT_EQ(surnames(), "Miller");
    }
    add("Baker");
    restart();
    EXPECT_EQ(surnames(), "Baker Miller");
    EXPECT_NE(read(id), std::nullopt);
}

// Whatever changes the book finds the disk full at each of its writes in turn: nothing is changed, the
// answer says why, and once there is space the same succeeds.
TEST_F(Store, ChangesNothingOnAFullDiskWhateverIsChanged)
{
    nameGroups({"Work", "Club"});
    auto member = person("Member", "");
    member.group = 1;
    const auto id = store->write(member).value();
    const auto changes = std::map<std::string, std::function<Result<void>()>>{
        {"add", [&] { return toVoid(store->write(person("New", ""))); }},
        {"change", [&] { return toVoid(store->write(*read(id))); }},
        {"erase", [&] { return store->erase(id); }},
        {"erase all", [&] { return store->eraseAll(std::nullopt); }},
        {"option", [&] { return store->writeOption("DisplayOptions", 2); }},
        {"groups",
         [&] {
             return store->writeGroupNames({"", "Choir"});
         }},
        {"reassign", [&] { return store->reassignGroup(1, 2); }},
    };
    for (const auto& [what, change] : changes) {
        for (int nth = 1;; ++nth) {
            SCOPED_TRACE(what + " " + std::to_string(nth));
            const auto before = everything();
            const FailingDisk disk(FailingDisk::What::Write, nth, ENOSPC, FailingDisk::How::Once);
            const auto outcome = change();
            if (!disk.hasFailed()) {
                EXPECT_TRUE(outcome.ok());
                break;
            }
            ASSERT_FALSE(outcome.ok());
            EXPECT_EQ(outcome.error().code, ErrorCode::Full);
            EXPECT_EQ(everything(), before);
            ASSERT_LT(nth, 50);
        }
    }
}

// Each write of a save fails in turn, for good: the contact is then there as a whole, or not at all,
// and the answer says which.
TEST_F(Store, TellsTheTruthWhicheverWriteFails)
{
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        const auto before = surnames();
        bool failed = false;
        bool saved = false;
        {
            const FailingDisk disk(FailingDisk::What::Write, nth, EIO);
            saved = store->write(person("N" + std::to_string(nth), "")).ok();
            failed = disk.hasFailed();
        }
        restart();
        ASSERT_EQ(store->state(), ContactStore::State::Ready);
        EXPECT_EQ(surnames() != before, saved);
        if (!failed)
            break;
        ASSERT_LT(nth, 100);
    }
}

TEST_F(Store, TriesAgainWhenTheDiskFailedOnce)
{
    for (const auto what : {FailingDisk::What::Write, FailingDisk::What::Sync}) {
        const FailingDisk disk(what, 1, EIO, FailingDisk::How::Once);
        const auto id = store->write(person("Miller", ""));
        EXPECT_TRUE(id.ok());
        EXPECT_TRUE(disk.hasFailed());
        EXPECT_EQ(surnames(), "Miller");
        EXPECT_TRUE(store->erase(id.value()).ok());
    }
}

// The change may be in the file although the disk said it is not: it must not be there twice.
TEST_F(Store, FindsAChangeThatWasReportedAsFailed)
{
    {
        const FailingDisk disk(FailingDisk::What::Sync, 1, EIO);
        (void)store->write(person("Miller", ""));
        EXPECT_TRUE(disk.hasFailed());
    }
    if (surnames().empty())
        add("Miller");
    restart();
    EXPECT_EQ(surnames(), "Miller");
}

TEST_F(Store, NoticesOnlyTheChangesOfOthers)
{
    add("Own");
    EXPECT_TRUE(store->writeOption("DisplayOptions", 1).ok());
    EXPECT_FALSE(store->changedByOthers());
    ContactStore other(file, "");
    ASSERT_TRUE(other.write(person("Foreign", "")).ok());
    EXPECT_TRUE(store->changedByOthers());
    EXPECT_FALSE(store->changedByOthers());
    EXPECT_EQ(surnames(), "Foreign Own");
}

TEST_F(Store, ReadsTheNewFileWhenItWasReplaced)
{
    add("Old");
    TemporaryFolder elsewhere;
    {
        ContactStore restored(elsewhere / "contacts.db", "en");
        ASSERT_TRUE(restored.write(person("New", "")).ok());
    }
    EXPECT_EQ(store->fileState(), ContactStore::FileState::Same);
    std::filesystem::copy_file(elsewhere / "contacts.db", folder / "incoming");
    std::filesystem::rename(folder / "incoming", file);
    EXPECT_EQ(store->fileState(), ContactStore::FileState::Replaced);
    store->reopen();
    EXPECT_TRUE(store->takeReplaced());
    EXPECT_FALSE(store->takeReplaced());
    EXPECT_EQ(surnames(), "New");
    restart();
    EXPECT_EQ(surnames(), "New");
}

TEST_F(Store, WritesUnderItsNameWhenTheFileWasTakenAway)
{
    add("Old");
    std::filesystem::remove(file);
    EXPECT_EQ(store->fileState(), ContactStore::FileState::Missing);
    EXPECT_EQ(surnames(), "Old");
    add("New");
    EXPECT_TRUE(store->takeReplaced());
    restart();
    EXPECT_EQ(surnames(), "New");
}

} // namespace
