#include "Journal.h"

#include <algorithm>
#include <ctime>

#include <framework/services/CallPartyIdentifier.h>

#include "app/PhoneLog.h"
#include "directory/ChangeWatch.h"
#include "directory/ContactText.h"

namespace {

constexpr char nSOURCE[] = "./phone/calls/Journal";

constexpr std::uint32_t nAPPLICATION_ID = 0x44426a6e; // "DBjn"
constexpr int nSCHEMA_VERSION = 1;
constexpr int nMOST_CALLS = 100;

constexpr char nSCHEMA[] = "CREATE TABLE dialled(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL, "
                           "number TEXT NOT NULL, at TEXT NOT NULL)";

std::string rfc3339(std::chrono::system_clock::time_point at)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(at);
    std::tm utc{};
    ::gmtime_r(&seconds, &utc);
    char text[sizeof "2026-01-01T00:00:00Z"];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
}

std::filesystem::path fileIn(const std::filesystem::path& profile)
{
    return profile / "journal.db";
}

std::unique_ptr<Database> openFile(const std::filesystem::path& file)
{
    const auto header = readSqliteFileHeader(file);
    if (header.exists && header.applicationId != nAPPLICATION_ID)
        throw SqliteError{SQLITE_NOTADB, "it is not a journal of this telephone"};
    if (header.userVersion > nSCHEMA_VERSION)
        throw SqliteError{SQLITE_NOTADB, "it was written by a later version"};
    auto database = std::make_unique<Database>(file, Database::Mode::ReadWrite);
    database->execute("PRAGMA synchronous = FULL");
    if (!header.exists)
        database->createSchema(nAPPLICATION_ID, nSCHEMA_VERSION, nSCHEMA);
    database->check();
    if (sqlite3_db_readonly(database->handle(), "main") != 0)
        throw SqliteError{SQLITE_READONLY, "it is read-only"};
    return database;
}

std::int64_t add(Database& database, const std::string& name, const std::string& number,
                 const std::string& at)
{
    Statement row(database.handle(), "INSERT INTO dialled(name, number, at) VALUES(?1, ?2, ?3)");
    row.bind(1, name).bind(2, number).bind(3, at).run();
    return sqlite3_last_insert_rowid(database.handle());
}

std::vector<JournalRecord> recordsIn(Database& database)
{
    std::vector<JournalRecord> records;
    Statement row(database.handle(), "SELECT name, number, at FROM dialled ORDER BY id DESC");
    while (row.step())
        records.push_back({{cleanText(row.text(0)), cleanText(row.text(1)), cleanText(row.text(2))}});
    return records;
}

std::int64_t versionOf(Database& database)
{
    return database.queryNumber("PRAGMA data_version");
}

} // namespace

Result<std::unique_ptr<Journal>> Journal::open(const std::filesystem::path& profile, const Clock& clock,
                                               EventPoster& events, std::chrono::milliseconds watchInterval)
{
    try {
        std::unique_ptr<Journal> journal(new Journal(fileIn(profile), clock, events));
        if (watchInterval > std::chrono::milliseconds(0))
            journal->watch(fileIn(profile), watchInterval);
        return journal;
    } catch (const SqliteError& error) {
        return error.toError();
    }
}

Journal::Journal(const std::filesystem::path& file, const Clock& clock, EventPoster& events)
    : m_clock(clock)
    , m_events(events)
{
    try {
        std::error_code ignored;
        std::filesystem::create_directories(file.parent_path(), ignored);
        m_pDatabase = openFile(file);
    } catch (const SqliteError& error) {
        m_notice = "The journal \"" + file.string() + "\" cannot be used (" + error.message +
                   "). It is left as it is; calls are remembered until the telephone stops.";
        PHONE_ERROR("%s", m_notice.c_str());
        m_pDatabase = std::make_unique<Database>();
        m_pDatabase->createSchema(nAPPLICATION_ID, nSCHEMA_VERSION, nSCHEMA);
        if (error.primaryCode() == SQLITE_READONLY)
            remember(file);
    }
    m_dataVersion = versionOf(*m_pDatabase);
}

void Journal::remember(const std::filesystem::path& file)
try {
    Database kept(file, Database::Mode::ReadOnly);
    auto records = recordsIn(kept);
    std::ranges::reverse(records);
    for (const auto& [texts] : records)
        add(*m_pDatabase, texts[0], texts[1], texts[2]);
} catch (const SqliteError& error) {
    PHONE_ERROR("its calls cannot be read either: %s", error.message.c_str());
}

