#include "WrittenNumber.h"

#include <algorithm>
#include <utility>

namespace {

// Letters that stand for keys follow at least an access code, and no more than a prefix of one.
constexpr std::size_t nLEAST_BEFORE_LETTERS = 3;
constexpr std::size_t nMOST_BEFORE_LETTERS = 7;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

// The key that bears a capital letter (E.161).
char keyOf(char letter)
{
    return std::string_view("22233344455566677778889999")[static_cast<std::size_t>(letter - 'A')];
}

// One character of UTF-8; malformed bytes are characters that no number has.
struct Character {
    char32_t code = 0;
    std::size_t length = 1;
};

Character firstOf(std::string_view text)
{
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    if (byte(0) < 0x80)
        return {byte(0), 1};
    if (byte(0) >= 0xC2 && byte(0) < 0xE0 && text.size() >= 2)
        return {static_cast<char32_t>((byte(0) & 0x1F) << 6 | (byte(1) & 0x3F)), 2};
    if (byte(0) >= 0xE0 && byte(0) < 0xF0 && text.size() >= 3)
        return {static_cast<char32_t>((byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F)), 3};
    return {0, 1};
}

// What one of the other scripts' characters stands for, ' ' for a separator; 0 if no number has it.
char plainForm(char32_t code)
{
    const auto digitAfter = [code](char32_t zero) { return static_cast<char>('0' + (code - zero)); };
    const auto isWithin = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
    if (isWithin(0x0660, 0x0669)) // Arabic-Indic
        return digitAfter(0x0660);
    if (isWithin(0x06F0, 0x06F9)) // Persian and Urdu
        return digitAfter(0x06F0);
    if (isWithin(0xFF01, 0xFF5E)) // full-width forms of ASCII
        return static_cast<char>(code - 0xFF01 + '!');
    const bool isSeparator = code == 0x00A0 || code == 0x00AD || // no-break blank, soft hyphen
                             isWithin(0x2000, 0x2015) ||         // blanks, direction marks, dashes
                             isWithin(0x2028, 0x202F) ||         // line breaks, embeddings, narrow blank
                             isWithin(0x205F, 0x2069) ||         // mathematical blank, joiner, isolates
                             code == 0x2212 || code == 0x3000 || code == 0xFEFF;
    return isSeparator ? ' ' : '\0';
}

// Reads character by character into a number.
class Reader {
public:
    explicit Reader(std::size_t length) { m_number.digits.reserve(length); }

    // False when it is no number.
    bool take(char character)
    {
        const bool opened = m_opened;
        m_opened = character == '(';
        if (isDigit(character))
            return takeDigit(character, opened);
        if (std::string_view(" -/.()\t").find(character) != std::string_view::npos)
            return takeSeparator();
        if (character == '+')
            return takePlus();
        if (character == '*' || character == '#')
            return takeCode(character);
        return character >= 'A' && character <= 'Z' && takeLetter(character);
    }

    WrittenNumber finish()
    {
        using Kind = WrittenNumber::Kind;
        if (m_number.digits.empty() || (m_code && m_number.international))
            return {};
        m_number.kind = m_code ? Kind::Code : m_letters ? Kind::Letters : Kind::Digits;
        return std::move(m_number);
    }

private:
    bool takeDigit(char digit, bool afterParenthesis)
    {
        auto& digits = m_number.digits;
        if (digit == '0' && afterParenthesis && (m_number.international || !digits.empty()) &&
            m_number.zeroInParentheses == WrittenNumber::NONE)
            m_number.zeroInParentheses = digits.size();
        digits += digit;
        return !m_letters;
    }

    bool takeSeparator()
    {
        if (m_number.firstGroup == 0)
            m_number.firstGroup = m_number.digits.size();
        return true;
    }

    bool takePlus() { return m_number.digits.empty() && !std::exchange(m_number.international, true); }

    bool takeCode(char character)
    {
        m_code = true;
        m_number.digits += character;
        return !m_letters;
    }

    bool takeLetter(char letter)
    {
        const auto before = m_number.digits.size();
        if (m_code || (!m_letters && (before < nLEAST_BEFORE_LETTERS || before > nMOST_BEFORE_LETTERS)))
            return false;
        m_letters = true;
        m_number.digits += keyOf(letter);
        return true;
    }

    WrittenNumber m_number;
    bool m_code = false;
    bool m_letters = false;
    bool m_opened = false;
};

WrittenNumber readPlain(std::string_view text)
{
    Reader reader(text.size());
    while (!text.empty()) {
        const auto [code, length] = firstOf(text);
        if (!reader.take(code < 0x80 ? static_cast<char>(code) : plainForm(code)))
            return {};
        text.remove_prefix(length);
    }
    return reader.finish();
}

bool startsWithoutCase(std::string_view text, std::string_view lowerCase)
{
    return text.size() >= lowerCase.size() &&
           std::equal(lowerCase.begin(), lowerCase.end(), text.begin(),
                      [](char wanted, char given) { return wanted == (given | 0x20); });
}

// Only the context is understood: digits that are sent after the answer, for one, are no part of the
// number.
WrittenNumber readUri(std::string_view text)
{
    const auto end = text.find(';');
    auto number = readPlain(text.substr(0, end));
    if (end == std::string_view::npos)
        return number;
    constexpr std::string_view context = "phone-context=";
    const auto parameter = text.substr(end + 1);
    if (parameter.substr(0, context.size()) != context)
        return {};
    auto country = readPlain(parameter.substr(context.size()));
    if (!country.international)
        return {};
    number.context = std::move(country.digits);
    return number;
}

} // namespace

WrittenNumber WrittenNumber::read(std::string_view text)
{
    constexpr std::string_view scheme = "tel:";
    // Every character of the scheme has the bit that makes letters small, the colon included.
    if (startsWithoutCase(text, scheme))
        return readUri(text.substr(scheme.size()));
    return readPlain(text);
}
