#include "system/Translator.h"

#include <boost/locale/gnu_gettext.hpp>
#include <boost/locale/message.hpp>

#include "app/PhoneLog.h"

namespace {

constexpr char nSOURCE[] = "./phone/system/Translator";
constexpr char DOMAIN_NAME[] = "deskbook";
constexpr char PARAMETER[] = "{1}";

std::locale localeOf(const std::filesystem::path& catalogues, const std::string& language)
{
    namespace gettext = boost::locale::gnu_gettext;
    gettext::messages_info info;
    info.language = language;
    info.encoding = "UTF-8";
    info.paths.push_back(catalogues.string());
    info.domains.emplace_back(DOMAIN_NAME);
    return {std::locale::classic(), gettext::create_messages_facet<char>(info)};
}

} // namespace

Translator::Translator(std::filesystem::path catalogues, const std::string& language)
    : m_catalogues(std::move(catalogues))
{
    setLanguage(language);
}

void Translator::setLanguage(const std::string& language)
{
    std::string spoken = language;
    if (!hasCatalogue(spoken))
        spoken = language.substr(0, language.find_first_of("_-.@"));
    if (!hasCatalogue(spoken)) {
        PHONE_REFUSED("there is no catalogue for the language \"%s\" in %s: English instead",
                      language.c_str(), m_catalogues.c_str());
        spoken = "en";
    }
    auto locale = std::make_shared<const std::locale>(localeOf(m_catalogues, spoken));
    std::lock_guard lock(m_mutex);
    m_language = language;
    m_spokenLanguage = spoken;
    m_locale = std::move(locale);
}

std::string Translator::language() const
{
    std::lock_guard lock(m_mutex);
    return m_language;
}

std::string Translator::spokenLanguage() const
{
    std::lock_guard lock(m_mutex);
    return m_spokenLanguage;
}

bool Translator::hasCatalogue(const std::string& language) const
{
    const auto file = m_catalogues / language / "LC_MESSAGES" / (std::string(DOMAIN_NAME) + ".mo");
    return std::filesystem::exists(file);
}

std::string Translator::translate(const std::string& key) const
{
    // The empty key is where a catalogue keeps its header.
    return key.empty() ? "" : boost::locale::translate(key).str(*current());
}

std::string Translator::translate(const std::string& key, const std::string& parameter) const
{
    auto text = translate(key);
    const auto at = text.find(PARAMETER);
    if (at == std::string::npos)
        return text.empty() ? parameter : text + " " + parameter;
    return text.replace(at, sizeof(PARAMETER) - 1, parameter);
}

std::shared_ptr<const std::locale> Translator::current() const
{
    std::lock_guard lock(m_mutex);
    return m_locale;
}
