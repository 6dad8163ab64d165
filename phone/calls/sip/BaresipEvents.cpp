#include "BaresipEvents.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>

#include <nlohmann/json.hpp>

#include "directory/ContactText.h"

namespace {

using nlohmann::json;

std::string textIn(const json& message, const char* name)
{
    const auto found = message.find(name);
    return found != message.end() && found->is_string() ? found->get<std::string>() : "";
}

bool yesIn(const json& message, const char* name)
{
    const auto found = message.find(name);
    return found != message.end() && found->is_boolean() && found->get<bool>();
}

std::optional<EngineCallEvent::Kind> kindOf(const std::string& type)
{
    using enum EngineCallEvent::Kind;
    static const std::map<std::string, EngineCallEvent::Kind> kinds{{"CALL_INCOMING", Incoming},
                                                                    {"CALL_RINGING", Ringing},
                                                                    {"CALL_PROGRESS", Ringing},
                                                                    {"CALL_ESTABLISHED", Established},
                                                                    {"CALL_CLOSED", Closed}};
    const auto found = kinds.find(type);
    return found == kinds.end() ? std::nullopt : std::optional(found->second);
}

// The engine passes a name on as it stands in the header: with the escapes of a quoted string.
std::string unquoted(const std::string& name)
{
    std::string plain;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '\\' && i + 1 < name.size())
            ++i;
        plain += name[i];
    }
    return plain;
}

EngineMessage eventOf(const json& message)
{
    const auto type = textIn(message, "type");
    if (type == "REGISTER_OK" || type == "REGISTER_FAIL")
        return EngineRegistration{type == "REGISTER_OK", textIn(message, "param")};
    const auto kind = kindOf(type);
    const auto id = textIn(message, "id");
    if (!kind || id.empty())
        return {};
    return EngineCallEvent{*kind,
                           id,
                           textIn(message, "direction") == "outgoing",
                           textIn(message, "peeruri"),
                           unquoted(textIn(message, "peerdisplayname")),
                           textIn(message, "param")};
}

} // namespace

EngineMessage engineMessageOf(const std::string& text)
{
    // What a caller put into a header stands in there byte for byte.
    const auto message = json::parse(cleanText(text), nullptr, false);
    if (!message.is_object())
        return {};
    if (yesIn(message, "response"))
        return EngineResponse{textIn(message, "token"), yesIn(message, "ok"), textIn(message, "data")};
    return yesIn(message, "event") ? eventOf(message) : EngineMessage();
}

CallEnd callEndOf(const std::string& reason)
{
    // Status codes of RFC 3261 21; without one the texts are of the engine, or of the system's errors.
    static const std::map<std::string, CallEnd> ends{
        {"404", CallEnd::NotFound},
        {"410", CallEnd::NotFound},
        {"484", CallEnd::NotFound},
        {"485", CallEnd::NotFound},
        {"604", CallEnd::NotFound},
        {"486", CallEnd::Busy},
        {"600", CallEnd::Busy},
        {"603", CallEnd::Declined},
        {"408", CallEnd::NoAnswer},
        {"487", CallEnd::Cleared},
        {"480", CallEnd::Unreachable},
        {"502", CallEnd::Unreachable},
        {"503", CallEnd::Unreachable},
        {"504", CallEnd::Unreachable},
        {"Connection reset by user", CallEnd::Cleared},
        {"Connection reset by peer", CallEnd::Cleared},
        {"Connection timed out", CallEnd::Unreachable},
        {"Connection refused", CallEnd::Unreachable},
        {"Network is unreachable", CallEnd::Unreachable},
        {"No route to host", CallEnd::Unreachable},
        {"Host is down", CallEnd::Unreachable},
        {"Destination address required", CallEnd::Unreachable},
    };
    const auto status =
        std::find_if_not(reason.begin(), reason.end(), [](char c) { return c >= '0' && c <= '9'; });
    const auto digits = static_cast<std::size_t>(status - reason.begin());
    const auto found = ends.find(digits == 3 ? reason.substr(0, digits) : reason);
    return found == ends.end() ? CallEnd::Other : found->second;
}

std::string callIdIn(const std::string& callStatus, const std::string& peerUri)
{
    constexpr std::string_view name = " id=";
    const auto begin = callStatus.find(name);
    const bool dialled = callStatus.find("direction: Outgoing") != std::string::npos &&
                         callStatus.find("<" + peerUri) != std::string::npos;
    if (begin == std::string::npos || !dialled)
        return "";
    const auto id = callStatus.substr(begin + name.size());
    return id.substr(0, id.find('\n'));
}
