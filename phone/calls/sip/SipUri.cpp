#include "SipUri.h"

#include <algorithm>
#include <charconv>

#include <arpa/inet.h>

namespace {

constexpr std::size_t nLONGEST_NUMBER = 255;
constexpr std::size_t nLONGEST_HOST = 253;
constexpr int nGREATEST_PORT = 65535;
constexpr char nSCHEME[] = "sip:";

bool isAlphanumeric(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

// What stands for itself in the user part; of "user-unreserved" only the plus sign, because telephones
// and exchanges take the others for the beginning of parameters.
bool standsForItself(char c)
{
    return isAlphanumeric(c) || std::string_view("-_.!~*'()+").find(c) != std::string_view::npos;
}

bool isHostName(std::string_view name)
{
    return !name.empty() && name.size() <= nLONGEST_HOST && name.front() != '-' &&
           std::ranges::all_of(name, [](char c) { return isAlphanumeric(c) || c == '-' || c == '.'; });
}

// In brackets.
bool isIpv6Address(std::string_view text)
{
    if (!text.starts_with('[') || !text.ends_with(']'))
        return false;
    in6_addr address{};
    return ::inet_pton(AF_INET6, std::string(text.substr(1, text.size() - 2)).c_str(), &address) == 1;
}

bool isLoopback(const std::string& name)
{
    in_addr address{};
    return ::inet_pton(AF_INET, name.c_str(), &address) == 1 && ntohl(address.s_addr) >> 24 == IN_LOOPBACKNET;
}

bool isControl(unsigned char c)
{
    return c < 0x20 || c == 0x7F;
}

std::string escaped(std::string_view user)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const char c : user) {
        if (standsForItself(c)) {
            text += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        text += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return text;
}

std::string unescaped(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const auto* digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            plain += static_cast<char>(byte);
            i += 2;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

std::string_view withoutScheme(std::string_view uri)
{
    for (const std::string_view scheme : {"sips:", nSCHEME}) {
        if (uri.starts_with(scheme))
            return uri.substr(scheme.size());
    }
    return uri;
}

} // namespace

std::string SipHost::text() const
{
    return port == 0 ? name : name + ":" + std::to_string(port);
}

bool SipHost::isThisMachine() const
{
    return isLoopback(name) || name == "[::1]";
}

std::optional<SipHost> sipHostOf(std::string_view text)
{
    const auto bracket = text.starts_with('[') ? text.find(']') : 0;
    const auto colon = text.find(':', bracket);
    SipHost host{std::string(text.substr(0, colon))};
    if (host.isIpv6() ? !isIpv6Address(host.name) : !isHostName(host.name))
        return std::nullopt;
    // The DNS, which is asked for names, need not know this one.
    if (host.name == "localhost")
        host.name = "127.0.0.1";
    if (colon == std::string_view::npos)
        return host;
    const auto port = text.substr(colon + 1);
    const auto [end, error] = std::from_chars(port.data(), port.data() + port.size(), host.port);
    if (error != std::errc() || end != port.data() + port.size() || host.port < 1 ||
        host.port > nGREATEST_PORT)
        return std::nullopt;
    return host;
}

std::optional<std::string> sipUriOf(std::string_view dialled, const SipHost& host)
{
    if (dialled.size() > nLONGEST_NUMBER || std::ranges::any_of(dialled, isControl))
        return std::nullopt;
    std::string number(withoutScheme(dialled));
    std::erase(number, ' ');
    auto where = host;
    const auto at = number.rfind('@');
    if (at != std::string::npos) {
        if (const auto own = sipHostOf(std::string_view(number).substr(at + 1))) {
            where = *own;
            number.erase(at);
        }
    }
    if (number.empty())
        return std::nullopt;
    return nSCHEME + escaped(number) + "@" + where.text();
}

std::string sipUserOf(std::string_view uri)
{
    const auto plain = withoutScheme(uri);
    const auto at = plain.find('@');
    if (at == std::string_view::npos)
        return "";
    const auto user = plain.substr(0, at);
    return unescaped(user.substr(0, user.find_first_of(";:")));
}
