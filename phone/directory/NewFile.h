// A file that comes into being under its name only when it is whole.

#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include "app/Result.h"

// Where a file that the user named is really to be written: behind a link lies the file that is
// meant. What is no ordinary file, a device say, is refused: it must not be replaced by one.
Result<std::filesystem::path> fileToReplace(const std::filesystem::path& file);

// Removes what programs that were killed an hour ago or earlier left of new files in `folder`; of the
// new file for `target` only, if that is given.
void removeLeftParts(const std::filesystem::path& folder, const std::string& target = "");

class NewFile {
public:
    // Makes an empty file beside `target`, for its owner's eyes only. Made by root, it belongs to whom
    // the target or else its folder belongs to: their telephone must be able to read it.
    static Result<NewFile> beside(const std::filesystem::path& target);
    // Removes it if it was not put in place.
    ~NewFile();

    NewFile(NewFile&& other) noexcept
        : m_target(std::move(other.m_target))
        , m_part(std::exchange(other.m_part, {}))
    {
    }
    NewFile& operator=(NewFile&&) = delete;

    // To be written by whoever asks.
    const std::filesystem::path& part() const { return m_part; }
    // Replaces the target by it. With success it is on the disk under its name.
    Result<void> putInPlace();

private:
    NewFile(std::filesystem::path target, std::filesystem::path part)
        : m_target(std::move(target))
        , m_part(std::move(part))
    {
    }

    std::filesystem::path m_target;
    std::filesystem::path m_part; // "" when it is in place
};

// Waits until the disk has what was written to `file`, which may be a folder.
std::error_code syncToDisk(const std::filesystem::path& file);

// "FILE cannot be written: ..."
Error cannotBeWritten(const std::filesystem::path& file, const std::error_code& reason);
