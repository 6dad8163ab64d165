// Every configuration item of the telephone: what it is, and what it may be.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/Result.h"

struct ConfigurationItem {
    enum class Type {
        Text,   // any line of text
        Number, // a whole number from `least` to `most`
        YesNo,  // "true" or "false"
        Choice, // one of `choices`
        List,   // texts; its value has a comma between them
    };

    std::string name;
    Type type = Type::Text;
    std::string unit; // of a number, or ""
    int least = 0;
    int most = 0;
    std::vector<std::string> choices;
    std::string byDefault;
    std::string help; // a sentence

    // What it may be, in words: "a number from 0 to 60".
    std::string range() const;
    // The value as it is kept, or why it is refused.
    Result<std::string> accept(const std::string& text) const;
};

// In the order in which they are listed. `language` is that of new telephones.
std::vector<ConfigurationItem> configurationItems(const std::string& language);

// "de" for "de_DE.UTF-8"; "en" for a text that names no language, such as "C".
std::string languageOfLocale(std::string_view locale);
