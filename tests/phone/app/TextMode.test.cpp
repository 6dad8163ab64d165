#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <sstream>

#include "../TemporaryFolder.h"
#include "app/Phone.h"
#include "app/Resources.h"
#include "app/TextMode.h"

using namespace std::chrono_literals;

namespace {

// What the telephone with hello-phonelet prints for these words.
std::string printed(const std::string& words)
{
    TemporaryFolder folder;
    folder.write("words", words);
    PhoneOptions options;
    options.profile = Profile::in(folder / "profile");
    options.catalogues = Resources::beside(BIN_DIR).catalogues;
    options.items = {{"language", "en"}};
    options.phonelets = {{"hello", std::string(BIN_DIR) + "/libhello-phonelet.so"}};
    const auto phone = std::move(Phone::create(std::move(options))).value();
    phone->start();
    EXPECT_TRUE(phone->events().waitUntilDone(20s));

    std::ostringstream out;
    const int in = open((folder / "words").c_str(), O_RDONLY | O_CLOEXEC);
    const int stop = eventfd(0, EFD_CLOEXEC);
    TextMode(phone->events(), phone->frames(), phone->keys(), out).run(in, stop);
    close(in);
    close(stop);
    return out.str();
}

const std::string LINE = "----------------------------------------\n";
const std::string LIST = "Greetings\n> Hello\n  Good morning\n  Good evening\n( OK )( Menu )( Back )\n";

} // namespace

TEST(TextMode, PrintsTheScreenAfterEachWord)
{
    const auto text = printed("phonebook ok\n");
    const auto list = text.find(LINE + LIST + LINE);
    ASSERT_NE(list, text.npos) << text;
    EXPECT_EQ(text.substr(list + (LINE + LIST + LINE).size()), "Greetings\n! Hello!\n" + LINE);
}

TEST(TextMode, TakesTheLastWordWithoutABlankAfterIt)
{
    EXPECT_NE(printed("phonebook").find(LIST), std::string::npos);
}

TEST(TextMode, NamesAWordThatIsNoKey)
{
    EXPECT_NE(printed("okay wait:1 wait:x").find("There is no key \"okay\".\nThere is no key \"wait:1\".\n"),
              std::string::npos);
}
