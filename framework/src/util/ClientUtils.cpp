#include <framework/util/ClientUtils.h>

namespace {

// XML 1.0 2.2: of the control characters only tab, newline and return.
bool isAllowed(unsigned char c)
{
    return c >= 0x20 || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

std::string ClientUtils::escapeXMLString(const std::string& text)
{
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&apos;";
            break;
        default:
            if (isAllowed(static_cast<unsigned char>(c)))
                out += c;
        }
    }
    return out;
}
