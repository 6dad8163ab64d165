// The configuration file: TOML 1.0, one key an item.

#pragma once

#include <filesystem>
#include <optional>
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

// Why a text is no configuration, and from which line on; 0 for the file as a whole.
struct ConfigurationFault {
    int line = 0;
    std::string reason;
};

// What a text or file says, or its first fault. A file that does not exist says nothing.
struct ConfigurationLines {
    std::vector<ConfigurationLine> lines;
    std::optional<ConfigurationFault> fault;
};

ConfigurationLines parseConfiguration(const std::string& text);
ConfigurationLines readConfigurationFile(const std::filesystem::path& file);

// Changes or adds one item and leaves every other line as it is. Whole or not at all.
Result<void> writeConfigurationItem(const std::filesystem::path& file, const ConfigurationItem& item,
                                    const std::string& value);
