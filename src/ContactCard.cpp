#include "ContactCard.h"

#include <algorithm>
#include <initializer_list>

#include "PhonebookFullEntry.h"
#include "PhonebookLog.h"

namespace {

constexpr char nSOURCE[] = "./src/ContactCard";

// In bytes, without the line break (RFC 2426 2.6).
constexpr std::size_t nLINE_LENGTH = 75;

std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\r')
            continue;
        if (c == '\\' || c == ';' || c == ',')
            result += '\\';
        if (c == '\n')
            result += "\\n";
        else
            result += c;
    }
    return result;
}

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::string folded(const std::string& line)
{
    std::string result;
    std::size_t start = 0;
    std::size_t room = nLINE_LENGTH;
    while (line.size() - start > room) {
        auto end = start + room;
        while (end > start + 1 && continuesCharacter(line[end]))
            --end;
        result += line.substr(start, end - start) + "\r\n ";
        start = end;
        room = nLINE_LENGTH - 1; // the blank that marks a continued line counts
    }
    return result + line.substr(start) + "\r\n";
}

class Writer {
public:
    // A property with one value, or with its components; left out when all are empty.
    void add(const std::string& property, std::initializer_list<std::string> components)
    {
        if (std::all_of(components.begin(), components.end(), [](const auto& text) { return text.empty(); }))
            return;
        std::string line = property;
        char separator = ':';
        for (const auto& component : components) {
            line += separator + escaped(component);
            separator = ';';
        }
        m_text += folded(line);
    }

    void addNumber(const std::string& types, const std::string& number, bool preferred)
    {
        add("TEL;TYPE=" + types + (preferred ? ",PREF" : ""), {number});
    }

    const std::string& text() const { return m_text; }

private:
    std::string m_text;
};

std::string wholeName(const PhonebookFullEntry& entry)
{
    return entry.getDisplayName(displayMode::FirstnameSurname, displayQualifier::None);
}

} // namespace

std::string ContactCard::vCard(const PhonebookFullEntry& entry)
{
    PB_TRACE("ContactCard::vCard()");
    const auto& preferred = entry.getDefaultNumber();
    Writer card;
    card.add("BEGIN", {"VCARD"});
    card.add("VERSION", {"3.0"});
    card.add("N", {entry.getSurname(), entry.getFirstname(), "", "", ""});
    card.add("FN", {wholeName(entry)});
    card.addNumber("WORK,VOICE", entry.getOffice(), preferred == "Office");
    card.addNumber("WORK,VOICE", entry.getOffice2(), preferred == "Office2");
    card.addNumber("CELL,VOICE", entry.getMobile(), preferred == "Mobile");
    card.addNumber("HOME,VOICE", entry.getPrivate(), preferred == "Private");
    card.add("EMAIL;TYPE=INTERNET", {entry.getEmail()});
    card.add("ORG", {entry.getCompany()});
    card.add("TITLE", {entry.getJobFunction()});
    card.add("ADR;TYPE=WORK", {"", "", entry.getAddress(), entry.getAddress2(), "", "", ""});
    card.add("END", {"VCARD"});
    return card.text();
}

std::string ContactCard::fileName(const PhonebookFullEntry& entry)
{
    PB_TRACE("ContactCard::fileName()");
    auto name = wholeName(entry);
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return c == '/' || c == '\\' || (static_cast<unsigned char>(c) < 0x20) || c == 0x7F; },
        '_');
    return name + ".vcf";
}
