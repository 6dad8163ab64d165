#include <set>

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
    EXPECT_EQ(translator.language(), "tlh");
    EXPECT_EQ(translator.spokenLanguage(), "en");
    EXPECT_EQ(translator.translate("phone.back"), "Back");
}

TEST(Translator, SpeaksTheLanguageOfACountryThatHasNoCatalogue)
{
    Translator translator(CATALOGUES, "de_AT.UTF-8");
    EXPECT_EQ(translator.language(), "de_AT.UTF-8");
    EXPECT_EQ(translator.spokenLanguage(), "de");
    EXPECT_EQ(translator.translate("phone.back"), "Zurück");
    translator.setLanguage("pt-BR");
    EXPECT_EQ(translator.spokenLanguage(), "pt");
}

TEST(Translator, SpeaksEveryLanguageThatHasACatalogue)
{
    std::set<std::string> backs;
    for (const auto& folder : std::filesystem::directory_iterator(CATALOGUES)) {
        if (!folder.is_directory() || !std::filesystem::exists(folder.path() / "LC_MESSAGES"))
            continue;
        const auto language = folder.path().filename().string();
        const Translator translator(CATALOGUES, language);
        EXPECT_EQ(translator.spokenLanguage(), language);
        const auto back = translator.translate("phone.back");
        EXPECT_NE(back, "phone.back") << language;
        EXPECT_TRUE(backs.insert(back).second) << language << " says \"" << back << "\" as another does";
    }
    EXPECT_EQ(backs.size(), 13u);
}
