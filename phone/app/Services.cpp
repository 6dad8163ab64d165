#include "app/Services.h"

#include <algorithm>
#include <map>
#include <utility>

#include "app/PhoneLog.h"
#include "calls/sip/SipLine.h"

namespace {

constexpr char nSOURCE[] = "./phone/app/Services";
// How soon after a call other settings of the line count.
constexpr std::chrono::milliseconds nCALL_CHECK{500};

// Where an item lives in the option store, and under which name the telephone remembers what it
// wrote there last: the file may change while the telephone is off.
struct OptionNames {
    std::string tag;
    std::string state;
};
const std::map<std::string, OptionNames> SHARED_ITEMS{
    {"ldap-qualifier", {"LdapQualifier", "administrator ldap-qualifier"}},
    {"ldap-display-option", {"LdapDisplayOptions", "administrator ldap-display-option"}}};

bool concernsCorporateDirectory(const std::string& item)
{
    return item == "country-code" || (item.starts_with("ldap-") && !SHARED_ITEMS.contains(item) &&
                                      item != "ldap-search-trigger-timeout");
}

bool concernsPbx(const std::string& item)
{
    return item.starts_with("pbx-") || item == "localDeviceID" || item == "sip-user";
}

DialPlanRules rulesOf(const Configuration& configuration)
{
    DialPlanRules rules;
    rules.countryCode = configuration.text("country-code");
    rules.areaCode = configuration.text("area-code");
    rules.nationalPrefix = configuration.text("national-prefix");
    rules.nationalDigits = configuration.number("national-digits");
    rules.leastLocalDigits = configuration.number("least-local-digits");
    rules.internationalPrefix = configuration.text("international-prefix");
    rules.outsideLine = configuration.text("outside-line");
    rules.otherOutsideLines = configuration.list("other-outside-lines");
    rules.dialsLocalNumbers = configuration.yes("local-dialling");
    rules.internalDigits = configuration.number("internal-digits");
    rules.internalPatterns = configuration.list("internal-patterns");
    rules.internalFirstDigits = configuration.text("internal-first-digits");
    rules.enterprisePrefix = configuration.text("enterprise-prefix");
    rules.emergencyNumbers = configuration.list("emergency-numbers");
    rules.serviceNumbers = configuration.list("service-numbers");
    return rules;
}

DialTimes timesOf(const Configuration& configuration)
{
    return {std::chrono::seconds(configuration.number("initial-digit-timeout")),
            std::chrono::seconds(configuration.number("inter-digit-timeout"))};
}

} // namespace

Result<std::unique_ptr<Services>> Services::open(Parts parts)
{
    DirectoryOptions options;
    options.language = parts.configuration.text("language");
    options.groupSlots = parts.configuration.number("group-slots");
    if (!parts.watch)
        options.watchInterval = std::chrono::milliseconds(0);
    auto directory = DirectoryService::open(parts.profile.data, options, parts.events, parts.updates);
    if (!directory)
        return directory.error();
    auto journal = Journal::open(parts.profile.data, parts.clock, parts.events, options.watchInterval);
    if (!journal)
        return journal.error();
    return std::unique_ptr<Services>(
        new Services(std::move(parts), std::move(directory).value(), std::move(journal).value()));
}

Services::Services(Parts parts, std::unique_ptr<DirectoryService> directory, std::unique_ptr<Journal> journal)
    : m_parts(std::move(parts))
    , m_directory(std::move(directory))
    , m_journal(std::move(journal))
    , m_digits(rulesOf(m_parts.configuration), timesOf(m_parts.configuration), m_parts.clock, m_parts.events,
               m_parts.timers)
    , m_calls(m_parts.events, callHooks())
    , m_localMgmt(m_parts.configuration, m_parts.profile.pictures(), m_parts.events,
                  [this] { return m_obex.isActive(); })
    , m_physicalInterface(m_parts.events)
    , m_obex(m_parts.events, m_parts.profile.data)
{
    for (const auto& [item, names] : SHARED_ITEMS)
        copyToOptionStore(item);
    setCorporateDirectory();
    setSending();
    setSipLine();
    setPbx();
}

