// Asks for a password and keeps it: what "deskphone ldap-password" and "deskphone sip-password" share.

#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "app/Profile.h"
#include "system/PasswordFile.h"

struct PasswordToKeep {
    const PasswordFile& file;
    std::vector<std::string> hosts;  // for which it is kept; with none it is refused
    std::vector<std::string> faults; // what is said then
    std::string hint;                // said when it was kept; "" for nothing
    // Why this password cannot be used, as a sentence; "" if it can. May be empty.
    std::function<std::string(const std::string& password)> objection;
};

// Reads it from the terminal without showing it, or as the first line of the standard input; never
// from the command line, where every program of the computer sees it. Returns an ExitCode.
int keepPassword(const PasswordToKeep& wanted, const Profile& profile, std::istream& in, std::ostream& out,
                 std::ostream& error);
