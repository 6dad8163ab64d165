#include <gtest/gtest.h>

#include "app/PhoneKey.h"

using DisplayAPI::Key;

TEST(PhoneKey, KnowsDigits)
{
    const auto keys = keysFromWord("#");
    ASSERT_TRUE(keys);
    EXPECT_EQ(keys->front().key.kind, Key::Kind::Digit);
    EXPECT_EQ(keys->front().key.digit, '#');
}

TEST(PhoneKey, CountsSoftKeysRowsAndTabsFromOne)
{
    EXPECT_EQ(keysFromWord("soft1")->front().key.index, 0);
    EXPECT_EQ(keysFromWord("row13")->front().key.index, 12);
    EXPECT_EQ(keysFromWord("tab2")->front().key.kind, Key::Kind::Tab);
    EXPECT_FALSE(keysFromWord("soft0"));
    EXPECT_FALSE(keysFromWord("row1x"));
    EXPECT_FALSE(keysFromWord("row99999999999"));
}

TEST(PhoneKey, TellsTheTabKeyFromATab)
{
    EXPECT_EQ(keysFromWord("tab")->front().kind, PhoneKey::Kind::Phonebook);
}

TEST(PhoneKey, TypesTextCharacterByCharacter)
{
    const auto keys = keysFromWord("text:mü");
    ASSERT_EQ(keys->size(), 2U);
    EXPECT_EQ(keys->at(0).key.text, "m");
    EXPECT_EQ(keys->at(1).key.text, "ü");
}

TEST(PhoneKey, KnowsNoOtherWord)
{
    EXPECT_FALSE(keysFromWord("okay"));
    EXPECT_FALSE(keysFromWord(""));
    EXPECT_FALSE(keysFromWord("12"));
}

TEST(PhoneKey, NamesTheCallThatItIsFor)
{
    EXPECT_EQ(keysFromWord("answer:12")->front().kind, PhoneKey::Kind::Answer);
    EXPECT_EQ(keysFromWord("answer:12")->front().call, "12");
    EXPECT_EQ(keysFromWord("end:3")->front().kind, PhoneKey::Kind::End);
    EXPECT_EQ(keysFromWord("end:3")->front().call, "3");
    EXPECT_EQ(keysFromWord("reject")->front().kind, PhoneKey::Kind::End);
    EXPECT_EQ(keysFromWord("reject")->front().call, "");
    EXPECT_FALSE(keysFromWord("answer:"));
    EXPECT_FALSE(keysFromWord("end:"));
}
