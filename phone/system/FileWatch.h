// Tells when a file was written or replaced, by whomever.

#pragma once

#include <filesystem>
#include <functional>
#include <thread>

class FileWatch {
public:
    // Calls `changed` on a thread of its own. Its folder must exist; a folder that cannot be watched
    // is logged, and nothing is ever told.
    FileWatch(const std::filesystem::path& file, std::function<void()> changed);
    ~FileWatch();

    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;

private:
    class Descriptor {
    public:
        explicit Descriptor(int fd)
            : m_fd(fd)
        {
        }
        ~Descriptor();
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        int get() const { return m_fd; }

    private:
        int m_fd;
    };

    void watch();
    bool readEvents();

    const std::string m_name;
    const std::function<void()> m_changed;
    Descriptor m_inotify;
    Descriptor m_stop;
    std::thread m_thread;
};
