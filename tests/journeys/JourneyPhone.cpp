#include "JourneyPhone.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include <framework/display/Frame.h>
#include <framework/display/PopupNotification.h>
#include <framework/host/TextScreen.h>

#include <testing/CheckedPhonelet.h>

#include "app/PhoneKey.h"
#include "app/Resources.h"
#include "calls/Journal.h"
#include "directory/BackupCommand.h"
#include "directory/ContactStore.h"
#include "directory/DirectoryService.h"
#include "directory/ldap/LdapPassword.h"

#include "Company.h"

using DisplayAPI::FrameRole;

namespace {

// "a=1; b=2" and "Miller, Anna" fall apart at their signs, without the blanks around.
std::vector<std::string> split(const std::string& text, char at)
{
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, at);) {
        const auto first = part.find_first_not_of(' ');
        parts.push_back(first == part.npos ? "" : part.substr(first, part.find_last_not_of(' ') - first + 1));
    }
    return parts;
}

DefaultNumber defaultNumber(const std::string& name)
{
    const std::map<std::string, DefaultNumber> names{{"office", DefaultNumber::Office},
                                                     {"office2", DefaultNumber::Office2},
                                                     {"mobile", DefaultNumber::Mobile},
                                                     {"private", DefaultNumber::Private}};
    return names.at(name);
}

// The slot of a group, which is named if need be.
int slotOf(ContactStore& store, const std::string& name)
{
    auto names = store.groupNames(20).value();
    auto slot = std::find(names.begin(), names.end(), name);
    if (slot == names.end()) {
        slot = std::find(names.begin(), names.end(), "");
        *slot = name;
        (void)store.writeGroupNames(names).ok();
    }
    return static_cast<int>(slot - names.begin()) + 1;
}

void add(ContactStore& store, const std::string& description)
{
    const auto parts = split(description, ';');
    const auto names = split(parts.at(0), ',');
    Contact contact;
    contact.surname = names.at(0);
    contact.firstname = names.size() > 1 ? names[1] : "";
    const std::map<std::string, std::string*> fields{
        {"office", &contact.office},         {"office2", &contact.office2}, {"mobile", &contact.mobile},
        {"private", &contact.privateNumber}, {"company", &contact.company}, {"email", &contact.email},
        {"picture", &contact.picture}};
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const auto pair = split(parts[i], '=');
        if (pair.at(0) == "group")
            contact.group = slotOf(store, pair.at(1));
        else if (pair.at(0) == "default")
            contact.defaultNumber = defaultNumber(pair.at(1));
        else
            *fields.at(pair.at(0)) = pair.at(1);
    }
    if (contact.defaultNumber == DefaultNumber::None && !contact.office.empty())
        contact.defaultNumber = DefaultNumber::Office;
    if (!store.write(contact))
        throw std::runtime_error("not stored: " + description);
}

// The journey's items, with what the company's directory needs besides its server's name.
std::map<std::string, std::string> itemsOf(const Journey& journey)
{
    auto items = journey.items;
    if (items.contains("ldap-servers")) {
        items.try_emplace("ldap-base", Slapd::base());
        items.try_emplace("ldap-ca-file", Company::shared().authority());
    }
    return items;
}

} // namespace

// Takes every call, and answers when the journey says so.
class JourneyPhone::Line final : public LineIfc {
public:
    Line(std::string number, std::vector<std::string>& calls)
        : m_number(std::move(number))
        , m_calls(calls)
    {
    }

    // Nothing when no call was placed.
    void become(CallState state, CallEnd why = CallEnd::Cleared)
    {
        if (!m_callId.empty())
            m_pObserver->callStateChanged(m_callId, state, why);
    }
    // "030 12, Anna" calls.
    void ring(const std::string& caller)
    {
        const auto parts = split(caller, ',');
        m_callId = m_pObserver->callOffered(*this, {parts.at(0), parts.size() > 1 ? parts[1] : ""});
    }

    void setObserver(LineObserverIfc* observer) override { m_pObserver = observer; }
    std::string number() const override { return m_number; }
    bool isInService() const override { return inService; }
    bool placeCall(const std::string& callId, const std::string& number) override
    {
        return take(callId, "call " + number);
    }
    bool pickUpCall(const std::string& callId, const std::string& device) override
    {
        return take(callId, "pick up " + device);
    }
    void answerCall(const std::string& callId) override
    {
        m_pObserver->callStateChanged(callId, CallState::Connected, CallEnd::Cleared);
    }
    void clearCall(const std::string& callId) override
    {
        m_pObserver->callStateChanged(callId, CallState::Null, CallEnd::Cleared);
    }

