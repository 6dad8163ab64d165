// The phonebook's order and quick search, language by language, against ICU asked directly.

#include "PhonebookList.h"

#include <algorithm>
#include <memory>
#include <set>

#include <gtest/gtest.h>
#include <unicode/coll.h>

#include <framework/util/Utf8Utils.h>
#include <testing/FakeDirectoryService.h>

#include "../AwkwardNames.h"

namespace {

using Strings = std::vector<std::string>;

class Icu {
public:
    explicit Icu(const std::string& language)
        : m_order(make(language))
        , m_letters(make(language))
    {
        m_letters->setStrength(icu::Collator::PRIMARY);
    }

    bool isBehind(const std::string& left, const std::string& right) const
    {
        UErrorCode status = U_ZERO_ERROR;
        return m_order->compareUTF8(left, right, status) == UCOL_GREATER;
    }

    // What counts of a name when it is searched for, so that beginnings are found byte by byte.
    std::string lettersOf(const std::string& name) const
    {
        const auto text = icu::UnicodeString::fromUTF8(name);
        std::string key(1024, '\0');
        const auto size =
            m_letters->getSortKey(text, reinterpret_cast<std::uint8_t*>(key.data()), int32_t(key.size()));
        EXPECT_LE(std::size_t(size), key.size()) << name;
        key.resize(size > 0 ? std::size_t(size) - 1 : 0); // without the closing 0
        return key;
    }

private:
    static std::unique_ptr<icu::Collator> make(const std::string& language)
    {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> collator(
            icu::Collator::createInstance(icu::Locale(language.c_str()), status));
        collator->setAttribute(UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, status);
        collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
        EXPECT_TRUE(U_SUCCESS(status)) << language;
        return collator;
    }

    std::unique_ptr<icu::Collator> m_order;
    std::unique_ptr<icu::Collator> m_letters;
};

// The phonebook of one language.
class Book {
public:
    explicit Book(const std::string& language) { Utf8Utils::create(language); }
    ~Book() { Utf8Utils::destroy(); }

    Book(const Book&) = delete;
    Book& operator=(const Book&) = delete;

    Book& fill(const Strings& surnames)
    {
        for (const auto& surname : surnames)
            m_directory.add(surname, "");
        m_list.populate(-1);
        return *this;
    }

    Strings names()
    {
        Strings names;
        for (unsigned int row = 0; row < m_list.size(); ++row)
            names.push_back(
                m_list.elementAt(row).getDisplayName(displayMode::SurnameFirstname, displayQualifier::None));
        return names;
    }

    // The row that is selected when this is typed.
    std::pair<bool, int> search(const std::string& typed)
    {
        int row = -1;
        const bool found = m_list.getIndex(typed, row) == 1;
        return {found, row};
    }
    bool finds(const std::string& typed) { return search(typed).first; }

private:
    FakeDirectoryService m_directory;
    PhonebookList m_list{&m_directory};
};

Strings sorted(const std::string& language, const Strings& names)
{
    return Book(language).fill(names).names();
}

// "M", "Mü", "Mül", ...
std::set<std::string> beginningsOf(const Strings& names)
{
    std::set<std::string> beginnings;
    for (const auto& name : names)
        for (std::size_t end = 1; end <= name.size(); ++end)
            if (end == name.size() || (static_cast<unsigned char>(name[end]) & 0xC0) != 0x80)
                beginnings.insert(name.substr(0, end));
    return beginnings;
}

class Language : public testing::TestWithParam<const char*> {};

} // namespace

