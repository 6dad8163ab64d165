#include "system/ObexService.h"

#include <algorithm>
#include <fstream>
#include <utility>

#include "app/PhoneLog.h"

namespace fs = std::filesystem;

namespace {

constexpr char nSOURCE[] = "./phone/system/ObexService";
constexpr char nFOLDER_PREFIX[] = "sending-";
constexpr std::size_t nLONGEST_FILE_NAME = 200;

// The device sees the name; here it must not lead elsewhere.
std::string fileNameOf(const std::string& name)
{
    const auto last = fs::path(name).filename().string();
    const bool isUsable = !last.empty() && last != "." && last != ".." && last.size() <= nLONGEST_FILE_NAME &&
                          last.find('\0') == std::string::npos;
    return isUsable ? last : "contact.vcf";
}

} // namespace

ObexService::ObexService(EventPoster& events, fs::path folder, ObjectPush::Buses buses)
    : m_events(events)
    , m_folder(std::move(folder))
    , m_buses(std::move(buses))
{
    // What a telephone that was killed left behind.
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(m_folder, ignored)) {
        if (entry.path().filename().string().starts_with(nFOLDER_PREFIX))
            fs::remove_all(entry.path(), ignored);
    }
}

ObexService::~ObexService()
{
    m_push.reset();
    removeFile();
}

void ObexService::setAllowed(bool allowed)
{
    if (allowed == (m_push != nullptr))
        return;
    if (!allowed) {
        m_push.reset();
        m_alive.reset();
        m_ready = false;
        m_devices.clear();
        if (isBusy())
            finish(SendOutcome::NoService);
        return;
    }
    m_alive = std::make_shared<const char>();
    m_push = std::make_unique<ObjectPush>(
        m_buses, ObjectPush::Hooks{[this, alive = std::weak_ptr(m_alive)](bool ready, auto devices) {
                                       m_events.post("Bluetooth devices", [this, alive, ready, devices] {
                                           if (alive.expired())
                                               return;
                                           m_ready = ready;
                                           m_devices = devices;
                                       });
                                   },
                                   [this, alive = std::weak_ptr(m_alive)](auto sent, auto size) {
                                       m_events.post("sending a contact", [this, alive, sent, size] {
                                           if (alive.expired() || !isBusy())
                                               return;
                                           m_status.phase = SendStatus::Phase::Sending;
                                           m_status.sent = sent;
                                           m_status.size = size;
                                           tell();
                                       });
                                   },
                                   [this, alive = std::weak_ptr(m_alive)](auto outcome, auto detail) {
                                       m_events.post("contact sent", [this, alive, outcome, detail] {
                                           if (!alive.expired())
                                               finish(outcome, detail);
                                       });
                                   }});
}

bool ObexService::sendContact(const std::string& name, const std::string& vCard)
{
    if (isBusy() && m_status.phase != SendStatus::Phase::Choosing) {
        PHONE_REFUSED("%s was not sent: %s is under way", name.c_str(), m_status.contact.c_str());
        m_status.isAskedFor = true;
        tell();
        m_status.isAskedFor = false;
        return false;
    }
    m_status = SendStatus();
    m_status.contact = fileNameOf(name);
    m_vCard = vCard;
    if (!m_ready || m_devices.empty()) {
        finish(m_ready ? SendOutcome::NoDevice : SendOutcome::NoService);
        return false;
    }
    const auto isNamed = [this](const SendDevice& device) {
        return device.name == m_device || device.address == m_device;
    };
    const auto named = std::find_if(m_devices.begin(), m_devices.end(), isNamed);
    if (named != m_devices.end() || m_devices.size() == 1) {
        push(named != m_devices.end() ? *named : m_devices.front());
        return isBusy();
    }
    m_status.phase = SendStatus::Phase::Choosing;
    m_status.devices = m_devices;
    tell();
    return true;
}

void ObexService::choose(const std::string& address)
{
    if (m_status.phase != SendStatus::Phase::Choosing)
        return;
    const auto& devices = m_status.devices;
    const auto chosen = std::find_if(devices.begin(), devices.end(),
                                     [&](const auto& device) { return device.address == address; });
    if (chosen != devices.end())
        push(SendDevice(*chosen));
}

void ObexService::cancel()
{
    if (m_status.phase == SendStatus::Phase::Choosing)
        finish(SendOutcome::Cancelled);
    else if (isBusy())
        m_push->cancel();
}

void ObexService::push(const SendDevice& device)
{
    m_status.device = device.name;
    m_status.devices.clear();
    if (!writeFile()) {
        finish(SendOutcome::Failed, "its file cannot be written");
        return;
    }
    m_status.phase = SendStatus::Phase::Connecting;
    tell();
    m_push->start(device.address, m_file);
}

bool ObexService::writeFile()
{
    auto folder = (m_folder / (std::string(nFOLDER_PREFIX) + "XXXXXX")).string();
    if (!mkdtemp(folder.data())) // 0700
        return false;
    m_file = fs::path(folder) / m_status.contact;
    std::ofstream file(m_file, std::ios::binary);
    std::error_code failure;
    fs::permissions(m_file, fs::perms::owner_read | fs::perms::owner_write, failure);
    file << m_vCard;
    file.close();
    if (file && !failure)
        return true;
    removeFile();
    return false;
}

void ObexService::removeFile()
{
    std::error_code ignored;
    if (!m_file.empty())
        fs::remove_all(std::exchange(m_file, {}).parent_path(), ignored);
}

bool ObexService::isBusy() const
{
    return m_status.phase != SendStatus::Phase::Idle && m_status.phase != SendStatus::Phase::Over;
}

void ObexService::finish(SendOutcome outcome, const std::string& detail)
{
    removeFile();
    m_vCard.clear();
    m_status.phase = SendStatus::Phase::Over;
    m_status.outcome = outcome;
    m_status.devices.clear();
    PHONE_USER("%s to %s: %s%s", m_status.contact.c_str(), m_status.device.c_str(), m_status.text().c_str(),
               detail.empty() ? "" : (", " + detail).c_str());
    tell();
}

void ObexService::tell()
{
    if (m_pObserver)
        m_pObserver->sendStatusChanged(m_status);
}
