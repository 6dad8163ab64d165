// The secret that a page must know to drive the telephone, kept in the profile beside the port, so
// that an open page and a bookmark survive a restart.

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "app/Result.h"

// 32 hexadecimal digits: 128 random bits that nobody can guess.
Result<std::string> newToken();

struct WebAccess {
    std::string token;
    std::uint16_t port = 0;
};

// What the profile keeps, made anew where it is missing or unreadable. Where it cannot be kept, on a
// read-only medium or a full disk, it lasts as long as the caller. The file is readable by its owner
// only (mode 0600). `port` 0 takes the kept port, or any free one.
Result<WebAccess> loadWebAccess(const std::filesystem::path& profile);
Result<void> saveWebAccess(const std::filesystem::path& profile, const WebAccess& access);

// Replaces the token: every open page must be opened anew.
Result<WebAccess> renewToken(const std::filesystem::path& profile);
