// The program itself: its exit codes are its contract with the telephone.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>

#include <gtest/gtest.h>

namespace {

int exitCodeOf(const std::string& arguments)
{
    const auto command = "'" BIN_DIR "/deskphone-vcard' " + arguments + " >/dev/null 2>&1 </dev/null";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string sample(const std::string& name)
{
    return "'" TEST_DATA_DIR "/vcards/" + name + "'";
}

} // namespace

TEST(VcardProgram, EndsWith0WhenAllWasRead)
{
    EXPECT_EQ(exitCodeOf("parse " + sample("webmail-export.vcf")), 0);
    EXPECT_EQ(exitCodeOf("write --version 4.0"), 0);
}

TEST(VcardProgram, EndsWith2ForAFileThatHoldsNoCards)
{
    EXPECT_EQ(exitCodeOf("parse " + sample("not-a-card.txt")), 2);
    EXPECT_EQ(exitCodeOf("parse /dev/null"), 2);
}

TEST(VcardProgram, EndsWith1ForAFileItCannotRead)
{
    EXPECT_EQ(exitCodeOf("parse " + sample("no-such-file.vcf")), 1);
    EXPECT_EQ(exitCodeOf("parse '" TEST_DATA_DIR "'"), 1);
}

TEST(VcardProgram, SaysSoWhenTheDiskIsFull)
{
    const char* command =
        "echo '{\"surname\":\"Miller\"}' | '" BIN_DIR "/deskphone-vcard' write 2>&1 >/dev/full";
    FILE* program = ::popen(command, "r");
    ASSERT_NE(program, nullptr);
    char said[200] = "";
    EXPECT_NE(std::fgets(said, sizeof said, program), nullptr);
    EXPECT_STREQ(said, "The cards cannot be written. Is the disk full?\n");
    const int status = ::pclose(program);
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

TEST(VcardProgram, EndsWith64WhenCalledWrongly)
{
    EXPECT_EQ(exitCodeOf(""), 64);
    EXPECT_EQ(exitCodeOf("parse"), 64);
    EXPECT_EQ(exitCodeOf("write --version 5.0"), 64);
}
