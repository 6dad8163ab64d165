// What a CSTA service answered (ECMA-269). Ask for the expected response with dynamic_cast.

#pragma once

#include <string>
#include <vector>

#include <framework/Export.h>
#include <framework/csta/FeatureData.h>

class FRAMEWORK_API CSTAResponse {
public:
    CSTAResponse() = default;
    virtual ~CSTAResponse();

    CSTAResponse(const CSTAResponse&) = delete;
    CSTAResponse& operator=(const CSTAResponse&) = delete;
};

// ECMA-269 10 (error values), as far as a telephone tells them apart.
class FRAMEWORK_API CSTAErrorCode final : public CSTAResponse {
public:
    enum Cause : int { NO_LINE_AVAILABLE = 0, LINE_SELECTION_NEEDED = 1, OTHER = 2 };

    explicit CSTAErrorCode(int cause);
    ~CSTAErrorCode() override;
    int getErrorCause() const { return m_cause; }

private:
    int m_cause;
};

// ECMA-269 15.1.2 (Monitor Start).
class FRAMEWORK_API CSTAMonitorStartResponse final : public CSTAResponse {
public:
    explicit CSTAMonitorStartResponse(std::string monitorCrossRefId);
    ~CSTAMonitorStartResponse() override;
    const std::string& getMonitorCrossRefID() const { return m_monitorCrossRefId; }

private:
    std::string m_monitorCrossRefId;
};

class FRAMEWORK_API CSTAMonitorStopResponse final : public CSTAResponse {
public:
    ~CSTAMonitorStopResponse() override;
};

class FRAMEWORK_API CSTASystemStatusResponse final : public CSTAResponse {
public:
    ~CSTASystemStatusResponse() override;
};

class FRAMEWORK_API CSTARequestSystemStatusResponse final : public CSTAResponse {
public:
    CSTARequestSystemStatusResponse(std::string systemStatus, FeatureData featureData);
    ~CSTARequestSystemStatusResponse() override;
    // "" counts as enabled.
    const std::string& getSystemStatus() const { return m_systemStatus; }
    const FeatureData& getFeatureData() const { return m_featureData; }

private:
    std::string m_systemStatus;
    FeatureData m_featureData;
};

class FRAMEWORK_API CSTAMakeCallResponse final : public CSTAResponse {
public:
    explicit CSTAMakeCallResponse(std::string callId);
    ~CSTAMakeCallResponse() override;
    const std::string& getCallID() const { return m_callId; }

private:
    std::string m_callId;
};

// The call that was taken over, as this telephone has it now.
class FRAMEWORK_API CSTADirectedPickupCallResponse final : public CSTAResponse {
public:
    explicit CSTADirectedPickupCallResponse(std::string callId);
    ~CSTADirectedPickupCallResponse() override;
    const std::string& getCallID() const { return m_callId; }

private:
    std::string m_callId;
};

// The calls at a device.
class FRAMEWORK_API CSTASnapshotDeviceResponse final : public CSTAResponse {
public:
    explicit CSTASnapshotDeviceResponse(std::vector<int> callStates);
    ~CSTASnapshotDeviceResponse() override;
    int numberOfCalls() const;
    // `call` counts from 1; 0 for one that does not exist. 2, 3 and 4 mean busy.
    int getCallState(int call) const;

private:
    std::vector<int> m_callStates;
};
