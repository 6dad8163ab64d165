// "deskphone ldap-check": whether the corporate directory can be asked, and if not, why.

#pragma once

#include <iosfwd>

#include "app/Profile.h"

// Takes the steps of a search one by one with every server, and says in whole sentences how each ended,
// which item to change where one failed, and what the directory knows of its people. Nothing is changed,
// but a password that was kept for other servers is forgotten, as by a telephone that starts. Waits as long
// as a telephone would, for each server. Returns an ExitCode: EXIT_DONE when all servers can be used.
int checkLdap(const Profile& profile, std::ostream& out);
