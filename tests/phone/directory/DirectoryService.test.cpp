#include "directory/DirectoryService.h"

#include <cerrno>
#include <sstream>

#include <gtest/gtest.h>

#include <framework/services/DirectoryServiceObserverIfc.h>
#include <framework/services/PhonebookGroupList.h>
#include <framework/services/PhonebookSearchCriteria.h>
#include <framework/services/PhonebookSearchResults.h>
#include <framework/services/Utils.h>
#include <framework/util/Serializer.h>

#include "FailingDirectory.h"
#include "StoreTesting.h"
#include "app/EventThread.h"
#include "directory/BackupCommand.h"

namespace {

const std::string nPROLOGUE =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"PhoneBook\"><ReasonForMessage>";

std::string message(const std::string& reason, const std::string& rest = "")
{
    return nPROLOGUE + reason + "</ReasonForMessage>" + rest + "</Schema>";
}

std::string failed(const std::string& why)
{
    return message("failure", "<FailureMessage>" + why + "</FailureMessage>");
}

// The text of the first such element.
std::string element(const std::string& xml, const std::string& name)
{
    const auto start = xml.find("<" + name + ">");
    if (start == std::string::npos)
        return "(none)";
    const auto content = start + name.size() + 2;
    return xml.substr(content, xml.find("</" + name + ">", content) - content);
}

class Observer final : public DirectoryServiceObserverIfc {
public:
    void phonebookDatabaseUpdated(bool restart) override { heard += restart ? "restart " : "updated "; }
    std::string heard;
};

class Directory : public testing::Test {
protected:
    Directory() { restart(); }

    void restart()
    {
        directory.reset();
        DirectoryOptions options;
        options.watchInterval = std::chrono::milliseconds(0);
        directory = std::move(DirectoryService::open(folder.path(), options, events)).value();
    }

    std::string write(const std::string& fields)
    {
        return directory->request(message("write_request", "<Entry>" + fields + "</Entry>"));
    }
    std::string read(const std::string& id)
    {
        return directory->request(message("read_request", "<Entry><UniqueID>" + id + "</UniqueID></Entry>"));
    }
    std::string erase(const std::string& what)
    {
        return directory->request(message("delete_request", "<Entry>" + what + "</Entry>"));
    }
    std::string add(const std::string& surname)
    {
        return element(write("<Surname>" + surname + "</Surname>"), "UniqueID");
    }

    // Another program's change.
    void importElsewhere(const std::string& surname)
    {
        ContactStore other(DirectoryService::fileIn(folder.path()), "");
        Contact contact;
        contact.surname = surname;
        ASSERT_TRUE(other.write(contact).ok());
    }

    void look()
    {
        directory->lookForChanges();
        events.runPending();
    }

