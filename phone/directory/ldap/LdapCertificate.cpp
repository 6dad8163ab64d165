#include "directory/ldap/LdapCertificate.h"

#include <ctime>
#include <memory>
#include <type_traits>

#include <arpa/inet.h>
#include <strings.h>

#include <gnutls/gnutls.h>
#include <gnutls/x509.h>

#include "directory/ContactText.h"

namespace {

constexpr std::size_t nLONGEST_NAME = 200;
constexpr unsigned nMOST_NAMES = 5;

struct CertificateDeleter {
    void operator()(gnutls_x509_crt_t certificate) const { gnutls_x509_crt_deinit(certificate); }
};
using Certificate = std::unique_ptr<std::remove_pointer_t<gnutls_x509_crt_t>, CertificateDeleter>;

Certificate parsed(const std::string& der)
{
    gnutls_x509_crt_t made = nullptr;
    if (gnutls_x509_crt_init(&made) != 0)
        return nullptr;
    Certificate certificate(made);
    std::string bytes = der;
    const gnutls_datum_t data{reinterpret_cast<unsigned char*>(bytes.data()),
                              static_cast<unsigned>(bytes.size())};
    if (gnutls_x509_crt_import(made, &data, GNUTLS_X509_FMT_DER) != 0)
        return nullptr;
    return certificate;
}

template <typename Getter> std::string nameBy(Getter getter, gnutls_x509_crt_t certificate)
{
    char text[1024] = "";
    std::size_t size = sizeof text;
    return getter(certificate, text, &size) == 0 ? fitText(text, nLONGEST_NAME) : "?";
}

// Nothing for a name that is none of a host.
std::string hostName(int type, const char* bytes, std::size_t size)
{
    if (type == GNUTLS_SAN_DNSNAME)
        return fitText({bytes, size}, nLONGEST_NAME);
    char text[INET6_ADDRSTRLEN] = "";
    if (type == GNUTLS_SAN_IPADDRESS && (size == sizeof(in_addr) || size == sizeof(in6_addr)))
        ::inet_ntop(size == sizeof(in_addr) ? AF_INET : AF_INET6, bytes, text, sizeof text);
    return text;
}

// Whom it is for: the hosts that it names, or else its owner.
std::string hostsOf(gnutls_x509_crt_t certificate)
{
    std::string names;
    for (unsigned i = 0; i < nMOST_NAMES; ++i) {
        char bytes[256] = "";
        std::size_t size = sizeof bytes;
        const int type = gnutls_x509_crt_get_subject_alt_name(certificate, i, bytes, &size, nullptr);
        if (type == GNUTLS_E_REQUESTED_DATA_NOT_AVAILABLE)
            break;
        if (const auto name = hostName(type, bytes, size); !name.empty())
            names += (names.empty() ? "" : ", ") + name;
    }
    return names.empty() ? nameBy(gnutls_x509_crt_get_dn, certificate) : names;
}

std::string dayOf(std::time_t time)
{
    std::tm parts{};
    char text[32] = "";
    if (::gmtime_r(&time, &parts))
        std::strftime(text, sizeof text, "%Y-%m-%d", &parts);
    return text;
}

} // namespace

std::optional<LdapCertificate> ldapCertificateOf(const std::string& der)
{
    const auto certificate = parsed(der);
    if (!certificate)
        return std::nullopt;
    const auto until = gnutls_x509_crt_get_expiration_time(certificate.get());
    return LdapCertificate{nameBy(gnutls_x509_crt_get_dn, certificate.get()),
                           nameBy(gnutls_x509_crt_get_issuer_dn, certificate.get()), dayOf(until),
                           std::chrono::system_clock::from_time_t(until)};
}

bool holdsCertificates(const std::filesystem::path& file)
{
    gnutls_x509_trust_list_t list = nullptr;
    if (gnutls_x509_trust_list_init(&list, 0) != 0)
        return false;
    const int count =
        gnutls_x509_trust_list_add_trust_file(list, file.c_str(), nullptr, GNUTLS_X509_FMT_PEM, 0, 0);
    gnutls_x509_trust_list_deinit(list, 1);
    return count > 0;
}

std::string whatIsWrongWith(const std::string& der, const std::string& host,
                            const std::filesystem::path& caFile)
{
    const auto certificate = parsed(der);
    if (!certificate)
        return "cannot be read";
    const auto now = std::time(nullptr);
    const auto until = gnutls_x509_crt_get_expiration_time(certificate.get());
    const auto since = gnutls_x509_crt_get_activation_time(certificate.get());
    if (until < now)
        return "expired on " + dayOf(until) + ": the server needs a new one";
    if (since > now)
        return "is not valid before " + dayOf(since) +
               ": look at the clocks of the server and of this computer";
    if (gnutls_x509_crt_check_hostname(certificate.get(), host.c_str()) == 0)
        return "is not for \"" + host + "\" but for " + hostsOf(certificate.get()) +
               ": name the server in \"ldap-servers\" as its certificate does";
    if (::strcasecmp(host.c_str(), "localhost") == 0)
        return "is checked for this computer's own name, as \"localhost\" always is: write \"127.0.0.1\" in "
               "\"ldap-servers\", and let the certificate name that";
    if (gnutls_x509_crt_check_issuer(certificate.get(), certificate.get()) != 0)
        return "is signed by itself: name a file that holds it in \"ldap-ca-file\"";
    const int signature = gnutls_x509_crt_get_signature_algorithm(certificate.get());
    if (signature < 0 || gnutls_sign_is_secure2(static_cast<gnutls_sign_algorithm_t>(signature),
                                                GNUTLS_SIGN_FLAG_SECURE_FOR_CERTS) == 0)
        return "is signed in a way that is no longer safe: the server needs a new one";
    return "is signed by " + nameBy(gnutls_x509_crt_get_issuer_dn, certificate.get()) +
           ", which \"ldap-ca-file\" (" + caFile.string() + ") does not hold, or not with all in between";
}
