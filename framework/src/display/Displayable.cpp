#include <framework/display/Displayable.h>

#include <utility>

#include <framework/display/Frame.h>
#include <framework/host/EventQueue.h>
#include <framework/host/Key.h>

#include "PhoneCommands.h"
#include "Registry.h"
#include "UiLock.h"

namespace DisplayAPI {

namespace {

std::uint64_t nextId()
{
    static std::uint64_t last = 0; // guarded by the UiLock
    return ++last;
}

} // namespace

Displayable::Displayable()
{
    const UiLock lock;
    m_id = nextId();
    Registry::get().screens.insert(this);
}

Displayable::~Displayable()
{
    detach();
}

void Displayable::setCommandListener(CommandListener* listener)
{
    const UiLock lock;
    m_pCommandListener = listener;
}

CommandListener* Displayable::getCommandListener() const
{
    const UiLock lock;
    return m_pCommandListener;
}

void Displayable::setTitle(TranslationInfo title)
{
    const UiLock lock;
    m_title = std::move(title);
}

FrameRole Displayable::role() const
{
    return FrameRole::None;
}

void Displayable::timePassed(std::chrono::milliseconds) {}

void Displayable::finishTyping()
{
    timePassed(std::chrono::milliseconds::max());
}

bool Displayable::report(Command& command)
{
    EventQueue::post(&command, this, m_pCommandListener);
    return m_pCommandListener != nullptr;
}

bool Displayable::report(const Key& key)
{
    switch (key.kind) {
    case Key::Kind::Ok:
        return report(PhoneCommands::ok());
    case Key::Kind::Back:
        return report(PhoneCommands::back());
    case Key::Kind::Save:
        return report(PhoneCommands::save());
    case Key::Kind::Context:
        return report(PhoneCommands::right());
    default:
        return false;
    }
}

void Displayable::detach()
{
    const UiLock lock;
    expire();
    dismissFromDisplays(*this);
    Registry::get().screens.erase(this);
}

} // namespace DisplayAPI
