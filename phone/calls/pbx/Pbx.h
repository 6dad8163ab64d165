// A PBX that the telephone is attached to: its link, its line, its phonebook feature and its display.

#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include <framework/csta/FeatureData.h>

#include "PbxLine.h"
#include "PbxLink.h"
#include "calls/PbxIfc.h"

class CSTAEvent;

class Pbx final : public PbxIfc, private PbxListenerIfc {
public:
    // Tells the telephone's monitors of an event. Called on the link's thread.
    using Raise = std::function<void(std::shared_ptr<CSTAEvent>)>;

    Pbx(const PbxSettings& settings, Raise raise);
    ~Pbx() override;

    // Calls over the PBX are placed on it: before start(), once. It goes after stop().
    std::unique_ptr<LineIfc> makeLine();
    void start() { m_link.start(); }
    // Takes leave as if the PBX were lost: nothing is raised and no call changes any more when it returns.
    void stop();

    // While `urgent` nobody waits for the PBX: who does gets no answer.
    // [any-thread]
    void setUrgent(bool urgent);

    const PbxSettings& settings() const { return m_settings; }

    void answerSystemStatus(CSTARequestSystemStatusRequest& request) override;
    void pressButton(CSTAButtonPressRequest& request) override;

private:
    void linkUp(const CstaSystemStatus& status) override;
    void linkDown() override;
    void linkFailed() override;
    void received(const CstaEventContent& event) override;
    bool isBehind() override;

    Result<CstaElement> waitFor(CstaElement message);
    void learn(const CstaSystemStatus& status);
    void raise(std::unique_ptr<CSTAEvent> event);
    void raiseStatus(const std::string& state, const FeatureData& feature);
    FeatureData phonebook() const;
    bool isLinked() const;

    const PbxSettings m_settings;
    const Raise m_raise;
    std::mutex m_waitMutex;
    std::condition_variable m_woken;
    bool m_isUrgent = false;
    std::atomic<bool> m_isWaitedFor = false;
    PbxLink m_link;
    PbxLine* m_pLine = nullptr;
    std::shared_ptr<std::atomic<int>> m_queued = std::make_shared<std::atomic<int>>(0); // raised, not heard

    mutable std::mutex m_mutex;
    bool m_isLinked = false;
    std::string m_state; // one of communicationsServiceTexts::systemState_...
    bool m_hasPhonebook = false;
};
