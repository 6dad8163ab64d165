// Cuts a stream into cards and each card into its unfolded property lines.
//
// The stream is never held as a whole: at most one card is, and that is capped. Line ends
// may be CRLF, LF or CR, the text 8-bit or UTF-16 with or without byte order mark.

#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace vcard {

// What a card may weigh, in bytes. What exceeds a limit is left out and reported.
struct Limits {
    std::size_t textBytes = 256 * 1024;                  // one property that is no picture
    std::size_t photoBytes = 8 * 1024 * 1024;            // one picture, decoded
    std::size_t cardBytes = 16 * 1024 * 1024;            // all lines of a card together
    std::uint64_t fileBytes = 4ull * 1024 * 1024 * 1024; // what is read at all

    // A picture in base64, with room for the property's name and parameters.
    std::size_t encodedPhotoBytes() const { return photoBytes / 3 * 4 + 4096; }
};

// One property, unfolded but otherwise as the file has it: maybe not even UTF-8.
struct SourceLine {
    std::uint64_t number = 0; // of its first line in the file, from 1
    std::string text;
    bool tooLong = false; // only the beginning is in `text`
};

struct SourceCard {
    std::uint64_t line = 0; // of BEGIN:VCARD
    std::uint64_t end = 0;  // bytes of the stream read so far, for progress
    bool complete = false;  // END:VCARD was there
    std::vector<SourceLine> lines;
    std::vector<std::string> problems;
};

// Lines of a stream as 8-bit text. A line beyond the limit is cut, the rest of it skipped.
class LineReader {
public:
    LineReader(std::istream& stream, std::size_t maxLine, std::uint64_t maxBytes);

    // False at the end of the stream.
    bool next(std::string& line);

    std::uint64_t number() const { return m_number; }
    std::uint64_t bytesRead() const { return m_bytesRead; }
    bool wasCut() const { return m_wasCut; }
    bool reachedLimit() const { return m_reachedLimit; }

private:
    enum class Encoding { Unknown, EightBit, Utf16Little, Utf16Big };

    bool refill();
    void detectEncoding(std::string& bytes);
    void decodeUtf16(std::string_view bytes);
    void appendUtf16Unit(char16_t unit);
    void skipLineFeedAfterReturn();

    std::istream& m_stream;
    const std::size_t m_maxLine;
    const std::uint64_t m_maxBytes;
    Encoding m_encoding = Encoding::Unknown;
    std::string m_buffer; // 8-bit text not yet handed out, from m_position on
    std::size_t m_position = 0;
    std::string m_halfUnit;
    char16_t m_highSurrogate = 0;
    std::uint64_t m_number = 0;
    std::uint64_t m_bytesRead = 0;
    bool m_wasCut = false;
    bool m_reachedLimit = false;
};

class CardReader {
public:
    CardReader(std::istream& stream, const Limits& limits);

    // The next card, complete or not; false when there is none left.
    bool next(SourceCard& card);

    bool reachedFileLimit() const { return m_lines.reachedLimit(); }

private:
    bool advance();
    bool findBegin();
    void readProperty(SourceCard& card);
    bool continuesProperty(const SourceLine& property) const;
    void append(SourceLine& property, std::string_view text) const;
    void skipNestedCard();

    const Limits m_limits;
    LineReader m_lines;
    std::string m_line; // the line looked at
    bool m_hasLine = false;
    bool m_keepsFoldBlank = false; // version 2.1: the blank of a fold belongs to the text
};

} // namespace vcard
