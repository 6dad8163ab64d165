// How CSTA messages lie in a TCP stream (ECMA-323, "CSTA XML without SOAP").
//
// Each has a header of 8 octets: 0 0, the length of header and message (big endian), and the invoke id, four
// decimal digits. A response carries the id of its request; events carry EVENT_ID and have no response.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "app/Result.h"

struct CstaFrame {
    static constexpr int EVENT_ID = 9999;
    static constexpr int GREATEST_REQUEST_ID = 9998;
    static constexpr std::size_t HEADER_SIZE = 8;
    static constexpr std::size_t GREATEST_SIZE = 65535; // octets, header included

    int invokeId = EVENT_ID;
    std::string xml;
};

// The octets to send; an error for a message that is too large, or an id that there is not.
// [any-thread]
Result<std::string> octetsOf(const CstaFrame& frame);

// Cuts what arrives into messages.
class CstaFrameReader {
public:
    void append(std::string_view octets) { m_octets.append(octets); }

    // The next whole message; nothing while it is not there yet. After an error nobody knows where the next
    // message begins: the connection is of no use any more.
    Result<std::optional<CstaFrame>> next();

private:
    std::string m_octets;
};
