// A PBX that the telephone is attached to: its link, its line, its phonebook feature and its display.

#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include <framework/csta/FeatureData.h>

#include "PbxLine.h"
#include "PbxLink.h"
#include "calls/PbxIfc.h"

class CallService;
class CSTAEvent;

// How events reach the telephone's monitors; the line is for who is to own it.
class Pbx final : public PbxIfc, private PbxListenerIfc {
public:
    using Raise = std::function<void(std::shared_ptr<CSTAEvent>)>; // [any-thread]

    Pbx(const PbxSettings& settings, Raise raise);
    ~Pbx() override;

    // Calls over the PBX are placed on it. It must outlive the PBX: before start(), once.
    std::unique_ptr<LineIfc> makeLine();
    void start() { m_link.start(); }
    // Nothing is raised and no call changes any more when it returns.
    void stop() { m_link.stop(); }

    const PbxSettings& settings() const { return m_settings; }

    void answerSystemStatus(CSTARequestSystemStatusRequest& request) override;
    void pressButton(CSTAButtonPressRequest& request) override;

private:
    void linkUp(const CstaSystemStatus& status) override;
    void linkDown() override;
    void received(const CstaEventContent& event) override;
    bool isBehind() override;

    void learn(const CstaSystemStatus& status);
    void raise(std::unique_ptr<CSTAEvent> event);
    void raiseStatus(const std::string& state, const FeatureData& feature);
    FeatureData phonebook() const;

    const PbxSettings m_settings;
    const Raise m_raise;
    PbxLink m_link;
    PbxLine* m_pLine = nullptr;
    std::shared_ptr<std::atomic<int>> m_queued = std::make_shared<std::atomic<int>>(0); // raised, not heard

    mutable std::mutex m_mutex;
    std::string m_state; // one of communicationsServiceTexts::systemState_...
    bool m_hasPhonebook = false;
};
