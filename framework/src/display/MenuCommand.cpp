#include <framework/display/MenuCommand.h>

#include <utility>

#include "UiLock.h"

namespace DisplayAPI {

MenuCommand::MenuCommand(TranslationInfo label)
    : MenuCommand(std::move(label), 0)
{
}

MenuCommand::MenuCommand(TranslationInfo label, int icon)
    : Command(SCREEN, std::move(label))
    , m_icon(icon)
{
}

MenuCommand::~MenuCommand()
{
    expire();
}

void MenuCommand::setImagePath(std::string path)
{
    const UiLock lock;
    m_imagePath = std::move(path);
}

} // namespace DisplayAPI
