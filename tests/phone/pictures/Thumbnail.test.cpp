#include "pictures/Thumbnail.h"

#include <gtest/gtest.h>

#include "pictures/PictureFile.h"
#include "pictures/TestPictures.h"

using namespace test_pictures;

namespace {

std::string thumbnail(const std::string& content)
{
    const auto made = thumbnailOf(content);
    return made ? made.value() : "";
}

std::string complaint(const std::string& content)
{
    const auto made = thumbnailOf(content);
    return made ? "" : made.error().sentence;
}

int greyAt(const Shown& shown, unsigned x, unsigned y)
{
    const auto colour = shown.at(x, y);
    return colour[0] == colour[1] && colour[1] == colour[2] ? colour[0] : -1;
}

} // namespace

TEST(Thumbnail, KeepsASmallPictureAsItIs)
{
    const Shown shown(thumbnail(png({40, 20})));
    EXPECT_EQ(shown.width, 40u);
    EXPECT_EQ(shown.height, 20u);
    EXPECT_EQ(shown.at(0, 0), nRED);
    EXPECT_EQ(shown.at(39, 19), nWHITE);
}

TEST(Thumbnail, FitsALargePictureIntoItsSquare)
{
    for (const auto& content : {png({1000, 500}), jpeg(JpegStyle::Plain, {1000, 500})}) {
        const Shown shown(thumbnail(content));
        EXPECT_EQ(shown.width, nTHUMBNAIL_SIDE);
        EXPECT_EQ(shown.height, nTHUMBNAIL_SIDE / 2);
        EXPECT_EQ(shown.quarters(), "rgbw");
    }
}

TEST(Thumbnail, LeavesAtLeastOnePixelOfAThinPicture)
{
    for (const auto& content : {png({5000, 1}), png({1, 5000}), jpeg(JpegStyle::Plain, {5000, 1})}) {
        const Shown shown(thumbnail(content));
        EXPECT_EQ(std::max(shown.width, shown.height), nTHUMBNAIL_SIDE);
        EXPECT_EQ(std::min(shown.width, shown.height), 1u);
    }
}

TEST(Thumbnail, KeepsTransparencyAndDoesNotMixInWhatIsTransparent)
{
    const Shown shown(thumbnail(plainPng(Colour{0, 255, 0, 0}, {320, 320})));
    EXPECT_EQ(shown.at(80, 80)[3], 0);
    const Shown half(thumbnail(plainPng(Colour{255, 0, 0, 128}, {320, 320})));
    EXPECT_EQ(half.at(80, 80), (Colour{255, 0, 0, 128}));
}

TEST(Thumbnail, ReadsEveryKindOfPng)
{
    EXPECT_EQ(Shown(thumbnail(png())).quarters(), "rgbw");
    EXPECT_EQ(Shown(thumbnail(png(PngStyle::Rgb16))).quarters(), "rgbw");
    EXPECT_EQ(Shown(thumbnail(png(PngStyle::Palette))).quarters(), "rgbw");
    EXPECT_EQ(Shown(thumbnail(png(PngStyle::Interlaced))).quarters(), "rgbw");
    for (const auto style : {PngStyle::Grey, PngStyle::GreyAlpha}) {
        const Shown grey(thumbnail(png(style)));
        EXPECT_EQ(greyAt(grey, 0, 0), nRED[0]);
        EXPECT_EQ(greyAt(grey, 63, 0), nGREEN[0]);
    }
    const Shown sixteen(thumbnail(png(PngStyle::Grey16)));
    EXPECT_EQ(greyAt(sixteen, 0, 0), nRED[0]);
    const Shown oneBit(thumbnail(png(PngStyle::OneBit)));
    EXPECT_EQ(greyAt(oneBit, 0, 0), 255);
    EXPECT_EQ(greyAt(oneBit, 63, 0), 0);
}

TEST(Thumbnail, ReadsEveryKindOfJpeg)
{
    EXPECT_EQ(Shown(thumbnail(jpeg())).quarters(), "rgbw");
    EXPECT_EQ(Shown(thumbnail(jpeg(JpegStyle::Progressive))).quarters(), "rgbw");
    EXPECT_EQ(Shown(thumbnail(jpeg(JpegStyle::Cmyk))).quarters(), "rgbw");
    const Shown grey(thumbnail(jpeg(JpegStyle::Grey)));
    EXPECT_GT(greyAt(grey, 60, 28), 240);
    EXPECT_NEAR(greyAt(grey, 4, 4), 83, 5); // how bright red is
}

