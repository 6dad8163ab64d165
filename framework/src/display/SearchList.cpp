#include <framework/display/SearchList.h>

#include <algorithm>

#include <framework/display/Frame.h>
#include <framework/display/PhonebookItem.h>
#include <framework/display/TabScreen.h>
#include <framework/host/EventQueue.h>
#include <framework/host/Key.h>
#include <framework/util/Utf8Utils.h>

#include "MultiTap.h"
#include "PhoneCommands.h"
#include "Registry.h"
#include "Scroll.h"
#include "Text.h"
#include "UiLock.h"

namespace DisplayAPI {

namespace {

// These join the text even where a letter would start a new one.
bool alwaysAppends(const std::string& character)
{
    return character == "*" || character == "#" || character == ",";
}

bool isTextKey(Key::Kind kind)
{
    return kind == Key::Kind::Digit || kind == Key::Kind::Text || kind == Key::Kind::Clear ||
           kind == Key::Kind::ClearAll;
}

} // namespace

class SearchList::Impl {
public:
    explicit Impl(SearchList& list)
        : m_list(list)
    {
    }

    void insert(int index, ListItem* row);
    void remove(int index);
    const ListItem* selectedRow() const
    {
        return exists(m_selected) ? m_rows[at(m_selected)].get() : nullptr;
    }
    bool exists(int index) const { return index >= 0 && index < count(); }
    int count() const { return static_cast<int>(m_rows.size()); }
    static std::size_t at(int index) { return static_cast<std::size_t>(index); }
    void select(int index);

    void paint(FrameScreen& screen, int rows) const;
    bool holdsEntries() const;

    bool textKeyPressed(const Key& key);
    void digitPressed(char digit);
    void enter(const std::string& character);
    void enterBehindPending(const std::string& character);
    bool commit();
    void clearKeyPressed();
    void dropPending();
    void changeText(const std::string& text);
    void tell();
    void selectBeginning();

    bool listKeyPressed(const Key& key);
    bool rowKeyPressed(const Key& key);
    void rowKeyPressedLater(const Key& key);
    void step(int direction);
    bool goToTabBar();

    SearchList& m_list;
    std::vector<std::unique_ptr<ListItem>> m_rows;
    unsigned m_removals = 0; // of rows: after one, another row may have an old one's address
    int m_selected = -1;
    mutable int m_top = 0; // the first row that was visible when it was painted last
    bool m_wrapAround = false;
    bool m_waiting = false;
    bool m_highlighted = true;
    TabScreen* m_pTabScreen = nullptr;
    std::weak_ptr<const void> m_tabScreenAlive;

