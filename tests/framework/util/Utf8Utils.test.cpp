#include <framework/util/Utf8Utils.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

class Collation : public testing::Test {
protected:
    ~Collation() override { Utf8Utils::destroy(); }

    static std::string normal(std::string text)
    {
        Utf8Utils::normalize(text);
        return text;
    }
    // Whether typing `typed` finds `name`.
    static bool finds(const std::string& typed, const std::string& name)
    {
        return Utf8Utils::find(normal(name), normal(typed)) == 0;
    }
    static std::vector<std::string> sorted(std::vector<std::string> names)
    {
        std::sort(names.begin(), names.end(), Utf8Utils::compare);
        return names;
    }
};

TEST_F(Collation, SortsAsEachLanguageDoes)
{
    const std::vector<std::string> names{"Zorn", "Ärger", "Arm"};
    Utf8Utils::create("de");
    EXPECT_EQ(sorted(names), (std::vector<std::string>{"Ärger", "Arm", "Zorn"}));
    Utf8Utils::setSortOrder("sv");
    EXPECT_EQ(sorted(names), (std::vector<std::string>{"Arm", "Zorn", "Ärger"}));

    Utf8Utils::setSortOrder("cs");
    EXPECT_EQ(sorted({"chata", "cena", "hora", "ihned"}),
              (std::vector<std::string>{"cena", "hora", "chata", "ihned"}));
    Utf8Utils::setSortOrder("es");
    EXPECT_EQ(sorted({"ñu", "nulo", "oso"}), (std::vector<std::string>{"nulo", "ñu", "oso"}));
}

TEST_F(Collation, FindsWhatTheLanguageTakesForTheSameLetters)
{
    for (const char* language : {"de", "en", "fr", "cs"}) {
        Utf8Utils::setSortOrder(language);
        EXPECT_TRUE(finds("mu", "Müller")) << language;
    }
    for (const char* language : {"sv", "da", "nb", "fi", "hu", "tr"}) {
        Utf8Utils::setSortOrder(language);
        EXPECT_FALSE(finds("mu", "Müller")) << language;
        EXPECT_TRUE(finds("mü", "Müller")) << language;
    }
    Utf8Utils::setSortOrder("cs");
    EXPECT_TRUE(finds("ch", "Chalupa"));
    EXPECT_FALSE(finds("c", "Chalupa"));
    Utf8Utils::setSortOrder("en");
    EXPECT_TRUE(finds("c", "Chalupa"));
    Utf8Utils::setSortOrder("de");
    EXPECT_TRUE(finds("weiss", "Weiß"));
    Utf8Utils::setSortOrder("da");
    EXPECT_TRUE(finds("aa", "Aagaard"));
    Utf8Utils::setSortOrder("tr");
    EXPECT_FALSE(finds("i", "Işık"));
    EXPECT_TRUE(finds("ı", "Işık"));
}

TEST_F(Collation, ANormalFormIsItsOwnNormalForm)
{
    const auto once = normal("Müller, Jörg");
    EXPECT_EQ(normal(once), once);
    EXPECT_EQ(normal("müller, jorg"), once);
    EXPECT_EQ(normal(""), "");
}

TEST_F(Collation, PunctuationCountsInEveryLanguage)
{
    for (const char* language : {"en", "th"}) {
        Utf8Utils::setSortOrder(language);
        EXPECT_NE(normal("O'Neill"), normal("ONeill")) << language;
        EXPECT_FALSE(finds("on", "O'Neill")) << language;
    }
}

TEST_F(Collation, IsAStrictTotalOrderOverRawTextsAndNormalForms)
{
    Utf8Utils::setSortOrder("de");
    std::vector<std::string> texts;
    for (const std::string name :
         {"", "a", "A", "ä", "ab", "Äb", "b", "muller", "Müller", "Muller", "ß", "ss"}) {
        texts.push_back(name);
        if (!name.empty())
            texts.push_back(normal(name));
    }
    for (const auto& x : texts)
        for (const auto& y : texts) {
            EXPECT_EQ(Utf8Utils::compare(x, y) + Utf8Utils::compare(y, x), x == y ? 0 : 1);
            for (const auto& z : texts)
                EXPECT_TRUE(!Utf8Utils::compare(x, y) || !Utf8Utils::compare(y, z) ||
                            Utf8Utils::compare(x, z))
                    << x << " < " << y << " < " << z;
        }
    EXPECT_TRUE(Utf8Utils::compare(normal("Muller"), "Muller"));
}

