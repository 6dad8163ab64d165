#include <framework/display/TranslationInfo.h>

#include <utility>

#include <framework/display/TranslatorIfc.h>

namespace DisplayAPI {

TranslatorIfc::~TranslatorIfc() = default;

TranslationInfo::TranslationInfo(std::string key, const TranslatorIfc* translator)
    : m_key(std::move(key))
    , m_pTranslator(translator)
{
}

TranslationInfo::TranslationInfo(std::string key, const TranslatorIfc* translator, std::string parameter)
    : m_key(std::move(key))
    , m_parameter(std::make_shared<const std::string>(std::move(parameter)))
    , m_pTranslator(translator)
{
}

TranslationInfo TranslationInfo::plain(std::string text)
{
    return {std::move(text), nullptr};
}

std::string TranslationInfo::translated() const
{
    if (!m_pTranslator)
        return m_parameter ? m_key + ' ' + *m_parameter : m_key;
    return m_parameter ? m_pTranslator->translate(m_key, *m_parameter) : m_pTranslator->translate(m_key);
}

} // namespace DisplayAPI
