// Certificates for servers in tests, signed by an authority of their own or by nobody that is trusted.
//
// For a server that must be refused: issue() with another host name, with days that are over, or
// `selfSigned`; or let a second TestAuthority sign, which is unknown to who trusts the first.

#pragma once

#include <filesystem>
#include <string>

struct TestCertificate {
    std::filesystem::path certificate; // PEM
    std::filesystem::path key;         // PEM
};

struct CertificateWish {
    std::string subject = "localhost";
    std::string names = "DNS:localhost,IP:127.0.0.1,IP:::1"; // subjectAltName
    // From when until when it is valid, in days from now; negative: in the past.
    int from = -1;
    int until = 30;
    bool selfSigned = false;
    std::string digest = "sha256"; // of the signature
};

class TestAuthority {
public:
    // Writes into `folder`, which must exist, live as long, and be another for each authority.
    explicit TestAuthority(const std::filesystem::path& folder);

    // Whoever trusts this file trusts what is issued.
    std::filesystem::path file() const { return m_folder / "authority.pem"; }

    TestCertificate issue(const CertificateWish& wish = {});

private:
    void openssl(const std::string& arguments) const;

    std::filesystem::path m_folder;
    int m_issued = 0;
};
