// A picture before anything of it is decoded: what kind it is and how large.
//
// Pictures are PNG and JPEG, told by their content and never by their names. Errors are sentences
// about "it": "It is neither PNG nor JPEG."

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "app/Result.h"

namespace picture_limits {

// What a telephone's camera makes fits; what is larger would only cost time and memory.
constexpr std::size_t nFILE = 8 * 1024 * 1024; // bytes
constexpr std::uint64_t nPIXELS = 40'000'000;  // width times height

} // namespace picture_limits

enum class PictureKind { Png, Jpeg };

struct PictureHeader {
    PictureKind kind = PictureKind::Png;
    std::uint32_t width = 0; // pixels, as stored: the orientation may turn them
    std::uint32_t height = 0;
    std::size_t end = 0; // bytes of the file that say so
};

// Whether a file is still the one it was: another one, or another content, has another stamp.
struct PictureStamp {
    ino_t file = 0;
    off_t size = 0;
    std::int64_t changed = 0; // ns since 1970
    bool operator==(const PictureStamp&) const = default;
};

// The header of a picture within the limits, from its whole content.
// [any-thread]
Result<PictureHeader> pictureHeader(std::string_view content);

class PictureFile {
public:
    // Only of what is an ordinary file, or a link to one; nothing when it is gone.
    static std::optional<PictureStamp> stampOf(const std::filesystem::path& file);

    // An ordinary file that can be read and is no larger than the limit. It never blocks on a pipe.
    static Result<PictureFile> open(const std::filesystem::path& file);
    ~PictureFile();

    PictureFile(PictureFile&& other) noexcept;
    PictureFile& operator=(PictureFile&&) = delete;

    const PictureStamp& stamp() const { return m_stamp; }

    // Reads a few bytes only, however large the file is.
    Result<PictureHeader> header() const;
    Result<std::string> content() const;

private:
    PictureFile(int descriptor, const PictureStamp& stamp)
        : m_descriptor(descriptor)
        , m_stamp(stamp)
    {
    }

    int m_descriptor;
    PictureStamp m_stamp;
};
