// Which PBX the telephone is attached to: the "pbx-..." items of the configuration, understood.

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

class Configuration;

struct PbxSettings {
    std::string host;
    std::uint16_t port = 0;
    std::string device;     // the directory number of the telephone's own device
    bool takesCalls = true; // whether calls are placed over it
    std::chrono::milliseconds requestTimeout{3000};
    // The pause before the first attempt to connect again; each further one is twice as long.
    std::chrono::milliseconds firstPause{1000};
    std::chrono::milliseconds longestPause{60000};
    // How often the PBX is asked how it is.
    std::chrono::milliseconds probeInterval{30000};

    bool operator==(const PbxSettings&) const = default;
};

// Nothing when there is no PBX. What is wrong with the items is in the log.
// [any-thread]
std::optional<PbxSettings> pbxSettingsOf(const Configuration& configuration);

// Whether calls are to be placed over a PBX, however well the configuration says over which.
// [any-thread]
bool takesCallsOverPbx(const Configuration& configuration);
