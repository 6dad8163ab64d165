#include "app/Phone.h"

#include <algorithm>

#include <framework/csta/CSTARequests.h>
#include <framework/display/Frame.h>
#include <framework/host/EventQueue.h>
#include <framework/util/HardwareVersion.h>

#include "app/PhoneLog.h"
#include "system/KeypadLetters.h"

using DisplayAPI::FrameMoment;
using DisplayAPI::FrameRole;
using std::chrono::milliseconds;

namespace {
constexpr char nSOURCE[] = "./phone/app/Phone";

// Null for no problem.
const char* textOf(ContactStore::Problem problem)
{
    switch (problem) {
    case ContactStore::Problem::None:
        return nullptr;
    case ContactStore::Problem::Foreign:
        return "phone.store.foreign";
    case ContactStore::Problem::LaterVersion:
        return "phone.store.later";
    case ContactStore::Problem::Damaged:
        return "phone.store.damaged";
    case ContactStore::Problem::ReadOnly:
        return "phone.store.readonly";
    case ContactStore::Problem::DiskFull:
        return "phone.store.full";
    case ContactStore::Problem::Busy:
        return "phone.store.busy";
    }
    return nullptr;
}

// Null for no trouble.
const char* textOf(LineTrouble trouble)
{
    switch (trouble) {
    case LineTrouble::None:
        return nullptr;
    case LineTrouble::Refused:
        return "phone.line.refused";
    case LineTrouble::Failed:
        break;
    }
    return "phone.line.failed";
}

// Why a call was refused, where the calls above the screen do not say so.
std::string textOf(std::optional<int> refusal)
{
    if (refusal == CSTAErrorCode::NO_LINE_AVAILABLE)
        return "no.line.available";
    return refusal == CSTAErrorCode::LINE_SELECTION_NEEDED ? "line.selection.needed" : "";
}

} // namespace

Result<std::unique_ptr<Phone>> Phone::create(PhoneOptions options)
{
    if (auto made = options.profile.create(); !made)
        return made.error();
    std::unique_ptr<Phone> phone(new Phone(std::move(options)));
    if (auto opened = phone->openServices(); !opened)
        return opened.error();
    return phone;
}

Phone::Phone(PhoneOptions options)
    : m_options(std::move(options))
    , m_clock(m_options.clock ? static_cast<const Clock&>(*m_options.clock) : m_systemClock)
    , m_events(m_clock)
    , m_frames(m_clock)
    , m_configuration(m_options.profile.configFile(), m_options.items)
    , m_translator(m_options.catalogues, m_configuration.text("language"))
    , m_callBar(
          {m_clock, m_events, m_translator, [this](auto calls) { m_frames.setCalls(std::move(calls)); }})
    , m_states(m_options.profile.data / "phonelets.json")
    , m_updates(m_events, [this] { return changesMustWait(); })
    , m_idleDialler({[this](const std::string& digits) { m_services->digits().setDialString(digits, 0); },
                     [this](const std::string& number) { return textOf(placeCall(number, "")); }})
    , m_idle({m_clock, m_translator, variant(), [this] { return m_translator.language(); },
              [this] { return lineState(); }, [this] { return advice(); },
              [this] { m_router->openPhonebook(); }, m_idleDialler})
    , m_stage([this] { becomeIdle(); })
    , m_keys(m_events, m_frames,
             {[this](const PhoneKey& key) { m_router->route(key); },
              [this](std::uint64_t id) { closeNotification(id); }, [this](bool urgent) { hurry(urgent); }})
{
    HardwareVersion::setHWVariant(m_configuration.number("hardware-variant"));
    m_events.setDone([this] { eventDone(); });
}

Result<void> Phone::openServices()
{
    const bool watch = m_options.clock == nullptr;
    auto services =
        Services::open({m_configuration, m_options.profile, m_clock, m_events, m_events, m_updates, m_states,
                        watch, [this] { m_router->diallingEnded(); }, m_callBar});
    if (!services)
        return services.error();
    m_services = std::move(services).value();
    m_router = std::make_unique<KeyRouter>(m_stage, m_idle, m_services->physicalInterface(), dialling());
    makeHosts();
    makeSendScreen();
    return {};
}

