#include <framework/display/PopupConfirm.h>

#include <utility>

#include <framework/display/Frame.h>
#include <framework/display/MenuCommand.h>

#include "Registry.h"
#include "UiLock.h"

namespace DisplayAPI {

PopupConfirm::PopupConfirm(int /*kind*/) {}

PopupConfirm::~PopupConfirm()
{
    detach();
}

void PopupConfirm::setText(TranslationInfo text)
{
    const UiLock lock;
    m_text = std::move(text);
}

void PopupConfirm::setState(int state)
{
    const UiLock lock;
    m_state = state;
}

void PopupConfirm::addCommand(MenuCommand* command)
{
    m_commands.add(command);
}

void PopupConfirm::clearCommands()
{
    m_commands.clear();
}

void PopupConfirm::dismiss()
{
    const UiLock lock;
    dismissFromDisplays(*this);
}

FrameRole PopupConfirm::role() const
{
    return FrameRole::Question;
}

void PopupConfirm::paint(FrameScreen& screen, int rows) const
{
    const UiLock lock;
    screen.state = m_state;
    screen.title = title().translated();
    screen.text = m_text.translated();
    m_commands.paint(screen, rows);
}

bool PopupConfirm::keyPressed(const Key& key)
{
    const UiLock lock;
    if (auto* chosen = m_commands.keyPressed(key))
        report(*chosen);
    else
        report(key);
    return true;
}

void PopupConfirm::opened()
{
    m_commands.select(0);
}

} // namespace DisplayAPI
