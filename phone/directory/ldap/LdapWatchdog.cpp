#include "directory/ldap/LdapWatchdog.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <ctime>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

sigset_t pipeSignal()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    return signals;
}

} // namespace

LdapWatchdog::LdapWatchdog()
    : m_cancelEvent(::eventfd(0, EFD_CLOEXEC))
    , m_thread([this] { run(); })
{
}

LdapWatchdog::~LdapWatchdog()
{
    {
        std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    m_changed.notify_one();
    m_thread.join();
    ::close(m_cancelEvent);
}

void LdapWatchdog::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_ended) {
        if (m_socket >= 0 && (m_cancelled || Clock::now() >= m_deadline)) {
            ::shutdown(m_socket, SHUT_RDWR);
            m_socket = -1;
        }
        if (m_socket >= 0)
            m_changed.wait_until(lock, m_deadline);
        else
            m_changed.wait(lock);
    }
}

LdapWatchdog::Guard::Guard(LdapWatchdog& watchdog, int socket, Deadline deadline)
    : m_watchdog(watchdog)
{
    const auto pipe = pipeSignal();
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, &pipe, &before);
    m_pipeWasBlocked = sigismember(&before, SIGPIPE) == 1;
    {
        std::lock_guard lock(m_watchdog.m_mutex);
        m_watchdog.m_socket = socket;
        m_watchdog.m_deadline = deadline;
    }
    m_watchdog.m_changed.notify_one();
}

LdapWatchdog::Guard::~Guard()
{
    {
        // The thread may sleep on until the deadline that was: it finds nothing to watch then.
        std::lock_guard lock(m_watchdog.m_mutex);
        m_watchdog.m_socket = -1;
    }
    if (m_pipeWasBlocked)
        return;
    const auto pipe = pipeSignal();
    const timespec now{};
    while (sigtimedwait(&pipe, nullptr, &now) > 0) {
    }
    pthread_sigmask(SIG_UNBLOCK, &pipe, nullptr);
}

LdapWatchdog::Wait LdapWatchdog::waitFor(int descriptor, short events, Deadline deadline) const
{
    pollfd both[] = {{descriptor, events, 0}, {m_cancelEvent, POLLIN, 0}};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        const int ready = ::poll(both, 2, static_cast<int>(std::clamp<std::int64_t>(left, 0, 1000 * 1000)));
        if (both[1].revents != 0)
            return Wait::Cancelled;
        if (ready > 0)
            return Wait::Ready;
        if (left <= 0)
            return Wait::Late;
    }
}

void LdapWatchdog::cancel()
{
    {
        std::lock_guard lock(m_mutex);
        m_cancelled = true;
        const std::uint64_t one = 1;
        static_cast<void>(::write(m_cancelEvent, &one, sizeof one) == sizeof one);
    }
    m_changed.notify_one();
}

void LdapWatchdog::allow()
{
    std::lock_guard lock(m_mutex);
    if (!m_cancelled)
        return;
    m_cancelled = false;
    std::uint64_t times = 0;
    static_cast<void>(::read(m_cancelEvent, &times, sizeof times) == sizeof times);
}

bool LdapWatchdog::cancelled() const
{
    std::lock_guard lock(m_mutex);
    return m_cancelled;
}
