#include "system/SendStatus.h"

namespace {

std::string endOf(const SendStatus& status)
{
    switch (status.outcome) {
    case SendOutcome::Sent:
        return status.contact + " was sent to " + status.device + ".";
    case SendOutcome::Cancelled:
        return "Sending " + status.contact + " was cancelled.";
    case SendOutcome::Refused:
        return status.device + " refused " + status.contact + ". Accept it there when it asks.";
    case SendOutcome::NotSupported:
        return status.device + " takes no contacts over Bluetooth.";
    case SendOutcome::OutOfRange:
        return status.device + " does not answer. Switch its Bluetooth on and bring it nearer.";
    case SendOutcome::NoDevice:
        return "There is no device to send to. Pair one with this computer first.";
    case SendOutcome::NoService:
        return "This computer's Bluetooth is missing or switched off.";
    case SendOutcome::None:
    case SendOutcome::Failed:
        break;
    }
    return status.contact + " could not be sent.";
}

} // namespace

std::string SendStatus::sentence() const
{
    switch (phase) {
    case Phase::Idle:
        return "";
    case Phase::Choosing:
        return "Which device is to have " + contact + "?";
    case Phase::Connecting:
        return "Connecting to " + device + ".";
    case Phase::Sending:
        return "Sending " + contact + " to " + device + ".";
    case Phase::Over:
        break;
    }
    return endOf(*this);
}
