#include "BackupCommand.h"

#include <ostream>

#include "Backup.h"
#include "DirectoryService.h"
#include "Restore.h"

namespace fs = std::filesystem;

namespace {

constexpr int nDONE = 0;
constexpr int nFAILED = 1;

int fail(const Error& error, std::ostream& errors)
{
    errors << error.sentence << '\n';
    return nFAILED;
}

// Whether SQLite would take the file for a part of the database beside it.
bool isLogOfDatabase(const fs::path& file)
{
    const auto name = file.string();
    for (const std::string log : {"-wal", "-shm", "-journal"}) {
        if (name.ends_with(log) && fs::exists(name.substr(0, name.size() - log.size())))
            return true;
    }
    return false;
}

// Whether the telephone might take the file for one of its own.
bool isForItself(const fs::path& file, const BackupOptions& options)
{
    std::error_code failed;
    const auto folder = file.parent_path();
    const bool inProfile = folder == fs::weakly_canonical(options.profile, failed) ||
                           folder == fs::weakly_canonical(options.pictures, failed);
    return inProfile && file.extension() != ".backup";
}

Result<fs::path> backupToReplace(const BackupOptions& options)
{
    const auto& file = options.file;
    auto target = fileToReplace(file);
    if (!target)
        return target;
    std::error_code failed;
    const bool empty = !fs::exists(target.value()) || fs::file_size(target.value(), failed) == 0;
    if ((!empty && !Backup::isBackup(target.value())) || isLogOfDatabase(target.value()))
        return Error{ErrorCode::Denied,
                     "\"" + file.string() + "\" is something else than a backup: name another file."};
    if (isForItself(target.value(), options))
        return Error{ErrorCode::Denied, "The telephone keeps files of its own in " +
                                            target.value().parent_path().string() +
                                            ": there a backup's name ends in \".backup\"."};
    return target;
}

Result<BackupWriter> writeBackup(const BackupOptions& options)
{
    const auto book = DirectoryService::fileIn(options.profile);
    if (!fs::exists(book))
        return Error{ErrorCode::NotFound, "There is no phonebook in \"" + options.profile.string() + "\"."};
    const auto target = backupToReplace(options);
    if (!target)
        return target.error();
    ContactStore store(book, "");
    if (store.state() == ContactStore::State::Unusable)
        return Error{ErrorCode::Malformed, store.notice()};
    auto writer = BackupWriter::beside(target.value());
    if (!writer)
        return writer;
    auto done = writer.value().addPictures(options.pictures);
    if (done)
        done = store.atOneMoment([&] { return writer.value().addContacts(store); });
    if (done)
        done = writer.value().finish();
    return done ? std::move(writer) : done.error();
}

} // namespace

int runBackup(const BackupOptions& options, std::ostream& out, std::ostream& errors)
{
    const auto written = writeBackup(options);
    if (!written)
        return fail(written.error(), errors);
    for (const auto& name : written.value().leftOut())
        errors << "Left out: \"" << name << "\" is no picture that a contact can have.\n";
    out << "Backed up " << written.value().counts().text() << ".\n";
    return nDONE;
}

int runRestore(const BackupOptions& options, std::ostream& out, std::ostream& errors)
{
    const auto backup = Backup::open(options.file);
    if (!backup)
        return fail(backup.error(), errors);
    const auto restored =
        restoreBackup(*backup.value(), DirectoryService::fileIn(options.profile), options.pictures);
    if (!restored)
        return fail(restored.error(), errors);
    out << "Restored " << restored.value().counts.text() << ".\n";
    if (const auto& before = restored.value().before; !before.empty())
        out << "What was there before is kept in \"" << before.string() << "\".\n";
    return nDONE;
}
