#include "PbxSettings.h"

#include <charconv>

#include "app/PhoneLog.h"
#include "system/Configuration.h"

namespace {

constexpr char nSOURCE[] = "./phone/calls/pbx/PbxSettings";

// "192.0.2.1:1040", "pbx.example.com:1040", "[2001:db8::1]:1040"
bool takeServer(const std::string& server, PbxSettings& settings)
{
    const auto colon = server.rfind(':');
    if (colon == std::string::npos || colon == 0)
        return false;
    settings.host = server.substr(0, colon);
    if (settings.host.front() == '[' && settings.host.back() == ']')
        settings.host = settings.host.substr(1, settings.host.size() - 2);
    if (settings.host.empty())
        return false;
    const auto* end = server.data() + server.size();
    const auto [stop, error] = std::from_chars(server.data() + colon + 1, end, settings.port);
    return error == std::errc() && stop == end && settings.port != 0;
}

} // namespace

std::optional<PbxSettings> pbxSettingsOf(const Configuration& configuration)
{
    const auto server = configuration.text("pbx-server");
    if (server.empty())
        return std::nullopt;
    PbxSettings settings;
    if (!takeServer(server, settings)) {
        PHONE_ERROR("\"pbx-server\" must be NAME:PORT, and not \"%s\"", server.c_str());
        return std::nullopt;
    }
    settings.device = configuration.text("pbx-device");
    if (settings.device.empty())
        settings.device = configuration.text("localDeviceID");
    if (settings.device.empty()) {
        PHONE_ERROR("\"pbx-device\" must say which device of the PBX this telephone is");
        return std::nullopt;
    }
    settings.takesCalls = takesCallsOverPbx(configuration);
    settings.requestTimeout = std::chrono::seconds(configuration.number("pbx-request-timeout"));
    return settings;
}

// With a line of its own the telephone would not know on which of two to call.
bool takesCallsOverPbx(const Configuration& configuration)
{
    return !configuration.text("pbx-server").empty() && configuration.yes("pbx-calls") &&
           configuration.text("sip-user").empty();
}
