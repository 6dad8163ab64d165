#include "pictures/Thumbnail.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include <libexif/exif-data.h>
#include <png.h>
#include <turbojpeg.h>

#include "pictures/PictureFile.h"

namespace {

constexpr std::size_t nCHANNELS = 4; // red, green, blue, opacity

struct Raster {
    Raster(std::uint32_t columns, std::uint32_t rows)
        : width(columns)
        , height(rows)
        , bytes(std::make_unique_for_overwrite<unsigned char[]>(std::size_t{columns} * rows * nCHANNELS))
    {
    }

    unsigned char* at(std::size_t x, std::size_t y) const { return &bytes[(y * width + x) * nCHANNELS]; }

    std::uint32_t width;
    std::uint32_t height;
    std::unique_ptr<unsigned char[]> bytes;
};

Error damaged()
{
    return {ErrorCode::Malformed, "It is damaged."};
}

const unsigned char* bytesOf(std::string_view content)
{
    return reinterpret_cast<const unsigned char*>(content.data());
}

Result<Raster> decodedPng(std::string_view content, const PictureHeader& header)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    const std::unique_ptr<png_image, decltype(&png_image_free)> freed(&image, png_image_free);
    if (png_image_begin_read_from_memory(&image, content.data(), content.size()) == 0 ||
        image.width != header.width || image.height != header.height)
        return damaged();
    Raster raster(image.width, image.height);
    image.format = PNG_FORMAT_RGBA;
    image.flags |= PNG_IMAGE_FLAG_16BIT_sRGB; // unless the file says otherwise
    if (png_image_finish_read(&image, nullptr, raster.bytes.get(), 0, nullptr) == 0)
        return damaged();
    return raster;
}

// The coarsest of the scales that cost nothing to decode at, with no less than a thumbnail's pixels.
tjscalingfactor scaleFor(const PictureHeader& header)
{
    tjscalingfactor best{1, 1};
    int count = 0;
    const auto* factors = tjGetScalingFactors(&count);
    for (int i = 0; i < count; ++i) {
        const auto longest = static_cast<int>(std::max(header.width, header.height));
        if (TJSCALED(longest, factors[i]) >= static_cast<int>(nTHUMBNAIL_SIDE) &&
            factors[i].num * best.denom < best.num * factors[i].denom)
            best = factors[i];
    }
    return best;
}

// Printers' pictures have their inks stored as light that is left, as every program writes them.
void mixInks(Raster& raster)
{
    const auto size = std::size_t{raster.width} * raster.height * nCHANNELS;
    for (auto* pixel = raster.bytes.get(); pixel != raster.bytes.get() + size; pixel += nCHANNELS) {
        for (std::size_t i = 0; i < 3; ++i)
            pixel[i] = static_cast<unsigned char>(pixel[i] * pixel[3] / 255);
        pixel[3] = 255;
    }
}

Result<Raster> decodedJpeg(std::string_view content, const PictureHeader& header)
{
    // The library fills in what is missing; but a picture without its end is not all there.
    if (content.find("\xff\xd9", header.end) == std::string_view::npos)
        return damaged();
    const std::unique_ptr<void, decltype(&tjDestroy)> decoder(tjInitDecompress(), tjDestroy);
    int width = 0;
    int height = 0;
    int sampling = 0;
    int colours = 0;
    if (!decoder || tjDecompressHeader3(decoder.get(), bytesOf(content), content.size(), &width, &height,
                                        &sampling, &colours) != 0)
        return damaged();
    if (std::cmp_not_equal(width, header.width) || std::cmp_not_equal(height, header.height))
        return damaged();
    const auto scale = scaleFor(header);
    Raster raster(static_cast<std::uint32_t>(TJSCALED(width, scale)),
                  static_cast<std::uint32_t>(TJSCALED(height, scale)));
    const bool inks = colours == TJCS_CMYK || colours == TJCS_YCCK;
    const int decoded = tjDecompress2(decoder.get(), bytesOf(content), content.size(), raster.bytes.get(),
                                      static_cast<int>(raster.width), 0, static_cast<int>(raster.height),
                                      inks ? TJPF_CMYK : TJPF_RGBA, TJFLAG_LIMITSCANS);
    // Cameras write what is worth a warning and looks well.
    if (decoded != 0 && tjGetErrorCode(decoder.get()) != TJERR_WARNING)
        return damaged();
    if (inks)
        mixInks(raster);
    return raster;
}