Journal::~Journal() = default;

std::string Journal::nameOf(const CallPartyIdentifier& party)
{
    const bool both = !party.getSurname().empty() && !party.getFirstname().empty();
    return party.getSurname() + (both ? ", " : "") + party.getFirstname();
}

Result<int> Journal::clear(const std::filesystem::path& profile)
{
    const auto file = fileIn(profile);
    try {
        if (!readSqliteFileHeader(file).exists)
            return 0;
        const auto database = openFile(file);
        database->execute("PRAGMA secure_delete = ON"); // whom somebody called is to be read no more
        Transaction transaction(*database);
        const auto calls = database->queryNumber("SELECT count(*) FROM dialled");
        database->execute("DELETE FROM dialled");
        transaction.commit();
        return static_cast<int>(calls);
    } catch (const SqliteError& error) {
        return Error{error.toError().code,
                     "The journal \"" + file.string() + "\" cannot be cleared (" + error.message + ")."};
    }
}

void Journal::watch(const std::filesystem::path& file, std::chrono::milliseconds interval)
{
    m_pWatch = std::make_unique<ChangeWatch>(file, interval, [this, alive = std::weak_ptr(m_alive)] {
        m_events.post("look at journal", [this, alive] {
            if (!alive.expired())
                lookForChanges();
        });
    });
}

void Journal::lookForChanges()
{
    try {
        if (const auto version = versionOf(*m_pDatabase); version != m_dataVersion) {
            m_dataVersion = version;
            tell(0, dialled().empty() ? JournalAction::Cleared : JournalAction::Current);
        }
    } catch (const SqliteError& error) {
        PHONE_ERROR("the journal cannot be read: %s", error.message.c_str());
    }
}

void Journal::addDialled(const CallPartyIdentifier& party)
{
    try {
        Transaction transaction(*m_pDatabase);
        const auto id = add(*m_pDatabase, cleanText(nameOf(party)), cleanText(party.getNumber()),
                            rfc3339(m_clock.wallClock()));
        Statement trim(m_pDatabase->handle(), "DELETE FROM dialled WHERE id <= ?1");
        trim.bind(1, id - nMOST_CALLS).run();
        transaction.commit();
        tell(static_cast<int>(id), JournalAction::Added);
    } catch (const SqliteError& error) {
        PHONE_ERROR("a dialled call is not in the journal: %s", error.message.c_str());
    }
}

std::vector<JournalRecord> Journal::dialled()
{
    try {
        return recordsIn(*m_pDatabase);
    } catch (const SqliteError& error) {
        PHONE_ERROR("the journal cannot be read: %s", error.message.c_str());
        return {};
    }
}

std::string Journal::lastName(const std::function<bool(const std::string& number)>& isMeant)
{
    for (const auto& record : dialled()) {
        const auto& name = record.textFields[0];
        if (!name.empty() && isMeant(record.textFields[1]))
            return name;
    }
    return "";
}

void Journal::addObserver(JournalServiceObserverIfc* observer)
{
    if (!observer || isObserver(observer))
        return;
    m_observers.push_back(observer);
    m_events.post("journal: current list", [this, observer, alive = std::weak_ptr(m_alive)] {
        if (!alive.expired() && isObserver(observer))
            tellOne(*observer, 0, JournalAction::Current);
    });
}

void Journal::removeObserver(JournalServiceObserverIfc* observer)
{
    std::erase(m_observers, observer);
}

bool Journal::isObserver(const JournalServiceObserverIfc* observer) const
{
    return std::find(m_observers.begin(), m_observers.end(), observer) != m_observers.end();
}

void Journal::tell(int id, JournalAction action)
{
    m_events.post("journal changed", [this, id, action, alive = std::weak_ptr(m_alive)] {
        if (alive.expired())
            return;
        // An observer may leave while it is told.
        for (auto* observer : std::vector(m_observers)) {
            if (isObserver(observer))
                tellOne(*observer, id, action);
        }
    });
}

void Journal::tellOne(JournalServiceObserverIfc& observer, int id, JournalAction action)
{
    JournalItem item(dialled());
    observer.dialledCallsUpdate(&item, id, action);
}
