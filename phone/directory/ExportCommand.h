// `deskphone export`: the contacts of a profile into a file of cards.

#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>

#include "OwnGroup.h"

struct ExportOptions {
    std::filesystem::path file;
    std::filesystem::path profile;  // the folder of the contacts
    std::filesystem::path pictures; // "": the profile's pictures/
    std::string version = "3.0";    // of the cards: "2.1", "3.0" or "4.0"
    OwnGroup ownGroup{};
};

// Gives the program's exit code: 0 done, 1 failed. The file is whole, or as it was before. What is there
// and holds no cards is not replaced.
int runExport(const ExportOptions& options, std::ostream& out, std::ostream& errors);
