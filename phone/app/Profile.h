// The folders in which one telephone keeps what is its own.

#pragma once

#include <filesystem>

#include "app/Result.h"

struct Profile {
    std::filesystem::path config; // config.toml
    std::filesystem::path data;   // contacts, journal, pictures/, phonelets' states
    std::filesystem::path log;

    // Everything in one folder.
    static Profile in(const std::filesystem::path& folder);
    // Where desktop programs keep their files (XDG Base Directory Specification 0.8).
    static Profile ofUser();
    // The demo's own folder, beside the user's data.
    static Profile demo();

    std::filesystem::path configFile() const { return config / "config.toml"; }
    std::filesystem::path pictures() const { return data / "pictures"; }

    // Makes the folders that are missing, readable by their owner only.
    Result<void> create() const;
};

// Puts the demo's configuration and pictures into a profile that has none. True when it did: the
// demo's contacts are to be imported then.
Result<bool> seedDemo(const Profile& profile, const std::filesystem::path& demo);
