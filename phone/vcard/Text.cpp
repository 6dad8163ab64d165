#include "Text.h"

#include <algorithm>
#include <memory>

#include <glib.h>

namespace vcard {

namespace {

struct GFree {
    void operator()(char* text) const { g_free(text); }
};
using GText = std::unique_ptr<char, GFree>;

constexpr std::string_view nREPLACEMENT = "\xEF\xBF\xBD";
constexpr gunichar nLINE_SEPARATOR = 0x2028;
constexpr gunichar nPARAGRAPH_SEPARATOR = 0x2029;

bool turnsDirection(gunichar character)
{
    return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

bool isInvisible(gunichar character)
{
    constexpr gunichar byteOrderMark = 0xFEFF;
    const bool noncharacter = (character & 0xFFFE) == 0xFFFE || (character >= 0xFDD0 && character <= 0xFDEF);
    return g_unichar_type(character) == G_UNICODE_CONTROL || character == byteOrderMark || noncharacter ||
           turnsDirection(character);
}

void appendClean(std::string& out, gunichar character)
{
    if (character == nLINE_SEPARATOR || character == nPARAGRAPH_SEPARATOR)
        character = '\n';
    if (character != '\t' && character != '\n' && isInvisible(character))
        return;
    char bytes[6];
    out.append(bytes, static_cast<std::size_t>(g_unichar_to_utf8(character, bytes)));
}

bool isPlainAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return c >= 0x20 && c < 0x7F; });
}

} // namespace

bool isUtf8(std::string_view bytes)
{
    return g_utf8_validate_len(bytes.data(), bytes.size(), nullptr);
}

std::optional<std::string> toUtf8(std::string_view bytes, const std::string& charset)
{
    gsize written = 0;
    const GText text(g_convert(bytes.data(), static_cast<gssize>(bytes.size()), "UTF-8", charset.c_str(),
                               nullptr, &written, nullptr));
    if (!text)
        return std::nullopt;
    return std::string(text.get(), written);
}

std::string guessUtf8(std::string_view bytes)
{
    if (isUtf8(bytes))
        return std::string(bytes);
    if (auto western = toUtf8(bytes, "WINDOWS-1252"))
        return *western;
    return toUtf8(bytes, "ISO-8859-1").value_or("");
}

std::string clean(std::string_view text)
{
    if (isPlainAscii(text))
        return std::string(text);
    std::string kept;
    kept.reserve(text.size());
    while (!text.empty()) {
        const gunichar character = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
        if (character >= 0x110000) {
            if (text.front() != '\0')
                kept += nREPLACEMENT;
            text.remove_prefix(1);
            continue;
        }
        const bool lineEnd = text.front() == '\r';
        if (!lineEnd)
            appendClean(kept, character);
        else if (text.size() < 2 || text[1] != '\n')
            kept += '\n';
        text.remove_prefix(static_cast<std::size_t>(g_utf8_skip[static_cast<unsigned char>(text.front())]));
    }
    const GText composed(g_utf8_normalize(kept.data(), static_cast<gssize>(kept.size()), G_NORMALIZE_NFC));
    return composed ? composed.get() : kept;
}

std::string oneLine(std::string_view text)
{
    constexpr std::string_view noBreakSpace = "\xC2\xA0";
    std::string cleaned = clean(text);
    for (auto at = cleaned.find(noBreakSpace); at != std::string::npos; at = cleaned.find(noBreakSpace, at))
        cleaned.replace(at, noBreakSpace.size(), " ");

    std::string line;
    for (const char c : cleaned) {
        const bool blank = c == ' ' || c == '\t' || c == '\n';
        if (!blank)
            line += c;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    if (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

std::string upper(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), g_ascii_toupper);
    return result;
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string_view> splitUnquoted(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    bool quoted = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '"')
            quoted = !quoted;
        if (text[at] != separator || quoted)
            continue;
        parts.push_back(text.substr(start, at - start));
        start = at + 1;
    }
    parts.push_back(text.substr(start));
    return parts;
}

std::size_t findColon(std::string_view line)
{
    const auto head = splitUnquoted(line, ':').front();
    return head.size() < line.size() ? head.size() : line.find(':');
}

std::string joinFilled(const std::vector<std::string>& parts, std::string_view glue)
{
    std::string joined;
    for (const auto& part : parts) {
        if (part.empty())
            continue;
        if (!joined.empty())
            joined += glue;
        joined += part;
    }
    return joined;
}

} // namespace vcard
