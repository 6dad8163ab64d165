// The password that the telephone shows the registrar of its line.

#pragma once

#include "system/PasswordFile.h"

class SipPassword final : public PasswordFile {
public:
    explicit SipPassword(const std::filesystem::path& profile)
        : PasswordFile(profile, {"the line", "sip-server", "sip-password"})
    {
    }
};
