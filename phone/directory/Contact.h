// A contact as the store keeps it.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

// Which number is dialled by default, as the directory messages count.
enum class DefaultNumber : int { None = 0, Office = 1, Office2 = 2, Mobile = 3, Private = 4 };

// None for a code that is none.
constexpr DefaultNumber toDefaultNumber(std::int64_t code)
{
    return code >= 0 && code <= static_cast<int>(DefaultNumber::Private) ? static_cast<DefaultNumber>(code)
                                                                         : DefaultNumber::None;
}

struct Contact {
    std::string id; // "" for one that was never stored
    std::string surname;
    std::string firstname;
    std::string office;
    std::string office2;
    std::string mobile;
    std::string privateNumber;
    std::string email;
    std::string company;
    std::string address;
    std::string address2;
    std::string jobFunction;
    std::string picture; // the clip's name
    std::string externalId;
    int group = 0; // slot; 0 for none
    DefaultNumber defaultNumber = DefaultNumber::None;

    bool operator==(const Contact&) const = default;
};

// Every text but the id, in the order in which tables have them.
inline constexpr std::array nTEXT_FIELDS = {
    &Contact::surname,       &Contact::firstname, &Contact::office,     &Contact::office2, &Contact::mobile,
    &Contact::privateNumber, &Contact::email,     &Contact::company,    &Contact::address, &Contact::address2,
    &Contact::jobFunction,   &Contact::picture,   &Contact::externalId,
};

// The greatest lengths in characters (code points); those of the picture in bytes.
namespace contact_limits {
constexpr std::size_t nNAME = 30;
constexpr std::size_t nNUMBER = 50;
constexpr std::size_t nEMAIL = 35;
constexpr std::size_t nCOMPANY = 40;
constexpr std::size_t nADDRESS = 40;
constexpr std::size_t nJOB_FUNCTION = 30;
constexpr std::size_t nPICTURE = 91;
constexpr std::size_t nEXTERNAL_ID = 255;
constexpr std::size_t nGROUP_NAME = 30;
} // namespace contact_limits

// The fields that cards have too, by their names there.
struct CardField {
    const char* name;
    std::string Contact::*text;
    std::size_t limit;
};
inline constexpr std::array nCARD_FIELDS = {
    CardField{"surname", &Contact::surname, contact_limits::nNAME},
    CardField{"firstname", &Contact::firstname, contact_limits::nNAME},
    CardField{"office", &Contact::office, contact_limits::nNUMBER},
    CardField{"office2", &Contact::office2, contact_limits::nNUMBER},
    CardField{"mobile", &Contact::mobile, contact_limits::nNUMBER},
    CardField{"private", &Contact::privateNumber, contact_limits::nNUMBER},
    CardField{"email", &Contact::email, contact_limits::nEMAIL},
    CardField{"company", &Contact::company, contact_limits::nCOMPANY},
    CardField{"address", &Contact::address, contact_limits::nADDRESS},
    CardField{"address2", &Contact::address2, contact_limits::nADDRESS},
    CardField{"jobFunction", &Contact::jobFunction, contact_limits::nJOB_FUNCTION},
};

// A number and what names it as the default one. In the order in which one is chosen by default.
struct NumberField {
    const char* name;
    std::string Contact::*text;
    DefaultNumber number;
};
inline constexpr std::array nNUMBER_FIELDS = {
    NumberField{"office", &Contact::office, DefaultNumber::Office},
    NumberField{"office2", &Contact::office2, DefaultNumber::Office2},
    NumberField{"mobile", &Contact::mobile, DefaultNumber::Mobile},
    NumberField{"private", &Contact::privateNumber, DefaultNumber::Private},
};
