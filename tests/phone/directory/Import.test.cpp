#include <algorithm>
#include <cerrno>
#include <sstream>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <framework/services/DirectoryServiceObserverIfc.h>

#include "StoreTesting.h"
#include "app/EventThread.h"
#include "directory/ChildProgram.h"
#include "directory/DirectoryService.h"
#include "directory/ExportCommand.h"
#include "directory/ImportCommand.h"
#include "directory/Importer.h"
#include "pictures/ClipFolder.h"

namespace {

// The smallest picture that a phone would show: one pixel.
const std::string nPIXEL =
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAQAAAC1HAwCAAAAC0lEQVR42mNk+A8AAQUBAScY42YAAAAASUVORK5CYII=";

std::string card(const std::string& lines)
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\n" + lines + "END:VCARD\r\n";
}

const std::string nANN =
    card("N:Miller;Ann;;;\r\nFN:Ann Miller\r\nTEL;TYPE=WORK:030 1\r\nUID:ann\r\nANNIVERSARY:20000101\r\n");
const std::string nBOB = card("N:Baker;Bob;;;\r\nFN:Bob Baker\r\nTEL;TYPE=CELL:0171 2\r\n");

class Phonebook {
public:
    int import(const std::string& cards, bool dryRun = false)
    {
        writeFile(folder / "in.vcf", cards);
        ImportOptions options;
        options.file = folder / "in.vcf";
        options.profile = folder.path();
        options.dryRun = dryRun;
        options.groupSlots = groupSlots;
        options.ownGroup = ownGroup;
        out.str("");
        errors.str("");
        return runImport(options, out, errors);
    }
    // What the import says of itself last.
    std::string summary(const std::string& cards, bool dryRun = false)
    {
        EXPECT_EQ(import(cards, dryRun), 0) << errors.str();
        auto text = out.str();
        text.pop_back();
        return text.substr(text.rfind('\n') + 1);
    }
    bool says(const std::string& text) const { return out.str().find(text) != std::string::npos; }

    std::vector<Contact> contacts()
    {
        std::vector<Contact> all;
        ContactStore store(DirectoryService::fileIn(folder.path()), "");
        EXPECT_TRUE(store
                        .forEach([&](const Contact& contact, const KeptCard&) {
                            all.push_back(contact);
                            return true;
                        })
                        .ok());
        return all;
    }
    std::string names()
    {
        std::string names;
        for (const auto& contact : contacts())
            names += (names.empty() ? "" : " ") + contact.surname;
        return names;
    }
    void edit(const std::function<void(Contact&)>& change, std::size_t index = 0)
    {
        auto contact = contacts().at(index);
        change(contact);
        ContactStore store(DirectoryService::fileIn(folder.path()), "");
        ASSERT_TRUE(store.write(contact).ok());
    }
    std::string exported(const std::string& version = "3.0")
    {
        ExportOptions options;
        options.file = folder / "out.vcf";
        options.profile = folder.path();
        options.version = version;
        options.ownGroup = ownGroup;
        EXPECT_EQ(runExport(options, out, errors), 0) << errors.str();
        return contentOf(options.file);
    }

    TemporaryFolder folder;
    int groupSlots = 20;
    OwnGroup ownGroup;
    std::ostringstream out;
    std::ostringstream errors;
};

class Import : public testing::Test, protected Phonebook {};

TEST_F(Import, StoresNewContacts)
{
    EXPECT_EQ(summary(nANN + nBOB), "Imported: 2 new, 0 changed, 0 duplicate, 0 invalid.");
    const auto all = contacts();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0].surname, "Baker");
    EXPECT_EQ(all[0].defaultNumber, DefaultNumber::Mobile);
    EXPECT_EQ(all[1].surname, "Miller");
    EXPECT_EQ(all[1].office, "030 1");
    EXPECT_EQ(all[1].defaultNumber, DefaultNumber::Office);
}

TEST_F(Import, OfTheSameFileAgainChangesNothing)
{
    import(nANN + nBOB);
    const auto before = contacts();
    EXPECT_EQ(summary(nANN + nBOB), "Imported: 0 new, 0 changed, 2 duplicate, 0 invalid.");
    EXPECT_EQ(contacts(), before);
}

