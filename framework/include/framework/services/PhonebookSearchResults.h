// What a directory search found: one attribute list a record, in the server's order.
//
// The last record is always a trailer and no contact: the value of its first attribute is "true"
// when the rows were found by other names than they show, such as nicknames, else "false".

#pragma once

#include <vector>

#include <framework/services/PhonebookSearchCriteria.h>

class FRAMEWORK_API PhonebookSearchResults {
public:
    PhonebookSearchResults();
    ~PhonebookSearchResults();

    std::vector<AttributeList>& getRecords() { return m_records; }

private:
    std::vector<AttributeList> m_records;
};
