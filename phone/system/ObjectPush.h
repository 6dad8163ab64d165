// Pushes a file to a Bluetooth device (OBEX Object Push) through the computer's Bluetooth service, BlueZ:
// the devices are asked for on the system's D-Bus, the file goes through that of the session.
//
// All of it happens on a thread of its own, hooks included: nobody waits for a device. A bus that is
// missing or goes away is tried again every ten seconds.

#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sdbus-c++/Types.h>

#include "system/SendStatus.h"

namespace sdbus {
class Error;
class IConnection;
class IProxy;
class Message;
} // namespace sdbus

class ObjectPush {
public:
    // The buses' addresses; "" for the computer's own.
    struct Buses {
        std::string system;
        std::string session;
    };

    struct Hooks {
        // `ready`: there is an adapter that is switched on, and a service that pushes. The devices are
        // those that were paired, in the order of their names.
        std::function<void(bool ready, std::vector<SendDevice> devices)> changed;
        std::function<void(std::uint64_t sent, std::uint64_t size)> progress; // bytes; size 0: unknown
        // Once for each start().
        std::function<void(SendOutcome outcome, std::string detail)> ended;
    };

    ObjectPush(Buses buses, Hooks hooks);
    // No hook is called after it.
    ~ObjectPush();

    ObjectPush(const ObjectPush&) = delete;
    ObjectPush& operator=(const ObjectPush&) = delete;

    // One at a time: not before the last one ended. The file must stay until then. [any-thread]
    void start(std::string address, std::filesystem::path file);
    // Ends it as cancelled, in whatever state it is. [any-thread]
    void cancel();

private:
    using Properties = std::map<std::string, sdbus::Variant>;
    using Clock = std::chrono::steady_clock;

    void post(std::function<void()> task);
    void run();
    void runTasks();
    void wait();
    void openSystemBus();
    void openSessionBus();
    void process(std::unique_ptr<sdbus::IConnection>& bus, const std::function<void()>& lost);
    void systemBusLost();
    void sessionBusLost();

    void askForDevices();
    void askForService();
    void report();

    void createSession(const std::string& address);
    void sessionCreated(unsigned long push, const sdbus::Error* error, const std::string& session);
    void fileAccepted(unsigned long push, const sdbus::Error* error, const std::string& transfer,
                      const Properties& properties);
    void serviceOwnerChanged(sdbus::Message& message);
    void propertiesChanged(sdbus::Message& message);
    void transferChanged(const Properties& properties);
    void removeSession(const std::string& session) noexcept;
    void end(SendOutcome outcome, const std::string& detail);

    const Buses m_buses;
    const Hooks m_hooks;

    std::unique_ptr<sdbus::IConnection> m_system;
    std::unique_ptr<sdbus::IConnection> m_session;
    Clock::time_point m_nextTry;
    std::unique_ptr<sdbus::IProxy> m_bluetooth;
    std::unique_ptr<sdbus::IProxy> m_sessionBus;
    std::unique_ptr<sdbus::IProxy> m_client;
    std::unique_ptr<sdbus::IProxy> m_pushing;              // the session that was created
    std::vector<std::unique_ptr<sdbus::IProxy>> m_retired; // their own calls may be on the stack

    bool m_asking = false;
    bool m_askAgain = false;
    bool m_powered = false;
    bool m_running = false;     // the service that pushes
    bool m_activatable = false; // it is started when it is needed
    std::vector<SendDevice> m_devices;

    bool m_active = false;    // a push is under way
    unsigned long m_push = 0; // which one; answers to earlier ones are nobody's
    std::filesystem::path m_file;
    std::string m_sessionPath;
    std::string m_transfer;
    std::map<std::string, Properties> m_early; // what was told of transfers before they were known
    std::uint64_t m_sent = 0;
    std::uint64_t m_size = 0;

    std::mutex m_mutex; // guards the two below
    std::vector<std::function<void()>> m_tasks;
    bool m_stopping = false;
    const int m_wake;
    std::thread m_thread; // last: it uses all the others
};
