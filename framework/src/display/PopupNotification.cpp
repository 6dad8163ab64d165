#include <framework/display/PopupNotification.h>

#include <utility>

#include <framework/display/Frame.h>

#include "PhoneCommands.h"
#include "Registry.h"
#include "UiLock.h"

namespace DisplayAPI {

PopupNotification::PopupNotification() = default;

PopupNotification::~PopupNotification()
{
    detach();
}

void PopupNotification::setText(TranslationInfo text)
{
    const UiLock lock;
    m_text = std::move(text);
}

void PopupNotification::setType(int type)
{
    const UiLock lock;
    m_type = type;
}

void PopupNotification::setTimeout(unsigned ms)
{
    const UiLock lock;
    m_timeout = std::chrono::milliseconds{ms};
}

void PopupNotification::dismiss()
{
    const UiLock lock;
    dismissFromDisplays(*this);
}

std::chrono::milliseconds PopupNotification::timeout() const
{
    const UiLock lock;
    return m_timeout;
}

FrameRole PopupNotification::role() const
{
    return FrameRole::Notification;
}

void PopupNotification::paint(FrameScreen& screen, int /*rows*/) const
{
    const UiLock lock;
    screen.type = m_type;
    screen.title = title().translated();
    screen.text = m_text.translated();
}

bool PopupNotification::keyPressed(const Key& /*key*/)
{
    return true;
}

void PopupNotification::ended()
{
    report(PhoneCommands::widgetIsHidden());
}

} // namespace DisplayAPI
