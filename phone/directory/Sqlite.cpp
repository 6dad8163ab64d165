#include "Sqlite.h"

#include <array>
#include <fstream>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int nBUSY_TIMEOUT_MS = 3000;

[[noreturn]] void fail(sqlite3* database, int code)
{
    throw SqliteError{database ? sqlite3_extended_errcode(database) : code,
                      database ? sqlite3_errmsg(database) : sqlite3_errstr(code)};
}

// A file name as a URI: "?", "#" and "%" mean something there.
std::string toUri(const std::filesystem::path& file, const char* parameters)
{
    std::string uri = "file:";
    for (const char character : std::filesystem::absolute(file).string()) {
        if (character == '%')
            uri += "%25";
        else if (character == '?')
            uri += "%3f";
        else if (character == '#')
            uri += "%23";
        else
            uri += character;
    }
    return uri + parameters;
}

// SQLite gives a new file the rights that the umask leaves; an address book is nobody else's.
void createPrivately(const std::filesystem::path& file)
{
    const int descriptor = ::open(file.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    if (descriptor >= 0)
        ::close(descriptor);
}

std::uint32_t bigEndian(const unsigned char* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

} // namespace

bool SqliteError::leavesOutcomeOpen() const
{
    switch (primaryCode()) {
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
    case SQLITE_PROTOCOL:
        return true;
    default:
        return false;
    }
}

Error SqliteError::toError() const
{
    switch (primaryCode()) {
    case SQLITE_FULL:
        return {ErrorCode::Full, "The disk is full. Delete something and try again."};
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return {ErrorCode::Denied, "The phonebook cannot be changed: its file is read-only."};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {ErrorCode::Unavailable, "Another program is writing the phonebook. Try again."};
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return {ErrorCode::Malformed, "The phonebook's file is damaged (" + message + ")."};
    default:
        return {ErrorCode::Failed, "The phonebook's file gave an error (" + message + ")."};
    }
}

Statement::Statement(sqlite3* database, std::string_view sql)
{
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(database, sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK)
        fail(database, code);
    m_pStatement.reset(statement);
}

Statement& Statement::bind(int index, std::string_view text)
{
    // A null pointer would bind NULL.
    const char* bytes = text.data() ? text.data() : "";
    sqlite3_bind_text(m_pStatement.get(), index, bytes, static_cast<int>(text.size()), SQLITE_STATIC);
    return *this;
}

Statement& Statement::bind(int index, std::int64_t number)
{
    sqlite3_bind_int64(m_pStatement.get(), index, number);
    return *this;
}

Statement& Statement::bindBlob(int index, std::string_view bytes)
{
    const char* start = bytes.data() ? bytes.data() : "";
    sqlite3_bind_blob(m_pStatement.get(), index, start, static_cast<int>(bytes.size()), SQLITE_STATIC);
    return *this;
}

bool Statement::step()
{
    const int code = sqlite3_step(m_pStatement.get());
    if (code == SQLITE_ROW)
        return true;
    if (code == SQLITE_DONE)
        return false;
    sqlite3* const database = sqlite3_db_handle(m_pStatement.get());
    const SqliteError error{sqlite3_extended_errcode(database), sqlite3_errmsg(database)};
    reset();
    throw error;
}

void Statement::run()
{
    while (step()) {
    }
    reset();
}

void Statement::reset()
{
    sqlite3_reset(m_pStatement.get());
    sqlite3_clear_bindings(m_pStatement.get());
}

std::string_view Statement::text(int column) const
{
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_pStatement.get(), column));
    if (!bytes)
        return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(m_pStatement.get(), column))};
}

std::string_view Statement::blob(int column) const
{
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(m_pStatement.get(), column));
    if (!bytes)
        return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(m_pStatement.get(), column))};
}

std::int64_t Statement::number(int column) const
{
    return sqlite3_column_int64(m_pStatement.get(), column);
}

bool Statement::isText(int column) const
{
    return sqlite3_column_type(m_pStatement.get(), column) == SQLITE_TEXT;
}

Database::Database(const std::filesystem::path& file, Mode mode)
{
    switch (mode) {
    case Mode::ReadWrite:
        createPrivately(file);
        open(toUri(file, ""), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        break;
    case Mode::ReadOnly:
        open(toUri(file, ""), SQLITE_OPEN_READONLY);
        break;
    case Mode::Immutable:
        open(toUri(file, "?immutable=1"), SQLITE_OPEN_READONLY);
        break;
    }
}

Database::Database()
    : Database(std::string(":memory:"))
{
}

std::unique_ptr<Database> Database::temporary()
{
    return std::unique_ptr<Database>(new Database(std::string()));
}

void Database::open(const std::string& name, int flags)
{
    sqlite3* database = nullptr;
    const int code =
        sqlite3_open_v2(name.c_str(), &database,
                        flags | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    m_pDatabase.reset(database);
    if (code != SQLITE_OK)
        fail(database, code);
    sqlite3_busy_timeout(database, nBUSY_TIMEOUT_MS);
    // The file may come from anywhere: nothing that its schema says may do harm.
    sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    execute("PRAGMA cell_size_check = ON");
}

void Database::execute(const std::string& sql)
{
    const int code = sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        fail(handle(), code);
}

std::int64_t Database::queryNumber(const std::string& sql)
{
    Statement statement(handle(), sql);
    return statement.step() ? statement.number(0) : 0;
}

std::string Database::queryText(const std::string& sql)
{
    Statement statement(handle(), sql);
    return statement.step() ? std::string(statement.text(0)) : std::string();
}

void Database::createSchema(std::uint32_t applicationId, int version, const std::string& schema)
{
    Transaction transaction(*this);
    execute("PRAGMA application_id = " + std::to_string(applicationId));
    execute("PRAGMA user_version = " + std::to_string(version));
    execute(schema);
    transaction.commit();
}

void Database::check()
{
    const auto finding = queryText("PRAGMA quick_check(1)");
    if (finding != "ok")
        throw SqliteError{SQLITE_CORRUPT, "damaged: " + finding};
}

Transaction::Transaction(Database& database, Kind kind)
    : m_database(database)
{
    m_database.execute(kind == Kind::Writing ? "BEGIN IMMEDIATE" : "BEGIN");
}

Transaction::~Transaction()
{
    // SQLite has rolled back by itself after some errors.
    if (sqlite3_get_autocommit(m_database.handle()) == 0)
        sqlite3_exec(m_database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit()
{
    m_database.execute("COMMIT");
}

SqliteFileHeader readSqliteFileHeader(const std::filesystem::path& file)
{
    // https://www.sqlite.org/fileformat2.html, "The Database Header"
    constexpr std::string_view magic("SQLite format 3\0", 16);
    constexpr std::size_t size = 100;
    constexpr std::size_t userVersionAt = 60;
    constexpr std::size_t applicationIdAt = 68;

    SqliteFileHeader header;
    std::array<char, size> bytes{};
    std::ifstream stream(file, std::ios::binary);
    stream.read(bytes.data(), size);
    const auto count = static_cast<std::size_t>(stream.gcount());
    header.exists = count > 0;
    if (count < size || std::string_view(bytes.data(), magic.size()) != magic)
        return header;
    const auto* raw = reinterpret_cast<const unsigned char*>(bytes.data());
    header.isDatabase = true;
    header.userVersion = bigEndian(raw + userVersionAt);
    header.applicationId = bigEndian(raw + applicationIdAt);
    return header;
}
