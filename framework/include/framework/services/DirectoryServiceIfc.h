// The telephone's contact store, its groups and options, and the corporate directory.
//
// Requests and answers are XML documents in one string; lists are lines of tab-separated fields.
// Every request is synchronous and durable when it returns with success: a power cut afterwards
// loses nothing.
//
// Answers are written compactly: no white space between elements, ReasonForMessage first, never an
// element after a record's own, no empty Entry; a write answer always carries UniqueID, also for a
// changed record; the group tag is "0" for none. A failure answers ReasonForMessage "failure" and a
// FailureMessage, "Not enough memory" when the store is full.

#pragma once

#include <string>

#include <framework/Executable.h>

class DirectoryServiceObserverIfc;
class PhonebookGroupList;
class PhonebookSearchCriteria;
class PhonebookSearchResults;

// How a directory search ended. Other values are unexpected errors. What exactly was wrong, and which
// item an administrator must change, is in the telephone's log.
enum DirectoryStatus : int {
    DIRECTORY_SUCCESS = 0,
    // Nobody; also when there is nothing to look for, as without criteria: then no server is asked.
    DIRECTORY_NO_MATCHES = 1,
    // No server could be reached, or none answered in time or as a directory does.
    DIRECTORY_CONNECTION_FAILURE = 2,
    // There is no configuration, or what there is makes no sense.
    DIRECTORY_NOT_CONFIGURED = 3,
    // The server does not take the telephone's name or password, or lets it not search.
    DIRECTORY_CREDENTIALS_REFUSED = 4,
    // The base or the filter is wrong, or the server could not prove who it is.
    DIRECTORY_WRONG_BASE = 5,
    // There are more: a limit of size or time was met. The records that came are delivered.
    DIRECTORY_TOO_MANY_MATCHES = 9,
};

class FRAMEWORK_API DirectoryServiceIfc : public Executable {
public:
    ~DirectoryServiceIfc() override;

    // Answers a read, write or delete request. A request that is not understood is answered with a
    // failure. Blocks for the disk.
    // [phonelet-thread]
    virtual std::string request(const std::string& xml) = 0;

    // All entries, or those of one group ("0": those of none): "empty", or one line an entry,
    // "id\tsurname\tfirst name\tdefault-number code", joined by newlines, none at the end; no tab and
    // no newline inside a field. Rows come in the order of surname, then first name, of the
    // telephone's language; callers sort all the same.
    // [phonelet-thread]
    virtual std::string getList() = 0;
    virtual std::string getList(const std::string& groupTag) = 0;

    // Searches the corporate directory; blocks until it is done, at most for the configured time of
    // a whole search. With `ignoreNickname` NICKNAME pairs are left out. Empty criteria find nothing.
    // For 0 and 9 the results end with their trailer record; otherwise they stay empty.
    // [phonelet-thread]
    virtual DirectoryStatus search(PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                                   bool ignoreNickname) = 0;

    // Whether the directory's nickname attribute is in use.
    // [phonelet-thread]
    virtual bool isNicknameAttributeActive() = 0;

    // A number under a tag; 0 when never stored. Writing gives 0 on success.
    // [phonelet-thread]
    virtual int readOption(const std::string& tag) = 0;
    virtual int writeOption(const std::string& tag, int value) = 0;

    // A fresh copy of the groups, which the caller owns; null when they cannot be read.
    // [phonelet-thread]
    virtual PhonebookGroupList* getGroupList() = 0;
    // Writes names of all slots; the caller keeps the list. False on failure.
    // [phonelet-thread]
    virtual bool storeGroupList(PhonebookGroupList* groups) = 0;
    // Moves every contact of `group` to group `to` (0: to none), in one transaction; `mode` is 0.
    // [phonelet-thread]
    virtual bool reassignGroup(unsigned group, unsigned to, int mode) = 0;

    // The greatest length of each field, in characters, as a Serializer text of pairs (name, size):
    // lastname, firstname, business1, business2, mobile, private, company, address1, address2,
    // position, email, callgroup.
    // [phonelet-thread]
    virtual std::string getFieldSizes() = 0;

    // Adding twice is adding once. The service does not own the observer: remove it before it dies.
    // A change that was queued is dropped when its observer was removed.
    // [phonelet-thread]
    virtual void addObserver(DirectoryServiceObserverIfc* observer) = 0;
    virtual void removeObserver(DirectoryServiceObserverIfc* observer) = 0;
};
