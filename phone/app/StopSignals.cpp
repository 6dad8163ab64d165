#include "app/StopSignals.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

StopSignals::StopSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    m_fd = signalfd(-1, &signals, SFD_CLOEXEC);
    // Who reads our text may go away before us.
    std::signal(SIGPIPE, SIG_IGN);
}

StopSignals::~StopSignals()
{
    close(m_fd);
}

void StopSignals::wait() const
{
    pollfd waits{m_fd, POLLIN, 0};
    while (poll(&waits, 1, -1) < 0 && errno == EINTR) {
    }
}
