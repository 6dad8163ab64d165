// SQLite's C interface in owned handles. Failures are thrown inside the stores as SqliteError and
// leave them as Result.

#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <sqlite3.h>

#include "app/Result.h"

struct SqliteError {
    int code; // extended result code
    std::string message;

    int primaryCode() const { return code & 0xff; }
    // Whether the disk may hold the change although it was reported as failed.
    bool leavesOutcomeOpen() const;
    // A full disk, a read-only medium and a busy file have codes of their own.
    Error toError() const;
};

// One prepared statement. Text that is bound must live until the next reset().
class Statement {
public:
    Statement(sqlite3* database, std::string_view sql);

    Statement& bind(int index, std::string_view text);
    Statement& bind(int index, std::int64_t number);
    Statement& bindBlob(int index, std::string_view bytes);

    // True with a row, false at the end.
    bool step();
    // Runs a statement that has no rows of interest to its end, and resets it.
    void run();
    void reset();

    // Of the row that step() stands on; text is valid until the next step() or reset().
    std::string_view text(int column) const;
    std::string_view blob(int column) const;
    std::int64_t number(int column) const;
    // Whether the value itself is text, and is not only given as text.
    bool isText(int column) const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalizer> m_pStatement;
};

// Resets a kept statement when its user is done with the rows, also by an exception.
class StatementUse {
public:
    explicit StatementUse(Statement& statement)
        : m_statement(statement)
    {
    }
    ~StatementUse() { m_statement.reset(); }

    StatementUse(const StatementUse&) = delete;
    StatementUse& operator=(const StatementUse&) = delete;

    Statement* operator->() const { return &m_statement; }
    const Statement& operator*() const { return m_statement; }

private:
    Statement& m_statement;
};

class Database {
public:
    enum class Mode { ReadWrite, ReadOnly, Immutable };

    // Creates the file in ReadWrite mode, for its owner's eyes only.
    Database(const std::filesystem::path& file, Mode mode);
    // In memory.
    Database();
    // In a file without a name that grows with its content and goes with the object.
    static std::unique_ptr<Database> temporary();

    sqlite3* handle() const { return m_pDatabase.get(); }

    void execute(const std::string& sql);
    std::int64_t queryNumber(const std::string& sql);
    std::string queryText(const std::string& sql);

    // Makes an empty file one of ours, whole or not at all.
    void createSchema(std::uint32_t applicationId, int version, const std::string& schema);
    // Throws when the content is damaged.
    void check();

private:
    explicit Database(const std::string& name) { open(name, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE); }
    void open(const std::string& name, int flags);

    struct Closer {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    };
    std::unique_ptr<sqlite3, Closer> m_pDatabase;
};

// Rolls back what was not committed.
class Transaction {
public:
    // Writing takes the right to write at once, so that it is not refused half-way.
    enum class Kind { Writing, Reading };
    explicit Transaction(Database& database, Kind kind = Kind::Writing);
    ~Transaction();

    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    Database& m_database;
};

// What a file says of itself, read without SQLite, so that nothing in it changes.
struct SqliteFileHeader {
    bool exists = false; // and holds at least one byte
    bool isDatabase = false;
    std::uint32_t applicationId = 0;
    std::uint32_t userVersion = 0;
};
SqliteFileHeader readSqliteFileHeader(const std::filesystem::path& file);
