#include "ContactText.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/utf8.h>

namespace {

constexpr UChar32 nREPLACEMENT = 0xFFFD;
constexpr UChar32 nBYTE_ORDER_MARK = 0xFEFF;

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
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view cutText(std::string_view text, std::size_t characters)
{
    int32_t position = 0;
    const auto length = static_cast<int32_t>(text.size());
    for (; characters > 0 && position < length; --characters)
        U8_FWD_1(text.data(), position, length);
    return text.substr(0, static_cast<std::size_t>(position));
}
