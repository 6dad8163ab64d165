#include "calls/sip/BaresipProcess.h"

#include <array>
#include <csignal>
#include <cstring>
#include <string>

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/filter.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int nGRACE = 1000; // ms

class Spawning {
public:
    Spawning()
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_adddup2(&m_actions, STDOUT_FILENO, STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        posix_spawnattr_init(&m_attributes);
        // The telephone's own signals, Ctrl+C among them, are not the engine's.
        posix_spawnattr_setflags(&m_attributes,
                                 POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
    }
    ~Spawning()
    {
        posix_spawnattr_destroy(&m_attributes);
        posix_spawn_file_actions_destroy(&m_actions);
    }
    Spawning(const Spawning&) = delete;
    Spawning& operator=(const Spawning&) = delete;

    // An error number; 0 for none.
    int run(pid_t& process, char* const* words) const
    {
        return ::posix_spawn(&process, words[0], &m_actions, &m_attributes, words, environ);
    }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

bool listensOn(int descriptor, int port)
{
    int listens = 0;
    socklen_t size = sizeof listens;
    sockaddr_in address{};
    socklen_t length = sizeof address;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listens, &size) == 0 && listens != 0 &&
           ::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
           address.sin_family == AF_INET && ntohs(address.sin_port) == port;
}

// Whoever asks for a connection hears nothing from now on.
Result<void> takeNothing(int listener)
{
    sock_filter dropAll = BPF_STMT(BPF_RET | BPF_K, 0);
    const sock_fprog program{1, &dropAll};
    if (::setsockopt(listener, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program) != 0)
        return Error{ErrorCode::Denied, std::strerror(errno)};
    return {};
}

} // namespace

BaresipProcess::~BaresipProcess()
{
    if (m_process < 0)
        return;
    ::kill(m_process, SIGTERM);
    pollfd ending{m_ending.native_handle(), POLLIN, 0};
    while (::poll(&ending, 1, nGRACE) < 0 && errno == EINTR) {
    }
    kill();
}

Result<void> BaresipProcess::start(const std::filesystem::path& folder, IpVersion version,
                                   std::function<void()> ended)
{
    std::string name = folder.string();
    // A signal that comes with the end of its parent must be asked for by the child itself.
    std::array<std::string, 7> words{"/usr/bin/setpriv",
                                     "--pdeathsig",
                                     "TERM",
                                     "/usr/bin/baresip",
                                     version == IpVersion::V6 ? "-6" : "-4",
                                     "-f",
                                     name};
    std::array<char*, words.size() + 1> arguments{};
    for (std::size_t i = 0; i < words.size(); ++i)
        arguments[i] = words[i].data();
    if (const int error = Spawning().run(m_process, arguments.data()); error != 0) {
        m_process = -1;
        return Error{ErrorCode::Failed,
                     std::string("The SIP engine cannot be started: ") + std::strerror(error)};
    }
    m_ending.assign(static_cast<int>(::syscall(SYS_pidfd_open, m_process, 0)));
    m_ending.async_wait(boost::asio::posix::stream_descriptor::wait_read,
                        [this, ended = std::move(ended)](const boost::system::error_code& error) {
                            if (error)
                                return; // killed, and this object perhaps gone
                            bury();
                            ended();
                        });
    return {};
}

Result<void> BaresipProcess::closePort(int port)
{
    std::error_code failed;
    const auto folder = "/proc/" + std::to_string(m_process) + "/fd";
    const int process = m_ending.native_handle();
    for (const auto& entry : std::filesystem::directory_iterator(folder, failed)) {
        const int theirs = std::stoi(entry.path().filename().string());
        const int ours = static_cast<int>(::syscall(SYS_pidfd_getfd, process, theirs, 0));
        if (ours < 0 && errno != EBADF)
            return Error{ErrorCode::Denied, std::strerror(errno)};
        if (ours < 0)
            continue; // just closed
        const auto closed = listensOn(ours, port) ? std::optional(takeNothing(ours)) : std::nullopt;
        ::close(ours);
        if (closed)
            return *closed;
    }
    return Error{ErrorCode::NotFound, failed ? failed.message() : "it does not listen"};
}

void BaresipProcess::kill()
{
    if (m_process < 0)
        return;
    ::kill(m_process, SIGKILL);
    bury();
}

void BaresipProcess::bury()
{
    ::waitpid(m_process, nullptr, 0);
    m_process = -1;
    m_ending.close();
}
