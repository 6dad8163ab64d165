// What tests of the stores share: files, a disk that fails, a user without rights.

#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/fsuid.h>
#include <unistd.h>

#include "../TemporaryFolder.h"
#include "directory/Sqlite.h"

inline std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void writeFile(const std::filesystem::path& file, const std::string& content)
{
    std::ofstream(file, std::ios::binary) << content;
}

// While it lives, SQLite's writes (or syncs) fail from the n-th on, or only the n-th.
class FailingDisk {
public:
    enum class What { Write, Sync };
    enum class How { FromThenOn, Once };

    FailingDisk(What what, int nth, int error, How how = How::FromThenOn);
    ~FailingDisk();
    FailingDisk(const FailingDisk&) = delete;
    FailingDisk& operator=(const FailingDisk&) = delete;

    // Whether anything failed at all.
    bool hasFailed() const;
};

// While it lives, SQLite does not wait on this thread for programs that hold a lock: the time that it
// would give them is over at once.
class ImpatientSqlite {
public:
    ImpatientSqlite();
    ~ImpatientSqlite();
    ImpatientSqlite(const ImpatientSqlite&) = delete;
    ImpatientSqlite& operator=(const ImpatientSqlite&) = delete;
};

// Takes away root's right to ignore permissions, for files.
class AsOrdinaryUser {
public:
    AsOrdinaryUser()
        : m_before(::setfsuid(nNOBODY))
    {
    }
    ~AsOrdinaryUser() { ::setfsuid(static_cast<uid_t>(m_before)); }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

private:
    static constexpr uid_t nNOBODY = 65534;
    int m_before;
};
