// What is dialled, as a SIP URI (RFC 3261 19.1).

#pragma once

#include <optional>
#include <string>
#include <string_view>

// Where a server is: a name, an IPv4 address or, in brackets, an IPv6 address, and a port if one is given.
struct SipHost {
    std::string name;
    int port = 0; // 0: the usual one

    // "name" or "name:port".
    std::string text() const;
    bool isThisMachine() const;
    bool isIpv6() const { return name.starts_with('['); }

    bool operator==(const SipHost&) const = default;
};

// Nothing for what is neither "name" nor "name:port"; "localhost" is 127.0.0.1.
std::optional<SipHost> sipHostOf(std::string_view text);

// The URI that calls `dialled` at `host`: blanks are left out, and whatever a URI cannot hold, '#' say,
// is escaped. A URI, or "user@host", keeps its own host. Nothing for what no call can be made of:
// nothing but blanks, more than 255 bytes, or control characters in it.
std::optional<std::string> sipUriOf(std::string_view dialled, const SipHost& host);

// Who a URI stands for: the user part, without escapes; "" when it has none.
std::string sipUserOf(std::string_view uri);
