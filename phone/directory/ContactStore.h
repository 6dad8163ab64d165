// The contacts, their groups and the options of one phonebook, in one SQLite file.
//
// A file that is damaged, foreign or from a later version is never touched: the store is then empty,
// refuses changes and says why. On a read-only medium it can be read, and on a full disk until there is
// space again.
//
// Every change is one transaction and is on the disk when the call returns with success. Text is made
// clean on the way in, and again on the way out, where a damaged file could hold anything.

#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

#include "Contact.h"
#include "NameCollator.h"
#include "Sqlite.h"
#include "app/Result.h"

// The card that a contact was imported from, kept whole beside it.
struct KeptCard {
    std::string uid;
    std::string card;
    std::string imported; // what the import made of it; see Importer
};

class ContactStore {
public:
    enum class State { Ready, ReadOnly, Unusable };
    enum class FileState { Same, Replaced, Missing };
    // What is wrong with the file.
    enum class Problem { None, Foreign, LaterVersion, Damaged, ReadOnly, DiskFull, Busy };

    // Opens or creates `file`. Names are handed out in the order of `language`; "" keeps the order
    // that the file has.
    ContactStore(std::filesystem::path file, const std::string& language);
    ~ContactStore();

    ContactStore(const ContactStore&) = delete;
    ContactStore& operator=(const ContactStore&) = delete;

    State state() const { return m_state; }
    Problem problem() const { return m_problem; }
    // The same in a sentence that names the file; "" when nothing is wrong.
    const std::string& notice() const { return m_notice; }
    // Whether it goes by itself, so that reopen() may find the file in order.
    bool mayHavePassed() const { return m_problem == Problem::DiskFull || m_problem == Problem::Busy; }
    const std::filesystem::path& file() const { return m_file; }

    Result<std::optional<Contact>> read(const std::string& id);
    // Stores a new contact or changes one, also one that was deleted meanwhile, and gives its id. A
    // group that has no name counts as none. Of a contact that others have changed since it was read
    // as `before`, what is still as it was then keeps their changes.
    Result<std::string> write(Contact contact, const std::optional<Contact>& before = std::nullopt);
    // Deleting what is gone already succeeds.
    Result<void> erase(const std::string& id);
    // Those of one group, 0 being those of none; without `group` all.
    Result<void> eraseAll(std::optional<int> group);

    Result<bool> isEmpty();
    // As DirectoryServiceIfc::getList() gives it.
    Result<std::string> listText(std::optional<int> group);
    // All contacts in the order of their names, until `visit` gives false.
    Result<void> forEach(const std::function<bool(const Contact& contact, const KeptCard& card)>& visit);

    // The names of the slots, [0] being slot 1; "" for a spare one. At least `slots` of them.
    Result<std::vector<std::string>> groupNames(int slots);
    // Writes the names that are not as in `before`, all without it; refuses to when another program
    // has given one of those slots another name. Members of a group that becomes spare belong to no
    // group then.
    Result<void> writeGroupNames(const std::vector<std::string>& names,
                                 const std::vector<std::string>& before = {});
    // Slot 0 is no group.
    Result<void> reassignGroup(int from, int to);

    // 0 when never stored.
    Result<int> readOption(const std::string& tag);
    Result<void> writeOption(const std::string& tag, int value);
    Result<std::vector<std::pair<std::string, int>>> options();

    // What `work` reads is as it was at one moment.
    Result<void> atOneMoment(const std::function<Result<void>()>& work);

    // Sorts by another language from now on.
    Result<void> setLanguage(const std::string& language);

    // Whether another connection has changed anything since this was last asked.
    bool changedByOthers();
    // Whether the file under our name is still the one that is open.
    FileState fileState() const;
    void reopen();
    // Whether, since this was last asked, reopen() has met another file or a file that can be used
    // again, or changedByOthers() another content as a whole.
    bool takeReplaced() { return std::exchange(m_replaced, false); }

    // For whoever changes many contacts in one transaction: runs `work` in one, again from its
    // beginning when the disk failed under it; it must therefore be repeatable. `work` may throw
    // SqliteError, and gives false to change nothing after all.
    Result<void> inTransaction(const std::function<bool()>& work);
    // The same for a `work` that clears the book and fills it: other programs take it for another book
    // then.
    Result<void> replaceAll(const std::function<bool()>& work);
    // Inside these two only. A contact is fit (see makeFit()) and has an id.
    void clear();
    void put(const Contact& contact);
    void putGroup(int slot, const std::string& name);
    void putCard(const std::string& id, const KeptCard& card);
    void putOption(const std::string& tag, int value);
    // What contacts are sorted and found by.
    std::string nameKey(const Contact& contact) const;
    // The open file.
    Database* database();

    static std::string newId();
    // Tells equal cards apart from others quickly.
    static std::int64_t cardHash(std::string_view card);

private:
    struct Connection;
    struct FileIdentity {
        dev_t device = 0;
        ino_t inode = 0;
        bool operator==(const FileIdentity&) const = default;
    };

    void open();
    void openFile();
    void openUnusable(Problem problem, const std::string& notice);
    void adoptLanguage(const std::string& language);
    void rebuildNameKeys();
    void removeStaleLog() const;

    template <typename T> Result<T> attempt(const std::function<T()>& work);
    Result<void> change(const std::function<bool()>& work, const std::function<bool()>& isDone);
    std::optional<SqliteError> tryTransaction(const std::function<bool()>& work);
    bool holds(const Contact& contact);
    void keepChangesOfOthers(Contact& contact, const Contact& before);
    std::string readList(std::optional<int> group, bool& badIds);
    bool replaceBadIds();
    std::vector<std::string> readGroups(std::size_t slots);

    static std::optional<FileIdentity> identify(const std::filesystem::path& file);

    std::filesystem::path m_file;
    std::string m_language;
    State m_state = State::Unusable;
    Problem m_problem = Problem::None;
    std::string m_notice;
    std::optional<FileIdentity> m_identity;
    std::optional<FileIdentity> m_logIdentity;
    bool m_replaced = false;
    bool m_changedBeforeReopen = false;
    std::unique_ptr<NameCollator> m_pCollator;
    std::unique_ptr<Connection> m_pConnection;
};
