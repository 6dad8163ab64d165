// Small helpers of all phonebook screens and records.

#pragma once

#include <string>
#include <utility>
#include <vector>

class LocalMgmtIfc;

class Toolbox {
public:
    // Without a soft-key bar every list has one row more at its top: the options row.
    static constexpr unsigned int nNO_SOFT_KEY_BAR_OFFSET = 1;
    static constexpr unsigned int nNO_SOFT_KEY_BAR_GROUPS_OFFSET = 1;

    // Row of the list widget -> index of the entry. Row 0 gives 0 in both variants: without a
    // soft-key bar the options row and the first entry share it, so test for row 0 first.
    // [any-thread]
    static unsigned int displayToPhonebookIndex(unsigned int row, bool hasSoftKeyBar);
    static unsigned int displayToGroupListIndex(unsigned int row, bool hasSoftKeyBar);
    // Index of the entry -> row of the list widget.
    // [any-thread]
    static unsigned int phonebookToDisplayIndex(unsigned int index, bool hasSoftKeyBar);

    // The leading digits as a number; 0 when there are none.
    // [any-thread]
    static int stoi(const std::string& text);
    static std::string itos(int number);

    // At most `maximum` characters of UTF-8 text, never half of one. A byte that cannot begin a
    // character ends the text before it.
    // [any-thread]
    static std::string truncateStringsProperly(std::string text, unsigned int maximum);

    // Without the blanks (" " only) at one end or both; text of nothing but blanks stays as it is.
    // [any-thread]
    static std::string removeLeadingSpaces(const std::string& text);
    static std::string removeTrailingSpaces(const std::string& text);
    static std::string removeLeadingAndTrailingSpaces(const std::string& text);

    // The greatest length of a form field, in characters; -1 when the field is not listed, which
    // means that no limit is known and is said on the standard output.
    // [any-thread]
    static int getFieldSizeFromVector(const std::vector<std::pair<std::string, std::string>>& sizes,
                                      const std::string& field);

    // The value of a configuration item; "???" when it cannot be read, also without the service.
    // [phonelet-thread]
    static std::string getValueFromOCMS(LocalMgmtIfc* localMgmt, const std::string& itemId);
};
