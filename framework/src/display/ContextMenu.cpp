#include <framework/display/ContextMenu.h>

#include <utility>

#include <framework/display/Frame.h>
#include <framework/display/MenuCommand.h>

#include "Registry.h"
#include "UiLock.h"

namespace DisplayAPI {

ContextMenu::ContextMenu(int /*kind*/) {}

ContextMenu::~ContextMenu()
{
    detach();
}

void ContextMenu::addCommand(MenuCommand* command)
{
    m_commands.add(command);
}

void ContextMenu::clearCommands()
{
    const UiLock lock;
    m_commands.clear();
    m_image.clear();
    setTitle({});
}

void ContextMenu::setImage(std::string path)
{
    const UiLock lock;
    m_image = std::move(path);
}

void ContextMenu::dismiss()
{
    const UiLock lock;
    dismissFromDisplays(*this);
}

FrameRole ContextMenu::role() const
{
    return FrameRole::Menu;
}

void ContextMenu::paint(FrameScreen& screen, int rows) const
{
    const UiLock lock;
    screen.title = title().translated();
    screen.image = m_image;
    m_commands.paint(screen, rows);
}

bool ContextMenu::keyPressed(const Key& key)
{
    const UiLock lock;
    if (auto* chosen = m_commands.keyPressed(key))
        report(*chosen);
    else
        report(key);
    return true;
}

void ContextMenu::opened()
{
    m_commands.select(0);
}

} // namespace DisplayAPI
