#include "system/ObexService.h"

#include "app/PhoneLog.h"

namespace {
constexpr char nSOURCE[] = "./phone/system/ObexService";
} // namespace

bool ObexService::sendContact(const std::string& name, const std::string&)
{
    PHONE_REFUSED("%s was not sent: this telephone has no Bluetooth", name.c_str());
    return false;
}
