#include "system/ObjectPush.h"

#include <algorithm>
#include <cctype>
#include <tuple>
#include <utility>

#include <poll.h>
#include <sdbus-c++/sdbus-c++.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "app/PhoneLog.h"
#include "directory/ContactText.h"

namespace {

constexpr char nSOURCE[] = "./phone/system/ObjectPush";

constexpr char nBLUETOOTH[] = "org.bluez";
constexpr char nPUSH_SERVICE[] = "org.bluez.obex";
constexpr char nCLIENT[] = "org.bluez.obex.Client1";
constexpr char nTRANSFER[] = "org.bluez.obex.Transfer1";
constexpr char nDBUS[] = "org.freedesktop.DBus";
constexpr std::size_t nLONGEST_NAME = 60; // characters
constexpr std::chrono::seconds nTRY_AGAIN_AFTER{10};
constexpr std::chrono::seconds nLONGEST_CONNECTING{60}; // the user of the device may be asked

using Interfaces = std::map<std::string, std::map<std::string, sdbus::Variant>>;
using Objects = std::map<sdbus::ObjectPath, Interfaces>;

// The property, or the default when it is missing or of another type.
template <typename T> T valueOf(const std::map<std::string, sdbus::Variant>& properties, const char* name)
{
    const auto found = properties.find(name);
    if (found == properties.end() || !found->second.containsValueOfType<T>())
        return T();
    return found->second.get<T>();
}

bool hasAny(const std::string& text, std::initializer_list<const char*> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return text.find(word) != std::string::npos; });
}

// The service says why in words only.
SendOutcome outcomeOf(const sdbus::Error& error)
{
    auto words = error.getName() + ": " + error.getMessage();
    std::transform(words.begin(), words.end(), words.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (hasAny(words, {"serviceunknown", "namehasnoowner", "error.spawn", "error.disconnected",
                       "accessdenied", "connection terminated", "unknownobject", "unknownmethod"}))
        return SendOutcome::NoService;
    if (hasAny(words, {"service record", "not supported", "notsupported", "not implemented"}))
        return SendOutcome::NotSupported;
    if (hasAny(words, {"refused", "forbidden", "rejected", "unauthorized", "not acceptable", "denied"}))
        return SendOutcome::Refused;
    if (hasAny(words, {"host is down", "no route", "timed out", "timeout", "noreply", "unreachable",
                       "transport", "reset by peer"}))
        return SendOutcome::OutOfRange;
    return SendOutcome::Failed;
}

std::vector<SendDevice> pairedDevices(const Objects& objects)
{
    std::vector<SendDevice> devices;
    for (const auto& [path, interfaces] : objects) {
        const auto device = interfaces.find("org.bluez.Device1");
        if (device == interfaces.end() || !valueOf<bool>(device->second, "Paired"))
            continue;
        const auto address = valueOf<std::string>(device->second, "Address");
        // Whoever owns it has chosen its name.
        const auto name = fitText(valueOf<std::string>(device->second, "Alias"), nLONGEST_NAME);
        devices.push_back({address, name.empty() ? address : name});
    }
    std::sort(devices.begin(), devices.end(), [](const auto& one, const auto& other) {
        return std::tie(one.name, one.address) < std::tie(other.name, other.address);
    });
    return devices;
}

bool isAnyAdapterOn(const Objects& objects)
{
    return std::any_of(objects.begin(), objects.end(), [](const auto& object) {
        const auto adapter = object.second.find("org.bluez.Adapter1");
        return adapter != object.second.end() && valueOf<bool>(adapter->second, "Powered");
    });
}

std::string ownerMatch(const char* name)
{
    return std::string("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='") +
           name + "'";
}

} // namespace

ObjectPush::ObjectPush(Buses buses, Hooks hooks)
    : m_buses(std::move(buses))
    , m_hooks(std::move(hooks))
    , m_wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_thread([this] { run(); })
{
}

ObjectPush::~ObjectPush()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    eventfd_write(m_wake, 1);
    m_thread.join();
    close(m_wake);
}

void ObjectPush::start(std::string address, std::filesystem::path file)
{
    post([this, address = std::move(address), file = std::move(file)] {
        m_active = true;
        ++m_push;
        m_file = file;
        m_sent = m_size = 0;
        createSession(address);
    });
}

void ObjectPush::cancel()
{
    post([this] {
        if (!m_active)
            return;
        if (m_session && !m_transfer.empty()) {
            const auto transfer = sdbus::createProxy(*m_session, nPUSH_SERVICE, m_transfer);
            transfer->callMethod("Cancel").onInterface(nTRANSFER).dontExpectReply();
        }
        end(SendOutcome::Cancelled, "");
    });
}

void ObjectPush::post(std::function<void()> task)
{
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    eventfd_write(m_wake, 1);
}

