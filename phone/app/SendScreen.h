// What the screen shows of a contact that is being sent: which device it is to go to, how it stands, what
// came of it. It stands above the screen of the phonelet in front; without one nothing is shown.
// [event thread]

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <framework/display/ContextMenu.h>
#include <framework/display/Listeners.h>
#include <framework/display/MenuCommand.h>
#include <framework/display/PopupConfirm.h>
#include <framework/display/PopupNotification.h>
#include <framework/display/TranslatorIfc.h>

#include "app/EventPoster.h"
#include "system/SendStatus.h"

namespace DisplayAPI {
class Display;
}

class SendScreen final : public SendStatusObserver, public DisplayAPI::CommandListener {
public:
    struct Parts {
        EventPoster& events;
        const DisplayAPI::TranslatorIfc& translator;
        std::function<DisplayAPI::Display*()> display; // of the phonelet in front; null for none
        std::function<void(const std::string& address)> choose;
        std::function<void()> cancel;
    };

    explicit SendScreen(Parts parts);

    void sendStatusChanged(const SendStatus& status) override;
    void commandAction(DisplayAPI::Command* command, DisplayAPI::Displayable* displayable) override;

private:
    void show(const SendStatus& status);
    void showChoice(const SendStatus& status);
    void showProgress(const SendStatus& status);
    void showEnd(const SendStatus& status);
    void setCurrent(DisplayAPI::Displayable& popup);
    DisplayAPI::TranslationInfo textOf(const SendStatus& status) const;

    const Parts m_parts;
    std::vector<std::string> m_addresses; // of m_devices
    // The popups point at the commands: declared after them, gone before them.
    std::vector<std::unique_ptr<DisplayAPI::MenuCommand>> m_devices;
    DisplayAPI::MenuCommand m_cancel;
    DisplayAPI::ContextMenu m_choice{1};
    DisplayAPI::PopupConfirm m_progress{1};
    DisplayAPI::PopupNotification m_end;
    SendStatus::Phase m_phase = SendStatus::Phase::Idle; // what is shown
    // Tells an event that is queued that the screen is gone.
    std::shared_ptr<const char> m_alive = std::make_shared<const char>();
};
