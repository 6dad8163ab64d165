#include "TestAuthority.h"

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <stdexcept>

namespace {

// As the openssl program wants dates.
std::string daysFromNow(int days)
{
    const auto time = std::time(nullptr) + static_cast<std::time_t>(days) * 24 * 3600;
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%SZ", &parts);
    return text;
}

constexpr char nKEY[] = " -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes ";

} // namespace

TestAuthority::TestAuthority(const std::filesystem::path& folder)
    : m_folder(folder)
{
    std::ofstream(m_folder / "empty");
    std::ofstream(m_folder / "serial") << "01\n";
    std::ofstream(m_folder / "ca.conf") << "[ca]\ndefault_ca = c\n[c]\ndatabase = empty\nserial = serial\n"
                                           "default_md = sha256\npolicy = p\nunique_subject = no\n"
                                           "new_certs_dir = .\ncopy_extensions = copy\n"
                                           "[p]\ncommonName = supplied\n";
    openssl(std::string("req -x509") + nKEY +
            "-subj '/CN=Test authority' -days 30 -keyout authority.key -out authority.pem");
}

TestCertificate TestAuthority::issue(const CertificateWish& wish)
{
    const auto name = "server" + std::to_string(++m_issued);
    openssl(std::string("req") + nKEY + "-subj '/CN=" + wish.subject + "' -addext 'subjectAltName=" +
            wish.names + "' -keyout " + name + ".key -out " + name + ".request");
    openssl("ca -batch -config ca.conf -in " + name + ".request -out " + name + ".pem -notext" +
            (wish.selfSigned ? " -selfsign -keyfile " + name + ".key"
                             : std::string(" -cert authority.pem -keyfile authority.key")) +
            " -md " + wish.digest + " -startdate " + daysFromNow(wish.from) + " -enddate " +
            daysFromNow(wish.until));
    return {m_folder / (name + ".pem"), m_folder / (name + ".key")};
}

void TestAuthority::openssl(const std::string& arguments) const
{
    const auto log = m_folder / "openssl.log";
    const auto command = "cd '" + m_folder.string() + "' && openssl " + arguments + " >openssl.log 2>&1";
    if (std::system(command.c_str()) == 0)
        return;
    std::ifstream said(log);
    throw std::runtime_error("openssl " + arguments + ": " +
                             std::string(std::istreambuf_iterator<char>(said), {}));
}
