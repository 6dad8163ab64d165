// What a phonelet is given at init(): services by name, its display, the translator, timers
// and a small state that survives restarts. The telephone owns it; it outlives the phonelet.

#pragma once

#include <chrono>
#include <string>

#include <framework/Executable.h>

namespace DisplayAPI {
class Display;
class TranslatorIfc;
} // namespace DisplayAPI

class Phonelet;

class FRAMEWORK_API PhoneletContext {
public:
    PhoneletContext() = default;
    virtual ~PhoneletContext();

    PhoneletContext(const PhoneletContext&) = delete;
    PhoneletContext& operator=(const PhoneletContext&) = delete;

    // The service offered under `name` ("DirectoryServiceIfc", "CSTAServiceIfc", ...), or null.
    // The telephone owns it and keeps it until the phonelet is deleted.
    // [phonelet-thread]
    virtual Executable* getService(const std::string& name) = 0;

    // The phonelet's own display. Never null; owned by the telephone.
    // [phonelet-thread]
    virtual DisplayAPI::Display* getDisplay() = 0;

    // Translates keys into the telephone's current language. Never null; owned by the telephone.
    // [phonelet-thread]
    virtual DisplayAPI::TranslatorIfc* getTranslator() = 0;

    // The name under which the telephone loaded the phonelet.
    // [phonelet-thread]
    virtual std::string getName() const = 0;

    // Tells the telephone that the expiry of timer `id` reached its phonelet, which passes
    // every expiry here first. From then on the timer counts as not running.
    // [phonelet-thread]
    virtual void timerEvent(int id) = 0;

    // Creates a stopped one-shot timer of `ms` milliseconds and returns its id, never 0.
    // 0 ms is allowed: it expires at the next dispatch. Its expiry is owner->timerEvent(id).
    // Timers left at stop are deleted, and named in the log.
    // [phonelet-thread]
    virtual int createTimer(Phonelet* owner, unsigned ms) = 0;

    // Start counting down (a running timer starts anew), stop, restart a running one (a stopped
    // one stays stopped: false), delete. All return false for an id that does not exist.
    // An expiry that was already queued when its timer was stopped is dropped.
    // [phonelet-thread]
    virtual bool startTimer(int id) = 0;
    virtual bool stopTimer(int id) = 0;
    virtual bool resetTimer(int id) = 0;
    virtual bool deleteTimer(int id) = 0;
    virtual bool isTimerRunning(int id) const = 0;

    // A number kept under a name across restarts of the telephone; 0 when never stored.
    // [phonelet-thread]
    virtual void setPhoneletState(const std::string& name, int state) = 0;
    virtual int getPhoneletState(const std::string& name) const = 0;

    // A phonelet asks to come to the front, or to leave it. show() or hide() follows later.
    // [phonelet-thread]
    virtual void requestFocus(Phonelet* phonelet) = 0;
    virtual void releaseFocus(Phonelet* phonelet) = 0;

    // Returns after `time`. No event is delivered meanwhile; what was made current before is on the
    // screen. The default blocks the calling thread.
    // [phonelet-thread]
    virtual void sleep(std::chrono::microseconds time);
};
