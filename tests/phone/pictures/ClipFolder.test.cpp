#include "pictures/ClipFolder.h"

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "pictures/TestPictures.h"

using namespace test_pictures;
namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

namespace {

class Clips : public testing::Test {
protected:
    Strings listed()
    {
        auto names = clips.clips();
        std::sort(names.begin(), names.end());
        return names;
    }

    TemporaryFolder folder;
    ClipFolder clips{folder.path()};
};

} // namespace

TEST_F(Clips, AreToldByTheirContent)
{
    folder.write("a.png", png());
    folder.write("b.JPG", jpeg());
    folder.write("c.jpeg", png()); // a wrong ending, and a picture all the same
    folder.write("d.png", "no picture");
    folder.write("e.png", "");
    folder.write("f.png", pngOfSize(8000, 5001));
    folder.write("g.txt", png());
    folder.write("h.svg", "<svg xmlns='http://www.w3.org/2000/svg'/>");
    folder.write("i.png.part-a1b2c3", png());
    EXPECT_EQ(listed(), (Strings{"a.png", "b.JPG", "c.jpeg"}));
}

TEST_F(Clips, HaveNamesThatAContactCanHave)
{
    const std::string longest = std::string(87, 'x') + ".png";
    folder.write(longest, png());
    folder.write("x" + longest, png());
    folder.write(".hidden.png", png());
    folder.write("bad\xff.png", png());
    folder.write("line\nend.png", png());
    folder.write(" blank.png", png());
    folder.write("e\xcc\x81.png", png()); // stored, it would be composed and not found again
    folder.write("\xc3\xa9.png", png());
    EXPECT_EQ(listed(), (Strings{longest, "\xc3\xa9.png"}));
}

TEST_F(Clips, AreOrdinaryFilesOrLinksToSome)
{
    folder.write("a.png", png());
    fs::create_directory(folder / "folder.png");
    fs::create_symlink("a.png", folder / "link.png");
    fs::create_symlink("nothing.png", folder / "broken.png");
    fs::create_symlink("loop.png", folder / "loop.png");
    fs::create_symlink("/dev/zero", folder / "zero.png");
    ASSERT_EQ(::mkfifo((folder / "pipe.png").c_str(), 0600), 0);
    EXPECT_EQ(listed(), (Strings{"a.png", "link.png"}));
}

TEST_F(Clips, AreNoLongerThanTheLimit)
{
    folder.write("a.png", png());
    folder.write("b.png", png());
    fs::resize_file(folder / "a.png", picture_limits::nFILE);
    fs::resize_file(folder / "b.png", picture_limits::nFILE + 1);
    EXPECT_EQ(listed(), Strings{"a.png"});
}

TEST_F(Clips, AreLookedAtAgainWhenTheyChange)
{
    folder.write("a.png", "no picture");
    folder.write("b.png", png());
    EXPECT_EQ(listed(), Strings{"b.png"});

    folder.write("new", png());
    fs::rename(folder / "new", folder / "a.png");
    fs::remove(folder / "b.png");
    EXPECT_EQ(listed(), Strings{"a.png"});
}

TEST_F(Clips, AreNoneWhereTheFolderIsMissing)
{
    ClipFolder missing(folder / "missing");
    EXPECT_TRUE(missing.clips().empty());
    folder.write("file", "");
    ClipFolder file(folder / "file");
    EXPECT_TRUE(file.clips().empty());
}

TEST_F(Clips, AreNoneWhereTheFolderCannotBeRead)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "nothing is unreadable to root";
    folder.write("a.png", png());
    fs::permissions(folder.path(), fs::perms::none);
    EXPECT_TRUE(clips.clips().empty());
}

TEST_F(Clips, AreAddedWithoutEverReplacingAnother)
{
    EXPECT_EQ(clips.add("a.png", png()).value().name, "a.png");
    EXPECT_TRUE(clips.add("a.png", plainPng(nBLUE)).value().isNew);
    EXPECT_EQ(listed(), (Strings{"a-2.png", "a.png"}));

    const auto again = clips.add("a.png", plainPng(nBLUE)).value();
    EXPECT_EQ(again.name, "a-2.png");
    EXPECT_FALSE(again.isNew);
    EXPECT_EQ(folder.read("a.png"), png());
    EXPECT_EQ(folder.read("a-2.png"), plainPng(nBLUE));
}

TEST_F(Clips, AreNotAddedThroughALinkThatLeadsNowhere)
{
    fs::create_symlink("/nowhere/at/all.png", folder / "a.png");
    EXPECT_EQ(clips.add("a.png", png()).value().name, "a-2.png");
}

TEST(ClipName, IsThatOfTheFileMadeFit)
{
    EXPECT_EQ(clipNameFor("/home/me/Anna.PNG", PictureKind::Png), "Anna.PNG");
    EXPECT_EQ(clipNameFor("scan", PictureKind::Png), "scan.png");
    EXPECT_EQ(clipNameFor("photo.webp", PictureKind::Jpeg), "photo.webp.jpg");
    EXPECT_EQ(clipNameFor("..hidden.jpg", PictureKind::Jpeg), "hidden.jpg");
    EXPECT_EQ(clipNameFor("...", PictureKind::Jpeg), "picture.jpg");
    EXPECT_EQ(clipNameFor("a\nb.png", PictureKind::Png), "a b.png");
    EXPECT_EQ(clipNameFor("bad\xff.png", PictureKind::Png), "bad\xef\xbf\xbd.png");
    for (const char* name : {"/home/me/Anna.PNG", "scan", " . x", "\xff", "\n.png", "..", "e\xcc\x81.jpg"})
        EXPECT_TRUE(ClipFolder::isClipName(clipNameFor(name, PictureKind::Png))) << name;
}

TEST(ClipName, IsCutAtWholeCharacters)
{
    std::string greek;
    for (int i = 0; i < 60; ++i)
        greek += "\xce\xb1";
    const auto name = clipNameFor(greek + ".png", PictureKind::Png);
    EXPECT_EQ(name, greek.substr(0, 86) + ".png"); // 91 would end inside a letter
    EXPECT_TRUE(ClipFolder::isClipName(name));
}
