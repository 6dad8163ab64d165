#include "calls/sip/SipLine.h"

#include <algorithm>
#include <utility>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>

#include "app/PhoneLog.h"
#include "directory/ContactText.h"

namespace asio = boost::asio;

namespace {

constexpr char nSOURCE[] = "./phone/calls/sip/SipLine";
constexpr std::chrono::milliseconds nPASSWORD_CHECK{500};
constexpr std::size_t nLONGEST_CALLER = 100; // characters
// Holds the line for a call that has no id yet.
constexpr char nCALL_COMING_IN[] = "?";
// Of commands whose response is of interest; the call's id follows.
constexpr char nDIALLED[] = "dialled ";
constexpr char nIDENTIFIED[] = "identified ";

Caller callerOf(const EngineCallEvent& event)
{
    auto number = sipUserOf(event.peerUri);
    if (number == "anonymous") // RFC 3323 4.1
        number.clear();
    return {fitText(number, nLONGEST_CALLER), fitText(event.peerName, nLONGEST_CALLER)};
}

bool isPasswordRefused(const std::string& refusal)
{
    return refusal.starts_with("401") || refusal.starts_with("403") || refusal.starts_with("407");
}

LineTrouble troubleOf(const std::string& refusal)
{
    const bool isUnknown = refusal.starts_with("404");
    return isUnknown || isPasswordRefused(refusal) ? LineTrouble::Refused : LineTrouble::Failed;
}

// What a registrar's refusal means, where the words are no help.
std::string adviceOn(const std::string& refusal)
{
    if (isPasswordRefused(refusal))
        return ". Check \"sip-user\" and \"sip-auth-user\", and run \"deskphone sip-password\".";
    if (refusal.starts_with("423"))
        return ". Set a greater \"sip-registration-time\".";
    // What the engine says of a name without an address.
    if (refusal == "Destination address required")
        return ". The DNS does not know this name: check \"sip-server\".";
    return "";
}

} // namespace

SipLine::SipLine(SipSettings settings)
    : m_settings(std::move(settings))
{
}

SipLine::~SipLine()
{
    {
        const std::lock_guard lock(m_observerMutex);
        m_pObserver = nullptr;
    }
    if (!m_thread.joinable())
        return;
    asio::post(m_io, [this] { m_io.stop(); });
    m_thread.join();
}

void SipLine::setObserver(LineObserverIfc* observer)
{
    {
        const std::lock_guard lock(m_observerMutex);
        m_pObserver = observer;
    }
    if (observer && !m_thread.joinable())
        m_thread = std::thread([this] { run(); });
}

// --- On the thread of who calls ---

bool SipLine::placeCall(const std::string& callId, const std::string& number)
{
    auto uri = sipUriOf(number, m_settings.domain());
    if (!uri || !m_inService || !take(callId))
        return false;
    asio::post(m_io, [this, callId, uri = std::move(*uri)] { dial(callId, uri); });
    return true;
}

bool SipLine::pickUpCall(const std::string& callId, const std::string& device)
{
    return !device.empty() && placeCall(callId, m_settings.pickupCode + device);
}

void SipLine::answerCall(const std::string& callId)
{
    asio::post(m_io, [this, callId] {
        const auto call = find(callId);
        if (call != m_calls.end() && call->uri.empty() && call->state == CallState::Alerting)
            m_engine->send({{"callfind", call->engineId, ""}, {"accept", "", ""}});
    });
}

void SipLine::clearCall(const std::string& callId)
{
    release(callId);
    asio::post(m_io, [this, callId] {
        const auto call = find(callId);
        if (call != m_calls.end())
            hangUp(*call);
    });
}

bool SipLine::take(const std::string& callId)
{
    const std::lock_guard lock(m_currentMutex);
    if (!m_current.empty())
        return false;
    m_current = callId;
    return true;
}

