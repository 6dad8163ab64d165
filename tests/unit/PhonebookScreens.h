// The phonebook on a telephone of fakes: what the user presses goes in at the display, what the
// user sees comes out as text.

#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <framework/display/Display.h>
#include <framework/host/TextScreen.h>
#include <framework/util/HardwareVersion.h>

#include <testing/FakeContext.h>
#include <testing/FakeCstaService.h>
#include <testing/FakeDigitAnalysis.h>
#include <testing/FakeDirectoryService.h>
#include <testing/FakeDisplayHost.h>
#include <testing/FakeLocalMgmt.h>
#include <testing/FakePhoneletHandle.h>
#include <testing/FakeServices.h>
#include <testing/LogCapture.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookMode.h"
#include "PhonebookPhonelet.h"

using namespace std::chrono_literals;

class PhonebookScreens : public testing::Test {
protected:
    using Kind = DisplayAPI::Key::Kind;
    using Fields = FakeDirectoryService::Record;
    using Texts = std::vector<std::string>;

    static constexpr auto OK = Kind::Ok;
    static constexpr auto BACK = Kind::Back;
    static constexpr auto MENU = Kind::Context;
    static constexpr auto UP = Kind::Up;
    static constexpr auto DOWN = Kind::Down;

    enum class Bar { SoftKeys, None };

    // Menus of the phonebook have up to nine commands.
    static constexpr int ROWS = 10;

    ~PhonebookScreens() override
    {
        stop();
        HardwareVersion::setHWVariant(1);
    }

    // A contact in the store; its default number is the first one given.
    std::string contact(const std::string& surname, const std::string& firstname, const Fields& numbers = {})
    {
        static const std::vector<std::pair<std::string, std::string>> codes{
            {"Office", "1"}, {"Office2", "2"}, {"Mobile", "3"}, {"Private", "4"}};
        const auto id = directory.add(surname, firstname);
        for (const auto& [name, value] : numbers)
            directory.records[id][name] = value;
        for (const auto& [name, code] : codes) {
            if (numbers.contains(name) && directory.records[id]["DefaultNumber"] == "0")
                directory.records[id]["DefaultNumber"] = code;
        }
        return id;
    }

    // Starts the phonebook, and shows it.
    void start(Bar bar = Bar::SoftKeys)
    {
        load(bar);
        phonelet().show();
        host.settle();
    }

    // Starts it out of sight; a second time in one test: anew.
    void load(Bar bar = Bar::SoftKeys)
    {
        stop();
        m_display.emplace(host, DisplayAPI::DisplayVariant{bar == Bar::SoftKeys, ROWS});
        host.drive(*m_display);
        telephone.display = &*m_display;
        m_pPhonelet = std::make_unique<PhonebookPhonelet>();
        m_pPhonelet->setPhoneletHandle(&handle);
        m_pPhonelet->init(&telephone);
        m_pPhonelet->startPhonelet();
        host.settle();
    }

    void press(Kind key) { host.press(key); }
    void type(const std::string& text) { host.type(text); }
    void wait(std::chrono::milliseconds time) { host.advance(time); }

    // Chooses a command of the menu or popup on top, wherever it stands.
    void choose(const std::string& label)
    {
        for (const auto& row : top().rows) {
            if (row.text == label)
                return static_cast<void>(host.press(Kind::Row, row.position));
        }
        const auto& softKeys = host.frame->softKeys;
        for (std::size_t i = 0; i < softKeys.size(); ++i) {
            if (softKeys[i].label == label)
                return static_cast<void>(host.press(Kind::SoftKey, static_cast<int>(i)));
        }
        FAIL() << "no " << label << " on\n" << host.screen();
    }

