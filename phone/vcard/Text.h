// Bytes from outside made into text that is safe to keep, to compare and to show.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vcard {

bool isUtf8(std::string_view bytes);

// `bytes` of the named character set as UTF-8; nothing when the name is unknown or the
// bytes are none of that set.
std::optional<std::string> toUtf8(std::string_view bytes, const std::string& charset);

// Text whose character set nobody named: UTF-8 when it can be read as such, else the
// Western set that old exporters use without saying so.
std::string guessUtf8(std::string_view bytes);

// Composed (NFC) UTF-8 without control characters, without marks that turn the reading
// direction around, and with U+FFFD for what is no UTF-8. Tabs and line ends ("\n") stay.
std::string clean(std::string_view text);

// clean() on one line: every run of white space is one blank, none at either end.
std::string oneLine(std::string_view text);

// ASCII letters only; names in cards are ASCII.
std::string upper(std::string_view text);

std::string_view trimmed(std::string_view text);

// Cut at each `separator` that stands outside double quotes.
std::vector<std::string_view> splitUnquoted(std::string_view text, char separator);

// Where a property's value begins: its colon, npos without one. A colon in quotes belongs to
// a parameter.
std::size_t findColon(std::string_view line);

// The parts that are not empty, with `glue` between them.
std::string joinFilled(const std::vector<std::string>& parts, std::string_view glue);

} // namespace vcard
