#include "web/KeyMessage.h"

#include <nlohmann/json.hpp>

std::optional<KeyMessage> readKeyMessage(std::string_view text)
{
    const auto json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_object())
        return std::nullopt;
    const auto number = json.find("n");
    const auto key = json.find("key");
    if (number == json.end() || !number->is_number_unsigned() || key == json.end() || !key->is_string())
        return std::nullopt;
    return KeyMessage{number->get<std::uint64_t>(), key->get<std::string>()};
}