    std::string m_text;
    std::string m_reported; // what the listener was last told of
    bool m_searchOpen = false;
    bool m_startsNewText = false;
    MultiTap m_multiTap;
    ItemStateListener* m_pItemStateListener = nullptr;
};

void SearchList::Impl::insert(int index, ListItem* row)
{
    if (!row)
        return;
    index = exists(index) ? index : count();
    m_rows.emplace(m_rows.begin() + index, row);
    if (m_selected < 0)
        m_selected = 0;
    else if (index <= m_selected)
        ++m_selected;
}

void SearchList::Impl::remove(int index)
{
    if (!exists(index))
        return;
    m_rows.erase(m_rows.begin() + index);
    ++m_removals;
    if (index < m_selected)
        --m_selected;
    m_selected = std::min(m_selected, count() - 1);
}

void SearchList::Impl::select(int index)
{
    if (!exists(index))
        return;
    m_selected = index;
    m_highlighted = true;
}

void SearchList::Impl::paint(FrameScreen& screen, int rows) const
{
    // A new text is begun by the letter that waits: what stood there is gone with it.
    const auto begins = m_startsNewText && m_multiTap.isPending() && !alwaysAppends(m_multiTap.letter());
    screen.search = begins ? std::string{} : m_text;
    screen.pending = m_multiTap.letter();
    screen.searchOpen = m_searchOpen || !m_text.empty() || m_multiTap.isPending();
    screen.asksForText = m_searchOpen && !holdsEntries();
    screen.highlighted = m_highlighted;
    screen.waiting = m_waiting;
    screen.rowCount = count();
    m_top = scrolled(m_top, m_selected, count(), rows);
    for (int i = m_top; i < std::min(count(), m_top + rows); ++i) {
        const auto& row = *m_rows[at(i)];
        screen.rows.push_back({i, row.getIcon(), row.getText(), {}, i == m_selected});
    }
}

// A lone row may be one of the phonelet's own: its options, or that there is nothing.
bool SearchList::Impl::holdsEntries() const
{
    return count() > 1 || (count() == 1 && dynamic_cast<const PhonebookItem*>(m_rows.front().get()));
}

bool SearchList::Impl::textKeyPressed(const Key& key)
{
    switch (key.kind) {
    case Key::Kind::Digit:
        digitPressed(key.digit);
        return true;
    case Key::Kind::Text:
        enterBehindPending(key.text);
        return true;
    case Key::Kind::Clear:
        clearKeyPressed();
        return true;
    default:
        m_multiTap.take();
        changeText({});
        return true;
    }
}

void SearchList::Impl::digitPressed(char digit)
{
    if (digit == '*' || digit == '#') {
        enterBehindPending(std::string(1, digit));
        return;
    }
    if (!m_multiTap.changesWith(digit))
        commit();
    m_multiTap.press(digit);
}

void SearchList::Impl::enter(const std::string& character)
{
    if (character.empty() || character != sanitised(character))
        return;
    const auto begins = m_startsNewText && !alwaysAppends(character);
    m_startsNewText = false;
    m_text = composed(begins ? character : m_text + character);
    tell();
}

// The listener hears of the letter before it hears of this one: what it is told is what was typed last.
void SearchList::Impl::enterBehindPending(const std::string& character)
{
    if (!commit() || !EventQueue::isQueued(&m_list)) {
        enter(character);
        return;
    }
    EventQueue::post(&m_list, [this, character] {
        const UiLock lock;
        if (!isCovered(m_list))
            enter(character);
    });
}

// Whether a letter was pending.
bool SearchList::Impl::commit()
{
    if (!m_multiTap.isPending())
        return false;
    enter(m_multiTap.take());
    return true;
}

void SearchList::Impl::clearKeyPressed()
{
    if (m_multiTap.isPending())
        m_multiTap.take();
    else
        changeText(m_text.substr(0, letterBefore(m_text, m_text.size())));
}

// What a program changes inside the list's own event answers what was typed before the pending
// letter; any other change takes the letter away.
void SearchList::Impl::dropPending()
{
    if (!EventQueue::isDelivering(&m_list))
        m_multiTap.take();
}

void SearchList::Impl::changeText(const std::string& text)
{
    m_startsNewText = false;
    if (m_text == text)
        return;
    m_text = text;
    tell();
}

void SearchList::Impl::tell()
{
    if (!m_pItemStateListener) {
        selectBeginning();
        return;
    }
    if (!EventQueue::isQueued(&m_list))
        EventQueue::post(static_cast<Item*>(&m_list), m_pItemStateListener);
}

// The first row that begins with the text; the list need not be sorted.
void SearchList::Impl::selectBeginning()
{
    auto wanted = m_text;
    Utf8Utils::normalize(wanted);
    const auto begins = [&wanted](const auto& row) {
        auto text = row->getText();
        Utf8Utils::normalize(text);
        return Utf8Utils::find(text, wanted) == 0;
    };
    const auto found = std::ranges::find_if(m_rows, begins);
    if (!wanted.empty() && found != m_rows.end())
        select(static_cast<int>(found - m_rows.begin()));
}

bool SearchList::Impl::listKeyPressed(const Key& key)
{
    const auto* seen = selectedRow();
    const auto committed = commit();
    m_startsNewText = true;
    switch (key.kind) {
    case Key::Kind::Right:
        return m_list.report(Key::of(Key::Kind::Context));
    case Key::Kind::Up:
    case Key::Kind::Down:
    case Key::Kind::Row:
    case Key::Kind::Ok:
        // What was typed may select another row: that comes first.
        if (key.kind == Key::Kind::Ok && selectedRow() != seen)
            return true; // it only confirms
        if (!committed || !EventQueue::isQueued(&m_list))
            return rowKeyPressed(key);
        rowKeyPressedLater(key);
        return true;
    default:
        return m_list.report(key);
    }
}

bool SearchList::Impl::rowKeyPressed(const Key& key)
{
    switch (key.kind) {
    case Key::Kind::Up:
        if (m_selected <= 0 && goToTabBar())
            return true;
        step(-1);
        return true;
    case Key::Kind::Down:
        step(+1);
        return true;
    case Key::Kind::Row:
        if (key.index == m_selected)
            return m_list.report(PhoneCommands::ok());
        select(key.index);
        return true;
    default:
        return m_list.report(PhoneCommands::ok());
    }
}

void SearchList::Impl::rowKeyPressedLater(const Key& key)
{
    EventQueue::post(&m_list, [this, key, seen = selectedRow(), removals = m_removals] {
        const UiLock lock;
        const auto isSeen = selectedRow() == seen && m_removals == removals;
        const auto onlyConfirms = key.kind == Key::Kind::Ok && !isSeen;
        if (!onlyConfirms && !isCovered(m_list))
            rowKeyPressed(key);
    });
}

void SearchList::Impl::step(int direction)
{
    const auto next = m_selected + direction;
    if (m_wrapAround && count() > 0)
        select((next + count()) % count());
    else
        select(next);
}

bool SearchList::Impl::goToTabBar()
{
    if (m_tabScreenAlive.expired())
        return false;
    m_searchOpen = false;
    m_pTabScreen->enterTabBar();
    return true;
}

SearchList::SearchList()
    : m_impl(std::make_unique<Impl>(*this))
{
}

SearchList::~SearchList()
{
    detach();
}

void SearchList::append(ListItem* row)
{
    const UiLock lock;
    m_impl->insert(m_impl->count(), row);
}

void SearchList::insert(int index, ListItem* row)
{
    const UiLock lock;
    m_impl->insert(index, row);
}

void SearchList::remove(int index)
{
    const UiLock lock;
    m_impl->remove(index);
}

void SearchList::set(int index, int icon, int /*secondIcon*/, const std::string& text, int /*kind*/)
{
    const UiLock lock;
    if (m_impl->exists(index))
        m_impl->m_rows[Impl::at(index)]->set(icon, text);
}

void SearchList::clear()
{
    const UiLock lock;
    m_impl->dropPending();
    m_impl->m_rows.clear();
    ++m_impl->m_removals;
    m_impl->m_selected = -1;
    m_impl->m_text.clear();
    m_impl->m_searchOpen = false;
}

int SearchList::size() const
{
    const UiLock lock;
    return m_impl->count();
}

int SearchList::getSelectedIndex() const
{
    const UiLock lock;
    return m_impl->m_selected;
}

void SearchList::setSelectedIndex(int index)
{
    const UiLock lock;
    m_impl->select(index);
}

std::string SearchList::getText(int index) const
{
    const UiLock lock;
    return m_impl->exists(index) ? m_impl->m_rows[Impl::at(index)]->getText() : std::string{};
}

std::string SearchList::getSearchText() const
{
    const UiLock lock;
    return m_impl->m_text;
}

void SearchList::setSearchText(const std::string& text)
{
    const UiLock lock;
    m_impl->dropPending();
    m_impl->m_text = text;
    if (EventQueue::isDelivering(this))
        m_impl->m_reported = text;
    else if (m_impl->m_reported != text)
        m_impl->tell();
}

void SearchList::showSearchPopup()
{
    const UiLock lock;
    m_impl->m_searchOpen = true;
}

bool SearchList::stopKeypadTimerSaveAndExit()
{
    const UiLock lock;
    return m_impl->commit();
}

void SearchList::setUsedWithTab(bool used, TabScreen* tabScreen)
{
    const UiLock lock;
    m_impl->m_pTabScreen = used ? tabScreen : nullptr;
    m_impl->m_tabScreenAlive = used && tabScreen ? tabScreen->watch() : std::weak_ptr<const void>{};
}

void SearchList::setWrapAround(bool wrap)
{
    const UiLock lock;
    m_impl->m_wrapAround = wrap;
}

void SearchList::setWaitAnimation(bool on)
{
    const UiLock lock;
    if (m_impl->m_waiting == on)
        return;
    m_impl->m_waiting = on;
    publishWhereShown(*this);
}

void SearchList::setSelectionHighlight(bool on)
{
    const UiLock lock;
    m_impl->m_highlighted = on;
}

void SearchList::setItemStateListener(ItemStateListener* listener)
{
    const UiLock lock;
    m_impl->m_pItemStateListener = listener;
}

FrameRole SearchList::role() const
{
    return FrameRole::List;
}

void SearchList::paint(FrameScreen& screen, int rows) const
{
    const UiLock lock;
    screen.title = title().translated();
    m_impl->paint(screen, rows);
}

bool SearchList::keyPressed(const Key& key)
{
    const UiLock lock;
    return isTextKey(key.kind) ? m_impl->textKeyPressed(key) : m_impl->listKeyPressed(key);
}

void SearchList::timePassed(std::chrono::milliseconds now)
{
    const UiLock lock;
    if (m_impl->m_multiTap.isOver(now))
        m_impl->commit();
}

void SearchList::returnedTo()
{
    const UiLock lock;
    m_impl->m_startsNewText = true;
}

void SearchList::tabBarLeft()
{
    const UiLock lock;
    m_impl->m_highlighted = true;
}

void SearchList::reporting()
{
    const UiLock lock;
    m_impl->m_reported = m_impl->m_text;
}

} // namespace DisplayAPI
