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

bool SendStatus::namesDevice() const
{
    const bool isOverWithDevice = outcome == SendOutcome::Sent || outcome == SendOutcome::Refused ||
                                  outcome == SendOutcome::NotSupported || outcome == SendOutcome::OutOfRange;
    return phase == Phase::Connecting || phase == Phase::Sending ||
           (phase == Phase::Over && isOverWithDevice);
}

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