void Phone::makeSendScreen()
{
    auto& sending = m_services->sending();
    m_sendScreen = std::make_unique<SendScreen>(SendScreen::Parts{
        m_events, m_translator,
        [this]() -> DisplayAPI::Display* { return m_stage.front() ? &m_stage.front()->display() : nullptr; },
        [&sending](const std::string& address) { sending.choose(address); },
        [&sending] { sending.cancel(); }});
    sending.setObserver(m_sendScreen.get());
}

Phone::~Phone()
{
    stop();
}

void Phone::start()
{
    m_events.post("start", [this] { startPhonelets(); });
    if (m_options.clock)
        return;
    m_watch = std::make_unique<FileWatch>(m_configuration.file(), [this] { reloadConfiguration(); });
    m_events.start();
}

void Phone::stop()
{
    if (m_stopped || !m_services)
        return;
    m_stopped = true;
    m_watch.reset();
    m_services->stopWaiting(); // the event thread may be
    m_systemClock.setUrgent(true);
    m_events.stopAfter("stop phonelets", [this] { stopPhonelets(); });
    m_frames.close();
}

Phonelet* Phone::phonelet(const std::string& name)
{
    auto* host = hostOf(name);
    return host ? host->phonelet() : nullptr;
}

void Phone::reloadConfiguration()
{
    m_events.post("configuration", [this] { applyConfiguration(); });
}

void Phone::advance(milliseconds by)
{
    m_events.advance(*m_options.clock, by);
}

// --- Phonelets ---

void Phone::makeHosts()
{
    for (const auto& named : m_options.phonelets)
        m_hosts.push_back(std::make_unique<PhoneletHost>(named.name, surroundings()));
    if (!m_hosts.empty())
        m_router->setPhonebook(m_hosts.front().get());
}

PhoneletHost::Surroundings Phone::surroundings()
{
    return {
        m_events,
        m_clock,
        m_translator,
        m_states,
        variant(),
        [this](const std::string& name) { return service(name); },
        [this](char digit) { return keypadLetters(m_translator.language(), digit); },
        [this](const std::string& number, const std::string& device) { return dialsItself(number, device); },
        [this](const PhoneletHost& host, const DisplayAPI::Frame& frame, FrameMoment moment) {
            if (m_stage.front() == &host)
                m_frames.publish(frame, moment);
        },
        [this](PhoneletHost& host) { m_events.post("focus", [this, &host] { m_stage.open(host); }); },
        [this](PhoneletHost& host) { m_events.post("leave", [this, &host] { m_stage.leave(host); }); },
        [this](PhoneletHost& parent, const std::string& child) {
            m_events.post("push", [this, &parent, child] { push(parent, child); });
        }};
}

PhoneletHost* Phone::hostOf(const std::string& name)
{
    const auto host =
        std::find_if(m_hosts.begin(), m_hosts.end(), [&](const auto& h) { return h->name() == name; });
    return host == m_hosts.end() ? nullptr : host->get();
}

Result<std::unique_ptr<Phonelet>> Phone::makePhonelet(const PhoneletLibrary& named)
{
    auto plugin = Plugin::load(named.library);
    if (!plugin)
        return plugin.error();
    m_plugins.push_back(std::move(plugin).value());
    auto phonelet = m_plugins.back().create();
    if (phonelet && m_options.wrapPhonelet)
        return m_options.wrapPhonelet(std::move(phonelet).value());
    return phonelet;
}

