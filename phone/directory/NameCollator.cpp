#include "NameCollator.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <unicode/uversion.h>

NameCollator::NameCollator(const std::string& language)
{
    UErrorCode status = U_ZERO_ERROR;
    m_pCollator.reset(icu::Collator::createInstance(icu::Locale::createCanonical(language.c_str()), status));
    if (U_FAILURE(status) || !m_pCollator) {
        status = U_ZERO_ERROR;
        m_pCollator.reset(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    }
    if (!m_pCollator)
        return;
    m_pCollator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
    m_pCollator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);

    UVersionInfo version;
    char text[U_MAX_VERSION_STRING_LENGTH];
    m_pCollator->getVersion(version);
    u_versionToString(version, text);
    m_identity = language + "/" + text;
}

NameCollator::~NameCollator() = default;

std::string NameCollator::key(std::string_view surname, std::string_view firstname) const
{
    if (!m_pCollator)
        return {};
    std::string name(surname);
    if (!surname.empty() && !firstname.empty())
        name += ", ";
    name += firstname;

    const auto text = icu::UnicodeString::fromUTF8(name);
    uint8_t buffer[256];
    const int32_t length = m_pCollator->getSortKey(text, buffer, sizeof buffer);
    if (length <= static_cast<int32_t>(sizeof buffer))
        return {reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(length)};
    std::string key(static_cast<std::size_t>(length), '\0');
    m_pCollator->getSortKey(text, reinterpret_cast<uint8_t*>(key.data()), length);
    return key;
}