    TemporaryFolder folder;
    ManualClock clock;
    EventThread events{clock};
    std::unique_ptr<DirectoryService> directory;
};

TEST_F(Directory, AnswersAReadCompactly)
{
    const auto id =
        element(write("<Surname>M&amp;ller</Surname><Firstname>Ann</Firstname><Office>1</Office>"
                      "<Mobile>3</Mobile><Private>4</Private><Email>a@b</Email><Group></Group>"
                      "<DefaultNumber>3</DefaultNumber><Company>C&lt;o</Company><Office2>2</Office2>"
                      "<Address>A1</Address><Address2>A2</Address2><JobFunction>Job</JobFunction>"
                      "<VoiceDial></VoiceDial><Picture>p.png</Picture><ExternalID>x</ExternalID>"),
                "UniqueID");
    EXPECT_EQ(read(id),
              message("read_response",
                      "<Entry><Surname>M&amp;ller</Surname><Firstname>Ann</Firstname><Office>1</Office>"
                      "<Mobile>3</Mobile><Private>4</Private><Email>a@b</Email><Company>C&lt;o</Company>"
                      "<Office2>2</Office2><Address>A1</Address><Address2>A2</Address2>"
                      "<JobFunction>Job</JobFunction><Picture>p.png</Picture><ExternalID>x</ExternalID>"
                      "<UniqueID>" +
                          id + "</UniqueID><Group>0</Group><DefaultNumber>3</DefaultNumber></Entry>"));
}

TEST_F(Directory, AnswersEveryWriteWithTheId)
{
    const auto id = add("Miller");
    EXPECT_LE(id.size(), 15u);
    const auto again = write("<Surname>Baker</Surname><UniqueID>" + id + "</UniqueID>");
    EXPECT_EQ(again, message("write_response", "<Entry><UniqueID>" + id + "</UniqueID></Entry>"));
    EXPECT_EQ(directory->getList(), id + "\tBaker\t\t0");
}

TEST_F(Directory, AnswersADeleteWithoutAnEntry)
{
    const auto id = add("Miller");
    EXPECT_EQ(erase("<UniqueID>" + id + "</UniqueID>"), message("delete_response"));
    EXPECT_EQ(erase("<UniqueID>" + id + "</UniqueID>"), message("delete_response"));
    EXPECT_EQ(element(read(id), "ReasonForMessage"), "failure");
    EXPECT_EQ(directory->getList(), "empty");
}

TEST_F(Directory, DeletesAllWhenTheRequestNamesNothing)
{
    add("One");
    add("Two");
    EXPECT_EQ(directory->request(message("delete_request")), message("delete_response"));
    EXPECT_EQ(directory->getList(), "empty");
}

TEST_F(Directory, DeletesTheContactsOfAGroup)
{
    PhonebookGroupList groups;
    groups.updateGroup(PhonebookGroup(2, "Club"));
    ASSERT_TRUE(directory->storeGroupList(&groups));
    const auto id = element(write("<Surname>Member</Surname><Group>2</Group>"), "UniqueID");
    add("Other");
    EXPECT_EQ(directory->getList("2"), id + "\tMember\t\t0");
    EXPECT_EQ(erase("<Group>0</Group>"), message("delete_response"));
    EXPECT_EQ(directory->getList(), id + "\tMember\t\t0");
    EXPECT_EQ(directory->getList("0"), "empty");
    EXPECT_EQ(erase("<Group>2</Group>"), message("delete_response"));
    EXPECT_EQ(directory->getList(), "empty");
}

TEST_F(Directory, GivesTheGroupTagInItsOneForm)
{
    PhonebookGroupList groups;
    groups.updateGroup(PhonebookGroup(3, "Club"));
    ASSERT_TRUE(directory->storeGroupList(&groups));
    const auto groupOf = [&](const std::string& tag) {
        return element(read(element(write("<Surname>X</Surname><Group>" + tag + "</Group>"), "UniqueID")),
                       "Group");
    };
    EXPECT_EQ(groupOf("3"), "3");
    EXPECT_EQ(groupOf("03"), "3");
    EXPECT_EQ(groupOf(""), "0");
    EXPECT_EQ(groupOf("00"), "0");
    EXPECT_EQ(groupOf("4"), "0"); // spare
    EXPECT_EQ(groupOf("-1"), "0");
}

TEST_F(Directory, RefusesWhatIsNoRequest)
{
    add("Miller");
    const auto before = directory->getList();
    const std::string tooLong(2 * 1024 * 1024, 'x');
    for (const auto& xml : std::vector<std::string>{
             "",
             "<",
             "<Schema/>",
             "<Schema name=\"phonebook\"><ReasonForMessage>delete_request</ReasonForMessage></Schema>",
             message("read_request"),
             message("drop_request"),
             message("write_request"),
             message("delete_request", "<Entry></Entry>"),
             message("delete_request", "<Entry><UniqueID></UniqueID></Entry>"),
             message("read_request", "<Entry><UniqueID>a\tb</UniqueID></Entry>"),
             message("write_request", "<Entry><Surname><b>x</b></Surname></Entry>"),
             message("write_request", "<Entry><Surname>x</Surname></Entry><Entry></Entry>"),
             message("write_request", "<Entry><Surname>" + tooLong + "</Surname></Entry>"),
             "<!DOCTYPE Schema>" + message("delete_request").substr(38),
             "<!DOCTYPE s [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;&a;\">]>" +
                 message("write_request", "<Entry><Surname>&b;</Surname></Entry>").substr(38),
             message("delete_request") + "more",
         }) {
        SCOPED_TRACE(xml.substr(0, 200));
        EXPECT_EQ(element(directory->request(xml), "ReasonForMessage"), "failure");
    }
    EXPECT_EQ(directory->getList(), before);
}

TEST_F(Directory, SaysNotEnoughMemoryWhenTheDiskIsFull)
{
    const FailingDisk disk(FailingDisk::What::Write, 1, ENOSPC);
    EXPECT_EQ(write("<Surname>Miller</Surname>"), failed("Not enough memory"));
}

TEST_F(Directory, ListsTextWithoutTabsAndLineEnds)
{
    const auto first = element(write("<Surname>A&#9;B&#10;C</Surname><Firstname>F</Firstname>"), "UniqueID");
    const auto second = add("D");
    EXPECT_EQ(directory->getList(), first + "\tA B C\tF\t0\n" + second + "\tD\t\t0");
}

TEST_F(Directory, KeepsGroupsInTheirSlots)
{
    const std::unique_ptr<PhonebookGroupList> groups(directory->getGroupList());
    EXPECT_EQ(groups->numberOfGroups(), 20);
    EXPECT_TRUE(groups->noGroupsInUse());
    groups->updateGroup(PhonebookGroup(7, "Fa\u0301mily"));
    EXPECT_TRUE(directory->storeGroupList(groups.get()));
    restart();
    const std::unique_ptr<PhonebookGroupList> again(directory->getGroupList());
    PhonebookGroup group;
    ASSERT_TRUE(again->getGroup(7, group));
    EXPECT_EQ(group.getName(), "F\u00e1mily");
    EXPECT_EQ(group.getId(), 7);
    EXPECT_TRUE(again->isSpare(1));
    EXPECT_FALSE(directory->storeGroupList(nullptr));
}

TEST_F(Directory, StoresNoGroupsOverThoseThatSomebodyElseMadeMeanwhile)
{
    const std::unique_ptr<PhonebookGroupList> groups(directory->getGroupList());
    ContactStore other(DirectoryService::fileIn(folder.path()), "");
    ASSERT_TRUE(other.writeGroupNames({"Club"}).ok());
    groups->updateGroup(PhonebookGroup(1, "Choir"));
    EXPECT_FALSE(directory->storeGroupList(groups.get()));

    const std::unique_ptr<PhonebookGroupList> now(directory->getGroupList());
    now->updateGroup(PhonebookGroup(2, "Choir"));
    EXPECT_TRUE(directory->storeGroupList(now.get()));
    now->updateGroup(PhonebookGroup(2, " Cho\tir"));
    EXPECT_TRUE(directory->storeGroupList(now.get()));
    now->updateGroup(PhonebookGroup(2, "Band"));
    EXPECT_TRUE(directory->storeGroupList(now.get()));
    EXPECT_EQ(other.groupNames(2).value(), (std::vector<std::string>{"Club", "Band"}));
}

TEST_F(Directory, TakesNoGroupAwayForAListThatWasNotReadFromIt)
{
    ContactStore other(DirectoryService::fileIn(folder.path()), "");
    ASSERT_TRUE(other.writeGroupNames({"Club", "", "Choir"}).ok());
    // What a telephone goes on with that could not read the groups when it started.
    PhonebookGroupList madeUp;
    const std::unique_ptr<PhonebookGroupList> readMeanwhile(directory->getGroupList());
    madeUp.updateGroup(PhonebookGroup(2, "Band"));
    EXPECT_TRUE(directory->storeGroupList(&madeUp));
    EXPECT_EQ(other.groupNames(3).value(), (std::vector<std::string>{"Club", "Band", "Choir"}));
    madeUp.updateGroup(PhonebookGroup(1, "Friends"));
    EXPECT_FALSE(directory->storeGroupList(&madeUp));
    EXPECT_EQ(other.groupNames(3).value(), (std::vector<std::string>{"Club", "Band", "Choir"}));
}

TEST_F(Directory, TakesNoGroupAwayThatAnotherReaderHasSeenSince)
{
    const std::unique_ptr<PhonebookGroupList> groups(directory->getGroupList());
    ContactStore other(DirectoryService::fileIn(folder.path()), "");
    ASSERT_TRUE(other.writeGroupNames({"", "Choir"}).ok());
    const std::unique_ptr<PhonebookGroupList> look(directory->getGroupList());
    PhonebookGroupList copy = *groups;
    copy.updateGroup(PhonebookGroup(1, "Club"));
    EXPECT_TRUE(directory->storeGroupList(&copy));
    EXPECT_EQ(other.groupNames(2).value(), (std::vector<std::string>{"Club", "Choir"}));
}

TEST_F(Directory, WritesEveryWayToSayNoGroupInOneWay)
{
    for (const auto* tag : {"", "0", "00", "9", "-1", "x", "4294967297"}) {
        SCOPED_TRACE(tag);
        const auto id =
            element(write("<Surname>X</Surname><Group>" + std::string(tag) + "</Group>"), "UniqueID");
        EXPECT_EQ(element(read(id), "Group"), "0");
    }
    EXPECT_EQ(directory->getList("0"), directory->getList());
    EXPECT_EQ(directory->getList("00"), directory->getList());
}

TEST_F(Directory, CutsWhatARequestMakesTooLongBetweenCharacters)
{
    std::string name;
    for (int i = 0; i < 30; ++i)
        name += "e\u0323\u0302"; // composed to one character
    const auto id = element(write("<Surname>" + name + "x</Surname><Office>" + std::string(51, '1') +
                                  "</Office><Firstname>   </Firstname>"),
                            "UniqueID");
    std::string composed;
    for (int i = 0; i < 30; ++i)
        composed += "\u1ec7";
    EXPECT_EQ(element(read(id), "Surname"), composed);
    EXPECT_EQ(element(read(id), "Office"), std::string(50, '1'));
    EXPECT_EQ(element(read(id), "Firstname"), "   ");
}

TEST_F(Directory, KeepsWhatOthersChangedInAContactThatIsSaved)
{
    const auto id = add("Miller");
    read(id);
    {
        ContactStore other(DirectoryService::fileIn(folder.path()), "");
        auto contact = *other.read(id).value();
        contact.email = "theirs@mail.example";
        contact.surname = "Theirs";
        contact.office = contact.mobile = "2";
        contact.defaultNumber = DefaultNumber::Mobile;
        ASSERT_TRUE(other.write(contact).ok());
    }
    const std::string ours =
        "<UniqueID>" + id + "</UniqueID><Surname>Ours</Surname><Private>1</Private><Office>1</Office>";
    write(ours);
    const auto saved = read(id);
    EXPECT_EQ(element(saved, "Email"), "theirs@mail.example");
    EXPECT_EQ(element(saved, "Mobile"), "2");
    EXPECT_EQ(element(saved, "DefaultNumber"), "3");
    EXPECT_EQ(element(saved, "Private"), "1");
    // What both changed is as it was saved last.
    EXPECT_EQ(element(saved, "Surname"), "Ours");
    EXPECT_EQ(element(saved, "Office"), "1");

    // Read anew, it was seen: an empty field is the user's will now.
    write(ours);
    EXPECT_EQ(element(read(id), "Email"), "");
}

TEST_F(Directory, MovesTheMembersOfADeletedGroup)
{
    PhonebookGroupList groups;
    groups.updateGroup(PhonebookGroup(1, "Work"));
    directory->storeGroupList(&groups);
    const auto id = element(write("<Surname>X</Surname><Group>1</Group>"), "UniqueID");
    EXPECT_TRUE(directory->reassignGroup(1, 0, 0));
    EXPECT_EQ(element(read(id), "Group"), "0");
}

TEST_F(Directory, TellsTheGreatestLengths)
{
    Serializer::Pairs sizes;
    ASSERT_TRUE(Serializer::deserialize(directory->getFieldSizes(), sizes));
    const Serializer::Pairs expected = {
        {"lastname", "30"}, {"firstname", "30"}, {"business1", "50"}, {"business2", "50"},
        {"mobile", "50"},   {"private", "50"},   {"company", "40"},   {"address1", "40"},
        {"address2", "40"}, {"position", "30"},  {"email", "35"},     {"callgroup", "30"},
    };
    EXPECT_EQ(sizes, expected);
}

TEST_F(Directory, HasNoCorporateDirectoryUntilOneIsGiven)
{
    PhonebookSearchCriteria criteria({{Utils::SURNAME, "a*"}}, "", true);
    PhonebookSearchResults results;
    EXPECT_EQ(directory->search(criteria, results, false), DIRECTORY_NOT_CONFIGURED);
    EXPECT_TRUE(results.getRecords().empty());
    EXPECT_FALSE(directory->isNicknameAttributeActive());
}

TEST_F(Directory, TellsObserversOfForeignChangesOnly)
{
    Observer observer;
    directory->addObserver(&observer);
    directory->addObserver(&observer);
    const auto id = add("Own");
    PhonebookGroupList groups;
    directory->storeGroupList(&groups);
    directory->writeOption("DisplayOptions", 2);
    erase("<UniqueID>" + id + "</UniqueID>");
    look();
    EXPECT_EQ(observer.heard, "");
    importElsewhere("Foreign");
    directory->lookForChanges();
    EXPECT_EQ(observer.heard, ""); // not on this stack
    events.runPending();
    EXPECT_EQ(observer.heard, "updated ");
    look();
    EXPECT_EQ(observer.heard, "updated ");
}

TEST_F(Directory, MakesOneNoticeOfSeveralChanges)
{
    Observer observer;
    directory->addObserver(&observer);
    importElsewhere("One");
    directory->lookForChanges();
    importElsewhere("Two");
    directory->lookForChanges();
    add("Own");
    events.runPending();
    EXPECT_EQ(observer.heard, "updated ");
}

TEST_F(Directory, SeesAForeignChangeAlsoAfterItsOwnWrite)
{
    Observer observer;
    directory->addObserver(&observer);
    importElsewhere("Foreign");
    add("Own");
    look();
    EXPECT_EQ(observer.heard, "updated ");
}

// Two telephones whose profiles share one contacts' file.
TEST_F(Directory, TellsEachTelephoneOfWhatTheOtherOneSaves)
{
    DirectoryOptions options;
    options.watchInterval = std::chrono::milliseconds(0);
    const auto other = std::move(DirectoryService::open(folder.path(), options, events)).value();
    Observer mine;
    Observer theirs;
    directory->addObserver(&mine);
    other->addObserver(&theirs);
    const auto lookBoth = [&] {
        directory->lookForChanges();
        other->lookForChanges();
        events.runPending();
    };

    const auto id = add("Mine");
    lookBoth();
    EXPECT_EQ(mine.heard + "|" + theirs.heard, "|updated ");
    other->request(
        message("write_request", "<Entry><Surname>Ours</Surname><UniqueID>" + id + "</UniqueID></Entry>"));
    lookBoth();
    EXPECT_EQ(mine.heard + "|" + theirs.heard, "updated |updated ");
    EXPECT_EQ(directory->getList(), other->getList());
    lookBoth();
    EXPECT_EQ(mine.heard + "|" + theirs.heard, "updated |updated ");
}

TEST_F(Directory, TellsOfARestartWhenABackupWasRestored)
{
    add("Old");
    const TemporaryFolder elsewhere;
    const BackupOptions options{elsewhere / "a.backup", folder.path(), folder / "pictures"};
    std::ostringstream said;
    ASSERT_EQ(runBackup(options, said, said), 0) << said.str();
    add("New");
    std::filesystem::create_directory(folder / "pictures");
    Observer observer;
    directory->addObserver(&observer);
    ASSERT_EQ(runRestore(options, said, said), 0) << said.str();
    look();
    EXPECT_EQ(observer.heard, "updated restart ");
    EXPECT_NE(directory->getList().find("\tOld\t"), std::string::npos);
    EXPECT_EQ(directory->getList().find("\tNew\t"), std::string::npos);
    add("Further");
    look();
    EXPECT_EQ(observer.heard, "updated restart ");
    importElsewhere("Foreign");
    look();
    EXPECT_EQ(observer.heard, "updated restart updated ");
}

TEST_F(Directory, DropsANoticeForAnObserverThatLeft)
{
    Observer observer;
    directory->addObserver(&observer);
    importElsewhere("Foreign");
    directory->lookForChanges();
    directory->removeObserver(&observer);
    events.runPending();
    EXPECT_EQ(observer.heard, "");
}

TEST_F(Directory, DropsANoticeWhenItIsGoneItself)
{
    Observer observer;
    directory->addObserver(&observer);
    importElsewhere("Foreign");
    directory->lookForChanges();
    directory.reset();
    events.runPending();
    EXPECT_EQ(observer.heard, "");
}

TEST_F(Directory, TellsOfARestartWhenTheFileWasReplaced)
{
    Observer observer;
    directory->addObserver(&observer);
    add("Old");
    TemporaryFolder elsewhere;
    {
        ContactStore backup(DirectoryService::fileIn(elsewhere.path()), "en");
        Contact contact;
        contact.id = "restored";
        contact.surname = "New";
        ASSERT_TRUE(backup.write(contact).ok());
    }
    const auto file = DirectoryService::fileIn(folder.path());
    std::filesystem::copy_file(DirectoryService::fileIn(elsewhere.path()), folder / "incoming");
    std::filesystem::rename(folder / "incoming", file);
    EXPECT_EQ(directory->getList(), "restored\tNew\t\t0");
    events.runPending();
    EXPECT_EQ(observer.heard, "updated restart ");
    look();
    EXPECT_EQ(observer.heard, "updated restart ");
}

TEST_F(Directory, NamesADamagedFileAndStaysEmptyUntilItIsGone)
{
    directory.reset();
    const auto file = DirectoryService::fileIn(folder.path());
    writeFile(file, "rubbish");
    restart();
    EXPECT_NE(directory->notice().find(file.string()), std::string::npos);
    EXPECT_EQ(directory->getList(), "empty");
    EXPECT_EQ(element(write("<Surname>X</Surname>"), "ReasonForMessage"), "failure");
    EXPECT_EQ(contentOf(file), "rubbish");

    Observer observer;
    directory->addObserver(&observer);
    std::filesystem::rename(file, folder / "kept");
    look();
    EXPECT_EQ(observer.heard, "updated restart ");
    EXPECT_EQ(directory->notice(), "");
    add("New");
    look();
    EXPECT_EQ(observer.heard, "updated restart ");
    EXPECT_EQ(contentOf(folder / "kept"), "rubbish");
}

TEST_F(Directory, PassedOnFailsAtTheRequestThatWasChosen)
{
    add("Miller");
    FailingDirectory failing(*directory, 2);
    EXPECT_EQ(failing.getList(), directory->getList());
    EXPECT_FALSE(failing.hasFailed());
    EXPECT_EQ(failing.request(message("delete_request")), failed("Not enough memory"));
    EXPECT_TRUE(failing.hasFailed());
    EXPECT_EQ(failing.getList(), directory->getList());
    EXPECT_NE(directory->getList(), "empty");
}

TEST_F(Directory, TellsNobodyAfterThePhoneletsWereStopped)
{
    Observer observer;
    directory->addObserver(&observer);
    importElsewhere("Foreign");
    directory->lookForChanges();
    directory->dropObservers();
    events.runPending();
    EXPECT_EQ(observer.heard, "");
}

// The real watch, with the real clock: awaited, never slept for.
TEST_F(Directory, WatchesItsFile)
{
    DirectoryOptions options;
    options.watchInterval = std::chrono::milliseconds(5);
    directory = std::move(DirectoryService::open(folder.path(), options, events)).value();
    Observer observer;
    directory->addObserver(&observer);
    importElsewhere("Foreign");
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (observer.heard.empty() && std::chrono::steady_clock::now() < limit) {
        events.runPending();
        std::this_thread::yield();
    }
    EXPECT_EQ(observer.heard, "updated ");
}

} // namespace
