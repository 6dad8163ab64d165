#include "BluetoothMock.h"

#include <algorithm>
#include <chrono>
#include <fstream>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::seconds nPATIENCE{10};
constexpr char nTRANSFER[] = "org.bluez.obex.Transfer1";
constexpr char nSESSION_PATH[] = "/org/bluez/obex/client/session0";

std::string devicePath(std::string address)
{
    std::replace(address.begin(), address.end(), ':', '_');
    return "/org/bluez/hci0/dev_" + address;
}

// By hand: a connection of the library that fails loses memory.
bool accepts(const fs::path& socketFile)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socketFile.string().copy(address.sun_path, sizeof address.sun_path - 1);
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool accepted = connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    close(connection);
    return accepted;
}

} // namespace

PrivateBus::PrivateBus()
{
    const auto socketFile = m_folder / "bus";
    m_folder.write(
        "bus.conf",
        "<busconfig><type>session</type><listen>" + address() +
            "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
            "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
    m_daemon.start(
        {"/usr/bin/dbus-daemon", "--nofork", "--nopidfile",
         "--config-file=" + (m_folder / "bus.conf").string()},
        m_folder / "log", [&] { return accepts(socketFile); }, nPATIENCE);
}

std::string PrivateBus::address() const
{
    return "unix:path=" + (m_folder / "bus").string();
}

ServedConnection::ServedConnection(const std::string& bus)
    : m_connection(sdbus::createSessionBusConnectionWithAddress(bus))
{
}

void ServedConnection::stop()
{
    if (!m_thread.joinable())
        return;
    m_connection->leaveEventLoop();
    m_thread.join();
}

void ServedConnection::serve()
{
    m_thread = std::thread([this] {
        try {
            m_connection->enterEventLoop();
        } catch (const sdbus::Error&) {
            // Its bus has ended.
        }
    });
}

BluetoothMock::BluetoothMock(const std::string& bus)
    : m_bus(bus)
    , m_bluez(bus)
{
    m_root = sdbus::createObject(*m_bluez, "/");
    m_root->addObjectManager();
    m_root->finishRegistration();
    m_adapter = sdbus::createObject(*m_bluez, "/org/bluez/hci0");
    m_adapter->registerProperty("Powered").onInterface("org.bluez.Adapter1").withGetter([this] {
        return m_on.load();
    });
    m_adapter->finishRegistration();
    (*m_bluez).requestName("org.bluez");
    m_bluez.serve();
    startService();
}

BluetoothMock::~BluetoothMock()
{
    endService();
    m_bluez.stop();
}

void BluetoothMock::addDevice(const std::string& address, const std::string& name, bool paired)
{
    auto device = sdbus::createObject(*m_bluez, devicePath(address));
    const std::string interface = "org.bluez.Device1";
    device->registerProperty("Address").onInterface(interface).withGetter([address] { return address; });
    device->registerProperty("Alias").onInterface(interface).withGetter([name] { return name; });
    device->registerProperty("Paired").onInterface(interface).withGetter([paired] { return paired; });
    device->finishRegistration();
    device->emitInterfacesAddedSignal();
    m_devices[address] = std::move(device);
}

void BluetoothMock::removeDevice(const std::string& address)
{
    m_devices.erase(address);
    // Not before it is gone, or whoever asks at once still finds it.
    auto removed = m_root->createSignal("org.freedesktop.DBus.ObjectManager", "InterfacesRemoved");
    removed << sdbus::ObjectPath(devicePath(address)) << std::vector<std::string>{"org.bluez.Device1"};
    m_root->emitSignal(removed);
}

void BluetoothMock::switchOn(bool on)
{
    m_on = on;
    m_adapter->emitPropertiesChangedSignal("org.bluez.Adapter1", {"Powered"});
}

void BluetoothMock::endService()
{
    m_obex->stop();
    m_waiting.reset();
    m_transfer.reset();
    m_session.reset();
    m_client.reset();
    m_obex.reset();
}

void BluetoothMock::startService()
{
    m_obex = std::make_unique<ServedConnection>(m_bus);
    auto& connection = **m_obex;
    m_client = sdbus::createObject(connection, "/org/bluez/obex");
    const std::string interface = "org.bluez.obex.Client1";
    m_client->registerMethod("CreateSession")
        .onInterface(interface)
        .implementedAs([this](sdbus::Result<sdbus::ObjectPath>&& result, const std::string& destination,
                              const std::map<std::string, sdbus::Variant>& options) {
            createSession(std::move(result), destination, options);
        });
    m_client->registerMethod("RemoveSession")
        .onInterface(interface)
        .implementedAs(
            [this](const sdbus::ObjectPath& session) { note([&] { m_removed.push_back(session); }); });
    m_client->finishRegistration();
    m_session = sdbus::createObject(connection, nSESSION_PATH);
    m_session->registerMethod("SendFile")
        .onInterface("org.bluez.obex.ObjectPush1")
        .implementedAs([this](const std::string& file) { return sendFile(file); });
    m_session->finishRegistration();
    m_transfer = sdbus::createObject(connection, std::string(nSESSION_PATH) + "/transfer0");
    m_transfer->registerMethod("Cancel").onInterface(nTRANSFER).implementedAs(
        [this] { note([&] { m_cancelled = true; }); });
    const auto property = [this](const char* name, auto& value) {
        m_transfer->registerProperty(name).onInterface(nTRANSFER).withGetter([this, &value] {
            const std::lock_guard lock(m_mutex);
            return value;
        });
    };
    property("Status", m_status);
    property("Transferred", m_sent);
    property("Size", m_size);
    m_transfer->finishRegistration();
    connection.requestName("org.bluez.obex");
    m_obex->serve();
}

void BluetoothMock::createSession(sdbus::Result<sdbus::ObjectPath>&& result, const std::string& destination,
                                  const std::map<std::string, sdbus::Variant>& options)
{
    if (behaviour == Push::AnswersLater)
        m_waiting = std::make_unique<sdbus::Result<sdbus::ObjectPath>>(std::move(result));
    else if (sessionError)
        result.returnError(*sessionError);
    else
        result.returnResults(sdbus::ObjectPath(nSESSION_PATH));
    note([&] {
        m_target = options.at("Target").get<std::string>();
        m_destinations.push_back(destination);
    });
}

void BluetoothMock::answerSession()
{
    m_waiting->returnResults(sdbus::ObjectPath(nSESSION_PATH));
}

std::tuple<sdbus::ObjectPath, std::map<std::string, sdbus::Variant>>
BluetoothMock::sendFile(const std::string& name)
{
    const fs::path path(name);
    PushedFile file{path.filename(), textOf(path), fs::status(path).permissions(),
                    fs::status(path.parent_path()).permissions()};
    note([&] {
        m_size = file.text.size();
        m_files.push_back(std::move(file));
    });
    if (fileError)
        throw sdbus::Error(*fileError);
    if (behaviour == Push::CompletesBeforeItAnswers)
        transfer("complete", m_size);
    return {sdbus::ObjectPath(m_transfer->getObjectPath()),
            {{"Status", sdbus::Variant(std::string("queued"))}, {"Size", sdbus::Variant(m_size)}}};
}

void BluetoothMock::transfer(const std::string& status, std::uint64_t sent)
{
    note([&] {
        m_status = status;
        m_sent = sent;
    });
    m_transfer->emitPropertiesChangedSignal(nTRANSFER, {"Status", "Transferred"});
}

bool BluetoothMock::until(const std::function<bool()>& condition)
{
    std::unique_lock lock(m_mutex);
    return m_happened.wait_for(lock, nPATIENCE, condition);
}

void BluetoothMock::note(const std::function<void()>& what)
{
    const std::lock_guard lock(m_mutex);
    what();
    m_happened.notify_all();
}
