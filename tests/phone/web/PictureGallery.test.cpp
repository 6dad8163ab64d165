#include "web/PictureGallery.h"

#include <set>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "pictures/TestPictures.h"

using namespace test_pictures;
namespace fs = std::filesystem;

namespace {

class Gallery : public testing::Test {
protected:
    std::string idOf(const std::string& name) { return gallery.idOf((folder / name).string()); }
    // What the picture of an id shows.
    std::string shown(const std::string& id)
    {
        const auto thumbnail = gallery.thumbnail(id);
        return thumbnail ? Shown(*thumbnail).quarters() : "nothing";
    }
    // Another file under the same name.
    void replace(const std::string& name, const std::string& content)
    {
        folder.write("new", content);
        fs::rename(folder / "new", folder / name);
    }

    TemporaryFolder folder;
    PictureGallery gallery{folder.path()};
};

} // namespace

TEST_F(Gallery, KnowsAPictureByOneIdThatNobodyCanGuess)
{
    folder.write("a.png", png());
    folder.write("b.jpg", jpeg());
    const auto id = idOf("a.png");
    EXPECT_EQ(id.size(), 32u);
    EXPECT_EQ(id.find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_EQ(idOf("a.png"), id);
    EXPECT_NE(idOf("b.jpg"), id);
    EXPECT_NE(PictureGallery(folder.path()).idOf((folder / "a.png").string()), id);
    EXPECT_EQ(shown(id), "rgbw");
    EXPECT_EQ(shown(id), "rgbw");
}

TEST_F(Gallery, HasNoPictureForAnyOtherId)
{
    folder.write("a.png", png());
    folder.write("b.png", "no picture");
    auto id = idOf("a.png");
    EXPECT_EQ(idOf("b.png"), "");
    EXPECT_EQ(shown(""), "nothing");
    EXPECT_EQ(shown(id.substr(1)), "nothing");
    id.back() = id.back() == '0' ? '1' : '0';
    EXPECT_EQ(shown(id), "nothing");
}

TEST_F(Gallery, ShowsNothingButClipsOfItsFolder)
{
    folder.write("notes.txt", png());
    folder.write(".hidden.png", png());
    fs::create_directory(folder / "inner");
    folder.write("inner/a.png", png());
    TemporaryFolder other;
    other.write("a.png", png());
    for (const char* name :
         {"notes.txt", ".hidden.png", "inner/a.png", "inner/../inner/a.png", "gone.png", ""})
        EXPECT_EQ(idOf(name), "") << name;
    EXPECT_EQ(gallery.idOf((other / "a.png").string()), "");
    EXPECT_EQ(gallery.idOf("a.png"), "");
    EXPECT_EQ(gallery.idOf(""), "");
}

TEST_F(Gallery, LosesAPictureThatIsGone)
{
    folder.write("a.png", png());
    const auto id = idOf("a.png");
    fs::remove(folder / "a.png");
    EXPECT_EQ(shown(id), "nothing");
    EXPECT_EQ(idOf("a.png"), "");
}

TEST_F(Gallery, GivesAReplacedPictureAnotherId)
{
    folder.write("a.png", png());
    const auto id = idOf("a.png");
    replace("a.png", plainPng(nBLUE));
    EXPECT_EQ(shown(id), "nothing");
    const auto now = idOf("a.png");
    EXPECT_NE(now, id);
    EXPECT_EQ(shown(now), "bbbb");
}

TEST_F(Gallery, FindsOutThatAPictureIsDamagedWhenItIsDecoded)
{
    folder.write("a.jpg", jpeg().substr(0, jpeg().size() - 10));
    const auto id = idOf("a.jpg");
    EXPECT_NE(id, "");
    EXPECT_EQ(shown(id), "nothing");
    EXPECT_EQ(idOf("a.jpg"), "");

    replace("a.jpg", jpeg());
    EXPECT_EQ(shown(idOf("a.jpg")), "rgbw");
}

TEST_F(Gallery, ForgetsWhatWasAskedForLongestAgo)
{
    folder.write("a.png", png());
    folder.write("b.png", png());
    const auto first = idOf("a.png");
    const auto used = idOf("b.png");
    for (std::size_t i = 2; i <= PictureGallery::nMOST_PICTURES; ++i) {
        const auto name = std::to_string(i) + ".png";
        folder.write(name, png());
        EXPECT_EQ(shown(idOf(name)), "rgbw");
        EXPECT_EQ(shown(used), "rgbw");
    }
    EXPECT_EQ(shown(first), "nothing");
    EXPECT_EQ(shown(idOf("a.png")), "rgbw");
}
