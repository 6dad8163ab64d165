// The texts of the telephone's current language, from the catalogues in one folder
// (<language>/LC_MESSAGES/deskbook.mo). The system's own locales are not needed.

#pragma once

#include <filesystem>
#include <locale>
#include <memory>
#include <mutex>
#include <string>

#include <framework/display/TranslatorIfc.h>

class Translator final : public DisplayAPI::TranslatorIfc {
public:
    Translator(std::filesystem::path catalogues, const std::string& language);

    // A code as "pt" or "pt_BR". A country without a catalogue speaks its language, a language
    // without one English.
    // [any-thread]
    void setLanguage(const std::string& language);
    // As it was set, with a catalogue or not.
    // [any-thread]
    std::string language() const;
    // The language that the texts are in.
    // [any-thread]
    std::string spokenLanguage() const;

    std::string translate(const std::string& key) const override;
    std::string translate(const std::string& key, const std::string& parameter) const override;

private:
    bool hasCatalogue(const std::string& language) const;
    std::shared_ptr<const std::locale> current() const;

    const std::filesystem::path m_catalogues;
    mutable std::mutex m_mutex;
    std::string m_language;
    std::string m_spokenLanguage;
    std::shared_ptr<const std::locale> m_locale;
};
