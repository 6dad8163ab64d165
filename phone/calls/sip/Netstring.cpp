#include "Netstring.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::size_t nMOST_DIGITS = 6; // of NetstringReader::LONGEST

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

std::string toNetstring(std::string_view text)
{
    auto all = std::to_string(text.size()) + ":";
    all += text;
    all += ',';
    return all;
}

std::optional<std::vector<std::string>> NetstringReader::take(std::string_view bytes)
{
    if (m_broken)
        return std::nullopt;
    m_waiting += bytes;
    std::vector<std::string> texts;
    for (;;) {
        std::optional<std::string> text;
        m_broken = !next(text);
        if (m_broken)
            return std::nullopt;
        if (!text)
            return texts;
        texts.push_back(std::move(*text));
    }
}

bool NetstringReader::next(std::optional<std::string>& text)
{
    const auto colon = static_cast<std::size_t>(
        std::find_if_not(m_waiting.begin(), m_waiting.end(), isDigit) - m_waiting.begin());
    const bool leadingZero = colon > 1 && m_waiting.front() == '0';
    if (colon > nMOST_DIGITS || leadingZero)
        return false;
    if (colon == m_waiting.size())
        return true; // the length itself is not whole
    if (colon == 0 || m_waiting[colon] != ':')
        return false;
    std::size_t length = 0;
    std::from_chars(m_waiting.data(), m_waiting.data() + colon, length);
    const auto begin = colon + 1;
    if (m_waiting.size() <= begin + length)
        return true;
    if (m_waiting[begin + length] != ',')
        return false;
    text = m_waiting.substr(begin, length);
    m_waiting.erase(0, begin + length + 1);
    return true;
}
