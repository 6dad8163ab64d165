#include "Ds389.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <map>
#include <stdexcept>

#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds nPATIENCE{60};
constexpr char nINSTANCE[] = "test";
constexpr char nPID_FILE[] = "run/dirsrv/slapd-test.pid";
constexpr char nDEFAULTS[] = "share/dirsrv/inf/defaults.inf";

// Runs a command of the shell; whether it succeeded. Its tools wait until the server that they have
// started is gone, which in a container whose first process buries nobody it never is: here somebody
// does.
bool succeeds(const std::string& command)
{
    const auto undertaker = ::fork();
    if (undertaker == 0) {
        ::prctl(PR_SET_CHILD_SUBREAPER, 1);
        const auto shell = ::fork();
        if (shell == 0) {
            ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
            ::_exit(127);
        }
        int status = -1;
        for (pid_t ended = 0; ended != shell && (ended >= 0 || errno == EINTR);)
            ended = ::waitpid(-1, &status, 0);
        ::_exit(status == 0 ? 0 : 1);
    }
    int status = -1;
    return ::waitpid(undertaker, &status, 0) == undertaker && status == 0;
}

} // namespace

Ds389::Ds389(fs::path folder, const std::string& people, const TestCertificate& certificate)
    : m_folder(std::move(folder))
    , m_port(freePort())
    , m_tlsPort(freePort())
{
    const auto deadline = std::chrono::steady_clock::now() + nPATIENCE;
    try {
        writeDefaults();
        create();
        load(people);
        install(certificate);
        // Level 0 keeps it in the foreground.
        m_process.start({"/usr/sbin/ns-slapd", "-D", configuration(), "-i", m_folder / nPID_FILE, "-d", "0"},
                        m_folder / "output.log", m_port,
                        std::chrono::duration_cast<std::chrono::milliseconds>(
                            deadline - std::chrono::steady_clock::now()));
    } catch (const std::runtime_error& error) {
        endLeftOver();
        throw std::runtime_error(std::string(error.what()) + "\n" +
                                 textOf(m_folder / "var/log/dirsrv/slapd-test/errors"));
    }
}

Ds389::~Ds389() = default;

fs::path Ds389::configuration() const
{
    return m_folder / "etc/dirsrv" / (std::string("slapd-") + nINSTANCE);
}

// The system's places for instances, all moved into the folder: its tools look for this file below
// what $PREFIX names.
void Ds389::writeDefaults() const
{
    const auto root = m_folder.string();
    const auto configured = root + "/etc/dirsrv/slapd-{instance_name}";
    const std::map<std::string, std::string> moved{
        {"config_dir", configured},
        {"cert_dir", configured},
        {"schema_dir", configured + "/schema"},
        {"inst_dir", root + "/inst"},
        {"tmp_dir", root},
        {"user", ::getpwuid(::getuid())->pw_name},
        {"group", ::getgrgid(::getgid())->gr_name},
        {"with_systemd", "0"},
    };
    fs::create_directories((m_folder / nDEFAULTS).parent_path());
    fs::create_directories(m_folder / "etc/dirsrv");
    std::ifstream standard(fs::path("/usr") / nDEFAULTS);
    std::ofstream defaults(m_folder / nDEFAULTS);
    for (std::string line; std::getline(standard, line);) {
        const auto end = line.find(" = ");
        const auto name = line.substr(0, end);
        const auto value = end == std::string::npos ? "" : line.substr(end + 3);
        if (const auto other = moved.find(name); other != moved.end())
            line = name + " = " + other->second;
        else if (value.starts_with("/var") || value.starts_with("/run") || value.starts_with("/dev"))
            line = name + " = " + root + value;
        defaults << line << "\n";
    }
}

void Ds389::create() const
{
    std::ofstream(m_folder / "instance.inf")
        << "[general]\nfull_machine_name = localhost\nstrict_host_checking = False\nsystemd = False\n"
           "selinux = False\nstart = False\n"
        << "[slapd]\ninstance_name = " << nINSTANCE << "\nprefix = /usr\nroot_dn = " << bindDn()
        << "\nroot_password = " << PASSWORD << "\nport = " << m_port << "\nsecure_port = " << m_tlsPort
        << "\nself_sign_cert = False\n[backend-userroot]\nsuffix = " << base() << "\n";
    run("PREFIX='" + m_folder.string() + "' dscreate -v from-file instance.inf");
}

void Ds389::load(const std::string& people) const
{
    std::ofstream(m_folder / "people.ldif")
        << "dn: " << base()
        << "\nobjectClass: organization\nobjectClass: dcObject\no: Example\ndc: example\n"
           "aci: (targetattr=\"*\")(version 3.0; acl \"all may read\"; allow (read, search, compare)"
           "(userdn=\"ldap:///anyone\");)\n\n"
        << people;
    run("ns-slapd ldif2db -D '" + configuration().string() + "' -n userroot -i '" +
        (m_folder / "people.ldif").string() + "'");
}

void Ds389::install(const TestCertificate& certificate) const
{
    const auto kept = "'" + configuration().string();
    run("openssl pkcs12 -export -name Server-Cert -in '" + certificate.certificate.string() + "' -inkey '" +
        certificate.key.string() + "' -passout pass:x -out server.p12");
    run("pk12util -i server.p12 -W x -d " + kept + "' -k " + kept + "/pwdfile.txt'");
    run("sed -i 's/^nsslapd-securePort:/nsslapd-security: on\\n&/' " + kept + "/dse.ldif'");
}

void Ds389::run(const std::string& command) const
{
    const auto whole = "cd '" + m_folder.string() + "' && export PATH=\"$PATH:/usr/sbin\" && timeout -k 5 " +
                       std::to_string(nPATIENCE.count()) + " sh -c \"" + "exec env " + command +
                       "\" >command.log 2>&1";
    if (!succeeds(whole))
        throw std::runtime_error(command + ": " + textOf(m_folder / "command.log"));
}

// Its tools start it for a moment; when they fail it may still run.
void Ds389::endLeftOver() const
{
    pid_t process = 0;
    if (!(std::ifstream(m_folder / nPID_FILE) >> process))
        return;
    const auto arguments = textOf(fs::path("/proc") / std::to_string(process) / "cmdline");
    if (arguments.find(configuration().string()) != std::string::npos)
        ::kill(process, SIGKILL);
}
