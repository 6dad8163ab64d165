// A message of the page: a key that was pressed, and the number that its acknowledgement carries.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct KeyMessage {
    std::uint64_t number = 0;
    std::string key;
};

// Nothing for text that is no such message.
std::optional<KeyMessage> readKeyMessage(std::string_view text);
