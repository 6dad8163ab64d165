#include <framework/display/TabScreen.h>

#include <algorithm>
#include <utility>

#include <framework/display/Frame.h>
#include <framework/host/Key.h>

#include "PhoneCommands.h"
#include "Registry.h"
#include "UiLock.h"

namespace DisplayAPI {

TabScreen::TabScreen(int /*barRows*/, int /*border*/) {}

TabScreen::~TabScreen()
{
    detach();
}

int TabScreen::addTab(TranslationInfo title, Displayable* displayable)
{
    const UiLock lock;
    m_tabs.emplace_back().title = std::move(title);
    m_tabs.back().show(displayable);
    if (m_current < 0)
        m_current = 0;
    return numberOfTabs() - 1;
}

void TabScreen::removeTab(int index)
{
    const UiLock lock;
    if (!exists(index))
        return;
    m_tabs.erase(m_tabs.begin() + index);
    if (m_current == index)
        m_current = m_tabs.empty() ? -1 : 0;
    else if (m_current > index)
        --m_current;
}

int TabScreen::numberOfTabs() const
{
    const UiLock lock;
    return static_cast<int>(m_tabs.size());
}

int TabScreen::getCurrentTabIndex() const
{
    const UiLock lock;
    return m_current;
}

void TabScreen::setCurrentTabIndex(int index)
{
    const UiLock lock;
    if (exists(index))
        m_current = index;
}

void TabScreen::nextTab()
{
    const UiLock lock;
    if (!m_tabs.empty())
        m_current = (m_current + 1) % numberOfTabs();
}

void TabScreen::previousTab()
{
    const UiLock lock;
    if (!m_tabs.empty())
        m_current = (m_current + numberOfTabs() - 1) % numberOfTabs();
}

void TabScreen::leaveTabBar()
{
    const UiLock lock;
    if (!m_barFocused)
        return;
    m_barFocused = false;
    for (const auto& tab : m_tabs) {
        if (auto* content = tab.content())
            content->tabBarLeft();
    }
    report(PhoneCommands::tabBarLeft());
}

bool TabScreen::isTabBarFocused() const
{
    const UiLock lock;
    return m_barFocused;
}

void TabScreen::setCurrentDisplayable(Displayable* displayable)
{
    const UiLock lock;
    setDisplayable(m_current, displayable);
}

void TabScreen::setDisplayable(int index, Displayable* displayable)
{
    const UiLock lock;
    if (exists(index))
        m_tabs[static_cast<std::size_t>(index)].show(displayable);
}

Displayable* TabScreen::getDisplayable(int index) const
{
    const UiLock lock;
    return exists(index) ? m_tabs[static_cast<std::size_t>(index)].content() : nullptr;
}

Displayable* TabScreen::getCurrentDisplayable() const
{
    const UiLock lock;
    return getDisplayable(m_current);
}

std::vector<std::string> TabScreen::titles() const
{
    const UiLock lock;
    std::vector<std::string> titles;
    for (const auto& tab : m_tabs)
        titles.push_back(tab.title.translated());
    return titles;
}

void TabScreen::enterTabBar()
{
    const UiLock lock;
    if (m_barFocused)
        return;
    m_barFocused = true;
    report(PhoneCommands::tabBarEntered());
}

Displayable* TabScreen::innermost()
{
    const UiLock lock;
    auto* content = getCurrentDisplayable();
    return content ? content->innermost() : this;
}

void TabScreen::paint(FrameScreen& screen, int rows) const
{
    const UiLock lock;
    if (const auto* content = getCurrentDisplayable())
        content->paint(screen, rows);
    else
        screen.title = title().translated();
}

bool TabScreen::keyPressed(const Key& key)
{
    const UiLock lock;
    if (key.kind == Key::Kind::Tab) {
        tabPointedAt(key.index);
        return true;
    }
    if (m_barFocused && barKeyPressed(key))
        return true;
    if (auto* content = getCurrentDisplayable())
        return content->keyPressed(key);
    if (key.kind == Key::Kind::Up && !m_tabs.empty()) {
        enterTabBar();
        return true;
    }
    return false;
}

void TabScreen::timePassed(std::chrono::milliseconds now)
{
    const UiLock lock;
    for (const auto& tab : m_tabs) {
        if (auto* content = tab.content())
            content->timePassed(now);
    }
}

void TabScreen::Tab::show(Displayable* content)
{
    const auto known = content && Registry::get().isAlive(content);
    displayable = known ? content : nullptr;
    alive = known ? content->watch() : std::weak_ptr<const void>{};
}

Displayable* TabScreen::Tab::content() const
{
    return alive.expired() ? nullptr : displayable;
}

bool TabScreen::exists(int index) const
{
    return index >= 0 && index < static_cast<int>(m_tabs.size());
}

// Whether the bar consumed the key. Any that it does not consume leaves it and is the content's.
bool TabScreen::barKeyPressed(const Key& key)
{
    switch (key.kind) {
    case Key::Kind::Left:
        report(PhoneCommands::tabPrevious());
        return true;
    case Key::Kind::Right:
        report(PhoneCommands::tabNext());
        return true;
    case Key::Kind::Up:
        return true;
    case Key::Kind::Down:
    case Key::Kind::Ok:
        leaveTabBar();
        return true;
    default:
        leaveTabBar();
        return false;
    }
}

// Stepping is the phonelet's: each step is one command, the shorter way round.
void TabScreen::tabPointedAt(int index)
{
    if (!exists(index))
        return;
    finishTyping(); // it is heard of in its own tab
    const auto count = numberOfTabs();
    const auto forward = (index - m_current + count) % count;
    const auto backward = count - forward;
    auto& step = forward <= backward ? PhoneCommands::tabNext() : PhoneCommands::tabPrevious();
    for (int i = 0; i < std::min(forward, backward); ++i)
        report(step);
}

} // namespace DisplayAPI