TEST_F(Import, OfTheSameFileAgainKeepsWhatTheUserChanged)
{
    import(nANN);
    edit([](Contact& contact) { contact.surname = "Smith"; });
    EXPECT_EQ(summary(nANN), "Imported: 0 new, 0 changed, 1 duplicate, 0 invalid.");
    EXPECT_EQ(names(), "Smith");
}

TEST_F(Import, BringsBackAContactWhoseCardAnotherProgramLeftBehind)
{
    import(nANN);
    Database(DirectoryService::fileIn(folder.path()), Database::Mode::ReadWrite)
        .execute("PRAGMA foreign_keys = OFF; DELETE FROM contacts");
    EXPECT_EQ(summary(nANN), "Imported: 1 new, 0 changed, 0 duplicate, 0 invalid.");
    EXPECT_EQ(names(), "Miller");
}

TEST_F(Import, RehearsesWithoutChangingAnything)
{
    import(nANN);
    const auto moved =
        card("N:Miller;Ann;;;\r\nFN:Ann Miller\r\nTEL;TYPE=WORK:030 99\r\nUID:ann\r\nNICKNAME:Annie\r\n");
    EXPECT_EQ(summary(moved + nBOB + nBOB + card("NOTE:nobody\r\n"), true),
              "Would import: 1 new, 1 changed, 1 duplicate, 1 invalid.");
    EXPECT_TRUE(says("changed  line 1: Miller, Ann  (office)"));
    EXPECT_TRUE(says("    kept, not shown: NICKNAME"));
    EXPECT_TRUE(says("new  line 9: Baker, Bob\n"));
    EXPECT_TRUE(says("duplicate  line 15: Baker, Bob  (it is in the file already)"));
    EXPECT_TRUE(says("invalid  line 21  (the card has neither name"));
    EXPECT_EQ(names(), "Miller");
    EXPECT_EQ(contacts().front().office, "030 1");
}

TEST_F(Import, ChangesTheContactWithItsUid)
{
    import(nANN);
    const auto id = contacts().front().id;
    EXPECT_EQ(summary(card("N:Smith;Ann;;;\r\nTEL;TYPE=WORK:030 1\r\nUID:ann\r\n")),
              "Imported: 0 new, 1 changed, 0 duplicate, 0 invalid.");
    ASSERT_EQ(contacts().size(), 1u);
    EXPECT_EQ(contacts().front().id, id);
    EXPECT_EQ(contacts().front().surname, "Smith");
}

TEST_F(Import, ChangesTheContactOfThatNameAndNumber)
{
    import(nBOB);
    EXPECT_EQ(summary(card("N:Baker;Bob;;;\r\nTEL;TYPE=WORK:(0171) 2\r\nEMAIL:b@b\r\n")),
              "Imported: 0 new, 1 changed, 0 duplicate, 0 invalid.");
    EXPECT_EQ(contacts().size(), 1u);
    EXPECT_EQ(summary(card("N:Baker;Bob;;;\r\nTEL;TYPE=WORK:555\r\n")),
              "Imported: 1 new, 0 changed, 0 duplicate, 0 invalid.");
}

TEST_F(Import, TakesAnotherUidForAnotherPerson)
{
    import(nANN);
    EXPECT_EQ(summary(card("N:Miller;Ann;;;\r\nTEL;TYPE=WORK:030 1\r\nUID:other\r\n")),
              "Imported: 1 new, 0 changed, 0 duplicate, 0 invalid.");
}

TEST_F(Import, LosesNoCardOfAFileToAnotherOne)
{
    const auto alike = card("N:Baker;Bob;;;\r\nTEL;TYPE=CELL:0171 2\r\nEMAIL:b@b\r\n");
    EXPECT_EQ(summary(nBOB + alike), "Imported: 2 new, 0 changed, 0 duplicate, 0 invalid.");
    EXPECT_EQ(summary(nBOB + alike), "Imported: 0 new, 0 changed, 2 duplicate, 0 invalid.");
    EXPECT_EQ(summary(alike + nBOB), "Imported: 0 new, 0 changed, 2 duplicate, 0 invalid.");
}

