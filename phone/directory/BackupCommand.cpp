#include "BackupCommand.h"

#include <ostream>

#include "Backup.h"
#include "DirectoryService.h"
#include "OutputFile.h"
#include "Restore.h"

namespace {

constexpr int nDONE = 0;
constexpr int nFAILED = 1;

int fail(const Error& error, std::ostream& errors)
{
    errors << error.sentence << '\n';
    return nFAILED;
}

Result<BackupWriter> writeBackup(const BackupOptions& options)
{
    const auto book = phonebookIn(options.profile);
    if (!book)
        return book.error();
    const auto target = whereToWrite(
        {options.file, options.profile, options.pictures, "backup", ".backup", Backup::isBackup});
    if (!target)
        return target.error();
    ContactStore store(book.value(), "");
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
