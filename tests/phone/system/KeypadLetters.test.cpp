#include "system/KeypadLetters.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

namespace {

std::string typed(std::string_view language, char key)
{
    std::string all;
    for (const auto& letter : keypadLetters(language, key))
        all += letter;
    return all;
}

} // namespace

TEST(KeypadLetters, PlainLettersComeBeforeAccentedOnesAndTheDigitLast)
{
    EXPECT_EQ(typed("de", '2'), "abc\u00E42");
    EXPECT_EQ(typed("de", '7'), "pqrs\u00DF7");
    EXPECT_EQ(typed("da", '2'), "abc\u00E6\u00E52");
    EXPECT_EQ(typed("tr", '4'), "ghi\u011F\u01314");
    EXPECT_EQ(typed("en", '9'), "wxyz9");
}

TEST(KeypadLetters, EachCharacterIsOnePress)
{
    EXPECT_EQ(keypadLetters("sv", '6'), (std::vector<std::string>{"m", "n", "o", "\u00F6", "6"}));
}

TEST(KeypadLetters, OtherAlphabetsFollowTheLatinOne)
{
    EXPECT_EQ(typed("ru", '3'), "def\u0434\u0435\u0436\u0437\u04513");
    EXPECT_EQ(typed("el", '2'), "abc\u03B1\u03B2\u03B3\u03AC2");
}

TEST(KeypadLetters, Key1GivesPunctuationAndKey0TheBlank)
{
    for (const char* language : {"en", "ru", "el", "hu"}) {
        EXPECT_EQ(typed(language, '1'), ".,-'&1");
        EXPECT_EQ(typed(language, '0'), " 0");
    }
}

TEST(KeypadLetters, TheCountryOfALanguageDoesNotMatter)
{
    EXPECT_EQ(typed("de_AT.UTF-8", '8'), typed("de", '8'));
    EXPECT_EQ(typed("pt-BR", '2'), typed("pt", '2'));
}

TEST(KeypadLetters, AnUnknownLanguageTypesAsEnglish)
{
    EXPECT_EQ(typed("tlh", '6'), "mno6");
    EXPECT_EQ(typed("", '2'), "abc2");
    EXPECT_EQ(typed("# Written by", '2'), "abc2");
}

TEST(KeypadLetters, OtherKeysHaveNone)
{
    for (const char key : {'*', '#', ',', 'a', ' '})
        EXPECT_TRUE(keypadLetters("de", key).empty()) << key;
}

TEST(KeypadLetters, EveryLanguageHasTheLatinAlphabetAndAllDigits)
{
    for (const char* language : {"en", "de", "fr", "es", "it", "pt", "nl", "pl", "cs", "tr", "ru", "el", "sv",
                                 "da", "nb", "fi", "hu"}) {
        std::string all;
        for (char key = '0'; key <= '9'; ++key) {
            const auto letters = keypadLetters(language, key);
            ASSERT_FALSE(letters.empty());
            EXPECT_EQ(letters.back(), std::string(1, key));
            all += typed(language, key);
        }
        for (char letter = 'a'; letter <= 'z'; ++letter)
            EXPECT_EQ(std::count(all.begin(), all.end(), letter), 1) << language << ' ' << letter;
        EXPECT_NE(language == std::string("en"), typed(language, '2') + typed(language, '4') +
                                                         typed(language, '6') + typed(language, '8') +
                                                         typed(language, '3') !=
                                                     "abc2ghi4mno6tuv8def3");
    }
}
