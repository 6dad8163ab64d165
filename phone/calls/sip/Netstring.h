// Texts on a stream, each with its length in octets before it: "5:hello,".

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

std::string toNetstring(std::string_view text);

class NetstringReader {
public:
    // Octets; a text that claims to be longer is not waited for. What a caller says of himself fills a
    // message of 64 KiB, is told twice, and each of its octets may become six.
    static constexpr std::size_t LONGEST = 999'999;

    // Takes what came, and gives the texts that are whole with it, in order. Nothing when the stream is
    // no netstrings: then there is no way to tell where the next one begins, and nothing ever comes again.
    std::optional<std::vector<std::string>> take(std::string_view bytes);

private:
    // The next text, if it is whole; false for what is no netstring.
    bool next(std::optional<std::string>& text);

    std::string m_waiting;
    bool m_broken = false;
};
