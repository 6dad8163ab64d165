#include "OutputFile.h"

#include "DirectoryService.h"
#include "NewFile.h"

namespace fs = std::filesystem;

namespace {

// Whether SQLite would take the file for a part of the database beside it.
bool isLogOfDatabase(const fs::path& file)
{
    const auto name = file.string();
    std::error_code ignored;
    for (const std::string log : {"-wal", "-shm", "-journal"}) {
        if (name.ends_with(log) && fs::exists(name.substr(0, name.size() - log.size()), ignored))
            return true;
    }
    return false;
}

// Whether the telephone might take the file for one of its own.
bool isForItself(const fs::path& file, const OutputFile& output)
{
    std::error_code failed;
    const auto folder = file.parent_path();
    const bool inProfile = folder == fs::weakly_canonical(output.profile, failed) ||
                           folder == fs::weakly_canonical(output.pictures, failed);
    return inProfile && file.extension() != output.ending;
}

} // namespace

Result<fs::path> phonebookIn(const fs::path& profile)
{
    const auto book = DirectoryService::fileIn(profile);
    std::error_code failed;
    if (fs::exists(book, failed))
        return book;
    const auto reason = failed ? " (" + failed.message() + ")" : "";
    return Error{ErrorCode::NotFound, "There is no phonebook in \"" + profile.string() + "\"" + reason + "."};
}

Result<fs::path> whereToWrite(const OutputFile& output)
{
    const auto& file = output.file;
    auto target = fileToReplace(file);
    if (!target)
        return target;
    std::error_code failed;
    const bool empty = !fs::exists(target.value(), failed) || fs::file_size(target.value(), failed) == 0;
    if ((!empty && !output.isOne(target.value())) || isLogOfDatabase(target.value()))
        return Error{ErrorCode::Denied, "\"" + file.string() + "\" is something else than a " + output.noun +
                                            ": name another file."};
    if (isForItself(target.value(), output))
        return Error{ErrorCode::Denied, "The telephone keeps files of its own in " +
                                            target.value().parent_path().string() + ": there a " +
                                            output.noun + "'s name ends in \"" + output.ending + "\"."};
    removeLeftParts(target.value().parent_path(), target.value().filename().string());
    return target;
}
