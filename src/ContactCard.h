// A contact as a vCard (RFC 2426, version 3.0), for other devices.

#pragma once

#include <string>

class PhonebookFullEntry;

class ContactCard {
public:
    // The whole card, lines folded and ended by CRLF; empty fields are left out. The picture stays
    // here: its name means nothing elsewhere.
    // [any-thread]
    static std::string vCard(const PhonebookFullEntry& entry);

    // The card's file name: the contact's name without what a file name must not hold, and ".vcf".
    // [any-thread]
    static std::string fileName(const PhonebookFullEntry& entry);
};
