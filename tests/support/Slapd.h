// A real directory server (Debian's slapd) on a free port of this machine, for as long as the object
// lives. It ends with the test, even when that is killed.
//
// A suite starts one in SetUpTestSuite and keeps it; people are given as LDIF.
//
// To build on it:
// - A server that misbehaves listens itself: a socket on 127.0.0.1 with port 0 has a free port, and
//   its URI goes where uri() would. To break a conversation half way, let such a socket stand between
//   a telephone and this server, and pass on what is wanted.
// - A certificate that must be refused: SlapdOptions::certificate from TestAuthority::issue() with the
//   wish for it; the telephone trusts the file() of whom it should.
// - Another directory server, Ds389, takes the same people.

#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "ServerProcess.h"
#include "TestAuthority.h"

struct SlapdOptions {
    // LDIF of the entries below the base.
    std::string people;
    // Offers StartTLS and LDAPS.
    std::optional<TestCertificate> certificate;
    // slapd.conf(5): lines of the whole server ("security tls=1", "attributetype ...") and of its one
    // database ("limits anonymous size=20", "access to * by users read").
    std::string server;
    std::string database;
    // Writes what it is asked (see log()), which costs time.
    bool logs = true;
};

class Slapd {
public:
    static constexpr char PASSWORD[] = "let me in (42)";

    // Returns when it answers. `folder` must exist, live longer, and be this server's own; programs
    // can be started from it.
    Slapd(std::filesystem::path folder, const SlapdOptions& options);
    ~Slapd();

    Slapd(const Slapd&) = delete;
    Slapd& operator=(const Slapd&) = delete;

    std::string uri() const { return "ldap://127.0.0.1:" + std::to_string(m_port); }
    std::string tlsUri() const { return "ldaps://127.0.0.1:" + std::to_string(m_tlsPort); }
    int port() const { return m_port; }

    static std::string base() { return "dc=example,dc=com"; }
    // Who may bind with PASSWORD.
    static std::string bindDn() { return "cn=telephone,dc=example,dc=com"; }

    // Ends it as a crash would. Its ports are refused from then on.
    void kill();
    // On the same ports and with the same people.
    void restart();
    // What it was asked since it was started, such as " BIND dn=", " SRCH attr=", " ACCEPT from ": one
    // line each, complete once the server was killed.
    std::string log() const;

private:
    void configure(const SlapdOptions& options);
    void load(const std::string& people);
    void start();

    const std::filesystem::path m_folder;
    const bool m_tls;
    const bool m_logs;
    int m_port = 0;
    int m_tlsPort = 0;
    ServerProcess m_process;
};

// An inetOrgPerson in LDIF; `more` are further lines ("mobile: 1\n").
std::string person(const std::string& surname, const std::string& givenName, const std::string& more = "");
