#include "CstaFrame.h"

#include <algorithm>

namespace {

constexpr std::size_t LENGTH_AT = 2;
constexpr std::size_t ID_AT = 4;
constexpr std::size_t ID_DIGITS = 4;

Error malformed(const std::string& what)
{
    return {ErrorCode::Malformed, "The PBX sent a message " + what + "."};
}

std::size_t octet(const std::string& octets, std::size_t at)
{
    return static_cast<unsigned char>(octets[at]);
}

} // namespace

Result<std::string> octetsOf(const CstaFrame& frame)
{
    const auto size = CstaFrame::HEADER_SIZE + frame.xml.size();
    if (size > CstaFrame::GREATEST_SIZE)
        return Error{ErrorCode::Malformed, "A message for the PBX is too large."};
    if (frame.invokeId < 0 || frame.invokeId > CstaFrame::EVENT_ID)
        return Error{ErrorCode::Malformed, "A message for the PBX has an impossible number."};
    const auto id = std::to_string(frame.invokeId);
    std::string octets{0, 0, static_cast<char>(size >> 8U), static_cast<char>(size & 0xFFU)};
    return octets + std::string(ID_DIGITS - id.size(), '0') + id + frame.xml;
}

Result<std::optional<CstaFrame>> CstaFrameReader::next()
{
    if (m_octets.size() < CstaFrame::HEADER_SIZE)
        return std::optional<CstaFrame>();
    if (m_octets[0] != 0 || m_octets[1] != 0)
        return malformed("that is no CSTA XML");
    const auto size = octet(m_octets, LENGTH_AT) * 256 + octet(m_octets, LENGTH_AT + 1);
    if (size < CstaFrame::HEADER_SIZE)
        return malformed("shorter than its header");
    const auto id = m_octets.substr(ID_AT, ID_DIGITS);
    if (!std::all_of(id.begin(), id.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return malformed("without a number");
    if (m_octets.size() < size)
        return std::optional<CstaFrame>();
    CstaFrame frame{std::stoi(id), m_octets.substr(CstaFrame::HEADER_SIZE, size - CstaFrame::HEADER_SIZE)};
    m_octets.erase(0, size);
    return std::optional(std::move(frame));
}