    bool inService = true;

private:
    bool take(const std::string& callId, const std::string& what)
    {
        m_calls.push_back(what);
        m_callId = callId;
        return true;
    }

    const std::string m_number;
    std::vector<std::string>& m_calls;
    std::string m_callId;
    LineObserverIfc* m_pObserver = nullptr;
};

JourneyPhone::JourneyPhone(const Journey& journey, ReplaceService replace)
    : m_journey(journey)
    , m_replace(std::move(replace))
{
    setenv("TZ", "UTC", 1);
    if (!m_journey.pbx.empty())
        m_pPbx = std::make_unique<JourneyPbx>(m_journey.pbx);
    furnish();
    start();
}

void JourneyPhone::furnish()
{
    ContactStore contacts(store(), "en");
    for (const auto& group : m_journey.groups)
        slotOf(contacts, group);
    for (const auto& contact : m_journey.contacts)
        add(contacts, contact);
    std::filesystem::create_directory(m_folder / "pictures");
    for (const auto& picture : m_journey.pictures)
        std::filesystem::copy_file(std::filesystem::path(TEST_DATA_DIR) / "one-pixel.png",
                                   m_folder / "pictures" / picture);
    for (const auto& [item, value] : m_pPbx ? m_pPbx->items() : Configuration::Values())
        setItem(item, value);
    for (const auto& [item, value] : itemsOf(m_journey))
        setItem(item, value);
    if (!m_journey.ldapPassword.empty())
        keepPassword(m_journey.ldapPassword);
}

JourneyPhone::~JourneyPhone()
{
    m_phone->stop();
    if (m_companyIsDown)
        Company::shared().serve(true);
}

void JourneyPhone::setItem(const std::string& item, const std::string& value)
{
    // A journey knows no server's address.
    const bool isCompany = item == "ldap-servers" && value == "company";
    Configuration configuration(m_folder / "config.toml");
    if (!configuration.set(item, isCompany ? Company::shared().uri() : value))
        throw std::runtime_error("not set: " + item + "=" + value);
}

void JourneyPhone::keepPassword(const std::string& password)
{
    if (!LdapPassword(m_folder.path()).write(password, {"127.0.0.1"}))
        throw std::runtime_error("not kept: " + password);
}

void JourneyPhone::start()
{
    const auto resources = Resources::beside(BIN_DIR);
    PhoneOptions options;
    options.profile = Profile::in(m_folder.path());
    options.catalogues = resources.catalogues;
    options.phonelets = {{"phonebook", resources.phonebook}};
    if (m_pPbx)
        options.phonelets.push_back({"CorvanStimulus", resources.stimulus});
    options.clock = &m_clock;
    options.wrapPhonelet = [this](std::unique_ptr<Phonelet> phonelet) -> std::unique_ptr<Phonelet> {
        return std::make_unique<CheckedPhonelet>(
            std::move(phonelet), [this](const std::string& sentence) { m_complaints.push_back(sentence); });
    };
    options.replaceService = [this](const std::string& name, Executable* service) -> Executable* {
        const auto& absent = m_journey.absent;
        if (std::find(absent.begin(), absent.end(), name) != absent.end())
            return nullptr;
        return m_replace ? m_replace(name, service) : service;
    };
    auto phone = Phone::create(std::move(options));
    if (!phone)
        throw std::runtime_error(phone.error().sentence);
    m_phone = std::move(phone).value();
    if (!m_journey.line.empty()) {
        auto line = std::make_unique<Line>(m_journey.line, m_calls);
        m_pLine = line.get();
        m_phone->services().addLine(std::move(line));
    }
    m_phone->start();
    settle();
    if (m_pPbx) {
        m_pPbx->attach();
        settle();
    }
}

std::string JourneyPhone::run(const std::string& words)
{
    std::istringstream in(words);
    for (std::string next; in >> next;)
        word(next);
    return screen();
}

std::string JourneyPhone::screen()
{
    std::string text;
    for (const auto& call : m_calls)
        text += "* " + call + "\n";
    m_calls.clear();
    for (const auto& request : m_pPbx ? m_pPbx->takeRequests() : std::vector<std::string>())
        text += "* " + request + "\n";
    text += toText(*m_phone->frames().latest());
    // An empty line ends a screen in a journey's file.
    for (auto at = text.find("\n\n"); at != text.npos; at = text.find("\n\n"))
        text.erase(at, 1);
    return text;
}

