#include "ContactStore.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include <sys/stat.h>

#include "ContactText.h"
#include "NumberSearch.h"

namespace {

constexpr std::uint32_t nAPPLICATION_ID = 0x44426f6b; // "DBok"
constexpr int nSCHEMA_VERSION = 1;
constexpr char nIDENTITY[] = "identity"; // of what the book holds, given by a restore
constexpr char nUNREADABLE[] = "\ufffd";

// The journal mode is set afterwards: what marks the file as ours must stand in the file itself, not
// in a log beside it. Lists are read from contacts_by_name alone.
constexpr char nSCHEMA[] = R"(
CREATE TABLE about(name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
CREATE TABLE options(tag TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID;
CREATE TABLE groups(slot INTEGER PRIMARY KEY CHECK(slot > 0), name TEXT NOT NULL CHECK(name <> ''));
CREATE TABLE contacts(
    id TEXT PRIMARY KEY NOT NULL,
    surname TEXT NOT NULL, firstname TEXT NOT NULL,
    office TEXT NOT NULL, office2 TEXT NOT NULL, mobile TEXT NOT NULL, private TEXT NOT NULL,
    email TEXT NOT NULL, company TEXT NOT NULL, address TEXT NOT NULL, address2 TEXT NOT NULL,
    job_function TEXT NOT NULL, picture TEXT NOT NULL, external_id TEXT NOT NULL,
    slot INTEGER REFERENCES groups(slot) ON DELETE SET NULL,
    default_number INTEGER NOT NULL,
    name_key BLOB NOT NULL);
CREATE INDEX contacts_by_name ON contacts(name_key, id, surname, firstname, default_number, slot);
CREATE INDEX contacts_by_slot ON contacts(slot) WHERE slot IS NOT NULL;
CREATE TABLE cards(
    id TEXT PRIMARY KEY NOT NULL REFERENCES contacts(id) ON DELETE CASCADE,
    uid TEXT NOT NULL, hash INTEGER NOT NULL, card TEXT NOT NULL, imported TEXT NOT NULL);
CREATE INDEX cards_by_uid ON cards(uid) WHERE uid <> '';
CREATE INDEX cards_by_hash ON cards(hash);
)";

constexpr char nCONTACT_COLUMNS[] =
    "c.id, c.surname, c.firstname, c.office, c.office2, c.mobile, c.private, c.email, "
    "c.company, c.address, c.address2, c.job_function, c.picture, c.external_id, "
    "c.default_number, g.slot";

// What a damaged file says of groups must not eat the memory.
const std::string nGROUPS = "(SELECT slot, name FROM groups WHERE slot <= 1000)";
// Another program may have written any number: one that names no group stands for none.
const std::string nOF_NO_GROUP = "(slot IS NULL OR slot NOT IN (SELECT slot FROM " + nGROUPS + "))";

std::string selectContacts(const std::string& more, const std::string& tail)
{
    return std::string("SELECT ") + nCONTACT_COLUMNS + more + " FROM contacts c LEFT JOIN " + nGROUPS +
           " g USING(slot) " + tail;
}

std::string selectList(const std::string& condition)
{
    return "SELECT id, surname, firstname, default_number FROM contacts " + condition + " ORDER BY name_key";
}

// An id that nobody could ask for; none is met in a file that only this program has written.
bool isBadId(const Statement& row, int column)
{
    return !row.isText(column) || !isContactId(row.text(column));
}

Contact contactOf(const Statement& row)
{
    Contact contact;
    int column = 0;
    if (!isBadId(row, column))
        contact.id = row.text(column);
    ++column;
    for (const auto field : nTEXT_FIELDS)
        contact.*field = row.text(column++);
    contact.defaultNumber = toDefaultNumber(row.number(column++));
    contact.group = static_cast<int>(row.number(column));
    makeFit(contact);
    return contact;
}

// The file that connections share their locks in needs space too.
bool isDiskFull(const SqliteError& error)
{
    return error.primaryCode() == SQLITE_FULL || error.code == SQLITE_IOERR_SHMSIZE;
}

void appendName(std::string& list, std::string_view text)
{
    if (text.size() <= contact_limits::nNAME && isCleanText(text))
        list += text;
    else
        list += fitText(text, contact_limits::nNAME);
}

} // namespace

// The open file with the statements that every request needs.
struct ContactStore::Connection {
    explicit Connection(std::unique_ptr<Database> open)
        : database(std::move(open))
    {
        dataVersion = readDataVersion();
        identity = readIdentity();
    }

