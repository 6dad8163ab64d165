#include "CardReader.h"

#include <algorithm>

#include <glib.h>

#include "Text.h"

namespace vcard {

namespace {

constexpr std::size_t nCHUNK = 64 * 1024;
constexpr std::size_t nREPORTED_START = 1024;

bool isBegin(std::string_view line)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (line.starts_with(byteOrderMark))
        line.remove_prefix(byteOrderMark.size());
    line = trimmed(line);
    return line.size() == 11 && upper(line) == "BEGIN:VCARD";
}

bool isEnd(std::string_view line)
{
    line = trimmed(line);
    return line.size() == 9 && upper(line) == "END:VCARD";
}

std::string upperHead(std::string_view line)
{
    const auto start = line.substr(0, nREPORTED_START);
    return upper(start.substr(0, findColon(start)));
}

bool isQuotedPrintable(std::string_view line)
{
    const auto head = upperHead(line);
    return head.find(";QUOTED-PRINTABLE") != std::string::npos ||
           head.find("ENCODING=QUOTED-PRINTABLE") != std::string::npos;
}

bool isBase64(std::string_view line)
{
    const auto head = upperHead(line);
    return head.find("BASE64") != std::string::npos || head.find("ENCODING=B") != std::string::npos ||
           head.find("ENCODING=\"B") != std::string::npos;
}

bool mayBeLong(std::string_view line)
{
    return isBase64(line) || line.substr(0, nREPORTED_START).find("data:") != std::string_view::npos;
}

// "TEL;WORK:...", also "item1.TEL:...".
bool looksLikeProperty(std::string_view line)
{
    const auto name = line.substr(0, line.find_first_of(":;"));
    return !name.empty() && name.size() < line.size() && std::all_of(name.begin(), name.end(), [](char c) {
        return g_ascii_isupper(c) || g_ascii_isdigit(c) || c == '-' || c == '.';
    });
}

// Whether quoted-printable goes on in the next line, after a line of `lineBytes`. Some exporters end the last
// line of a text with "=" too; the property after it must not be taken for text.
bool hasSoftBreak(std::string_view line, std::size_t lineBytes, std::string_view next)
{
    constexpr std::size_t shortLine = 60;
    if (!line.ends_with('=') || isEnd(next))
        return false;
    const bool brokenAtLineEnd = line.ends_with("=0A=") || line.ends_with("=0D=");
    return lineBytes >= shortLine || brokenAtLineEnd || !looksLikeProperty(next);
}

// Handsets of the 2.1 age break base64 without indenting what follows.
bool looksLikeBase64(std::string_view line)
{
    return !line.empty() && std::all_of(line.begin(), line.end(), [](char c) {
        return g_ascii_isalnum(c) || c == '+' || c == '/' || c == '=';
    });
}

} // namespace

LineReader::LineReader(std::istream& stream, std::size_t maxLine, std::uint64_t maxBytes)
    : m_stream(stream)
    , m_maxLine(maxLine)
    , m_maxBytes(maxBytes)
{
}

bool LineReader::next(std::string& line)
{
    line.clear();
    m_wasCut = false;
    if (m_position == m_buffer.size() && !refill())
        return false;

    ++m_number;
    for (;;) {
        const auto end = std::min(m_buffer.find_first_of("\r\n", m_position), m_buffer.size());
        const auto room = m_maxLine - line.size();
        m_wasCut = m_wasCut || end - m_position > room;
        line.append(m_buffer, m_position, std::min(end - m_position, room));
        m_position = end;
        if (end < m_buffer.size())
            break;
        if (!refill())
            return true;
    }
    if (m_buffer[m_position++] == '\r')
        skipLineFeedAfterReturn();
    return true;
}

void LineReader::skipLineFeedAfterReturn()
{
    if (m_position == m_buffer.size() && !refill())
        return;
    if (m_buffer[m_position] == '\n')
        ++m_position;
}

bool LineReader::refill()
{
    m_buffer.clear();
    m_position = 0;
    while (m_buffer.empty()) {
        if (m_bytesRead >= m_maxBytes) {
            m_reachedLimit = m_stream.peek() != std::istream::traits_type::eof();
            return false;
        }
        std::string bytes(nCHUNK, '\0');
        m_stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        bytes.resize(static_cast<std::size_t>(m_stream.gcount()));
        if (bytes.empty())
            return false;
        m_bytesRead += bytes.size();
        if (m_encoding == Encoding::Unknown)
            detectEncoding(bytes);
        if (m_encoding == Encoding::EightBit)
            m_buffer = std::move(bytes);
        else
            decodeUtf16(bytes);
        std::erase(m_buffer, '\0');
    }
    return true;
}

void LineReader::detectEncoding(std::string& bytes)
{
    using namespace std::string_view_literals;
    m_encoding = Encoding::EightBit;
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.erase(0, 3);
    else if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("B\0E\0"sv))
        m_encoding = Encoding::Utf16Little;
    else if (bytes.starts_with("\xFE\xFF") || bytes.starts_with("\0B\0E"sv))
        m_encoding = Encoding::Utf16Big;
}

