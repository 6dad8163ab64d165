#include <framework/display/PopupDialer.h>

#include <utility>

#include <framework/display/Frame.h>
#include <framework/display/MenuCommand.h>
#include <framework/host/EventQueue.h>
#include <framework/host/Key.h>

#include "Registry.h"
#include "Text.h"
#include "UiLock.h"

namespace DisplayAPI {

PopupDialer::PopupDialer(int /*kind*/, int /*lines*/) {}

PopupDialer::~PopupDialer()
{
    detach();
}

void PopupDialer::addCommand(MenuCommand* command)
{
    m_commands.add(command);
}

void PopupDialer::clearCommands()
{
    m_commands.clear();
}

void PopupDialer::showStimulusText(bool show)
{
    const UiLock lock;
    m_stimulusText = show;
}

void PopupDialer::setLine1Prefix(const std::string& prefix)
{
    const UiLock lock;
    m_prefix = prefix;
}

void PopupDialer::setLine1(TranslationInfo text)
{
    const UiLock lock;
    m_line1 = std::move(text);
}

void PopupDialer::setLine2(const std::string& text)
{
    const UiLock lock;
    m_line2 = text;
}

std::string PopupDialer::getLineEditText() const
{
    const UiLock lock;
    return m_edit;
}

void PopupDialer::setText(const std::string& text)
{
    const UiLock lock;
    m_edit = text;
    m_startsNewText = true;
}

void PopupDialer::setEditMode(bool edit)
{
    const UiLock lock;
    m_editMode = edit;
}

void PopupDialer::setNoScroll()
{
    const UiLock lock;
    m_scrolls = false;
}

void PopupDialer::dismiss()
{
    const UiLock lock;
    dismissFromDisplays(*this);
}

void PopupDialer::setItemStateListener(ItemStateListener* listener)
{
    const UiLock lock;
    m_pItemStateListener = listener;
}

FrameRole PopupDialer::role() const
{
    return FrameRole::Dialler;
}

void PopupDialer::paint(FrameScreen& screen, int rows) const
{
    const UiLock lock;
    screen.title = title().translated();
    screen.dialler = {m_prefix, m_line1.translated(), m_line2, m_edit, m_stimulusText, m_editMode, m_scrolls};
    m_commands.paint(screen, rows);
}

bool PopupDialer::keyPressed(const Key& key)
{
    const UiLock lock;
    if (edit(key))
        EventQueue::post(static_cast<Item*>(this), m_pItemStateListener);
    else if (auto* chosen = m_commands.keyPressed(key))
        report(*chosen);
    else
        report(key);
    return true;
}

void PopupDialer::opened()
{
    const UiLock lock;
    m_commands.select(0);
    m_edit.clear();
    m_editMode = false;
    m_startsNewText = false;
}

bool PopupDialer::edit(const Key& key)
{
    const auto before = m_edit;
    switch (key.kind) {
    case Key::Kind::Digit:
        type(std::string(1, key.digit));
        return true;
    case Key::Kind::Text:
        if (!isDialled(key.text))
            return false;
        type(key.text);
        return true;
    case Key::Kind::Clear:
        m_edit.erase(letterBefore(m_edit, m_edit.size()));
        break;
    case Key::Kind::ClearAll:
        m_edit.clear();
        break;
    default:
        return false;
    }
    m_startsNewText = false;
    return m_edit != before;
}

void PopupDialer::type(const std::string& digit)
{
    if (m_startsNewText && !m_editMode)
        m_edit.clear();
    m_startsNewText = false;
    m_edit += digit;
}

} // namespace DisplayAPI