    std::unique_ptr<Database> database;
    sqlite3* handle = database->handle();
    std::int64_t dataVersion;
    std::string identity;

    Statement version{handle, "PRAGMA data_version"};
    Statement readAbout{handle, "SELECT value FROM about WHERE name = ?1"};
    Statement read{handle, selectContacts("", "WHERE c.id = ?1")};
    Statement write{
        handle, "INSERT INTO contacts VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, "
                "(SELECT slot FROM groups WHERE slot = ?16), ?15, ?17) ON CONFLICT(id) DO UPDATE SET "
                "surname = excluded.surname, firstname = excluded.firstname, office = excluded.office, "
                "office2 = excluded.office2, mobile = excluded.mobile, private = excluded.private, "
                "email = excluded.email, company = excluded.company, address = excluded.address, "
                "address2 = excluded.address2, job_function = excluded.job_function, "
                "picture = excluded.picture, external_id = excluded.external_id, slot = excluded.slot, "
                "default_number = excluded.default_number, name_key = excluded.name_key"};
    Statement erase{handle, "DELETE FROM contacts WHERE id = ?1"};
    Statement list{handle, selectList("")};
    Statement listOfGroup{handle, selectList("WHERE slot = ?1")};
    Statement listOfNone{handle, selectList("WHERE " + nOF_NO_GROUP)};
    Statement groups{handle, "SELECT slot, name FROM " + nGROUPS + " ORDER BY slot"};
    // Members that a group left behind when another program deleted it are not those of the next one.
    Statement forgetMembers{handle, "UPDATE contacts SET slot = NULL "
                                    "WHERE slot = ?1 AND NOT EXISTS(SELECT 1 FROM groups WHERE slot = ?1)"};
    Statement writeGroup{
        handle, "INSERT INTO groups VALUES(?1, ?2) ON CONFLICT(slot) DO UPDATE SET name = excluded.name"};
    Statement eraseGroup{handle, "DELETE FROM groups WHERE slot = ?1"};
    Statement reassign{
        handle, "UPDATE contacts SET slot = (SELECT slot FROM groups WHERE slot = ?2) WHERE slot = ?1"};
    Statement any{handle, "SELECT 1 FROM contacts LIMIT 1"};
    Statement readOption{handle, "SELECT value FROM options WHERE tag = ?1"};
    Statement writeOption{
        handle, "INSERT INTO options VALUES(?1, ?2) ON CONFLICT(tag) DO UPDATE SET value = excluded.value"};
    Statement writeCard{handle, "INSERT INTO cards VALUES(?1, ?2, ?3, ?4, ?5) ON CONFLICT(id) DO UPDATE SET "
                                "uid = excluded.uid, hash = excluded.hash, card = excluded.card, "
                                "imported = excluded.imported"};

    std::int64_t readDataVersion()
    {
        StatementUse use(version);
        return use->step() ? use->number(0) : 0;
    }
    std::string readIdentity()
    {
        StatementUse use(readAbout);
        use->bind(1, nIDENTITY);
        return use->step() ? std::string(use->text(0)) : std::string();
    }
};

ContactStore::ContactStore(std::filesystem::path file, const std::string& language)
    : m_file(std::move(file))
    , m_language(language)
{
    open();
}

ContactStore::~ContactStore() = default;

std::optional<ContactStore::FileIdentity> ContactStore::identify(const std::filesystem::path& file)
{
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0)
        return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
}

