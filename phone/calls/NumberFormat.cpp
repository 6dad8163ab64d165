#include "NumberFormat.h"

#include <optional>
#include <utility>

#include <phonenumbers/phonenumberutil.h>

namespace {

using i18n::phonenumbers::PhoneNumber;
using i18n::phonenumbers::PhoneNumberUtil;

// The library reads nearly anything as some number; only numbers in full mean the same to it and to us.
std::optional<PhoneNumber> numberIn(const std::string& canonical)
{
    const bool isInFull = canonical.size() > 1 && canonical.front() == '+' &&
                          canonical.find_first_not_of("0123456789", 1) == std::string::npos;
    PhoneNumber number;
    if (!isInFull ||
        PhoneNumberUtil::GetInstance()->Parse(canonical, "ZZ", &number) != PhoneNumberUtil::NO_PARSING_ERROR)
        return std::nullopt;
    return number;
}

} // namespace

NumberFormat::NumberFormat(std::string countryCode)
    : m_countryCode(std::move(countryCode))
{
}

std::string NumberFormat::shown(const std::string& canonical) const
{
    const auto* util = PhoneNumberUtil::GetInstance();
    const auto number = numberIn(canonical);
    if (!number || !util->IsPossibleNumber(*number))
        return canonical;
    const bool isAtHome = std::to_string(number->country_code()) == m_countryCode;
    std::string text;
    util->Format(*number, isAtHome ? PhoneNumberUtil::NATIONAL : PhoneNumberUtil::INTERNATIONAL, &text);
    // A number that fits no grouping comes without its prefix too, as nobody writes it.
    const bool isGrouped = text.find_first_not_of("0123456789") != std::string::npos;
    return isGrouped ? text : canonical;
}
