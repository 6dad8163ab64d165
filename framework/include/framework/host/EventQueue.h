// The events that widgets raise, in order, until the telephone delivers them.
//
// Widgets only ever put events in; the telephone calls deliver() after each event of its own
// queue, so that a listener is never called on the stack of a phonelet's call. Each event names
// its command, item and screen weakly: it is dropped when one of them was destroyed.

#pragma once

#include <functional>

#include <framework/Export.h>

namespace DisplayAPI {

class Command;
class CommandListener;
class Displayable;
class Item;
class ItemStateListener;

class FRAMEWORK_API EventQueue {
public:
    // `listener` may be null: then there is nobody to tell, and nothing is queued.
    // [any-thread]
    static void post(Command* command, Displayable* displayable, CommandListener* listener);
    static void post(Item* item, ItemStateListener* listener);

    // For widgets: a key that waits for the events before it, dropped with its screen.
    // [any-thread]
    static void post(Displayable* displayable, std::function<void()> action);

    // Delivers what is queued, and what that raises, until nothing is left. `around` is called with
    // the event's name and a function that delivers it: the telephone catches exceptions and
    // publishes frames there.
    // [phonelet-thread]
    using Around = std::function<void(const char* name, const std::function<void()>& deliver)>;
    static void deliver(const Around& around);

    // Delivers the first one only; false when there is none.
    // [phonelet-thread]
    static bool deliverOne(const Around& around);

    // Whether the item event of `item` is being delivered now on this thread, or is queued.
    // [any-thread]
    static bool isDelivering(const Item* item);
    static bool isQueued(const Item* item);

    // Forgets everything, or everything for one listener. A listener that is destroyed does so itself.
    // [any-thread]
    static void discardAll();
    static void discard(const CommandListener* listener);
    static void discard(const ItemStateListener* listener);
};

} // namespace DisplayAPI