void ContactStore::open()
{
    m_pConnection.reset();
    m_problem = Problem::None;
    m_notice.clear();
    std::error_code ignored;
    std::filesystem::create_directories(m_file.parent_path(), ignored);
    const std::string name = m_file.string();
    const auto header = readSqliteFileHeader(m_file);
    try {
        if (header.exists && (!header.isDatabase || header.applicationId != nAPPLICATION_ID))
            openUnusable(Problem::Foreign,
                         "\"" + name + "\" is not a phonebook of this telephone. It is left as it is.");
        else if (header.userVersion > nSCHEMA_VERSION)
            openUnusable(Problem::LaterVersion,
                         "\"" + name +
                             "\" was written by a later version of this telephone. It is left as it is.");
        else
            openFile();
    } catch (const SqliteError& error) {
        if (isDiskFull(error))
            openUnusable(Problem::DiskFull, "The disk is full: the phonebook \"" + name +
                                                "\" cannot be opened. Delete something and try again.");
        else if (error.primaryCode() == SQLITE_BUSY)
            openUnusable(Problem::Busy, "Another program is using the phonebook \"" + name +
                                            "\", which cannot be opened therefore. Try again later.");
        else
            openUnusable(Problem::Damaged, "The phonebook \"" + name + "\" cannot be opened (" +
                                               error.message + "). It is left as it is.");
    }
    m_identity = identify(m_file);
    m_logIdentity = identify(name + "-wal");
}

void ContactStore::openUnusable(Problem problem, const std::string& notice)
{
    m_state = State::Unusable;
    m_problem = problem;
    m_notice = notice;
    auto memory = std::make_unique<Database>();
    memory->execute(nSCHEMA);
    memory->execute("PRAGMA query_only = ON");
    m_pCollator = std::make_unique<NameCollator>(m_language);
    m_pConnection = std::make_unique<Connection>(std::move(memory));
}

namespace {

// The medium is read-only or full.
bool mayStillBeRead(const SqliteError& error)
{
    const int code = error.primaryCode();
    return code == SQLITE_CANTOPEN || code == SQLITE_READONLY || code == SQLITE_PERM || isDiskFull(error);
}

// Until a file has proved to be sound, closing it must not move its log into it.
void keepLogOnClose(Database& database, bool keep)
{
    sqlite3_db_config(database.handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, keep ? 1 : 0, nullptr);
}

std::unique_ptr<Database> openForWriting(const std::filesystem::path& file)
{
    auto database = std::make_unique<Database>(file, Database::Mode::ReadWrite);
    keepLogOnClose(*database, true);
    database->execute("PRAGMA foreign_keys = ON");
    database->execute("PRAGMA synchronous = FULL");
    if (database->queryNumber("PRAGMA user_version") == 0) {
        database->createSchema(nAPPLICATION_ID, nSCHEMA_VERSION, nSCHEMA);
        database->queryText("PRAGMA journal_mode = WAL");
    }
    database->check();
    keepLogOnClose(*database, false);
    return database;
}

// A log beside the file counts where it can be read; without the right to lock it, the file alone.
std::unique_ptr<Database> openForReading(const std::filesystem::path& file)
{
    for (const auto mode : {Database::Mode::ReadOnly, Database::Mode::Immutable}) {
        try {
            auto database = std::make_unique<Database>(file, mode);
            database->check();
            return database;
        } catch (const SqliteError& error) {
            if (mode == Database::Mode::Immutable || !mayStillBeRead(error))
                throw;
        }
    }
    return nullptr;
}

} // namespace

void ContactStore::openFile()
{
    std::unique_ptr<Database> database;
    bool full = false;
    try {
        database = openForWriting(m_file);
    } catch (const SqliteError& error) {
        if (!mayStillBeRead(error) || !readSqliteFileHeader(m_file).exists)
            throw;
        full = isDiskFull(error);
        database = openForReading(m_file);
    }
    m_state = sqlite3_db_readonly(database->handle(), "main") != 0 ? State::ReadOnly : State::Ready;
    if (m_state == State::ReadOnly) {
        m_problem = full ? Problem::DiskFull : Problem::ReadOnly;
        m_notice = full ? "The disk is full: the phonebook \"" + m_file.string() +
                              "\" can be looked at, not changed. Delete something and try again."
                        : "The phonebook \"" + m_file.string() +
                              "\" is read-only: it can be looked at, not changed.";
    }
    m_pConnection = std::make_unique<Connection>(std::move(database));
    try {
        adoptLanguage(m_language);
        if (m_state == State::Ready)
            indexNumbers(*m_pConnection->database);
    } catch (const SqliteError& error) {
        // The disk is full or another program writes: names keep their order until the next time, and
        // numbers are found slowly.
        if (error.primaryCode() == SQLITE_CORRUPT)
            throw;
    }
}