void JourneyPhone::word(const std::string& word)
{
    const auto colon = word.find(':');
    const auto rest = colon == word.npos ? "" : word.substr(colon + 1);
    if (const auto keys = keysFromWord(word)) {
        for (const auto& key : *keys) {
            m_phone->keys().press(key);
            settle();
        }
    } else if (word.starts_with("wait:")) {
        m_phone->advance(std::chrono::milliseconds(std::stol(rest)));
    } else if (word.starts_with("item:")) {
        setItem(rest.substr(0, rest.find('=')), rest.substr(rest.find('=') + 1));
        m_phone->reloadConfiguration();
    } else if (word.starts_with("outside:")) {
        outside(rest);
    } else if (word == "directory:down" || word == "directory:up") {
        m_companyIsDown = word == "directory:down";
        Company::shared().serve(!m_companyIsDown);
    } else if (word.starts_with("ldap-password:")) {
        keepPassword(rest);
    } else if (word == "disk:full") {
        m_pFullDisk = std::make_unique<FailingDisk>(FailingDisk::What::Write, 1, ENOSPC);
    } else if (word == "disk:free") {
        m_pFullDisk.reset();
    } else if (word == "restart") {
        m_phone->stop();
        m_phone.reset();
        start();
    } else if (!(m_pLine && lineSays(word)) && !(m_pPbx && m_pPbx->say(word))) {
        throw std::runtime_error("a journey knows no \"" + word + "\"");
    }
    settle();
}

bool JourneyPhone::lineSays(const std::string& word)
{
    const std::map<std::string, std::pair<CallState, CallEnd>> words{
        {"alerting", {CallState::Alerting, CallEnd::Cleared}},
        {"answered", {CallState::Connected, CallEnd::Cleared}},
        {"cleared", {CallState::Null, CallEnd::Cleared}},
        {"busy", {CallState::Failed, CallEnd::Busy}},
        {"no-such-number", {CallState::Failed, CallEnd::NotFound}},
        {"declined", {CallState::Failed, CallEnd::Declined}},
        {"no-answer", {CallState::Failed, CallEnd::NoAnswer}},
        {"unreachable", {CallState::Failed, CallEnd::Unreachable}}};
    if (const auto said = words.find(word); said != words.end())
        m_pLine->become(said->second.first, said->second.second);
    else if (word.starts_with("rings:"))
        m_pLine->ring(word.substr(word.find(':') + 1));
    else if (word == "line:down" || word == "line:up")
        m_pLine->inService = word == "line:up";
    else
        return false;
    return true;
}

void JourneyPhone::outside(const std::string& change)
{
    const BackupOptions everything{m_folder / "journey.backup", m_folder.path(), m_folder / "pictures"};
    std::ostringstream said;
    if (change == "backup" || change == "restore") {
        const auto command = change == "backup" ? runBackup : runRestore;
        if (command(everything, said, said) != 0)
            throw std::runtime_error(said.str());
    } else if (change == "damage") {
        std::ofstream(m_folder / "rubbish") << "rubbish";
        std::filesystem::rename(m_folder / "rubbish", store());
    } else if (change == "delete-all") {
        if (!ContactStore(store(), "").eraseAll(std::nullopt))
            throw std::runtime_error("not deleted");
    } else if (change == "clear-calls") {
        if (!Journal::clear(m_folder.path()))
            throw std::runtime_error("not cleared");
    } else {
        ContactStore others(store(), "");
        add(others, change);
    }
    m_phone->events().post("look", [this] {
        m_phone->services().directory().lookForChanges();
        m_phone->services().journal().lookForChanges();
    });
}

void JourneyPhone::settle()
{
    m_phone->runPending();
    if (m_pPbx) {
        m_pPbx->settle();
        m_phone->runPending();
    }
    const auto frame = m_phone->frames().latest();
    const auto& top = frame->top();
    m_failureSeen = m_failureSeen ||
                    (top.role == FrameRole::Notification && top.type == DisplayAPI::PopupNotification::ERROR);
}

std::map<std::string, std::string> JourneyPhone::contacts() const
{
    ContactStore contacts(store(), "en");
    std::map<std::string, std::string> names;
    const auto read = contacts.forEach([&](const Contact& contact, const auto&) {
        names[contact.id] = contact.surname + ", " + contact.firstname;
        return true;
    });
    if (!read)
        throw std::runtime_error(read.error().sentence);
    return names;
}

std::vector<std::string> JourneyPhone::complaints() const
{
    auto complaints = m_complaints;
    for (const auto& line : m_log.lines()) {
        if (line.text.find("exception") != line.text.npos || line.text.find("left timer") != line.text.npos)
            complaints.push_back(line.text);
    }
    return complaints;
}

std::filesystem::path JourneyPhone::store() const
{
    return DirectoryService::fileIn(m_folder.path());
}
