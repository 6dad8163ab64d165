// A list of any number of rows with a search field over it. Appending costs O(1), painting the
// visible rows only.
//
// The list remembers the text that its listener was last told of. What the user does to the
// field is one item event. setSearchText() while this list's own item event is being delivered
// updates that memory silently; at any other time it raises one item event (one pending at most)
// if the text differs from the memory. clear() empties rows and text, raises nothing and leaves
// the memory as it is. A list without a listener for its items searches by itself: the first row that
// begins with the text is selected.
//
// A letter of the digit keys becomes part of the text when it is committed: by another key, by
// time, or by stopKeypadTimerSaveAndExit(); what the other key enters joins it when the listener has heard
// of it. The first letter after an arrow, OK, the context key,
// Back or a return to the list (from another screen, tab, menu or question) starts a new text; `*`,
// `#` and `,` always append; the clear key deletes one character, held down all. A pending letter is
// committed before OK acts; when that moves the selection, OK only confirms the letter: nothing is dialled
// that was not to be seen.
//
// Row indices outside the list (-1 included) are ignored; insert is clamped to the end; reading
// them gives "".
// [phonelet-thread]

#pragma once

#include <chrono>
#include <memory>
#include <string>

#include <framework/display/Displayable.h>
#include <framework/display/Item.h>
#include <framework/display/ListItem.h>

namespace DisplayAPI {

class ItemStateListener;
class TabScreen;

class FRAMEWORK_API SearchList final : public Displayable, public Item {
public:
    SearchList();
    ~SearchList() override;

    // The list takes ownership of the row. The first row is selected.
    void append(ListItem* row);
    void insert(int index, ListItem* row);
    void remove(int index);
    // Relabels a row in place. `icon` is a DisplayIcon; `secondIcon` and `kind` change nothing.
    void set(int index, int icon, int secondIcon, const std::string& text, int kind);
    void clear();
    int size() const;

    // -1 only while the list is empty.
    int getSelectedIndex() const;
    void setSelectedIndex(int index);
    std::string getText(int index) const;

    // Committed text only.
    std::string getSearchText() const;
    void setSearchText(const std::string& text);
    // Opens the search field, even over an empty text; it closes with clear() and when the tab bar
    // gets the focus. It is part of the list, not a popup, and may be opened while the list is not
    // to be seen.
    void showSearchPopup();
    // Commits a pending letter and closes multi-tap input; true when a letter was pending. Its
    // one item event is then in the queue.
    bool stopKeypadTimerSaveAndExit();

    // Up on the first row goes to the tab bar of `tabScreen`.
    void setUsedWithTab(bool used, TabScreen* tabScreen);
    void setWrapAround(bool wrap);
    void setWaitAnimation(bool on);
    // Off while the tab bar has the focus. It comes back by itself when the bar is left or a row
    // is selected.
    void setSelectionHighlight(bool on);
    void setItemStateListener(ItemStateListener* listener);

    // For the display and the event queue.
    FrameRole role() const override;
    void paint(FrameScreen& screen, int rows) const override;
    bool keyPressed(const Key& key) override;
    void timePassed(std::chrono::milliseconds now) override;
    void returnedTo() override;
    void tabBarLeft() override;
    void reporting() override;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace DisplayAPI
