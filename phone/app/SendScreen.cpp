#include "app/SendScreen.h"

#include <utility>

#include <framework/display/Display.h>

using DisplayAPI::MenuCommand;
using DisplayAPI::TranslationInfo;

namespace {

constexpr unsigned nEND_SHOWN_MS = 5000;

} // namespace

SendScreen::SendScreen(Parts parts)
    : m_parts(std::move(parts))
    , m_cancel(TranslationInfo("cancel", &m_parts.translator))
{
    m_choice.setCommandListener(this);
    m_progress.setCommandListener(this);
    m_progress.addCommand(&m_cancel);
    m_end.setTimeout(nEND_SHOWN_MS);
}

// It may be the phonelet itself that sends: what it does to its screen then comes first.
void SendScreen::sendStatusChanged(const SendStatus& status)
{
    m_parts.events.post("sending shown", [this, alive = std::weak_ptr(m_alive), status] {
        if (!alive.expired())
            show(status);
    });
}

void SendScreen::show(const SendStatus& status)
{
    const bool isNew = std::exchange(m_phase, status.phase) != status.phase;
    switch (status.phase) {
    case SendStatus::Phase::Idle:
        break;
    case SendStatus::Phase::Choosing:
        showChoice(status);
        break;
    case SendStatus::Phase::Connecting:
    case SendStatus::Phase::Sending:
        if (isNew || status.isAskedFor)
            showProgress(status);
        break;
    case SendStatus::Phase::Over:
        showEnd(status);
        break;
    }
}

void SendScreen::showChoice(const SendStatus& status)
{
    m_choice.clearCommands();
    m_devices.clear();
    m_addresses.clear();
    m_choice.setTitle(textOf(status));
    for (const auto& device : status.devices) {
        m_addresses.push_back(device.address);
        m_devices.push_back(std::make_unique<MenuCommand>(TranslationInfo::plain(device.name)));
        m_choice.addCommand(m_devices.back().get());
    }
    setCurrent(m_choice);
}

void SendScreen::showProgress(const SendStatus& status)
{
    m_choice.dismiss();
    m_progress.setText(textOf(status));
    if (status.phase == SendStatus::Phase::Connecting || status.isAskedFor)
        setCurrent(m_progress);
}

void SendScreen::showEnd(const SendStatus& status)
{
    m_choice.dismiss();
    m_progress.dismiss();
    const bool isWanted = status.outcome == SendOutcome::Sent || status.outcome == SendOutcome::Cancelled;
    m_end.setType(isWanted ? DisplayAPI::PopupNotification::SUCCESS : DisplayAPI::PopupNotification::ERROR);
    m_end.setText(textOf(status));
    setCurrent(m_end);
}

void SendScreen::setCurrent(DisplayAPI::Displayable& popup)
{
    if (auto* display = m_parts.display())
        display->setCurrent(&popup);
}

TranslationInfo SendScreen::textOf(const SendStatus& status) const
{
    if (!status.namesDevice())
        return {status.text(), &m_parts.translator};
    return {status.text(), &m_parts.translator, status.device};
}

void SendScreen::commandAction(DisplayAPI::Command* command, DisplayAPI::Displayable* displayable)
{
    for (std::size_t i = 0; i < m_devices.size(); ++i) {
        if (command == m_devices[i].get()) {
            m_parts.choose(m_addresses[i]);
            return;
        }
    }
    const bool isBack = command->getCommandType() == DisplayAPI::Command::BACK;
    if (command == &m_cancel || (isBack && (displayable == &m_choice || displayable == &m_progress)))
        m_parts.cancel();
}
