// `deskphone backup` and `deskphone restore`: everything that a profile's phonebook holds in one file.

#pragma once

#include <filesystem>
#include <iosfwd>

struct BackupOptions {
    std::filesystem::path file;
    std::filesystem::path profile; // the folder of the contacts
    std::filesystem::path pictures;
};

// Both give the program's exit code: 0 done, 1 failed.

// The file is whole, or as it was before. What is there and is no backup is not replaced.
int runBackup(const BackupOptions& options, std::ostream& out, std::ostream& errors);
// See restoreBackup().
int runRestore(const BackupOptions& options, std::ostream& out, std::ostream& errors);
