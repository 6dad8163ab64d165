#include "pictures/PictureFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <functional>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Copies at most `size` bytes from `offset` on; fewer at the end.
using ReadAt = std::function<std::size_t(std::size_t offset, unsigned char* into, std::size_t size)>;

constexpr std::array<unsigned char, 8> nPNG{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
constexpr std::array<unsigned char, 3> nJPEG{0xff, 0xd8, 0xff};
// Cameras write some dozens, a file made to keep us busy has millions.
constexpr int nMOST_SEGMENTS = 512;

Error notAPicture()
{
    return {ErrorCode::Malformed, "It is neither PNG nor JPEG."};
}

Error damaged()
{
    return {ErrorCode::Malformed, "It is damaged."};
}

Error tooLarge()
{
    return {ErrorCode::Malformed,
            "It is larger than " + std::to_string(picture_limits::nFILE / 1024 / 1024) + " MB."};
}

Error unreadable(int reason)
{
    return {reason == ENOENT ? ErrorCode::NotFound : ErrorCode::Denied,
            "It cannot be read: " + std::generic_category().message(reason) + "."};
}

std::uint32_t bigEndian(const unsigned char* bytes, std::size_t count)
{
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < count; ++i)
        number = number << 8 | bytes[i];
    return number;
}

Result<PictureHeader> pngHeader(const ReadAt& readAt)
{
    // The signature, then the length, name, width and height of the first chunk.
    std::array<unsigned char, 24> bytes{};
    if (readAt(0, bytes.data(), bytes.size()) < bytes.size() ||
        std::memcmp(bytes.data() + 12, "IHDR", 4) != 0)
        return damaged();
    return PictureHeader{PictureKind::Png, bigEndian(bytes.data() + 16, 4), bigEndian(bytes.data() + 20, 4),
                         bytes.size()};
}

bool standsAlone(unsigned char marker)
{
    return marker == 0x01 || (marker >= 0xd0 && marker <= 0xd7);
}

// C4, C8 and CC lie among the frames' numbers and mean something else.
bool beginsFrame(unsigned char marker)
{
    return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

Result<PictureHeader> jpegHeader(const ReadAt& readAt)
{
    std::size_t offset = 2;
    for (int segment = 0; segment < nMOST_SEGMENTS; ++segment) {
        // FF, marker, length, precision, height, width
        std::array<unsigned char, 9> bytes{};
        const auto count = readAt(offset, bytes.data(), bytes.size());
        const auto marker = bytes[1];
        if (count < 4 || bytes[0] != 0xff)
            break;
        if (marker == 0xff) {
            ++offset;
        } else if (standsAlone(marker)) {
            offset += 2;
        } else if (beginsFrame(marker) && count == bytes.size()) {
            return PictureHeader{PictureKind::Jpeg, bigEndian(bytes.data() + 7, 2),
                                 bigEndian(bytes.data() + 5, 2), offset + bytes.size()};
        } else {
            offset += 2 + std::max<std::size_t>(2, bigEndian(bytes.data() + 2, 2));
        }
    }
    return damaged();
}

Result<PictureHeader> readHeader(const ReadAt& readAt)
{
    std::array<unsigned char, 8> first{};
    readAt(0, first.data(), first.size());
    const bool png = first == nPNG;
    if (!png && !std::equal(nJPEG.begin(), nJPEG.end(), first.begin()))
        return notAPicture();
    auto header = png ? pngHeader(readAt) : jpegHeader(readAt);
    if (!header)
        return header;
    const auto pixels = std::uint64_t{header.value().width} * header.value().height;
    if (pixels == 0)
        return damaged();
    if (pixels > picture_limits::nPIXELS)
        return Error{ErrorCode::Malformed, "It has more than " +
                                               std::to_string(picture_limits::nPIXELS / 1'000'000) +
                                               " million pixels."};
    return header;
}

std::size_t readFully(int descriptor, std::size_t offset, void* into, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const auto count = ::pread(descriptor, static_cast<char*>(into) + done, size - done,
                                   static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

PictureStamp stampFrom(const struct stat& status)
{
    constexpr std::int64_t nSECOND = 1'000'000'000;
    // Unlike the time of the last write, that of the last change cannot be set back.
    return {status.st_ino, status.st_size, status.st_ctim.tv_sec * nSECOND + status.st_ctim.tv_nsec};
}

} // namespace

Result<PictureHeader> pictureHeader(std::string_view content)
{
    if (content.size() > picture_limits::nFILE)
        return tooLarge();
    return readHeader([&](std::size_t offset, unsigned char* into, std::size_t size) {
        const auto part = offset < content.size() ? content.substr(offset, size) : std::string_view();
        std::copy(part.begin(), part.end(), into);
        return part.size();
    });
}

std::optional<PictureStamp> PictureFile::stampOf(const std::filesystem::path& file)
{
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return stampFrom(status);
}

Result<PictureFile> PictureFile::open(const std::filesystem::path& file)
{
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return unreadable(errno);
    struct stat status {};
    const bool known = ::fstat(descriptor, &status) == 0;
    PictureFile opened(descriptor, stampFrom(status));
    if (!known || !S_ISREG(status.st_mode))
        return notAPicture();
    if (static_cast<std::uint64_t>(status.st_size) > picture_limits::nFILE)
        return tooLarge();
    return opened;
}

PictureFile::PictureFile(PictureFile&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_stamp(other.m_stamp)
{
}

PictureFile::~PictureFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

Result<PictureHeader> PictureFile::header() const
{
    return readHeader([this](std::size_t offset, unsigned char* into, std::size_t size) {
        return readFully(m_descriptor, offset, into, size);
    });
}

Result<std::string> PictureFile::content() const
{
    // A file that grows meanwhile is read as far as it was when it was opened.
    std::string bytes(static_cast<std::size_t>(m_stamp.size), '\0');
    if (readFully(m_descriptor, 0, bytes.data(), bytes.size()) < bytes.size())
        return damaged();
    return bytes;
}
