#include "directory/ldap/LdapPasswordCommand.h"

#include "directory/ldap/LdapSettings.h"
#include "system/Configuration.h"
#include "system/PasswordCommand.h"

int keepLdapPassword(const Profile& profile, std::istream& in, std::ostream& out, std::ostream& error)
{
    const Configuration configuration(profile.configFile());
    const auto setup = ldapSettingsOf(configuration, profile.data);
    const std::string hint = "It is not used before \"ldap-bind-dn\" says whose it is.";
    return keepPassword({setup.settings.password,
                         setup.settings.hosts(),
                         setup.faults,
                         setup.settings.bindDn.empty() ? hint : "",
                         {}},
                        profile, in, out, error);
}
