// Puts a backup in the place of what a profile holds.

#pragma once

#include <filesystem>

#include "Backup.h"
#include "app/Result.h"

struct Restored {
    BackupCounts counts;
    // Where what was there before is kept: a backup, or the contacts' file as it was when it could not
    // be used. "" when there was nothing.
    std::filesystem::path before;
};

// Works while a telephone runs, which then shows the restored contacts. Either everything is restored
// or everything is as it was; a power cut leaves the old contacts or the new ones as well. A contacts
// file that cannot be used is moved aside and replaced.
//
// Pictures that are there stay. One that has the name of another picture in the backup is left alone:
// the restored one gets a new name then.
Result<Restored> restoreBackup(const Backup& backup, const std::filesystem::path& book,
                               const std::filesystem::path& pictures);
