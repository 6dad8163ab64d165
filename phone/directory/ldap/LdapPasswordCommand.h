// "deskphone ldap-password": keeps the password for the corporate directory.

#pragma once

#include <iosfwd>

#include "app/Profile.h"

// Reads it from the terminal without showing it, or as the first line of the standard input; never
// from the command line, where every program of the computer sees it. Returns an ExitCode.
int keepLdapPassword(const Profile& profile, std::istream& in, std::ostream& out, std::ostream& error);
