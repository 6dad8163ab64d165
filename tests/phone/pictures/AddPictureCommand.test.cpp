#include "pictures/AddPictureCommand.h"

#include <csignal>
#include <sstream>

#include <sys/resource.h>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "pictures/TestPictures.h"

using namespace test_pictures;

namespace {

class AddingPictures : public testing::Test {
protected:
    int add(const std::vector<std::string>& names, const std::filesystem::path& to)
    {
        std::vector<std::filesystem::path> files;
        for (const auto& name : names)
            files.push_back(from / name);
        std::ostringstream out;
        std::ostringstream errors;
        const int code = addPictures(files, to, out, errors);
        const auto without = [this](std::string text) {
            const auto folder = from.path().string() + "/";
            for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder))
                text.erase(at, folder.size());
            return text;
        };
        said = without(out.str());
        complained = without(errors.str());
        return code;
    }
    int add(const std::vector<std::string>& names) { return add(names, clips.path()); }

    TemporaryFolder from;
    TemporaryFolder clips;
    std::string said;
    std::string complained;
};

} // namespace

TEST_F(AddingPictures, CopiesThemAsTheyAre)
{
    from.write("Anna.jpg", jpeg());
    from.write("Bert", png());
    EXPECT_EQ(add({"Anna.jpg", "Bert"}), 0);
    EXPECT_EQ(said, "Anna.jpg: added as \"Anna.jpg\".\nBert: added as \"Bert.png\".\n");
    EXPECT_EQ(clips.read("Anna.jpg"), jpeg());
    EXPECT_EQ(clips.read("Bert.png"), png());
}

TEST_F(AddingPictures, AddsOneOnlyOnceAndNeverReplacesAnother)
{
    from.write("a.png", png());
    EXPECT_EQ(add({"a.png", "a.png"}), 0);
    EXPECT_EQ(said, "a.png: added as \"a.png\".\na.png: is there already, as \"a.png\".\n");

    from.write("a.png", plainPng(nRED));
    EXPECT_EQ(add({"a.png"}), 0);
    EXPECT_EQ(said, "a.png: added as \"a-2.png\".\n");
    EXPECT_EQ(clips.read("a.png"), png());
}

TEST_F(AddingPictures, SaysWhatIsWrongWithAFileAndGoesOn)
{
    from.write("notes.txt", "Buy bread.");
    from.write("cut.jpg", jpeg().substr(0, jpeg().size() / 2));
    from.write("vast.png", pngOfSize(100'000, 100'000));
    from.write("heavy.png", png());
    std::filesystem::resize_file(from / "heavy.png", 8 * 1024 * 1024 + 1);
    std::filesystem::create_directory(from / "folder");
    from.write("good.png", png());

    EXPECT_EQ(add({"notes.txt", "cut.jpg", "vast.png", "heavy.png", "folder", "gone.png", "good.png"}), 1);

    EXPECT_EQ(complained, "notes.txt: no picture was added. It is neither PNG nor JPEG.\n"
                          "cut.jpg: no picture was added. It is damaged.\n"
                          "vast.png: no picture was added. It has more than 40 million pixels.\n"
                          "heavy.png: no picture was added. It is larger than 8 MB.\n"
                          "folder: no picture was added. It is neither PNG nor JPEG.\n"
                          "gone.png: no picture was added. It cannot be read: No such file or directory.\n");
    EXPECT_EQ(said, "good.png: added as \"good.png\".\n");
}

TEST_F(AddingPictures, LeavesNothingBehindWhenAWriteFails)
{
    const auto content = png(PngStyle::Rgb16, {400, 400});
    from.write("a.png", content);
    struct rlimit before {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto signal = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit full {
        content.size() / 2, before.rlim_max
    };
    ::setrlimit(RLIMIT_FSIZE, &full);
    const int code = add({"a.png"});
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signal);

    EXPECT_EQ(code, 1);
    EXPECT_NE(complained.find("cannot be written: File too large."), std::string::npos) << complained;
    EXPECT_TRUE(std::filesystem::is_empty(clips.path()));
}

TEST_F(AddingPictures, SaysWhenTheFolderTakesNoFiles)
{
    from.write("a.png", png());
    EXPECT_EQ(add({"a.png"}, "/proc/self"), 1);
    EXPECT_NE(complained.find("cannot be written"), std::string::npos) << complained;
}
