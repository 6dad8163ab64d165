#include "ContactText.h"

#include <algorithm>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace {

constexpr UChar32 nREPLACEMENT = 0xFFFD;
constexpr UChar32 nBYTE_ORDER_MARK = 0xFEFF;
constexpr std::size_t nGREATEST_ID = 64;
// Of a text that is too long no more is looked at: another program may have written megabytes.
constexpr std::size_t nMOST_BYTES = 4096;

// Looks at every byte, which is faster for names than to stop early.
bool isPlainAscii(std::string_view text)
{
    bool plain = true;
    for (const char character : text)
        plain &= character >= ' ' && character < 0x7f;
    return plain;
}

bool isLineBreakOrTab(UChar32 character)
{
    return character == '\t' || character == '\n' || character == '\r' || character == 0x85 ||
           character == 0x2028 || character == 0x2029;
}

bool turnsDirection(UChar32 character)
{
    return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

bool isControl(UChar32 character)
{
    return character < 0x20 || (character >= 0x7f && character < 0xa0);
}

bool isUnwanted(UChar32 character)
{
    return isControl(character) || turnsDirection(character) || U_IS_UNICODE_NONCHAR(character) ||
           character == nBYTE_ORDER_MARK;
}

// The next character; negative for bytes that are no UTF-8.
UChar32 next(std::string_view text, int32_t& position)
{
    UChar32 character = 0;
    U8_NEXT(text.data(), position, static_cast<int32_t>(text.size()), character);
    return character;
}

UChar32 previous(std::string_view text, int32_t& position)
{
    UChar32 character = 0;
    U8_PREV(text.data(), 0, position, character);
    return character;
}

void append(std::string& text, UChar32 character)
{
    char bytes[U8_MAX_LENGTH];
    int32_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, character);
    text.append(bytes, static_cast<std::size_t>(length));
}

std::string composed(const std::string& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
    std::string result;
    icu::StringByteSink<std::string> sink(&result, static_cast<int32_t>(text.size()));
    normalizer->normalizeUTF8(0, text, sink, nullptr, status);
    return U_SUCCESS(status) ? result : text;
}

struct TextCloser {
    void operator()(UText* text) const { utext_close(text); }
};

// The last place up to `position` where one visible character ends. A heap of accents that is longer
// than all that may stay is cut all the same.
int32_t visibleBoundary(std::string_view text, int32_t position)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    int32_t next = position;
    U8_FWD_1(text.data(), next, static_cast<int32_t>(text.size()));
    const std::unique_ptr<UText, TextCloser> opened(utext_openUTF8(nullptr, text.data(), next, &status));
    if (U_FAILURE(status))
        return position;
    breaks->setText(opened.get(), status);
    const int32_t boundary = breaks->isBoundary(position) ? position : breaks->preceding(position);
    return U_SUCCESS(status) && boundary > 0 ? boundary : position;
}

void fit(std::string& text, std::size_t characters)
{
    if (text.size() > characters || !isPlainAscii(text))
        text = fitText(text, characters);
}

} // namespace

std::string cleanText(std::string_view text)
{
    if (isPlainAscii(text))
        return std::string(text);
    std::string result;
    result.reserve(text.size());
    for (int32_t position = 0; position < static_cast<int32_t>(text.size());) {
        const UChar32 character = next(text, position);
        if (character < 0)
            append(result, nREPLACEMENT);
        else if (isLineBreakOrTab(character))
            result += ' ';
        else if (!isUnwanted(character))
            append(result, character);
    }
    return isPlainAscii(result) ? result : composed(result);
}

bool isCleanText(std::string_view text)
{
    if (isPlainAscii(text))
        return true;
    for (int32_t position = 0; position < static_cast<int32_t>(text.size());) {
        const UChar32 character = next(text, position);
        if (character < 0 || isLineBreakOrTab(character) || isUnwanted(character))
            return false;
    }
    return true;
}

std::string_view trimmedText(std::string_view text)
{
    const auto length = static_cast<int32_t>(text.size());
    int32_t begin = 0;
    for (int32_t position = 0; position < length && u_isUWhiteSpace(next(text, position));)
        begin = position;
    int32_t end = length;
    for (int32_t position = length; position > begin && u_isUWhiteSpace(previous(text, position));)
        end = position;
    return text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

std::string_view cutText(std::string_view text, std::size_t characters)
{
    int32_t position = 0;
    const auto length = static_cast<int32_t>(text.size());
    for (; characters > 0 && position < length; --characters)
        U8_FWD_1(text.data(), position, length);
    if (position < length)
        position = visibleBoundary(text, position);
    return text.substr(0, static_cast<std::size_t>(position));
}

std::string fitText(std::string_view text, std::size_t characters)
{
    return std::string(cutText(cleanText(text.substr(0, nMOST_BYTES)), characters));
}

void makeFit(Contact& contact)
{
    for (const auto& field : nCARD_FIELDS)
        fit(contact.*field.text, field.limit);
    fit(contact.externalId, contact_limits::nEXTERNAL_ID);
    std::size_t characters = contact_limits::nPICTURE;
    fit(contact.picture, characters);
    while (contact.picture.size() > contact_limits::nPICTURE)
        contact.picture = std::string(cutText(contact.picture, --characters));
}

bool isContactId(std::string_view text)
{
    return !text.empty() && text.size() <= nGREATEST_ID &&
           std::all_of(text.begin(), text.end(), [](char character) {
               return character > ' ' && character < 0x7f &&
                      std::string_view("<>&\"'").find(character) == std::string_view::npos;
           });
}
