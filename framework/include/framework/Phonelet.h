// A phonelet: a plug-in application of the telephone, loaded from a shared library.
//
// The library exports one function, createPhonelet(). The telephone calls, in this order:
//   createPhonelet, init, startPhonelet,
//   any number of show, hide, tab, pause, resume, localeChanged and the other events,
//   stopPhonelet and/or shutdown (both may come: the second must be harmless), delete.
// All calls come from one queue, one at a time; nothing comes after stop.
// An exception that leaves a phonelet is logged with the event's name, and the telephone goes on.

#pragma once

#include <string>

#include <framework/Executable.h>

class PhoneletContext;
class PhoneletIfc;

class FRAMEWORK_API Phonelet : public Executable {
public:
    Phonelet();
    ~Phonelet() override;

    // Gives the phonelet its context, which it keeps until it is deleted. Call the base first.
    virtual void init(PhoneletContext* context);
    // Gives everything back: observers, subscriptions, screens.
    virtual void shutdown() = 0;
    // Timer `id` expired. Pass it to the context first.
    virtual void timerEvent(int id) = 0;
    // The interfaces it implements, separated by blanks.
    virtual std::string getInterfaces() = 0;
    // The services are there: subscribe, build the first screen. Nothing is shown yet.
    virtual void startPhonelet() = 0;
    virtual void stopPhonelet() = 0;
    // Left the screen: by a key, a call, or its own PhoneletIfc::leave().
    virtual void hide() = 0;
    // Came to the front.
    virtual void show() = 0;
    // The phonelet's key was pressed while it is in front.
    virtual void tab() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    // `language` is a code such as "en" or "de".
    virtual void localeChanged(const std::string& language) = 0;
    virtual void dateFormatChanged() = 0;
    virtual void timeFormatChanged() = 0;
    // A phonelet that this one pushed came to the front, or went. When it was left with the tab
    // key, show() comes before childLostFocus().
    virtual void childGainedFocus(const std::string& child) = 0;
    virtual void childLostFocus(const std::string& child) = 0;

    // Asks the telephone to bring this phonelet to the front, or to take it off.
    // [phonelet-thread]
    void requestFocus();
    void releaseFocus();

    // The host's handle for this phonelet; may be null. Not owned.
    // [phonelet-thread]
    PhoneletIfc* getPhoneletHandle() const { return m_pPhoneletHandle; }

    // For the telephone, before init().
    void setPhoneletHandle(PhoneletIfc* handle) { m_pPhoneletHandle = handle; }

protected:
    PhoneletContext* m_pContext = nullptr;

private:
    PhoneletIfc* m_pPhoneletHandle = nullptr;
};

// What a plug-in exports. The caller owns the phonelet and deletes it before it unloads the library.
extern "C" using CreatePhonelet = Phonelet * ();
