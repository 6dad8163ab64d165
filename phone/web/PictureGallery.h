// The clips that are on the screen, as a page may have them: thumbnails, each under an id that
// nobody can guess, and that stands for one content of one file.

#pragma once

#include <cstddef>
#include <filesystem>
#include <list>
#include <memory>
#include <mutex>
#include <string>

#include "pictures/ClipFolder.h"
#include "pictures/PictureFile.h"

class PictureGallery {
public:
    // As many pictures, and as many bytes of thumbnails, are remembered; those asked for longest ago
    // are forgotten.
    static constexpr std::size_t nMOST_PICTURES = 256;
    static constexpr std::size_t nMOST_BYTES = 4 * 1024 * 1024;

    explicit PictureGallery(std::filesystem::path clips);

    // The id of the picture at `path`: 32 hexadecimal digits of 128 random bits. "" when there is no
    // clip (any more) or it cannot be decoded. It looks at the file's first bytes and decodes nothing.
    // [any-thread]
    std::string idOf(const std::string& path);

    // The thumbnail, a PNG. Null when there is no such id, or the file has changed since. It may take a
    // second or two, and idOf() does not wait for it.
    // [any-thread]
    std::shared_ptr<const std::string> thumbnail(const std::string& id);

private:
    struct Entry {
        std::string path;
        PictureStamp stamp;
        std::string id; // "" for what is no picture
        std::shared_ptr<const std::string> thumbnail;
    };
    using Entries = std::list<Entry>;

    // First in the list from now on; end() when there is none.
    Entries::iterator find(std::string Entry::*member, const std::string& value);
    void forgetTheOldest();

    const ClipFolder m_clips;
    std::mutex m_mutex;
    Entries m_entries; // the one asked for last comes first
};
