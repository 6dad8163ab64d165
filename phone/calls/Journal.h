// The calls that were dialled from this telephone, in a file of their own.
//
// A file that cannot be used is left as it is; calls are then remembered until the telephone stops, and so
// are those of a file that can be read only.

#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <framework/services/JournalServiceIfc.h>
#include <framework/services/JournalServiceObserverIfc.h>

#include "app/Clock.h"
#include "app/EventPoster.h"
#include "app/Result.h"
#include "directory/Sqlite.h"

class CallPartyIdentifier;
class ChangeWatch;

class Journal final : public JournalServiceIfc {
public:
    // The file is looked at every `watchInterval`; 0: only by lookForChanges().
    static Result<std::unique_ptr<Journal>>
    open(const std::filesystem::path& profile, const Clock& clock, EventPoster& events,
         std::chrono::milliseconds watchInterval = std::chrono::milliseconds(0));
    ~Journal() override;

    // Deletes all calls, and says how many; a telephone that runs with this profile notices.
    static Result<int> clear(const std::filesystem::path& profile);

    // What is wrong with the file, naming it, in a sentence; "" when nothing is.
    const std::string& notice() const { return m_notice; }

    // "Surname, First name".
    static std::string nameOf(const CallPartyIdentifier& party);

    // What follows is called on the event thread.

    // Forgets the observers of phonelets that were stopped.
    void dropObservers() { m_observers.clear(); }
    void addDialled(const CallPartyIdentifier& party);
    // Tells the observers if another program changed the file.
    void lookForChanges();
    // The latest first.
    std::vector<JournalRecord> dialled();
    // By which a number that `isMeant` was dialled last when anybody knew one; "" for none.
    std::string lastName(const std::function<bool(const std::string& number)>& isMeant);

    void addObserver(JournalServiceObserverIfc* observer) override;
    void removeObserver(JournalServiceObserverIfc* observer) override;

private:
    Journal(const std::filesystem::path& file, const Clock& clock, EventPoster& events);

    // Takes over the calls of a file that can be read only.
    void remember(const std::filesystem::path& file);
    void watch(const std::filesystem::path& file, std::chrono::milliseconds interval);
    void tell(int id, JournalAction action);
    void tellOne(JournalServiceObserverIfc& observer, int id, JournalAction action);
    bool isObserver(const JournalServiceObserverIfc* observer) const;

    const Clock& m_clock;
    EventPoster& m_events;
    std::string m_notice;
    std::unique_ptr<Database> m_pDatabase;
    std::int64_t m_dataVersion = 0;
    std::vector<JournalServiceObserverIfc*> m_observers;
    // Tells an event that is queued that the journal is gone.
    std::shared_ptr<const char> m_alive = std::make_shared<const char>();
    std::unique_ptr<ChangeWatch> m_pWatch; // the first to go: it posts
};