TEST_F(Import, LeavesWhatTheCardSaysNothingOf)
{
    import(nANN);
    ASSERT_EQ(import(card("N:X;Y;;;\r\nTEL:1\r\nCATEGORIES:Club\r\n")), 0);
    edit([](Contact& contact) {
        contact.group = 1;
        contact.picture = "mine.png";
        contact.externalId = "7";
    });
    import(card("N:Miller;Ann;;;\r\nTEL;TYPE=WORK:030 1\r\nUID:ann\r\nEMAIL:a@a\r\n"));
    const auto ann = contacts().front();
    EXPECT_EQ(ann.email, "a@a");
    EXPECT_EQ(ann.group, 1);
    EXPECT_EQ(ann.picture, "mine.png");
    EXPECT_EQ(ann.externalId, "7");
}

TEST_F(Import, MakesGroupsUntilAllAreTaken)
{
    groupSlots = 1;
    import(card("N:A;;;;\r\nTEL:1\r\nCATEGORIES:Work,Club\r\n") +
           card("N:B;;;;\r\nTEL:2\r\nCATEGORIES:Choir\r\n"));
    EXPECT_TRUE(says("there is no room for the group \"Choir\": all 1 groups are in use"));
    EXPECT_EQ(contacts().at(0).group, 1);
    EXPECT_EQ(contacts().at(1).group, 0);
    ContactStore store(DirectoryService::fileIn(folder.path()), "");
    EXPECT_EQ(store.groupNames(1).value(), std::vector<std::string>{"Work"});
}

TEST_F(Import, ExportsAGroupThatThereWasNoRoomFor)
{
    groupSlots = 1;
    const auto choir = card("N:B;;;;\r\nTEL:2\r\nCATEGORIES:Choir,Club\r\n");
    import(card("N:A;;;;\r\nTEL:1\r\nCATEGORIES:Work\r\n") + choir);
    EXPECT_NE(exported().find("CATEGORIES:Choir,Club\r\n"), std::string::npos);

    edit([](Contact& contact) { contact.group = 1; }, 1);
    EXPECT_NE(exported().find("CATEGORIES:Work,Choir,Club\r\n"), std::string::npos);
}

TEST_F(Import, NamesTheTelephonesOwnGroupToOthersAsItIsShown)
{
    ownGroup = OwnGroup("Kopierte Kontakte");
    import(card("N:A;;;;\r\nTEL:1\r\nCATEGORIES:Work\r\n"));
    {
        ContactStore store(DirectoryService::fileIn(folder.path()), "");
        ASSERT_TRUE(store.writeGroupNames({"Work", OwnGroup::nKEY}, {}).ok());
    }
    edit([](Contact& contact) { contact.group = 2; });
    const auto cards = exported();
    EXPECT_NE(cards.find("CATEGORIES:Kopierte Kontakte\r\n"), std::string::npos) << cards;

    Phonebook other;
    other.ownGroup = ownGroup;
    EXPECT_EQ(other.import(cards), 0);
    ContactStore store(DirectoryService::fileIn(other.folder.path()), "");
    EXPECT_EQ(store.groupNames(1).value(), std::vector<std::string>{OwnGroup::nKEY});
    EXPECT_EQ(other.exported(), cards);
}

TEST_F(Import, KeepsPicturesOnce)
{
    const auto photo = "PHOTO;ENCODING=b;TYPE=PNG:" + nPIXEL + "\r\n";
    import(card("N:A;;;;\r\nTEL:1\r\n" + photo) + card("N:B;;;;\r\nTEL:2\r\n" + photo));
    const auto name = contacts().front().picture;
    EXPECT_EQ(name.substr(name.size() - 4), ".png");
    EXPECT_EQ(contacts().back().picture, name);
    EXPECT_EQ(pictureMime(contentOf(folder / "pictures" / name)), "image/png");
    const std::filesystem::directory_iterator pictures(folder / "pictures");
    EXPECT_EQ(std::distance(begin(pictures), end(pictures)), 1);
}

