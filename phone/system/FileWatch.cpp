#include "system/FileWatch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstring>

#include "app/PhoneLog.h"

namespace {
constexpr char nSOURCE[] = "./phone/system/FileWatch";
} // namespace

FileWatch::Descriptor::~Descriptor()
{
    if (m_fd >= 0)
        close(m_fd);
}

FileWatch::FileWatch(const std::filesystem::path& file, std::function<void()> changed)
    : m_name(file.filename().string())
    , m_changed(std::move(changed))
    , m_inotify(inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
    , m_stop(eventfd(0, EFD_CLOEXEC))
{
    // The folder, not the file: editors write beside a file and put the new one in its place.
    const auto folder = file.parent_path();
    if (inotify_add_watch(m_inotify.get(), folder.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO | IN_DELETE) < 0) {
        PHONE_ERROR("changes of %s go unnoticed: %s", file.c_str(), std::strerror(errno));
        return;
    }
    m_thread = std::thread([this] { watch(); });
}

FileWatch::~FileWatch()
{
    if (!m_thread.joinable())
        return;
    eventfd_write(m_stop.get(), 1);
    m_thread.join();
}

void FileWatch::watch()
{
    std::array<pollfd, 2> waits{{{m_inotify.get(), POLLIN, 0}, {m_stop.get(), POLLIN, 0}}};
    for (;;) {
        if (poll(waits.data(), waits.size(), -1) < 0 && errno != EINTR)
            return;
        if (waits[1].revents != 0)
            return;
        if (readEvents())
            m_changed();
    }
}

bool FileWatch::readEvents()
{
    bool mine = false;
    alignas(inotify_event) std::array<char, 4096> buffer;
    for (;;) {
        const auto size = read(m_inotify.get(), buffer.data(), buffer.size());
        if (size <= 0)
            return mine;
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            mine = mine || (event->len > 0 && m_name == event->name);
            at += static_cast<ssize_t>(sizeof(inotify_event)) + event->len;
        }
    }
}
