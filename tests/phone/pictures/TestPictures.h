// Pictures made for a test, and what thumbnails show.

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace test_pictures {

using Colour = std::array<unsigned char, 4>; // red, green, blue, opacity
constexpr Colour nRED{230, 20, 20, 255};
constexpr Colour nGREEN{20, 200, 20, 255};
constexpr Colour nBLUE{20, 20, 220, 255};
constexpr Colour nWHITE{250, 250, 250, 255};

// Four quarters: red and green above, blue and white below.
struct Quarters {
    unsigned width = 64;
    unsigned height = 32;
};

std::string png(Quarters size = {});
enum class PngStyle { Grey, Grey16, Rgb16, Palette, Interlaced, GreyAlpha, OneBit };
std::string png(PngStyle style, Quarters size = {});
// One colour everywhere.
std::string plainPng(Colour colour, Quarters size = {});

enum class JpegStyle { Plain, Grey, Cmyk, Progressive };
std::string jpeg(JpegStyle style = JpegStyle::Plain, Quarters size = {});
// As a camera writes it that is held another way.
std::string turned(const std::string& jpeg, int orientation);

// The first bytes of pictures that would be as large as that.
std::string pngOfSize(std::uint32_t width, std::uint32_t height);
std::string jpegOfSize(unsigned width, unsigned height);

class Shown {
public:
    // Of a PNG; 0 x 0 when it cannot be decoded.
    explicit Shown(std::string_view png);

    unsigned width = 0;
    unsigned height = 0;
    Colour at(unsigned x, unsigned y) const;
    // The quarters by their first letters, in reading order: "rgbw"; "?" for any other colour.
    std::string quarters() const;

private:
    std::vector<unsigned char> m_bytes;
};

} // namespace test_pictures
