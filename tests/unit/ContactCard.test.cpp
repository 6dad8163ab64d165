#include "ContactCard.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "PhonebookFullEntry.h"

namespace {

PhonebookFullEntry named(const std::string& surname, const std::string& firstname)
{
    PhonebookFullEntry entry;
    entry.setBlank();
    entry.setSurname(surname);
    entry.setFirstname(firstname);
    return entry;
}

} // namespace

TEST(ContactCard, HoldsEveryFieldOfTheContact)
{
    auto entry = named("Miller", "Jane");
    entry.setOffice("+49301");
    entry.setOffice2("+49302");
    entry.setMobile("+49170");
    entry.setPrivate("+49303");
    entry.setDefaultNumber("Mobile");
    entry.setEmail("jane@example.org");
    entry.setCompany("Acme");
    entry.setJobFunction("Engineer");
    entry.setAddress("1 Main Street");
    entry.setAddress2("Springfield");
    entry.setPicture("jane.png");
    EXPECT_EQ(ContactCard::vCard(entry), "BEGIN:VCARD\r\n"
                                         "VERSION:3.0\r\n"
                                         "N:Miller;Jane;;;\r\n"
                                         "FN:Jane Miller\r\n"
                                         "TEL;TYPE=WORK,VOICE:+49301\r\n"
                                         "TEL;TYPE=WORK,VOICE:+49302\r\n"
                                         "TEL;TYPE=CELL,VOICE,PREF:+49170\r\n"
                                         "TEL;TYPE=HOME,VOICE:+49303\r\n"
                                         "EMAIL;TYPE=INTERNET:jane@example.org\r\n"
                                         "ORG:Acme\r\n"
                                         "TITLE:Engineer\r\n"
                                         "ADR;TYPE=WORK:;;1 Main Street;Springfield;;;\r\n"
                                         "END:VCARD\r\n");
}

TEST(ContactCard, LeavesEmptyFieldsOut)
{
    EXPECT_EQ(ContactCard::vCard(named("", "Jane")), "BEGIN:VCARD\r\n"
                                                     "VERSION:3.0\r\n"
                                                     "N:;Jane;;;\r\n"
                                                     "FN:Jane\r\n"
                                                     "END:VCARD\r\n");
}

TEST(ContactCard, EscapesWhatHasAMeaningInACard)
{
    auto entry = named("Miller; Sons, Ltd", "C:\\");
    entry.setAddress("1 Main\r\nStreet");
    const auto card = ContactCard::vCard(entry);
    EXPECT_NE(card.find("N:Miller\\; Sons\\, Ltd;C:\\\\;;;\r\n"), std::string::npos) << card;
    EXPECT_NE(card.find(":;;1 Main\\nStreet;;;;\r\n"), std::string::npos) << card;
}

TEST(ContactCard, FoldsLongLinesBetweenCharacters)
{
    auto entry = named("M", "");
    std::string company;
    for (int i = 0; i < 40; ++i)
        company += "\u00fc";
    entry.setCompany(company);
    const auto card = ContactCard::vCard(entry);
    std::istringstream lines(card);
    std::string whole;
    for (std::string line; std::getline(lines, line);) {
        line.pop_back(); // '\r'
        EXPECT_LE(line.size(), 75u);
        whole += line.starts_with(' ') ? line.substr(1) : "|" + line;
        if (line.starts_with(' ')) {
            EXPECT_NE(static_cast<unsigned char>(line[1]) & 0xC0, 0x80) << "a character was cut";
        }
    }
    EXPECT_NE(whole.find("|ORG:" + company + "|"), std::string::npos) << card;
}

TEST(ContactCard, IsNamedAfterItsContact)
{
    EXPECT_EQ(ContactCard::fileName(named("Miller", "Jane")), "Jane Miller.vcf");
    EXPECT_EQ(ContactCard::fileName(named("a/b\\c\nd", "")), "a_b_c_d.vcf");
}
