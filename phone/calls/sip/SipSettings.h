// How the telephone's SIP line works: the "sip-..." items of the configuration, understood.
//
// A line needs two or three of them: "sip-user", "sip-server" and a password (see SipPassword.h). Without
// a registrar, "sip-outbound-proxy" says where calls go.

#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "calls/sip/SipUri.h"

class Configuration;

enum class SipTransport { Udp, Tcp, Tls };

enum class SipSound {
    Devices, // the computer's microphone and loudspeaker
    None,    // nothing is heard, and the peer hears itself
};

struct SipSettings {
    std::string user; // the line's number
    std::optional<SipHost> registrar;
    std::optional<SipHost> outboundProxy; // where everything is sent
    SipTransport transport = SipTransport::Udp;
    std::string displayName;
    std::string authUser; // whom the password belongs to
    std::string pickupCode = "*8";
    // How long a call rings before the telephone gives it up.
    std::chrono::milliseconds noAnswerTime{60000};
    // How long a registration is good for.
    std::chrono::seconds registrationTime{300};
    SipSound sound = SipSound::None;
    int port = 0; // on which calls come in; 0 for any that is free
    std::filesystem::path profile;
    // How long it takes until an engine that ended is started again; doubled each time, up to a minute.
    std::chrono::milliseconds restartDelay{1000};
    // How long the engine may take to start, and to answer.
    std::chrono::milliseconds enginePatience{5000};
    // How long it takes until the registrar is asked again that could not be reached.
    std::chrono::milliseconds retryDelay{30000};
    // How long a password that was refused is not shown again; the registrar may have been wrong.
    std::chrono::milliseconds refusedFor{std::chrono::minutes(15)};

    // Where calls go when their number does not say so.
    SipHost domain() const;
    // Where everything is sent first.
    SipHost nextHop() const;
    // Those that get to see the password.
    std::vector<std::string> passwordHosts() const;

    bool operator==(const SipSettings&) const = default;
};

struct SipSetup {
    SipSettings settings;
    // What is wrong, each a sentence that names the item to change. The settings are only to be used
    // when there is none.
    std::vector<std::string> faults;
    // Whether a line is asked for at all.
    bool wanted = false;

    bool usable() const { return wanted && faults.empty(); }
};

// Whether there is a device for sound in `folder` that this user may open. [any-thread]
bool hasSoundDevices(const std::filesystem::path& folder);

// A password that was kept for another registrar is forgotten here.
// [any-thread]
SipSetup sipSettingsOf(const Configuration& configuration, const std::filesystem::path& profile);