TEST_F(Import, NamesPicturesAfterTheirContactsAndReplacesNone)
{
    const auto photo = "PHOTO;ENCODING=b;TYPE=PNG:" + nPIXEL + "\r\n";
    std::filesystem::create_directory(folder / "pictures");
    writeFile(folder / "pictures/Taken.png", "somebody else");
    import(card("N:A/C;Al.;;;\r\nTEL:1\r\n" + photo));
    EXPECT_EQ(contacts().at(0).picture, "A-C, Al..png");
    EXPECT_FALSE(contentOf(folder / "pictures/A-C, Al..png").empty());

    import(card("N:Taken;;;;\r\nTEL:1\r\n" + photo));
    const auto name = contacts().at(1).picture;
    EXPECT_EQ(name.size(), std::string("0123456789abcdef.png").size());
    EXPECT_EQ(contentOf(folder / "pictures" / name), contentOf(folder / "pictures/A-C, Al..png"));
    EXPECT_EQ(contentOf(folder / "pictures/Taken.png"), "somebody else");
}

TEST_F(Import, KeepsEveryPictureOfTheDemo)
{
    import(contentOf(std::filesystem::path(SOURCE_DIR) / "demo/contacts.vcf"));
    EXPECT_FALSE(says("picture is left out"));
    EXPECT_GE(ClipFolder(folder / "pictures").clips().size(), 20u);
}

TEST_F(Import, KeepsAContactWhosePictureCannotBeShown)
{
    const auto photo = [](const std::string& base64) { return "PHOTO;ENCODING=b:" + base64 + "\r\n"; };
    const auto cut = nPIXEL.substr(0, nPIXEL.size() / 2 / 4 * 4);
    import(card("N:Animated;;;;\r\nTEL:1\r\n" + photo("R0lGODlhAQABAAAAACw=")) +
           card("N:Cut;;;;\r\nTEL:2\r\n" + photo(cut)));

    EXPECT_EQ(names(), "Animated Cut");
    for (const auto& contact : contacts())
        EXPECT_EQ(contact.picture, "");
    EXPECT_TRUE(says("the picture is left out. It is neither PNG nor JPEG.")) << out.str();
    EXPECT_TRUE(says("the picture is left out. It is damaged.")) << out.str();
}

TEST_F(Import, CutsWhatIsTooLongAndExportsItWhole)
{
    const std::string name(40, 'x');
    import(card("N:" + name + ";;;;\r\nTEL:1\r\n"));
    EXPECT_TRUE(says("surname is cut to 30 characters"));
    EXPECT_EQ(contacts().front().surname, std::string(30, 'x'));
    EXPECT_NE(exported().find("N:" + name + ";"), std::string::npos);
    edit([](Contact& contact) { contact.surname = "Short"; });
    EXPECT_NE(exported().find("N:Short;"), std::string::npos);
}

TEST_F(Import, ComesBackFromAnExport)
{
    const auto photo = "PHOTO;ENCODING=b;TYPE=PNG:" + nPIXEL + "\r\n";
    import(nANN + nBOB + card("N:C;D;;;\r\nTEL;TYPE=HOME:3\r\nCATEGORIES:Work,Club\r\n" + photo));
    for (const char* version : {"2.1", "3.0", "4.0"}) {
        SCOPED_TRACE(version);
        const auto cards = exported(version);
        EXPECT_NE(cards.find("ANNIVERSARY"), std::string::npos);

        Phonebook other;
        EXPECT_EQ(other.summary(cards), "Imported: 3 new, 0 changed, 0 duplicate, 0 invalid.");
        auto mine = contacts();
        auto his = other.contacts();
        for (auto* all : {&mine, &his})
            std::for_each(all->begin(), all->end(), [](Contact& contact) { contact.id.clear(); });
        EXPECT_EQ(mine, his);
    }
}

TEST_F(Import, ExportsWhatTheUserChangedIntoTheCard)
{
    import(card("N:A;B;;;\r\nTEL;TYPE=WORK:1\r\nCATEGORIES:Work,Club\r\nX-ODD:kept\r\n"));
    edit([](Contact& contact) {
        contact.office = "2";
        contact.group = 0;
    });
    const auto cards = exported();
    EXPECT_NE(cards.find("TEL;TYPE=WORK:2"), std::string::npos);
    EXPECT_NE(cards.find("X-ODD:kept"), std::string::npos);
    EXPECT_NE(cards.find("CATEGORIES:Club"), std::string::npos);
}

