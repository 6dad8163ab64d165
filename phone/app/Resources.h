// The files that come with the program, beside the folder that it lies in.

#pragma once

#include <filesystem>

struct Resources {
    std::filesystem::path phonebook;  // the phonebook phonelet's library
    std::filesystem::path stimulus;   // the library of the phonelet behind its PBX tab
    std::filesystem::path catalogues; // holds <language>/LC_MESSAGES/deskbook.mo
    std::filesystem::path demo;

    // `programs` is the folder of the programs and libraries.
    static Resources beside(const std::filesystem::path& programs);
    // Those of the running program.
    static Resources ofProgram();
};
