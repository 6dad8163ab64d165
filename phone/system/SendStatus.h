// How the sending of a contact stands, for the screen.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SendDevice {
    std::string address;
    std::string name;

    bool operator==(const SendDevice&) const = default;
};

enum class SendOutcome {
    None, // it is under way, or nothing was sent yet
    Sent,
    Cancelled,
    Refused,      // the device did not want it
    NotSupported, // the device takes no contacts
    OutOfRange,   // it does not answer, or went away
    NoDevice,     // none is paired
    NoService,    // the computer has no Bluetooth, or it is switched off
    Failed,       // none of these
};

struct SendStatus {
    enum class Phase {
        Idle,
        Choosing, // ObexService::choose() or cancel() is next
        Connecting,
        Sending,
        Over, // see the outcome
    };

    Phase phase = Phase::Idle;
    SendOutcome outcome = SendOutcome::None;
    std::string contact;             // its file's name
    std::string device;              // its name, from Connecting on
    std::vector<SendDevice> devices; // while Choosing
    std::uint64_t sent = 0;          // bytes
    std::uint64_t size = 0;          // 0: unknown
    bool isAskedFor = false;         // nothing is new, but the user wants to send and has to wait

    // A text's key, what happened and what to do; "" when Idle.
    std::string text() const;
    // Whether that text has the device as its parameter.
    bool namesDevice() const;
};

class SendStatusObserver {
public:
    virtual ~SendStatusObserver() = default;
    // [event thread]
    virtual void sendStatusChanged(const SendStatus& status) = 0;
};
