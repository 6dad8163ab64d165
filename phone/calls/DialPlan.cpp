#include "DialPlan.h"

#include <algorithm>
#include <array>

#include "WrittenNumber.h"

namespace {

constexpr std::size_t nMOST_DIGITS = 15;        // of a number in full (ITU-T E.164)
constexpr std::size_t nLEAST_DIGITS_ABROAD = 5; // a country's code and the shortest number there

bool startsWith(std::string_view text, std::string_view prefix)
{
    return !prefix.empty() && text.substr(0, prefix.size()) == prefix;
}

bool matches(std::string_view pattern, std::string_view digits)
{
    return pattern.size() == digits.size() &&
           std::equal(pattern.begin(), pattern.end(), digits.begin(),
                      [](char wanted, char digit) { return wanted == 'x' || wanted == digit; });
}

bool matchesAny(const std::vector<std::string>& patterns, std::string_view digits)
{
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const auto& pattern) { return matches(pattern, digits); });
}

// Countries whose numbers keep their 0 when they are called from abroad: Italy, San Marino, Ivory
// Coast, Congo.
bool keepsTrunkZero(std::string_view countryCode)
{
    constexpr std::array<std::string_view, 4> keeping{"39", "378", "225", "242"};
    return std::find(keeping.begin(), keeping.end(), countryCode) != keeping.end();
}

// "" for more digits than a number can have.
std::string plus(std::string_view first, std::string_view second = {}, std::string_view third = {})
{
    const auto size = first.size() + second.size() + third.size();
    if (size > nMOST_DIGITS)
        return "";
    std::string full;
    full.reserve(1 + size);
    return full.append(1, '+').append(first).append(second).append(third);
}

std::size_t length(int digits)
{
    return static_cast<std::size_t>(std::max(digits, 0));
}

} // namespace

DialPlan::DialPlan(DialPlanRules rules)
    : m_rules(std::move(rules))
{
    m_outsideLines.push_back(m_rules.outsideLine);
    m_outsideLines.insert(m_outsideLines.end(), m_rules.otherOutsideLines.begin(),
                          m_rules.otherOutsideLines.end());
    m_rules.enterprisePrefix = WrittenNumber::read(m_rules.enterprisePrefix).digits;
}

bool DialPlan::isInternal(std::string_view digits) const
{
    if (digits.empty() || digits.size() > length(m_rules.internalDigits))
        return false;
    const auto& first = m_rules.internalFirstDigits;
    const auto& patterns = m_rules.internalPatterns;
    return (first.empty() || first.find(digits.front()) != std::string::npos) &&
           (patterns.empty() || matchesAny(patterns, digits));
}

bool DialPlan::isListedEmergency(std::string_view digits) const
{
    const auto& all = m_rules.emergencyNumbers;
    return std::find(all.begin(), all.end(), digits) != all.end();
}

bool DialPlan::isEmergency(std::string_view digits) const
{
    return isListedEmergency(digits) ||
           std::any_of(m_outsideLines.begin(), m_outsideLines.end(), [&](const std::string& line) {
               return startsWith(digits, line) && isListedEmergency(digits.substr(line.size()));
           });
}

bool DialPlan::isCompleteEmergency(std::string_view digits) const
{
    if (!isListedEmergency(digits))
        return false;
    const auto goesOn = [&](std::string_view pattern) {
        return pattern.size() > digits.size() && matches(pattern.substr(0, digits.size()), digits);
    };
    const auto& rules = m_rules;
    const bool isSaid = !rules.internalFirstDigits.empty() || !rules.internalPatterns.empty();
    const bool isPossible = rules.internalFirstDigits.empty() ||
                            rules.internalFirstDigits.find(digits.front()) != std::string::npos;
    const bool mayBeInternal =
        isSaid && isPossible && digits.size() < length(rules.internalDigits) &&
        (rules.internalPatterns.empty() || std::ranges::any_of(rules.internalPatterns, goesOn));
    return !mayBeInternal && std::ranges::none_of(rules.serviceNumbers, goesOn) &&
           std::ranges::none_of(rules.emergencyNumbers, goesOn);
}

bool DialPlan::isService(std::string_view digits) const
{
    return matchesAny(m_rules.serviceNumbers, digits);
}

