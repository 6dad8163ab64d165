// Several threads drive the phonebook with the events that it serialises itself.
//
// Life-cycle, calls and dialling come from one thread only and are not among them.

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <framework/display/Display.h>
#include <framework/services/ManageableData.h>

#include <testing/FakeContext.h>
#include <testing/FakeCstaService.h>
#include <testing/FakeDigitAnalysis.h>
#include <testing/FakeDirectoryService.h>
#include <testing/FakeDisplayHost.h>
#include <testing/FakeLocalMgmt.h>
#include <testing/FakePhoneletHandle.h>
#include <testing/FakeServices.h>
#include <testing/LogCapture.h>

#include "PhonebookMode.h"
#include "PhonebookPhonelet.h"

namespace {

using DisplayAPI::Command;

constexpr int nROUNDS = 60;

// The telephone's own context may be called from several threads.
class LockedContext final : public PhoneletContext {
public:
    FakeContext inner;

    Executable* getService(const std::string& name) override { return locked()->getService(name); }
    DisplayAPI::Display* getDisplay() override { return inner.display; }
    DisplayAPI::TranslatorIfc* getTranslator() override { return inner.getTranslator(); }
    std::string getName() const override { return inner.getName(); }
    void timerEvent(int id) override { locked()->timerEvent(id); }
    int createTimer(Phonelet* owner, unsigned ms) override { return locked()->createTimer(owner, ms); }
    bool startTimer(int id) override { return locked()->startTimer(id); }
    bool stopTimer(int id) override { return locked()->stopTimer(id); }
    bool resetTimer(int id) override { return locked()->resetTimer(id); }
    bool deleteTimer(int id) override { return locked()->deleteTimer(id); }
    bool isTimerRunning(int id) const override
    {
        const std::lock_guard lock(m_mutex);
        return inner.isTimerRunning(id);
    }
    void setPhoneletState(const std::string& name, int state) override
    {
        locked()->setPhoneletState(name, state);
    }
    int getPhoneletState(const std::string& name) const override
    {
        const std::lock_guard lock(m_mutex);
        return inner.getPhoneletState(name);
    }
    void requestFocus(Phonelet* phonelet) override { locked()->requestFocus(phonelet); }
    void releaseFocus(Phonelet* phonelet) override { locked()->releaseFocus(phonelet); }

private:
    // Held until the end of the full expression.
    class Held {
    public:
        Held(std::mutex& mutex, FakeContext& context)
            : m_lock(mutex)
            , m_context(context)
        {
        }
        FakeContext* operator->() { return &m_context; }

    private:
        std::scoped_lock<std::mutex> m_lock;
        FakeContext& m_context;
    };

    Held locked() { return {m_mutex, inner}; }

    mutable std::mutex m_mutex;
};

class DrivenFromSeveralThreads : public testing::Test {
protected:
    DrivenFromSeveralThreads()
    {
        for (int i = 0; i < 20; ++i)
            directory.add("Miller" + std::to_string(i), "Ann", "030" + std::to_string(i));
        directory.options = {{"DisplayOptions", 0}, {"LdapDisplayOptions", 1}, {"LdapQualifier", 2}};
        configuration.items = {{"language", "en"}, {"software-type", "Veltrix QRA"}};
        csta.feature.Availability = communicationsServiceTexts::content_feature_available;
        telephone.inner.display = &display;
        telephone.inner.services = {
            {"DirectoryServiceIfc", &directory},  {"CSTAServiceIfc", &csta},
            {"DigitAnalysisServiceIfc", &digits}, {"LocalMgmtIfc", &configuration},
            {"JournalServiceIfc", &journal},      {"PhysicalInterfaceServiceIfc", &keys}};
        phonelet.setPhoneletHandle(&handle);
        phonelet.init(&telephone);
        phonelet.startPhonelet();
        phonelet.show();
    }
    ~DrivenFromSeveralThreads() override { phonelet.stopPhonelet(); }

    PhonebookMode& mode() { return *phonelet.getPhonebookMode(); }
    EventContext& context() { return *mode().getEventContext(); }

