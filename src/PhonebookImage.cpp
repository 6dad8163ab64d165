#include "PhonebookImage.h"

#include <utility>

#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/PhonebookImage";
}

DisplayAPI::Image* PhonebookImage::getDisplayImage() const
{
    PB_TRACE("PhonebookImage::getDisplayImage()");
    return m_pDisplayImage.get();
}

void PhonebookImage::setDisplayImage(std::unique_ptr<DisplayAPI::Image> pImage)
{
    PB_TRACE("PhonebookImage::setDisplayImage()");
    m_pDisplayImage = std::move(pImage);
}

DisplayAPI::MenuCommand* PhonebookImage::getSfCommand() const
{
    PB_TRACE("PhonebookImage::getSfCommand()");
    return m_pSfCommand.get();
}

void PhonebookImage::setSfCommand(std::unique_ptr<DisplayAPI::MenuCommand> pCommand)
{
    PB_TRACE("PhonebookImage::setSfCommand()");
    m_pSfCommand = std::move(pCommand);
}
