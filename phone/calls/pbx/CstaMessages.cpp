#include "CstaMessages.h"

#include <algorithm>
#include <array>
#include <charconv>

#include <framework/csta/communicationsServiceTexts.h>

namespace {

using Children = std::vector<CstaElement>;

constexpr int MOST_ROWS = 24;     // of a display
constexpr int MOST_COLUMNS = 256; // the same: what a row has beyond is cut off

CstaElement leaf(std::string name, std::string text)
{
    return {std::move(name), std::move(text)};
}

CstaElement node(std::string name, Children children)
{
    return {std::move(name), "", std::move(children)};
}

CstaElement connectionElement(std::string name, const CstaConnection& connection)
{
    Children ids;
    if (!connection.callId.empty())
        ids.push_back(leaf("callID", connection.callId));
    ids.push_back(leaf("deviceID", connection.deviceId));
    return node(std::move(name), std::move(ids));
}

struct FeatureField {
    const char* element;
    std::string FeatureData::*text;
};
constexpr std::array FEATURE_FIELDS = {
    FeatureField{"featureName", &FeatureData::featureName},
    FeatureField{"Action", &FeatureData::Action},
    FeatureField{"DeActivation", &FeatureData::DeActivation},
    FeatureField{"Status", &FeatureData::Status},
    FeatureField{"Availability", &FeatureData::Availability},
    FeatureField{"ButtonID", &FeatureData::ButtonID},
};

CstaElement featureElement(const FeatureData& feature)
{
    CstaElement element{"feature", "", {}, CstaElement::Kind::Private};
    for (const auto& [name, text] : FEATURE_FIELDS) {
        if (!(feature.*text).empty())
            element.children.push_back({name, feature.*text, {}, CstaElement::Kind::Private});
    }
    return element;
}

// Private parts come as the whole of a private event, or beside the content of any other message.
const CstaElement* privatePart(const CstaElement& message, std::string_view name)
{
    const auto* part = message.at({"privateData", "private", name});
    if (!part)
        part = message.at({"extensions", "privateData", "private", name});
    return part && part->kind == CstaElement::Kind::Private ? part : nullptr;
}

std::optional<FeatureData> featureIn(const CstaElement& message)
{
    const auto* part = privatePart(message, "feature");
    if (!part)
        return std::nullopt;
    FeatureData feature;
    for (const auto& [name, text] : FEATURE_FIELDS)
        feature.*text = part->textAt({name});
    return feature;
}

// White space around a number is none of it.
std::optional<int> numberIn(std::string text)
{
    constexpr char BLANKS[] = " \t\r\n";
    text.erase(0, text.find_first_not_of(BLANKS));
    text.erase(text.find_last_not_of(BLANKS) + 1);
    int number = 0;
    const auto* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    if (error != std::errc() || end != last || number < 0)
        return std::nullopt;
    return number;
}

// Where so many characters end, or all of them.
std::size_t endOf(std::string_view text, int characters)
{
    std::size_t end = 0;
    for (; characters > 0 && end < text.size(); --characters) {
        ++end;
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
            ++end;
    }
    return end;
}

std::optional<CstaDisplayRow> privateRowIn(const CstaElement& message)
{
    const auto* part = privatePart(message, "displayRow");
    const auto row = part ? numberIn(part->textAt({"row"})) : std::nullopt;
    if (!row)
        return std::nullopt;
    auto text = part->textAt({"text"});
    text.resize(endOf(text, MOST_COLUMNS));
    return CstaDisplayRow{part->textAt({"displayID"}), *row, std::move(text)};
}

// Takes that many characters off the front, or all of them.
std::string take(std::string_view& text, int characters)
{
    std::string taken(text.substr(0, endOf(text, std::min(characters, MOST_COLUMNS))));
    text.remove_prefix(endOf(text, characters));
    taken.erase(taken.find_last_not_of(' ') + 1);
    return taken;
}

// The standard gives the whole display as one text, row after row.
CstaDisplayRows wholeDisplayIn(const CstaElement& message)
{
    const auto rows = numberIn(message.textAt({"logicalRows"})).value_or(0);
    const auto columns = numberIn(message.textAt({"logicalColumns"})).value_or(0);
    const auto* contents = message.find("contentsOfDisplay");
    if (!contents || columns < 1)
        return {};
    std::string_view rest = contents->text;
    auto displayId = message.textAt({"displayID"});
    if (displayId != communicationsServiceTexts::content_displayIdMenu)
        displayId = communicationsServiceTexts::content_displayIdDisplay;
    CstaDisplayRows empty;
    CstaDisplayRows written;
    for (int row = 0; row < std::min(rows, MOST_ROWS); ++row) {
        CstaDisplayRow next{displayId, row, take(rest, columns)};
        (next.text.empty() ? empty : written).push_back(std::move(next));
    }
    // An empty row cuts the display off there: those below it must come afterwards.
    std::ranges::reverse(empty);
    std::ranges::move(written, std::back_inserter(empty));
    return empty;
}

struct CallEventElements {
    const char* event;
    CstaCallEvent::Kind kind;
    const char* connection;
    const char* device;
};
constexpr std::array CALL_EVENTS = {
    CallEventElements{"OriginatedEvent", CstaCallEvent::Kind::Originated, "originatedConnection",
                      "callingDevice"},
    CallEventElements{"DeliveredEvent", CstaCallEvent::Kind::Delivered, "connection", "alertingDevice"},
    CallEventElements{"EstablishedEvent", CstaCallEvent::Kind::Established, "establishedConnection",
                      "answeringDevice"},
    CallEventElements{"FailedEvent", CstaCallEvent::Kind::Failed, "failedConnection", "failingDevice"},
    CallEventElements{"ConnectionClearedEvent", CstaCallEvent::Kind::ConnectionCleared, "droppedConnection",
                      "releasingDevice"},
    CallEventElements{"DivertedEvent", CstaCallEvent::Kind::Diverted, "connection", "divertingDevice"},
};

CstaEventContent callEventIn(const CallEventElements& elements, const CstaElement& message)
{
    const auto* connection = message.find(elements.connection);
    if (!connection || connection->textAt({"callID"}).empty())
        return {};
    return CstaCallEvent{elements.kind, connectionIn(*connection),
                         message.textAt({elements.device, "deviceIdentifier"}),
                         message.textAt({"callingDevice", "deviceIdentifier"}), message.textAt({"cause"})};
}

CstaEventContent displayIn(const CstaElement& message)
{
    if (auto row = privateRowIn(message))
        return CstaDisplayRows{*std::move(row)};
    auto rows = wholeDisplayIn(message);
    if (rows.empty())
        return {};
    return rows;
}

} // namespace

