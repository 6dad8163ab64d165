// A text on the screen: a key that is translated whenever it is painted, or plain text.
//
// Widgets keep it, not its translation, so that a change of language repaints everything.

#pragma once

#include <memory>
#include <string>

#include <framework/Export.h>

namespace DisplayAPI {

class TranslatorIfc;

class FRAMEWORK_API TranslationInfo {
public:
    TranslationInfo() = default;
    // The translator is not owned and outlives every text; without one the key is shown.
    TranslationInfo(std::string key, const TranslatorIfc* translator);
    TranslationInfo(std::string key, const TranslatorIfc* translator, std::string parameter);

    // Text that is shown as it is, such as a contact's name.
    static TranslationInfo plain(std::string text);

    // The key, or the plain text.
    const std::string& getKey() const { return m_key; }

    // What is painted now.
    std::string translated() const;

private:
    std::string m_key;
    std::shared_ptr<const std::string> m_parameter; // shared: lists keep many texts, few have one
    const TranslatorIfc* m_pTranslator = nullptr;
};

} // namespace DisplayAPI
