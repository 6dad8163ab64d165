// A backup: contacts with the cards that they came from, groups, options and pictures in one SQLite
// file.
//
// The pictures lie in an "sqlar" table, so that `sqlite3 FILE -Ax` takes them out. The schema is the
// backup's own: the contacts' file may change its without making backups unreadable.

#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ContactStore.h"
#include "NewFile.h"
#include "Sqlite.h"
#include "app/Result.h"

struct BackupCounts {
    std::size_t contacts = 0;
    std::size_t groups = 0;
    std::size_t pictures = 0;

    // "1 contact, 2 groups, no pictures"
    std::string text() const;
};

// A backup in the making.
class BackupWriter {
public:
    static Result<BackupWriter> beside(const std::filesystem::path& file);

    // Takes in the clips of the folder `pictures`.
    Result<void> addPictures(const std::filesystem::path& pictures);
    // Takes in everything else, as it is at one moment if `store` is read at one moment.
    Result<void> addContacts(ContactStore& store);
    // Puts the file under its name, whole. Nothing else may be called afterwards.
    Result<void> finish();

    const BackupCounts& counts() const { return m_counts; }
    // What else lies in that folder and is not hidden.
    const std::vector<std::string>& leftOut() const { return m_leftOut; }

private:
    BackupWriter(std::filesystem::path file, NewFile part);
    Result<void> attempt(const std::function<Result<void>()>& work) const;
    void noteOthers(const std::filesystem::path& pictures, const std::vector<std::string>& clips);
    void addPicture(const std::string& name, const std::filesystem::path& file);

    std::filesystem::path m_file;
    NewFile m_part;
    std::unique_ptr<Database> m_pDatabase;
    std::unique_ptr<Transaction> m_pTransaction; // goes before the database
    BackupCounts m_counts;
    std::vector<std::string> m_leftOut;
};

// A backup that was found to be whole.
class Backup {
public:
    // Whether the file says so of itself.
    static bool isBackup(const std::filesystem::path& file);
    // Looks at everything in the file. Refuses what is damaged, foreign, of a later version, or holds
    // anything that this telephone would not have put there.
    static Result<std::unique_ptr<Backup>> open(const std::filesystem::path& file);

    const BackupCounts& counts() const { return m_counts; }

    // `visit` gets the plain name of a file. SqliteError when the file cannot be read after all.
    void
    forEachPicture(const std::function<void(const std::string& name, std::string_view content)>& visit) const;
    // Puts everything but the pictures into the store, inside ContactStore::replaceAll(). `pictureName`
    // may give a contact's picture another name.
    void fill(ContactStore& store,
              const std::function<std::string(const std::string& name)>& pictureName) const;

private:
    explicit Backup(std::unique_ptr<Database> database);
    void check() const;
    void count();

    std::unique_ptr<Database> m_pDatabase;
    BackupCounts m_counts;
};