// The search while typing is a binary search: it needs all names that begin with what was typed side by
// side, with nothing smaller behind them.
TEST_F(Collation, NamesWithTheSameBeginningStandTogether)
{
    const std::vector<std::string> letters{"a", "ä", "å", "b",  "c", "ch", "č", "d",  "e", "é", "i",
                                           "ı", "İ", "l", "lj", "ł", "n",  "ñ", "o",  "ö", "ø", "s",
                                           "ß", "u", "ü", "z",  "ž", " ",  "-", "'",  ",", "A", "B",
                                           "C", "я", "Ж", "σ",  "ς", "ก",  "น", "中", "あ"};
    std::mt19937 random(4711);
    const auto pick = [&](std::size_t n) { return random() % n; };
    for (const char* language :
         {"de", "en", "sv", "da", "cs", "es", "hu", "tr", "hr", "th", "ja", "ru", "el"}) {
        Utf8Utils::setSortOrder(language);
        std::vector<std::string> names;
        for (int i = 0; i < 300; ++i) {
            std::string name;
            for (auto length = 1 + pick(6); length > 0; --length)
                name += letters[pick(letters.size())];
            names.push_back(name);
        }
        names = sorted(names);
        std::vector<std::string> normals;
        for (const auto& name : names)
            normals.push_back(normal(name));
        for (int i = 0; i < 200; ++i) {
            std::string typed;
            for (auto length = 1 + pick(3); length > 0; --length)
                typed += letters[pick(letters.size())];
            const auto wanted = normal(typed);
            enum Place { Before, Begins, Behind };
            const auto placeOf = [&](const std::string& name) {
                return Utf8Utils::find(name, wanted) == 0 ? Begins
                       : Utf8Utils::compare(name, wanted) ? Before
                                                          : Behind;
            };
            EXPECT_TRUE(std::is_sorted(normals.begin(), normals.end(),
                                       [&](const auto& x, const auto& y) { return placeOf(x) < placeOf(y); }))
                << language << ": " << typed;
        }
    }
}

TEST_F(Collation, WorksWithoutALanguageAndWithAnUnknownOne)
{
    Utf8Utils::destroy();
    EXPECT_TRUE(Utf8Utils::compare("a", "B"));
    for (const char* language : {"", "xx", "no such language", "de_DE.UTF-8"}) {
        Utf8Utils::setSortOrder(language);
        EXPECT_TRUE(Utf8Utils::compare("a", "B")) << language;
    }
}

TEST(FirstCharacter, IsWholeAndKeepsItsMarks)
{
    EXPECT_EQ(Utf8Utils::getFirstUnicodeChar("Örjan"), "Ö");
    EXPECT_EQ(Utf8Utils::getFirstUnicodeChar("日本"), "日");
    EXPECT_EQ(Utf8Utils::getFirstUnicodeChar("e\xCC\x81t\xC3\xA9"), "e\xCC\x81");
    EXPECT_EQ(Utf8Utils::getFirstUnicodeChar(""), "");
    EXPECT_EQ(Utf8Utils::getFirstUnicodeChar("\xFF"), "\xEF\xBF\xBD");
}

TEST_F(Collation, WritesCapitalsAsEachLanguageDoes)
{
    Utf8Utils::create("de");
    EXPECT_EQ(Utf8Utils::capital("ä"), "Ä");
    EXPECT_EQ(Utf8Utils::capital("i"), "I");
    EXPECT_EQ(Utf8Utils::capital("ß"), "ß") << "two letters are none";
    EXPECT_EQ(Utf8Utils::capital("2"), "2");
    EXPECT_EQ(Utf8Utils::capital("A"), "A");
    EXPECT_EQ(Utf8Utils::capital(""), "");
    Utf8Utils::setSortOrder("tr");
    EXPECT_EQ(Utf8Utils::capital("i"), "İ");
    EXPECT_EQ(Utf8Utils::capital("ı"), "I");
    Utf8Utils::setSortOrder("el");
    EXPECT_EQ(Utf8Utils::capital("ά"), "Ά");
    EXPECT_EQ(Utf8Utils::capital("ς"), "Σ");
    Utf8Utils::setSortOrder("ru");
    EXPECT_EQ(Utf8Utils::capital("ж"), "Ж");
}

} // namespace
