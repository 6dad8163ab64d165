#include "DialPlan.h"

#include <algorithm>

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

// The bytes of a separator at the start of `text`: blanks, hyphens and dashes, slashes, dots and
// parentheses, as people write numbers. 0 for none.
std::size_t separatorLength(std::string_view text)
{
    if (std::string_view(" -/.()").find(text.front()) != std::string_view::npos)
        return 1;
    // No-break blank, and what Unicode has between U+2010 and U+2015, and the narrow no-break blank.
    if (text.substr(0, 2) == "\xC2\xA0")
        return 2;
    if (text.size() >= 3 && text.substr(0, 2) == "\xE2\x80" &&
        ((text[2] >= '\x90' && text[2] <= '\x95') || text[2] == '\xAF'))
        return 3;
    return 0;
}

// A number taken apart: only digits, with or without a plus sign before them.
struct Digits {
    bool isNumber = false;
    bool international = false;
    std::string text;
};

Digits digitsOf(std::string_view number)
{
    Digits result;
    // "+49 (0)30": the trunk prefix in parentheses is for callers from inside the country.
    constexpr std::string_view trunk = "(0)";
    result.text.reserve(number.size());
    while (!number.empty()) {
        if (isDigit(number.front())) {
            result.text += number.front();
            number.remove_prefix(1);
        } else if (number.front() == '+' && result.text.empty() && !result.international) {
            result.international = true;
            number.remove_prefix(1);
        } else if (result.international && number.substr(0, trunk.size()) == trunk) {
            number.remove_prefix(trunk.size());
        } else if (const auto length = separatorLength(number); length > 0) {
            number.remove_prefix(length);
        } else {
            return {};
        }
    }
    result.isNumber = !result.text.empty();
    return result;
}

bool startsWith(std::string_view text, std::string_view prefix)
{
    return !prefix.empty() && text.substr(0, prefix.size()) == prefix;
}

} // namespace

DialPlan::DialPlan(DialPlanRules rules)
    : m_rules(std::move(rules))
{
}

bool DialPlan::matches(std::string_view pattern, std::string_view digits)
{
    return pattern.size() == digits.size() &&
           std::equal(pattern.begin(), pattern.end(), digits.begin(),
                      [](char wanted, char digit) { return wanted == 'x' || wanted == digit; });
}

bool DialPlan::isInternal(std::string_view digits) const
{
    if (digits.empty() || digits.size() > static_cast<std::size_t>(std::max(m_rules.internalDigits, 0)))
        return false;
    const auto& patterns = m_rules.internalPatterns;
    return patterns.empty() || std::any_of(patterns.begin(), patterns.end(),
                                           [&](const auto& pattern) { return matches(pattern, digits); });
}

bool DialPlan::isEmergency(std::string_view digits) const
{
    const auto isListed = [this](std::string_view number) {
        const auto& all = m_rules.emergencyNumbers;
        return std::find(all.begin(), all.end(), number) != all.end();
    };
    return isListed(digits) ||
           (startsWith(digits, m_rules.outsideLine) && isListed(digits.substr(m_rules.outsideLine.size())));
}

// Where 0 leads outside and begins area codes too, 0 0 30 is the outside line before 030, never the
// international 00 before 30. A lone 0 belongs to the number: address books have them without the
// digits for a line.
std::string_view DialPlan::withoutOutsideLine(std::string_view digits) const
{
    if (!startsWith(digits, m_rules.outsideLine))
        return digits;
    const auto rest = digits.substr(m_rules.outsideLine.size());
    const bool isOutside =
        startsWith(rest, m_rules.nationalPrefix) || startsWith(rest, m_rules.internationalPrefix);
    return isOutside ? rest : digits;
}

// The number in full without its plus sign; "" when nobody can say.
std::string DialPlan::expand(std::string_view digits) const
{
    digits = withoutOutsideLine(digits);
    if (startsWith(digits, m_rules.internationalPrefix))
        return std::string(digits.substr(m_rules.internationalPrefix.size()));
    std::string full = m_rules.countryCode;
    if (startsWith(digits, m_rules.nationalPrefix))
        return full.append(digits.substr(m_rules.nationalPrefix.size()));
    if (m_rules.nationalPrefix.empty())
        return full.append(digits);
    if (m_rules.areaCode.empty())
        return "";
    return full.append(m_rules.areaCode).append(digits);
}

std::string DialPlan::canonical(const std::string& number) const
{
    const auto digits = digitsOf(number);
    if (!digits.isNumber)
        return number;
    if (digits.international)
        return '+' + digits.text;
    for (const auto& rule : m_rules.rules) {
        const bool fits = rule.length == 0 || digits.text.size() == static_cast<std::size_t>(rule.length);
        if (fits && startsWith(digits.text, rule.prefix))
            return rule.replacement + digits.text.substr(rule.prefix.size());
    }
    if (m_rules.countryCode.empty() || isEmergency(digits.text) || isInternal(digits.text))
        return number;
    const auto full = expand(digits.text);
    return full.empty() ? number : '+' + full;
}

std::string DialPlan::dialString(const std::string& number) const
{
    const auto digits = digitsOf(number);
    if (!digits.isNumber)
        return number;
    const auto full = canonical(number);
    if (full.front() != '+')
        return digits.text;
    const std::string_view rest = std::string_view(full).substr(1);
    if (m_rules.countryCode.empty())
        return full;
    if (startsWith(rest, m_rules.countryCode))
        return m_rules.outsideLine + m_rules.nationalPrefix +
               std::string(rest.substr(m_rules.countryCode.size()));
    return m_rules.outsideLine + m_rules.internationalPrefix + std::string(rest);
}
