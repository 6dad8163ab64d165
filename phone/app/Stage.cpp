#include "app/Stage.h"

#include <algorithm>

namespace {

void show(PhoneletHost& host)
{
    host.display().show();
    host.call("show", [](Phonelet& phonelet) { phonelet.show(); });
}

void hide(PhoneletHost& host)
{
    host.call("close notification", [&host](Phonelet&) { host.display().closeNotification(); });
    host.call("hide", [](Phonelet& phonelet) { phonelet.hide(); });
    host.display().hide();
}

void tellLostFocus(PhoneletHost& parent, const PhoneletHost& child)
{
    parent.call("child lost focus", [&child](Phonelet& phonelet) { phonelet.childLostFocus(child.name()); });
}

} // namespace

Stage::Stage(std::function<void()> becameIdle)
    : m_becameIdle(std::move(becameIdle))
{
}

void Stage::open(PhoneletHost& host)
{
    if (front() == &host || !host.phonelet())
        return;
    if (!m_stack.empty())
        home();
    m_stack = {&host};
    show(host);
}

void Stage::tabKey(PhoneletHost& host)
{
    if (m_stack.size() > 1 && m_stack[m_stack.size() - 2] == &host) {
        returnFromChild();
        return;
    }
    if (front() != &host) {
        open(host);
        return;
    }
    host.call("finish typing", [&host](Phonelet&) { host.display().finishTyping(); });
    host.call("close notification", [&host](Phonelet&) { host.display().closeNotification(); });
    host.call("tab", [](Phonelet& phonelet) { phonelet.tab(); });
}

void Stage::push(PhoneletHost& parent, PhoneletHost& child)
{
    if (front() != &parent || !child.phonelet() || holds(child))
        return;
    parent.display().hide();
    m_stack.push_back(&child);
    show(child);
    parent.call("child gained focus",
                [&child](Phonelet& phonelet) { phonelet.childGainedFocus(child.name()); });
}

void Stage::home()
{
    const PhoneletHost* child = nullptr;
    while (!m_stack.empty()) {
        auto& host = *m_stack.back();
        m_stack.pop_back();
        hide(host);
        if (child)
            tellLostFocus(host, *child);
        child = &host;
    }
    m_becameIdle();
}

bool Stage::holds(const PhoneletHost& host) const
{
    return std::find(m_stack.begin(), m_stack.end(), &host) != m_stack.end();
}

void Stage::leave(const PhoneletHost& host)
{
    if (holds(host))
        home();
}

void Stage::returnFromChild()
{
    auto& child = *m_stack.back();
    m_stack.pop_back();
    auto& parent = *m_stack.back();
    hide(child);
    show(parent);
    tellLostFocus(parent, child);
}
