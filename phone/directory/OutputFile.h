// What the commands that write a profile's contacts into a file check first.

#pragma once

#include <filesystem>

#include "app/Result.h"

// The contacts' file of a profile that has one.
Result<std::filesystem::path> phonebookIn(const std::filesystem::path& profile);

struct OutputFile {
    std::filesystem::path file; // as the user named it
    std::filesystem::path profile;
    std::filesystem::path pictures;

    const char* noun;   // "backup"
    const char* ending; // ".backup"
    bool (*isOne)(const std::filesystem::path& file);
};

// Where it is really to be written, see fileToReplace(). What is there and is something else is not
// to be replaced; nor is anything that the telephone keeps for itself, there yet or not.
Result<std::filesystem::path> whereToWrite(const OutputFile& output);