TEST_F(Import, ExportsContactsThatWereMadeOnTheTelephone)
{
    ContactStore store(DirectoryService::fileIn(folder.path()), "en");
    Contact contact;
    contact.surname = "Doe; Sr.";
    contact.mobile = "0171";
    ASSERT_TRUE(store.write(contact).ok());
    const auto cards = exported();
    Phonebook other;
    EXPECT_EQ(other.import(cards), 0);
    EXPECT_EQ(other.contacts().front().surname, "Doe; Sr.");
}

TEST_F(Import, CancelledLosesNothing)
{
    import(nANN);
    const auto photo = "PHOTO;ENCODING=b;TYPE=PNG:" + nPIXEL + "\r\n";
    writeFile(folder / "more.vcf", nBOB + card("N:A;;;;\r\nTEL:1\r\nCATEGORIES:Club\r\n" + photo));
    ContactStore store(DirectoryService::fileIn(folder.path()), "");
    Importer importer(store, folder / "pictures", 20);
    ASSERT_TRUE(importer.read(folder / "more.vcf", [](auto, auto) { return true; }).ok());
    EXPECT_FALSE(importer.apply([](auto done, auto all) { return done < all; }).ok());
    EXPECT_EQ(names(), "Miller");
    EXPECT_TRUE(std::filesystem::is_empty(folder / "pictures"));
    EXPECT_EQ(store.groupNames(1).value(), std::vector<std::string>{""});

    Importer reading(store, folder / "pictures", 20);
    EXPECT_FALSE(reading.read(folder / "more.vcf", [](auto, auto) { return false; }).ok());
}

TEST_F(Import, OnAFullDiskLosesNothing)
{
    import(nANN);
    ContactStore store(DirectoryService::fileIn(folder.path()), "");
    writeFile(folder / "more.vcf", nBOB);
    Importer importer(store, folder / "pictures", 20);
    ASSERT_TRUE(importer.read(folder / "more.vcf", [](auto, auto) { return true; }).ok());
    {
        const FailingDisk disk(FailingDisk::What::Write, 1, ENOSPC);
        const auto applied = importer.apply([](auto, auto) { return true; });
        ASSERT_FALSE(applied.ok());
        EXPECT_EQ(applied.error().code, ErrorCode::Full);
    }
    EXPECT_EQ(names(), "Miller");
}

TEST_F(Import, IsOneNoticeToARunningTelephone)
{
    class Observer final : public DirectoryServiceObserverIfc {
    public:
        void phonebookDatabaseUpdated(bool) override { ++heard; }
        int heard = 0;
    } observer;
    ManualClock clock;
    EventThread events(clock);
    DirectoryOptions options;
    options.watchInterval = std::chrono::milliseconds(0);
    const auto directory = std::move(DirectoryService::open(folder.path(), options, events)).value();
    directory->addObserver(&observer);
    const auto look = [&] {
        directory->lookForChanges();
        events.runPending();
    };
    import(nANN + nBOB);
    look();
    look();
    EXPECT_EQ(observer.heard, 1);
    import(nANN + nBOB);
    look();
    EXPECT_EQ(observer.heard, 1);
}

TEST_F(Import, SaysWhatIsNoCardFile)
{
    EXPECT_EQ(import("Dear diary,\n"), 1);
    EXPECT_NE(errors.str().find("not a vCard file"), std::string::npos);
    EXPECT_EQ(import(""), 1);
    ImportOptions options;
    options.file = folder / "missing.vcf";
    options.profile = folder.path();
    EXPECT_EQ(runImport(options, out, errors), 1);
    EXPECT_NE(errors.str().find("missing.vcf"), std::string::npos);
}

TEST_F(Import, LeavesADamagedPhonebookAlone)
{
    writeFile(folder / "contacts.db", "rubbish");
    EXPECT_EQ(import(nANN), 1);
    EXPECT_NE(errors.str().find("contacts.db"), std::string::npos);
    EXPECT_EQ(contentOf(folder / "contacts.db"), "rubbish");
    ExportOptions options;
    options.file = folder / "out.vcf";
    options.profile = folder.path();
    EXPECT_EQ(runExport(options, out, errors), 1);
    EXPECT_FALSE(std::filesystem::exists(options.file));
}

