// Whatever comes on the SIP engine's connection, names and numbers of callers in it, is cut into messages
// and understood, or refused; and whatever is dialled is a URI that leads back to it, or refused.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "calls/sip/BaresipEvents.h"
#include "calls/sip/Netstring.h"
#include "calls/sip/SipUri.h"

namespace {

void understand(const std::string& text)
{
    const auto message = engineMessageOf(text);
    if (const auto* event = std::get_if<EngineCallEvent>(&message)) {
        static_cast<void>(sipUserOf(event->peerUri));
        static_cast<void>(callEndOf(event->reason));
    }
    if (const auto* response = std::get_if<EngineResponse>(&message))
        static_cast<void>(callIdIn(response->data, "sip:201@host"));
}

void dial(const std::string& text)
{
    const auto uri = sipUriOf(text, {"host", 5060});
    if (!uri)
        return;
    for (const unsigned char c : *uri) {
        if (c <= ' ' || c >= 0x7F || c == '"' || c == '<' || c == '>' || c == '#')
            std::abort();
    }
    const auto user = sipUserOf(*uri);
    if (user.empty() || user.find(' ') != std::string::npos)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    if (const auto texts = NetstringReader().take(bytes)) {
        for (const auto& text : *texts)
            understand(text);
    }
    understand(bytes);
    dial(bytes);
    return 0;
}
