#include "system/PasswordCommand.h"

#include <istream>
#include <ostream>

#include <termios.h>
#include <unistd.h>

#include "app/Commands.h"

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

std::string passwordFrom(std::istream& in, std::ostream& out, const std::string& purpose)
{
    std::string password;
    const Unseen unseen;
    if (unseen.isTerminal())
        out << "Password for " << purpose << ": " << std::flush;
    std::getline(in, password);
    if (unseen.isTerminal())
        out << '\n';
    return password;
}

int refuse(std::ostream& error, const std::string& sentence)
{
    error << sentence << '\n';
    return EXIT_REFUSED;
}

} // namespace

int keepPassword(const PasswordToKeep& wanted, const Profile& profile, std::istream& in, std::ostream& out,
                 std::ostream& error)
{
    if (const auto made = profile.create(); !made)
        return refuse(error, made.error().sentence);
    if (wanted.hosts.empty()) {
        for (const auto& sentence : wanted.faults)
            error << sentence << '\n';
        return EXIT_REFUSED;
    }
    const auto password = passwordFrom(in, out, wanted.file.words().purpose);
    const auto objection = wanted.objection ? wanted.objection(password) : "";
    if (!objection.empty())
        return refuse(error, objection);
    if (const auto kept = wanted.file.write(password, wanted.hosts); !kept)
        return refuse(error, kept.error().sentence);
    out << "The password is kept for";
    for (const auto& host : wanted.hosts)
        out << ' ' << host;
    out << ".\n";
    if (!wanted.hint.empty())
        out << wanted.hint << '\n';
    return EXIT_DONE;
}
