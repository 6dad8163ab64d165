// One connection to one directory server, opened step by step.
//
// The socket is connected here, never by libldap, whose time-outs know neither name resolution nor a
// silent TLS handshake; every wait ends at its deadline, and messages above 4 MiB break the
// connection. Nothing but the request for TLS is sent before TLS is in place and the certificate was
// checked. Each step returns what went wrong, or nothing; after a fault the connection is of no more
// use.
//
// To look into a directory step by step (as a diagnosis does): resolve, connect, startTls, bind, then
// search with scope base, then with a filter. open() does all up to bind.
// A connection is used by one thread at a time.

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "directory/ldap/LdapAddresses.h"
#include "directory/ldap/LdapFault.h"
#include "directory/ldap/LdapSettings.h"
#include "directory/ldap/LdapWatchdog.h"

struct ldap;
struct ldapmsg;

struct LdapSearch {
    std::string base;
    LdapScope scope = LdapScope::Subtree;
    std::string filter; // RFC 4515
    // Only these are asked for; {"1.1"}: none (RFC 4511 4.5.1.8).
    std::vector<std::string> attributes;
    int sizeLimit = 0; // entries; 0: as many as the server gives
};

// How a search ended.
struct LdapSearchEnd {
    std::optional<LdapFault> fault;
    // Entries came, but not all: a limit of size, time or administration was met.
    bool partial = false;
};

// An entry that has arrived, valid only while it is being shown.
class LdapEntryView {
public:
    LdapEntryView(ldap* handle, ldapmsg* entry)
        : m_handle(handle)
        , m_entry(entry)
    {
    }

    // Every value in the server's order, as bytes that may be anything, behind the name of its
    // attribute, which may have options ("sn;lang-de").
    void
    forEachValue(const std::function<void(std::string_view attribute, std::string_view value)>& use) const;

private:
    ldap* m_handle;
    ldapmsg* m_entry;
};

class LdapConnection {
public:
    using Deadline = LdapWatchdog::Deadline;

    // `watchdog` must live longer.
    LdapConnection(LdapServer server, const LdapSettings& settings, LdapWatchdog& watchdog);
    ~LdapConnection();

    LdapConnection(const LdapConnection&) = delete;
    LdapConnection& operator=(const LdapConnection&) = delete;

    // Finds the addresses behind the server's name.
    std::optional<LdapFault> resolve(Deadline deadline);
    // Connects to the first address that answers.
    std::optional<LdapFault> connect(Deadline deadline);
    // Encrypts, and checks who the server is. Does nothing on a connection that stays plain. When the
    // certificate is refused a second connection looks why.
    std::optional<LdapFault> startTls(Deadline deadline);
    // Says who asks; unnamed without a bind DN.
    std::optional<LdapFault> bind(Deadline deadline);
    // All of these.
    std::optional<LdapFault> open(Deadline deadline);

    // Shows each entry as it comes, until `show` returns false, which ends the search as partial.
    // When the deadline ends it, what was shown stays and the fault is NoAnswer.
    LdapSearchEnd search(const LdapSearch& what, Deadline deadline,
                         const std::function<bool(const LdapEntryView&)>& show);

    // Whether it may be used once more: open, and nothing has come since the last answer, as a
    // farewell would.
    bool isFit() const;

    const LdapServer& server() const { return m_server; }
    // The numeric addresses that resolve() found.
    std::vector<std::string> addresses() const;
    // The server's certificate (DER); "" without TLS.
    std::string peerCertificate() const;

private:
    struct Closer {
        void operator()(ldap* handle) const;
    };

    std::optional<LdapFault> connectTo(const LdapAddress& address, Deadline deadline);
    std::optional<LdapFault> adopt(int socket);
    std::optional<LdapFault> prepareTls();
    LdapFault noTrustedCertificates() const;
    int requestTls();
    bool isTlsGood() const;
    LdapFault whyNoTls(int code, Deadline deadline);
    LdapSearchEnd searchEnd(int code, const LdapSearch& what);
    LdapFault searchFault(int code, const LdapSearch& what) const;
    LdapFault bindFault(int code) const;
    LdapFault fault(LdapFailure failure, const std::string& what) const;
    LdapFault ended(LdapWatchdog::Wait end, const std::string& what) const;
    LdapFault broken(Deadline deadline, const std::string& what);
    std::string inServersWords() const;

    const LdapServer m_server;
    const LdapSettings m_settings;
    LdapWatchdog& m_watchdog;
    std::vector<LdapAddress> m_addresses;
    std::unique_ptr<ldap, Closer> m_pHandle;
    int m_socket = -1; // the handle closes it
    bool m_fit = false;
};
