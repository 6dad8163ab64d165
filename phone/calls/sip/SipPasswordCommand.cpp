#include "calls/sip/SipPasswordCommand.h"

#include "calls/sip/BaresipConfig.h"
#include "calls/sip/SipPassword.h"
#include "calls/sip/SipSettings.h"
#include "system/Configuration.h"
#include "system/PasswordCommand.h"

int keepSipPassword(const Profile& profile, std::istream& in, std::ostream& out, std::ostream& error)
{
    const Configuration configuration(profile.configFile());
    const auto setup = sipSettingsOf(configuration, profile.data);
    const SipPassword file(profile.data);
    std::vector<std::string> hosts;
    if (setup.settings.registrar)
        hosts = setup.settings.passwordHosts();
    const auto objection = [](const std::string& password) -> std::string {
        if (canStandInAccount(password))
            return "";
        return "The password of a line cannot have a \" in it, nor end with a \\.";
    };
    std::vector<std::string> faults = setup.faults;
    if (faults.empty())
        faults = {"There is nobody to show a password: name the line's registrar in \"sip-server\"."};
    return keepPassword({file, hosts, faults, "", objection}, profile, in, out, error);
}
