// What the telephone makes of a directory's entry: a record under the names of Utils.h.
//
// Whatever a server sends, a record holds clean composed text (see ContactText.h) of at most 256
// characters a field, and nothing for what is missing. Of several values of an attribute the first
// in the server's order counts, or the next where a field before has taken that; values with
// options ("sn;lang-de") come after the plain ones. One that begins as was asked for comes before
// all, so that whoever is found by a second name is shown by it. The lines of a postalAddress are joined with
// commas. An entry without surname and first name shows its display name as the surname; one without
// any name is no record.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <framework/services/PhonebookSearchCriteria.h>

#include "directory/ldap/LdapFilter.h"
#include "directory/ldap/LdapSettings.h"

class LdapRecordReader {
public:
    // `map` and `filter` must live as long.
    LdapRecordReader(const LdapAttributeMap& map, const LdapFilter& filter);

    // What must be asked for, each once.
    std::vector<std::string> attributes() const;

    // A value of the entry that is being read.
    void add(std::string_view attribute, std::string_view value);
    // The entry is complete: its record, or nothing when it has no name or none of the numbers that
    // are looked for. Begins the next entry.
    std::optional<AttributeList> finish();

private:
    struct Slot {
        std::string attribute;
        std::vector<std::string> values;
        std::size_t plain = 0; // how many of them have no options; they come first
        std::size_t taken = 0;
    };

    std::size_t slotOf(const std::string& attribute);
    Slot* find(std::string_view attribute);
    struct Field {
        std::string name;
        std::vector<std::size_t> slots;
        const LdapFilter::Beginning* wanted; // null: any
    };
    std::string take(const Field& field);
    bool matchesNumbers() const;

    struct Test {
        std::vector<std::size_t> slots;
        const LdapNumber* number;
    };
    std::vector<Slot> m_slots;
    std::vector<Field> m_fields;
    Field m_displayName;
    std::vector<Test> m_tests;
};
