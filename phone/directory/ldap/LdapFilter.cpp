#include "directory/ldap/LdapFilter.h"

#include <algorithm>

#include <framework/services/Utils.h>
#include <framework/util/Utf8Utils.h>

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isNumberField(const std::string& name)
{
    return name == Utils::OFFICE || name == Utils::OFFICE2 || name == Utils::MOBILE || name == Utils::PRIVATE;
}

void escape(std::string& result, char c)
{
    constexpr char digits[] = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7F && c != '(' && c != ')' && c != '\\' && c != '*') {
        result += c;
        return;
    }
    result += '\\';
    result += digits[byte >> 4];
    result += digits[byte & 0xF];
}

// With the user's `*`, of which several in a row are one.
std::string filterValueOf(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c != '*')
            escape(result, c);
        else if (!result.ends_with('*'))
            result += '*';
    }
    return result;
}

std::string anyOf(const std::vector<std::string>& items)
{
    if (items.size() == 1)
        return items.front();
    std::string all = "(|";
    for (const auto& item : items)
        all += item;
    return all + ")";
}

void addItems(std::vector<std::string>& items, const std::vector<std::string>& attributes,
              const std::string& value)
{
    for (const auto& attribute : attributes)
        items.push_back("(" + attribute + "=" + value + ")");
}

// Puts one filter together.
class Composer {
public:
    Composer(const LdapSettings& settings, bool nicknames)
        : m_settings(settings)
        , m_nicknames(nicknames)
    {
    }

    std::optional<LdapFilter> compose(const AttributeList& criteria)
    {
        std::string all;
        for (const auto& [name, value] : criteria) {
            if (value.empty() || name == Utils::NICKNAME)
                continue;
            const auto item = isNumberField(name) ? numberItem(name, value) : textItem(name, value, criteria);
            if (!item)
                return std::nullopt;
            all += *item;
        }
        // Beside a surname it is an alternative, and in there already.
        const auto nickname = m_nicknames ? valueOf(criteria, Utils::NICKNAME) : "";
        if (!nickname.empty() && valueOf(criteria, Utils::SURNAME).empty()) {
            std::vector<std::string> items;
            addItems(items, m_settings.attributes.nickname, filterValueOf(nickname));
            if (items.empty())
                return std::nullopt;
            all += anyOf(items);
        }
        if (all.empty())
            return std::nullopt;
        // Whoever ends a surname with a comma sees that in rows with a first name only.
        const auto surname = valueOf(criteria, Utils::SURNAME);
        const bool isWhole = !surname.empty() && surname.find('*') == std::string::npos;
        if (isWhole && !m_nicknames && valueOf(criteria, Utils::FIRSTNAME).empty())
            m_filter.beginnings.push_back({Utils::FIRSTNAME, ""});
        m_filter.text = "(&" + m_settings.baseFilter + all + ")";
        return std::move(m_filter);
    }

private:
    static std::string valueOf(const AttributeList& criteria, const std::string& name)
    {
        const auto pair = std::find_if(criteria.begin(), criteria.end(),
                                       [&name](const auto& criterion) { return criterion.first == name; });
        return pair == criteria.end() ? "" : pair->second;
    }

    std::optional<std::string> numberItem(const std::string& name, const std::string& value)
    {
        auto number = LdapNumber::typed(value, m_settings.countryCode);
        const auto& attributes = m_settings.attributes.of(name);
        if (!number || attributes.empty())
            return std::nullopt;
        std::vector<std::string> items;
        addItems(items, attributes, number->filterValue());
        m_filter.numbers.push_back({attributes, std::move(*number)});
        return anyOf(items);
    }