    const DisplayAPI::FrameScreen& top() const { return host.frame->top(); }
    // The popup on top, else the list.
    std::string screen() const { return DisplayAPI::toText(top()); }
    // The texts of its rows.
    Texts rows() const
    {
        Texts texts;
        for (const auto& row : top().rows)
            texts.push_back(row.text);
        return texts;
    }
    // The commands of the popup on top, by the soft keys' labels (but for Back) or by its rows.
    Texts commands() const
    {
        if (context().m_HasSoftKeyBar && top().role != DisplayAPI::FrameRole::Menu) {
            Texts labels;
            for (const auto& softKey : host.frame->softKeys) {
                if (softKey.label != "phone.back")
                    labels.push_back(softKey.label);
            }
            return labels;
        }
        return rows();
    }
    std::vector<int> icons() const
    {
        std::vector<int> numbers;
        for (const auto& row : top().rows)
            numbers.push_back(row.icon);
        return numbers;
    }
    // The title of the list.
    std::string title() const { return host.frame->base.title; }
    std::size_t popups() const { return host.frame->popups.size(); }

    PhonebookPhonelet& phonelet() const { return *m_pPhonelet; }
    PhonebookMode& mode() const { return *phonelet().getPhonebookMode(); }
    EventContext& context() const { return *mode().getEventContext(); }
    PhonebookList& list() const { return *context().m_pPhonebookList; }
    DisplayAPI::Display& display() { return *m_display; }

    void showGroup(int group)
    {
        list().populate(group);
        context().reallocateDisplayList(true);
        context().m_ViewingList.enterStateEvent(&context());
        host.settle();
    }
    void directoryChanges()
    {
        phonelet().phonebookDatabaseUpdated(false);
        host.settle();
    }
    void dialingStarts(const std::string& typed)
    {
        phonelet().handleDialingStarted(typed);
        host.settle();
    }
    void dialingStops()
    {
        phonelet().handleDialingStopped();
        host.settle();
    }
    void callsFail(int cause)
    {
        csta.makeCallResult = 1;
        csta.makeCallCause = cause;
    }
    // The trace lines of one source, in order.
    Texts traces(const std::string& source) const
    {
        Texts texts;
        for (const auto& line : log.lines()) {
            if (line.file == source && line.level == 5)
                texts.push_back(line.text);
        }
        return texts;
    }
    // Whether all of these lines were written, each for the first time after the one before it.
    testing::AssertionResult wroteInOrder(const Texts& lines) const
    {
        int before = -1;
        for (const auto& line : lines) {
            const int position = log.position(line);
            if (position <= before)
                return testing::AssertionFailure()
                       << line << " stands at " << position << ", not after " << before;
            before = position;
        }
        return testing::AssertionSuccess();
    }
    // What was sent since the phonebook started.
    Texts calls() const
    {
        Texts sent;
        for (const auto& request : csta.sent) {
            if (request.starts_with("MakeCall") || request.starts_with("DirectedPickup"))
                sent.push_back(request);
        }
        return sent;
    }

    LogCapture log;
    FakeDisplayHost host;
    FakeDirectoryService directory;
    FakeCstaService csta;
    FakeDigitAnalysis digits;
    FakeLocalMgmt configuration;
    FakeObex obex;
    FakeJournal journal;
    FakePhysicalInterface keys;
    FakeDataAccess dataAccess;
    FakeTeam team;
    FakePhoneletHandle handle;
    FakeContext telephone;

    PhonebookScreens()
    {
        telephone.services = {{"DirectoryServiceIfc", &directory},   {"CSTAServiceIfc", &csta},
                              {"DigitAnalysisServiceIfc", &digits},  {"LocalMgmtIfc", &configuration},
                              {"DataAccessServiceIfc", &dataAccess}, {"TeamServiceIfc", &team},
                              {"JournalServiceIfc", &journal},       {"OBEXServiceIfc", &obex},
                              {"PhysicalInterfaceServiceIfc", &keys}};
        configuration.items = {{"language", "en"}, {"software-type", "Veltrix QRA"}};
    }

private:
    void stop()
    {
        if (m_pPhonelet)
            m_pPhonelet->stopPhonelet();
        m_pPhonelet.reset();
    }

    std::optional<DisplayAPI::Display> m_display;
    std::unique_ptr<PhonebookPhonelet> m_pPhonelet;
};
