// The telephone's own device at a PBX as a line: the PBX makes its calls and tells what becomes of them.

#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "CstaMessages.h"
#include "PbxLink.h"
#include "calls/LineIfc.h"

class PbxLine final : public LineIfc {
public:
    // The link is stopped before the line goes.
    PbxLine(std::string device, PbxLink& link);

    void setObserver(LineObserverIfc* observer) override { m_pObserver = observer; }
    std::string number() const override { return m_device; }
    bool isInService() const override { return m_inService; }
    LineTrouble trouble() const override { return m_trouble; }
    bool placeCall(const std::string& callId, const std::string& number) override;
    bool pickUpCall(const std::string& callId, const std::string& device) override;
    void answerCall(const std::string& callId) override;
    void clearCall(const std::string& callId) override;

    // Out of service, its calls are over.
    // [link's thread]
    void setInService(bool inService);
    void follow(const CstaCallEvent& event);

private:
    struct Call {
        std::string id;
        std::string pbxId; // "" until the PBX has said it
        bool toBeCleared = false;
        bool answering = false; // the PBX was asked to answer it, and has not refused
    };
    using Calls = std::vector<Call>;

    void begin(const std::string& callId, CstaElement request, std::initializer_list<std::string_view> idAt);
    void pickUp(const std::string& callId, const std::string& device, const Result<CstaElement>& snapshot);
    void known(const std::string& callId, const std::string& pbxId);
    void clear(const Call& call);
    Calls::iterator callOf(const CstaCallEvent& event);
    Calls::iterator find(const std::string& callId);
    void end(Calls::iterator call, CallState state, CallEnd why);
    void end(const std::string& callId, CallState state, CallEnd why);

    const std::string m_device;
    PbxLink& m_link;
    LineObserverIfc* m_pObserver = nullptr;
    mutable std::mutex m_mutex;
    std::atomic<bool> m_inService = false;
    std::atomic<LineTrouble> m_trouble = LineTrouble::None;
    Calls m_calls;
};
