// The folders in which one telephone keeps what is its own.

#pragma once

#include <filesystem>
#include <functional>

#include "app/Result.h"

struct Profile {
    std::filesystem::path config; // config.toml
    std::filesystem::path data;   // contacts, journal, pictures/, phonelets' states
    std::filesystem::path log;

    // Everything in one folder.
    static Profile in(const std::filesystem::path& folder);
    // Where desktop programs keep their files (XDG Base Directory 0.8).
    static Profile ofUser();
    // The demo's own folder, beside the user's data.
    static Profile demo();

    std::filesystem::path configFile() const { return config / "config.toml"; }
    std::filesystem::path pictures() const { return data / "pictures"; }

    // Makes the folders that are missing, readable by their owner only.
    Result<void> create() const;
};

// Puts the demo's pictures, contacts and configuration into a profile that has no configuration yet.
// `import` reads a file of contacts into the profile, and gives false when it could not.
Result<void> seedDemo(const Profile& profile, const std::filesystem::path& demo,
                      const std::function<bool(const std::filesystem::path& contacts)>& import);