// The mean of the pixels between two corners; what is more opaque counts more.
void putMean(const Raster& from, std::size_t left, std::size_t top, std::size_t right, std::size_t bottom,
             unsigned char* pixel)
{
    std::array<std::uint64_t, nCHANNELS> sums{};
    for (auto y = top; y < bottom; ++y) {
        for (auto x = left; x < right; ++x) {
            const auto* source = from.at(x, y);
            for (std::size_t i = 0; i < 3; ++i)
                sums[i] += std::uint64_t{source[i]} * source[3];
            sums[3] += source[3];
        }
    }
    const auto opacity = std::max<std::uint64_t>(sums[3], 1);
    for (std::size_t i = 0; i < 3; ++i)
        pixel[i] = static_cast<unsigned char>((sums[i] + opacity / 2) / opacity);
    pixel[3] = static_cast<unsigned char>(sums[3] / ((right - left) * (bottom - top)));
}

Raster madeSmall(Raster raster)
{
    const auto longest = std::max(raster.width, raster.height);
    if (longest <= nTHUMBNAIL_SIDE)
        return raster;
    const auto side = [&](std::uint32_t length) {
        const auto scaled = (std::uint64_t{length} * nTHUMBNAIL_SIDE + longest / 2) / longest;
        return std::max<std::uint32_t>(1, static_cast<std::uint32_t>(scaled));
    };
    Raster small(side(raster.width), side(raster.height));
    const auto edge = [](std::uint64_t index, std::uint64_t length, std::uint64_t smallLength) {
        return static_cast<std::size_t>(index * length / smallLength);
    };
    for (std::uint32_t y = 0; y < small.height; ++y) {
        for (std::uint32_t x = 0; x < small.width; ++x)
            putMean(raster, edge(x, raster.width, small.width), edge(y, raster.height, small.height),
                    edge(x + 1, raster.width, small.width), edge(y + 1, raster.height, small.height),
                    small.at(x, y));
    }
    return small;
}

// 1 to 8 as cameras write it: where the first row and column of the picture are to be seen.
int orientationOf(std::string_view content)
{
    constexpr int nUPRIGHT = 1;
    const std::unique_ptr<ExifData, decltype(&exif_data_unref)> data(exif_data_new(), exif_data_unref);
    if (!data)
        return nUPRIGHT;
    // Read as it is: nothing is to be added or corrected.
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
    exif_data_load_data(data.get(), bytesOf(content), static_cast<unsigned>(content.size()));
    const auto* entry = exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
    if (!entry || entry->format != EXIF_FORMAT_SHORT || entry->components != 1)
        return nUPRIGHT;
    const int orientation = exif_get_short(entry->data, exif_data_get_byte_order(data.get()));
    return orientation >= 1 && orientation <= 8 ? orientation : nUPRIGHT;
}

Raster madeUpright(Raster raster, int orientation)
{
    const bool turned = orientation >= 5; // rows are columns
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    Raster upright(turned ? raster.height : raster.width, turned ? raster.width : raster.height);
    for (std::uint32_t y = 0; y < upright.height; ++y) {
        for (std::uint32_t x = 0; x < upright.width; ++x) {
            const auto column = turned ? y : x;
            const auto row = turned ? x : y;
            std::memcpy(upright.at(x, y),
                        raster.at(fromRight ? raster.width - 1 - column : column,
                                  fromBottom ? raster.height - 1 - row : row),
                        nCHANNELS);
        }
    }
    return upright;
}

Result<std::string> encodedPng(const Raster& raster)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.format = PNG_FORMAT_RGBA;
    image.width = raster.width;
    image.height = raster.height;
    std::string content(PNG_IMAGE_PNG_SIZE_MAX(image), '\0');
    png_alloc_size_t size = content.size();
    if (png_image_write_to_memory(&image, content.data(), &size, 0, raster.bytes.get(), 0, nullptr) == 0)
        return Error{ErrorCode::Failed, "It cannot be made smaller."};
    content.resize(size);
    content.shrink_to_fit();
    return content;
}

Result<std::string> thumbnailOf(std::string_view content, const PictureHeader& header)
{
    const bool png = header.kind == PictureKind::Png;
    auto raster = png ? decodedPng(content, header) : decodedJpeg(content, header);
    if (!raster)
        return raster.error();
    auto small = madeSmall(std::move(raster).value());
    if (!png)
        small = madeUpright(std::move(small), orientationOf(content));
    return encodedPng(small);
}

} // namespace

Result<std::string> thumbnailOf(std::string_view content)
{
    const auto header = pictureHeader(content);
    if (!header)
        return header.error();
    try {
        return thumbnailOf(content, header.value());
    } catch (const std::bad_alloc&) {
        return Error{ErrorCode::Failed, "There is not enough memory to look at it."};
    }
}
