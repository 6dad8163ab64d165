// Which property of a card is which field of the phone.
//
// A card knows any number of telephones, addresses and pictures, the phone a few named
// fields. An office number is the first that is for work, the second office number the
// second, and so on; a number without a place of its own takes a free one. Fax machines
// and pagers are dialled only when a card has nothing else.

#pragma once

#include <map>
#include <string>
#include <vector>

#include "Card.h"
#include "ContactRecord.h"

namespace vcard {

// A property with this parameter is the named field, whatever else it says; with the value
// "NONE" it is no field. Written where the usual rules would read a record differently.
inline constexpr char nFIELD_PARAMETER[] = "X-DESKBOOK-FIELD";

struct CardReading {
    ContactRecord record;
    std::map<Field, std::size_t> sources; // where in the card's properties a field stands
    std::optional<std::size_t> photoSource;
    std::vector<std::string> notShown; // "TEL (fax): +49 30 23125 9": kept, but the phone has no field for it
    std::vector<std::string> problems; // what was read differently from how it is written
};

CardReading readFields(const Card& card);

bool isGroupList(const Property& property);

} // namespace vcard
