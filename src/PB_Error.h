// The phonebook's result codes, and the text that tells the user about each.

#pragma once

#include <string>

class PB_Error {
public:
    enum ErrorCode : int {
        SUCCESS = 0,
        NAME = 1, // neither surname nor first name
        DB_WRITE = 100,
        DB_DELETE = 101,
        DB_DELETE_ALL = 102,
        DB_OUT_OF_SPACE = 103,
        NO_INDEX = 200, // an entry is not in the list although it was written
        NO_GROUP_NAME = 300,
        GROUP_WRITE_FAILURE = 301,
    };

    // The translation key of a code; "" for success and for a code that does not exist.
    // [any-thread]
    static std::string getErrorTxt(ErrorCode code);
};
