#include "directory/ContactText.h"

#include <gtest/gtest.h>

namespace {

TEST(ContactText, LeavesCleanTextAsItIs)
{
    for (const char* text : {"", "Miller", "M\u00fcller", "\u5f20\u4f1f", "a \u200d b"}) {
        EXPECT_TRUE(isCleanText(text));
        EXPECT_EQ(cleanText(text), text);
    }
}

TEST(ContactText, ComposesLettersAndMarks)
{
    EXPECT_EQ(cleanText("e\u0301"), "\u00e9");
    EXPECT_EQ(cleanText(cleanText("e\u0301\u0323")), cleanText("e\u0323\u0301"));
}

TEST(ContactText, MakesBlanksOfTabsAndLineEnds)
{
    EXPECT_EQ(cleanText("a\tb\nc\rd\u0085e\u2028f"), "a b c d e f");
    EXPECT_FALSE(isCleanText("a\tb"));
}

TEST(ContactText, DropsControlsAndDirectionMarksAndNoncharacters)
{
    EXPECT_EQ(cleanText(std::string("a\0b\x1b[31m\x7f", 9) + "\u009b\u202e\u2066\ufeff\uffff"), "ab[31m");
}

TEST(ContactText, ReplacesWhatIsNoUtf8)
{
    EXPECT_EQ(cleanText("a\xff\xc3"), "a\ufffd\ufffd");
    EXPECT_EQ(cleanText("\xed\xa0\x80x").back(), 'x'); // a surrogate
    EXPECT_FALSE(isCleanText("\xc0\xaf"));
}

TEST(ContactText, TrimsBlanksAtEitherEnd)
{
    EXPECT_EQ(trimmedText("  a b "), "a b");
    EXPECT_EQ(trimmedText("   "), "");
    EXPECT_EQ(trimmedText(""), "");
}

TEST(ContactText, CutsBetweenCharacters)
{
    EXPECT_EQ(cutText("\u00fcber", 2), "\u00fcb");
    EXPECT_EQ(cutText("ab", 5), "ab");
    EXPECT_EQ(cutText("ab", 0), "");
}

} // namespace
