// How the corporate directory is asked: the "ldap-..." items of the configuration, understood.
//
// A company needs five of them at most: "ldap-servers" and "ldap-base"; "ldap-bind-dn" (and a
// password, see LdapPassword.h) where nobody may search unnamed; "ldap-ca-file" where the company
// signs its certificates itself; "ldap-schema" for Active Directory.

#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "directory/ldap/LdapPassword.h"

class Configuration;

// How a connection becomes confidential.
enum class LdapTls {
    None,      // it stays readable for everybody on the way; no password is ever sent on it
    StartTls,  // asked for on a plain connection, before anything else (RFC 4511 4.14)
    FromStart, // ldaps://
};

struct LdapServer {
    std::string uri;  // "ldap://host:port" or "ldaps://host:port"
    std::string host; // an IPv6 address without brackets
    int port = 389;
    LdapTls tls = LdapTls::StartTls;
};

enum class LdapScope { Base, OneLevel, Subtree };

// Which attributes of the directory make which field of a record.
struct LdapAttributeMap {
    struct Field {
        std::string name; // Utils::SURNAME and so on
        // In order of preference: the first that an entry has is shown, and of its values the first
        // that no field before it shows. So one attribute can fill OFFICE and OFFICE2.
        std::vector<std::string> attributes;
    };
    std::vector<Field> fields;
    // The name of an entry that has neither surname nor first name.
    std::vector<std::string> displayName;
    // Whether a surname is also looked for in `displayName` of the entries without one. Only where
    // the schema allows such entries: it costs the server an index.
    bool findsByDisplayName = false;
    std::vector<std::string> nickname;

    // The attributes of a field; none for a field that is not mapped.
    const std::vector<std::string>& of(const std::string& name) const;
};

struct LdapSettings {
    std::vector<LdapServer> servers; // in the order in which they are tried
    std::filesystem::path caFile;    // PEM; who may sign a server's certificate
    bool checkCertificate = true;
    std::string bindDn; // "": unnamed
    LdapPassword password;
    std::string base;
    LdapScope scope = LdapScope::Subtree;
    std::string baseFilter; // RFC 4515, in parentheses
    LdapAttributeMap attributes;
    bool nickname = false;
    int sizeLimit = 100; // entries
    // What a server has to get ready: resolve, connect, TLS and bind together.
    std::chrono::milliseconds connectTime{3000};
    // What a whole search may take, whatever the servers do.
    std::chrono::milliseconds searchTime{10000};
    std::string countryCode; // digits; a number may be written with or without it

    std::vector<std::string> hosts() const;
};

struct LdapSetup {
    LdapSettings settings;
    // What is wrong, each a sentence that names the item to change. The settings are only to be used
    // when there is none.
    std::vector<std::string> faults;
    // Whether any server is named: if not, nobody wants a corporate directory and the one fault says
    // so.
    bool wanted = false;

    bool usable() const { return faults.empty(); }
};

// `profile` is the folder of the password file; a relative "ldap-ca-file" is looked up there too.
// A password that was kept for other servers is forgotten here.
// [any-thread]
LdapSetup ldapSettingsOf(const Configuration& configuration, const std::filesystem::path& profile);
