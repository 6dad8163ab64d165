// The requests that a phonelet sends. A device is named by its directory number; "localDeviceID" is
// the telephone's own device.

#pragma once

#include <string>

#include <framework/csta/CSTARequest.h>

// Which events a monitor reports (ECMA-269 15.1.2): all of a category, or none.
class FRAMEWORK_API CSTAMonitorFilter {
public:
    void setCallControlFilter(bool on) { m_callControl = on; }
    void setCallAssociatedFilter(bool on) { m_callAssociated = on; }
    void setPhysicalDeviceFilter(bool on) { m_physicalDevice = on; }
    void setLogicalDeviceFilter(bool on) { m_logicalDevice = on; }
    void setVendorSpecificFilter(bool on) { m_vendorSpecific = on; }
    void setSystemFilter(bool on) { m_system = on; }
    void setFS_PhoneBookFilter(bool on) { m_phonebookFeature = on; }

    bool callControl() const { return m_callControl; }
    bool callAssociated() const { return m_callAssociated; }
    bool physicalDevice() const { return m_physicalDevice; }
    bool logicalDevice() const { return m_logicalDevice; }
    bool vendorSpecific() const { return m_vendorSpecific; }
    bool system() const { return m_system; }
    bool phonebookFeature() const { return m_phonebookFeature; }

private:
    bool m_callControl = false;
    bool m_callAssociated = false;
    bool m_physicalDevice = false;
    bool m_logicalDevice = false;
    bool m_vendorSpecific = false;
    bool m_system = false;
    bool m_phonebookFeature = false;
};

class FRAMEWORK_API CSTAMonitorStartRequest final : public CSTARequest {
public:
    explicit CSTAMonitorStartRequest(const CSTAMonitorFilter& filter);
    ~CSTAMonitorStartRequest() override;
    const CSTAMonitorFilter& getFilter() const { return m_filter; }
    void setDeviceObject(const std::string& device) { m_device = device; }
    const std::string& getDeviceObject() const { return m_device; }

private:
    CSTAMonitorFilter m_filter;
    std::string m_device;
};

class FRAMEWORK_API CSTAMonitorStopRequest final : public CSTARequest {
public:
    explicit CSTAMonitorStopRequest(std::string monitorCrossRefId);
    ~CSTAMonitorStopRequest() override;
    const std::string& getMonitorCrossRefID() const { return m_monitorCrossRefId; }

private:
    std::string m_monitorCrossRefId;
};

class FRAMEWORK_API CSTASystemStatusRequest final : public CSTARequest {
public:
    CSTASystemStatusRequest();
    ~CSTASystemStatusRequest() override;
};

class FRAMEWORK_API CSTARequestSystemStatusRequest final : public CSTARequest {
public:
    explicit CSTARequestSystemStatusRequest(FeatureData featureData);
    ~CSTARequestSystemStatusRequest() override;
    const FeatureData& getFeatureData() const { return m_featureData; }

private:
    FeatureData m_featureData;
};

// ECMA-269 17.1.20.
class FRAMEWORK_API CSTAMakeCallRequest final : public CSTARequest {
public:
    CSTAMakeCallRequest();
    ~CSTAMakeCallRequest() override;
    // Not set: the telephone's own device.
    void SetCallingDevice(const std::string& device) { m_callingDevice = device; }
    const std::string& getCallingDevice() const { return m_callingDevice; }
    void SetCalledDevice(const std::string& device) { m_calledDevice = device; }
    const std::string& getCalledDevice() const { return m_calledDevice; }

private:
    std::string m_callingDevice;
    std::string m_calledDevice;
};

// ECMA-269 17.1.14.
class FRAMEWORK_API CSTADirectedPickupCallRequest final : public CSTARequest {
public:
    CSTADirectedPickupCallRequest();
    ~CSTADirectedPickupCallRequest() override;
    void setRequestingDeviceID(const std::string& device) { m_requestingDevice = device; }
    const std::string& getRequestingDeviceID() const { return m_requestingDevice; }
    void setCallToBePickedUp(const std::string& device) { m_callToBePickedUp = device; }
    const std::string& getCallToBePickedUp() const { return m_callToBePickedUp; }

private:
    std::string m_requestingDevice;
    std::string m_callToBePickedUp;
};

// ECMA-269 16.1.2.
class FRAMEWORK_API CSTASnapshotDeviceRequest final : public CSTARequest {
public:
    explicit CSTASnapshotDeviceRequest(std::string device);
    ~CSTASnapshotDeviceRequest() override;
    const std::string& getDevice() const { return m_device; }

private:
    std::string m_device;
};

// A key for the display that the PBX shows (ECMA-269, Button Press). Its answer says only that the
// key is on its way: what comes of it is a display-updated event.
class FRAMEWORK_API CSTAButtonPressRequest final : public CSTARequest {
public:
    explicit CSTAButtonPressRequest(std::string button);
    ~CSTAButtonPressRequest() override;
    // "0" to "9", "*", "#", "up", "down", "left", "right", "ok", "clear"
    const std::string& getButton() const { return m_button; }

private:
    std::string m_button;
};