void ContactStore::adoptLanguage(const std::string& language)
{
    Database& database = *m_pConnection->database;
    const std::string kept = database.queryText("SELECT value FROM about WHERE name = 'collation'");
    m_pCollator =
        std::make_unique<NameCollator>(language.empty() ? kept.substr(0, kept.find('/')) : language);
    if (m_state == State::Ready && m_pCollator->identity() != kept)
        rebuildNameKeys();
}

void ContactStore::rebuildNameKeys()
{
    Database& database = *m_pConnection->database;
    Transaction transaction(database);
    Statement names(database.handle(), "SELECT rowid, surname, firstname FROM contacts NOT INDEXED");
    Statement update(database.handle(), "UPDATE contacts SET name_key = ?2 WHERE rowid = ?1");
    while (names.step()) {
        const std::string key = m_pCollator->key(names.text(1), names.text(2));
        update.bind(1, names.number(0)).bindBlob(2, key).run();
    }
    Statement about(database.handle(), "REPLACE INTO about VALUES('collation', ?1)");
    about.bind(1, m_pCollator->identity()).run();
    transaction.commit();
}

// The log of a file that was replaced says nothing about the new one, but SQLite would take it for
// the new one's.
void ContactStore::removeStaleLog() const
{
    const std::string log = m_file.string() + "-wal";
    if (!m_logIdentity || identify(log) != m_logIdentity)
        return;
    std::error_code ignored;
    std::filesystem::remove(log, ignored);
    std::filesystem::remove(m_file.string() + "-shm", ignored);
}

void ContactStore::reopen()
{
    const bool same = fileState() == FileState::Same;
    m_changedBeforeReopen = changedByOthers();
    m_pConnection.reset();
    if (!same)
        removeStaleLog();
    const auto before = m_state;
    open();
    m_replaced = m_replaced || !same || (before == State::Unusable && m_state != State::Unusable);
}

ContactStore::FileState ContactStore::fileState() const
{
    const auto now = identify(m_file);
    if (now == m_identity)
        return FileState::Same;
    return now ? FileState::Replaced : FileState::Missing;
}

bool ContactStore::changedByOthers()
{
    try {
        const auto version = m_pConnection->readDataVersion();
        const bool changed = std::exchange(m_pConnection->dataVersion, version) != version;
        if (changed) {
            const auto identity = m_pConnection->readIdentity();
            m_replaced = std::exchange(m_pConnection->identity, identity) != identity || m_replaced;
        }
        return std::exchange(m_changedBeforeReopen, false) || changed;
    } catch (const SqliteError&) {
        return false;
    }
}

template <typename T> Result<T> ContactStore::attempt(const std::function<T()>& work)
{
    try {
        return work();
    } catch (const SqliteError& error) {
        return error.toError();
    }
}

std::optional<SqliteError> ContactStore::tryTransaction(const std::function<bool()>& work)
{
    try {
        Transaction transaction(*m_pConnection->database);
        if (work())
            transaction.commit();
        return std::nullopt;
    } catch (const SqliteError& error) {
        return error;
    }
}

namespace {

ErrorCode codeOf(ContactStore::Problem problem)
{
    switch (problem) {
    case ContactStore::Problem::DiskFull:
        return ErrorCode::Full;
    case ContactStore::Problem::Busy:
        return ErrorCode::Unavailable;
    default:
        return ErrorCode::Denied;
    }
}

} // namespace

