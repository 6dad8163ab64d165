#include "system/ConfigurationFile.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include <toml++/toml.h>

namespace fs = std::filesystem;

namespace {

using Type = ConfigurationItem::Type;

constexpr std::uintmax_t LARGEST_FILE = 1024 * 1024;

Result<std::string> textOf(const fs::path& file)
{
    std::error_code error;
    if (!fs::exists(file, error) && !error)
        return std::string();
    const auto size = fs::file_size(file, error);
    if (error || size > LARGEST_FILE)
        return Error{ErrorCode::Malformed, file.string() + " is not a configuration file."};
    std::ifstream in(file, std::ios::binary);
    std::string text(size, '\0');
    if (!in.read(text.data(), static_cast<std::streamsize>(size)))
        return Error{ErrorCode::Denied, file.string() + " cannot be read."};
    return text;
}

bool readList(const toml::array& values, std::string& joined)
{
    for (const auto& value : values) {
        const auto text = value.value_exact<std::string>();
        if (!text || text->find(',') != std::string::npos)
            return false;
        joined += (joined.empty() ? "" : ",") + *text;
    }
    return true;
}

ConfigurationLine lineOf(const toml::key& key, const toml::node& node)
{
    ConfigurationLine line{std::string(key.str()), static_cast<int>(key.source().begin.line), Type::Text, "",
                           true};
    if (const auto text = node.value_exact<std::string>()) {
        line.value = *text;
    } else if (const auto number = node.value_exact<std::int64_t>()) {
        line.type = Type::Number;
        line.value = std::to_string(*number);
    } else if (const auto yes = node.value_exact<bool>()) {
        line.type = Type::YesNo;
        line.value = *yes ? "true" : "false";
    } else {
        line.type = Type::List;
        line.understood = node.is_array() && readList(*node.as_array(), line.value);
    }
    return line;
}

Result<toml::table> parsed(const std::string& text)
{
    try {
        return toml::parse(text);
    } catch (const toml::parse_error& error) {
        return Error{ErrorCode::Malformed, "line " + std::to_string(error.source().begin.line) + ": " +
                                               std::string(error.description())};
    }
}

std::string tomlString(const std::string& text)
{
    std::ostringstream out;
    out << toml::value<std::string>(text);
    return out.str();
}

std::string literal(const ConfigurationItem& item, const std::string& value)
{
    if (item.type == Type::Number || item.type == Type::YesNo)
        return value;
    if (item.type != Type::List)
        return tomlString(value);
    std::string words;
    std::istringstream in(value);
    for (std::string word; std::getline(in, word, ',');)
        words += (words.empty() ? "" : ", ") + tomlString(word);
    return "[" + words + "]";
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// Replaces the item's lines, or adds it where it belongs to no table.
std::string withItem(const std::string& text, const toml::table& table, const std::string& name,
                     const std::string& assignment)
{
    auto lines = linesOf(text);
    auto at =
        std::find_if(lines.begin(), lines.end(), [](const auto& line) { return line.starts_with('['); });
    for (const auto& [key, node] : table) {
        if (key.str() != name)
            continue;
        at = lines.begin() + key.source().begin.line - 1;
        at = lines.erase(at, lines.begin() + node.source().end.line);
    }
    lines.insert(at, assignment);

    std::string changed;
    for (const auto& line : lines)
        changed += line + "\n";
    return changed;
}

Result<void> replaceFile(const fs::path& file, const std::string& text)
{
    auto beside = file;
    beside += ".new";
    std::ofstream out(beside, std::ios::binary);
    out << text;
    out.close();
    std::error_code error;
    if (out)
        fs::rename(beside, file, error);
    if (!out || error)
        return Error{ErrorCode::Denied, file.string() + " cannot be written."};
    return {};
}

} // namespace

Result<std::vector<ConfigurationLine>> parseConfiguration(const std::string& text)
{
    const auto table = parsed(text);
    if (!table)
        return table.error();
    std::vector<ConfigurationLine> lines;
    for (const auto& [key, node] : table.value())
        lines.push_back(lineOf(key, node));
    std::sort(lines.begin(), lines.end(), [](const auto& a, const auto& b) { return a.line < b.line; });
    return lines;
}

Result<std::vector<ConfigurationLine>> readConfigurationFile(const fs::path& file)
{
    const auto text = textOf(file);
    if (!text)
        return text.error();
    return parseConfiguration(text.value());
}

Result<void> writeConfigurationItem(const fs::path& file, const ConfigurationItem& item,
                                    const std::string& value)
{
    const auto text = textOf(file);
    if (!text)
        return text.error();
    const auto table = parsed(text.value());
    if (!table)
        return Error{ErrorCode::Malformed,
                     file.string() + ", " + table.error().sentence + ". Repair it first."};
    return replaceFile(
        file, withItem(text.value(), table.value(), item.name, item.name + " = " + literal(item, value)));
}
