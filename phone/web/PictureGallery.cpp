#include "web/PictureGallery.h"

#include <algorithm>
#include <utility>

#include "pictures/Thumbnail.h"
#include "web/Token.h"

namespace {

// What is no picture has none.
std::string newIdFor(const std::string& path)
{
    const auto file = PictureFile::open(path);
    if (!file || !file.value().header())
        return "";
    auto id = newToken();
    return id ? std::move(id).value() : "";
}

Result<std::string> thumbnailOfFile(const std::string& path, const PictureStamp& stamp)
{
    const auto file = PictureFile::open(path);
    if (!file)
        return file.error();
    if (file.value().stamp() != stamp)
        return Error{ErrorCode::NotFound, "It was replaced by another one."};
    const auto content = file.value().content();
    return content ? thumbnailOf(content.value()) : content;
}

} // namespace

PictureGallery::PictureGallery(std::filesystem::path clips)
    : m_clips(std::move(clips))
{
}

std::string PictureGallery::idOf(const std::string& path)
{
    const auto stamp =
        ClipFolder::isClipName(m_clips.nameFromPath(path)) ? PictureFile::stampOf(path) : std::nullopt;
    if (!stamp)
        return "";
    const std::lock_guard lock(m_mutex);
    auto entry = find(&Entry::path, path);
    if (entry != m_entries.end() && entry->stamp == *stamp)
        return entry->id;
    if (entry != m_entries.end())
        m_entries.erase(entry);
    m_entries.push_front({path, *stamp, newIdFor(path), nullptr});
    forgetTheOldest();
    return m_entries.front().id;
}

std::shared_ptr<const std::string> PictureGallery::thumbnail(const std::string& id)
{
    if (id.empty())
        return nullptr;
    std::unique_lock lock(m_mutex);
    auto entry = find(&Entry::id, id);
    if (entry == m_entries.end() || entry->thumbnail)
        return entry == m_entries.end() ? nullptr : entry->thumbnail;
    const auto [path, stamp] = std::pair(entry->path, entry->stamp);

    lock.unlock();
    auto made = thumbnailOfFile(path, stamp);
    lock.lock();

    entry = find(&Entry::id, id); // it may have been forgotten meanwhile
    if (!made) {
        // From the next frame on it is known to be no picture.
        if (entry != m_entries.end())
            entry->id.clear();
        return nullptr;
    }
    auto thumbnail = std::make_shared<const std::string>(std::move(made).value());
    if (entry != m_entries.end())
        entry->thumbnail = thumbnail;
    forgetTheOldest();
    return thumbnail;
}

PictureGallery::Entries::iterator PictureGallery::find(std::string Entry::*member, const std::string& value)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& entry) { return entry.*member == value; });
    if (found != m_entries.end())
        m_entries.splice(m_entries.begin(), m_entries, found);
    return found;
}

void PictureGallery::forgetTheOldest()
{
    if (m_entries.size() > nMOST_PICTURES)
        m_entries.pop_back();
    std::size_t bytes = 0;
    for (auto& entry : m_entries) {
        bytes += entry.thumbnail ? entry.thumbnail->size() : 0;
        if (bytes > nMOST_BYTES)
            entry.thumbnail = nullptr;
    }
}
