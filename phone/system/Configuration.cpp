#include "system/Configuration.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "system/ConfigurationFile.h"

namespace {

std::string languageOfUser()
{
    const char* locale = std::getenv("LANG");
    return languageOfLocale(locale ? locale : "");
}

} // namespace

Configuration::Configuration(std::filesystem::path file, const Values& overrides)
    : m_file(std::move(file))
    , m_items(configurationItems(languageOfUser()))
{
    for (const auto& [name, value] : overrides) {
        const auto* known = item(name);
        if (auto accepted = known ? known->accept(value) : Error{}; accepted)
            m_overrides[name] = accepted.value();
    }
    for (const auto& known : m_items)
        m_values[known.name] = known.byDefault;
    for (const auto& [name, value] : m_overrides)
        m_values[name] = value;
    reload();
}

Configuration::Reload Configuration::reload()
{
    const auto read = readConfigurationFile(m_file);
    std::lock_guard lock(m_mutex);
    m_refused.clear();
    if (read.fault) {
        m_refused.push_back(refusal(*read.fault));
        return {{}, m_refused};
    }

    Values values;
    for (const auto& known : m_items)
        values[known.name] = known.byDefault;
    for (const auto& line : read.lines) {
        const auto accepted = accept(line);
        if (accepted) {
            values[line.name] = accepted.value();
            continue;
        }
        m_refused.push_back(refusal({line.line, accepted.error().sentence}));
        if (const auto before = m_values.find(line.name); before != m_values.end())
            values[line.name] = before->second;
    }
    for (const auto& [name, value] : m_overrides)
        values[name] = value;

    Reload result{{}, m_refused};
    for (const auto& [name, value] : values) {
        if (m_values.at(name) != value)
            result.changed.push_back(name);
    }
    m_values = std::move(values);
    return result;
}

std::vector<Configuration::Refusal> Configuration::refused() const
{
    std::lock_guard lock(m_mutex);
    return m_refused;
}

std::string Configuration::text(const std::string& name) const
{
    std::lock_guard lock(m_mutex);
    const auto value = m_values.find(name);
    return value == m_values.end() ? "" : value->second;
}

int Configuration::number(const std::string& name) const
{
    return std::atoi(text(name).c_str());
}

std::vector<std::string> Configuration::list(const std::string& name) const
{
    std::vector<std::string> words;
    std::istringstream in(text(name));
    for (std::string word; std::getline(in, word, ',');)
        words.push_back(word);
    return words;
}

const ConfigurationItem* Configuration::item(const std::string& name) const
{
    const auto known =
        std::find_if(m_items.begin(), m_items.end(), [&](const auto& i) { return i.name == name; });
    return known == m_items.end() ? nullptr : &*known;
}

Result<void> Configuration::set(const std::string& name, const std::string& value)
{
    const auto* known = item(name);
    if (!known)
        return Error{ErrorCode::NotFound,
                     "There is no item \"" + name + "\"; \"deskphone config list\" names all."};
    const auto accepted = known->accept(value);
    if (!accepted)
        return Error{accepted.error().code, accepted.error().sentence + "."};
    return writeConfigurationItem(m_file, *known, accepted.value());
}

Result<std::string> Configuration::accept(const ConfigurationLine& line) const
{
    using Type = ConfigurationItem::Type;
    const auto* known = item(line.name);
    if (!known)
        return Error{ErrorCode::NotFound, "there is no item \"" + line.name + "\""};
    const auto wanted = known->type == Type::Choice ? Type::Text : known->type;
    if (!line.understood || line.type != wanted)
        return Error{ErrorCode::Malformed, "\"" + line.name + "\" must be " + known->range()};
    return known->accept(line.value);
}

Configuration::Refusal Configuration::refusal(const ConfigurationFault& fault) const
{
    const auto where = fault.line > 0 ? ", line " + std::to_string(fault.line) : "";
    return {fault.line, fault.reason, m_file.string() + where + ": " + fault.reason + "."};
}