CallHooks Services::callHooks()
{
    return {[this](const std::string& number) { return placed(number); },
            [this] {
                m_digits.dialingStopped();
                m_parts.dialingStopped();
            },
            [this](const std::string& number) { return m_digits.toDialString(number); },
            [this](const std::string& number) { return m_digits.toExtension(number); },
            [this](CallRecord& call) { identify(call); },
            &m_parts.callBar};
}

std::string Services::placed(const std::string& number)
{
    const auto party = m_digits.partyOf(number);
    // Who is redialled has the name that he was dialled by.
    auto name = Journal::nameOf(party);
    if (name.empty())
        name = nameDialledBefore(number);
    m_journal->addDialled(party);
    return name;
}

std::string Services::nameDialledBefore(const std::string& number) const
{
    const auto digits = m_digits.toDialString(number);
    return m_journal->lastName(
        [&](const std::string& dialled) { return m_digits.toDialString(dialled) == digits; });
}

void Services::identify(CallRecord& call)
{
    call.shownNumber = call.incoming ? m_digits.shownCaller(call.number) : m_digits.shownCalled(call.number);
    call.names = namesOf(call);
}

std::vector<std::string> Services::namesOf(const CallRecord& call)
{
    if (call.number.empty())
        return {};
    const auto canonical = [this](std::string form) {
        m_digits.convertToCanonical(form);
        return form;
    };
    // With the digits for an outside line before it, it may read like another country's.
    auto names = m_directory->namesWithNumber(call.number, canonical);
    return names.empty() ? m_directory->namesWithNumber(m_digits.canonicalOfDialled(call.number), canonical)
                         : names;
}

Executable* Services::find(const std::string& name)
{
    const std::map<std::string, Executable*> services{
        {"DirectoryServiceIfc", m_directory.get()},
        {"CSTAServiceIfc", &m_calls},
        {"DigitAnalysisServiceIfc", &m_digits},
        {"LocalMgmtIfc", &m_localMgmt},
        {"DataAccessServiceIfc", &m_dataAccess},
        {"TeamServiceIfc", &m_team},
        {"JournalServiceIfc", m_journal.get()},
        {"OBEXServiceIfc", &m_obex},
        {"PhysicalInterfaceServiceIfc", &m_physicalInterface},
    };
    const auto service = services.find(name);
    return service == services.end() ? nullptr : service->second;
}

void Services::addLine(std::unique_ptr<LineIfc> line)
{
    m_lines.push_back(line.get());
    m_calls.addLine(std::move(line));
}

void Services::removeLine(const LineIfc*& line)
{
    if (!line)
        return;
    std::erase(m_lines, line);
    m_calls.removeLine(*std::exchange(line, nullptr));
}

bool Services::hasLine() const
{
    return std::any_of(m_lines.begin(), m_lines.end(), [](const auto* line) { return line->isInService(); });
}

LineTrouble Services::lineTrouble() const
{
    if (hasLine())
        return LineTrouble::None;
    if (m_sipLineFaulty || m_pbxLineFaulty)
        return LineTrouble::Failed;
    const auto inTrouble =
        std::ranges::find_if(m_lines, [](const auto* line) { return line->trouble() != LineTrouble::None; });
    return inTrouble == m_lines.end() ? LineTrouble::None : (*inTrouble)->trouble();
}

void Services::itemChanged(const std::string& name)
{
    copyToOptionStore(name);
    if (concernsCorporateDirectory(name))
        setCorporateDirectory();
    if (name.starts_with("sip-"))
        setSipLine();
    if (concernsPbx(name))
        setPbx();
    if (name.starts_with("bt-"))
        setSending();
    m_digits.setRules(rulesOf(m_parts.configuration), timesOf(m_parts.configuration));
    m_localMgmt.itemChanged(name);
}

