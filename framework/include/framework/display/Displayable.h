// A screen or a popup: what Display::setCurrent() takes.
//
// Destroying one takes it off the display and out of every tab. Its listener is not owned and
// must outlive it, or be set to null before.

#pragma once

#include <chrono>
#include <cstdint>

#include <framework/display/Tracked.h>
#include <framework/display/TranslationInfo.h>

namespace DisplayAPI {

class Command;
class CommandListener;
class Display;
enum class FrameRole;
struct FrameScreen;
struct Key;

class FRAMEWORK_API Displayable : public virtual Tracked {
public:
    Displayable();
    virtual ~Displayable();

    // [phonelet-thread]
    void setCommandListener(CommandListener* listener);
    CommandListener* getCommandListener() const;

    // [phonelet-thread]
    void setTitle(TranslationInfo title);

    // --- For the display ---

    // Never given to another screen. [any-thread]
    std::uint64_t id() const { return m_id; }

    virtual FrameRole role() const;

    // Whether it stands above the base screen.
    virtual bool isPopup() const { return false; }

    // Where its keys go: itself, or what it shows.
    virtual Displayable* innermost() { return this; }

    // Writes what is visible of it, at most `rows` rows, into `screen`.
    virtual void paint(FrameScreen& screen, int rows) const = 0;

    // Reacts to a key, and posts the events that follow from it. Returns false when the key means
    // nothing to it.
    virtual bool keyPressed(const Key& key) = 0;

    // The time that a pending multi-tap letter waits for may be over.
    virtual void timePassed(std::chrono::milliseconds now);
    // Commits such a letter now: a key that goes elsewhere ends it.
    void finishTyping();

    // It was made current and was not shown before.
    virtual void opened() {}

    // The user is back on it after another screen, tab, menu or question. Messages that go by
    // themselves and progress popups do not count: typing goes on after them.
    virtual void returnedTo() {}

    // The focus left the tab bar above it.
    virtual void tabBarLeft() {}

protected:
    const TranslationInfo& title() const { return m_title; }

    // Tells the listener. False when there is none.
    bool report(Command& command);
    // The same with the telephone's command for `key`: OK, Back, Save or the context key. False for
    // any other key.
    bool report(const Key& key);

    // Off the display, out of its tab and of every queued event. Destructors call it first.
    void detach();

private:
    CommandListener* m_pCommandListener = nullptr;
    TranslationInfo m_title;
    std::uint64_t m_id;
};

} // namespace DisplayAPI
