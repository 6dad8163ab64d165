// Requests, responses and events carry data only; what they do is here.

#include <framework/csta/CSTAEventIfc.h>
#include <framework/csta/CSTAEventObserverBase.h>
#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/CSTAServiceIfc.h>
#include <framework/csta/communicationsServiceTexts.h>

namespace communicationsServiceTexts {

const std::string content_feature_name_pbxphonebook = "PBXPhonebook";
const std::string content_feature_query = "query";
const std::string content_localfeature_activate = "activate";
const std::string content_feature_available = "available";
const std::string content_feature_unavailable = "unavailable";
const std::string systemState_enabled = "enabled";
const std::string systemState_disabled = "disabled";
const std::string systemState_partiallyDisabled = "partiallyDisabled";
const std::string content_displayIdDisplay = "Display";
const std::string content_displayIdMenu = "Menu";

} // namespace communicationsServiceTexts

CSTAServiceIfc::~CSTAServiceIfc() = default;
CSTAEventIfc::~CSTAEventIfc() = default;

CSTAResponse::~CSTAResponse() = default;

CSTAErrorCode::CSTAErrorCode(int cause)
    : m_cause(cause)
{
}

CSTAErrorCode::~CSTAErrorCode() = default;

CSTAMonitorStartResponse::CSTAMonitorStartResponse(std::string monitorCrossRefId)
    : m_monitorCrossRefId(std::move(monitorCrossRefId))
{
}

CSTAMonitorStartResponse::~CSTAMonitorStartResponse() = default;
CSTAMonitorStopResponse::~CSTAMonitorStopResponse() = default;
CSTASystemStatusResponse::~CSTASystemStatusResponse() = default;

CSTARequestSystemStatusResponse::CSTARequestSystemStatusResponse(std::string systemStatus,
                                                                 FeatureData featureData)
    : m_systemStatus(std::move(systemStatus))
    , m_featureData(std::move(featureData))
{
}

CSTARequestSystemStatusResponse::~CSTARequestSystemStatusResponse() = default;

CSTAMakeCallResponse::CSTAMakeCallResponse(std::string callId)
    : m_callId(std::move(callId))
{
}

CSTAMakeCallResponse::~CSTAMakeCallResponse() = default;

CSTADirectedPickupCallResponse::CSTADirectedPickupCallResponse(std::string callId)
    : m_callId(std::move(callId))
{
}

CSTADirectedPickupCallResponse::~CSTADirectedPickupCallResponse() = default;

CSTASnapshotDeviceResponse::CSTASnapshotDeviceResponse(std::vector<int> callStates)
    : m_callStates(std::move(callStates))
{
}

CSTASnapshotDeviceResponse::~CSTASnapshotDeviceResponse() = default;

int CSTASnapshotDeviceResponse::numberOfCalls() const
{
    return static_cast<int>(m_callStates.size());
}

int CSTASnapshotDeviceResponse::getCallState(int call) const
{
    if (call < 1 || call > numberOfCalls())
        return 0;
    return m_callStates[static_cast<std::size_t>(call - 1)];
}

CSTARequest::CSTARequest() = default;
CSTARequest::~CSTARequest() = default;

void CSTARequest::setResponse(int code, std::unique_ptr<CSTAResponse> response)
{
    m_responseCode = code;
    m_response = std::move(response);
}

CSTAMonitorStartRequest::CSTAMonitorStartRequest(const CSTAMonitorFilter& filter)
    : m_filter(filter)
{
}

CSTAMonitorStartRequest::~CSTAMonitorStartRequest() = default;

CSTAMonitorStopRequest::CSTAMonitorStopRequest(std::string monitorCrossRefId)
    : m_monitorCrossRefId(std::move(monitorCrossRefId))
{
}

CSTAMonitorStopRequest::~CSTAMonitorStopRequest() = default;

CSTASystemStatusRequest::CSTASystemStatusRequest() = default;
CSTASystemStatusRequest::~CSTASystemStatusRequest() = default;

CSTARequestSystemStatusRequest::CSTARequestSystemStatusRequest(FeatureData featureData)
    : m_featureData(std::move(featureData))
{
}

CSTARequestSystemStatusRequest::~CSTARequestSystemStatusRequest() = default;

CSTAMakeCallRequest::CSTAMakeCallRequest() = default;
CSTAMakeCallRequest::~CSTAMakeCallRequest() = default;

CSTADirectedPickupCallRequest::CSTADirectedPickupCallRequest() = default;
CSTADirectedPickupCallRequest::~CSTADirectedPickupCallRequest() = default;

CSTASnapshotDeviceRequest::CSTASnapshotDeviceRequest(std::string device)
    : m_device(std::move(device))
{
}

CSTASnapshotDeviceRequest::~CSTASnapshotDeviceRequest() = default;

CSTAButtonPressRequest::CSTAButtonPressRequest(std::string button)
    : m_button(std::move(button))
{
}

CSTAButtonPressRequest::~CSTAButtonPressRequest() = default;

CSTAEvent::~CSTAEvent() = default;

CSTASystemStatusEvent::CSTASystemStatusEvent(std::string systemStatus, FeatureData featureData)
    : m_systemStatus(std::move(systemStatus))
    , m_featureData(std::move(featureData))
{
}

CSTASystemStatusEvent::~CSTASystemStatusEvent() = default;

void CSTASystemStatusEvent::dispatch(CSTAEventObserverBase* observer)
{
    if (observer)
        observer->handleCSTASystemStatusEvent(this);
}

CSTADisplayUpdatedEvent::CSTADisplayUpdatedEvent(std::string displayId, std::string logicalRows,
                                                 std::string contents)
    : m_displayId(std::move(displayId))
    , m_logicalRows(std::move(logicalRows))
    , m_contents(std::move(contents))
{
}

CSTADisplayUpdatedEvent::~CSTADisplayUpdatedEvent() = default;

void CSTADisplayUpdatedEvent::dispatch(CSTAEventObserverBase* observer)
{
    if (observer)
        observer->handleCSTADisplayUpdatedEvent(this);
}

CSTAServiceInitiatedEvent::CSTAServiceInitiatedEvent() = default;
CSTAServiceInitiatedEvent::~CSTAServiceInitiatedEvent() = default;

void CSTAServiceInitiatedEvent::dispatch(CSTAEventObserverBase* observer)
{
    if (observer)
        observer->handleCSTAServiceInitiatedEvent(this);
}

CSTAEventObserverBase::~CSTAEventObserverBase() = default;

void CSTAEventObserverBase::handleCSTASystemStatusEvent(CSTASystemStatusEvent*) {}
void CSTAEventObserverBase::handleCSTADisplayUpdatedEvent(CSTADisplayUpdatedEvent*) {}
void CSTAEventObserverBase::handleCSTAServiceInitiatedEvent(CSTAServiceInitiatedEvent*) {}
