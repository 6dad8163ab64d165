// The phonebook on a telephone of fakes, with screens that note what the mode tells them in the
// place of its own.

#pragma once

#include <atomic>
#include <thread>

#include <framework/csta/communicationsServiceTexts.h>

#include "PhonebookScreens.h"
#include "RecordingState.h"

class ModeScreens : public PhonebookScreens {
protected:
    static constexpr int OFFICE_TAB = 0;
    static constexpr int LDAP_TAB = 1;
    static constexpr int PBX_TAB = 2;

    static constexpr char nASKED_BY_THE_TEST[] = "PhonebookMode::getEventContext()";

    // Before start.
    void offerPbxPhonebook()
    {
        csta.feature.Availability = communicationsServiceTexts::content_feature_available;
    }
    void useSoftware(const std::string& type) { configuration.items["software-type"] = type; }

    // Starts the phonebook in sight and puts the noting screens in place.
    void startNoting()
    {
        start();
        note();
    }
    void note()
    {
        m_noting = true;
        context().m_pCurrentState = &local;
        context().m_pLdapCurrentState = &ldap;
        told.clear();
        log.clear();
    }
    void TearDown() override
    {
        if (!m_noting || !phonelet().getPhonebookMode())
            return;
        context().m_pCurrentState = &context().m_ViewingList;
        context().m_pLdapCurrentState = &context().m_LdapViewingList;
    }

    DisplayAPI::TabScreen& tabs() const { return *context().m_pTabScreen; }
    void selectTab(int tab) { tabs().setCurrentTabIndex(tab); }
    int currentTab() const { return tabs().getCurrentTabIndex(); }
    void command(int type, DisplayAPI::Displayable* pDisplayable = nullptr)
    {
        DisplayAPI::Command sent(type, {});
        mode().commandAction(&sent, pDisplayable);
    }
    void change(const std::string& tag, const std::string& value)
    {
        ManageableData data;
        data.setRootId(tag);
        data.setValue(tag, value);
        mode().manageableDataChanged(&data);
    }
    // Keeps the local state busy in a handler, on another thread, which holds the state lock.
    void makeLocalStateBusy()
    {
        local.onEvent = [this] {
            m_busy = true;
            m_release.wait(false);
        };
        m_handler = std::thread([this] { mode().itemStateChanged(nullptr); });
        while (!m_busy)
            std::this_thread::yield();
        told.clear();
        log.clear();
    }
    void letLocalStateGo()
    {
        local.onEvent = nullptr;
        m_release = true;
        m_release.notify_all();
        m_handler.join();
    }
    // Waits for another thread to come as far as this log line.
    void await(const std::string& line, int times = 1)
    {
        while (log.count(line) < times)
            std::this_thread::yield();
    }
    // What the mode wrote at one level.
    Texts modeLines(int level) const
    {
        Texts texts;
        for (const auto& line : log.lines()) {
            if (line.file == "./src/PhonebookMode" && line.level == level && line.text != nASKED_BY_THE_TEST)
                texts.push_back(line.text);
        }
        return texts;
    }

    RecordingState::Calls told;
    RecordingState local{told, "local"};
    RecordingState ldap{told, "ldap"};
    RecordingState other{told, "other"};

private:
    bool m_noting = false;
    std::atomic<bool> m_busy = false;
    std::atomic<bool> m_release = false;
    std::thread m_handler;
};
