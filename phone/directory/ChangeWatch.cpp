#include "ChangeWatch.h"

#include <sys/stat.h>

namespace {

constexpr std::chrono::seconds nLOOK_AGAIN_FOR{5};

std::string stampOf(const std::string& file)
{
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0)
        return "-";
    return std::to_string(status.st_ino) + ' ' + std::to_string(status.st_size) + ' ' +
           std::to_string(status.st_mtim.tv_sec) + ' ' + std::to_string(status.st_mtim.tv_nsec);
}

} // namespace

ChangeWatch::ChangeWatch(std::filesystem::path file, std::chrono::milliseconds interval,
                         std::function<void()> changed)
    : m_file(std::move(file))
    , m_interval(interval)
    , m_changed(std::move(changed))
    , m_thread([this] { run(); })
{
}

ChangeWatch::~ChangeWatch()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

std::string ChangeWatch::stamp() const
{
    return stampOf(m_file.string()) + '/' + stampOf(m_file.string() + "-wal");
}

void ChangeWatch::run()
{
    using Clock = std::chrono::steady_clock;
    std::string last = stamp();
    // Something may have changed between the opening of the file and this.
    auto quietFrom = Clock::now() + nLOOK_AGAIN_FOR;
    std::unique_lock lock(m_mutex);
    while (!m_wake.wait_for(lock, m_interval, [this] { return m_stop; })) {
        const std::string now = stamp();
        if (now != last)
            quietFrom = Clock::now() + nLOOK_AGAIN_FOR;
        last = now;
        if (Clock::now() < quietFrom)
            m_changed();
    }
}
