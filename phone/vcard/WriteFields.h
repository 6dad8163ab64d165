// Writes a record of the phone into a card.

#pragma once

#include "Card.h"
#include "ContactRecord.h"

namespace vcard {

// What the card says already stays as it is written; a field that differs changes its
// property's value and keeps the parameters; an empty field removes its property.
// readFields() of the result gives the record again.
void writeFields(const ContactRecord& record, Card& card);

} // namespace vcard
