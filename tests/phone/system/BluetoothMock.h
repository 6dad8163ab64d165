// A computer's Bluetooth service as BlueZ offers it, on a private bus that lives as long as the object.

#pragma once

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sdbus-c++/sdbus-c++.h>

#include "ServerProcess.h"
#include "TemporaryFolder.h"

class PrivateBus {
public:
    PrivateBus();

    std::string address() const;
    // As when the session ends.
    void end() { m_daemon.kill(); }

private:
    TemporaryFolder m_folder;
    ServerProcess m_daemon;
};

// What was pushed, as the service found it.
struct PushedFile {
    std::string name;
    std::string text;
    std::filesystem::perms permissions = std::filesystem::perms::none;
    std::filesystem::perms folder = std::filesystem::perms::none;
};

// A connection with a thread that serves it, also beyond the end of its bus.
class ServedConnection {
public:
    explicit ServedConnection(const std::string& bus);
    ~ServedConnection() { stop(); }

    void serve();
    // To come before the end of its objects.
    void stop();
    sdbus::IConnection& operator*() const { return *m_connection; }

private:
    std::unique_ptr<sdbus::IConnection> m_connection;
    std::thread m_thread;
};

class BluetoothMock {
public:
    enum class Push { Works, CompletesBeforeItAnswers, AnswersLater };

    explicit BluetoothMock(const std::string& bus);
    ~BluetoothMock();

    BluetoothMock(const BluetoothMock&) = delete;
    BluetoothMock& operator=(const BluetoothMock&) = delete;

    void addDevice(const std::string& address, const std::string& name, bool paired);
    void removeDevice(const std::string& address);
    void switchOn(bool on);

    // The service that pushes goes away, or comes.
    void endService();
    void startService();

    // What follows is how pushes go. Set it before the push.
    std::unique_ptr<sdbus::Error> sessionError;
    std::unique_ptr<sdbus::Error> fileError;
    std::atomic<Push> behaviour = Push::Works;

    // Each waits for its event, ten seconds at most; false if it did not come.
    bool awaitSession()
    {
        return until([this] { return !m_destinations.empty(); });
    }
    bool awaitFile()
    {
        return until([this] { return !m_files.empty(); });
    }
    bool awaitRemoved()
    {
        return until([this] { return !m_removed.empty(); });
    }
    bool awaitCancelled()
    {
        return until([this] { return m_cancelled; });
    }

    // Answers the session that waits.
    void answerSession();
    void transfer(const std::string& status, std::uint64_t sent);

    std::string destination() const { return m_destinations.back(); }
    std::string target() const { return m_target; }
    PushedFile file() const { return m_files.back(); }

private:
    bool until(const std::function<bool()>& condition);
    void note(const std::function<void()>& what);
    void createSession(sdbus::Result<sdbus::ObjectPath>&& result, const std::string& destination,
                       const std::map<std::string, sdbus::Variant>& options);
    std::tuple<sdbus::ObjectPath, std::map<std::string, sdbus::Variant>> sendFile(const std::string& file);

    const std::string m_bus;
    std::mutex m_mutex;
    std::condition_variable m_happened;
    std::atomic<bool> m_on = true;
    std::vector<std::string> m_destinations;
    std::string m_target;
    std::vector<PushedFile> m_files;
    std::vector<std::string> m_removed;
    bool m_cancelled = false;
    std::string m_status = "queued";
    std::uint64_t m_sent = 0;
    std::uint64_t m_size = 0;

    ServedConnection m_bluez;
    std::unique_ptr<sdbus::IObject> m_root;
    std::unique_ptr<sdbus::IObject> m_adapter;
    std::map<std::string, std::unique_ptr<sdbus::IObject>> m_devices;
    std::unique_ptr<ServedConnection> m_obex;
    std::unique_ptr<sdbus::IObject> m_client;
    std::unique_ptr<sdbus::IObject> m_session;
    std::unique_ptr<sdbus::IObject> m_transfer;
    std::unique_ptr<sdbus::Result<sdbus::ObjectPath>> m_waiting;
};
