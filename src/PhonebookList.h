// The rows that a phonebook view shows, sorted by the text that the display mode shows.
//
// One list holds the local phonebook, another one the results of the corporate directory. Without a
// directory service (null) a list stays empty and its options are 0. All operations may be called
// from several threads at once; those that read or change rows take the list's lock.
// [any-thread]

#pragma once

#include <string>
#include <vector>

#include <framework/services/PhonebookSearchCriteria.h>
#include <framework/util/Semaphore.h>

#include "PhonebookFullEntry.h"
#include "PhonebookListEntry.h"

class DigitAnalysisServiceIfc;
class DirectoryServiceIfc;
class LocalMgmtIfc;

class PhonebookList {
public:
    // The local phonebook. The services are not owned.
    explicit PhonebookList(DirectoryServiceIfc* directory);
    // The corporate directory's results; `digitAnalysis` may be null, then numbers stay as they are.
    PhonebookList(DirectoryServiceIfc* directory, DigitAnalysisServiceIfc* digitAnalysis);
    virtual ~PhonebookList();

    // Rows point into the list.
    PhonebookList(const PhonebookList&) = delete;
    PhonebookList& operator=(const PhonebookList&) = delete;

    // Number of rows.
    virtual unsigned int size();

    // Writes a new record, as updateEntry() with rowIndex -1.
    virtual int addEntry(PhonebookFullEntry* entry, int& newIndex);
    // Writes a record and brings the list into line. `rowIndex` is its row, negative for a new record
    // (which has no unique id); `newIndex` receives its row afterwards, -1 when it is not shown.
    // The record's unique id stays as it was: a new one is read from its row. 0, or a PB_Error code:
    // 1, 100, 103, 200. Throws std::out_of_range for a row that does not exist.
    virtual int updateEntry(PhonebookFullEntry* entry, int& newIndex, int rowIndex);

    // Replaces the rows by those of a group; -1: all, 0: those without a group. 1, or 0 when the
    // directory service gave none.
    virtual int populate(int groupID);
    // Replaces the rows by what a search of the corporate directory finds. Returns the search's
    // DirectoryStatus; rows stay for other than 0 and 9. Throws std::out_of_range for results
    // without their trailer record.
    virtual int populate(PhonebookSearchCriteria& criteria, bool ignoreNickname);
    // Removes all rows here, and none in the directory.
    virtual void depopulate();

    // A copy of the row: another thread may refill the list. Throws std::out_of_range past the end.
    virtual PhonebookListEntry elementAt(unsigned int index);
    // Reads the whole record of a row. 1, or 0 when it cannot be read.
    virtual int getFullEntry(unsigned int index, PhonebookFullEntry& entry);

    // Deletes the record of a row, here and in the directory. 0 or 101.
    virtual int deleteEntry(unsigned int index);
    // Deletes all records of the shown group, here and in the directory. 0 or 102.
    virtual int deleteAll();

    // The quick search: the first row whose shown name begins with the text (result 1), or else the
    // last one met that sorts before it (result 0).
    virtual int getIndex(const std::string& quickSearchString, int& index);

    virtual displayMode getDisplayMode();
    virtual displayQualifier getDisplayQualifier();
    // Both are stored in the directory service. A new mode re-sorts, a new qualifier does not.
    virtual void setDisplayMode(displayMode mode);
    virtual void setDisplayQualifier(displayQualifier qualifier);

    // The group that is shown; -1: all.
    virtual int getGroupIndication();

    // Brings the numbers of the rows' attributes to their canonical form, in place.
    virtual void convertToCanonical();

    // Whether the last search found its rows by nickname.
    virtual bool getNickNameResultIndicator();
    virtual bool isNicknameAttributeActive();

    // Whether rows made from now on are marked as the corporate directory's.
    void setLDAPPhonebookList(bool ldap);

    // Makes room for n + 10 rows.
    void bumpPhonebookCapacity(unsigned int n);
    void sortListBySortMode();

    // Read what is stored again; the rows are not sorted anew. A value out of range counts as 0.
    displayMode getDisplayOptionFromDatabase();
    displayQualifier getDisplayQualifierFromDatabase();
    // 0 on success.
    int savePhonebookOptionsInDatabase(const std::string& tag, int value);

    // How long typing rests before the corporate directory is searched, in ms; 0 when not configured.
    int getSearchTriggerTimeoutFromDatabase(LocalMgmtIfc* localMgmt);

private:
    PhonebookList(DirectoryServiceIfc* directory, DigitAnalysisServiceIfc* digitAnalysis,
                  std::string displayOptionTag, std::string qualifierTag);

    std::string normalizedNameAt(int index) const;
    void sortRowsByKey();
    void removeRow(unsigned int index);
    void appendRow(const PhonebookFullEntry& entry, const std::string& uniqueId);
    int findRow(const std::string& uniqueId, int& index) const;

    DirectoryServiceIfc* m_pDirectory;
    DigitAnalysisServiceIfc* m_pDigitAnalysis;
    std::vector<PhonebookListEntry> m_entries;
    displayMode m_displayMode = displayMode::SurnameFirstname;
    displayQualifier m_displayQualifier = displayQualifier::None;
    std::string m_displayOptionTag;
    std::string m_qualifierTag;
    Semaphore m_lock{1}; // taken through CriticalSection only: operations take it again inside
    std::vector<AttributeList> m_ldapResults; // the rows point into it
    int m_groupIndication = -1;
    bool m_ldapList = false;
    bool m_nickNameResultIndicator = false;
};
