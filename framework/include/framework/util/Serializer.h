// Pairs of strings in one string: "name=value;name=value", with `\`, `=` and `;` escaped by `\`.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include <framework/Export.h>

class FRAMEWORK_API Serializer {
public:
    using Pairs = std::vector<std::pair<std::string, std::string>>;

    // [any-thread]
    static std::string serialize(const Pairs& pairs);

    // Appends the pairs to `pairs`. False for text that serialize() does not write; nothing is
    // appended then.
    // [any-thread]
    static bool deserialize(const std::string& text, Pairs& pairs);
};
