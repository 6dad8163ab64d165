#include "ServerProcess.h"

#include <cstdint>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::chrono::seconds nGRACE{5};

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

bool isTaken(int type, int port)
{
    const int socket = ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
    const auto address = loopback(port);
    const bool taken = ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0;
    ::close(socket);
    return taken;
}

bool answers(int port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto address = loopback(port);
    const bool connected =
        ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(socket);
    return connected;
}

pid_t spawn(const std::vector<std::string>& arguments, const std::filesystem::path& log, int signal)
{
    std::vector<char*> texts;
    for (const auto& argument : arguments)
        texts.push_back(const_cast<char*>(argument.c_str()));
    texts.push_back(nullptr);
    const auto parent = ::getpid();
    const auto child = ::fork();
    if (child != 0) {
        ::setpgid(child, child); // whoever comes first, the child or we
        return child;
    }
    ::prctl(PR_SET_PDEATHSIG, signal);
    ::setpgid(0, 0);
    const int output = ::open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (output < 0 || ::getppid() != parent)
        ::_exit(127);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    ::execv(texts.front(), texts.data());
    ::_exit(127);
}

} // namespace

ServerProcess::~ServerProcess()
{
    if (m_process > 0 && m_signal != SIGKILL) {
        ::kill(m_process, m_signal);
        exitCode(nGRACE);
    }
    kill();
}

void ServerProcess::start(const std::vector<std::string>& arguments, const std::filesystem::path& log,
                          int port, std::chrono::milliseconds patience)
{
    start(
        arguments, log, [port] { return answers(port); }, patience);
}

void ServerProcess::start(const std::vector<std::string>& arguments, const std::filesystem::path& log,
                          const std::function<bool()>& ready, std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    m_process = spawn(arguments, log, m_signal);
    while (!ready()) {
        const bool late = std::chrono::steady_clock::now() >= deadline;
        if (ended() || late) {
            kill();
            throw std::runtime_error(arguments.front() + (late ? " does not answer: " : " does not start: ") +
                                     textOf(log));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

bool ServerProcess::ended()
{
    if (m_process > 0 && ::waitpid(m_process, nullptr, WNOHANG) == m_process)
        m_process = -1;
    return m_process < 0;
}

int ServerProcess::exitCode(std::chrono::milliseconds patience)
{
    if (m_process < 0)
        return -1;
    const int descriptor = static_cast<int>(::syscall(SYS_pidfd_open, m_process, 0));
    pollfd ending{descriptor, POLLIN, 0};
    const bool ends = ::poll(&ending, 1, static_cast<int>(patience.count())) == 1;
    ::close(descriptor);
    int status = 0;
    if (!ends || ::waitpid(m_process, &status, 0) != m_process)
        return -1;
    m_process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ServerProcess::kill()
{
    if (m_process < 0)
        return;
    ::kill(-m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    m_process = -1;
}

int freePort()
{
    for (;;) {
        const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        auto address = loopback(0);
        socklen_t size = sizeof address;
        if (::bind(socket, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            throw std::runtime_error("there is no free port");
        ::close(socket);
        const int port = ntohs(address.sin_port);
        if (!receivesUdp(port))
            return port;
    }
}

bool isFree(int port)
{
    return !isTaken(SOCK_STREAM, port) && !isTaken(SOCK_DGRAM, port);
}

bool receivesUdp(int port)
{
    return isTaken(SOCK_DGRAM, port);
}

std::string textOf(const std::filesystem::path& file)
{
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}
