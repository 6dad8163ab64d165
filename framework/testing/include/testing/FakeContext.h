// A telephone of services that a test sets up, with timers that expire when the test says so.

#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <framework/Phonelet.h>
#include <framework/PhoneletContext.h>
#include <framework/display/Display.h>

#include <testing/FakeTranslator.h>

class FakeContext final : public PhoneletContext {
public:
    struct Timer {
        Phonelet* owner;
        unsigned ms;
        bool running;
        int starts;
        int resets;
    };

    std::map<std::string, Executable*> services; // not owned
    std::vector<std::string> asked;              // the names asked for, in order
    DisplayAPI::Display* display = nullptr;      // not owned
    FakeTranslator translator;
    std::map<int, Timer> timers;
    std::map<std::string, int> states;
    std::vector<int> expiries; // what timerEvent() was given
    int focusRequests = 0;
    int focusReleases = 0;
    std::vector<std::chrono::microseconds> sleeps; // asked for; they take no time
    std::function<void()> whileSleeping;

    Executable* getService(const std::string& name) override
    {
        asked.push_back(name);
        const auto service = services.find(name);
        return service == services.end() ? nullptr : service->second;
    }
    DisplayAPI::Display* getDisplay() override { return display; }
    DisplayAPI::TranslatorIfc* getTranslator() override { return &translator; }
    std::string getName() const override { return "phonebook"; }

    void timerEvent(int id) override
    {
        expiries.push_back(id);
        if (const auto timer = timers.find(id); timer != timers.end())
            timer->second.running = false;
    }
    int createTimer(Phonelet* owner, unsigned ms) override
    {
        timers[++m_lastId] = {owner, ms, false, 0, 0};
        return m_lastId;
    }
    bool startTimer(int id) override
    {
        if (!timers.contains(id))
            return false;
        timers[id].running = true;
        ++timers[id].starts;
        return true;
    }
    bool stopTimer(int id) override
    {
        if (!timers.contains(id))
            return false;
        timers[id].running = false;
        return true;
    }
    bool resetTimer(int id) override
    {
        if (!isTimerRunning(id))
            return false;
        ++timers[id].resets;
        return true;
    }
    bool deleteTimer(int id) override { return timers.erase(id) == 1; }
    bool isTimerRunning(int id) const override
    {
        const auto timer = timers.find(id);
        return timer != timers.end() && timer->second.running;
    }

    void setPhoneletState(const std::string& name, int state) override { states[name] = state; }
    int getPhoneletState(const std::string& name) const override
    {
        const auto state = states.find(name);
        return state == states.end() ? 0 : state->second;
    }
    void requestFocus(Phonelet*) override { ++focusRequests; }
    void releaseFocus(Phonelet*) override { ++focusReleases; }
    void sleep(std::chrono::microseconds time) override
    {
        sleeps.push_back(time);
        if (whileSleeping)
            whileSleeping();
    }

private:
    int m_lastId = 0;
};
