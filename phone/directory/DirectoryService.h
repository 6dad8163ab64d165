// The telephone's directory service: the contacts of a profile, and the corporate directory.
//
// Observers hear only of what others did to the contacts. Several changes at once are one notice.

#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <framework/services/DirectoryServiceIfc.h>

#include "ContactStore.h"
#include "NumberSearch.h"
#include "app/EventPoster.h"
#include "app/Result.h"
#include "directory/ldap/LdapClient.h"

class ChangeWatch;

struct DirectoryOptions {
    std::string language = "en"; // that names are sorted by
    int groupSlots = 20;
    // How often the file is looked at for changes by others; 0: only by lookForChanges().
    std::chrono::milliseconds watchInterval{250};
};

class DirectoryService final : public DirectoryServiceIfc {
public:
    // Opens the contacts in the folder `profile`, which is made if need be. A file that cannot be
    // used is no failure: see notice(). Notices to observers are posted to `notices`, which may hold
    // them back, and everything else to `events`.
    static Result<std::unique_ptr<DirectoryService>> open(const std::filesystem::path& profile,
                                                          DirectoryOptions options, EventPoster& events,
                                                          EventPoster& notices);
    static Result<std::unique_ptr<DirectoryService>> open(const std::filesystem::path& profile,
                                                          DirectoryOptions options, EventPoster& events);
    ~DirectoryService() override;

    // The name of the contacts' file in a profile.
    static std::filesystem::path fileIn(const std::filesystem::path& profile);

    // What is wrong with the contacts' file, naming it, in a sentence; "" when nothing is. Changes
    // when the file is replaced.
    const std::string& notice() const { return m_pStore->notice(); }
    ContactStore::Problem problem() const { return m_pStore->problem(); }
    ContactStore::State state() const { return m_pStore->state(); }
    // False also when the contacts cannot be read.
    bool isEmpty();
    // The names of all who have this number, however it is written; none when they cannot be read.
    // [any-thread]
    std::vector<std::string> namesWithNumber(const std::string& number, const Canonical& canonical) const;

    // Sorts by another language from now on.
    void setLanguage(const std::string& language);
    // Asks another corporate directory from now on; none before the first time.
    void setCorporateDirectory(LdapSetup setup) { m_corporate.setUp(std::move(setup)); }
    // Ends a search of it that runs, and every later one.
    // [any-thread]
    void cancelSearches() { m_corporate.cancel(); }
    // While `urgent` nobody waits for a search of it, see LdapClient.
    // [any-thread]
    void setUrgent(bool urgent) { m_corporate.setUrgent(urgent); }
    // Forgets the observers of phonelets that were stopped.
    void dropObservers() { m_observers.clear(); }
    // Tells the observers if others changed the contacts. [event thread]
    void lookForChanges();

    std::string request(const std::string& xml) override;
    std::string getList() override;
    std::string getList(const std::string& groupTag) override;
    DirectoryStatus search(PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                           bool ignoreNickname) override;
    bool isNicknameAttributeActive() override;
    int readOption(const std::string& tag) override;
    int writeOption(const std::string& tag, int value) override;
    PhonebookGroupList* getGroupList() override;
    bool storeGroupList(PhonebookGroupList* groups) override;
    bool reassignGroup(unsigned group, unsigned to, int mode) override;
    std::string getFieldSizes() override;
    void addObserver(DirectoryServiceObserverIfc* observer) override;
    void removeObserver(DirectoryServiceObserverIfc* observer) override;

private:
    DirectoryService(const std::filesystem::path& file, DirectoryOptions options, EventPoster& events,
                     EventPoster& notices);

    std::string read(const std::string& id);
    std::string write(const Contact& contact);
    std::string erase(const std::string& id, std::optional<int> group);
    std::string listText(std::optional<int> group);
    void followReplacedFile();
    void postNotice(bool restart);
    void deliverNotice();
    void tellObservers(bool restart);

    const std::filesystem::path m_file;
    DirectoryOptions m_options;
    EventPoster& m_notices;
    std::unique_ptr<ContactStore> m_pStore;
    LdapClient m_corporate;
    // What the next save most likely changes, as it was read.
    std::optional<Contact> m_lastRead;
    std::vector<DirectoryServiceObserverIfc*> m_observers;
    bool m_noticePosted = false;
    bool m_noticeIsRestart = false;
    // Tells an event that is queued that the service is gone.
    std::shared_ptr<const char> m_alive = std::make_shared<const char>();
    std::unique_ptr<ChangeWatch> m_pWatch; // the first to go: it posts
};
