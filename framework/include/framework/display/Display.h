// A phonelet's screen: one base screen and a stack of popups above it.
//
// Making a screen current shows it at once, even while the call that did so goes on to block:
// the display publishes a frame then, when a wait animation is switched, and after every event.
// Displayables are not owned.

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <framework/display/Command.h>

namespace DisplayAPI {

class DisplayHostIfc;
class Displayable;
struct DisplayVariant;
struct Frame;
struct Key;

class FRAMEWORK_API Display {
public:
    Display(DisplayHostIfc& host, const DisplayVariant& variant);
    ~Display();

    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    // A base screen becomes the base and removes all popups; a notification that is removed so
    // reports its end. A popup comes to the top, and its time-out starts anew. A pointer that is
    // null or no longer alive is ignored.
    // [phonelet-thread]
    void setCurrent(Displayable* displayable);

    // The popup on top, else the base screen; null before the first setCurrent().
    // [phonelet-thread]
    Displayable* getCurrent() const;

    // In front or not. A hidden display publishes nothing, but its time-outs run.
    // [phonelet-thread]
    void show();
    void hide();

    // Whether the telephone has a row of soft keys. Without it, lists carry their options as
    // first row and popups show their commands as rows.
    // [phonelet-thread]
    bool hasSoftKeyBar() const;

    // Whether keys go to `displayable` now: the popup on top or, with no popup, the base screen
    // or the current tab's content.
    // [phonelet-thread]
    bool isCurrentForKeyEvents(const Displayable* displayable) const;

    // The system window: some lines of text below the screen, 0 for none. A size below 0 is 0, one
    // above 24 is 24. Lines outside the window are ignored.
    // [phonelet-thread]
    void setSystemWindowSize(int lines);
    void setSystemWindowLine(int line, const std::string& text);

    // --- For the telephone ---

    // A key for this phonelet. What follows from it stands in the EventQueue afterwards.
    // Returns false when it means nothing here. With a soft-key bar the commands of a question or
    // the dialler are its soft keys, and OK chooses the first of them.
    // [phonelet-thread]
    bool keyPressed(const Key& key);

    // Closes the notification on top, if there is one, as a key does: its end is reported.
    // [phonelet-thread]
    bool closeNotification();

    // The same if the popup on top has this FrameScreen::id; a key that was judged by an older
    // frame closes nothing else.
    // [phonelet-thread]
    bool closeNotification(std::uint64_t id);

    // Closes notifications whose time is over, commits a multi-tap letter whose time is over.
    // [phonelet-thread]
    void timePassed();

    // Commits a multi-tap letter whose key is followed by one that is not the display's.
    // [phonelet-thread]
    void finishTyping();

    // An event was delivered whole: publishes the frame that it left.
    // [phonelet-thread]
    void eventDone();

    // The telephone's language changed: paints again.
    // [phonelet-thread]
    void repaint();

    // Paints what is visible now, without publishing it.
    // [phonelet-thread]
    Frame paint() const;

    // --- For the widgets ---

    // Takes it off, and reports the end of a notification if `reportEnd`. Nothing when not shown.
    // [phonelet-thread]
    void remove(Displayable& displayable, bool reportEnd);
    // Whether it is the base screen, what the base screen shows, or one of the popups.
    bool shows(const Displayable& displayable) const;
    // Publishes at once, inside an event.
    void changed();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace DisplayAPI
