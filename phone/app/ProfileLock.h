// Keeps a second telephone out of a profile as long as it lives, also when the program dies.

#pragma once

#include "app/Profile.h"
#include "app/Result.h"

class ProfileLock {
public:
    static Result<ProfileLock> take(const Profile& profile);
    ~ProfileLock();

    ProfileLock(ProfileLock&& other) noexcept;
    ProfileLock& operator=(ProfileLock&&) = delete;

private:
    explicit ProfileLock(int fd);

    int m_fd;
};
