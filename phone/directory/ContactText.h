// Text from outside made fit to be kept: what goes into the contact store goes through here.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Composed (NFC) text on one line: tabs and line ends become blanks; other control characters,
// marks that turn the reading direction around and noncharacters are left out; bytes that are no
// UTF-8 become the replacement character.
// [any-thread]
std::string cleanText(std::string_view text);

// Whether cleanText() would leave it as it is, but for composition.
// [any-thread]
bool isCleanText(std::string_view text);

// Without blanks at either end.
// [any-thread]
std::string_view trimmedText(std::string_view text);

// The first `characters` characters (code points) at most.
// [any-thread]
std::string_view cutText(std::string_view text, std::size_t characters);
