#include <framework/display/TextField.h>

#include <algorithm>
#include <utility>

#include <framework/display/Command.h>
#include <framework/display/Frame.h>
#include <framework/host/EventQueue.h>
#include <framework/host/Key.h>

#include "MultiTap.h"
#include "Text.h"
#include "UiLock.h"

namespace DisplayAPI {

namespace {

constexpr int NO_LIMIT = -1;

bool isEditingKey(Key::Kind kind)
{
    switch (kind) {
    case Key::Kind::Digit:
    case Key::Kind::Text:
    case Key::Kind::Left:
    case Key::Kind::Right:
    case Key::Kind::Clear:
    case Key::Kind::ClearAll:
        return true;
    default:
        return false;
    }
}

} // namespace

class TextField::Impl {
public:
    FieldReaction edit(const Key& key);
    FieldReaction digitPressed(char digit);
    FieldReaction changeLetters();
    MultiTap::Case nextCase() const;
    FrameField::Letters usualLetters() const
    {
        return m_type == TextField::EMAIL ? FrameField::Letters::Small : FrameField::Letters::Words;
    }
    FieldReaction enter(const std::string& typed);
    FieldReaction commit();
    FieldReaction erase(std::size_t from, std::size_t to);
    bool hasRoomFor(const std::string& text) const;

