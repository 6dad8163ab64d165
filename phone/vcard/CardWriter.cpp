#include "CardWriter.h"

#include <algorithm>

#include <glib.h>

#include "Text.h"

namespace vcard {

namespace {

constexpr std::size_t nLINE_BYTES = 75;
constexpr char nLINE_END[] = "\r\n";

const char* versionNumber(Version version)
{
    switch (version) {
    case Version::V21:
        return "2.1";
    case Version::V30:
        return "3.0";
    case Version::V40:
        return "4.0";
    }
    return "";
}

bool startsCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

void appendFolded(std::string& out, std::string_view line)
{
    std::size_t room = nLINE_BYTES;
    while (line.size() > room) {
        auto cut = room;
        while (!startsCharacter(line[cut]))
            --cut;
        out.append(line.substr(0, cut)).append(nLINE_END).append(" ");
        line.remove_prefix(cut);
        room = nLINE_BYTES - 1;
    }
    out.append(line).append(nLINE_END);
}

std::string parameterValue(const std::string& value)
{
    std::string plain = value;
    std::erase_if(plain, [](char c) { return c == '"' || c == '\n'; });
    return plain.find_first_of(",;:") == std::string::npos ? plain : '"' + plain + '"';
}

std::string headText(const Property& property, Version version)
{
    std::string head = property.group.empty() ? property.name : property.group + "." + property.name;
    for (const auto& parameter : property.parameters) {
        const bool bareTypes = version == Version::V21 && upper(parameter.name) == "TYPE";
        if (bareTypes) {
            for (const auto& type : property.types())
                head += ";" + parameterValue(type);
            continue;
        }
        head += ";" + parameter.name + "=";
        for (const auto& value : parameter.values) {
            if (&value != &parameter.values.front())
                head += ',';
            head += parameterValue(value);
        }
    }
    return head;
}

// Version 4.0 says PREF=1 where the older ones say TYPE=pref.
void translatePreference(Property& property, Version version)
{
    if (version == Version::V40 && property.hasType("PREF")) {
        property.removeType("PREF");
        property.setParameter("PREF", {"1"});
    } else if (version != Version::V40 && property.parameterText("PREF") == "1") {
        auto types = property.types();
        types.push_back("PREF");
        property.removeParameter("PREF");
        property.setParameter("TYPE", std::move(types));
    }
}

// Older versions know a telephone number as text; an address with parameters stays one.
void translateNumberUri(Property& property)
{
    const bool uri = property.is("TEL") && property.parameterText("VALUE") == "URI";
    if (!uri || upper(property.value.substr(0, 4)) != "TEL:" || property.components.size() > 1)
        return;
    property.removeParameter("VALUE");
    property.setText(property.text().substr(4));
}

void translateInlineData(Property& property)
{
    const auto types = property.types();
    const auto subtype = types.empty() ? "" : types.front();
    std::string kind = "application/octet-stream";
    if (property.is("PHOTO") || property.is("LOGO"))
        kind = subtype.empty() ? pictureType(property.value) : "image/" + subtype;
    else if (property.is("SOUND") && !subtype.empty())
        kind = "audio/" + subtype;
    std::transform(kind.begin(), kind.end(), kind.begin(), g_ascii_tolower);

    property.removeParameter("ENCODING");
    property.removeParameter("TYPE");
    property.value = "data:" + kind + ";base64," + property.value;
}

bool isPlainAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
}

// Version 2.1 escapes separators only; line ends are real.
std::string unescapedFor21(const Property& property)
{
    const bool commaSeparates = property.is("CATEGORIES");
    std::string text;
    for (std::size_t i = 0; i < property.value.size(); ++i) {
        const char c = property.value[i];
        const char escape = c == '\\' && i + 1 < property.value.size() ? property.value[i + 1] : '\0';
        if (escape == 'n' || escape == 'N')
            text += "\r\n";
        else if (escape == ',' && !commaSeparates)
            text += ',';
        else if (escape != '\0')
            text.append(1, c).append(1, escape);
        else
            text += c;
        i += escape != '\0' ? 1 : 0;
    }
    return text;
}

bool isEscapable(char c)
{
    return c == '\\' || c == ';' || c == ',';
}

void appendQuotedPrintable(std::string& out, std::string_view head, std::string_view text)
{
    constexpr char hex[] = "0123456789ABCDEF";
    constexpr std::size_t codeBytes = 3;
    std::string line = std::string(head) + ";ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:";
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (startsCharacter(text[i]) && line.size() + 4 * codeBytes + 1 > nLINE_BYTES) {
            out.append(line).append("=").append(nLINE_END);
            line.clear();
        }
        const auto c = static_cast<unsigned char>(text[i]);
        const bool escape = c == '\\' && i + 1 < text.size() && isEscapable(text[i + 1]);
        const bool plain = c >= 0x20 && c < 0x7F && c != '=' && !(c == ' ' && i + 1 == text.size());
        if (escape)
            line.append(1, '\\').append(1, text[++i]);
        else if (plain && c != '\\')
            line += static_cast<char>(c);
        else
            line.append("=").append(1, hex[c >> 4]).append(1, hex[c & 15]);
    }
    out.append(line).append(nLINE_END);
}

void append21(std::string& out, Property property)
{
    if (property.isBase64()) {
        property.setParameter("ENCODING", {"BASE64"});
        // A blank line ends the data.
        appendFolded(out, headText(property, Version::V21) + ":" + property.value);
        out += nLINE_END;
        return;
    }
    const auto head = headText(property, Version::V21);
    const auto text = unescapedFor21(property);
    if (isPlainAscii(text) && head.size() + 1 + text.size() <= nLINE_BYTES)
        out.append(head).append(":").append(text).append(nLINE_END);
    else
        appendQuotedPrintable(out, head, text);
}

void appendProperty(std::string& out, Property property, Version version)
{
    translatePreference(property, version);
    if (version != Version::V40)
        translateNumberUri(property);
    else if (property.isBase64())
        translateInlineData(property);

    if (version == Version::V21)
        append21(out, std::move(property));
    else
        appendFolded(out, headText(property, version) + ":" + property.value);
}

} // namespace

std::string writeCard(const Card& card, Version version)
{
    std::string out =
        std::string("BEGIN:VCARD") + nLINE_END + "VERSION:" + versionNumber(version) + nLINE_END;
    for (const auto& property : card.properties)
        appendProperty(out, property, version);
    return out + "END:VCARD" + nLINE_END;
}

} // namespace vcard
