// The digits that the user dials, and who is told of them.
//
// Off-hook, and with the dial-pad key, digits come here by digit(); the first one opens the dialler of
// the phonelet in front, and from then on the dialler's own text comes by setDialString(). All reports
// are events. Digits that nobody was told of are kept for whoever becomes the provider; those that one
// provider was told of are never another's.
//
// The time-outs run while the telephone is off-hook only: who prepares a number with the handset on
// its hook takes their time. An emergency number is waited for no longer when its last digit was typed.

#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include <framework/services/CallPartyIdentifier.h>
#include <framework/services/DigitAnalysisServiceIfc.h>

#include "DialPlan.h"
#include "app/Clock.h"
#include "app/EventPoster.h"
#include "app/EventTimers.h"

struct DialTimes {
    std::chrono::milliseconds initialDigit{15000}; // after going off-hook
    std::chrono::milliseconds interDigit{5000};    // after the last digit
};

class DigitAnalysis final : public DigitAnalysisServiceIfc {
public:
    DigitAnalysis(DialPlanRules rules, DialTimes times, const Clock& clock, EventPoster& events,
                  EventTimers& timers);
    ~DigitAnalysis() override;

    bool setCallContextProvider(DigitAnalysisServiceEventIfc* provider) override;
    bool clearCallContextProvider(DigitAnalysisServiceEventIfc* provider) override;
    bool setDialString(const std::string& digits, int complete) override;
    void convertToCanonical(std::string& number) override;
    void setDialPartyDetails(CallPartyIdentifier& party, bool result, int mode) override;

    // What follows is for the telephone. [phonelet-thread]

    // Another dial plan from now on: the configuration changed.
    void setRules(DialPlanRules rules, DialTimes times);
    // Forgets the provider: its phonelet was stopped.
    void dropObservers() { m_pProvider = nullptr; }
    std::string toDialString(const std::string& number) const;
    std::string toExtension(const std::string& number) const;
    // Of digits that may have those for an outside line before them.
    std::string canonicalOfDialled(const std::string& digits) const;
    // A number for people to read, of who calls and of who was called. Internal numbers, codes and what is
    // no number stay as they are.
    // [any-thread], as the two above
    std::string shownCaller(const std::string& number) const;
    std::string shownCalled(const std::string& number) const;

    // Off-hook reports dialling started, with no digits yet.
    void offHook();
    // The handset was lifted for a call: nothing is dialled yet, but digits that follow time out.
    void liftedForCall() { m_offHook = true; }
    // Reports dialling started with the first digit. One that comes after the report was delivered
    // begins anew: while the dialler is on the screen, digits are the dialler's.
    void digit(char digit);
    // The dialler shows these digits now, in the place of others: they are not waited upon. Nothing when
    // they are the same.
    void replace(const std::string& digits);
    // Reports dialling stopped if it had started.
    void onHook();
    bool isOffHook() const { return m_offHook; }
    bool hasProvider() const { return m_pProvider != nullptr; }
    // Whether somebody was told of digits that are not dialled yet.
    bool isDialling() const { return m_report == Report::Delivered; }
    // A placed call was connected, failed or was cleared, or the user cancelled.
    void dialingStopped();

    // Who has that number, as far as the phonelet in front knows. Asks it, so call this only from an
    // event of its own.
    CallPartyIdentifier partyOf(const std::string& number);

private:
    // That dialling started.
    enum class Report { None, Posted, Delivered, Dialled };

    void reportStarted();
    void startAnew();
    void awaitMoreDigits(bool isLonger);
    void startTimer(std::chrono::milliseconds after);
    void stopTimer();
    void timedOut();
    void post(const char* name, std::function<void()> event);

    const Clock& m_clock;
    EventPoster& m_events;
    EventTimers& m_timers;
    std::atomic<std::shared_ptr<const DialPlan>> m_plan; // convertToCanonical() comes from any thread
    DialTimes m_times;
    DigitAnalysisServiceEventIfc* m_pProvider = nullptr;
    const DigitAnalysisServiceEventIfc* m_pTold = nullptr; // only compared
    bool m_offHook = false;
    bool m_dialing = false;
    Report m_report = Report::None;
    std::string m_digits;
    CallPartyIdentifier m_party;
    bool m_partyKnown = false;
    EventTimers::Id m_timer = 0;
    unsigned long m_timerStart = 0; // the start whose expiry still counts
    // Tells an event that is queued that the service is gone.
    std::shared_ptr<const char> m_alive = std::make_shared<const char>();
};
