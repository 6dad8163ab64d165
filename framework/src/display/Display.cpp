#include <framework/display/Display.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

#include <framework/display/Form.h>
#include <framework/display/Frame.h>
#include <framework/display/PopupNotification.h>
#include <framework/display/TabScreen.h>
#include <framework/display/TranslatorIfc.h>
#include <framework/host/DisplayHostIfc.h>
#include <framework/host/Key.h>

#include "KeyHost.h"
#include "Registry.h"
#include "Text.h"
#include "UiLock.h"

namespace DisplayAPI {

namespace {

using std::chrono::milliseconds;

constexpr int MAX_SYSTEM_WINDOW_LINES = 24;
constexpr int MAX_SOFT_KEYS_OF_POPUP = 24;

struct SoftKey {
    std::string label;
    Key key;
};

bool hasCommands(FrameRole role)
{
    return role == FrameRole::Question || role == FrameRole::Dialler;
}

bool isMessage(const Displayable& screen)
{
    return screen.role() == FrameRole::Notification || screen.role() == FrameRole::Progress;
}

void sanitise(std::string& text)
{
    text = sanitised(std::move(text));
}

void sanitise(FrameScreen& screen)
{
    for (auto* text :
         {&screen.title, &screen.image, &screen.text, &screen.search, &screen.pending, &screen.dialler.prefix,
          &screen.dialler.line1, &screen.dialler.line2, &screen.dialler.edit})
        sanitise(*text);
    for (auto& row : screen.rows) {
        sanitise(row.text);
        sanitise(row.image);
    }
    for (auto& field : screen.fields) {
        sanitise(field.label);
        sanitise(field.value);
        sanitise(field.image);
    }
}

void sanitise(Frame& frame)
{
    for (auto* texts : {&frame.tabs, &frame.systemWindow}) {
        for (auto& text : *texts)
            sanitise(text);
    }
    sanitise(frame.base);
    for (auto& popup : frame.popups)
        sanitise(popup);
    for (auto& softKey : frame.softKeys)
        sanitise(softKey.label);
}

} // namespace

class Display::Impl {
public:
    struct Popup {
        Displayable* screen;
        std::optional<milliseconds> deadline;
    };

    Impl(DisplayHostIfc& host, const DisplayVariant& variant)
        : m_host(host)
        , m_variant(variant)
    {
    }

    Displayable* top() const { return m_popups.empty() ? m_pBase : m_popups.back().screen; }
    // Where keys go; null when there is nothing.
    Displayable* innermost() const { return top() ? top()->innermost() : nullptr; }

    void setBase(Displayable& base);
    void raise(Displayable& popup);
    void remove(const Displayable& screen, bool reportEnd);
    void noticeReturn();

    bool keyPressed(const Key& key);
    bool closeNotification();
    void closeOverdue(milliseconds now);

    FrameScreen paintScreen(Displayable& screen) const;
    std::vector<SoftKey> softKeys() const;
    std::string label(const char* key) const;
    Frame paint() const;
    void publish(FrameMoment moment);

