// The telephone's configuration: a file that may change at any time.
//
// What the file does not name has its default. An unknown item or a value that an item cannot be is
// refused, with the line and the reason, and the value before stays; a file that is no TOML at all
// changes nothing.

#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "app/Result.h"
#include "system/ConfigurationItems.h"

struct ConfigurationFault;
struct ConfigurationLine;

class Configuration {
public:
    using Values = std::map<std::string, std::string>;

    struct Refusal {
        int line = 0; // 0: the file as a whole
        std::string reason;
        // With the file's name, for the log and the terminal.
        std::string sentence;
    };

    struct Reload {
        std::vector<std::string> changed; // the names of items with another value than before
        std::vector<Refusal> refused;
    };

    // Reads the file. `overrides` win over it; those that are refused are left out.
    explicit Configuration(std::filesystem::path file, const Values& overrides = {});

    // Reads the file again.
    // [any-thread]
    Reload reload();

    // What was refused when the file was read last.
    // [any-thread]
    std::vector<Refusal> refused() const;

    // "" for an item that does not exist; a list has commas between its texts.
    // [any-thread]
    std::string text(const std::string& name) const;
    int number(const std::string& name) const;
    bool yes(const std::string& name) const { return text(name) == "true"; }
    std::vector<std::string> list(const std::string& name) const;

    // Null when there is none.
    const ConfigurationItem* item(const std::string& name) const;
    const std::vector<ConfigurationItem>& items() const { return m_items; }
    const std::filesystem::path& file() const { return m_file; }

    // Writes an item into the file.
    Result<void> set(const std::string& name, const std::string& value);

private:
    Result<std::string> accept(const ConfigurationLine& line) const;
    Refusal refusal(const ConfigurationFault& fault) const;

    const std::filesystem::path m_file;
    const std::vector<ConfigurationItem> m_items;
    Values m_overrides;
    mutable std::mutex m_mutex;
    Values m_values;
    std::vector<Refusal> m_refused;
};
