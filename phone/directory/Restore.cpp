#include "Restore.h"

#include <array>
#include <cerrno>
#include <ctime>
#include <map>

#include <unistd.h>

#include "pictures/ClipFolder.h"

namespace fs = std::filesystem;

namespace {

// The pictures of a backup in a folder; those that are new go again unless they are kept.
class RestoredPictures {
public:
    explicit RestoredPictures(fs::path folder)
        : m_clips(std::move(folder))
    {
    }
    ~RestoredPictures()
    {
        for (const auto& file : m_new) {
            std::error_code ignored;
            fs::remove(file, ignored);
        }
    }
    RestoredPictures(const RestoredPictures&) = delete;
    RestoredPictures& operator=(const RestoredPictures&) = delete;

    Result<void> add(const Backup& backup)
    {
        Result<void> added;
        try {
            backup.forEachPicture([&](const std::string& name, std::string_view content) {
                if (added)
                    added = add(name, content);
            });
        } catch (const SqliteError& error) {
            return error.toError();
        }
        return added;
    }

    // Under which name the picture lies in the folder.
    std::string nameOf(const std::string& name) const
    {
        const auto renamed = m_renamed.find(name);
        return renamed == m_renamed.end() ? name : renamed->second;
    }

    void keep() { m_new.clear(); }

private:
    Result<void> add(const std::string& name, std::string_view content)
    {
        const auto added = m_clips.add(name, content);
        if (!added)
            return added.error();
        if (added.value().name != name)
            m_renamed[name] = added.value().name;
        if (added.value().isNew)
            m_new.push_back(m_clips.pathFromName(added.value().name));
        return {};
    }

    const ClipFolder m_clips;
    std::map<std::string, std::string> m_renamed;
    std::vector<fs::path> m_new;
};

// A name beside the book that nothing has yet: "contacts-2026-11-21-104512.backup".
fs::path freeName(const fs::path& book, const std::string& before, const std::string& after)
{
    std::array<char, 32> time{};
    const auto now = std::time(nullptr);
    struct tm parts {};
    ::localtime_r(&now, &parts);
    std::strftime(time.data(), time.size(), "%Y-%m-%d-%H%M%S", &parts);
    for (int number = 1;; ++number) {
        const auto suffix = number == 1 ? "" : "-" + std::to_string(number);
        auto name = book.parent_path() / (before + "-" + time.data() + suffix + after);
        if (!fs::exists(fs::symlink_status(name)))
            return name;
    }
}

bool holdsNothing(ContactStore& store)
{
    const auto empty = store.isEmpty();
    const auto groups = store.groupNames(0);
    const auto options = store.options();
    return empty && empty.value() && groups && groups.value().empty() && options && options.value().empty();
}

Result<void> keep(ContactStore& store, const fs::path& pictures, const fs::path& file)
{
    auto writer = BackupWriter::beside(file);
    if (!writer)
        return writer.error();
    if (const auto added = writer.value().addPictures(pictures); !added)
        return added;
    if (const auto added = writer.value().addContacts(store); !added)
        return added;
    return writer.value().finish();
}

// In one transaction, so that nothing that another program saves meanwhile is lost.
Result<Restored> replaceContent(ContactStore& store, const Backup& backup, const fs::path& folder)
{
    Restored restored{backup.counts(), {}};
    RestoredPictures pictures(folder);
    Result<void> done;
    const auto before = freeName(store.file(), "contacts", ".backup");
    const auto replace = [&] {
        if (!holdsNothing(store)) {
            restored.before = before;
            done = keep(store, folder, before);
        }
        if (done)
            done = pictures.add(backup);
        if (!done)
            return false;
        store.clear();
        backup.fill(store, [&](const auto& name) { return pictures.nameOf(name); });
        return true;
    };
    const auto replaced = store.replaceAll(replace);
    // Also when that failed at the very end: the disk may have it all the same.
    if (done)
        pictures.keep();
    if (done && !replaced)
        done = replaced;
    if (!done) {
        auto error = done.error();
        if (fs::exists(restored.before))
            error.sentence += " What is there now is kept in \"" + restored.before.string() + "\".";
        return error;
    }
    return restored;
}

// Under another name too, until its own one is given to another file.
Result<void> nameToo(const fs::path& file, const fs::path& other)
{
    if (::link(file.c_str(), other.c_str()) == 0)
        return {};
    std::error_code failed;
    fs::copy_file(file, other, failed);
    if (!failed)
        failed = syncToDisk(other);
    return failed ? cannotBeWritten(other, failed) : Result<void>();
}

// A log says something of the file that it lies beside, and nothing of the next one.
void moveLogs(const fs::path& book, const fs::path& aside)
{
    std::error_code ignored;
    for (const char* log : {"-wal", "-journal"})
        fs::rename(book.string() + log, aside.string() + log, ignored);
    fs::remove(book.string() + "-shm", ignored);
}

void removeLogs(const fs::path& book)
{
    std::error_code ignored;
    for (const char* log : {"-wal", "-journal", "-shm"})
        fs::remove(book.string() + log, ignored);
}

// The file that cannot be used keeps its name until the new one takes it.
Result<Restored> replaceFile(const fs::path& book, const Backup& backup, const fs::path& pictures)
{
    auto part = NewFile::beside(book);
    if (!part)
        return part.error();
    Result<Restored> restored = [&] {
        ContactStore store(part.value().part(), "");
        return replaceContent(store, backup, pictures);
    }();
    if (!restored) {
        removeLogs(part.value().part());
        return restored;
    }
    const auto aside = freeName(book, book.filename().string() + ".unusable", "");
    if (const auto kept = nameToo(book, aside); !kept)
        return kept.error();
    moveLogs(book, aside);
    restored.value().before = aside;
    if (const auto placed = part.value().putInPlace(); !placed)
        return placed.error();
    return restored;
}

} // namespace

Result<Restored> restoreBackup(const Backup& backup, const fs::path& book, const fs::path& pictures)
{
    using Problem = ContactStore::Problem;
    ContactStore store(book, "");
    if (store.problem() == Problem::None)
        return replaceContent(store, backup, pictures);
    const bool forGood = store.state() == ContactStore::State::Unusable && !store.mayHavePassed();
    if (forGood && fs::is_regular_file(book))
        return replaceFile(book, backup, pictures);
    return Error{ErrorCode::Denied, store.notice()};
}