TEST(Thumbnail, TurnsAPictureAsTheCameraWasHeld)
{
    const std::array<const char*, 9> nQUARTERS{"rgbw", "rgbw", "grwb", "wbgr", "bwrg",
                                               "rbgw", "brwg", "wgbr", "gwrb"};
    for (int orientation = 0; orientation <= 8; ++orientation) {
        const Shown shown(thumbnail(turned(jpeg(), orientation)));
        EXPECT_EQ(shown.quarters(), nQUARTERS[static_cast<std::size_t>(orientation)]) << orientation;
        EXPECT_EQ(shown.width, orientation >= 5 ? 32u : 64u) << orientation;
    }
    EXPECT_EQ(Shown(thumbnail(turned(jpeg(), 9))).quarters(), "rgbw");
}

TEST(Thumbnail, IsNotMadeOfWhatIsNoPicture)
{
    const std::string sentence = "It is neither PNG nor JPEG.";
    EXPECT_EQ(complaint(""), sentence);
    EXPECT_EQ(complaint("\x89PNG\r\n\x1a"), sentence);
    EXPECT_EQ(complaint("GIF89a and so on"), sentence);
    EXPECT_EQ(complaint("<svg xmlns='http://www.w3.org/2000/svg'/>"), sentence);
    EXPECT_EQ(complaint("\xff\xd8"), sentence);
}

TEST(Thumbnail, IsMadeUpToTheLimitsAndNotBeyond)
{
    EXPECT_TRUE(pictureHeader(pngOfSize(8000, 5000)));
    EXPECT_EQ(complaint(pngOfSize(8000, 5001)), "It has more than 40 million pixels.");
    EXPECT_EQ(complaint(pngOfSize(0x7fffffff, 0x7fffffff)), "It has more than 40 million pixels.");
    EXPECT_EQ(complaint(pngOfSize(0xffffffff, 0xffffffff)), "It has more than 40 million pixels.");
    EXPECT_TRUE(pictureHeader(jpegOfSize(8000, 5000)));
    EXPECT_EQ(complaint(jpegOfSize(8000, 5001)), "It has more than 40 million pixels.");
    EXPECT_EQ(complaint(jpegOfSize(65535, 65535)), "It has more than 40 million pixels.");
    EXPECT_EQ(complaint(pngOfSize(0, 5)), "It is damaged.");
    EXPECT_EQ(complaint(jpegOfSize(5, 0)), "It is damaged.");

    auto content = png();
    content.resize(picture_limits::nFILE);
    EXPECT_EQ(complaint(content), "");
    content += '\0';
    EXPECT_EQ(complaint(content), "It is larger than 8 MB.");
}

TEST(Thumbnail, IsNotMadeOfAPictureThatEndsEarly)
{
    for (const auto& content :
         {png(), png(PngStyle::Interlaced), jpeg(), jpeg(JpegStyle::Progressive), turned(jpeg(), 6)}) {
        for (std::size_t length = 8; length + 12 < content.size(); ++length)
            ASSERT_EQ(complaint(content.substr(0, length)), "It is damaged.") << length;
    }
}

// What comes out is of no consequence.
TEST(Thumbnail, SurvivesEveryDamagedByte)
{
    for (const auto& content : {png(PngStyle::Palette), turned(jpeg(JpegStyle::Progressive), 6)}) {
        for (std::size_t at = 0; at < content.size(); ++at) {
            auto damaged = content;
            damaged[at] = static_cast<char>(~damaged[at]);
            const auto made = thumbnailOf(damaged);
            EXPECT_TRUE(!made || Shown(made.value()).width > 0) << at;
        }
    }
}

TEST(Thumbnail, GivesUpOnAHeaderThatNeverEnds)
{
    std::string content = "\xff\xd8";
    for (int i = 0; i < 1'000'000; ++i)
        content.append("\xff\xe0\0\x02", 4);
    EXPECT_EQ(complaint(content), "It is damaged.");
    EXPECT_EQ(complaint("\xff\xd8" + std::string(1'000'000, '\xff')), "It is damaged.");
}