void SipLine::release(const std::string& callId)
{
    const std::lock_guard lock(m_currentMutex);
    if (m_current == callId)
        m_current.clear();
}

// --- On the line's own thread ---

void SipLine::run()
{
    const auto work = asio::make_work_guard(m_io);
    m_engine = std::make_unique<BaresipEngine>(
        m_io, m_settings,
        BaresipEngine::Hooks{[this] { engineIsUp(); }, [this] { engineIsDown(); },
                             [this] { setInService(false, LineTrouble::Failed); },
                             [this](const EngineMessage& message) { said(message); }});
    m_engine->start();
    m_io.run();
    // The engine ends with the thread that has started it.
    m_calls.clear();
    m_engine.reset();
}

void SipLine::engineIsUp()
{
    if (!m_settings.registrar)
        setInService(true, LineTrouble::None);
}

void SipLine::engineIsDown()
{
    setInService(false, m_trouble);
    m_registrationCheck.cancel();
    while (!m_calls.empty())
        end(m_calls.begin(), CallEnd::Unreachable);
}

void SipLine::setInService(bool inService, LineTrouble trouble)
{
    const bool isMoreKnown = m_trouble.exchange(trouble) != trouble;
    const bool changes = m_inService.exchange(inService) != inService;
    if (changes)
        PHONE_USER("the line %s is %s service", m_settings.user.c_str(), inService ? "in" : "out of");
    if (!changes && !isMoreKnown)
        return;
    const std::lock_guard lock(m_observerMutex);
    if (m_pObserver)
        m_pObserver->serviceChanged(*this);
}

void SipLine::dial(const std::string& callId, const std::string& uri)
{
    auto& call = m_calls.emplace_back();
    call.id = callId;
    call.uri = uri;
    if (!m_inService) {
        end(std::prev(m_calls.end()), CallEnd::Unreachable);
        return;
    }
    // The call that was just dialled is the engine's current one: so its id becomes known.
    m_engine->send({{"dial", uri, nDIALLED + callId}, {"callstat", "", nIDENTIFIED + callId}});
    giveUpLater(call);
}

void SipLine::giveUpLater(Call& call)
{
    call.noAnswer = std::make_unique<asio::steady_timer>(m_io, m_settings.noAnswerTime);
    call.noAnswer->async_wait([this, id = call.id](const boost::system::error_code& cancelled) {
        const auto late = find(id);
        if (cancelled || late == m_calls.end() || late->state == CallState::Connected)
            return;
        late->gaveUp = true;
        hangUp(*late);
    });
}

// The engine hangs up its current call, whichever that is: it is told which one first.
void SipLine::hangUp(Call& call)
{
    call.clearing = true;
    if (!call.engineId.empty())
        m_engine->send({{"callfind", call.engineId, ""}, {"hangup", "", ""}});
}

void SipLine::said(const EngineMessage& message)
{
    if (const auto* response = std::get_if<EngineResponse>(&message))
        answered(*response);
    else if (const auto* event = std::get_if<EngineCallEvent>(&message))
        happened(*event);
    else if (const auto* news = std::get_if<EngineRegistration>(&message))
        registration(*news);
}

void SipLine::answered(const EngineResponse& response)
{
    if (response.token.starts_with(nDIALLED) && !response.ok) {
        const auto call = find(response.token.substr(sizeof nDIALLED - 1));
        if (call != m_calls.end())
            end(call, CallEnd::Other);
        return;
    }
    if (!response.token.starts_with(nIDENTIFIED))
        return;
    const auto call = find(response.token.substr(sizeof nIDENTIFIED - 1));
    if (call == m_calls.end())
        return;
    call->engineId = callIdIn(response.data, call->uri);
    if (call->engineId.empty())
        end(call, CallEnd::Other);
    else if (call->clearing)
        hangUp(*call);
}

