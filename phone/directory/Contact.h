// A contact as the store keeps it.

#pragma once

#include <cstddef>
#include <string>

// Which number is dialled by default, as the directory messages count.
enum class DefaultNumber : int { None = 0, Office = 1, Office2 = 2, Mobile = 3, Private = 4 };

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

// The greatest lengths in characters; the picture's in bytes.
namespace contact_limits {
constexpr std::size_t nNAME = 30;
constexpr std::size_t nNUMBER = 50;
constexpr std::size_t nEMAIL = 35;
constexpr std::size_t nCOMPANY = 40;
constexpr std::size_t nADDRESS = 40;
constexpr std::size_t nJOB_FUNCTION = 30;
constexpr std::size_t nPICTURE = 91;
constexpr std::size_t nGROUP_NAME = 30;
} // namespace contact_limits