    std::optional<std::string> textItem(const std::string& name, const std::string& value,
                                        const AttributeList& criteria)
    {
        std::vector<std::string> items;
        addItems(items, m_settings.attributes.of(name), filterValueOf(value));
        if (name == Utils::SURNAME)
            addOtherNames(items, value, valueOf(criteria, Utils::NICKNAME));
        if (items.empty())
            return std::nullopt;
        if (const auto beginning = value.substr(0, value.find('*')); !beginning.empty())
            m_filter.beginnings.push_back({name, beginning});
        return anyOf(items);
    }

    void addOtherNames(std::vector<std::string>& items, const std::string& surname,
                       const std::string& nickname)
    {
        if (m_nicknames && !nickname.empty())
            addItems(items, m_settings.attributes.nickname, filterValueOf(nickname));
        const auto& map = m_settings.attributes;
        if (!map.findsByDisplayName || map.displayName.empty())
            return;
        std::string nameless;
        for (const auto& attribute : map.of(Utils::SURNAME))
            nameless += "(!(" + attribute + "=*))";
        items.push_back("(&(" + map.displayName.front() + "=" + filterValueOf(surname) + ")" + nameless +
                        ")");
    }

    const LdapSettings& m_settings;
    const bool m_nicknames;
    LdapFilter m_filter;
};

} // namespace

std::string escapedFilterValue(std::string_view text)
{
    std::string result;
    for (const char c : text)
        escape(result, c);
    return result;
}

bool LdapFilter::Beginning::isOf(std::string value) const
{
    auto beginning = text;
    Utf8Utils::normalize(value);
    Utf8Utils::normalize(beginning);
    return Utf8Utils::find(value, beginning) == 0;
}

bool isOneFilter(std::string_view text)
{
    int open = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        open += text[i] == '(' ? 1 : text[i] == ')' ? -1 : 0;
        if (open <= 0)
            return open == 0 && i > 0 && i + 1 == text.size();
    }
    return false;
}

std::optional<LdapFilter> ldapFilterOf(const AttributeList& criteria, const LdapSettings& settings,
                                       bool ignoreNickname)
{
    return Composer(settings, settings.nickname && !ignoreNickname).compose(criteria);
}

std::optional<LdapNumber> LdapNumber::typed(std::string_view text, const std::string& countryCode)
{
    std::string first;
    const auto star = text.find('*');
    const auto begin = text.substr(0, star);
    std::copy_if(begin.begin(), begin.end(), std::back_inserter(first), isDigit);

    // Whatever was typed in front of a number that can be dialled from anywhere is written there by
    // some and left out by others.
    const auto plus = begin.find('+');
    const bool international = first.starts_with("00") ||
                               (plus != std::string_view::npos && plus < begin.find_first_of("0123456789"));
    auto significant = first.substr(std::min(first.find_first_not_of('0'), first.size()));
    if (international && !countryCode.empty() && significant.starts_with(countryCode))
        significant.erase(0, countryCode.size());
    significant.erase(0, std::min(significant.find_first_not_of('0'), significant.size()));

    LdapNumber number;
    number.m_parts.push_back(significant.empty() ? first : significant);
    for (const char c : star == std::string_view::npos ? "" : text.substr(star)) {
        if (c == '*' && (number.m_parts.size() == 1 || !number.m_parts.back().empty()))
            number.m_parts.emplace_back();
        else if (isDigit(c))
            number.m_parts.back() += c;
    }
    if (number.m_parts == std::vector<std::string>{""})
        return std::nullopt;
    return number;
}

std::string LdapNumber::filterValue() const
{
    std::string value = "*";
    for (const auto& part : m_parts) {
        for (const char digit : part)
            value += {digit, '*'};
    }
    return value;
}

bool LdapNumber::matches(std::string_view text) const
{
    std::string digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits), isDigit);
    std::size_t from = 0;
    for (std::size_t i = 0; i + 1 < m_parts.size(); ++i) {
        const auto at = digits.find(m_parts[i], from);
        if (at == std::string::npos)
            return false;
        from = at + m_parts[i].size();
    }
    return digits.size() - from >= m_parts.back().size() && digits.ends_with(m_parts.back());
}
