#include "calls/sip/SipSettings.h"

#include <map>

#include <unistd.h>

#include "calls/sip/BaresipConfig.h"
#include "calls/sip/SipPassword.h"
#include "system/Configuration.h"

namespace {

constexpr char nSOUND_DEVICES[] = "/dev/snd";

SipSound soundOf(const std::string& wish)
{
    const bool devices = wish == "devices" || (wish == "auto" && hasSoundDevices(nSOUND_DEVICES));
    return devices ? SipSound::Devices : SipSound::None;
}

class Reader {
public:
    Reader(const Configuration& configuration, const std::filesystem::path& profile)
        : m_configuration(configuration)
    {
        m_setup.settings.profile = profile;
    }

    SipSetup read()
    {
        auto& settings = m_setup.settings;
        settings.user = m_configuration.text("sip-user");
        m_setup.wanted = !settings.user.empty();
        if (!m_setup.wanted) {
            refuse("There is no line: name it in \"sip-user\".");
            return std::move(m_setup);
        }
        readHosts();
        readNames();
        readRest();
        return std::move(m_setup);
    }

private:
    void refuse(std::string sentence) { m_setup.faults.push_back(std::move(sentence)); }

    void readHosts()
    {
        auto& settings = m_setup.settings;
        settings.registrar = hostIn("sip-server");
        settings.outboundProxy = hostIn("sip-outbound-proxy");
        if (m_setup.faults.empty() && !settings.registrar && !settings.outboundProxy)
            refuse(
                "Nothing says where calls go: name the line's registrar in \"sip-server\", or whom calls are "
                "sent to in \"sip-outbound-proxy\".");
        if (settings.registrar)
            SipPassword(settings.profile).forgetUnlessFor(settings.passwordHosts());
    }

    std::optional<SipHost> hostIn(const std::string& item)
    {
        const auto text = m_configuration.text(item);
        if (text.empty())
            return std::nullopt;
        auto host = sipHostOf(text);
        if (!host)
            refuse("\"" + text + "\" in \"" + item +
                   "\" is no server: write NAME or NAME:PORT, an IPv6 address "
                   "in brackets.");
        return host;
    }

    void readNames()
    {
        auto& settings = m_setup.settings;
        settings.displayName = m_configuration.text("sip-display-name");
        settings.authUser = m_configuration.text("sip-auth-user");
        if (settings.authUser.empty())
            settings.authUser = settings.user;
        if (!isSipUser(settings.user))
            refuse("\"sip-user\" is no number or name of a line: letters, digits and + - _ . * # only.");
        if (!canStandInAccount(settings.authUser))
            refuse("\"sip-auth-user\" cannot have a \" in it, nor end with a \\.");
    }

    void readRest()
    {
        const std::map<std::string, SipTransport> transports{
            {"udp", SipTransport::Udp}, {"tcp", SipTransport::Tcp}, {"tls", SipTransport::Tls}};
        auto& settings = m_setup.settings;
        settings.transport = transports.at(m_configuration.text("sip-transport"));
        settings.pickupCode = m_configuration.text("sip-pickup-code");
        settings.noAnswerTime = std::chrono::seconds(m_configuration.number("sip-no-answer-time"));
        settings.registrationTime = std::chrono::seconds(m_configuration.number("sip-registration-time"));
        settings.sound = soundOf(m_configuration.text("sip-audio"));
        settings.port = m_configuration.number("sip-port");
    }

    const Configuration& m_configuration;
    SipSetup m_setup;
};

} // namespace

SipHost SipSettings::domain() const
{
    if (registrar)
        return {registrar->name, 0};
    return outboundProxy.value_or(SipHost());
}

SipHost SipSettings::nextHop() const
{
    return outboundProxy ? *outboundProxy : registrar.value_or(SipHost());
}

std::vector<std::string> SipSettings::passwordHosts() const
{
    std::vector<std::string> hosts;
    for (const auto& host : {registrar, outboundProxy}) {
        if (host)
            hosts.push_back(host->name);
    }
    return hosts;
}

// A computer without sound has no such folder, or nothing but a timer in it.
bool hasSoundDevices(const std::filesystem::path& folder)
{
    std::error_code failed;
    for (const auto& device : std::filesystem::directory_iterator(folder, failed)) {
        const auto& path = device.path();
        if (path.filename().string().starts_with("pcm") && ::access(path.c_str(), R_OK | W_OK) == 0)
            return true;
    }
    return false;
}

SipSetup sipSettingsOf(const Configuration& configuration, const std::filesystem::path& profile)
{
    return Reader(configuration, profile).read();
}
