#include "pictures/TestPictures.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <utility>

#include <png.h>
#include <turbojpeg.h>

namespace test_pictures {

namespace {

const Colour& colourAt(Quarters size, unsigned x, unsigned y)
{
    if (y < size.height / 2)
        return x < size.width / 2 ? nRED : nGREEN;
    return x < size.width / 2 ? nBLUE : nWHITE;
}

std::vector<unsigned char> pixels(Quarters size, const std::function<Colour(unsigned x, unsigned y)>& colour)
{
    std::vector<unsigned char> bytes;
    for (unsigned y = 0; y < size.height; ++y) {
        for (unsigned x = 0; x < size.width; ++x) {
            const auto pixel = colour(x, y);
            bytes.insert(bytes.end(), pixel.begin(), pixel.end());
        }
    }
    return bytes;
}

std::vector<unsigned char> quarterPixels(Quarters size)
{
    return pixels(size, [&](unsigned x, unsigned y) { return colourAt(size, x, y); });
}

std::string writtenPng(Quarters size, std::vector<unsigned char> bytes)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.format = PNG_FORMAT_RGBA;
    image.width = size.width;
    image.height = size.height;
    png_alloc_size_t length = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::string content(length, '\0');
    if (png_image_write_to_memory(&image, content.data(), &length, 0, bytes.data(), 0, nullptr) == 0)
        std::abort();
    content.resize(length);
    return content;
}

struct PngRow {
    int depth;
    int type;
    int interlace;
};

PngRow layoutOf(PngStyle style)
{
    switch (style) {
    case PngStyle::Grey:
        return {8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE};
    case PngStyle::Grey16:
        return {16, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE};
    case PngStyle::Rgb16:
        return {16, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE};
    case PngStyle::Palette:
        return {8, PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE};
    case PngStyle::Interlaced:
        return {8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_ADAM7};
    case PngStyle::GreyAlpha:
        return {8, PNG_COLOR_TYPE_GRAY_ALPHA, PNG_INTERLACE_NONE};
    case PngStyle::OneBit:
        return {1, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE};
    }
    std::abort();
}

std::vector<unsigned char> rowOf(PngStyle style, Quarters size, unsigned y)
{
    constexpr std::array nPALETTE{&nRED, &nGREEN, &nBLUE, &nWHITE};
    std::vector<unsigned char> row;
    for (unsigned x = 0; x < size.width; ++x) {
        const auto& colour = colourAt(size, x, y);
        switch (style) {
        case PngStyle::Grey:
            row.push_back(colour[0]);
            break;
        case PngStyle::Grey16:
            row.insert(row.end(), {colour[0], colour[0]});
            break;
        case PngStyle::Rgb16:
            row.insert(row.end(), {colour[0], colour[0], colour[1], colour[1], colour[2], colour[2]});
            break;
        case PngStyle::Palette:
            for (unsigned char i = 0; i < nPALETTE.size(); ++i)
                if (*nPALETTE[i] == colour)
                    row.push_back(i);
            break;
        case PngStyle::Interlaced:
            row.insert(row.end(), colour.begin(), colour.begin() + 3);
            break;
        case PngStyle::GreyAlpha:
            row.insert(row.end(), {colour[0], 255});
            break;
        case PngStyle::OneBit:
            if (x % 8 == 0)
                row.push_back(0);
            row.back() = static_cast<unsigned char>(row.back() | (colour[0] > 128 ? 0x80 >> x % 8 : 0));
            break;
        }
    }
    return row;
}

} // namespace

std::string png(Quarters size)
{
    return writtenPng(size, quarterPixels(size));
}

std::string plainPng(Colour colour, Quarters size)
{
    return writtenPng(size, pixels(size, [&](unsigned, unsigned) { return colour; }));
}