TEST_F(Import, ExportsIntoOrdinaryFilesOnly)
{
    ASSERT_EQ(import(nANN), 0);
    ExportOptions options;
    options.profile = folder.path();
    options.file = folder / "pipe";
    ASSERT_EQ(::mkfifo(options.file.c_str(), 0600), 0);
    EXPECT_EQ(runExport(options, out, errors), 1);
    EXPECT_TRUE(std::filesystem::is_fifo(options.file));
    EXPECT_NE(errors.str().find("\"" + options.file.string() + "\" is no file"), std::string::npos);
}

TEST_F(Import, ExportsIntoTheFileBehindALink)
{
    ASSERT_EQ(import(nANN), 0);
    writeFile(folder / "real.vcf", "begin:vcard\n");
    std::filesystem::create_symlink("real.vcf", folder / "out.vcf");
    const auto text = exported();
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "out.vcf"));
    EXPECT_EQ(contentOf(folder / "real.vcf"), text);
}

TEST_F(Import, ExportsIntoNothingThatItWouldDestroy)
{
    ASSERT_EQ(import(nANN), 0);
    ExportOptions options;
    options.profile = folder.path();
    const TemporaryFolder elsewhere;
    elsewhere.write("letter.txt", "Dear Jane,");
    const std::vector<std::filesystem::path> targets{folder / "contacts.db", folder / "contacts.db-wal",
                                                     folder / "config.toml", elsewhere / "letter.txt"};
    for (const auto& target : targets) {
        SCOPED_TRACE(target);
        const auto before = contentOf(target);
        options.file = target;
        EXPECT_EQ(runExport(options, out, errors), 1);
        EXPECT_EQ(contentOf(target), before);
    }
    EXPECT_EQ(names(), "Miller");
    EXPECT_FALSE(std::filesystem::exists(folder / "config.toml"));
}

TEST_F(Import, ExportsNothingOfAProfileThatDoesNotExist)
{
    ExportOptions options;
    options.profile = folder / "mistyped";
    options.file = folder / "out.vcf";
    EXPECT_EQ(runExport(options, out, errors), 1);
    EXPECT_EQ(errors.str(), "There is no phonebook in \"" + options.profile.string() + "\".\n");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(Import, NamesTheFileThatAnExportCannotWrite)
{
    ASSERT_EQ(import(nANN), 0);
    ExportOptions options;
    options.profile = folder.path();
    options.file = folder / "missing" / "out.vcf";
    EXPECT_EQ(runExport(options, out, errors), 1);
    EXPECT_EQ(errors.str(),
              "\"" + options.file.string() + "\" cannot be written: No such file or directory.\n");
}

TEST_F(Import, ExportsAContactWhosePictureIsAFolder)
{
    ASSERT_EQ(import(nANN), 0);
    std::filesystem::create_directories(folder.path() / "pictures" / "ann.png");
    edit([](Contact& contact) { contact.picture = "ann.png"; });
    EXPECT_NE(exported().find("Miller"), std::string::npos);
}

// Every file of the converter's own tests, hostile ones included.
TEST_F(Import, ExportsAContactWhosePictureNeverEnds)
{
    ASSERT_EQ(import(nANN), 0);
    std::filesystem::create_directories(folder.path() / "pictures");
    ASSERT_EQ(::mkfifo((folder / "pictures/ann.png").c_str(), 0600), 0);
    edit([](Contact& contact) { contact.picture = "ann.png"; });
    EXPECT_NE(exported().find("Miller"), std::string::npos);
}

TEST_F(Import, OfAPictureThatCannotBeWrittenChangesNothing)
{
    const auto photo = "PHOTO;ENCODING=b;TYPE=PNG:" + nPIXEL + "\r\n";
    ASSERT_EQ(import(nANN), 0);
    std::filesystem::remove_all(folder / "pictures");
    writeFile(folder / "pictures", "no folder");
    EXPECT_EQ(import(card("N:Bond;;;;\r\nTEL:1\r\n" + photo)), 1);
    EXPECT_NE(errors.str().find("/pictures/Bond.png\" cannot be written: "), std::string::npos)
        << errors.str();
    EXPECT_EQ(names(), "Miller");
}

TEST_F(Import, KeepsAPictureUnderAnotherNameWhenItsOwnIsTakenMeanwhile)
{
    const auto photo = "PHOTO;ENCODING=b;TYPE=PNG:" + nPIXEL + "\r\n";
    writeFile(folder / "bond.vcf", card("N:Bond;;;;\r\nTEL:1\r\n" + photo));
    ContactStore store(DirectoryService::fileIn(folder.path()), "");
    Importer importer(store, folder / "pictures", 20);
    ASSERT_TRUE(importer.read(folder / "bond.vcf", [](auto, auto) { return true; }).ok());
    std::filesystem::create_directories(folder / "pictures");
    writeFile(folder / "pictures/Bond.png", "somebody else");
    ASSERT_TRUE(importer.apply([](auto, auto) { return true; }).ok());
    EXPECT_EQ(contacts().at(0).picture, "Bond-2.png");
    EXPECT_EQ(pictureMime(contentOf(folder / "pictures/Bond-2.png")), "image/png");
    EXPECT_EQ(contentOf(folder / "pictures/Bond.png"), "somebody else");
}

TEST_F(Import, TakesWhateverFilesThereAre)
{
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(TEST_DATA_DIR) / "vcards")) {
        if (entry.path().extension() != ".vcf")
            continue;
        SCOPED_TRACE(entry.path());
        Phonebook fresh;
        const auto text = contentOf(entry.path());
        const int outcome = fresh.import(text);
        const auto once = fresh.contacts();
        EXPECT_EQ(fresh.import(text), outcome);
        EXPECT_EQ(fresh.contacts(), once);
    }
}

