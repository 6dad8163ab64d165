// What a directory server says and hears, byte by byte (RFC 4511, X.690).

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace ldap_bytes {

enum Tag : std::uint8_t {
    Integer = 0x02,
    OctetString = 0x04,
    Enumerated = 0x0A,
    Sequence = 0x30,
    Set = 0x31,
    BindRequest = 0x60,
    BindResponse = 0x61,
    SearchRequest = 0x63,
    SearchEntry = 0x64,
    SearchDone = 0x65,
    SearchReference = 0x73,
    ExtendedRequest = 0x77,
    ExtendedResponse = 0x78,
    Referral = 0xA3,
};

using Attribute = std::pair<std::string, std::vector<std::string>>;

// A length as four bytes, whether they are needed or not: "84 80 00 00 00" says 2^31.
inline std::string longLength(std::uint32_t length)
{
    std::string bytes = "\x84";
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(length >> shift & 0xFF);
    return bytes;
}

inline std::string element(std::uint8_t tag, const std::string& content)
{
    const auto size = content.size();
    return static_cast<char>(tag) +
           (size < 0x80 ? std::string(1, static_cast<char>(size))
                        : longLength(static_cast<std::uint32_t>(size))) +
           content;
}

inline std::string number(std::uint8_t tag, int value)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
    return element(tag, bytes);
}

inline std::string message(int id, const std::string& operation)
{
    return element(Sequence, number(Integer, id) + operation);
}

// The answer that ends an operation.
inline std::string result(int id, Tag answer, int code, const std::string& words = "",
                          const std::string& more = "")
{
    return message(id, element(answer, number(Enumerated, code) + element(OctetString, "") +
                                           element(OctetString, words) + more));
}

inline std::string entry(int id, const std::string& name, const std::vector<Attribute>& attributes)
{
    std::string list;
    for (const auto& [attribute, values] : attributes) {
        std::string set;
        for (const auto& value : values)
            set += element(OctetString, value);
        list += element(Sequence, element(OctetString, attribute) + element(Set, set));
    }
    return message(id, element(SearchEntry, element(OctetString, name) + element(Sequence, list)));
}

} // namespace ldap_bytes