CstaElement monitorStart(const std::string& device)
{
    return node("MonitorStart",
                {node("monitorObject", {leaf("deviceObject", device)}), leaf("monitorType", "device")});
}

CstaElement requestSystemStatus(const FeatureData& feature)
{
    return node("RequestSystemStatus",
                {node("extensions", {node("privateData", {node("private", {featureElement(feature)})})})});
}

CstaElement makeCall(const std::string& from, const std::string& to)
{
    return node("MakeCall", {leaf("callingDevice", from), leaf("calledDirectoryNumber", to),
                             leaf("autoOriginate", "doNotPrompt")});
}

CstaElement snapshotDevice(const std::string& device)
{
    return node("SnapshotDevice", {leaf("snapshotObject", device)});
}

CstaElement directedPickupCall(const CstaConnection& ringing, const std::string& by)
{
    return node("DirectedPickupCall",
                {connectionElement("callToBePickedUp", ringing), leaf("requestingDevice", by)});
}

CstaElement answerCall(const CstaConnection& connection)
{
    return node("AnswerCall", {connectionElement("callToBeAnswered", connection)});
}

CstaElement clearConnection(const CstaConnection& connection)
{
    return node("ClearConnection", {connectionElement("connectionToBeCleared", connection)});
}

CstaElement buttonPress(const std::string& device, const std::string& button)
{
    return node("ButtonPress", {leaf("device", device), leaf("button", button)});
}

CstaElement emptyResponse(const std::string& response)
{
    return {response};
}

CstaElement systemStatusResponse(const std::string& status)
{
    return node("RequestSystemStatusResponse", {leaf("systemStatus", status)});
}

CstaElement operationError(const std::string& error)
{
    return node("CSTAErrorCode", {leaf("operation", error)});
}

std::optional<CstaError> errorIn(const CstaElement& message)
{
    if (message.name != "CSTAErrorCode")
        return std::nullopt;
    if (message.children.empty())
        return CstaError{"unspecified", ""};
    const auto& group = message.children.front();
    return CstaError{group.name, group.text};
}

CstaConnection connectionIn(const CstaElement& element)
{
    return {element.textAt({"callID"}), element.textAt({"deviceID"})};
}

std::vector<CstaCallAtDevice> callsIn(const CstaElement& snapshot)
{
    std::vector<CstaCallAtDevice> calls;
    const auto* data = snapshot.at({"crossRefIDorSnapshotData", "snapshotData"});
    if (!data)
        return calls;
    for (const auto& info : data->children) {
        const auto* connection = info.find("connectionIdentifier");
        if (!connection)
            continue;
        const bool rings =
            info.textAt({"localCallState", "compoundCallState", "localConnectionState"}) == "alerting" ||
            info.textAt({"localCallState", "simpleCallState"}) == "callReceived";
        calls.push_back({connectionIn(*connection), rings});
    }
    return calls;
}

CstaSystemStatus systemStatusIn(const CstaElement& message)
{
    return {message.textAt({"systemStatus"}), featureIn(message)};
}

CstaEventContent eventIn(const CstaElement& message)
{
    const auto* call =
        std::ranges::find_if(CALL_EVENTS, [&](const auto& known) { return message.name == known.event; });
    if (call != CALL_EVENTS.end())
        return callEventIn(*call, message);
    if (message.name == "DisplayUpdatedEvent" || (message.name == "PrivateEvent" && privateRowIn(message)))
        return displayIn(message);
    if (message.name != "SystemStatus" && message.name != "PrivateEvent")
        return {};
    auto status = systemStatusIn(message);
    if (status.status.empty() && !status.feature)
        return {};
    return status;
}
