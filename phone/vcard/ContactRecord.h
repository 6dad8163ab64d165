// What the phone keeps of a card, and its form as one line of JSON.

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace vcard {

enum class Field : std::size_t {
    Surname,
    Firstname,
    Office,
    Office2,
    Mobile,
    Private,
    Email,
    Company,
    Address,
    Address2,
    JobFunction,
    Uid,
    Count
};

constexpr std::size_t nFIELDS = static_cast<std::size_t>(Field::Count);
constexpr std::array<Field, 4> nNUMBERS{Field::Office, Field::Office2, Field::Mobile, Field::Private};

// The field's name in JSON.
const char* fieldName(Field field);

struct Photo {
    std::string mime;
    std::string base64;

    bool operator==(const Photo&) const = default;
};

struct ContactRecord {
    std::array<std::string, nFIELDS> texts;
    std::vector<std::string> groups;
    std::optional<Photo> photo;
    std::optional<Field> preferred; // the number to dial first

    std::string& operator[](Field field) { return texts[static_cast<std::size_t>(field)]; }
    const std::string& operator[](Field field) const { return texts[static_cast<std::size_t>(field)]; }

    bool operator==(const ContactRecord&) const = default;
};

// Writes the fields into the JSON object.
void toJson(const ContactRecord& record, nlohmann::ordered_json& object);

// Takes over the fields that the object has; the others stay as they are.
// Throws nlohmann::json::exception when one is of the wrong type.
void updateFromJson(ContactRecord& record, const nlohmann::ordered_json& object);

} // namespace vcard
