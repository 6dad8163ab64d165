// The configuration file: TOML 1.0, one key an item.

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "app/Result.h"
#include "system/ConfigurationItems.h"

// A value as it stands in the file, before anybody looked whether it is right.
struct ConfigurationLine {
    std::string name;
    int line = 0;
    ConfigurationItem::Type type = ConfigurationItem::Type::Text; // never Choice
    std::string value;
    bool understood = true; // false: a date, a table or the like, which no item is
};

// The lines of a text; an error names the line that is no TOML.
Result<std::vector<ConfigurationLine>> parseConfiguration(const std::string& text);

// The same of a file; one that does not exist has no lines.
Result<std::vector<ConfigurationLine>> readConfigurationFile(const std::filesystem::path& file);

// Changes or adds one item and leaves every other line as it is. Whole or not at all.
Result<void> writeConfigurationItem(const std::filesystem::path& file, const ConfigurationItem& item,
                                    const std::string& value);