void ObjectPush::run()
{
    while (true) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_stopping)
                break;
        }
        if (Clock::now() >= m_nextTry && (!m_system || !m_session)) {
            openSystemBus();
            openSessionBus();
            m_nextTry = Clock::now() + nTRY_AGAIN_AFTER;
            report();
        }
        runTasks();
        process(m_system, [this] { systemBusLost(); });
        process(m_session, [this] { sessionBusLost(); });
        m_retired.clear();
        wait();
    }
    if (m_active)
        removeSession(m_sessionPath);
}

void ObjectPush::runTasks()
{
    std::vector<std::function<void()>> tasks;
    {
        const std::lock_guard lock(m_mutex);
        tasks.swap(m_tasks);
    }
    for (const auto& task : tasks) {
        try {
            task();
        } catch (const sdbus::Error& error) {
            end(outcomeOf(error), error.getMessage());
        }
    }
}

void ObjectPush::wait()
{
    std::vector<pollfd> waiting{{m_wake, POLLIN, 0}};
    int timeout = -1;
    const auto noLongerThan = [&timeout](int other) {
        if (other >= 0)
            timeout = timeout < 0 ? other : std::min(timeout, other);
    };
    for (const auto* bus : {m_system.get(), m_session.get()}) {
        if (!bus) {
            noLongerThan(
                static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(nTRY_AGAIN_AFTER).count()));
            continue;
        }
        try {
            const auto data = bus->getEventLoopPollData();
            waiting.push_back({data.fd, data.events, 0});
            noLongerThan(data.getPollTimeout());
        } catch (const sdbus::Error&) {
            noLongerThan(0); // it is gone, which process() finds next
        }
    }
    poll(waiting.data(), waiting.size(), timeout);
    eventfd_t count = 0;
    eventfd_read(m_wake, &count);
}

void ObjectPush::openSystemBus()
{
    if (m_system)
        return;
    try {
        auto bus = m_buses.system.empty() ? sdbus::createSystemBusConnection()
                                          : sdbus::createSessionBusConnectionWithAddress(m_buses.system);
        bus->addMatch(
            "type='signal',sender='org.bluez'", [this](sdbus::Message&) { askForDevices(); },
            sdbus::floating_slot);
        bus->addMatch(
            ownerMatch(nBLUETOOTH), [this](sdbus::Message&) { askForDevices(); }, sdbus::floating_slot);
        m_bluetooth = sdbus::createProxy(*bus, nBLUETOOTH, "/");
        m_system = std::move(bus);
        askForDevices();
    } catch (const sdbus::Error& error) {
        PHONE_TRACE("no system bus: %s", error.what());
    }
}

void ObjectPush::openSessionBus()
{
    if (m_session)
        return;
    try {
        auto bus = m_buses.session.empty() ? sdbus::createSessionBusConnection()
                                           : sdbus::createSessionBusConnectionWithAddress(m_buses.session);
        bus->addMatch(
            "type='signal',sender='org.bluez.obex',interface='org.freedesktop.DBus.Properties',"
            "member='PropertiesChanged'",
            [this](sdbus::Message& message) { propertiesChanged(message); }, sdbus::floating_slot);
        bus->addMatch(
            ownerMatch(nPUSH_SERVICE), [this](sdbus::Message& message) { serviceOwnerChanged(message); },
            sdbus::floating_slot);
        m_client = sdbus::createProxy(*bus, nPUSH_SERVICE, "/org/bluez/obex");
        m_sessionBus = sdbus::createProxy(*bus, nDBUS, "/org/freedesktop/DBus");
        m_session = std::move(bus);
        askForService();
    } catch (const sdbus::Error& error) {
        PHONE_TRACE("no session bus: %s", error.what());
    }
}

void ObjectPush::process(std::unique_ptr<sdbus::IConnection>& bus, const std::function<void()>& lost)
{
    try {
        while (bus && bus->processPendingRequest()) {
        }
    } catch (const sdbus::Error& error) {
        PHONE_TRACE("a bus was lost: %s", error.what());
        lost();
    }
}

void ObjectPush::systemBusLost()
{
    m_bluetooth.reset();
    m_system.reset();
    m_asking = m_askAgain = m_powered = false;
    m_devices.clear();
    m_nextTry = Clock::now() + nTRY_AGAIN_AFTER;
    report();
}

void ObjectPush::sessionBusLost()
{
    m_retired.clear();
    m_pushing.reset();
    m_client.reset();
    m_sessionBus.reset();
    m_session.reset();
    m_running = m_activatable = false;
    m_nextTry = Clock::now() + nTRY_AGAIN_AFTER;
    if (m_active)
        end(SendOutcome::NoService, "the session bus is gone");
    report();
}

// Whatever changes there, the answer is the whole truth; changes meanwhile make one more question.
void ObjectPush::askForDevices()
{
    m_askAgain = m_asking;
    if (m_asking)
        return;
    m_asking = true;
    m_bluetooth->callMethodAsync("GetManagedObjects")
        .onInterface("org.freedesktop.DBus.ObjectManager")
        .uponReplyInvoke([this](const sdbus::Error* error, const Objects& objects) {
            m_asking = false;
            m_devices = error ? std::vector<SendDevice>() : pairedDevices(objects);
            m_powered = !error && isAnyAdapterOn(objects);
            if (m_askAgain)
                askForDevices();
            report();
        });
}

