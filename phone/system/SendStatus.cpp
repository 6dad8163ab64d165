#include "system/SendStatus.h"

namespace {

const char* textOf(SendOutcome outcome)
{
    switch (outcome) {
    case SendOutcome::Sent:
        return "phone.send.sent";
    case SendOutcome::Cancelled:
        return "phone.send.cancelled";
    case SendOutcome::Refused:
        return "phone.send.refused";
    case SendOutcome::NotSupported:
        return "phone.send.notSupported";
    case SendOutcome::OutOfRange:
        return "phone.send.outOfRange";
    case SendOutcome::NoDevice:
        return "phone.send.noDevice";
    case SendOutcome::NoService:
        return "phone.send.noService";
    case SendOutcome::None:
    case SendOutcome::Failed:
        break;
    }
    return "phone.send.failed";
}

} // namespace

std::string SendStatus::text() const
{
    switch (phase) {
    case Phase::Idle:
        return "";
    case Phase::Choosing:
        return "phone.send.choose";
    case Phase::Connecting:
        return "phone.send.connecting";
    case Phase::Sending:
        return "phone.send.sending";
    case Phase::Over:
        break;
    }
    return textOf(outcome);
}
