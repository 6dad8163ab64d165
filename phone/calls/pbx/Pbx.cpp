#include "Pbx.h"

#include <framework/csta/CSTAEvents.h>
#include <framework/csta/CSTARequests.h>
#include <framework/csta/communicationsServiceTexts.h>

#include "app/PhoneLog.h"

using namespace communicationsServiceTexts;

namespace {

constexpr char nSOURCE[] = "./phone/calls/pbx/Pbx";

constexpr int SUCCESS = 0;
constexpr int REFUSED = 1;
// Events that wait to be heard. An answer comes behind them, and while it is waited for nobody hears: then as
// many are let in as a busy PBX sends in the longest time that a request may take.
constexpr int MOST_QUEUED = 2000;
constexpr int MOST_QUEUED_WHILE_WAITED_FOR = 60000;

// A phonelet knows three states; "" is no word about it.
std::string stateOf(const std::string& systemStatus)
{
    if (systemStatus.empty() || systemStatus == systemState_disabled ||
        systemStatus == systemState_partiallyDisabled)
        return systemStatus;
    return systemStatus == "initializing" ? systemState_disabled : systemState_enabled;
}

void refuse(CSTARequest& request)
{
    request.setResponse(REFUSED, std::make_unique<CSTAErrorCode>(CSTAErrorCode::OTHER));
}

} // namespace

Pbx::Pbx(const PbxSettings& settings, Raise raise)
    : m_settings(settings)
    , m_raise(std::move(raise))
    , m_link(settings, *this)
    , m_state(systemState_enabled)
{
}

Pbx::~Pbx()
{
    stop();
}

void Pbx::stop()
{
    m_link.stop();
    if (isLinked())
        linkDown();
}

std::unique_ptr<LineIfc> Pbx::makeLine()
{
    auto line = std::make_unique<PbxLine>(m_settings.device, m_link);
    m_pLine = line.get();
    return line;
}

void Pbx::answerSystemStatus(CSTARequestSystemStatusRequest& request)
{
    const auto& feature = request.getFeatureData();
    if (feature.Action == content_feature_query) {
        std::lock_guard lock(m_mutex);
        auto known = feature;
        const bool isThere = m_hasPhonebook && feature.featureName == content_feature_name_pbxphonebook;
        known.Availability = isThere ? content_feature_available : content_feature_unavailable;
        request.setResponse(SUCCESS, std::make_unique<CSTARequestSystemStatusResponse>(m_state, known));
        return;
    }
    const auto result = waitFor(requestSystemStatus(feature));
    if (!result || errorIn(result.value())) {
        const auto error = result ? errorIn(result.value()) : std::nullopt;
        PHONE_USER("the PBX refused \"%s\" of %s: %s", feature.Action.c_str(), feature.featureName.c_str(),
                   error ? error->value.c_str() : result.error().sentence.c_str());
        refuse(request);
        return;
    }
    const auto status = systemStatusIn(result.value());
    request.setResponse(SUCCESS, std::make_unique<CSTARequestSystemStatusResponse>(
                                     stateOf(status.status), status.feature.value_or(feature)));
}

// The link's answers come on its own thread, and end with it: before this goes.
Result<CstaElement> Pbx::waitFor(CstaElement message)
{
    const auto answered = std::make_shared<std::optional<Result<CstaElement>>>();
    m_link.request(std::move(message), [this, answered](const Result<CstaElement>& answer) {
        std::lock_guard lock(m_waitMutex);
        *answered = answer;
        m_woken.notify_all();
    });
    std::unique_lock lock(m_waitMutex);
    m_isWaitedFor = true;
    m_woken.wait(lock, [&] { return m_isUrgent || answered->has_value(); });
    m_isWaitedFor = false;
    if (!answered->has_value())
        return Error{ErrorCode::Unavailable, "The user did not wait for the PBX."};
    return **answered;
}

