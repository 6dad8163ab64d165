#include "calls/Journal.h"

#include <cerrno>

#include <gtest/gtest.h>

#include <framework/services/CallPartyIdentifier.h>

#include "../directory/StoreTesting.h"
#include "app/EventThread.h"

namespace {

class Observer final : public JournalServiceObserverIfc {
public:
    void missedCallsCountUpdate(int) override {}
    void missedCallsUpdate(JournalItem*, int, JournalAction) override {}
    void dialledCallsUpdate(JournalItem* item, int, JournalAction action) override
    {
        heard += std::to_string(static_cast<int>(action)) + ":";
        for (const auto& record : item->getRecords())
            heard += record.textFields.at(1) + ",";
        heard += " ";
    }
    void receivedCallsUpdate(JournalItem*, int, JournalAction) override {}
    void forwardedCallsUpdate(JournalItem*, int, JournalAction) override {}
    void callBacksUpdate(JournalItem*, int, JournalAction) override {}
    void callBacksCountUpdate(int) override {}

    std::string take() { return std::exchange(heard, ""); }
    std::string heard;
};

class CallJournal : public testing::Test {
protected:
    CallJournal() { restart(); }

    void restart()
    {
        journal.reset();
        journal = std::move(Journal::open(folder.path(), clock, events)).value();
    }

    void dial(const std::string& number, const std::string& surname = "", const std::string& firstname = "")
    {
        CallPartyIdentifier party;
        party.setNumber(number);
        party.setSurname(surname);
        party.setFirstname(firstname);
        journal->addDialled(party);
    }

    std::string after()
    {
        events.runPending();
        return observer.take();
    }

    TemporaryFolder folder;
    ManualClock clock;
    EventThread events{clock};
    std::unique_ptr<Journal> journal;
    Observer observer;
};

TEST_F(CallJournal, KeepsDialledCallsOverARestart)
{
    dial("4711", "Miller", "Ann");
    dial("030 12345");
    restart();
    const auto calls = journal->dialled();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].textFields.at(1), "030 12345");
    EXPECT_EQ(calls[1].textFields.at(0), "Miller, Ann");
    EXPECT_EQ(calls[1].textFields.at(1), "4711");
    EXPECT_EQ(calls[1].textFields.at(2).size(), std::string("2026-01-01T00:00:00Z").size());
}

TEST_F(CallJournal, KnowsTheLastNameThatANumberWasDialledBy)
{
    dial("4711", "Miller", "Ann");
    dial("4711", "Smith", "Zoe");
    dial("4711");
    dial("4712", "Adams");
    const auto nameOf = [this](const std::string& wanted) {
        return journal->lastName([&](const std::string& number) { return number == wanted; });
    };
    EXPECT_EQ(nameOf("4711"), "Smith, Zoe");
    EXPECT_EQ(nameOf("4712"), "Adams");
    EXPECT_EQ(nameOf("4713"), "");
}

TEST_F(CallJournal, TellsTheCurrentListOnceAfterRegistration)
{
    dial("1");
    journal->addObserver(&observer);
    journal->addObserver(&observer);
    EXPECT_EQ(observer.take(), "");
    EXPECT_EQ(after(), "0:1, 3:1, ");
    EXPECT_EQ(after(), "");
}

TEST_F(CallJournal, TellsEachChange)
{
    journal->addObserver(&observer);
    EXPECT_EQ(after(), "3: ");
    dial("1");
    EXPECT_EQ(observer.take(), "");
    EXPECT_EQ(after(), "0:1, ");
    dial("2");
    EXPECT_EQ(after(), "0:2,1, ");
}

TEST_F(CallJournal, DropsWhatIsQueuedForAnObserverThatLeft)
{
    journal->addObserver(&observer);
    dial("1");
    journal->removeObserver(&observer);
    EXPECT_EQ(after(), "");
}

TEST_F(CallJournal, KeepsTheLatestHundred)
{
    for (int call = 1; call <= 105; ++call)
        dial(std::to_string(call));
    const auto calls = journal->dialled();
    ASSERT_EQ(calls.size(), 100u);
    EXPECT_EQ(calls.front().textFields.at(1), "105");
    EXPECT_EQ(calls.back().textFields.at(1), "6");
}