class Child : public testing::Test {
protected:
    static Result<std::unique_ptr<ChildProgram>> shell(const std::string& script, ChildProgram::Talk talk,
                                                       const std::filesystem::path& output = {})
    {
        return ChildProgram::start("/bin/sh", {"-c", script}, talk, output);
    }
};

TEST_F(Child, IsReadLineByLine)
{
    auto child = std::move(shell("printf 'one\\ntwo\\n'", ChildProgram::Talk::WeRead)).value();
    EXPECT_EQ(child->readLine(100).value(), "one");
    EXPECT_EQ(child->readLine(100).value(), "two");
    EXPECT_EQ(child->readLine(100).value(), std::nullopt);
    EXPECT_TRUE(child->finish().ok());
}

TEST_F(Child, MaySendNoLineThatIsTooLong)
{
    auto child = std::move(shell("yes x | tr -d '\\n'", ChildProgram::Talk::WeRead)).value();
    EXPECT_FALSE(child->readLine(1000).ok());
}

TEST_F(Child, CrashesIntoAnError)
{
    auto child = std::move(shell("kill -SEGV $$", ChildProgram::Talk::WeRead)).value();
    EXPECT_EQ(child->readLine(100).value(), std::nullopt);
    const auto ended = child->finish();
    ASSERT_FALSE(ended.ok());
    EXPECT_NE(ended.error().sentence.find("crashed"), std::string::npos);
}

TEST_F(Child, TellsWhyItFailed)
{
    auto child = std::move(shell("echo 'no such thing' >&2; exit 3", ChildProgram::Talk::WeRead)).value();
    const auto ended = child->finish();
    ASSERT_FALSE(ended.ok());
    EXPECT_EQ(ended.error().sentence, "no such thing");
}

TEST_F(Child, ThatEndsTooEarlyIsAnErrorForItsWriter)
{
    const TemporaryFolder folder;
    auto child = std::move(shell("exit 0", ChildProgram::Talk::WeWrite, folder / "out")).value();
    Result<void> written;
    for (int i = 0; i < 1000 && written; ++i)
        written = child->write(std::string(100000, 'x'));
    EXPECT_FALSE(written.ok());
}

TEST_F(Child, ThatIsMissingIsNamed)
{
    const auto child = ChildProgram::start("/nowhere/converter", {}, ChildProgram::Talk::WeRead);
    ASSERT_FALSE(child.ok());
    EXPECT_NE(child.error().sentence.find("/nowhere/converter"), std::string::npos);
}

} // namespace
