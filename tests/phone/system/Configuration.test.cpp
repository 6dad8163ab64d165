#include <filesystem>
#include <regex>
#include <set>
#include <thread>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "system/Configuration.h"

using Strings = std::vector<std::string>;

namespace {

class ConfigurationTest : public testing::Test {
protected:
    ConfigurationTest() { setenv("LANG", "de_DE.UTF-8", 1); }

    void write(const std::string& text) { folder.write("config.toml", text); }
    Strings refusedBy(const Configuration& configuration)
    {
        Strings sentences;
        for (const auto& refusal : configuration.refused())
            sentences.push_back(refusal.sentence);
        return sentences;
    }

    TemporaryFolder folder;
    const std::string file = (folder / "config.toml").string();
};

} // namespace

TEST_F(ConfigurationTest, NamesTheLanguagesThatTheTelephoneSpeaks)
{
    std::set<std::string> spoken;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(BIN_DIR).parent_path() / "locale")) {
        if (std::filesystem::exists(entry.path() / "LC_MESSAGES"))
            spoken.insert(entry.path().filename().string());
    }

    auto help = Configuration(file).item("language")->help;
    help = help.substr(help.find(": "), help.find('.') - help.find(": "));
    std::set<std::string> named;
    const std::regex code("\\b(?!or\\b)[a-z]{2}\\b");
    for (std::sregex_iterator it(help.begin(), help.end(), code), end; it != end; ++it)
        named.insert(it->str());
    EXPECT_EQ(named, spoken);
}

TEST_F(ConfigurationTest, HasDefaultsWithoutAFile)
{
    const Configuration configuration(file);
    EXPECT_EQ(configuration.text("software-type"), "Veltrix SIP");
    EXPECT_EQ(configuration.number("hardware-variant"), 1);
    EXPECT_TRUE(configuration.yes("soft-key-bar"));
    EXPECT_EQ(configuration.text("language"), "de");
    EXPECT_EQ(configuration.number("ldap-search-trigger-timeout"), 3);
    EXPECT_EQ(configuration.number("group-slots"), 20);
    EXPECT_EQ(configuration.list("emergency-numbers"), (Strings{"110", "112"}));
    EXPECT_EQ(refusedBy(configuration), Strings{});
}

TEST_F(ConfigurationTest, TakesTheLanguageFromTheLocaleOrEnglish)
{
    EXPECT_EQ(languageOfLocale("fr_FR.UTF-8"), "fr");
    EXPECT_EQ(languageOfLocale("es"), "es");
    EXPECT_EQ(languageOfLocale("C.UTF-8"), "en");
    EXPECT_EQ(languageOfLocale("POSIX"), "en");
    EXPECT_EQ(languageOfLocale(""), "en");
}

TEST_F(ConfigurationTest, ReadsEveryKindOfValue)
{
    write("language = \"fr\"\nsoft-key-bar = false\nvisible-rows = 12\nemergency-numbers = [\"999\", "
          "\"112\"]\n");
    const Configuration configuration(file);
    EXPECT_EQ(configuration.text("language"), "fr");
    EXPECT_FALSE(configuration.yes("soft-key-bar"));
    EXPECT_EQ(configuration.number("visible-rows"), 12);
    EXPECT_EQ(configuration.list("emergency-numbers"), (Strings{"999", "112"}));
}

TEST_F(ConfigurationTest, SaysWhichItemsHaveChanged)
{
    Configuration configuration(file);
    write("visible-rows = 12\n");
    EXPECT_EQ(configuration.reload().changed, Strings{"visible-rows"});
    EXPECT_EQ(configuration.reload().changed, Strings{});
    write("");
    EXPECT_EQ(configuration.reload().changed, Strings{"visible-rows"});
    EXPECT_EQ(configuration.number("visible-rows"), 8);
}

TEST_F(ConfigurationTest, RefusesAValueWithLineAndReasonAndKeepsTheOneBefore)
{
    write("visible-rows = 12\n");
    Configuration configuration(file);
    write("language = \"fr\"\nvisible-rows = 99\n");

    const auto reload = configuration.reload();

    EXPECT_EQ(configuration.number("visible-rows"), 12);
    EXPECT_EQ(configuration.text("language"), "fr");
    EXPECT_EQ(refusedBy(configuration),
              Strings{file + ", line 2: \"visible-rows\" must be a number from 3 to 40."});
}

