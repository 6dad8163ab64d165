// `deskphone import`: the cards of a file into the contacts of a profile.

#pragma once

#include <filesystem>
#include <iosfwd>

#include "OwnGroup.h"

struct ImportOptions {
    std::filesystem::path file;
    std::filesystem::path profile;  // the folder of the contacts
    std::filesystem::path pictures; // "": the profile's pictures/
    int groupSlots = 20;
    bool dryRun = false; // only tell what would happen
    OwnGroup ownGroup{};
};

// Gives the program's exit code: 0 done, 1 failed, 130 cancelled by SIGINT or SIGTERM. Either all
// cards that can be used were imported, or nothing.
int runImport(const ImportOptions& options, std::ostream& out, std::ostream& errors);
