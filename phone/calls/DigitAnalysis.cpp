#include "DigitAnalysis.h"

#include <utility>

#include <framework/services/DigitAnalysisServiceEventIfc.h>
#include <framework/services/InterDigitTimeOutEvent.h>

#include "NumberFormat.h"
#include "WrittenNumber.h"
#include "app/PhoneLog.h"

namespace {

constexpr char nSOURCE[] = "./phone/calls/DigitAnalysis";

std::string readable(const DialPlan& plan, const std::string& number, const std::string& canonical)
{
    const auto written = WrittenNumber::read(number);
    if (!written.international && plan.isInternal(written.digits))
        return number;
    auto text = NumberFormat(plan.countryCode()).shown(canonical);
    return text == canonical ? number : text;
}

} // namespace

DigitAnalysis::DigitAnalysis(DialPlanRules rules, DialTimes times, const Clock& clock, EventPoster& events,
                             EventTimers& timers)
    : m_clock(clock)
    , m_events(events)
    , m_timers(timers)
{
    setRules(std::move(rules), times);
}

DigitAnalysis::~DigitAnalysis()
{
    stopTimer();
}

void DigitAnalysis::setRules(DialPlanRules rules, DialTimes times)
{
    m_plan = std::make_shared<const DialPlan>(std::move(rules));
    m_times = times;
}

bool DigitAnalysis::setCallContextProvider(DigitAnalysisServiceEventIfc* provider)
{
    if (!provider)
        return false;
    if (m_report == Report::Delivered && provider != m_pTold)
        startAnew();
    m_pProvider = provider;
    return true;
}

bool DigitAnalysis::clearCallContextProvider(DigitAnalysisServiceEventIfc* provider)
{
    if (!provider || provider != m_pProvider)
        return false;
    m_pProvider = nullptr;
    return true;
}

bool DigitAnalysis::setDialString(const std::string& digits, int complete)
{
    const bool isLonger = digits.size() > m_digits.size();
    m_digits = digits;
    if (m_report == Report::Delivered || m_report == Report::Dialled)
        m_report = complete != 0 ? Report::Dialled : Report::Delivered;
    if (digits.empty() || complete != 0)
        stopTimer();
    else
        awaitMoreDigits(isLonger);
    return !digits.empty();
}

void DigitAnalysis::convertToCanonical(std::string& number)
{
    number = m_plan.load()->canonical(number);
}

std::string DigitAnalysis::toDialString(const std::string& number) const
{
    return m_plan.load()->dialString(number);
}

std::string DigitAnalysis::toExtension(const std::string& number) const
{
    return m_plan.load()->extension(number);
}

std::string DigitAnalysis::canonicalOfDialled(const std::string& digits) const
{
    return m_plan.load()->canonicalOfDialled(digits);
}

std::string DigitAnalysis::shownCaller(const std::string& number) const
{
    const auto plan = m_plan.load();
    return readable(*plan, number, plan->canonical(number));
}

// What goes to the line says more than what was asked for: it has the digits for an outside line.
std::string DigitAnalysis::shownCalled(const std::string& number) const
{
    const auto plan = m_plan.load();
    return readable(*plan, number, plan->canonicalOfDialled(plan->dialString(number)));
}

void DigitAnalysis::setDialPartyDetails(CallPartyIdentifier& party, bool result, int /*mode*/)
{
    m_party = party;
    m_partyKnown = result;
}

void DigitAnalysis::offHook()
{
    if (std::exchange(m_offHook, true))
        return;
    if (!std::exchange(m_dialing, true)) {
        m_digits.clear();
        reportStarted();
    }
    startTimer(m_digits.empty() ? m_times.initialDigit : m_times.interDigit);
}

void DigitAnalysis::digit(char digit)
{
    if (m_report == Report::Delivered || m_report == Report::Dialled)
        startAnew();
    m_digits += digit;
    m_dialing = true;
    if (m_report == Report::None)
        reportStarted();
    awaitMoreDigits(true);
}

void DigitAnalysis::replace(const std::string& digits)
{
    if (m_digits == digits)
        return;
    m_digits = digits;
    stopTimer();
}

void DigitAnalysis::onHook()
{
    m_offHook = false;
    if (m_dialing)
        dialingStopped();
}

void DigitAnalysis::dialingStopped()
{
    startAnew();
    m_partyKnown = false;
    post("dialling stopped", [this] {
        if (m_pProvider)
            m_pProvider->handleDialingStopped();
    });
}

void DigitAnalysis::startAnew()
{
    stopTimer();
    m_dialing = false;
    m_report = Report::None;
    m_digits.clear();
}

// Digits that were typed until the report is delivered are part of it.
void DigitAnalysis::reportStarted()
{
    m_report = Report::Posted;
    post("dialling started", [this] {
        if (m_report != Report::Posted)
            return;
        m_report = Report::None;
        if (!m_pProvider || !m_pProvider->isDiallingOk())
            return;
        m_report = Report::Delivered;
        m_pTold = m_pProvider;
        std::string name;
        m_pProvider->getEventHandlerName(name);
        PHONE_TRACE("dialling started, told to %s", name.c_str());
        m_pProvider->handleDialingStarted(m_digits);
    });
}

// What is left of a number that is taken back is no emergency.
void DigitAnalysis::awaitMoreDigits(bool isLonger)
{
    if (!m_offHook)
        return;
    const bool isComplete = isLonger && m_plan.load()->isCompleteEmergency(m_digits);
    startTimer(isComplete ? std::chrono::milliseconds(0) : m_times.interDigit);
}

void DigitAnalysis::startTimer(std::chrono::milliseconds after)
{
    stopTimer();
    m_timer = m_timers.callAt(m_clock.now() + after, "dialling time-out",
                              [this, alive = std::weak_ptr(m_alive), start = m_timerStart] {
                                  if (!alive.expired() && start == m_timerStart)
                                      timedOut();
                              });
}

void DigitAnalysis::stopTimer()
{
    ++m_timerStart;
    if (m_timer != 0)
        m_timers.cancel(std::exchange(m_timer, 0));
}

void DigitAnalysis::timedOut()
{
    m_timer = 0;
    if (!m_pProvider)
        return;
    if (!m_digits.empty() && m_report == Report::Delivered)
        m_report = Report::Dialled;
    InterDigitTimeOutEvent event(toDialString(m_digits));
    if (m_digits.empty())
        m_pProvider->handleInitialDigitTimeout(&event);
    else
        m_pProvider->handleInterDigitTimeout(&event);
}

CallPartyIdentifier DigitAnalysis::partyOf(const std::string& number)
{
    const auto plan = m_plan.load();
    const auto isHis = [&](const CallPartyIdentifier& party) {
        return plan->dialString(party.getNumber()) == plan->dialString(number);
    };
    // Who is selected may have several numbers; asked without one, the provider gives the default number.
    for (const auto& asked : {number, std::string()}) {
        CallPartyIdentifier party;
        party.setNumber(asked);
        if (m_pProvider && m_pProvider->getDialPartyDetails(party) && isHis(party))
            return party;
    }
    if (m_partyKnown && isHis(m_party))
        return m_party;
    CallPartyIdentifier unknown;
    unknown.setNumber(number);
    return unknown;
}

void DigitAnalysis::post(const char* name, std::function<void()> event)
{
    m_events.post(name, [alive = std::weak_ptr(m_alive), event = std::move(event)] {
        if (!alive.expired())
            event();
    });
}