    // Runs `event` again and again on a thread of its own.
    void drive(std::function<void(int)> event)
    {
        m_threads.emplace_back([this, event = std::move(event)] {
            m_go.wait(false);
            for (int round = 0; round < nROUNDS; ++round)
                event(round);
        });
    }
    void runToTheEnd()
    {
        m_go = true;
        m_go.notify_all();
        for (auto& thread : m_threads)
            thread.join();
    }
    void change(const std::string& tag, const std::string& value)
    {
        ManageableData data;
        data.setRootId(tag);
        data.setValue(tag, value);
        phonelet.manageableDataChanged(&data);
    }

    LogCapture log;
    FakeDisplayHost host;
    DisplayAPI::Display display{host, {}};
    FakeDirectoryService directory;
    FakeCstaService csta;
    FakeDigitAnalysis digits;
    FakeLocalMgmt configuration;
    FakeJournal journal;
    FakePhysicalInterface keys;
    FakePhoneletHandle handle;
    LockedContext telephone;
    PhonebookPhonelet phonelet;

private:
    std::atomic<bool> m_go = false;
    std::vector<std::thread> m_threads;
};

TEST_F(DrivenFromSeveralThreads, KeepsItsStatesAndItsTabsWhole)
{
    DisplayAPI::TabScreen& tabs = *mode().getTabScreen();
    DisplayAPI::ContextMenu& menu = context().m_ContextMenu;

    drive([&](int round) {
        static constexpr int nTYPES[] = {
            Command::OK,   Command::RIGHT,           Command::SCREEN,       Command::BACK,
            Command::SAVE, Command::TAB_BAR_ENTERED, Command::TAB_BAR_LEFT, 99};
        Command command(nTYPES[round % std::size(nTYPES)], {});
        // Which list the tab shows may change at any time: the state only compares it.
        mode().commandAction(&command, round % 3 == 0 ? &menu : tabs.getCurrentDisplayable());
    });
    drive([&](int round) {
        Command command(round % 2 ? Command::TAB_NEXT : Command::TAB_PREVIOUS, {});
        mode().commandAction(&command, &tabs);
    });
    drive([&](int) { mode().itemStateChanged(nullptr); });
    drive([&](int) { phonelet.itemStateChanged(nullptr); });
    drive([&](int round) { phonelet.timerEvent(round); });
    drive([&](int round) {
        phonelet.buttonPressedEvent(PhysDefs::keyFunctionType::Digit, round, PhysDefs::actionType::Pressed,
                                    "key");
    });
    drive([&](int round) {
        change("mobility-mode", round % 2 ? "2" : "1");
        change("disable-access-phonebook", round % 3 ? "true" : "false");
        change("ldap-qualifier", "");
        change("ldap-display-option", "");
    });
    drive([&](int) { phonelet.phonebookDatabaseUpdated(false); });
    drive([&](int) { phonelet.phonebookDatabaseUpdated(true); });
    drive([&](int round) { phonelet.localeChanged(round % 2 ? "de" : "sv"); });
    drive([&](int round) { phonelet.localeChanged(round % 2 ? "fr" : "de"); });
    drive([&](int) {
        phonelet.childGainedFocus("CorvanStimulus");
        phonelet.childLostFocus("CorvanStimulus");
    });
    // The journal's news come beside all of it.
    const std::string longNumber = "0301234567890123456789";
    drive([&](int round) { mode().updateRedialNumber(longNumber + std::to_string(round)); });
    drive([&](int) {
        const std::string number = context().getRedialNumber();
        EXPECT_TRUE(number.empty() || number.starts_with(longNumber)) << number;
    });
    runToTheEnd();

    // Nothing was left locked, and nothing pending.
    phonelet.phonebookDatabaseUpdated(true);
    EXPECT_EQ(mode().getCurrentState(), &context().m_ViewingList);
    EXPECT_EQ(context().m_pDisplayList->size(), 20);
    EXPECT_EQ(tabs.getDisplayable(0), context().m_pDisplayList.get());
    log.clear();
    phonelet.phonebookDatabaseUpdated(false);
    EXPECT_TRUE(log.has("PhonebookStateViewingList::exitStateEvent"));
    EXPECT_FALSE(phonelet.getTreatShowAsTab());
}

} // namespace
