// Ends what libldap cannot be made to end: a handshake without an answer, a message that announces
// two gigabytes, one byte a second. At the deadline the socket is shut down, and whatever call waits
// for it returns.
//
// One watchdog serves the connections of one thread, one wait at a time.

#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

class LdapWatchdog {
public:
    using Clock = std::chrono::steady_clock;
    using Deadline = Clock::time_point;

    LdapWatchdog();
    ~LdapWatchdog();

    LdapWatchdog(const LdapWatchdog&) = delete;
    LdapWatchdog& operator=(const LdapWatchdog&) = delete;

    // While it lives `socket` is shut down at the deadline or when everything is cancelled. The
    // socket must stay open as long. SIGPIPE is kept from the calling thread meanwhile.
    class Guard {
    public:
        Guard(LdapWatchdog& watchdog, int socket, Deadline deadline);
        ~Guard();

        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        LdapWatchdog& m_watchdog;
        bool m_pipeWasBlocked = false;
    };

    enum class Wait { Ready, Late, Cancelled };
    // Waits until `descriptor` has one of poll(2)'s `events`.
    Wait waitFor(int descriptor, short events, Deadline deadline) const;

    // Shuts down what is being watched; every wait from now on ends at once, until allow().
    // [any-thread]
    void cancel();
    // [any-thread]
    void allow();
    // [any-thread]
    bool cancelled() const;

private:
    void run();

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_socket = -1; // -1: nothing is watched
    Deadline m_deadline;
    bool m_cancelled = false;
    bool m_ended = false;
    int m_cancelEvent; // readable once cancelled
    std::thread m_thread;
};
