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
    EXPECT_EQ(trimmedText("\u3000\u5f20 \u4f1f\u00a0\u2003"), "\u5f20 \u4f1f");
    EXPECT_EQ(trimmedText("\u00a0 \u3000"), "");
    EXPECT_EQ(trimmedText(" \xff "), "\xff");
}

TEST(ContactText, CutsBetweenCharacters)
{
    EXPECT_EQ(cutText("\u00fcber", 2), "\u00fcb");
    EXPECT_EQ(cutText("ab", 5), "ab");
    EXPECT_EQ(cutText("ab", 0), "");
}

// What people see as one character is kept whole or left out, in every script.
TEST(ContactText, CutsNoVisibleCharacterInTwo)
{
    const std::string family = "\U0001f469\u200d\U0001f467"; // one sign of three code points
    EXPECT_EQ(cutText("ab" + family, 4), "ab");
    EXPECT_EQ(cutText("ab" + family, 5), "ab" + family);
    EXPECT_EQ(cutText("\U0001f1e9\U0001f1ea\U0001f1eb\U0001f1f7", 3), "\U0001f1e9\U0001f1ea"); // flags
    EXPECT_EQ(cutText("q\u0323\u0307a", 1), "q");
    EXPECT_EQ(cutText("aq\u0323\u0307", 2), "a");
    EXPECT_EQ(cutText("\u0915\u093f\u0916", 1), "\u0915");                   // Devanagari, nothing before
    EXPECT_EQ(cutText("\u0916\u0915\u093f", 2), "\u0916");                   // a letter with its vowel
    EXPECT_EQ(cutText("\u0e01\u0e33\u0e02", 2), "\u0e01\u0e33");             // Thai
    EXPECT_EQ(cutText("\u1112\u1161\u11ab\u1100", 3), "\u1112\u1161\u11ab"); // Korean in parts
    EXPECT_EQ(cutText("\u05e9\u05c1\u05dc", 1), "\u05e9");                   // Hebrew
    EXPECT_EQ(cutText("\u0645\u064f\u062d", 2), "\u0645\u064f");             // Arabic
}

TEST(ContactText, CutsAHeapOfAccentsThatIsLongerThanAllThatMayStay)
{
    std::string heap = "a";
    for (int i = 0; i < 100; ++i)
        heap += "\u0301\u0323";
    EXPECT_EQ(cutText(heap, 4), "a\u0301\u0323\u0301");
}

TEST(ContactText, MakesEveryTextOfAContactFit)
{
    Contact contact;
    for (const auto text : nTEXT_FIELDS) {
        for (int i = 0; i < 300; ++i)
            contact.*text += "\u5f20";
    }
    makeFit(contact);
    const auto characters = [](const std::string& text) {
        return text.size() / std::string("\u5f20").size();
    };
    for (const auto& field : nCARD_FIELDS)
        EXPECT_EQ(characters(contact.*field.text), field.limit) << field.name;
    EXPECT_EQ(characters(contact.externalId), contact_limits::nEXTERNAL_ID);
    EXPECT_EQ(characters(contact.picture), 30U); // of three bytes each
    const auto before = contact;
    makeFit(contact);
    EXPECT_EQ(contact, before);
}

TEST(ContactText, LooksAtMegabytesNoLongerThanNeeded)
{
    const std::string megabytes(10'000'000, 'n');
    EXPECT_EQ(fitText(megabytes, 30), std::string(30, 'n'));
    std::string letters;
    for (int i = 0; i < 100'000; ++i)
        letters += "\u00fc";
    EXPECT_EQ(fitText("x" + letters, 3), "x\u00fc\u00fc");
}

TEST(ContactText, KnowsIdsThatMessagesAndListsCanHold)
{
    EXPECT_TRUE(isContactId("0e8q5t1mvz3k2jd"));
    EXPECT_TRUE(isContactId(std::string(64, 'x')));
    for (const std::string& id :
         {std::string(), std::string(65, 'x'), std::string("a b"), std::string("a\tb"), std::string("a<b"),
          std::string("a&b"), std::string("\u00fc"), std::string("a\0b", 3)})
        EXPECT_FALSE(isContactId(id)) << id;
}

} // namespace