bool DialPlan::isAbroad(std::string_view digits) const
{
    const auto& prefix = m_rules.internationalPrefix;
    return startsWith(digits, prefix) && digits.size() >= prefix.size() + nLEAST_DIGITS_ABROAD &&
           digits[prefix.size()] != '0';
}

bool DialPlan::isNationalLength(std::string_view digits) const
{
    if (m_rules.nationalDigits > 0)
        return digits.size() == length(m_rules.nationalDigits);
    return !digits.empty() && digits.size() >= length(m_rules.leastLocalDigits);
}

bool DialPlan::isNational(std::string_view digits) const
{
    const auto& prefix = m_rules.nationalPrefix;
    if (startsWith(digits, prefix)) {
        const auto rest = digits.substr(prefix.size());
        return isNationalLength(rest) && rest.front() != '0' && !isInternal(digits);
    }
    const bool isKnownByLength = prefix.empty() || m_rules.nationalDigits > 0;
    return isKnownByLength && isNationalLength(digits) && !isInternal(digits) &&
           !startsWith(digits, m_rules.internationalPrefix);
}

bool DialPlan::isLocalLength(std::string_view digits) const
{
    if (m_rules.nationalDigits > 0)
        return digits.size() + m_rules.areaCode.size() == length(m_rules.nationalDigits);
    return digits.size() >= length(m_rules.leastLocalDigits);
}

bool DialPlan::isLocal(std::string_view digits) const
{
    const auto& prefix = m_rules.nationalPrefix;
    return !m_rules.areaCode.empty() && !prefix.empty() && !startsWith(digits, prefix) &&
           isLocalLength(digits) && !isInternal(digits) && !startsWith(digits, m_rules.internationalPrefix);
}

// Whether that is dialled after the digits for an outside line. Where numbers differ in length a local
// one does not count: 0 30 1234567 is how Germans once wrote 030 1234567.
bool DialPlan::isOutside(std::string_view digits) const
{
    return isService(digits) || isAbroad(digits) || isNational(digits) ||
           (m_rules.nationalDigits > 0 && isLocal(digits));
}

std::string_view DialPlan::withoutOutsideLine(const WrittenNumber& number, std::string_view digits,
                                              Reading reading) const
{
    for (const auto& line : m_outsideLines) {
        if (!startsWith(digits, line) || !isOutside(digits.substr(line.size())))
            continue;
        const bool standsApart = number.firstGroup == line.size();
        if (reading == Reading::Dialled || standsApart || !(isOutside(digits) || isLocal(digits)))
            return digits.substr(line.size());
    }
    return digits;
}

// In "+49 (0)30" and "0049 (0)30" the 0 is for callers from inside the country.
std::string DialPlan::withoutTrunkZero(const WrittenNumber& number) const
{
    auto digits = number.digits;
    if (number.zeroInParentheses == WrittenNumber::NONE)
        return digits;
    auto country = std::string_view(digits).substr(0, number.zeroInParentheses);
    if (!number.international) {
        for (const auto& line : m_outsideLines) {
            if (startsWith(country, line + m_rules.internationalPrefix))
                country.remove_prefix(line.size());
        }
        if (!startsWith(country, m_rules.internationalPrefix))
            return digits;
        country.remove_prefix(m_rules.internationalPrefix.size());
    }
    if (!country.empty() && !keepsTrunkZero(country))
        digits.erase(number.zeroInParentheses, 1);
    return digits;
}

// In the context of another country a number without "+" may mean anything.
bool DialPlan::isElsewhere(const WrittenNumber& number) const
{
    return !number.international && !number.context.empty() && number.context != m_rules.countryCode;
}

// A service number is its own canonical form; "" when nobody can say, and where a number stays as it is.
std::string DialPlan::inFull(const WrittenNumber& number, Reading reading) const
{
    const auto all = withoutTrunkZero(number);
    if (number.international)
        return plus(all);
    if (m_rules.countryCode.empty() || isElsewhere(number) || isEmergency(all))
        return "";
    return inFull(withoutOutsideLine(number, all, reading));
}

