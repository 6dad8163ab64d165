// Any bytes at all are no picture, or give a thumbnail that is a small picture again. What goes in is
// capped well below the limits: a large picture is slow, and no different.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "pictures/PictureFile.h"
#include "pictures/Thumbnail.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::uint64_t nPIXELS = 200'000;
    const std::string_view content(reinterpret_cast<const char*>(data), size);
    const auto header = pictureHeader(content);
    if (!header || std::uint64_t{header.value().width} * header.value().height > nPIXELS)
        return 0;
    const auto thumbnail = thumbnailOf(content);
    if (!thumbnail)
        return 0;
    const auto small = pictureHeader(thumbnail.value());
    if (!small || std::max(small.value().width, small.value().height) > nTHUMBNAIL_SIDE ||
        !thumbnailOf(thumbnail.value()))
        std::abort();
    return 0;
}
