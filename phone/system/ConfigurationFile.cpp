#include "system/ConfigurationFile.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <toml++/toml.h>

#include "directory/NewFile.h"

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
        return Error{ErrorCode::Malformed, "this is not a configuration file"};
    std::ifstream in(file, std::ios::binary);
    std::string text(size, '\0');
    if (!in.read(text.data(), static_cast<std::streamsize>(size)))
        return Error{ErrorCode::Denied, "the file cannot be read"};
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

std::optional<ConfigurationFault> parse(const std::string& text, toml::table& table)
{
    try {
        table = toml::parse(text);
        return std::nullopt;
    } catch (const toml::parse_error& error) {
        return ConfigurationFault{static_cast<int>(error.source().begin.line),
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

// While it lives, other programs wait to change a file of the folder: none undoes another's change.
class ChangingAlone {
public:
    explicit ChangingAlone(const fs::path& folder)
        : m_descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        ::flock(m_descriptor, LOCK_EX);
    }
    ~ChangingAlone() { ::close(m_descriptor); }
    ChangingAlone(const ChangingAlone&) = delete;
    ChangingAlone& operator=(const ChangingAlone&) = delete;

private:
    const int m_descriptor;
};

Result<void> replaceFile(const fs::path& file, const std::string& text)
{
    auto beside = file;
    beside += ".new";
    std::ofstream out(beside, std::ios::binary);
    out << text;
    out.close();
    std::error_code error = out ? syncToDisk(beside) : std::error_code();
    if (out && !error)
        fs::rename(beside, file, error);
    if (out && !error)
        return {};
    fs::remove(beside, error);
    return Error{ErrorCode::Denied, file.string() + " cannot be written."};
}

} // namespace

ConfigurationLines parseConfiguration(const std::string& text)
{
    toml::table table;
    ConfigurationLines result;
    result.fault = parse(text, table);
    for (const auto& [key, node] : table)
        result.lines.push_back(lineOf(key, node));
    std::sort(result.lines.begin(), result.lines.end(),
              [](const auto& a, const auto& b) { return a.line < b.line; });
    return result;
}

ConfigurationLines readConfigurationFile(const fs::path& file)
{
    const auto text = textOf(file);
    if (!text)
        return {{}, ConfigurationFault{0, text.error().sentence}};
    return parseConfiguration(text.value());
}

Result<void> writeConfigurationItem(const fs::path& file, const ConfigurationItem& item,
                                    const std::string& value)
{
    const ChangingAlone alone(file.parent_path());
    const auto text = textOf(file);
    if (!text)
        return Error{text.error().code, file.string() + ": " + text.error().sentence + "."};
    toml::table table;
    if (const auto fault = parse(text.value(), table))
        return Error{ErrorCode::Malformed, file.string() + ", line " + std::to_string(fault->line) + ": " +
                                               fault->reason + ". Repair it first."};
    return replaceFile(file,
                       withItem(text.value(), table, item.name, item.name + " = " + literal(item, value)));
}
