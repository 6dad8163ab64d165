// The telephone's side of one phonelet: its context, its handle, its display, its timers.
//
// Nothing here calls the phonelet while a call of the phonelet is on the stack: what a phonelet
// asks for is posted.

#pragma once

#include <functional>
#include <memory>
#include <string>

#include <framework/Phonelet.h>
#include <framework/PhoneletContext.h>
#include <framework/PhoneletIfc.h>
#include <framework/display/Display.h>
#include <framework/host/DisplayHostIfc.h>

#include "app/EventThread.h"
#include "app/PhoneletStates.h"
#include "app/PluginLoader.h"
#include "app/TimerService.h"

class PhoneletHost final : public PhoneletContext, public PhoneletIfc, public DisplayAPI::DisplayHostIfc {
public:
    // What the telephone offers; all of it outlives the host.
    struct Surroundings {
        EventThread& events;
        const Clock& clock;
        DisplayAPI::TranslatorIfc& translator;
        PhoneletStates& states;
        DisplayAPI::DisplayVariant variant;
        std::function<Executable*(const std::string& name)> service;
        std::function<std::vector<std::string>(char digit)> charactersOnKey;
        std::function<bool(const std::string& number, const std::string& device)> dialsItself;
        std::function<void(const PhoneletHost&, const DisplayAPI::Frame&, DisplayAPI::FrameMoment)> publish;
        // All posted, never on a phonelet's stack.
        std::function<void(PhoneletHost&)> wantsFront;
        std::function<void(PhoneletHost&)> wantsToLeave;
        std::function<void(PhoneletHost& parent, const std::string& child)> pushes;
    };

    using Factory = std::function<Result<std::unique_ptr<Phonelet>>()>;

    PhoneletHost(std::string name, Surroundings surroundings);
    ~PhoneletHost() override;

    // Creates, initialises and starts the phonelet. An error names it; there is no phonelet then.
    // [event thread]
    Result<void> start(const Factory& factory);
    // Stops and deletes it; timers that it left are named in the log.
    // [event thread]
    void stop();

    // Null before start and after stop.
    Phonelet* phonelet() const { return m_phonelet.get(); }
    const std::string& name() const { return m_name; }
    DisplayAPI::Display& display() { return m_display; }
    bool hasFormAsBase() const;
    // Whether its tab is another phonelet's.
    bool hasEmptyTabAsBase() const;

    // An event within the running one; nothing without a phonelet.
    // [event thread]
    void call(const char* event, const std::function<void(Phonelet&)>& operation);

    // PhoneletContext
    Executable* getService(const std::string& name) override;
    DisplayAPI::Display* getDisplay() override { return &m_display; }
    DisplayAPI::TranslatorIfc* getTranslator() override { return &m_surroundings.translator; }
    std::string getName() const override { return m_name; }
    void timerEvent(int id) override { m_timers.reached(id); }
    int createTimer(Phonelet* owner, unsigned ms) override { return m_timers.create(owner, ms); }
    bool startTimer(int id) override { return m_timers.start(id); }
    bool stopTimer(int id) override { return m_timers.stop(id); }
    bool resetTimer(int id) override { return m_timers.reset(id); }
    bool deleteTimer(int id) override { return m_timers.remove(id); }
    bool isTimerRunning(int id) const override { return m_timers.isRunning(id); }
    void setPhoneletState(const std::string& name, int state) override;
    int getPhoneletState(const std::string& name) const override;
    void requestFocus(Phonelet* phonelet) override;
    void releaseFocus(Phonelet* phonelet) override;
    void sleep(std::chrono::microseconds time) override { m_surroundings.clock.sleep(time); }

    // PhoneletIfc
    void push(const std::string& from, const std::string& phonelet, int mode) override;
    int dialNumber(const std::string& number, const std::string& callingDevice) override;
    void leave(const std::string& name) override;

    // DisplayHostIfc
    std::chrono::milliseconds now() const override { return m_surroundings.clock.now(); }
    void wakeAt(std::chrono::milliseconds when) override;
    void publish(std::shared_ptr<const DisplayAPI::Frame> frame, DisplayAPI::FrameMoment moment) override;
    std::vector<std::string> charactersOnKey(char digit) const override;
    const DisplayAPI::TranslatorIfc* translator() const override { return &m_surroundings.translator; }

private:
    void drop();

    const std::string m_name;
    const Surroundings m_surroundings;
    TimerService m_timers;
    DisplayAPI::Display m_display; // outlives the phonelet's widgets
    std::unique_ptr<Phonelet> m_phonelet;
    // Tells events that are still queued that the host is gone.
    std::shared_ptr<const char> m_alive = std::make_shared<const char>();
};
