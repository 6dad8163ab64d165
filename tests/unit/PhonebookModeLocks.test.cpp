#include <chrono>
#include <functional>
#include <thread>

#include "ModeScreens.h"

namespace {

using DisplayAPI::Command;

using BusyMode = ModeScreens;

// The limit is real time: all that it ends are waited for together.
TEST_F(BusyMode, DropsWhatWaitsTenSecondsForTheStateButForKeysAndConfiguration)
{
    offerPbxPhonebook();
    startNoting();
    makeLocalStateBusy();
    std::thread key([this] {
        mode().buttonPressedEvent(PhysDefs::keyFunctionType::Digit, 1, PhysDefs::actionType::Pressed, "1");
    });
    await("buttonPressedEvent()");
    std::thread item([this] { change("mobility-mode", "2"); });
    await("manageableDataChanged() - mobility mode = 2");
    selectTab(PBX_TAB); // where showing waits, too
    const auto began = std::chrono::steady_clock::now();
    std::vector<std::thread> events;
    for (const std::function<void()>& event : std::vector<std::function<void()>>{
             [&] { command(Command::OK); }, [&] { mode().itemStateChanged(nullptr); },
             [&] { mode().handlePopupDiallerItemStateChanged(nullptr); }, [&] { mode().timerEvent(1); },
             [&] { mode().tab(); }, [&] { mode().show(); }, [&] { mode().phonebookDatabaseUpdated(); },
             [&] { mode().RestartLocalPhonebook(); }, [&] { phonelet().localeChanged("de"); }})
        events.emplace_back(event);
    for (auto& event : events)
        event.join();
    EXPECT_GE(std::chrono::steady_clock::now() - began, 10s);
    selectTab(OFFICE_TAB);

    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(handle.pushes.empty());
    EXPECT_EQ(context().m_pCurrentState, &local);
    EXPECT_TRUE(log.texts(2).empty() && log.texts(3).empty()); // dropped without a message
    EXPECT_FALSE(log.has("tab()"));
    EXPECT_FALSE(log.has("phonebookAlphabeticOrderChanged()"));
    EXPECT_FALSE(log.has("PhonebookStateViewingList::mobilityPhonebookRefreshActive"));

    letLocalStateGo();
    key.join();
    item.join();
    EXPECT_EQ(told, Texts({"local button 1 1 1 1"}));
    EXPECT_TRUE(log.has("PhonebookStateViewingList::mobilityPhonebookRefreshActive"));

    // The language is not taken for the one in force.
    phonelet().localeChanged("de");
    EXPECT_TRUE(log.has("phonebookAlphabeticOrderChanged()"));

    // The update stays pending: every later one is merged into it.
    note();
    mode().phonebookDatabaseUpdated();
    EXPECT_TRUE(told.empty());
}

TEST_F(BusyMode, ReportsDiallingBesideAnotherEvent)
{
    startNoting();
    makeLocalStateBusy();
    local.onEvent = nullptr;
    mode().handleDialingStarted("1");
    mode().handleInterDigitTimeout(nullptr);
    mode().handleDialingStopped();
    CallPartyIdentifier party;
    EXPECT_TRUE(mode().getDialPartyDetails(party));

    EXPECT_EQ(told, Texts({"local dialingStarted 1", "local interDigitTimeout", "local dialingStopped",
                           "local partyDetails"}));
    letLocalStateGo();
}

TEST_F(BusyMode, ChangesLdapOptionsWithoutWaiting)
{
    startNoting();
    makeLocalStateBusy();
    directory.options["LdapQualifier"] = 3;
    change("ldap-qualifier", "");
    EXPECT_EQ(static_cast<int>(context().m_pLdapPhonebookList->getDisplayQualifier()), 3);
    letLocalStateGo();
}

} // namespace