void ObjectPush::askForService()
{
    m_sessionBus->callMethodAsync("NameHasOwner")
        .onInterface(nDBUS)
        .withArguments(std::string(nPUSH_SERVICE))
        .uponReplyInvoke([this](const sdbus::Error* error, bool hasOwner) {
            m_running = !error && hasOwner;
            report();
        });
    m_sessionBus->callMethodAsync("ListActivatableNames")
        .onInterface(nDBUS)
        .uponReplyInvoke([this](const sdbus::Error* error, const std::vector<std::string>& names) {
            m_activatable = !error && std::find(names.begin(), names.end(), nPUSH_SERVICE) != names.end();
            report();
        });
}

void ObjectPush::report()
{
    m_hooks.changed(m_powered && (m_running || m_activatable), m_devices);
}

void ObjectPush::serviceOwnerChanged(sdbus::Message& message)
{
    std::string name;
    std::string before;
    std::string now;
    message >> name >> before >> now;
    m_running = !now.empty();
    if (!m_running && m_active)
        end(SendOutcome::NoService, "the service has ended");
    report();
}

void ObjectPush::createSession(const std::string& address)
{
    if (!m_client) {
        end(SendOutcome::NoService, "there is no session bus");
        return;
    }
    const std::map<std::string, sdbus::Variant> target{{"Target", sdbus::Variant(std::string("opp"))}};
    m_client->callMethodAsync("CreateSession")
        .onInterface(nCLIENT)
        .withTimeout(nLONGEST_CONNECTING)
        .withArguments(address, target)
        .uponReplyInvoke([this, push = m_push](const sdbus::Error* error, const sdbus::ObjectPath& session) {
            sessionCreated(push, error, session);
        });
}

void ObjectPush::sessionCreated(unsigned long push, const sdbus::Error* error, const std::string& session)
{
    const bool isWanted = m_active && push == m_push;
    if (!isWanted) {
        if (!error)
            removeSession(session);
        return;
    }
    if (error) {
        end(outcomeOf(*error), error->getMessage());
        return;
    }
    m_sessionPath = session;
    m_pushing = sdbus::createProxy(*m_session, nPUSH_SERVICE, session);
    m_pushing->callMethodAsync("SendFile")
        .onInterface("org.bluez.obex.ObjectPush1")
        .withArguments(m_file.string())
        .uponReplyInvoke([this, push](const sdbus::Error* failure, const sdbus::ObjectPath& transfer,
                                      const Properties& properties) {
            fileAccepted(push, failure, transfer, properties);
        });
}

void ObjectPush::fileAccepted(unsigned long push, const sdbus::Error* error, const std::string& transfer,
                              const Properties& properties)
{
    if (!m_active || push != m_push)
        return;
    if (error) {
        end(outcomeOf(*error), error->getMessage());
        return;
    }
    m_transfer = transfer;
    const auto early = std::exchange(m_early, {});
    transferChanged(properties);
    if (const auto told = early.find(transfer); told != early.end() && m_active)
        transferChanged(told->second);
}

void ObjectPush::propertiesChanged(sdbus::Message& message)
{
    std::string interface;
    Properties changed;
    message >> interface >> changed;
    if (!m_active || interface != nTRANSFER)
        return;
    if (message.getPath() == m_transfer) {
        transferChanged(changed);
        return;
    }
    if (!m_transfer.empty())
        return;
    for (auto& [name, value] : changed)
        m_early[message.getPath()].insert_or_assign(name, std::move(value));
}

void ObjectPush::transferChanged(const Properties& properties)
{
    m_size = std::max(m_size, valueOf<std::uint64_t>(properties, "Size"));
    m_sent = std::max(m_sent, valueOf<std::uint64_t>(properties, "Transferred"));
    const auto status = valueOf<std::string>(properties, "Status");
    if (status == "complete") {
        m_hooks.progress(m_size, m_size);
        end(SendOutcome::Sent, "");
    } else if (status == "error") {
        // Why is not told: who takes nothing has refused, who takes a part has gone.
        end(m_sent == 0 ? SendOutcome::Refused : SendOutcome::OutOfRange, "the transfer failed");
    } else {
        m_hooks.progress(m_sent, m_size);
    }
}

void ObjectPush::removeSession(const std::string& session) noexcept
{
    if (session.empty() || !m_client)
        return;
    try {
        m_client->callMethod("RemoveSession")
            .onInterface(nCLIENT)
            .withArguments(sdbus::ObjectPath(session))
            .dontExpectReply();
    } catch (const sdbus::Error& error) {
        PHONE_TRACE("a session stays: %s", error.what());
    }
}

void ObjectPush::end(SendOutcome outcome, const std::string& detail)
{
    m_active = false;
    m_transfer.clear();
    m_early.clear();
    if (m_pushing)
        m_retired.push_back(std::move(m_pushing));
    removeSession(std::exchange(m_sessionPath, {}));
    m_hooks.ended(outcome, detail);
}
