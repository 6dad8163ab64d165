// A card as text that other programs read.

#pragma once

#include <string>

#include "Card.h"

namespace vcard {

// Lines end in CRLF and are folded at 75 bytes, never inside a character.
// Version 2.1 writes what is not ASCII, and what is long, as quoted-printable UTF-8.
std::string writeCard(const Card& card, Version version);

} // namespace vcard
