// A telephone number as people write it, taken apart.
//
// Blanks, hyphens, dashes, slashes, dots and parentheses part its digits and mean nothing, nor do the
// marks of writing direction that copying from a page brings along. Full-width and both kinds of
// Arabic digits are digits.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

struct WrittenNumber {
    enum class Kind {
        Other,   // a name, an address, nothing: no number
        Digits,  // "030 1234567"
        Letters, // it ends in capitals, which stand for their keys: "0800 FLOWERS"
        Code,    // with "*" or "#": "*21*4711#"
    };
    static constexpr std::size_t NONE = std::string::npos;

    // Takes "tel:" URIs too (RFC 3966), with a number in full or with a country as context.
    static WrittenNumber read(std::string_view text);

    Kind kind = Kind::Other;
    bool international = false; // it begins with "+"
    std::string digits;         // without "+"; those of the letters' keys; of a code with its "*" and "#"
    // How many digits stand before the first separator; 0 if there is none after the first digit.
    std::size_t firstGroup = 0;
    // Where in the digits the 0 of "+49 (0)30" is, or NONE.
    std::size_t zeroInParentheses = NONE;
    // The country's code of a "tel:" URI's context, or "".
    std::string context;
};
