// Several threads drive a list, and the language's order, at the same time.

#include "PhonebookList.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <framework/services/DigitAnalysisServiceIfc.h>
#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/PhonebookSearchResults.h>
#include <framework/services/Utils.h>
#include <framework/util/Utf8Utils.h>
#include <testing/FakeDirectoryService.h>

namespace {

constexpr int nROUNDS = 40;

// A directory that several lists may ask at once.
class LockedDirectory final : public DirectoryServiceIfc {
public:
    LockedDirectory()
    {
        for (int i = 0; i < 60; ++i) {
            const std::string name = (i % 3 ? "Müller" : "åberg") + std::to_string(i);
            m_directory.add(name, "Jane", "100", "1", std::to_string(i % 2));
            m_directory.found.push_back({{Utils::SURNAME, name}, {Utils::OFFICE, std::to_string(i)}});
        }
        m_directory.found.push_back({{"trailer", "true"}});
        m_directory.status = DIRECTORY_SUCCESS;
    }

    std::string request(const std::string& xml) override
    {
        const std::lock_guard lock(m_mutex);
        return m_directory.request(xml);
    }
    std::string getList() override
    {
        const std::lock_guard lock(m_mutex);
        return m_directory.getList();
    }
    std::string getList(const std::string& groupTag) override
    {
        const std::lock_guard lock(m_mutex);
        return m_directory.getList(groupTag);
    }
    DirectoryStatus search(PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                           bool ignoreNickname) override
    {
        const std::lock_guard lock(m_mutex);
        return m_directory.search(criteria, results, ignoreNickname);
    }
    bool isNicknameAttributeActive() override { return false; }
    int readOption(const std::string& tag) override
    {
        const std::lock_guard lock(m_mutex);
        return m_directory.readOption(tag);
    }
    int writeOption(const std::string& tag, int value) override
    {
        const std::lock_guard lock(m_mutex);
        return m_directory.writeOption(tag, value);
    }
    PhonebookGroupList* getGroupList() override { return nullptr; }
    bool storeGroupList(PhonebookGroupList*) override { return false; }
    bool reassignGroup(unsigned, unsigned, int) override { return false; }
    std::string getFieldSizes() override { return ""; }
    void addObserver(DirectoryServiceObserverIfc*) override {}
    void removeObserver(DirectoryServiceObserverIfc*) override {}

private:
    std::mutex m_mutex;
    FakeDirectoryService m_directory;
};

class StatelessDigitAnalysis final : public DigitAnalysisServiceIfc {
public:
    bool setCallContextProvider(DigitAnalysisServiceEventIfc*) override { return false; }
    bool clearCallContextProvider(DigitAnalysisServiceEventIfc*) override { return false; }
    bool setDialString(const std::string&, int) override { return false; }
    void convertToCanonical(std::string& number) override { number = "+49"; }
    void setDialPartyDetails(CallPartyIdentifier&, bool, int) override {}
};

// Runs each action again and again, all of them at once.
void drive(const std::vector<std::function<void(int)>>& actions)
{
    std::vector<std::thread> threads;
    for (const auto& action : actions)
        threads.emplace_back([&action] {
            for (int round = 0; round < nROUNDS; ++round)
                action(round);
        });
    for (auto& thread : threads)
        thread.join();
}

// Looks at rows while others change them; a row may be gone by the time it is asked for.
void browse(PhonebookList& list)
{
    const unsigned int rows = list.size();
    for (unsigned int row = 0; row < rows; row += 7) {
        try {
            const auto entry = list.elementAt(row);
            EXPECT_EQ(entry.getDisplayName(list.getDisplayMode(), displayQualifier::None).empty(), false);
            PhonebookFullEntry whole;
            list.getFullEntry(row, whole);
        } catch (const std::out_of_range&) {
            return;
        }
    }
}

void search(PhonebookList& list)
{
    int index = -1;
    list.getIndex("mu", index);
    EXPECT_GE(index, 0);
}

void changeOrder(int round)
{
    Utf8Utils::setSortOrder(round % 2 ? "sv" : "de");
}

} // namespace

TEST(PhonebookListThreads, MayFillEditAndSearchTheLocalListAtOnce)
{
    LockedDirectory directory;
    PhonebookList list(&directory);
    list.populate(-1);
    drive({
        [&](int round) { list.populate(round % 3 ? -1 : round % 2); },
        [&](int) {
            PhonebookFullEntry entry;
            entry.setBlank();
            entry.setSurname("Müller new");
            int index = -1;
            list.addEntry(&entry, index);
        },
        [&](int round) {
            list.setDisplayMode(static_cast<displayMode>(round % 4));
            list.getDisplayOptionFromDatabase();
        },
        [&](int) { browse(list); },
        [&](int) { search(list); },
        [&](int round) { changeOrder(round); },
        [&](int round) {
            try {
                if (round % 5 == 0)
                    list.deleteEntry(0);
            } catch (const std::out_of_range&) {
                return; // a fill is under way
            }
        },
    });
    Utf8Utils::destroy();
    list.populate(-1);
    EXPECT_GT(list.size(), 60u);
}

TEST(PhonebookListThreads, MayFillConvertAndSearchTheDirectorysResultsAtOnce)
{
    LockedDirectory directory;
    StatelessDigitAnalysis digitAnalysis;
    PhonebookList list(&directory, &digitAnalysis);
    drive({
        [&](int round) {
            PhonebookSearchCriteria criteria({}, "", true);
            list.populate(criteria, round % 2 == 0);
        },
        [&](int) { list.convertToCanonical(); },
        [&](int round) {
            if (round % 8 == 0)
                list.depopulate();
            list.getNickNameResultIndicator();
        },
        [&](int round) {
            list.setDisplayQualifier(static_cast<displayQualifier>(round % 10));
            list.getDisplayQualifierFromDatabase();
            list.setLDAPPhonebookList(round % 2 == 0);
        },
        [&](int) { search(list); },
        [&](int round) { changeOrder(round); },
        [&](int) {
            PhonebookFullEntry whole;
            try {
                list.getFullEntry(0, whole);
            } catch (const std::out_of_range&) {
                return;
            }
            EXPECT_FALSE(whole.getSurname().empty());
        },
    });
    Utf8Utils::destroy();
}

TEST(Utf8UtilsThreads, MayCompareWhileTheLanguageChanges)
{
    drive({
        [](int round) { changeOrder(round); },
        [](int) { EXPECT_TRUE(Utf8Utils::compare("adams", "baker")); },
        [](int) {
            std::string text = "Müller";
            Utf8Utils::normalize(text);
            EXPECT_EQ(Utf8Utils::find(text, text), 0);
        },
        [](int) {
            const Utf8Utils::SteadyOrder steady;
            EXPECT_EQ(Utf8Utils::compare("z", "å"), Utf8Utils::compare("z", "å"));
        },
    });
    Utf8Utils::destroy();
}
