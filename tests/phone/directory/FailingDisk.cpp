#include "StoreTesting.h"

#include <atomic>
#include <cerrno>
#include <ctime>

#include <sys/syscall.h>

namespace {

std::atomic<int> writesLeft{-1}; // -1: nothing fails
std::atomic<int> syncsLeft{-1};
std::atomic<int> failWith{0};
std::atomic<bool> onlyOnce{false};
std::atomic<bool> failed{false};
thread_local bool impatient = false;

bool fails(std::atomic<int>& left)
{
    if (left < 0)
        return false;
    if (left > 1) {
        --left;
        return false;
    }
    if (onlyOnce)
        left = -1;
    failed = true;
    errno = failWith;
    return true;
}

ssize_t failingPwrite(int fd, const void* bytes, size_t count, off_t offset)
{
    return fails(writesLeft) ? -1 : ::pwrite(fd, bytes, count, offset);
}

void overrideWrites(sqlite3_syscall_ptr function)
{
    sqlite3_vfs* vfs = sqlite3_vfs_find(nullptr);
    for (const char* name : {"pwrite", "pwrite64"})
        vfs->xSetSystemCall(vfs, name, function);
}

} // namespace

// SQLite offers no way to replace these two; the program's own come before the C library's.
extern "C" int fdatasync(int fd)
{
    return fails(syncsLeft) ? -1 : static_cast<int>(::syscall(SYS_fdatasync, fd));
}

extern "C" int usleep(useconds_t microseconds)
{
    if (impatient)
        return 0;
    const timespec time{microseconds / 1'000'000, static_cast<long>(microseconds % 1'000'000) * 1000};
    return ::nanosleep(&time, nullptr);
}

ImpatientSqlite::ImpatientSqlite()
{
    impatient = true;
}

ImpatientSqlite::~ImpatientSqlite()
{
    impatient = false;
}

FailingDisk::FailingDisk(What what, int nth, int error, How how)
{
    failWith = error;
    onlyOnce = how == How::Once;
    failed = false;
    (what == What::Write ? writesLeft : syncsLeft) = nth;
    overrideWrites(reinterpret_cast<sqlite3_syscall_ptr>(failingPwrite));
}

FailingDisk::~FailingDisk()
{
    writesLeft = -1;
    syncsLeft = -1;
    overrideWrites(nullptr);
}

bool FailingDisk::hasFailed() const
{
    return failed;
}
