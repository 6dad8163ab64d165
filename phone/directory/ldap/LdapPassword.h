// The password that the telephone shows the corporate directory.

#pragma once

#include "system/PasswordFile.h"

class LdapPassword final : public PasswordFile {
public:
    LdapPassword()
        : LdapPassword(std::filesystem::path())
    {
    }
    explicit LdapPassword(const std::filesystem::path& profile)
        : PasswordFile(profile, {"the directory", "ldap-servers", "ldap-password"})
    {
    }
};
