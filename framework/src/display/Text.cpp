#include "Text.h"

#include <algorithm>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace DisplayAPI {

namespace {

constexpr UChar32 REPLACEMENT = 0xFFFD;

bool isPrintableAscii(const std::string& text)
{
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c < '\x7f'; });
}

bool isBlankedOut(UChar32 c)
{
    const auto mask = U_GET_GC_MASK(c);
    return (mask & (U_GC_CC_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK)) != 0;
}

void append(std::string& text, UChar32 c)
{
    char bytes[U8_MAX_LENGTH];
    int32_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, c);
    text.append(bytes, static_cast<std::size_t>(length));
}

// Walks the letters of a text, marks included.
class Letters {
public:
    explicit Letters(const std::string& text)
    {
        auto status = U_ZERO_ERROR;
        m_iterator.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        m_text = utext_openUTF8(m_text, text.data(), static_cast<int64_t>(text.size()), &status);
        if (U_SUCCESS(status))
            m_iterator->setText(m_text, status);
        m_usable = U_SUCCESS(status);
    }
    ~Letters() { utext_close(m_text); }

    Letters(const Letters&) = delete;
    Letters& operator=(const Letters&) = delete;

    // -1 where ICU's data are missing or the text ends.
    int32_t before(std::size_t position) { return m_usable ? m_iterator->preceding(int32_t(position)) : -1; }
    int32_t after(std::size_t position) { return m_usable ? m_iterator->following(int32_t(position)) : -1; }

private:
    std::unique_ptr<icu::BreakIterator> m_iterator;
    UText* m_text = nullptr;
    bool m_usable = false;
};

} // namespace

std::string sanitised(std::string text)
{
    if (isPrintableAscii(text))
        return text;

    std::string clean;
    clean.reserve(text.size());
    const auto length = static_cast<int32_t>(text.size());
    for (int32_t i = 0; i < length;) {
        UChar32 c = 0;
        U8_NEXT(text.data(), i, length, c);
        if (c < 0)
            c = REPLACEMENT;
        append(clean, isBlankedOut(c) ? ' ' : c);
    }
    return clean;
}

std::string composed(const std::string& text)
{
    auto status = U_ZERO_ERROR;
    const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    if (U_SUCCESS(status))
        normalizer->normalizeUTF8(0, text, sink, nullptr, status);
    return U_SUCCESS(status) ? result : text;
}

int characters(std::string_view text)
{
    return static_cast<int>(std::ranges::count_if(text, [](char c) { return !U8_IS_TRAIL(c); }));
}

std::size_t letterBefore(const std::string& text, std::size_t position)
{
    if (position == 0)
        return 0;
    return static_cast<std::size_t>(std::max(Letters(text).before(position), 0));
}

std::size_t letterAfter(const std::string& text, std::size_t position)
{
    if (position >= text.size())
        return text.size();
    const auto after = Letters(text).after(position);
    return after < 0 ? text.size() : static_cast<std::size_t>(after);
}

bool isDialled(const std::string& character)
{
    return character.size() == 1 &&
           std::string_view("0123456789*#+").find(character) != std::string_view::npos;
}

} // namespace DisplayAPI
