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

    // A language without a catalogue is spoken in English.
    // [any-thread]
    void setLanguage(const std::string& language);
    bool hasCatalogue(const std::string& language) const;
    // As it was set, with a catalogue or not.
    // [any-thread]
    std::string language() const;

    std::string translate(const std::string& key) const override;
    std::string translate(const std::string& key, const std::string& parameter) const override;

private:
    std::shared_ptr<const std::locale> current() const;

    const std::filesystem::path m_catalogues;
    mutable std::mutex m_mutex;
    std::string m_language;
    std::shared_ptr<const std::locale> m_locale;
};