INSTANTIATE_TEST_SUITE_P(Every, Language, testing::ValuesIn(nSORTED_LANGUAGES),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_P(Language, SortsNamesOfEachScriptAsIcuDoes)
{
    const Icu icu(GetParam());
    for (const auto& script : awkward::scripts()) {
        auto names = awkwardNames(script);
        auto shown = sorted(GetParam(), names);
        for (std::size_t row = 1; row < shown.size(); ++row)
            EXPECT_FALSE(icu.isBehind(shown[row - 1], shown[row])) << shown[row - 1] << " / " << shown[row];
        std::sort(names.begin(), names.end());
        std::sort(shown.begin(), shown.end());
        EXPECT_EQ(shown, names);
    }
}

TEST_P(Language, FindsEachTypedBeginningWhereALinearSearchDoes)
{
    const Icu icu(GetParam());
    for (const auto& script : awkward::scripts()) {
        const auto names = awkwardNames(script);
        Book book(GetParam());
        Strings letters;
        for (const auto& name : book.fill(names).names())
            letters.push_back(icu.lettersOf(name));

        for (const auto& typed : beginningsOf(names)) {
            const auto wanted = icu.lettersOf(typed);
            const auto first = std::find_if(letters.begin(), letters.end(),
                                            [&](const auto& name) { return name.starts_with(wanted); });
            const auto before = std::lower_bound(letters.begin(), letters.end(), wanted);
            const auto expected = first != letters.end()
                                      ? std::pair(true, int(first - letters.begin()))
                                      : std::pair(false, int(before - letters.begin()) - 1);
            EXPECT_EQ(book.search(typed), std::pair(expected.first, std::max(expected.second, 0))) << typed;
        }
    }
}

TEST_P(Language, FindsNamesThatBeginAsTyped)
{
    Book book(GetParam());
    book.fill({"Aagaard", "Chalupa", "Strauß", "Zorn"});
    EXPECT_TRUE(book.finds("aa"));
    EXPECT_TRUE(book.finds("ch"));
    EXPECT_TRUE(book.finds("STRAUSS"));
    EXPECT_TRUE(book.finds("strauß"));
    EXPECT_FALSE(book.finds("x"));
}

TEST_P(Language, TakesCzechAndSlovakChForALetterOfItsOwn)
{
    const std::set<std::string> ofItsOwn{"cs", "sk"};
    Book book(GetParam());
    book.fill({"Adam", "Chalupa"});
    EXPECT_EQ(book.finds("c"), !ofItsOwn.contains(GetParam()));
}

TEST_P(Language, TakesUWithDotsForAnotherLetterWhereItIsOne)
{
    const std::set<std::string> ofItsOwn{"sv", "da", "nb", "fi", "hu", "tr"};
    Book book(GetParam());
    book.fill({"Adam", "Müller"});
    EXPECT_EQ(book.finds("mu"), !ofItsOwn.contains(GetParam()));
    EXPECT_TRUE(book.finds("mü"));
    EXPECT_TRUE(book.finds("MÜ"));
}

TEST_P(Language, TellsTurkishDotlessIApartInTurkishOnly)
{
    Book book(GetParam());
    book.fill({"Adam", "Irmak"});
    EXPECT_EQ(book.finds("ir"), std::string("tr") != GetParam());
    EXPECT_EQ(book.finds("ır"), std::string("tr") == GetParam());
}

TEST(SortOrder, OfSwedishAndFinnishPutsARingAAndOWithDotsBehindZ)
{
    const Strings names{"Aberg", "Zorn", "Åberg", "Äberg", "Öberg"};
    EXPECT_EQ(sorted("sv", {"Öberg", "Äberg", "Åberg", "Zorn", "Aberg"}), names);
    EXPECT_EQ(sorted("fi", {"Öberg", "Äberg", "Åberg", "Zorn", "Aberg"}), names);
}

TEST(SortOrder, OfDanishAndNorwegianEndsInAeOeAa)
{
    const Strings names{"Aberg", "Zorn", "Ærø", "Østergård", "Aagaard", "Åse"};
    EXPECT_EQ(sorted("da", {"Åse", "Aagaard", "Østergård", "Ærø", "Zorn", "Aberg"}), names);
    EXPECT_EQ(sorted("nb", {"Åse", "Aagaard", "Østergård", "Ærø", "Zorn", "Aberg"}), names);
}

TEST(SortOrder, OfGermanKeepsUmlautsWithTheirVowels)
{
    EXPECT_EQ(sorted("de", {"Zorn", "Özil", "Arm", "Ärger", "Oz", "Straße", "Strasser"}),
              (Strings{"Ärger", "Arm", "Oz", "Özil", "Straße", "Strasser", "Zorn"}));
}

TEST(SortOrder, OfCzechAndSlovakPutsChBehindH)
{
    for (const char* language : {"cs", "sk"})
        EXPECT_EQ(sorted(language, {"Ihned", "Chalupa", "Hora", "Čapek", "Cibula"}),
                  (Strings{"Cibula", "Čapek", "Hora", "Chalupa", "Ihned"}))
            << language;
}

TEST(SortOrder, OfSpanishPutsEnyeBehindNAndLlAsTwoLetters)
{
    EXPECT_EQ(sorted("es", {"Oso", "Ñu", "Nulo", "Luz", "Llorente", "Lino"}),
              (Strings{"Lino", "Llorente", "Luz", "Nulo", "Ñu", "Oso"}));
}

TEST(SortOrder, OfPolishPutsLetterWithStrokeBehindThePlainOne)
{
    EXPECT_EQ(sorted("pl", {"Małek", "Malz", "Łukasz", "Luz", "Ćma", "Czech"}),
              (Strings{"Czech", "Ćma", "Luz", "Łukasz", "Malz", "Małek"}));
}

TEST(SortOrder, OfTurkishPutsDotlessIBeforeIAndTheMarkedLettersBehindTheirs)
{
    EXPECT_EQ(sorted("tr", {"İnci", "Işık", "Hasan", "Şahin", "Su", "Çelik", "Cumhur", "Öz", "Oya"}),
              (Strings{"Cumhur", "Çelik", "Hasan", "Işık", "İnci", "Oya", "Öz", "Su", "Şahin"}));
}

TEST(SortOrder, OfRussianKeepsIoWithYeAndOfUkrainianYeApart)
{
    EXPECT_EQ(sorted("ru", {"Жуков", "Ёлкин", "Ежов", "Елкин"}),
              (Strings{"Ежов", "Елкин", "Ёлкин", "Жуков"}));
    EXPECT_EQ(sorted("uk", {"Жук", "Євген", "Ера", "Ґонта", "Гуля"}),
              (Strings{"Гуля", "Ґонта", "Ера", "Євген", "Жук"}));
}

TEST(SortOrder, OfGreekTellsNeitherAccentsNorFinalSigmaApart)
{
    EXPECT_EQ(sorted("el", {"Βίκος", "Άννα", "Αννίτα", "Ωνάσης", "Ώρα"}),
              (Strings{"Άννα", "Αννίτα", "Βίκος", "Ωνάσης", "Ώρα"}));
    Book book("el");
    EXPECT_TRUE(book.fill({"Οδυσσεύς"}).finds("οδυσσευσ"));
}

TEST(SortOrder, OfAnUnknownLanguageIsThatOfNoLanguage)
{
    const Strings names{"Zorn", "Österman", "Chalupa", "Cibula", "Hora"};
    EXPECT_EQ(sorted("tlh", names), sorted("", names));
    EXPECT_EQ(sorted("tlh", names), (Strings{"Chalupa", "Cibula", "Hora", "Österman", "Zorn"}));
}