void LineReader::decodeUtf16(std::string_view bytes)
{
    const std::size_t low = m_encoding == Encoding::Utf16Little ? 0 : 1;
    for (const char byte : bytes) {
        m_halfUnit += byte;
        if (m_halfUnit.size() < 2)
            continue;
        const auto lowByte = static_cast<unsigned char>(m_halfUnit[low]);
        const auto highByte = static_cast<unsigned char>(m_halfUnit[1 - low]);
        appendUtf16Unit(static_cast<char16_t>(highByte << 8 | lowByte));
        m_halfUnit.clear();
    }
}

void LineReader::appendUtf16Unit(char16_t unit)
{
    constexpr gunichar replacement = 0xFFFD;
    constexpr char16_t byteOrderMark = 0xFEFF;
    const bool high = (unit & 0xFC00) == 0xD800;
    const bool low = (unit & 0xFC00) == 0xDC00;

    gunichar character = unit;
    if (low && m_highSurrogate != 0)
        character = 0x10000u + ((m_highSurrogate & 0x3FFu) << 10) + (unit & 0x3FFu);
    else if (low || m_highSurrogate != 0)
        character = low ? replacement : character;
    m_highSurrogate = high ? unit : char16_t{0};
    if (high || unit == byteOrderMark)
        return;
    char text[6];
    m_buffer.append(text, static_cast<std::size_t>(g_unichar_to_utf8(character, text)));
}

CardReader::CardReader(std::istream& stream, const Limits& limits)
    : m_limits(limits)
    , m_lines(stream, std::max(limits.textBytes, limits.encodedPhotoBytes()) + 1, limits.fileBytes)
{
    advance();
}

bool CardReader::advance()
{
    m_hasLine = m_lines.next(m_line);
    return m_hasLine;
}

bool CardReader::findBegin()
{
    while (m_hasLine && !isBegin(m_line))
        advance();
    return m_hasLine;
}

bool CardReader::next(SourceCard& card)
{
    card = SourceCard();
    if (!findBegin())
        return false;

    card.line = m_lines.number();
    m_keepsFoldBlank = false;
    advance();
    std::size_t size = 0;
    bool tooLarge = false;
    while (m_hasLine && !isBegin(m_line)) {
        if (isEnd(m_line)) {
            card.complete = true;
            advance();
            break;
        }
        readProperty(card);
        if (card.lines.empty())
            continue;
        size += card.lines.back().text.size();
        if (size <= m_limits.cardBytes)
            continue;
        tooLarge = true;
        size -= card.lines.back().text.size();
        card.lines.pop_back();
    }
    if (tooLarge)
        card.problems.push_back(
            "line " + std::to_string(card.line) +
            ": the card is larger than the phone takes; some of its properties are ignored");
    card.end = m_lines.bytesRead();
    return true;
}

void CardReader::readProperty(SourceCard& card)
{
    if (trimmed(m_line).empty()) {
        advance();
        return;
    }
    SourceLine property{m_lines.number(), "", m_lines.wasCut()};
    append(property, m_line);
    advance();
    if (upper(trimmed(property.text)) == "AGENT:" && m_hasLine && isBegin(m_line)) {
        card.problems.push_back("line " + std::to_string(property.number) +
                                ": AGENT: a card inside the card; property ignored");
        skipNestedCard();
        return;
    }

    const bool quotedPrintable = isQuotedPrintable(property.text);
    auto lineBytes = property.text.size();
    while (m_hasLine) {
        if (quotedPrintable && hasSoftBreak(property.text, lineBytes, m_line)) {
            property.text.pop_back();
            append(property, m_line);
        } else if (continuesProperty(property)) {
            const bool folded = m_line.front() == ' ' || m_line.front() == '\t';
            append(property, std::string_view(m_line).substr(folded && !m_keepsFoldBlank ? 1 : 0));
        } else {
            break;
        }
        property.tooLong = property.tooLong || m_lines.wasCut();
        lineBytes = m_line.size();
        advance();
    }

    if (upper(property.text).starts_with("VERSION:2.1"))
        m_keepsFoldBlank = true;
    const auto limit = mayBeLong(property.text) ? m_limits.encodedPhotoBytes() : m_limits.textBytes;
    property.tooLong = property.tooLong || property.text.size() > limit;
    if (property.tooLong)
        property.text.resize(std::min(property.text.size(), nREPORTED_START));
    card.lines.push_back(std::move(property));
}

bool CardReader::continuesProperty(const SourceLine& property) const
{
    if (m_line.empty())
        return false;
    if (m_line.front() == ' ' || m_line.front() == '\t')
        return !trimmed(m_line).empty();
    return isBase64(property.text) && looksLikeBase64(m_line);
}

// Keeps one byte more than is allowed, so that the excess is seen.
void CardReader::append(SourceLine& property, std::string_view text) const
{
    const auto most = std::max(m_limits.textBytes, m_limits.encodedPhotoBytes()) + 1;
    property.text += text.substr(0, most - std::min(most, property.text.size()));
}

void CardReader::skipNestedCard()
{
    int depth = 0;
    do {
        if (isBegin(m_line))
            ++depth;
        else if (isEnd(m_line))
            --depth;
        advance();
    } while (m_hasLine && depth > 0);
}

} // namespace vcard