std::string png(PngStyle style, Quarters size)
{
    std::string content;
    auto* writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    auto* info = png_create_info_struct(writer);
    png_set_write_fn(
        writer, &content,
        [](png_structp from, png_bytep bytes, std::size_t count) {
            static_cast<std::string*>(png_get_io_ptr(from))->append(reinterpret_cast<char*>(bytes), count);
        },
        nullptr);
    const auto [depth, type, interlace] = layoutOf(style);
    png_set_IHDR(writer, info, size.width, size.height, depth, type, interlace, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    const std::array<png_color, 4> palette{{{nRED[0], nRED[1], nRED[2]},
                                            {nGREEN[0], nGREEN[1], nGREEN[2]},
                                            {nBLUE[0], nBLUE[1], nBLUE[2]},
                                            {nWHITE[0], nWHITE[1], nWHITE[2]}}};
    if (style == PngStyle::Palette)
        png_set_PLTE(writer, info, palette.data(), palette.size());
    std::vector<std::vector<unsigned char>> rows;
    std::vector<png_bytep> pointers;
    for (unsigned y = 0; y < size.height; ++y)
        rows.push_back(rowOf(style, size, y));
    for (auto& row : rows)
        pointers.push_back(row.data());
    png_set_rows(writer, info, pointers.data());
    png_write_png(writer, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&writer, &info);
    return content;
}

std::string jpeg(JpegStyle style, Quarters size)
{
    auto bytes = quarterPixels(size);
    const bool inks = style == JpegStyle::Cmyk;
    // With full light behind the key ink, what is left of the others' light is the colour.
    const int format = inks ? TJPF_CMYK : TJPF_RGBA;
    const int sampling = style == JpegStyle::Grey ? TJSAMP_GRAY : TJSAMP_444;
    const int flags = style == JpegStyle::Progressive ? TJFLAG_PROGRESSIVE : 0;
    const std::unique_ptr<void, decltype(&tjDestroy)> writer(tjInitCompress(), tjDestroy);
    unsigned char* made = nullptr;
    unsigned long length = 0;
    if (tjCompress2(writer.get(), bytes.data(), static_cast<int>(size.width), 0,
                    static_cast<int>(size.height), format, &made, &length, sampling, 90, flags) != 0)
        std::abort();
    std::string content(reinterpret_cast<char*>(made), length);
    tjFree(made);
    return content;
}

std::string turned(const std::string& jpeg, int orientation)
{
    using namespace std::string_literals;
    // A little-endian directory of one entry: tag 0112, short, 1 value.
    const auto directory =
        "II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0"s + static_cast<char>(orientation) + "\0\0\0\0\0\0\0"s;
    const auto data = "Exif\0\0"s + directory;
    const auto length = "\0"s + static_cast<char>(data.size() + 2);
    return jpeg.substr(0, 2) + "\xff\xe1" + length + data + jpeg.substr(2);
}

std::string pngOfSize(std::uint32_t width, std::uint32_t height)
{
    auto content = png({1, 1});
    for (unsigned i = 0; i < 4; ++i) {
        content[16 + i] = static_cast<char>(width >> (24 - 8 * i));
        content[20 + i] = static_cast<char>(height >> (24 - 8 * i));
    }
    return content;
}

std::string jpegOfSize(unsigned width, unsigned height)
{
    auto content = jpeg();
    const auto frame = content.find("\xff\xc0");
    content[frame + 5] = static_cast<char>(height >> 8);
    content[frame + 6] = static_cast<char>(height);
    content[frame + 7] = static_cast<char>(width >> 8);
    content[frame + 8] = static_cast<char>(width);
    return content;
}

Shown::Shown(std::string_view png)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, png.data(), png.size()) == 0)
        return;
    image.format = PNG_FORMAT_RGBA;
    m_bytes.resize(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, m_bytes.data(), 0, nullptr) == 0)
        return;
    width = image.width;
    height = image.height;
}

Colour Shown::at(unsigned x, unsigned y) const
{
    const auto* pixel = &m_bytes.at((std::size_t{y} * width + x) * 4);
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

std::string Shown::quarters() const
{
    constexpr std::array<std::pair<Colour, char>, 4> nNAMES{
        {{nRED, 'r'}, {nGREEN, 'g'}, {nBLUE, 'b'}, {nWHITE, 'w'}}};
    constexpr int nTOLERANCE = 12;
    std::string letters;
    for (const auto& [x, y] : {std::pair(1u, 1u), std::pair(3u, 1u), std::pair(1u, 3u), std::pair(3u, 3u)}) {
        const auto colour = at(width * x / 4, height * y / 4);
        char letter = '?';
        for (const auto& [known, name] : nNAMES) {
            bool same = true;
            for (unsigned i = 0; i < 4; ++i)
                same &= std::abs(colour[i] - known[i]) <= nTOLERANCE;
            letter = same ? name : letter;
        }
        letters += letter;
    }
    return letters;
}

} // namespace test_pictures