TEST_F(ConfigurationTest, RefusesAnItemThatDoesNotExist)
{
    write("\ncolour = \"red\"\n");
    EXPECT_EQ(refusedBy(Configuration(file)), Strings{file + ", line 2: there is no item \"colour\"."});
}

TEST_F(ConfigurationTest, RefusesValuesOfAnotherKind)
{
    write("visible-rows = \"12\"\nsoft-key-bar = 1\nlanguage = true\nemergency-numbers = \"110\"\n"
          "software-type = \"Other\"\narea-code = 2020-01-01\nbt-enabled.x = 1\n");
    const Configuration configuration(file);
    EXPECT_EQ(refusedBy(configuration).size(), 7U);
    EXPECT_EQ(configuration.number("visible-rows"), 8);
    EXPECT_EQ(configuration.text("software-type"), "Veltrix SIP");
}

TEST_F(ConfigurationTest, RefusesControlCharactersInTexts)
{
    write("outside-line = \"0\\u0007\"\n");
    EXPECT_EQ(Configuration(file).text("outside-line"), "");
}

TEST_F(ConfigurationTest, ChangesNothingWhenTheFileIsNotToml)
{
    write("visible-rows = 12\n");
    Configuration configuration(file);
    write("visible-rows = 13\nlanguage = \n");

    EXPECT_EQ(configuration.reload().changed, Strings{});

    EXPECT_EQ(configuration.number("visible-rows"), 12);
    ASSERT_EQ(configuration.refused().size(), 1U);
    EXPECT_EQ(configuration.refused().front().line, 2);
}

TEST_F(ConfigurationTest, ChangesNothingWhenTheFileIsAFolder)
{
    std::filesystem::create_directory(folder / "config.toml");
    EXPECT_EQ(refusedBy(Configuration(file)), Strings{file + ": this is not a configuration file."});
}

TEST_F(ConfigurationTest, LetsOverridesWin)
{
    write("hardware-variant = 4\n");
    Configuration configuration(file, {{"hardware-variant", "10"}, {"nonsense", "1"}, {"visible-rows", "x"}});
    EXPECT_EQ(configuration.number("hardware-variant"), 10);
    EXPECT_EQ(configuration.number("visible-rows"), 8);
    EXPECT_EQ(configuration.reload().changed, Strings{});
}

TEST_F(ConfigurationTest, SetsAnItemAndLeavesEveryOtherLineAsItIs)
{
    write("# mine\nlanguage = \"fr\" # French\nemergency-numbers = [\n  \"999\",\n]\n\n# end\n");
    Configuration configuration(file);

    ASSERT_TRUE(configuration.set("emergency-numbers", "110,112"));
    ASSERT_TRUE(configuration.set("visible-rows", "12"));

    EXPECT_EQ(folder.read("config.toml"), "# mine\nlanguage = \"fr\" # French\n"
                                          "emergency-numbers = ['110', '112']\n\n# end\nvisible-rows = 12\n");
}

TEST_F(ConfigurationTest, LosesNoItemWhenProgramsSetSeveralAtOnce)
{
    const std::vector<std::string> items{"visible-rows", "group-slots", "internal-digits", "log-level"};
    for (int round = 3; round < 6; ++round) {
        const auto value = std::to_string(round);
        std::vector<std::thread> programs;
        for (const auto& item : items)
            programs.emplace_back([&] { EXPECT_TRUE(Configuration(file).set(item, value)) << item; });
        for (auto& program : programs)
            program.join();
        const Configuration configuration(file);
        for (const auto& item : items)
            EXPECT_EQ(configuration.text(item), value) << item;
    }
}

TEST_F(ConfigurationTest, SetsTextThatNeedsQuoting)
{
    Configuration configuration(file);
    ASSERT_TRUE(configuration.set("outside-line", "a\"b\\c"));
    configuration.reload();
    EXPECT_EQ(configuration.text("outside-line"), "a\"b\\c");
}

TEST_F(ConfigurationTest, SaysWhyItDoesNotSetAnItem)
{
    Configuration configuration(file);
    EXPECT_EQ(configuration.set("colour", "red").error().sentence,
              "There is no item \"colour\"; \"deskphone config list\" names all.");
    EXPECT_EQ(configuration.set("bt-enabled", "maybe").error().sentence,
              "\"bt-enabled\" must be true or false.");
    write("language = \n");
    EXPECT_EQ(configuration.set("bt-enabled", "true").error().code, ErrorCode::Malformed);
    EXPECT_EQ(folder.read("config.toml"), "language = \n");
}
