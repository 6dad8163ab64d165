#include "directory/ldap/LdapClient.h"

#include <algorithm>

#include <framework/services/Utils.h>

#include "app/PhoneLog.h"
#include "directory/ldap/LdapRecord.h"

using std::chrono::milliseconds;

namespace {

constexpr char nSOURCE[] = "./phone/directory/ldap/LdapClient";

// What is lost when a deadline has passed and the thread has not noticed yet.
constexpr milliseconds nGRACE{250};
// A server that has failed is tried last for this long.
constexpr std::chrono::seconds nAVOIDED{60};
// A connection that nobody needed for this long is given back.
constexpr std::chrono::minutes nKEPT{5};
// A filter for numbers finds some too many: that many more may come for each that is wanted.
constexpr int nNUMBER_SURPLUS = 10;

bool beginsAsAskedFor(const AttributeList& record, const LdapFilter& filter)
{
    return std::ranges::all_of(filter.beginnings, [&record](const auto& beginning) {
        return std::ranges::any_of(record, [&beginning](const auto& field) {
            return field.first == beginning.field && beginning.isOf(field.second);
        });
    });
}

// The list searches its rows for what was typed; it must not where no row begins with it.
AttributeList trailer(const std::vector<AttributeList>& records, const LdapFilter& filter)
{
    const bool byOtherName = !records.empty() && std::ranges::none_of(records, [&filter](const auto& record) {
        return beginsAsAskedFor(record, filter);
    });
    return {{Utils::NICKNAME, byOtherName ? "true" : "false"}};
}

} // namespace

struct LdapClient::Job {
    std::shared_ptr<const LdapSetup> setup;
    std::string base;
    LdapFilter filter;
    LdapWatchdog::Deadline deadline;

    bool done = false; // the client's mutex guards it; what follows is the thread's until then
    std::vector<AttributeList> records;
    LdapSearchEnd end;
    std::string server;
};

LdapClient::LdapClient()
    : m_setup(std::make_shared<LdapSetup>(
          LdapSetup{{}, {"There is no corporate directory: name its server in \"ldap-servers\"."}, false}))
{
}