TEST_F(CallJournal, LeavesAForeignFileAloneAndRemembersUntilTheEnd)
{
    journal.reset();
    writeFile(folder / "journal.db", "rubbish");
    restart();
    EXPECT_NE(journal->notice().find("journal.db"), std::string::npos);
    dial("1");
    EXPECT_EQ(journal->dialled().size(), 1u);
    EXPECT_EQ(contentOf(folder / "journal.db"), "rubbish");
}

TEST_F(CallJournal, RemembersTheCallsOfAFileThatCanBeReadOnly)
{
    dial("4711", "Miller");
    dial("4712");
    journal.reset();
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder / "journal.db", std::filesystem::perms(0444));
    const auto before = contentOf(folder / "journal.db");
    const AsOrdinaryUser user;
    restart();
    EXPECT_NE(journal->notice().find("it is read-only"), std::string::npos) << journal->notice();
    dial("4713");
    const auto calls = journal->dialled();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].textFields.at(1), "4713");
    EXPECT_EQ(calls[1].textFields.at(1), "4712");
    EXPECT_EQ(calls[2].textFields.at(0), "Miller");
    EXPECT_EQ(contentOf(folder / "journal.db"), before);
}

TEST_F(CallJournal, BeginsAnewBesideAFileThatCannotBeReadAfterAPowerCut)
{
    dial("4711");
    journal.reset();
    writeFile(folder / "journal.db-journal", "what was being written");
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));
    std::filesystem::permissions(folder / "journal.db", std::filesystem::perms(0444));
    {
        const AsOrdinaryUser user;
        restart();
        EXPECT_NE(journal->notice().find("journal.db"), std::string::npos);
        dial("4713");
        EXPECT_EQ(journal->dialled().size(), 1u);
    }
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
}

TEST_F(CallJournal, SurvivesAFullDisk)
{
    journal->addObserver(&observer);
    EXPECT_EQ(after(), "3: ");
    {
        const FailingDisk disk(FailingDisk::What::Write, 1, ENOSPC);
        dial("1");
        EXPECT_TRUE(disk.hasFailed());
    }
    EXPECT_EQ(after(), "");
    dial("2");
    EXPECT_EQ(after(), "0:2, ");
}

TEST_F(CallJournal, IsClearedByAnotherProgram)
{
    journal->addObserver(&observer);
    dial("030123456");
    dial("089");
    after();
    const auto cleared = Journal::clear(folder.path());
    ASSERT_TRUE(cleared);
    EXPECT_EQ(cleared.value(), 2);
    EXPECT_EQ(after(), ""); // not noticed yet
    journal->lookForChanges();
    EXPECT_EQ(after(), "2: ");
    EXPECT_TRUE(journal->dialled().empty());
    EXPECT_EQ(contentOf(folder / "journal.db").find("030123456"), std::string::npos);

    journal->lookForChanges();
    EXPECT_EQ(after(), "");
    dial("030");
    journal->lookForChanges();
    EXPECT_EQ(after(), "0:030, "); // its own change is told once
}

TEST_F(CallJournal, HasNothingToClearBeforeTheFirstCall)
{
    TemporaryFolder empty;
    const auto cleared = Journal::clear(empty.path());
    ASSERT_TRUE(cleared);
    EXPECT_EQ(cleared.value(), 0);
    EXPECT_FALSE(std::filesystem::exists(empty / "journal.db"));
}

TEST_F(CallJournal, ClearsNoFileOfOthers)
{
    TemporaryFolder foreign;
    writeFile(foreign / "journal.db", "somebody else's");
    const auto cleared = Journal::clear(foreign.path());
    ASSERT_FALSE(cleared);
    EXPECT_NE(cleared.error().sentence.find("journal.db"), std::string::npos);
    EXPECT_EQ(contentOf(foreign / "journal.db"), "somebody else's");
}

} // namespace
