// Sending contacts over Bluetooth.
//
// A contact goes to the device that the configuration names, or to the only one that is paired; else the
// user chooses. Whatever comes of it is told to the observer, and to the log. The contact
// lies in a file of its own, for its owner's eyes only, as long as it is being sent.

#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <framework/services/OBEXServiceIfc.h>

#include "app/EventPoster.h"
#include "system/ObjectPush.h"
#include "system/SendStatus.h"

class ObexService final : public OBEXServiceIfc {
public:
    // The files that are sent are made in `folder`.
    ObexService(EventPoster& events, std::filesystem::path folder, ObjectPush::Buses buses = {});
    ~ObexService() override;

    // False when there is no Bluetooth or no device, and while another contact is being sent: how that
    // one stands is told again.
    bool sendContact(const std::string& name, const std::string& vCard) override;

    // What follows is for the telephone. [event thread]

    // Whether contacts may be sent. Without, the computer's Bluetooth is left alone.
    void setAllowed(bool allowed);
    // Name or address of the device that contacts go to without a question; "" for none.
    void setDevice(std::string device) { m_device = std::move(device); }
    // Whether the computer's Bluetooth is on, as far as is known now.
    bool isActive() const { return m_ready; }
    // Those that are paired, as far as is known now.
    const std::vector<SendDevice>& devices() const { return m_devices; }

    // Sends to one of the devices that are there to be chosen; nothing for another.
    void choose(const std::string& address);
    // Nothing when nothing is being chosen or sent.
    void cancel();
    const SendStatus& status() const { return m_status; }
    // Null: nobody. Not owned.
    void setObserver(SendStatusObserver* observer) { m_pObserver = observer; }

private:
    void push(const SendDevice& device);
    bool writeFile();
    void removeFile();
    bool isBusy() const;
    void finish(SendOutcome outcome, const std::string& detail = "");
    void tell();

    EventPoster& m_events;
    const std::filesystem::path m_folder;
    const ObjectPush::Buses m_buses;
    std::string m_device;
    bool m_ready = false;
    std::vector<SendDevice> m_devices;
    SendStatus m_status;
    std::string m_vCard;
    std::filesystem::path m_file; // while it is there
    SendStatusObserver* m_pObserver = nullptr;
    // Tells an event that is queued that the service, or what posted it, is gone.
    std::shared_ptr<const char> m_alive;
    std::unique_ptr<ObjectPush> m_push; // null while sending is not allowed
};
