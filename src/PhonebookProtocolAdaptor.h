// Speaks with the directory service: contact records as XML requests and answers, lists as text.
//
// Without a directory service (null) every request fails.

#pragma once

#include <string>
#include <vector>

class DirectoryServiceIfc;

class PhonebookProtocolAdaptor {
public:
    // Writes a record, new when `uniqueId` is empty. 0 on success, and `uniqueId` becomes the one that
    // the answer carries; 103 when the directory is full, 100 for any other failure.
    // [phonelet-thread]
    static int addFullEntry(DirectoryServiceIfc* directory, const std::string* surname,
                            const std::string* firstname, const std::string* office,
                            const std::string* mobile, const std::string* privateNumber,
                            const std::string* email, const std::string* group,
                            const std::string* defaultNumber, const std::string* company,
                            const std::string* office2, const std::string* address,
                            const std::string* address2, const std::string* jobFunction,
                            const std::string* picture, const std::string* externalId, std::string& uniqueId);

    // Appends the record's fields in the order that PhonebookFullEntry::setAll() takes them. 1 on
    // success, else 0 with `fields` unchanged.
    // [phonelet-thread]
    static int getFullEntryData(DirectoryServiceIfc* directory, const std::string* uniqueId,
                                std::vector<std::string>& fields);

    // 1 on success, else 0.
    // [phonelet-thread]
    static int deleteEntry(DirectoryServiceIfc* directory, const std::string* uniqueId);
    // All entries of a group; -1: of the whole phonebook. 1 on success, else 0.
    // [phonelet-thread]
    static int deleteAll(DirectoryServiceIfc* directory, int group);

    // Appends one item an entry, of a group or (-1) of all. 0 when there are none, `items` unchanged;
    // else 1.
    // [phonelet-thread]
    static int getListData(DirectoryServiceIfc* directory, int group, std::vector<std::string>& items);

    // Appends the item's fields: unique id, surname, first name and the name of the default number.
    // 1 when `fields` holds exactly these four, else 0.
    // [any-thread]
    static int getEntryData(const std::string* item, std::vector<std::string>& fields);

    // The directory's default-number code as a name: "1" "Office", "2" "Office2", "3" "Mobile",
    // "4" "Private", anything else "None".
    // [any-thread]
    static std::string dataBaseEnum2IconName(const std::string& code);
};
