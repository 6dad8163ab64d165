// The corporate directory, as the directory service asks it.
//
// Searches run on a thread of its own, which keeps one connection and uses it again. A kept
// connection that turns out to be broken is renewed once; a server that fails is left for the next
// one, and is tried last for a minute. A search ends by its deadline whatever the servers do.

#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/PhonebookSearchResults.h>

#include "directory/ldap/LdapConnection.h"
#include "directory/ldap/LdapFilter.h"
#include "directory/ldap/LdapSettings.h"

class LdapClient {
public:
    LdapClient();
    ~LdapClient();

    LdapClient(const LdapClient&) = delete;
    LdapClient& operator=(const LdapClient&) = delete;

    // What counts from the next search on; the kept connection is closed. Faults are logged.
    // [any-thread]
    void setUp(LdapSetup setup);

    // Blocks until the search is done, at most for the configured time of a whole search. Results
    // and status are those of DirectoryServiceIfc::search().
    // [any-thread]
    DirectoryStatus search(const PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                           bool ignoreNickname);

    // Ends a search that runs, and every later one: the telephone is being switched off.
    // [any-thread]
    void cancel();

    // While `urgent` nobody waits for a search: one that runs is given up, and one that begins asks
    // nobody. Such a search found nothing, and is called a success: its user has turned to something else.
    // [any-thread]
    void setUrgent(bool urgent);

    // Whether the configuration has a nickname attribute in use.
    // [any-thread]
    bool usesNickname() const;

private:
    struct Job;
    using Clock = LdapWatchdog::Clock;

    std::shared_ptr<const LdapSetup> setup() const;
    void run();
    std::shared_ptr<Job> nextJob();
    void ask(Job& job);
    void query(Job& job);
    std::vector<LdapServer> serversInOrder(const LdapSettings& settings) const;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed; // jobs, set-up, end
    std::condition_variable m_done;    // of a job, urgency
    std::shared_ptr<const LdapSetup> m_setup;
    std::deque<std::shared_ptr<Job>> m_jobs;
    bool m_ended = false;
    bool m_cancelled = false;
    bool m_urgent = false;

    // The thread's own.
    LdapWatchdog m_watchdog;
    std::shared_ptr<const LdapSetup> m_setupOfConnection;
    std::unique_ptr<LdapConnection> m_connection;
    std::map<std::string, Clock::time_point> m_failedAt; // by URI

    std::thread m_thread; // started by the first search
};
