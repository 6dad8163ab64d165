#include "app/ProfileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace {

bool isReadOnly(const std::filesystem::path& folder)
{
    const auto may = [&folder](int what) {
        return faccessat(AT_FDCWD, folder.c_str(), what, AT_EACCESS) == 0;
    };
    return may(R_OK | X_OK) && !may(W_OK);
}

} // namespace

Result<ProfileLock> ProfileLock::take(const Profile& profile)
{
    const auto file = profile.data / "in-use";
    const int fd = open(file.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
    // Where nothing can be written, nothing can be spoilt: a read-only profile needs no lock.
    if (fd < 0 && (errno == EROFS || (errno == EACCES && isReadOnly(profile.data))))
        return ProfileLock(-1);
    ProfileLock lock(fd);
    if (fd < 0)
        return Error{ErrorCode::Denied,
                     "The folder " + profile.data.string() + " cannot be used: it cannot be written."};
    if (flock(fd, LOCK_EX | LOCK_NB) != 0)
        return Error{ErrorCode::Unavailable,
                     "A telephone already runs with the profile " + profile.data.string() + "."};
    return lock;
}

ProfileLock::ProfileLock(int fd)
    : m_fd(fd)
{
}

ProfileLock::ProfileLock(ProfileLock&& other) noexcept
    : m_fd(std::exchange(other.m_fd, -1))
{
}

ProfileLock::~ProfileLock()
{
    if (m_fd >= 0)
        close(m_fd);
}
