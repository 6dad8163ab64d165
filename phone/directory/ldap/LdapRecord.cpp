#include "directory/ldap/LdapRecord.h"

#include <algorithm>

#include <strings.h>

#include <framework/services/Utils.h>

#include "directory/ContactText.h"

namespace {

constexpr std::size_t nMOST_CHARACTERS = 256;
// Of one attribute no more values are looked at.
constexpr std::size_t nMOST_VALUES = 16;

bool sameName(std::string_view one, std::string_view other)
{
    return one.size() == other.size() && ::strncasecmp(one.data(), other.data(), one.size()) == 0;
}

bool isPostalAddress(std::string_view attribute)
{
    constexpr std::string_view ending = "postaladdress";
    return attribute.size() >= ending.size() &&
           sameName(attribute.substr(attribute.size() - ending.size()), ending);
}

std::string unescaped(std::string_view line)
{
    std::string result;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const auto code = line.substr(i, 3);
        if (code == "\\24" || sameName(code, "\\5c"))
            result += code == "\\24" ? '$' : '\\', i += 2;
        else
            result += line[i];
    }
    return result;
}

// "Main Street 1$12345 Town" (RFC 4517 3.3.28) on one line. Some of the lines may be empty.
std::string onOneLine(std::string_view lines)
{
    std::string result;
    while (!lines.empty()) {
        const auto length = std::min(lines.find('$'), lines.size());
        const auto line = trimmedText(lines.substr(0, length));
        if (!line.empty())
            result += (result.empty() ? "" : ", ") + unescaped(line);
        lines.remove_prefix(std::min(length + 1, lines.size()));
    }
    return result;
}

std::string shownText(std::string_view value)
{
    const auto text = value.size() > nMOST_CHARACTERS ? fitText(value, nMOST_CHARACTERS) : cleanText(value);
    return std::string(trimmedText(text));
}

} // namespace

LdapRecordReader::LdapRecordReader(const LdapAttributeMap& map, const LdapFilter& filter)
{
    const auto slotsOf = [this](const std::vector<std::string>& attributes) {
        std::vector<std::size_t> slots;
        for (const auto& attribute : attributes)
            slots.push_back(slotOf(attribute));
        return slots;
    };
    for (const auto& field : map.fields) {
        const auto wanted = std::ranges::find(filter.beginnings, field.name, &LdapFilter::Beginning::field);
        m_fields.push_back(
            {field.name, slotsOf(field.attributes), wanted == filter.beginnings.end() ? nullptr : &*wanted});
    }
    m_displayName = {Utils::SURNAME, slotsOf(map.displayName), nullptr};
    for (const auto& test : filter.numbers)
        m_tests.push_back({slotsOf(test.attributes), &test.number});
}

std::size_t LdapRecordReader::slotOf(const std::string& attribute)
{
    const auto known = std::find_if(m_slots.begin(), m_slots.end(),
                                    [&](const auto& slot) { return sameName(slot.attribute, attribute); });
    if (known != m_slots.end())
        return static_cast<std::size_t>(known - m_slots.begin());
    m_slots.push_back({attribute, {}, 0, 0});
    return m_slots.size() - 1;
}

std::vector<std::string> LdapRecordReader::attributes() const
{
    std::vector<std::string> names;
    for (const auto& slot : m_slots)
        names.push_back(slot.attribute);
    return names;
}

LdapRecordReader::Slot* LdapRecordReader::find(std::string_view attribute)
{
    const auto slot = std::find_if(m_slots.begin(), m_slots.end(),
                                   [&](const auto& s) { return sameName(s.attribute, attribute); });
    return slot == m_slots.end() ? nullptr : &*slot;
}

void LdapRecordReader::add(std::string_view attribute, std::string_view value)
{
    auto* slot = find(attribute);
    const bool plain = slot != nullptr;
    if (!plain)
        slot = find(attribute.substr(0, attribute.find(';')));
    if (!slot || slot->values.size() >= nMOST_VALUES)
        return;
    auto text = isPostalAddress(slot->attribute) ? shownText(onOneLine(value.substr(0, 4 * nMOST_CHARACTERS)))
                                                 : shownText(value);
    if (text.empty())
        return;
    const auto at = plain ? slot->plain++ : slot->values.size();
    slot->values.insert(slot->values.begin() + static_cast<std::ptrdiff_t>(at), std::move(text));
}

std::string LdapRecordReader::take(const Field& field)
{
    for (const auto index : field.slots) {
        auto& slot = m_slots[index];
        const auto next = slot.values.begin() + static_cast<std::ptrdiff_t>(slot.taken);
        if (next == slot.values.end())
            continue;
        if (field.wanted && slot.values.end() - next > 1) {
            const auto isWanted = [&field](const auto& value) { return field.wanted->isOf(value); };
            if (const auto found = std::find_if(next, slot.values.end(), isWanted);
                found != slot.values.end())
                std::rotate(next, found, found + 1);
        }
        return slot.values[slot.taken++];
    }
    return "";
}

bool LdapRecordReader::matchesNumbers() const
{
    return std::all_of(m_tests.begin(), m_tests.end(), [this](const auto& test) {
        return std::any_of(test.slots.begin(), test.slots.end(), [&](std::size_t slot) {
            const auto& values = m_slots[slot].values;
            return std::any_of(values.begin(), values.end(),
                               [&](const auto& value) { return test.number->matches(value); });
        });
    });
}

std::optional<AttributeList> LdapRecordReader::finish()
{
    AttributeList record;
    bool named = false;
    if (matchesNumbers()) {
        record.reserve(m_fields.size());
        for (const auto& field : m_fields) {
            auto value = take(field);
            if (value.empty())
                continue;
            named = named || field.name == Utils::SURNAME || field.name == Utils::FIRSTNAME;
            record.emplace_back(field.name, std::move(value));
        }
        if (!named) {
            auto name = take(m_displayName);
            named = !name.empty();
            record.emplace(record.begin(), Utils::SURNAME, std::move(name));
        }
    }
    for (auto& slot : m_slots) {
        slot.values.clear();
        slot.plain = slot.taken = 0;
    }
    if (!named)
        return std::nullopt;
    return record;
}