void Pbx::setUrgent(bool urgent)
{
    std::lock_guard lock(m_waitMutex);
    m_isUrgent = urgent;
    m_woken.notify_all();
}

void Pbx::pressButton(CSTAButtonPressRequest& request)
{
    if (!isLinked()) {
        refuse(request);
        return;
    }
    m_link.request(buttonPress(m_settings.device, request.getButton()),
                   [](const Result<CstaElement>& answer) {
                       if (!answer)
                           PHONE_REFUSED("a key for the PBX is lost: %s", answer.error().sentence.c_str());
                   });
    request.setResponse(SUCCESS, nullptr);
}

bool Pbx::isLinked() const
{
    std::lock_guard lock(m_mutex);
    return m_isLinked;
}

void Pbx::linkUp(const CstaSystemStatus& status)
{
    {
        std::lock_guard lock(m_mutex);
        m_isLinked = true;
    }
    learn(status);
    if (m_pLine)
        m_pLine->setInService(true);
}

void Pbx::linkDown()
{
    {
        std::lock_guard lock(m_mutex);
        m_isLinked = false;
        m_state = systemState_enabled;
        m_hasPhonebook = false;
    }
    if (m_pLine)
        m_pLine->setInService(false);
    raiseStatus(systemState_disabled, {});
}

void Pbx::linkFailed()
{
    if (m_pLine)
        m_pLine->setInService(false);
}

void Pbx::received(const CstaEventContent& event)
{
    if (const auto* call = std::get_if<CstaCallEvent>(&event)) {
        if (m_pLine)
            m_pLine->follow(*call);
    } else if (const auto* status = std::get_if<CstaSystemStatus>(&event)) {
        learn(*status);
    } else if (const auto* rows = std::get_if<CstaDisplayRows>(&event)) {
        for (const auto& row : *rows)
            raise(
                std::make_unique<CSTADisplayUpdatedEvent>(row.displayId, std::to_string(row.row), row.text));
    }
}

// A disabled PBX has no feature. When it is enabled again, what was known of the feature is told anew.
void Pbx::learn(const CstaSystemStatus& status)
{
    const auto state = stateOf(status.status);
    const bool isKnownNow = status.feature &&
                            status.feature->featureName == content_feature_name_pbxphonebook &&
                            !status.feature->Availability.empty();
    bool wasEnabled = true;
    bool isEnabled = true;
    {
        std::lock_guard lock(m_mutex);
        wasEnabled = m_state == systemState_enabled;
        if (!state.empty())
            m_state = state;
        isEnabled = m_state == systemState_enabled;
        if (isKnownNow)
            m_hasPhonebook = status.feature->Availability == content_feature_available;
    }
    if (!isEnabled) {
        raiseStatus(m_state, status.feature.value_or(FeatureData()));
        return;
    }
    if (status.feature)
        raiseStatus("", *status.feature);
    if (!status.feature || (!wasEnabled && !isKnownNow))
        raiseStatus("", phonebook());
}

FeatureData Pbx::phonebook() const
{
    std::lock_guard lock(m_mutex);
    FeatureData feature;
    feature.featureName = content_feature_name_pbxphonebook;
    feature.Availability = m_hasPhonebook ? content_feature_available : content_feature_unavailable;
    return feature;
}

void Pbx::raiseStatus(const std::string& state, const FeatureData& feature)
{
    raise(std::make_unique<CSTASystemStatusEvent>(state, feature));
}

// Events are counted until nobody holds them any more.
void Pbx::raise(std::unique_ptr<CSTAEvent> event)
{
    ++*m_queued;
    m_raise({event.release(), [queued = m_queued](CSTAEvent* heard) {
                 delete heard;
                 --*queued;
             }});
}

bool Pbx::isBehind()
{
    return *m_queued >= (m_isWaitedFor ? MOST_QUEUED_WHILE_WAITED_FOR : MOST_QUEUED);
}