void Services::setCorporateDirectory()
{
    m_directory->setCorporateDirectory(ldapSettingsOf(m_parts.configuration, m_parts.profile.data));
}

void Services::setSipLine()
{
    // Where the clock is not the world's, nothing is started that lives by the world's.
    if (!m_parts.watch)
        return;
    const auto setup = sipSettingsOf(m_parts.configuration, m_parts.profile.data);
    const auto settings = setup.usable() ? std::optional(setup.settings) : std::nullopt;
    m_sipLineFaulty = setup.wanted && !setup.faults.empty();
    if (setup.wanted) {
        for (const auto& sentence : setup.faults)
            PHONE_ERROR("%s", sentence.c_str());
    }
    if (settings == m_sipLine)
        return;
    // A call is worth more than a setting.
    if (m_pSipLine && m_calls.hasCalls()) {
        setLinesLater();
        return;
    }
    removeLine(m_pSipLine);
    m_sipLine = settings;
    if (!settings)
        return;
    auto line = std::make_unique<SipLine>(*settings);
    m_pSipLine = line.get();
    addLine(std::move(line));
}

void Services::setLinesLater()
{
    if (std::exchange(m_linesWait, true))
        return;
    m_parts.timers.callAt(m_parts.clock.now() + nCALL_CHECK, "line settings",
                          [this, alive = std::weak_ptr(m_alive)] {
                              if (alive.expired())
                                  return;
                              m_linesWait = false;
                              setSipLine();
                              setPbx();
                          });
}

void Services::setUrgent(bool urgent)
{
    m_directory->setUrgent(urgent);
    hurryPbx(urgent);
}

void Services::stopWaiting()
{
    m_directory->cancelSearches();
    hurryPbx(true);
}

void Services::hurryPbx(bool urgent)
{
    std::lock_guard lock(m_pbxMutex);
    if (m_pbx)
        m_pbx->setUrgent(urgent);
}

void Services::setPbx()
{
    const auto settings = pbxSettingsOf(m_parts.configuration);
    m_pbxLineFaulty = !settings && takesCallsOverPbx(m_parts.configuration);
    if (m_pbx ? settings == m_pbx->settings() : !settings)
        return;
    if (m_pPbxLine && m_calls.hasCalls()) {
        setLinesLater();
        return;
    }
    if (m_pbx) {
        m_pbx->stop();
        m_calls.setPbx(nullptr);
        removeLine(m_pPbxLine);
    }
    const auto raise = [this](std::shared_ptr<CSTAEvent> event) { m_calls.raise(std::move(event)); };
    {
        std::lock_guard lock(m_pbxMutex);
        m_pbx = settings ? std::make_unique<Pbx>(*settings, raise) : nullptr;
    }
    if (!settings)
        return;
    if (settings->takesCalls) {
        auto line = m_pbx->makeLine();
        m_pPbxLine = line.get();
        addLine(std::move(line));
    }
    m_calls.setPbx(m_pbx.get());
    m_pbx->start();
}

void Services::setSending()
{
    m_obex.setDevice(m_parts.configuration.text("bt-device"));
    // Where the clock is not the world's, the world's devices are left alone.
    m_obex.setAllowed(m_parts.watch && m_parts.configuration.yes("bt-enabled"));
}

void Services::dropObservers()
{
    m_localMgmt.dropObservers();
    m_physicalInterface.dropObservers();
}

void Services::copyToOptionStore(const std::string& item)
{
    const auto shared = SHARED_ITEMS.find(item);
    if (shared == SHARED_ITEMS.end())
        return;
    const auto& [tag, state] = shared->second;
    const int value = m_parts.configuration.number(item);
    if (m_parts.states.get(state) == value)
        return;
    if (m_directory->writeOption(tag, value) == 0)
        m_parts.states.set(state, value);
    else
        PHONE_ERROR("item \"%s\" cannot be written to the option store", item.c_str());
}