std::string DialPlan::inFull(std::string_view digits) const
{
    const auto& country = m_rules.countryCode;
    if (isService(digits))
        return std::string(digits);
    if (isAbroad(digits))
        return plus(digits.substr(m_rules.internationalPrefix.size()));
    if (isNational(digits)) {
        const bool hasPrefix = startsWith(digits, m_rules.nationalPrefix);
        return plus(country, digits.substr(hasPrefix ? m_rules.nationalPrefix.size() : 0));
    }
    if (isInternal(digits)) {
        const bool isReached = std::none_of(m_outsideLines.begin(), m_outsideLines.end(),
                                            [&](const auto& line) { return startsWith(digits, line); });
        const auto& enterprise = m_rules.enterprisePrefix;
        return enterprise.empty() || !isReached ? "" : plus(enterprise, digits);
    }
    return isLocal(digits) ? plus(country, m_rules.areaCode, digits) : "";
}

std::string DialPlan::canonical(const std::string& number) const
{
    const auto written = WrittenNumber::read(number);
    if (written.kind != WrittenNumber::Kind::Digits)
        return number;
    auto full = inFull(written, Reading::Written);
    return full.empty() ? number : full;
}

std::string DialPlan::canonicalOfDialled(const std::string& digits) const
{
    const auto written = WrittenNumber::read(digits);
    if (written.kind != WrittenNumber::Kind::Digits)
        return digits;
    auto full = inFull(written, Reading::Dialled);
    return full.empty() ? digits : full;
}

std::string DialPlan::dialString(const std::string& number) const
{
    const auto written = WrittenNumber::read(number);
    if (written.kind == WrittenNumber::Kind::Other || isElsewhere(written))
        return number;
    if (written.kind == WrittenNumber::Kind::Code)
        return written.digits;
    const bool isAsDialled = written.firstGroup == 0;
    auto full = inFull(written, isAsDialled ? Reading::Dialled : Reading::Written);
    if (full.empty() && !written.international)
        full = dialledInFull(written.digits);
    if (full.empty())
        return written.international ? '+' + written.digits : written.digits;
    return full.front() == '+' ? dialStringOf(full) : m_rules.outsideLine + full;
}

std::string DialPlan::extension(const std::string& number) const
{
    auto dialled = dialString(number);
    auto own = extensionIn(canonicalOfDialled(dialled));
    return own.empty() ? dialled : own;
}

// "" for a number that is not the enterprise's.
std::string DialPlan::extensionIn(const std::string& canonical) const
{
    const auto prefix = '+' + m_rules.enterprisePrefix;
    if (m_rules.enterprisePrefix.empty() || !startsWith(canonical, prefix))
        return "";
    auto extension = canonical.substr(prefix.size());
    return isInternal(extension) ? extension : "";
}

// The shortest form that surely means that number here: an extension that is an emergency number too
// is called from outside.
std::string DialPlan::dialStringOf(const std::string& canonical) const
{
    const auto& rules = m_rules;
    if (rules.countryCode.empty())
        return canonical;
    if (auto extension = extensionIn(canonical); !extension.empty() && reaches(extension, canonical))
        return extension;
    const std::string_view digits = std::string_view(canonical).substr(1);
    if (startsWith(digits, rules.countryCode)) {
        const auto national = digits.substr(rules.countryCode.size());
        if (rules.dialsLocalNumbers && startsWith(national, rules.areaCode)) {
            auto local = std::string(rules.outsideLine).append(national.substr(rules.areaCode.size()));
            if (reaches(local, canonical))
                return local;
        }
        auto inCountry = std::string(rules.outsideLine).append(rules.nationalPrefix).append(national);
        if (reaches(inCountry, canonical))
            return inCountry;
    }
    auto abroad = std::string(rules.outsideLine).append(rules.internationalPrefix).append(digits);
    return reaches(abroad, canonical) ? abroad : canonical;
}

bool DialPlan::reaches(const std::string& digits, const std::string& canonical) const
{
    return dialledInFull(digits) == canonical;
}

std::string DialPlan::dialledInFull(const std::string& digits) const
{
    WrittenNumber dialled;
    dialled.kind = WrittenNumber::Kind::Digits;
    dialled.digits = digits;
    return inFull(dialled, Reading::Dialled);
}
