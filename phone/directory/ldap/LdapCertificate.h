// A server's certificate, and why it was refused, in words.

#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

struct LdapCertificate {
    std::string subject; // distinguished names
    std::string issuer;
    std::string lastDay; // "2027-01-31"
    std::chrono::system_clock::time_point until;
};

// Nothing for what is no certificate (DER).
std::optional<LdapCertificate> ldapCertificateOf(const std::string& certificate);

// Whether there is any certificate in a PEM file: libldap takes one without for one that trusts nobody.
bool holdsCertificates(const std::filesystem::path& file);

// What is wrong with `certificate` (DER) for a server called `host`, judged by the certificates in
// `caFile` (PEM): the end of the sentence "The certificate of the server ...", naming the item to
// change where there is one.
std::string whatIsWrongWith(const std::string& certificate, const std::string& host,
                            const std::filesystem::path& caFile);
