// "deskphone sip-password": keeps the password for the line.

#pragma once

#include <iosfwd>

#include "app/Profile.h"

// As keepPassword().
int keepSipPassword(const Profile& profile, std::istream& in, std::ostream& out, std::ostream& error);
