// Hears of changes of the telephone's call lists. Called from the event queue.

#pragma once

#include <string>
#include <vector>

#include <framework/Export.h>

// One call, as text fields: 0 the name, 1 the number to redial, 2 when (RFC 3339).
struct JournalRecord {
    std::vector<std::string> textFields;
};

// A list of calls, the latest first.
class FRAMEWORK_API JournalItem {
public:
    explicit JournalItem(std::vector<JournalRecord> records);
    ~JournalItem();

    const std::vector<JournalRecord>& getRecords() const { return m_records; }

private:
    std::vector<JournalRecord> m_records;
};

// What changed in a list.
enum class JournalAction : int { Added = 0, Removed = 1, Cleared = 2, Current = 3 };

class FRAMEWORK_API JournalServiceObserverIfc {
public:
    virtual ~JournalServiceObserverIfc();

    // `item` is the whole list, valid during the call only; `id` the record that was added, 0 when
    // the change is not of one record.
    // [phonelet-thread]
    virtual void missedCallsCountUpdate(int count) = 0;
    virtual void missedCallsUpdate(JournalItem* item, int id, JournalAction action) = 0;
    virtual void dialledCallsUpdate(JournalItem* item, int id, JournalAction action) = 0;
    virtual void receivedCallsUpdate(JournalItem* item, int id, JournalAction action) = 0;
    virtual void forwardedCallsUpdate(JournalItem* item, int id, JournalAction action) = 0;
    virtual void callBacksUpdate(JournalItem* item, int id, JournalAction action) = 0;
    virtual void callBacksCountUpdate(int count) = 0;
};
