// The events that a monitor reports (ECMA-269). An event dispatches itself to the operation of its
// kind on an observer.

#pragma once

#include <string>

#include <framework/Export.h>
#include <framework/csta/FeatureData.h>

class CSTAEventObserverBase;

class FRAMEWORK_API CSTAEvent {
public:
    CSTAEvent() = default;
    virtual ~CSTAEvent();

    CSTAEvent(const CSTAEvent&) = delete;
    CSTAEvent& operator=(const CSTAEvent&) = delete;

    // Calls the observer's operation for this event; null is nobody.
    // [phonelet-thread]
    virtual void dispatch(CSTAEventObserverBase* observer) = 0;
};

class FRAMEWORK_API CSTASystemStatusEvent final : public CSTAEvent {
public:
    CSTASystemStatusEvent(std::string systemStatus, FeatureData featureData);
    ~CSTASystemStatusEvent() override;
    void dispatch(CSTAEventObserverBase* observer) override;

    // One of communicationsServiceTexts::systemState_..., or "" when it speaks of a feature only.
    const std::string& getSystemStatus() const { return m_systemStatus; }
    const FeatureData& getFeatureData() const { return m_featureData; }

private:
    std::string m_systemStatus;
    FeatureData m_featureData;
};

// ECMA-269 14.2.1 (Display Updated).
class FRAMEWORK_API CSTADisplayUpdatedEvent final : public CSTAEvent {
public:
    CSTADisplayUpdatedEvent(std::string displayId, std::string logicalRows, std::string contents);
    ~CSTADisplayUpdatedEvent() override;
    void dispatch(CSTAEventObserverBase* observer) override;

    const std::string& getDisplayID() const { return m_displayId; }
    // The row that is meant, as decimal text.
    const std::string& getLogicalRows() const { return m_logicalRows; }
    const std::string& getContentsOfDisplay() const { return m_contents; }

private:
    std::string m_displayId;
    std::string m_logicalRows;
    std::string m_contents;
};

// ECMA-269 17.2.18 (Service Initiated).
class FRAMEWORK_API CSTAServiceInitiatedEvent final : public CSTAEvent {
public:
    CSTAServiceInitiatedEvent();
    ~CSTAServiceInitiatedEvent() override;
    void dispatch(CSTAEventObserverBase* observer) override;
};
