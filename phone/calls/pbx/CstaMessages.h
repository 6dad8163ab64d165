// The CSTA messages that the telephone and its PBX exchange (ECMA-269, ECMA-323), and their private parts.
//
// What is written has its elements in the order of the schema. What is read is found by name: elements in
// another order, or that nobody knows, do no harm.

#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <framework/csta/FeatureData.h>

#include "CstaXml.h"

// A call at a device.
struct CstaConnection {
    std::string callId;
    std::string deviceId;
};

// --- What is sent ---

CstaElement monitorStart(const std::string& device);
CstaElement requestSystemStatus(const FeatureData& feature);
CstaElement makeCall(const std::string& from, const std::string& to);
CstaElement snapshotDevice(const std::string& device);
CstaElement directedPickupCall(const CstaConnection& ringing, const std::string& by);
CstaElement answerCall(const CstaConnection& connection);
CstaElement clearConnection(const CstaConnection& connection);
CstaElement buttonPress(const std::string& device, const std::string& button);

// Answers to requests of the PBX: one without content, of which `response` is the element; the telephone's
// own status; an error of the group "operation".
CstaElement emptyResponse(const std::string& response);
CstaElement systemStatusResponse(const std::string& status);
CstaElement operationError(const std::string& error);

// --- What is received ---

struct CstaError {
    std::string group; // "operation", "stateIncompatibility", ...
    std::string value; // "invalidCalledDeviceID", ...
};
std::optional<CstaError> errorIn(const CstaElement& message);

CstaConnection connectionIn(const CstaElement& element);

// One of the calls at a device: SnapshotDeviceResponse.
struct CstaCallAtDevice {
    CstaConnection connection;
    bool rings = false;
};
std::vector<CstaCallAtDevice> callsIn(const CstaElement& snapshot);

struct CstaSystemStatus {
    std::string status; // "" when nothing is said of it
    std::optional<FeatureData> feature;
};
// Of a SystemStatus, or of an answer to requestSystemStatus().
CstaSystemStatus systemStatusIn(const CstaElement& message);

struct CstaCallEvent {
    enum class Kind { Originated, Delivered, Established, Failed, ConnectionCleared, Diverted };
    Kind kind = Kind::Originated;
    CstaConnection connection;
    std::string device;  // that alerts, answers, fails, releases or diverts
    std::string calling; // "" when it is not known, or not to be known
    std::string cause;
};

struct CstaDisplayRow {
    std::string displayId;
    int row = 0; // from 0
    std::string text;
};
using CstaDisplayRows = std::vector<CstaDisplayRow>;

// Nothing: an event that means nothing to a telephone, or lacks what makes it one.
using CstaEventContent = std::variant<std::monostate, CstaCallEvent, CstaDisplayRows, CstaSystemStatus>;
CstaEventContent eventIn(const CstaElement& message);
