// UTF-8 text as users count it.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace DisplayAPI {

// Valid UTF-8 (U+FFFD for what is not) with blanks for control characters and line breaks.
std::string sanitised(std::string text);

// The composed form, so that what is typed compares equal to what is stored.
std::string composed(const std::string& text);

// In code points.
int characters(std::string_view text);

// Where the letter before `position` begins, and where the one behind it ends, in bytes. A letter
// includes its marks.
std::size_t letterBefore(const std::string& text, std::size_t position);
std::size_t letterAfter(const std::string& text, std::size_t position);

// Whether it is one character of a number that can be dialled: a digit, `*`, `#` or `+`.
bool isDialled(const std::string& character);

} // namespace DisplayAPI
