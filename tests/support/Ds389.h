// A directory server of another make (Debian's 389-ds-base) on free ports of this machine, for as
// long as the object lives: what works with both works with directories, not with one of them.
//
// All its files lie in the folder it is given, so that several need not know of each other; nothing
// of it is ever a service of the computer. To start it takes ten seconds.

#pragma once

#include <filesystem>
#include <string>

#include "ServerProcess.h"
#include "TestAuthority.h"

class Ds389 {
public:
    static constexpr char PASSWORD[] = "let me in (42)";

    // Returns when it answers. Throws after a minute, with what it had to say. `folder` must exist,
    // live longer, and be this server's own; its path must be short, for sockets. `people` is LDIF.
    Ds389(std::filesystem::path folder, const std::string& people, const TestCertificate& certificate);
    ~Ds389();

    Ds389(const Ds389&) = delete;
    Ds389& operator=(const Ds389&) = delete;

    std::string uri() const { return "ldap://127.0.0.1:" + std::to_string(m_port); }
    std::string tlsUri() const { return "ldaps://127.0.0.1:" + std::to_string(m_tlsPort); }

    static std::string base() { return "dc=example,dc=com"; }
    // Who may bind with PASSWORD.
    static std::string bindDn() { return "cn=telephone,dc=example,dc=com"; }

private:
    void writeDefaults() const;
    void create() const;
    void load(const std::string& people) const;
    void install(const TestCertificate& certificate) const;
    void run(const std::string& command) const;
    std::filesystem::path configuration() const;
    void endLeftOver() const;

    const std::filesystem::path m_folder;
    const int m_port;
    const int m_tlsPort;
    ServerProcess m_process;
};
