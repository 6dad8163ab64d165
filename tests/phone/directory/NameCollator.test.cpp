#include "directory/NameCollator.h"

#include <algorithm>

#include <gtest/gtest.h>

#include <framework/util/Utf8Utils.h>

#include "../../AwkwardNames.h"

namespace {

class EachLanguage : public testing::TestWithParam<const char*> {
protected:
    EachLanguage() { Utf8Utils::create(GetParam()); }
    ~EachLanguage() override { Utf8Utils::destroy(); }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(NameCollator, EachLanguage, testing::ValuesIn(nSORTED_LANGUAGES),
                         [](const auto& tested) { return std::string(tested.param); });

// Lists sort what they get: rows that come in their order are sorted in one pass.
TEST_P(EachLanguage, KeysAreInTheOrderOfTheList)
{
    const NameCollator collator(GetParam());
    for (const auto& script : awkward::scripts()) {
        auto names = awkwardNames(script);
        std::sort(names.begin(), names.end(), Utf8Utils::compare);
        for (std::size_t i = 1; i < names.size(); ++i)
            EXPECT_LE(collator.key(names[i - 1], ""), collator.key(names[i], ""))
                << names[i - 1] << " / " << names[i];
    }
}

TEST(NameCollator, MakesTheKeyOfTheNameAsItIsShown)
{
    const NameCollator collator("de");
    EXPECT_EQ(collator.key("Müller", "Jörg"), collator.key("Müller, Jörg", ""));
    EXPECT_EQ(collator.key("", "Jörg"), collator.key("Jörg", ""));
    EXPECT_LT(collator.key("", ""), collator.key("0", ""));
}

TEST(NameCollator, MakesKeysOfLongNames)
{
    const NameCollator collator("de");
    const std::string name(2000, 'x');
    EXPECT_LT(collator.key(name + "a", ""), collator.key(name + "b", ""));
}

TEST(NameCollator, SaysWhichKeysAreComparable)
{
    EXPECT_EQ(NameCollator("de").identity(), NameCollator("de").identity());
    EXPECT_NE(NameCollator("de").identity(), NameCollator("sv").identity());
}

TEST(NameCollator, SortsByNoLanguageWhenItDoesNotKnowIt)
{
    EXPECT_EQ(NameCollator("tlh").key("Österman", ""), NameCollator("root").key("Österman", ""));
    EXPECT_LT(NameCollator("tlh").key("Österman", ""), NameCollator("tlh").key("Zorn", ""));
}

TEST(NameCollator, TakesTheCountryAndTheEncodingOfALanguage)
{
    EXPECT_EQ(NameCollator("sv_SE.UTF-8").key("Åberg", ""), NameCollator("sv").key("Åberg", ""));
}
