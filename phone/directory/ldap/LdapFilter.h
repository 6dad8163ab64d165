// What is asked of the corporate directory: criteria as a filter (RFC 4515).
//
// `*` stands for any text; everything else is literal, whatever it is. Pairs are all to match; a
// SURNAME and a NICKNAME given together are alternatives.
//
// Names are compared by the server, as its schema says. Numbers are written in a hundred ways, so of
// what was typed only the digits count: a number is found when its digits end with those. A `*` at
// the end finds those that contain them. "+" or zeros in front, and with them the country code, are
// no part of what must match. The filter lets any characters stand between the digits, which also
// finds some numbers too many; matches() tells.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <framework/services/PhonebookSearchCriteria.h>

#include "directory/ldap/LdapSettings.h"

// A number that is looked for.
class LdapNumber {
public:
    // Nothing for a text in which there is neither digit nor `*`.
    static std::optional<LdapNumber> typed(std::string_view text, const std::string& countryCode);

    // The value of a filter's item, escaped: "*4*7*1*1*".
    std::string filterValue() const;
    // Whether a directory's number is one of those that are looked for.
    bool matches(std::string_view number) const;

private:
    std::vector<std::string> m_parts; // digits, with a `*` between two
};

struct LdapFilter {
    std::string text;

    // One of the attributes must have a value that the number matches.
    struct NumberTest {
        std::vector<std::string> attributes;
        LdapNumber number;
    };
    std::vector<NumberTest> numbers;

    // How a text field begins that an entry was found by: as asked for, up to the first `*`. Another
    // value or another name of the entry may have matched instead. "": any beginning, but of something.
    struct Beginning {
        std::string field; // Utils::SURNAME and so on
        std::string text;

        // As the telephone's list would find the value.
        bool isOf(std::string value) const;
    };
    std::vector<Beginning> beginnings;
};

// Nothing when no entry can match, or nothing is asked for: no criterion, a number without digits, a
// field that the directory does not have.
std::optional<LdapFilter> ldapFilterOf(const AttributeList& criteria, const LdapSettings& settings,
                                       bool ignoreNickname);

// As RFC 4515 3 wants a value; `*` too.
std::string escapedFilterValue(std::string_view text);

// Whether the text is one filter in parentheses. What lies inside is the server's to judge, but two
// filters side by side would not stay inside an AND.
bool isOneFilter(std::string_view text);
