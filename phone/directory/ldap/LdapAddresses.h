// The addresses behind a name, found without waiting longer than one wants to: the system's resolver
// knows no deadline.

#pragma once

#include <string>
#include <vector>

#include <sys/socket.h>

#include "directory/ldap/LdapWatchdog.h"

struct LdapAddress {
    sockaddr_storage bytes{};
    socklen_t length = 0;

    // "192.0.2.1", "2001:db8::1"
    std::string text() const;
};

struct LdapAddresses {
    std::vector<LdapAddress> found; // in the order in which they should be tried
    LdapWatchdog::Wait end = LdapWatchdog::Wait::Ready;
    std::string reason; // why nothing was found
};

LdapAddresses addressesOf(const std::string& host, int port, const LdapWatchdog& watchdog,
                          LdapWatchdog::Deadline deadline);
