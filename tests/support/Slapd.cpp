#include "Slapd.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr int nATTEMPTS = 5;
constexpr std::chrono::seconds nPATIENCE{30};

} // namespace

std::string person(const std::string& surname, const std::string& givenName, const std::string& more)
{
    static int number = 0;
    const auto id = "p" + std::to_string(++number);
    const auto name = givenName.empty() ? surname : givenName + " " + surname;
    return "dn: uid=" + id + ",dc=example,dc=com\nobjectClass: inetOrgPerson\nuid: " + id + "\ncn: " + name +
           "\nsn: " + surname + "\n" + (givenName.empty() ? "" : "givenName: " + givenName + "\n") + more +
           "\n";
}

Slapd::Slapd(fs::path folder, const SlapdOptions& options)
    : m_folder(std::move(folder))
    , m_tls(options.certificate.has_value())
    , m_logs(options.logs)
{
    // Where AppArmor confines slapd it does so by the file's place.
    fs::copy_file("/usr/sbin/slapd", m_folder / "slapd", fs::copy_options::overwrite_existing);
    fs::create_directory(m_folder / "database");
    configure(options);
    load(options.people);
    for (int attempt = 1;; ++attempt) {
        m_port = freePort();
        m_tlsPort = freePort();
        try {
            start();
            return;
        } catch (const std::runtime_error&) {
            // Somebody else may have taken the port.
            if (attempt == nATTEMPTS)
                throw;
        }
    }
}

Slapd::~Slapd() = default;

void Slapd::configure(const SlapdOptions& options)
{
    std::ofstream file(m_folder / "slapd.conf");
    for (const auto* schema : {"core", "cosine", "inetorgperson"})
        file << "include /etc/ldap/schema/" << schema << ".schema\n";
    file << "modulepath /usr/lib/ldap\nmoduleload back_mdb\n";
    if (options.certificate)
        file << "TLSCertificateFile " << options.certificate->certificate.string()
             << "\nTLSCertificateKeyFile " << options.certificate->key.string() << "\n";
    file << "sizelimit unlimited\n"
         << options.server << "\ndatabase mdb\nsuffix " << base() << "\ndirectory "
         << (m_folder / "database").string() << "\nmaxsize 1073741824\ndbnosync\nrootdn \"" << bindDn()
         << "\"\nrootpw \"" << PASSWORD
         << "\"\nindex objectClass eq\nindex cn,sn,givenName,displayName eq,sub\n"
         << options.database << "\n";
}

void Slapd::load(const std::string& people)
{
    std::ofstream(m_folder / "people.ldif") << "dn: dc=example,dc=com\nobjectClass: organization\n"
                                               "objectClass: dcObject\no: Example\ndc: example\n\n"
                                            << people;
    const auto log = m_folder / "load.log";
    const auto command =
        "cd '" + m_folder.string() + "' && ./slapd -Ta -q -f slapd.conf -l people.ldif >load.log 2>&1";
    if (std::system(command.c_str()) != 0)
        throw std::runtime_error("the people cannot be loaded: " + textOf(log));
}

void Slapd::start()
{
    auto uris = "ldap://127.0.0.1:" + std::to_string(m_port) + "/";
    if (m_tls)
        uris += " ldaps://127.0.0.1:" + std::to_string(m_tlsPort) + "/";
    // Either level keeps it in the foreground.
    m_process.start(
        {m_folder / "slapd", "-d", m_logs ? "stats" : "none", "-f", m_folder / "slapd.conf", "-h", uris},
        m_folder / "slapd.log", m_tls ? m_tlsPort : m_port, nPATIENCE);
}

void Slapd::kill()
{
    m_process.kill();
}

void Slapd::restart()
{
    kill();
    start();
}

std::string Slapd::log() const
{
    return textOf(m_folder / "slapd.log");
}
