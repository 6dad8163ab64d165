// Looks at a file now and then, and says so when it may have changed.
//
// Only the time and size of the file and of its log are looked at, so it may speak up for a change
// that was our own, and it goes on for a while after one: SQLite shows a change to others only after
// the disk has taken it, some time after the file was written.

#pragma once

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

class ChangeWatch {
public:
    // `changed` is called on a thread of its own.
    ChangeWatch(std::filesystem::path file, std::chrono::milliseconds interval,
                std::function<void()> changed);
    ~ChangeWatch();

    ChangeWatch(const ChangeWatch&) = delete;
    ChangeWatch& operator=(const ChangeWatch&) = delete;

private:
    void run();
    std::string stamp() const;

    const std::filesystem::path m_file;
    const std::chrono::milliseconds m_interval;
    const std::function<void()> m_changed;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stop = false;
    std::thread m_thread;
};
