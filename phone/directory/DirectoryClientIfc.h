// A client of the corporate directory.

#pragma once

#include <framework/services/DirectoryServiceIfc.h>

class DirectoryClientIfc {
public:
    virtual ~DirectoryClientIfc() = default;

    // As DirectoryServiceIfc has them.
    // [phonelet-thread]
    virtual DirectoryStatus search(PhonebookSearchCriteria& criteria, PhonebookSearchResults& results,
                                   bool ignoreNickname) = 0;
    virtual bool isNicknameAttributeActive() = 0;
};
