// The company whose corporate directory journeys ask: a real server with the people of company.ldif.
//
// It is started by the first who asks for it and serves all tests of this program.

#pragma once

#include <string>

#include <Slapd.h>

#include "../phone/TemporaryFolder.h"

class Company {
public:
    static Company& shared();

    std::string uri() const { return m_server.uri(); }
    // Who has signed the server's certificate.
    std::string authority() const { return m_authority.file(); }

    // Whether the server runs; it does at first.
    void serve(bool on);

private:
    Company();
    static std::string folder(const TemporaryFolder& parent, const char* name);

    TemporaryFolder m_folder;
    TestAuthority m_authority;
    Slapd m_server;
    bool m_serves = true;
};
