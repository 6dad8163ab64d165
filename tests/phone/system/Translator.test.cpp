#include <gtest/gtest.h>

#include "system/Translator.h"

namespace {
const std::filesystem::path CATALOGUES = std::filesystem::path(BIN_DIR).parent_path() / "locale";
} // namespace

TEST(Translator, SpeaksTheLanguageItIsSetTo)
{
    Translator translator(CATALOGUES, "de");
    EXPECT_EQ(translator.translate("phone.back"), "Zurück");
    translator.setLanguage("en");
    EXPECT_EQ(translator.translate("phone.back"), "Back");
    EXPECT_EQ(translator.language(), "en");
}

TEST(Translator, GivesTheKeyWhenThereIsNoText)
{
    const Translator translator(CATALOGUES, "de");
    EXPECT_EQ(translator.translate("no.such.key"), "no.such.key");
    EXPECT_EQ(translator.translate(""), "");
}

TEST(Translator, PutsTheParameterWhereTheTextHasItsPlace)
{
    const Translator translator(CATALOGUES, "en");
    EXPECT_EQ(translator.translate("phone.dialling", "030"), "Dialling 030…");
}

TEST(Translator, NeverLosesAParameter)
{
    const Translator translator(CATALOGUES, "en");
    EXPECT_EQ(translator.translate("phone.back", "Miller"), "Back Miller");
    EXPECT_EQ(translator.translate("no.such.key", "Miller"), "no.such.key Miller");
    EXPECT_EQ(translator.translate("", "Miller"), "Miller");
}

TEST(Translator, SpeaksEnglishWhereThereIsNoCatalogue)
{
    const Translator translator(CATALOGUES, "tlh");
    EXPECT_FALSE(translator.hasCatalogue("tlh"));
    EXPECT_EQ(translator.translate("phone.back"), "Back");
}
