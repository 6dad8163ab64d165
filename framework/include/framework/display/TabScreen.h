// A base screen with tabs. Each tab has a title and may show one displayable.
//
// Tab indices are ints; one that does not exist (-1 included) is ignored. Stepping wraps around.
// Contents are not owned. Selecting by program raises no event.
// [phonelet-thread]

#pragma once

#include <memory>
#include <string>
#include <vector>

#include <framework/display/Displayable.h>

namespace DisplayAPI {

class FRAMEWORK_API TabScreen final : public Displayable {
public:
    // Rows of the tab bar, and its border: 2 and 1; they make no difference.
    TabScreen(int barRows, int border);
    ~TabScreen() override;

    // Appends a tab, with content or null, and returns its index. The first one is current.
    int addTab(TranslationInfo title, Displayable* displayable);
    // Removing the current tab selects tab 0; tabs behind the removed one move up.
    void removeTab(int index);
    int numberOfTabs() const;

    // -1 only while there is no tab.
    int getCurrentTabIndex() const;
    void setCurrentTabIndex(int index);
    void nextTab();
    void previousTab();

    // Takes the focus out of the tab bar; reports TAB_BAR_LEFT if it was there.
    void leaveTabBar();
    bool isTabBarFocused() const;

    // What the current tab, or tab `index`, shows; null for nothing.
    void setCurrentDisplayable(Displayable* displayable);
    void setDisplayable(int index, Displayable* displayable);
    Displayable* getDisplayable(int index) const;
    Displayable* getCurrentDisplayable() const;

    // For the display.
    std::vector<std::string> titles() const;
    void enterTabBar();
    Displayable* innermost() override;
    void paint(FrameScreen& screen, int rows) const override;
    bool keyPressed(const Key& key) override;
    void timePassed(std::chrono::milliseconds now) override;

private:
    struct Tab {
        TranslationInfo title;
        Displayable* displayable = nullptr;
        std::weak_ptr<const void> alive;

        void show(Displayable* content);
        Displayable* content() const;
    };

    bool exists(int index) const;
    bool barKeyPressed(const Key& key);
    void tabPointedAt(int index);

    std::vector<Tab> m_tabs;
    int m_current = -1;
    bool m_barFocused = false;
};

} // namespace DisplayAPI
