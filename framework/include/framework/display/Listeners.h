// Who hears of what the user did on a screen.
//
// Both are called from the event queue, never on the stack of a call that the phonelet made
// on a widget. What a program changes on a widget raises no event. An event whose command,
// item or screen was destroyed meanwhile is dropped. After the listener returned the telephone
// touches neither of the objects it passed: they may be deleted inside the call.

#pragma once

#include <framework/Export.h>

namespace DisplayAPI {

class Command;
class Displayable;
class Item;

class FRAMEWORK_API CommandListener {
public:
    virtual ~CommandListener();

    // `displayable` is the popup on top if there is one, else the innermost list or form of the
    // base screen; for the tab bar's commands the tab screen; for a notification that went,
    // that notification.
    // [phonelet-thread]
    virtual void commandAction(Command* command, Displayable* displayable) = 0;
};

class FRAMEWORK_API ItemStateListener {
public:
    virtual ~ItemStateListener();

    // The user changed `item`: the text of a list's search field, a field of a form, the digits
    // of the dialler.
    // [phonelet-thread]
    virtual void itemStateChanged(Item* item) = 0;
};

} // namespace DisplayAPI