void SipLine::happened(const EngineCallEvent& event)
{
    if (event.kind == EngineCallEvent::Kind::Incoming) {
        offered(event);
        return;
    }
    const auto call = findAtEngine(event);
    if (call == m_calls.end())
        return;
    if (event.kind == EngineCallEvent::Kind::Closed)
        end(call, call->gaveUp ? CallEnd::NoAnswer : callEndOf(event.reason));
    else
        become(*call,
               event.kind == EngineCallEvent::Kind::Established ? CallState::Connected : CallState::Alerting);
}

void SipLine::offered(const EngineCallEvent& event)
{
    if (!take(nCALL_COMING_IN)) {
        m_engine->send({{"callfind", event.id, ""}, {"hangup", "", ""}});
        return;
    }
    auto& call = m_calls.emplace_back();
    call.engineId = event.id;
    call.state = CallState::Alerting;
    {
        const std::lock_guard lock(m_observerMutex);
        if (m_pObserver)
            call.id = m_pObserver->callOffered(*this, callerOf(event));
    }
    const std::lock_guard lock(m_currentMutex);
    m_current = call.id;
}

void SipLine::registration(const EngineRegistration& event)
{
    if (!m_settings.registrar)
        return;
    setInService(event.registered, event.registered ? LineTrouble::None : troubleOf(event.reason));
    if (event.registered) {
        m_registrationCheck.cancel();
        m_refusal.clear();
        return;
    }
    if (std::exchange(m_refusal, event.reason) != event.reason)
        PHONE_USER("the registrar %s does not take the line %s: %s%s", m_settings.registrar->text().c_str(),
                   m_settings.user.c_str(), event.reason.c_str(), adviceOn(event.reason).c_str());
    const auto now = std::chrono::steady_clock::now();
    registerLater(isPasswordRefused(event.reason) ? now + m_settings.refusedFor
                                                  : now + m_settings.retryDelay);
}

// The engine itself would wait up to half an hour, and never learn of another password. The one that was
// refused it would show again and again, until the registrar locks the account: it rests instead.
void SipLine::registerLater(std::chrono::steady_clock::time_point retry)
{
    m_registrationCheck.expires_after(std::min(nPASSWORD_CHECK, m_settings.retryDelay));
    m_registrationCheck.async_wait([this, retry](const boost::system::error_code& cancelled) {
        if (cancelled)
            return;
        const bool refused = isPasswordRefused(m_refusal);
        const bool due = std::chrono::steady_clock::now() >= retry || (refused && m_engine->hasNewPassword());
        if (m_calls.empty() && due)
            return m_engine->restart();
        if (m_calls.empty() && refused)
            m_engine->rest();
        registerLater(retry);
    });
}

void SipLine::become(Call& call, CallState state)
{
    if (call.state == state)
        return;
    call.state = state;
    tell(call.id, state, CallEnd::Cleared);
}

void SipLine::end(Calls::iterator call, CallEnd why)
{
    const bool failed = why != CallEnd::Cleared && call->state != CallState::Connected && !call->uri.empty();
    const auto id = call->id;
    m_calls.erase(call);
    release(id);
    tell(id, failed ? CallState::Failed : CallState::Null, why);
}

SipLine::Calls::iterator SipLine::find(const std::string& callId)
{
    return std::ranges::find(m_calls, callId, &Call::id);
}

// A call that fails while it is dialled ends before its id is known.
SipLine::Calls::iterator SipLine::findAtEngine(const EngineCallEvent& event)
{
    const auto known = std::ranges::find(m_calls, event.id, &Call::engineId);
    if (known != m_calls.end() || !event.outgoing)
        return known;
    return std::ranges::find_if(m_calls, [&](const auto& call) {
        return call.engineId.empty() && event.peerUri.starts_with(call.uri);
    });
}

void SipLine::tell(const std::string& callId, CallState state, CallEnd why)
{
    const std::lock_guard lock(m_observerMutex);
    if (m_pObserver)
        m_pObserver->callStateChanged(callId, state, why);
}
