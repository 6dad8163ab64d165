// The characters that a digit key enters by repeated pressing.
//
// Plain letters as printed on the keys (ITU-T E.161) come first, then Greek or Cyrillic ones,
// then the accented letters of the language on the key of their base letter, last the digit.
// The table is keypad-letters.txt, written by tools/keypad_letters.cpp.

#pragma once

#include <string>
#include <string_view>
#include <vector>

// Lower-case characters of `key` ('0' to '9') in UTF-8, in the order of the presses; none for
// any other key. `language` is a code as "de" or "de_AT"; an unknown one types as English.
// [any-thread]
std::vector<std::string> keypadLetters(std::string_view language, char key);
