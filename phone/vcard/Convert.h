// The two verbs of the program, on streams.

#pragma once

#include <istream>
#include <ostream>

#include "Card.h"

namespace vcard {

enum class Outcome { Done, Failed, NotACardFile };

// Keeps the library's warnings about odd cards off standard error, for the whole program:
// what matters of them is reported card by card.
void silenceLibrary();

// Writes one line of JSON for each card of `in`, in their order:
//   {"line", "end", "card", "surname", ..., "groups", "photo", "notShown", "problems"}, or
//   {"line", "end", "invalid": why the phone cannot use the card, "problems"}
// "line" is where the card begins, "end" how many bytes of the input have been read.
Outcome parseCards(std::istream& in, std::ostream& out, std::ostream& errors, const Limits& limits = {});

// Writes one card for each line of JSON: the line's fields written into its "card", or into
// a new one without it. A line that is no such record is named on `errors` and left out.
Outcome writeCards(std::istream& in, std::ostream& out, std::ostream& errors, Version version);

} // namespace vcard