    DisplayHostIfc& m_host;
    DisplayVariant m_variant;
    bool m_visible = false;
    Displayable* m_pBase = nullptr;
    std::vector<Popup> m_popups;
    const Displayable* m_pLastFocus = nullptr; // compared only: it may be gone
    std::vector<std::string> m_systemWindow;
    std::uint64_t m_frameNumber = 0;
    std::shared_ptr<const Frame> m_pLastFrame;
    FrameMoment m_lastMoment = FrameMoment::AfterEvent;
};

void Display::Impl::setBase(Displayable& base)
{
    while (!m_popups.empty())
        remove(*m_popups.back().screen, true);
    m_pBase = &base;
}

void Display::Impl::raise(Displayable& popup)
{
    const auto shown = std::ranges::find(m_popups, &popup, &Popup::screen);
    if (shown == m_popups.end())
        popup.opened();
    else
        m_popups.erase(shown);

    std::optional<milliseconds> deadline;
    const auto* notification = dynamic_cast<const PopupNotification*>(&popup);
    if (notification && notification->timeout() > milliseconds{0}) {
        deadline = m_host.now() + notification->timeout();
        m_host.wakeAt(*deadline);
    }
    m_popups.push_back({&popup, deadline});
}

void Display::Impl::remove(const Displayable& screen, bool reportEnd)
{
    if (m_pBase == &screen)
        m_pBase = nullptr;
    const auto shown = std::ranges::find(m_popups, &screen, &Popup::screen);
    if (shown == m_popups.end())
        return;
    auto* popup = shown->screen;
    m_popups.erase(shown);
    auto* notification = reportEnd ? dynamic_cast<PopupNotification*>(popup) : nullptr;
    if (notification)
        notification->ended();
}

// Tells the screen that gets a key that another one got the key before. Messages do not count.
void Display::Impl::noticeReturn()
{
    auto* focus = innermost();
    if (!focus || isMessage(*focus) || focus == m_pLastFocus)
        return;
    m_pLastFocus = focus;
    focus->returnedTo();
}

bool Display::Impl::keyPressed(const Key& key)
{
    noticeReturn();
    if (closeNotification())
        return true;
    if (!top())
        return false;
    if (key.kind == Key::Kind::SoftKey) {
        const auto keys = softKeys();
        if (key.index < 0 || key.index >= static_cast<int>(keys.size()))
            return false;
        return top()->keyPressed(keys[static_cast<std::size_t>(key.index)].key);
    }
    const auto isCursorKey = key.kind == Key::Kind::Up || key.kind == Key::Kind::Down;
    if (isCursorKey && m_variant.softKeyBar && hasCommands(top()->role()))
        return true; // its commands are soft keys: there is no cursor among them
    return top()->keyPressed(key);
}

bool Display::Impl::closeNotification()
{
    if (m_popups.empty() || top()->role() != FrameRole::Notification)
        return false;
    remove(*top(), true);
    return true;
}

void Display::Impl::closeOverdue(milliseconds now)
{
    std::vector<Displayable*> overdue;
    for (const auto& popup : m_popups) {
        if (popup.deadline && *popup.deadline <= now)
            overdue.push_back(popup.screen);
    }
    for (const auto* popup : overdue)
        remove(*popup, true);
}

FrameScreen Display::Impl::paintScreen(Displayable& screen) const
{
    FrameScreen painted;
    const auto& innermost = *screen.innermost();
    painted.role = innermost.role();
    painted.id = innermost.id();
    screen.paint(painted, m_variant.visibleRows);
    if (m_variant.softKeyBar && hasCommands(painted.role)) {
        painted.rows.clear();
        painted.rowCount = 0;
    }
    return painted;
}

std::vector<SoftKey> Display::Impl::softKeys() const
{
    if (!m_variant.softKeyBar || !top())
        return {};

    const auto key = [&](const char* text, Key::Kind kind) { return SoftKey{label(text), Key::of(kind)}; };
    const auto ok = key("phone.ok", Key::Kind::Ok);
    const auto back = key("phone.back", Key::Kind::Back);
    switch (innermost()->role()) {
    case FrameRole::List:
        return {ok, key("phone.menu", Key::Kind::Context), back};
    case FrameRole::ExclusiveList:
        return {ok, back};
    case FrameRole::Form: {
        const auto* form = dynamic_cast<const Form*>(innermost());
        const auto* command = form ? form->getOkCommand() : nullptr;
        std::vector<SoftKey> keys{command ? SoftKey{command->getLabel().translated(), ok.key} : ok};
        if (!form || form->offersSave())
            keys.push_back(key("phone.save", Key::Kind::Save));
        keys.push_back(back);
        return keys;
    }
    case FrameRole::Menu:
        return {key("phone.select", Key::Kind::Ok), back};
    case FrameRole::Question:
    case FrameRole::Dialler: {
        FrameScreen popup;
        top()->paint(popup, MAX_SOFT_KEYS_OF_POPUP);
        std::vector<SoftKey> keys;
        for (const auto& row : popup.rows)
            keys.push_back({row.text, Key::of(Key::Kind::Row, row.position)});
        keys.push_back(back);
        return keys;
    }
    case FrameRole::Notification:
    case FrameRole::Progress:
        return {};
    default:
        return {back};
    }
}

std::string Display::Impl::label(const char* key) const
{
    const auto* translator = m_host.translator();
    return translator ? translator->translate(key) : key;
}

Frame Display::Impl::paint() const
{
    Frame frame;
    frame.number = m_frameNumber;
    frame.visible = m_visible;
    if (const auto* tabScreen = dynamic_cast<const TabScreen*>(m_pBase)) {
        frame.tabs = tabScreen->titles();
        frame.currentTab = tabScreen->getCurrentTabIndex();
        frame.tabBarFocused = tabScreen->isTabBarFocused();
    }
    if (m_pBase)
        frame.base = paintScreen(*m_pBase);
    // One place has the focus, even where something was selected meanwhile.
    frame.base.highlighted = frame.base.highlighted && !frame.tabBarFocused;
    for (const auto& popup : m_popups)
        frame.popups.push_back(paintScreen(*popup.screen));
    for (auto& softKey : softKeys())
        frame.softKeys.push_back({std::move(softKey.label)});
    frame.systemWindow = m_systemWindow;
    sanitise(frame);
    return frame;
}

void Display::Impl::publish(FrameMoment moment)
{
    if (!m_visible)
        return;
    auto frame = std::make_shared<Frame>(paint());
    // A frame made inside an event may have been withheld: the one after it always goes out.
    const auto wasWithheld = m_lastMoment == FrameMoment::InsideEvent && moment == FrameMoment::AfterEvent;
    if (m_pLastFrame && !wasWithheld && frame->showsTheSameAs(*m_pLastFrame))
        return;
    frame->number = ++m_frameNumber;
    m_pLastFrame = frame;
    m_lastMoment = moment;
    m_host.publish(std::move(frame), moment);
}

Display::Display(DisplayHostIfc& host, const DisplayVariant& variant)
    : m_impl(std::make_unique<Impl>(host, variant))
{
    const UiLock lock;
    Registry::get().displays.push_back(this);
}

Display::~Display()
{
    const UiLock lock;
    std::erase(Registry::get().displays, this);
}

void Display::setCurrent(Displayable* displayable)
{
    const UiLock lock;
    if (!displayable || !Registry::get().isAlive(displayable))
        return;
    if (displayable->isPopup())
        m_impl->raise(*displayable);
    else
        m_impl->setBase(*displayable);
    m_impl->publish(FrameMoment::InsideEvent);
}

Displayable* Display::getCurrent() const
{
    const UiLock lock;
    return m_impl->top();
}

void Display::show()
{
    const UiLock lock;
    if (m_impl->m_visible)
        return;
    m_impl->m_visible = true;
    m_impl->m_pLastFrame.reset();
    m_impl->m_pLastFocus = nullptr;
    m_impl->publish(FrameMoment::InsideEvent);
}

void Display::hide()
{
    const UiLock lock;
    m_impl->m_visible = false;
}

bool Display::hasSoftKeyBar() const
{
    const UiLock lock;
    return m_impl->m_variant.softKeyBar;
}

bool Display::isCurrentForKeyEvents(const Displayable* displayable) const
{
    const UiLock lock;
    return displayable && (displayable == m_impl->top() || displayable == m_impl->innermost());
}

void Display::setSystemWindowSize(int lines)
{
    const UiLock lock;
    m_impl->m_systemWindow.resize(static_cast<std::size_t>(std::clamp(lines, 0, MAX_SYSTEM_WINDOW_LINES)));
}

void Display::setSystemWindowLine(int line, const std::string& text)
{
    const UiLock lock;
    if (line >= 0 && line < static_cast<int>(m_impl->m_systemWindow.size()))
        m_impl->m_systemWindow[static_cast<std::size_t>(line)] = text;
}

bool Display::keyPressed(const Key& key)
{
    const UiLock lock;
    const KeyHost host(m_impl->m_host);
    return m_impl->keyPressed(key);
}

bool Display::closeNotification()
{
    const UiLock lock;
    return m_impl->closeNotification();
}

bool Display::closeNotification(std::uint64_t id)
{
    const UiLock lock;
    return m_impl->top() && m_impl->top()->id() == id && m_impl->closeNotification();
}

void Display::timePassed()
{
    const UiLock lock;
    const auto now = m_impl->m_host.now();
    m_impl->closeOverdue(now);
    if (m_impl->m_pBase)
        m_impl->m_pBase->timePassed(now);
}

void Display::finishTyping()
{
    const UiLock lock;
    if (m_impl->m_pBase)
        m_impl->m_pBase->finishTyping();
}

void Display::eventDone()
{
    const UiLock lock;
    m_impl->publish(FrameMoment::AfterEvent);
}

void Display::repaint()
{
    const UiLock lock;
    m_impl->publish(FrameMoment::AfterEvent);
}

Frame Display::paint() const
{
    const UiLock lock;
    return m_impl->paint();
}

void Display::remove(Displayable& displayable, bool reportEnd)
{
    const UiLock lock;
    m_impl->remove(displayable, reportEnd);
}

bool Display::shows(const Displayable& displayable) const
{
    const UiLock lock;
    return &displayable == m_impl->m_pBase ||
           (m_impl->m_pBase && &displayable == m_impl->m_pBase->innermost()) ||
           std::ranges::find(m_impl->m_popups, &displayable, &Impl::Popup::screen) != m_impl->m_popups.end();
}

void Display::changed()
{
    const UiLock lock;
    m_impl->publish(FrameMoment::InsideEvent);
}

} // namespace DisplayAPI
