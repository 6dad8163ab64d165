// What tests of the stores share: folders that go away, a disk that fails, a user without rights.

#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/fsuid.h>
#include <unistd.h>

#include "directory/Sqlite.h"

class TemporaryFolder {
public:
    TemporaryFolder()
    {
        // In memory where that is possible: the stores wait for the disk after every change.
        const std::filesystem::path memory = "/dev/shm";
        const auto base = std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
        std::string name = (base / "deskbook-test-XXXXXX").string();
        m_path = ::mkdtemp(name.data());
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const char* name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

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