// After an error of the disk nobody knows what it holds: look again through a new connection, and
// try once more only if the change is not there.
Result<void> ContactStore::change(const std::function<bool()>& work, const std::function<bool()>& isDone)
{
    // Somebody took the file away: what is written now must be found under its name.
    if (fileState() == FileState::Missing || mayHavePassed())
        reopen();
    constexpr int attempts = 2;
    for (int attempt = 1;; ++attempt) {
        if (m_state != State::Ready)
            return Error{codeOf(m_problem), m_notice};
        const auto failure = tryTransaction(work);
        if (!failure)
            return {};
        if (!failure->leavesOutcomeOpen())
            return failure->toError();
        reopen();
        if (m_state == State::Ready && isDone())
            return {};
        if (attempt == attempts)
            return failure->toError();
    }
}

Result<void> ContactStore::inTransaction(const std::function<bool()>& work)
{
    return change(work, [] { return false; });
}

Database* ContactStore::database()
{
    return m_pConnection->database.get();
}

std::string ContactStore::nameKey(const Contact& contact) const
{
    return m_pCollator->key(contact.surname, contact.firstname);
}

Result<std::optional<Contact>> ContactStore::read(const std::string& id)
{
    return attempt<std::optional<Contact>>([&]() -> std::optional<Contact> {
        StatementUse row(m_pConnection->read);
        row->bind(1, id);
        if (!row->step())
            return std::nullopt;
        return contactOf(m_pConnection->read);
    });
}

bool ContactStore::holds(const Contact& contact)
{
    const auto found = read(contact.id);
    return found.ok() && found.value() == contact;
}

Result<std::string> ContactStore::write(Contact contact, const std::optional<Contact>& before)
{
    makeFit(contact);
    if (contact.id.empty())
        contact.id = newId();
    Contact merged;
    const auto written = change(
        [&] {
            merged = contact;
            if (before)
                keepChangesOfOthers(merged, *before);
            put(merged);
            return true;
        },
        [&] { return holds(merged); });
    if (!written)
        return written.error();
    return contact.id;
}

void ContactStore::keepChangesOfOthers(Contact& contact, const Contact& before)
{
    const auto stored = read(contact.id);
    if (!stored || !stored.value() || *stored.value() == before)
        return;
    const Contact& theirs = *stored.value();
    const auto keep = [&](auto field) {
        if (contact.*field == before.*field)
            contact.*field = theirs.*field;
    };
    std::ranges::for_each(nTEXT_FIELDS, keep);
    keep(&Contact::group);
    keep(&Contact::defaultNumber);
}

void ContactStore::put(const Contact& contact)
{
    const std::string key = nameKey(contact);
    StatementUse row(m_pConnection->write);
    int index = 1;
    row->bind(index++, contact.id);
    for (const auto field : nTEXT_FIELDS)
        row->bind(index++, contact.*field);
    row->bind(index++, static_cast<std::int64_t>(contact.defaultNumber));
    row->bind(index++, std::int64_t{contact.group});
    row->bindBlob(index, key);
    row->step();
}

void ContactStore::putGroup(int slot, const std::string& name)
{
    const std::string clean = fitText(name, contact_limits::nGROUP_NAME);
    if (clean.empty()) {
        StatementUse row(m_pConnection->eraseGroup);
        row->bind(1, std::int64_t{slot});
        row->step();
        return;
    }
    StatementUse members(m_pConnection->forgetMembers);
    members->bind(1, std::int64_t{slot});
    members->step();
    StatementUse row(m_pConnection->writeGroup);
    row->bind(1, std::int64_t{slot}).bind(2, clean);
    row->step();
}

void ContactStore::putCard(const std::string& id, const KeptCard& card)
{
    StatementUse row(m_pConnection->writeCard);
    row->bind(1, id).bind(2, card.uid).bind(3, cardHash(card.card)).bind(4, card.card).bind(5, card.imported);
    row->step();
}

Result<void> ContactStore::erase(const std::string& id)
{
    return change(
        [&] {
            StatementUse row(m_pConnection->erase);
            row->bind(1, id);
            row->step();
            return true;
        },
        [&] {
            const auto found = read(id);
            return found.ok() && !found.value();
        });
}

