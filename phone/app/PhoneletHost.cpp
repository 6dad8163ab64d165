#include "app/PhoneletHost.h"

#include <exception>

#include <framework/display/Frame.h>

#include "app/PhoneLog.h"

namespace {

constexpr char nSOURCE[] = "./phone/app/PhoneletHost";

// Runs a step of a phonelet's life; false when it threw.
bool survived(const std::string& name, const char* step, const std::function<void()>& run)
{
    try {
        run();
        return true;
    } catch (const std::exception& error) {
        PHONE_ERROR("phonelet \"%s\" failed to %s: %s", name.c_str(), step, error.what());
    } catch (...) {
        PHONE_ERROR("phonelet \"%s\" failed to %s", name.c_str(), step);
    }
    return false;
}

} // namespace

PhoneletHost::PhoneletHost(std::string name, Surroundings surroundings)
    : m_name(std::move(name))
    , m_surroundings(std::move(surroundings))
    , m_timers(m_surroundings.events, m_surroundings.clock,
               [](Phonelet& owner, int id) { owner.timerEvent(id); })
    , m_display(*this, m_surroundings.variant)
{
}

PhoneletHost::~PhoneletHost()
{
    stop();
}

Result<void> PhoneletHost::start(const Factory& factory)
{
    auto made = factory();
    if (!made)
        return made.error();
    m_phonelet = std::move(made).value();
    m_phonelet->setPhoneletHandle(this);
    const bool started = survived(m_name, "start", [this] {
        m_phonelet->init(this);
        m_phonelet->startPhonelet();
    });
    if (started)
        return {};
    drop();
    return Error{ErrorCode::Failed, "The phonelet \"" + m_name + "\" failed to start; the log says why."};
}

void PhoneletHost::stop()
{
    if (!m_phonelet)
        return;
    survived(m_name, "stop", [this] {
        m_phonelet->stopPhonelet();
        m_phonelet->shutdown();
    });
    drop();
}

void PhoneletHost::drop()
{
    for (const int id : m_timers.removeAll())
        PHONE_ERROR("phonelet \"%s\" left timer %d at stop", m_name.c_str(), id);
    survived(m_name, "end", [this] { m_phonelet.reset(); });
}

bool PhoneletHost::hasFormAsBase() const
{
    return m_phonelet && m_display.paint().base.role == DisplayAPI::FrameRole::Form;
}

bool PhoneletHost::hasEmptyTabAsBase() const
{
    if (!m_phonelet)
        return false;
    const auto frame = m_display.paint();
    return !frame.tabs.empty() && frame.base.role == DisplayAPI::FrameRole::None;
}

void PhoneletHost::call(const char* event, const std::function<void(Phonelet&)>& operation)
{
    if (m_phonelet)
        m_surroundings.events.deliver(event, [&] { operation(*m_phonelet); });
}

Executable* PhoneletHost::getService(const std::string& name)
{
    return m_surroundings.service(name);
}

void PhoneletHost::setPhoneletState(const std::string& name, int state)
{
    m_surroundings.states.set(name, state);
}

int PhoneletHost::getPhoneletState(const std::string& name) const
{
    return m_surroundings.states.get(name);
}

void PhoneletHost::requestFocus(Phonelet*)
{
    m_surroundings.wantsFront(*this);
}

void PhoneletHost::releaseFocus(Phonelet*)
{
    m_surroundings.wantsToLeave(*this);
}

void PhoneletHost::push(const std::string&, const std::string& phonelet, int)
{
    m_surroundings.pushes(*this, phonelet);
}

int PhoneletHost::dialNumber(const std::string& number, const std::string& callingDevice)
{
    return m_surroundings.dialsItself(number, callingDevice) ? 1 : 0;
}

void PhoneletHost::leave(const std::string&)
{
    m_surroundings.wantsToLeave(*this);
}

void PhoneletHost::wakeAt(std::chrono::milliseconds when)
{
    m_surroundings.events.callAt(when, "display", [this, alive = std::weak_ptr(m_alive)] {
        if (!alive.expired())
            m_display.timePassed();
    });
}

void PhoneletHost::publish(std::shared_ptr<const DisplayAPI::Frame> frame, DisplayAPI::FrameMoment moment)
{
    m_surroundings.publish(*this, *frame, moment);
}

std::vector<std::string> PhoneletHost::charactersOnKey(char digit) const
{
    return m_surroundings.charactersOnKey(digit);
}
