#include "directory/ldap/LdapPasswordCommand.h"

#include <istream>
#include <ostream>
#include <string>

#include <termios.h>
#include <unistd.h>

#include "app/Commands.h"
#include "directory/ldap/LdapSettings.h"
#include "system/Configuration.h"

namespace {

// What is typed meanwhile does not appear on the terminal, if the standard input is one.
class Unseen {
public:
    Unseen()
        : m_isTerminal(::tcgetattr(STDIN_FILENO, &m_before) == 0)
    {
        if (!m_isTerminal)
            return;
        auto hidden = m_before;
        // A key that ends the program would leave the terminal like this.
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~Unseen()
    {
        if (m_isTerminal)
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
    }
    Unseen(const Unseen&) = delete;
    Unseen& operator=(const Unseen&) = delete;

    bool isTerminal() const { return m_isTerminal; }

private:
    termios m_before{};
    const bool m_isTerminal;
};

std::string passwordFrom(std::istream& in, std::ostream& out)
{
    std::string password;
    const Unseen unseen;
    if (unseen.isTerminal())
        out << "Password for the directory: " << std::flush;
    std::getline(in, password);
    if (unseen.isTerminal())
        out << '\n';
    return password;
}

} // namespace

int keepLdapPassword(const Profile& profile, std::istream& in, std::ostream& out, std::ostream& error)
{
    const Configuration configuration(profile.configFile());
    const auto setup = ldapSettingsOf(configuration, profile.data);
    const auto hosts = setup.settings.hosts();
    if (const auto made = profile.create(); !made) {
        error << made.error().sentence << '\n';
        return EXIT_REFUSED;
    }
    if (hosts.empty()) {
        for (const auto& sentence : setup.faults)
            error << sentence << '\n';
        return EXIT_REFUSED;
    }
    if (const auto kept = setup.settings.password.write(passwordFrom(in, out), hosts); !kept) {
        error << kept.error().sentence << '\n';
        return EXIT_REFUSED;
    }
    out << "The password is kept for";
    for (const auto& host : hosts)
        out << ' ' << host;
    out << ".\n";
    if (setup.settings.bindDn.empty())
        out << "It is not used before \"ldap-bind-dn\" says whose it is.\n";
    return EXIT_DONE;
}
