// A SIP account as a line of the telephone, on a baresip process of its own.
//
// It has one call at a time: while there is one, another cannot be placed, and who calls hears that the
// line is busy. When the engine ends, its call ends with it, and the line is out of service until the
// engine is back; with a registrar, until that knows the line again.

#pragma once

#include <atomic>
#include <chrono>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include "calls/LineIfc.h"
#include "calls/sip/BaresipEngine.h"
#include "calls/sip/SipSettings.h"

class SipLine final : public LineIfc {
public:
    explicit SipLine(SipSettings settings);
    // Ends its calls and signs off; waits for that, but no longer than a second.
    ~SipLine() override;

    SipLine(const SipLine&) = delete;
    SipLine& operator=(const SipLine&) = delete;

    // The engine is started when there is an observer.
    void setObserver(LineObserverIfc* observer) override;
    std::string number() const override { return m_settings.user; }
    bool isInService() const override { return m_inService; }
    LineTrouble trouble() const override { return m_trouble; }
    bool placeCall(const std::string& callId, const std::string& number) override;
    bool pickUpCall(const std::string& callId, const std::string& device) override;
    void answerCall(const std::string& callId) override;
    void clearCall(const std::string& callId) override;

private:
    struct Call {
        std::string id;
        std::string uri;      // that was dialled; "" for one that came in
        std::string engineId; // "" until the engine has said it
        CallState state = CallState::Initiated;
        bool clearing = false;
        bool gaveUp = false;
        std::unique_ptr<boost::asio::steady_timer> noAnswer;
    };
    using Calls = std::list<Call>;

    void run();
    void engineIsUp();
    void engineIsDown();
    void setInService(bool inService, LineTrouble trouble);

    void dial(const std::string& callId, const std::string& uri);
    void giveUpLater(Call& call);
    void hangUp(Call& call);
    void said(const EngineMessage& message);
    void answered(const EngineResponse& response);
    void happened(const EngineCallEvent& event);
    void offered(const EngineCallEvent& event);
    void registration(const EngineRegistration& event);
    void registerLater(std::chrono::steady_clock::time_point retry);
    void become(Call& call, CallState state);
    void end(Calls::iterator call, CallEnd why);
    Calls::iterator find(const std::string& callId);
    Calls::iterator findAtEngine(const EngineCallEvent& event);

    void tell(const std::string& callId, CallState state, CallEnd why);
    bool take(const std::string& callId);
    void release(const std::string& callId);

    const SipSettings m_settings;
    std::atomic<bool> m_inService = false;
    std::atomic<LineTrouble> m_trouble = LineTrouble::None;

    std::mutex m_observerMutex;
    LineObserverIfc* m_pObserver = nullptr;

    // The call that keeps others away; "" for none. One that is being ended keeps nobody away.
    std::mutex m_currentMutex;
    std::string m_current;

    // On the line's own thread.
    boost::asio::io_context m_io{1};
    std::unique_ptr<BaresipEngine> m_engine;
    Calls m_calls;
    boost::asio::steady_timer m_registrationCheck{m_io};
    std::string m_refusal; // the registrar's last one; "" while it takes the line

    std::thread m_thread;
};
