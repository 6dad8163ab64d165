// Who is on the screen: nobody (the telephone is idle), a phonelet, or a phonelet and the children
// that it pushed, the last one in front.
//
// A pushed child does not hide its parent. Left with the tab key, the parent is shown before it
// hears that its child lost the focus; left in any other way the child takes its parent with it.
// A notification on top is closed before its phonelet leaves the screen, and its end is delivered.
// [event thread]

#pragma once

#include <functional>
#include <vector>

#include "app/PhoneletHost.h"

class Stage {
public:
    explicit Stage(std::function<void()> becameIdle);

    // Null when idle.
    PhoneletHost* front() const { return m_stack.empty() ? nullptr : m_stack.back(); }
    // Whether `host` is on the screen, be it behind its child.
    bool holds(const PhoneletHost& host) const;

    // Brings `host` to the front, in place of what was there.
    void open(PhoneletHost& host);
    // The key of `host`: opens it, is its tab key when it is in front, returns to it from a child.
    void tabKey(PhoneletHost& host);
    // Nothing when `parent` is not in front.
    void push(PhoneletHost& parent, PhoneletHost& child);
    // Takes everything off the screen.
    void home();
    // The same when `host` is on the screen.
    void leave(const PhoneletHost& host);

private:
    void returnFromChild();

    const std::function<void()> m_becameIdle;
    std::vector<PhoneletHost*> m_stack;
};
