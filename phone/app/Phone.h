// The telephone: everything that main, a journey or a test starts, presses keys on and looks at.
//
// With the system's clock it runs on a thread of its own. With a ManualClock nothing happens by
// itself: runPending() and advance() run the events, on the caller's thread.

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/Clock.h"
#include "app/EventThread.h"
#include "app/FrameStore.h"
#include "app/IdleDialler.h"
#include "app/IdleScreen.h"
#include "app/KeyGate.h"
#include "app/KeyRouter.h"
#include "app/PhoneletHost.h"
#include "app/PhoneletStates.h"
#include "app/Profile.h"
#include "app/Result.h"
#include "app/SendScreen.h"
#include "app/Services.h"
#include "app/Stage.h"
#include "app/UpdateGate.h"
#include "calls/CallBar.h"
#include "system/Configuration.h"
#include "system/FileWatch.h"
#include "system/Translator.h"

// A phonelet and the library that it comes from.
struct PhoneletLibrary {
    std::string name;
    std::filesystem::path library;
};

struct PhoneOptions {
    Profile profile;
    std::filesystem::path catalogues; // holds <language>/LC_MESSAGES/deskbook.mo
    // The first one is what the phonebook key opens.
    std::vector<PhoneletLibrary> phonelets;

    // Null: the system's, and a thread. Not owned.
    ManualClock* clock = nullptr;
    // Configuration items that win over the profile's file.
    Configuration::Values items;
    // What a phonelet finds under a service's name instead of `service`: another one, or null.
    std::function<Executable*(const std::string& name, Executable* service)> replaceService;
    // Told the item "log-level", at start and whenever it changes.
    std::function<void(int)> setLogLevel;
    // What stands between the telephone and each phonelet.
    std::function<std::unique_ptr<Phonelet>(std::unique_ptr<Phonelet>)> wrapPhonelet;
};

class Phone {
public:
    // An error is about the profile. What is wrong with configuration, store or phonelets is shown
    // on the idle screen, and the telephone works without.
    static Result<std::unique_ptr<Phone>> create(PhoneOptions options);
    ~Phone();

    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    // Starts the phonelets and shows the idle screen; with a thread, returns before that is done.
    void start();
    // Stops the phonelets; nothing is delivered afterwards. Stopping twice is harmless.
    void stop();

    // [any-thread]
    KeyGate& keys() { return m_keys; }
    FrameStore& frames() { return m_frames; }
    EventThread& events() { return m_events; }
    const Translator& translator() const { return m_translator; }

    // [event thread]
    Services& services() { return *m_services; }
    // Null when there is no phonelet of that name, or it has failed.
    Phonelet* phonelet(const std::string& name);
    // A call was accepted: it takes the screen.
    void callAccepted();

    // Looks at the configuration file again and acts on what has changed. By itself that happens
    // when the file is written, if there is a thread.
    // [any-thread]
    void reloadConfiguration();

    // With a ManualClock only.
    void runPending() { m_events.runPending(); }
    void advance(std::chrono::milliseconds by);

private:
    explicit Phone(PhoneOptions options);
    Result<void> openServices();

    DisplayAPI::DisplayVariant variant() const;
    KeyRouter::Dialling dialling();
    void makeHosts();
    void makeSendScreen();
    PhoneletHost::Surroundings surroundings();
    PhoneletHost* hostOf(const std::string& name);
    Executable* service(const std::string& name);
    bool dialsItself(const std::string& number, const std::string& device);
    // The cause of a refusal (CSTAErrorCode); nothing when the call has begun.
    std::optional<int> placeCall(const std::string& number, const std::string& device);
    void forgetDigitsOutOfSight();
    void becomeIdle();
    Result<std::unique_ptr<Phonelet>> makePhonelet(const PhoneletLibrary& named);

    void startPhonelets();
    void stopPhonelets();
    void eventDone();
    void showIdle();
    void wakeAtNextMinute();
    // Whether nothing may keep the event thread waiting. [any-thread]
    void hurry(bool urgent);
    void closeNotification(std::uint64_t id);
    void push(PhoneletHost& parent, const std::string& child);

    void applyConfiguration();
    void tellRefusals();
    void changeLanguage();
    std::string lineState() const;
    std::vector<std::string> advice();
    bool changesMustWait() const;

    const PhoneOptions m_options;
    SystemClock m_systemClock;
    const Clock& m_clock;
    EventThread m_events;
    FrameStore m_frames;
    Configuration m_configuration;
    Translator m_translator;
    CallBar m_callBar; // lines tell it of calls as long as there are services
    PhoneletStates m_states;
    UpdateGate m_updates;
    std::unique_ptr<Services> m_services;
    IdleDialler m_idleDialler;
    IdleScreen m_idle;
    Stage m_stage;
    std::unique_ptr<KeyRouter> m_router; // with services
    KeyGate m_keys;
    // A phonelet's code lies in its library: hosts go before libraries.
    std::vector<Plugin> m_plugins;
    std::vector<std::unique_ptr<PhoneletHost>> m_hosts;
    std::unique_ptr<SendScreen> m_sendScreen; // with services; it lies on the hosts' displays
    std::unique_ptr<FileWatch> m_watch;
    bool m_stopped = false;
};
