// Text from outside made fit to be kept: what goes into the contact store goes through here.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Contact.h"

// Composed (NFC) text on one line: tabs and line ends become blanks; other control characters,
// marks that turn the reading direction around and noncharacters are left out; bytes that are no
// UTF-8 become the replacement character.
// [any-thread]
std::string cleanText(std::string_view text);

// Whether cleanText() would leave it as it is, but for composition.
// [any-thread]
bool isCleanText(std::string_view text);

// Without blanks at either end, those of any script.
// [any-thread]
std::string_view trimmedText(std::string_view text);

// The first `characters` characters (code points) at most; what is seen as one character, a letter
// with its accents say, stays whole or goes.
// [any-thread]
std::string_view cutText(std::string_view text, std::size_t characters);

// Clean text of at most `characters` characters.
// [any-thread]
std::string fitText(std::string_view text, std::size_t characters);

// Makes all texts of a contact but its id clean, and none longer than its limit.
// [any-thread]
void makeFit(Contact& contact);

// Whether a contact can have this id: ids stand in messages without being escaped, and in lists
// between tabs.
// [any-thread]
bool isContactId(std::string_view text);