    std::string m_text;
    std::size_t m_cursor = 0; // in bytes
    int m_maxLength = NO_LIMIT;
    int m_type = TextField::TEXT;
    FrameField::Letters m_letters = FrameField::Letters::Words;
    int m_icon = 0;
    bool m_readOnly = false;
    bool m_notifyOnOk = true;
    Command* m_pOkCommand = nullptr;
    std::weak_ptr<const void> m_okCommandAlive;
    MultiTap m_multiTap;
};

FieldReaction TextField::Impl::edit(const Key& key)
{
    if (key.kind == Key::Kind::Digit)
        return digitPressed(key.digit);
    if (m_multiTap.isPending() && (key.kind == Key::Kind::Clear || key.kind == Key::Kind::ClearAll)) {
        m_multiTap.take();
        return key.kind == Key::Kind::Clear ? FieldReaction::Silent : erase(0, m_text.size());
    }

    const auto committed = commit();
    switch (key.kind) {
    case Key::Kind::Text:
        return std::max(committed, enter(key.text));
    case Key::Kind::Left:
        m_cursor = letterBefore(m_text, m_cursor);
        return committed;
    case Key::Kind::Right:
        // It only confirms a pending letter: the cursor is behind it then.
        if (committed != FieldReaction::Changed)
            m_cursor = letterAfter(m_text, m_cursor);
        return committed;
    case Key::Kind::Clear:
        return erase(letterBefore(m_text, m_cursor), m_cursor);
    default:
        return erase(0, m_text.size());
    }
}

FieldReaction TextField::Impl::digitPressed(char digit)
{
    if (m_type == TextField::NUMBER)
        return enter(std::string(1, digit));
    if (digit == '#')
        return changeLetters();
    const auto changes = m_multiTap.changesWith(digit);
    const auto reaction = changes ? FieldReaction::Silent : commit();
    if (changes || hasRoomFor(m_text + digit))
        m_multiTap.press(digit, nextCase());
    return reaction;
}

FieldReaction TextField::Impl::changeLetters()
{
    using Letters = FrameField::Letters;
    switch (m_letters) {
    case Letters::Words:
        m_letters = Letters::Small;
        break;
    case Letters::Small:
        m_letters = Letters::Capitals;
        break;
    case Letters::Capitals:
        m_letters = Letters::Words;
        break;
    }
    return commit();
}

MultiTap::Case TextField::Impl::nextCase() const
{
    using Letters = FrameField::Letters;
    const bool beginsWord = m_cursor == 0 || m_text[m_cursor - 1] == ' ' || m_text[m_cursor - 1] == '-';
    const bool capital = m_letters == Letters::Capitals || (m_letters == Letters::Words && beginsWord);
    return capital ? MultiTap::Case::Capital : MultiTap::Case::Small;
}

FieldReaction TextField::Impl::enter(const std::string& typed)
{
    if (typed.empty() || typed != sanitised(typed) || (m_type == TextField::NUMBER && !isDialled(typed)))
        return FieldReaction::Silent;
    const auto left = composed(m_text.substr(0, m_cursor) + typed);
    const auto text = left + m_text.substr(m_cursor);
    if (!hasRoomFor(text))
        return FieldReaction::Silent;
    m_text = text;
    m_cursor = left.size();
    return FieldReaction::Changed;
}

bool TextField::Impl::hasRoomFor(const std::string& text) const
{
    // A text that was set may be longer than the limit; a mark that joins a letter takes no room.
    return m_maxLength == NO_LIMIT || characters(text) <= std::max(m_maxLength, characters(m_text));
}

FieldReaction TextField::Impl::commit()
{
    return enter(m_multiTap.take());
}

FieldReaction TextField::Impl::erase(std::size_t from, std::size_t to)
{
    if (from == to)
        return FieldReaction::Silent;
    m_text.erase(from, to - from);
    m_cursor = from;
    return FieldReaction::Changed;
}

TextField::TextField(TranslationInfo label)
    : Field(std::move(label))
    , m_impl(std::make_unique<Impl>())
{
}

TextField::~TextField()
{
    expire();
}

std::string TextField::getString() const
{
    const UiLock lock;
    return m_impl->m_text;
}

void TextField::setString(const std::string& text)
{
    const UiLock lock;
    // What is set inside the field's own event answers what was typed before the pending letter.
    if (!EventQueue::isDelivering(this)) {
        m_impl->m_multiTap.take();
        m_impl->m_letters = m_impl->usualLetters();
    }
    m_impl->m_text = text;
    m_impl->m_cursor = text.size();
}

void TextField::setMaxLength(unsigned characters)
{
    const UiLock lock;
    m_impl->m_maxLength = std::in_range<int>(characters) ? static_cast<int>(characters) : NO_LIMIT;
}

void TextField::setFieldType(int type)
{
    const UiLock lock;
    m_impl->m_type = type;
    m_impl->m_letters = m_impl->usualLetters();
}

void TextField::setIcon(int icon)
{
    const UiLock lock;
    m_impl->m_icon = icon;
}

void TextField::setReadOnly(bool readOnly)
{
    const UiLock lock;
    m_impl->m_readOnly = readOnly;
}

void TextField::setOkCommand(Command* command)
{
    const UiLock lock;
    m_impl->m_pOkCommand = command;
    m_impl->m_okCommandAlive = command ? command->watch() : std::weak_ptr<const void>{};
}

Command* TextField::getOkCommand() const
{
    const UiLock lock;
    return m_impl->m_okCommandAlive.expired() ? nullptr : m_impl->m_pOkCommand;
}

void TextField::setNotifyOnOk(bool notify)
{
    const UiLock lock;
    m_impl->m_notifyOnOk = notify;
}

void TextField::paint(FrameField& field) const
{
    const UiLock lock;
    const auto left = m_impl->m_text.substr(0, m_impl->m_cursor) + m_impl->m_multiTap.letter();
    field.kind = m_impl->m_type == NUMBER ? FrameField::Kind::Number : FrameField::Kind::Text;
    field.letters = m_impl->m_letters;
    field.icon = m_impl->m_icon;
    field.label = label().translated();
    field.value = left + m_impl->m_text.substr(m_impl->m_cursor);
    field.cursor = m_impl->m_readOnly ? -1 : characters(left);
    field.maxLength = m_impl->m_maxLength;
    field.readOnly = m_impl->m_readOnly;
}

FieldReaction TextField::keyPressed(const Key& key)
{
    const UiLock lock;
    if (key.kind == Key::Kind::Ok)
        return m_impl->m_notifyOnOk ? FieldReaction::Ok : FieldReaction::Silent;
    if (!isEditingKey(key.kind))
        return FieldReaction::NotMine;
    return m_impl->m_readOnly ? FieldReaction::Silent : m_impl->edit(key);
}

FieldReaction TextField::timePassed(std::chrono::milliseconds now)
{
    const UiLock lock;
    return m_impl->m_multiTap.isOver(now) ? m_impl->commit() : FieldReaction::Silent;
}

FieldReaction TextField::commit()
{
    const UiLock lock;
    return m_impl->commit();
}

} // namespace DisplayAPI