LdapClient::~LdapClient()
{
    {
        std::lock_guard lock(m_mutex);
        m_ended = true;
    }
    cancel();
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void LdapClient::setUp(LdapSetup setup)
{
    for (const auto& sentence : setup.faults) {
        if (setup.wanted)
            PHONE_ERROR("%s", sentence.c_str());
    }
    {
        std::lock_guard lock(m_mutex);
        m_setup = std::make_shared<LdapSetup>(std::move(setup));
    }
    m_changed.notify_all();
}

std::shared_ptr<const LdapSetup> LdapClient::setup() const
{
    std::lock_guard lock(m_mutex);
    return m_setup;
}

bool LdapClient::usesNickname() const
{
    const auto now = setup();
    return now->usable() && now->settings.nickname;
}

DirectoryStatus LdapClient::search(const PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                                   bool ignoreNickname)
{
    results.getRecords().clear();
    if (criteria.getAttributes().empty())
        return DIRECTORY_NO_MATCHES;
    const auto job = std::make_shared<Job>();
    job->setup = setup();
    const auto& settings = job->setup->settings;
    if (!job->setup->usable()) {
        for (const auto& sentence : job->setup->faults)
            PHONE_ERROR("%s", sentence.c_str());
        return DIRECTORY_NOT_CONFIGURED;
    }
    if (!isOneFilter(settings.baseFilter)) {
        PHONE_ERROR("%s is not one filter: correct \"ldap-filter\".", settings.baseFilter.c_str());
        return DIRECTORY_WRONG_BASE;
    }
    auto filter = ldapFilterOf(criteria.getAttributes(), settings, ignoreNickname);
    if (!filter)
        return DIRECTORY_NO_MATCHES;
    job->filter = std::move(*filter);
    job->base = criteria.getBase().empty() ? settings.base : criteria.getBase();
    const auto begun = Clock::now();
    job->deadline = begun + settings.searchTime;

    {
        std::unique_lock lock(m_mutex);
        if (m_cancelled)
            return DIRECTORY_CONNECTION_FAILURE;
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
        m_jobs.push_back(job);
        m_changed.notify_all();
        const auto isOver = [this, &job] { return job->done || m_urgent; };
        const bool inTime = m_done.wait_until(lock, job->deadline + nGRACE, isOver);
        if (!job->done)
            std::erase(m_jobs, job);
        if (m_urgent && (!job->done || job->end.fault)) {
            results.getRecords().push_back(trailer({}, job->filter));
            return DIRECTORY_SUCCESS;
        }
        if (!inTime) {
            PHONE_ERROR("the search was given up: the search before it has not ended yet");
            return DIRECTORY_CONNECTION_FAILURE;
        }
    }
    const auto took = std::chrono::duration_cast<milliseconds>(Clock::now() - begun).count();
    if (job->end.fault) {
        PHONE_ERROR("%s", job->end.fault->sentence.c_str());
        return statusOf(job->end.fault->failure);
    }
    PHONE_USER("%zu entries%s from %s in %lld ms", job->records.size(), job->end.partial ? " of more" : "",
               job->server.c_str(), static_cast<long long>(took));
    if (job->records.empty() && !job->end.partial)
        return DIRECTORY_NO_MATCHES;
    auto& records = results.getRecords();
    records = std::move(job->records);
    records.push_back(trailer(records, job->filter));
    return job->end.partial ? DIRECTORY_TOO_MANY_MATCHES : DIRECTORY_SUCCESS;
}

void LdapClient::cancel()
{
    std::lock_guard lock(m_mutex);
    m_cancelled = true;
    m_watchdog.cancel();
}

void LdapClient::setUrgent(bool urgent)
{
    {
        std::lock_guard lock(m_mutex);
        m_urgent = urgent;
        if (urgent)
            m_watchdog.cancel();
    }
    m_done.notify_all();
}

void LdapClient::run()
{
    while (const auto job = nextJob()) {
        ask(*job);
        std::lock_guard lock(m_mutex);
        job->done = true;
        m_done.notify_all();
    }
    m_connection.reset();
}

std::shared_ptr<LdapClient::Job> LdapClient::nextJob()
{
    std::unique_lock lock(m_mutex);
    const auto hasWork = [this] { return m_ended || !m_jobs.empty() || m_setup != m_setupOfConnection; };
    for (;;) {
        const bool inTime = m_changed.wait_for(lock, nKEPT, hasWork);
        if (m_ended)
            return nullptr;
        // A search that had to wait was asked for under the settings of then.
        const auto wanted = m_jobs.empty() ? m_setup : m_jobs.front()->setup;
        if (!inTime || wanted != m_setupOfConnection) {
            lock.unlock();
            m_connection.reset();
            m_failedAt.clear();
            m_setupOfConnection = wanted;
            lock.lock();
            continue;
        }
        auto job = m_jobs.front();
        m_jobs.pop_front();
        if (!m_cancelled && !m_urgent)
            m_watchdog.allow();
        return job;
    }
}

std::vector<LdapServer> LdapClient::serversInOrder(const LdapSettings& settings) const
{
    auto servers = settings.servers;
    std::stable_partition(servers.begin(), servers.end(), [this](const auto& server) {
        const auto failed = m_failedAt.find(server.uri);
        return failed == m_failedAt.end() || failed->second + nAVOIDED < Clock::now();
    });
    return servers;
}

void LdapClient::ask(Job& job)
{
    const auto goesOn = [&job] {
        return job.end.fault && isOfOneServer(job.end.fault->failure) && Clock::now() < job.deadline;
    };
    const auto& settings = job.setup->settings;
    if (m_connection && m_connection->isFit()) {
        query(job);
        if (job.end.fault && job.end.fault->failure == LdapFailure::NoAnswer)
            m_failedAt[m_connection->server().uri] = Clock::now();
        if (!goesOn())
            return;
    }
    std::optional<LdapFault> first;
    for (const auto& server : serversInOrder(settings)) {
        m_connection = std::make_unique<LdapConnection>(server, settings, m_watchdog);
        job.end = {m_connection->open(std::min(job.deadline, Clock::now() + settings.connectTime)), false};
        if (!job.end.fault)
            query(job);
        if (!job.end.fault) {
            m_failedAt.erase(server.uri);
            return;
        }
        m_connection.reset();
        if (isOfOneServer(job.end.fault->failure))
            m_failedAt[server.uri] = Clock::now();
        if (!goesOn())
            break;
        // What an administrator must change is told rather than what may pass.
        if (!first || statusOf(first->failure) == DIRECTORY_CONNECTION_FAILURE)
            first = job.end.fault;
        if (settings.servers.size() > 1)
            PHONE_REFUSED("%s", job.end.fault->sentence.c_str());
    }
    if (first && statusOf(job.end.fault->failure) == DIRECTORY_CONNECTION_FAILURE)
        job.end.fault = first;
}

void LdapClient::query(Job& job)
{
    const auto& settings = job.setup->settings;
    LdapRecordReader reader(settings.attributes, job.filter);
    const auto wanted = static_cast<std::size_t>(settings.sizeLimit);
    LdapSearch what{job.base, settings.scope, job.filter.text, reader.attributes(), settings.sizeLimit};
    if (!job.filter.numbers.empty())
        what.sizeLimit *= nNUMBER_SURPLUS;
    job.server = m_connection->server().uri;
    job.records.clear();
    job.end = m_connection->search(what, job.deadline, [&](const LdapEntryView& entry) {
        entry.forEachValue([&reader](auto attribute, auto value) { reader.add(attribute, value); });
        auto record = reader.finish();
        if (!record)
            return true;
        if (job.records.size() == wanted)
            return false;
        job.records.push_back(std::move(*record));
        return true;
    });
    // What came in time is shown.
    if (job.end.fault && job.end.fault->failure == LdapFailure::NoAnswer && !job.records.empty())
        job.end = {std::nullopt, true};
}