void Phone::startPhonelets()
{
    tellRefusals();
    if (m_options.setLogLevel)
        m_options.setLogLevel(m_configuration.number("log-level"));
    for (std::size_t i = 0; i < m_hosts.size(); ++i) {
        const auto& named = m_options.phonelets[i];
        const auto started = m_hosts[i]->start([&] { return makePhonelet(named); });
        if (started)
            continue;
        PHONE_ERROR("%s", started.error().sentence.c_str());
        const bool missing = started.error().code == ErrorCode::NotFound;
        m_idle.addNotice(missing ? "phone.plugin.missing" : "phone.plugin.failed", {named.name});
    }
    becomeIdle();
    wakeAtNextMinute();
}

void Phone::stopPhonelets()
{
    m_stage.home();
    for (const auto& host : m_hosts)
        host->stop();
    m_services->dropObservers();
    m_services->sending().setObserver(nullptr);
    DisplayAPI::EventQueue::discardAll();
}

Executable* Phone::service(const std::string& name)
{
    auto* service = m_services->find(name);
    return m_options.replaceService ? m_options.replaceService(name, service) : service;
}

bool Phone::dialsItself(const std::string& number, const std::string& device)
{
    const auto emergency = m_configuration.list("emergency-numbers");
    return std::find(emergency.begin(), emergency.end(), number) != emergency.end() &&
           !placeCall(number, device);
}

std::optional<int> Phone::placeCall(const std::string& number, const std::string& device)
{
    CSTAMakeCallRequest call;
    call.SetCallingDevice(device);
    call.SetCalledDevice(number);
    m_services->calls().sendRequest(call);
    if (call.getResponseCode() == 0)
        return std::nullopt;
    const auto* error = dynamic_cast<const CSTAErrorCode*>(call.getResponse());
    return error ? error->getErrorCause() : CSTAErrorCode::OTHER;
}

void Phone::push(PhoneletHost& parent, const std::string& child)
{
    auto* host = hostOf(child);
    if (host)
        m_stage.push(parent, *host);
    else
        PHONE_REFUSED("there is no phonelet \"%s\" for \"%s\"", child.c_str(), parent.name().c_str());
}

// --- Screen and keys ---

DisplayAPI::DisplayVariant Phone::variant() const
{
    return {m_configuration.yes("soft-key-bar"), m_configuration.number("visible-rows")};
}

KeyRouter::Dialling Phone::dialling()
{
    const auto hangUp = [this] {
        m_services->calls().hangUp();
        m_services->digits().onHook();
        m_idleDialler.handleDialingStopped();
    };
    const auto hook = [this, hangUp](bool offHook) {
        // With a call in front, it is what the handset is lifted for.
        if (!offHook)
            hangUp();
        else if (m_services->calls().isCalling())
            m_services->digits().liftedForCall();
        else
            m_services->digits().offHook();
    };
    const auto liftedForCall = [this] { m_services->digits().liftedForCall(); };
    const auto digit = [this](char typed) {
        // What is in front takes no digits: the telephone itself does.
        if (m_stage.front() && !m_services->digits().hasProvider())
            m_stage.home();
        m_services->digits().digit(typed);
        if (!m_stage.front())
            m_idleDialler.typed(typed);
    };
    const auto answer = [this](const std::string& call) {
        auto& calls = m_services->calls();
        const bool taken = call.empty() ? calls.answer() : calls.answer(call);
        if (taken)
            callAccepted();
        return taken;
    };
    const auto end = [this](const std::string& call) {
        return call.empty() ? m_services->calls().reject() : m_services->calls().end(call);
    };
    const auto isCalling = [this] { return m_services->calls().isCalling(); };
    return {hook, liftedForCall, digit, hangUp, isCalling, answer, end};
}

// It takes the screen, and the place of what was being dialled.
void Phone::callAccepted()
{
    if (m_services->digits().isDialling())
        m_services->digits().dialingStopped();
    m_idleDialler.handleDialingStopped();
    m_stage.home();
}

void Phone::eventDone()
{
    m_updates.eventDone();
    forgetDigitsOutOfSight();
    if (auto* front = m_stage.front())
        front->display().eventDone();
    else
        m_frames.publish(m_idle.paint(), FrameMoment::AfterEvent);
    m_frames.setHook(m_router->isOffHook(), m_router->isDialPadOn());
    m_callBar.repaint();
}