Result<void> ContactStore::eraseAll(std::optional<int> group)
{
    const auto isDone = [&] {
        const auto list = listText(group);
        return list.ok() && list.value() == "empty";
    };
    return change(
        [&] {
            Database& database = *m_pConnection->database;
            if (!group) {
                database.execute("DELETE FROM contacts");
            } else {
                Statement erase(database.handle(),
                                "DELETE FROM contacts WHERE " + (*group == 0 ? nOF_NO_GROUP : "slot = ?1"));
                if (*group != 0)
                    erase.bind(1, std::int64_t{*group});
                erase.run();
            }
            return true;
        },
        isDone);
}

Result<bool> ContactStore::isEmpty()
{
    return attempt<bool>([&] {
        StatementUse any(m_pConnection->any);
        return !any->step();
    });
}

Result<std::string> ContactStore::listText(std::optional<int> group)
{
    return attempt<std::string>([&] {
        bool badIds = false;
        auto list = readList(group, badIds);
        if (badIds && m_state == State::Ready && replaceBadIds())
            list = readList(group, badIds);
        return list.empty() ? "empty" : list;
    });
}

// Leaves out contacts whose id nobody could ask for.
std::string ContactStore::readList(std::optional<int> group, bool& badIds)
{
    auto& ofGroup = group.value_or(0) == 0 ? m_pConnection->listOfNone : m_pConnection->listOfGroup;
    StatementUse use(group ? ofGroup : m_pConnection->list);
    if (group.value_or(0) != 0)
        use->bind(1, std::int64_t{*group});
    std::string list;
    while (use->step()) {
        const Statement& row = *use;
        if (isBadId(row, 0)) {
            badIds = true;
            continue;
        }
        if (!list.empty())
            list += '\n';
        list += row.text(0);
        list += '\t';
        appendName(list, row.text(1));
        list += '\t';
        appendName(list, row.text(2));
        list += '\t';
        list += static_cast<char>('0' + static_cast<int>(toDefaultNumber(row.number(3))));
    }
    return list;
}

// Another program may have added contacts under ids that no message can hold: they get new ones.
bool ContactStore::replaceBadIds()
{
    const auto replaced = inTransaction([&] {
        Database& database = *m_pConnection->database;
        database.execute("PRAGMA defer_foreign_keys = ON");
        Statement rows(database.handle(), "SELECT rowid, id FROM contacts NOT INDEXED");
        Statement card(database.handle(),
                       "UPDATE cards SET id = ?2 WHERE id = (SELECT id FROM contacts WHERE rowid = ?1)");
        Statement contact(database.handle(), "UPDATE contacts SET id = ?2 WHERE rowid = ?1");
        while (rows.step()) {
            if (!isBadId(rows, 1))
                continue;
            const auto id = newId();
            card.bind(1, rows.number(0)).bind(2, id).run();
            contact.bind(1, rows.number(0)).bind(2, id).run();
        }
        return true;
    });
    return replaced.ok();
}

Result<void>
ContactStore::forEach(const std::function<bool(const Contact& contact, const KeptCard& card)>& visit)
{
    const auto done = attempt<bool>([&] {
        Statement row(m_pConnection->handle,
                      selectContacts(", k.uid, k.card, k.imported",
                                     "LEFT JOIN cards k ON k.id = c.id ORDER BY c.name_key"));
        constexpr int cardAt = 16;
        while (row.step()) {
            const KeptCard card{std::string(row.text(cardAt)), std::string(row.text(cardAt + 1)),
                                std::string(row.text(cardAt + 2))};
            if (!visit(contactOf(row), card))
                return false;
        }
        return true;
    });
    return done ? Result<void>() : Result<void>(done.error());
}

Result<std::vector<std::string>> ContactStore::groupNames(int slots)
{
    return attempt<std::vector<std::string>>([&] { return readGroups(static_cast<std::size_t>(slots)); });
}

std::vector<std::string> ContactStore::readGroups(std::size_t slots)
{
    std::vector<std::string> names(slots);
    StatementUse row(m_pConnection->groups);
    while (row->step()) {
        const auto slot = static_cast<std::size_t>(row->number(0));
        names.resize(std::max(names.size(), slot));
        names[slot - 1] = fitText(row->text(1), contact_limits::nGROUP_NAME);
        // Without a name the slot would be taken for spare.
        if (names[slot - 1].empty())
            names[slot - 1] = nUNREADABLE;
    }
    return names;
}

