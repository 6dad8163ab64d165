#include "Slapd.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr int nATTEMPTS = 5;

std::string textOf(const fs::path& file)
{
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

} // namespace

int freePort()
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    auto address = loopback(0);
    socklen_t size = sizeof address;
    if (::bind(socket, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::runtime_error("there is no free port");
    ::close(socket);
    return ntohs(address.sin_port);
}

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

Slapd::~Slapd()
{
    kill();
}

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

pid_t Slapd::spawn()
{
    const auto program = (m_folder / "slapd").string();
    const auto configuration = (m_folder / "slapd.conf").string();
    auto uris = "ldap://127.0.0.1:" + std::to_string(m_port) + "/";
    if (m_tls)
        uris += " ldaps://127.0.0.1:" + std::to_string(m_tlsPort) + "/";
    const auto log = (m_folder / "slapd.log").string();
    const auto parent = ::getpid();
    const auto child = ::fork();
    if (child != 0)
        return child;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (output < 0 || ::getppid() != parent)
        ::_exit(127);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    // Either keeps it in the foreground.
    ::execl(program.c_str(), "slapd", "-d", m_logs ? "stats" : "none", "-f", configuration.c_str(), "-h",
            uris.c_str(), nullptr);
    ::_exit(127);
}

void Slapd::start()
{
    m_process = spawn();
    while (!answers()) {
        if (::waitpid(m_process, nullptr, WNOHANG) == m_process) {
            m_process = -1;
            throw std::runtime_error("slapd does not start: " + log());
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

bool Slapd::answers() const
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto address = loopback(m_tls ? m_tlsPort : m_port);
    const bool connected =
        ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(socket);
    return connected;
}

void Slapd::kill()
{
    if (m_process < 0)
        return;
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    m_process = -1;
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