// What is not on the screen any more must not be dialled when the time for another digit is over: what was
// typed at the idle screen that a phonelet has covered, and what a dialler held that is closed or shows
// another number now.
void Phone::forgetDigitsOutOfSight()
{
    auto* front = m_stage.front();
    if (!front)
        return;
    auto& digits = m_services->digits();
    m_idleDialler.handleDialingStopped();
    digits.clearCallContextProvider(&m_idleDialler);
    if (!digits.isDialling())
        return;
    const auto frame = front->display().paint();
    const auto dialler = std::ranges::find(frame.popups, FrameRole::Dialler, &DisplayAPI::FrameScreen::role);
    if (dialler == frame.popups.end())
        digits.dialingStopped();
    else
        digits.replace(dialler->dialler.edit);
}

void Phone::becomeIdle()
{
    m_services->digits().setCallContextProvider(&m_idleDialler);
    showIdle();
}

void Phone::showIdle()
{
    m_frames.publish(m_idle.paint(), FrameMoment::InsideEvent);
}

void Phone::wakeAtNextMinute()
{
    m_events.callAt(m_idle.nextMinute(), "minute", [this] { wakeAtNextMinute(); });
}

void Phone::hurry(bool urgent)
{
    m_services->setUrgent(urgent);
    m_systemClock.setUrgent(urgent);
}

void Phone::closeNotification(std::uint64_t id)
{
    if (auto* front = m_stage.front())
        front->display().closeNotification(id);
}

std::string Phone::lineState() const
{
    if (m_router->isOffHook())
        return m_translator.translate("phone.offHook");
    return m_translator.translate(m_services->hasLine() ? "phone.lineReady" : "phone.noLine");
}

std::vector<std::string> Phone::advice()
{
    std::vector<std::string> advice;
    if (const char* key = textOf(m_services->lineTrouble()))
        advice.push_back(m_translator.translate(key));
    auto& directory = m_services->directory();
    if (const char* key = textOf(directory.problem()))
        advice.push_back(
            m_translator.translate(key, DirectoryService::fileIn(m_options.profile.data).string()));
    else if (directory.isEmpty())
        advice.push_back(m_translator.translate("phone.emptyBook"));
    return advice;
}

// --- Configuration ---

void Phone::applyConfiguration()
{
    const auto reload = m_configuration.reload();
    tellRefusals();
    for (const auto& name : reload.changed) {
        if (name == "language")
            m_updates.post("language", [this] { changeLanguage(); });
        if (name == "log-level" && m_options.setLogLevel)
            m_options.setLogLevel(m_configuration.number(name));
        m_services->itemChanged(name);
    }
}

void Phone::tellRefusals()
{
    for (const auto& refusal : m_configuration.refused()) {
        PHONE_ERROR("%s", refusal.sentence.c_str());
        const auto file = m_configuration.file().filename().string();
        if (refusal.line > 0)
            m_idle.addNotice("phone.config.refused", {file, std::to_string(refusal.line), refusal.reason});
        else
            m_idle.addNotice("phone.config.unreadable", {file, refusal.reason});
    }
}

void Phone::changeLanguage()
{
    const auto language = m_configuration.text("language");
    m_translator.setLanguage(language);
    m_services->setLanguage(language);
    for (const auto& host : m_hosts) {
        host->call("locale changed", [&language](Phonelet& phonelet) { phonelet.localeChanged(language); });
        host->display().repaint();
    }
}

// A form would lose what was typed. On an empty tab the phonebook could not ask what to do with a change, and
// would be of no use on its other tabs until it can.
bool Phone::changesMustWait() const
{
    return std::any_of(m_hosts.begin(), m_hosts.end(), [this](const auto& host) {
        return host->hasFormAsBase() || (m_stage.holds(*host) && host->hasEmptyTabAsBase());
    });
}