Result<void> ContactStore::writeGroupNames(const std::vector<std::string>& names,
                                           const std::vector<std::string>& before)
{
    bool taken = false;
    const auto write = [&] {
        const auto now = readGroups(names.size());
        for (std::size_t index = 0; index < names.size() && !taken; ++index) {
            const bool known = index < before.size();
            if (known && names[index] == before[index])
                continue;
            taken = known && now[index] != before[index] && now[index] != names[index];
            putGroup(static_cast<int>(index) + 1, names[index]);
        }
        return !taken;
    };
    const auto written = inTransaction(write);
    if (written && taken)
        return Error{ErrorCode::Unavailable, "Another program has changed the groups meanwhile. Try again."};
    return written;
}

Result<void> ContactStore::reassignGroup(int from, int to)
{
    return inTransaction([&] {
        StatementUse row(m_pConnection->reassign);
        row->bind(1, std::int64_t{from}).bind(2, std::int64_t{to});
        row->step();
        return true;
    });
}

Result<int> ContactStore::readOption(const std::string& tag)
{
    return attempt<int>([&] {
        StatementUse row(m_pConnection->readOption);
        row->bind(1, tag);
        return row->step() ? static_cast<int>(row->number(0)) : 0;
    });
}

Result<void> ContactStore::writeOption(const std::string& tag, int value)
{
    return inTransaction([&] {
        putOption(tag, value);
        return true;
    });
}

void ContactStore::putOption(const std::string& tag, int value)
{
    StatementUse row(m_pConnection->writeOption);
    row->bind(1, tag).bind(2, std::int64_t{value});
    row->step();
}

Result<std::vector<std::pair<std::string, int>>> ContactStore::options()
{
    using Options = std::vector<std::pair<std::string, int>>;
    return attempt<Options>([&] {
        Options options;
        Statement row(m_pConnection->handle, "SELECT tag, value FROM options");
        while (row.step())
            options.emplace_back(row.text(0), static_cast<int>(row.number(1)));
        return options;
    });
}

Result<void> ContactStore::atOneMoment(const std::function<Result<void>()>& work)
{
    try {
        Transaction transaction(*m_pConnection->database, Transaction::Kind::Reading);
        return work();
    } catch (const SqliteError& error) {
        return error.toError();
    }
}

void ContactStore::clear()
{
    m_pConnection->database->execute(
        "DELETE FROM cards; DELETE FROM contacts; DELETE FROM groups; DELETE FROM options");
}

Result<void> ContactStore::replaceAll(const std::function<bool()>& work)
{
    const auto identity = newId();
    const auto replace = [&] {
        if (!work())
            return false;
        Statement about(m_pConnection->handle, "REPLACE INTO about VALUES(?1, ?2)");
        about.bind(1, nIDENTITY).bind(2, identity).run();
        return true;
    };
    return change(replace, [&] { return m_pConnection->identity == identity; });
}

Result<void> ContactStore::setLanguage(const std::string& language)
{
    m_language = language;
    const auto done = attempt<bool>([&] {
        adoptLanguage(language);
        return true;
    });
    return done ? Result<void>() : Result<void>(done.error());
}

// 15 characters of 32 kinds, 75 random bits: never met again, and short enough to lie inside a
// string object without an allocation of its own.
std::string ContactStore::newId()
{
    constexpr char alphabet[] = "0123456789abcdefghjkmnpqrstvwxyz";
    std::array<unsigned char, 15> random{};
    ::arc4random_buf(random.data(), random.size());
    std::string id;
    for (const auto byte : random)
        id += alphabet[byte & 31];
    return id;
}

// FNV-1a, 64 bits.
std::int64_t ContactStore::cardHash(std::string_view card)
{
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char character : card) {
        hash ^= static_cast<unsigned char>(character);
        hash *= 0x100000001b3;
    }
    return static_cast<std::int64_t>(hash);
}
