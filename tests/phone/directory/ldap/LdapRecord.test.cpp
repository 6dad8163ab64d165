#include <gtest/gtest.h>

#include <framework/services/Utils.h>

#include "directory/ldap/LdapRecord.h"

using namespace std::string_literals;

namespace {

class Record : public testing::Test {
protected:
    using Values = std::vector<std::pair<std::string, std::string>>;

    Record()
    {
        map.fields = {{Utils::SURNAME, {"sn"}},
                      {Utils::FIRSTNAME, {"givenName"}},
                      {Utils::OFFICE, {"telephoneNumber"}},
                      {Utils::OFFICE2, {"otherTelephone", "telephoneNumber"}},
                      {Utils::ADDRESS1, {"street", "postalAddress"}},
                      {Utils::ADDRESS2, {"l"}}};
        map.displayName = {"displayName", "cn"};
    }

    std::optional<AttributeList> read(const Values& values)
    {
        LdapRecordReader reader(map, asked);
        for (const auto& [attribute, value] : values)
            reader.add(attribute, value);
        return reader.finish();
    }

    // What the surname becomes.
    std::string shown(const std::string& surname)
    {
        return read({{"cn", "-"}, {"sn", surname}})->front().second;
    }

    LdapAttributeMap map;
    LdapFilter asked;
};

const std::string nREPLACEMENT = "\uFFFD";

} // namespace

TEST_F(Record, NamesTheFieldsAsTheTelephoneDoes)
{
    EXPECT_EQ(
        read({{"givenName", "Ann"}, {"SN", "Miller"}, {"l", "Berlin"}, {"cn", "Ann Miller"}}),
        (AttributeList{{Utils::SURNAME, "Miller"}, {Utils::FIRSTNAME, "Ann"}, {Utils::ADDRESS2, "Berlin"}}));
}

TEST_F(Record, AsksForEachAttributeOnceAndForNothingElse)
{
    EXPECT_EQ(LdapRecordReader(map, asked).attributes(),
              (std::vector<std::string>{"sn", "givenName", "telephoneNumber", "otherTelephone", "street",
                                        "postalAddress", "l", "displayName", "cn"}));
}

TEST_F(Record, TakesTheFirstValueAndForTheSecondFieldTheNext)
{
    EXPECT_EQ(read({{"sn", "A"}, {"sn", "B"}, {"telephoneNumber", "1"}, {"telephoneNumber", "2"}}),
              (AttributeList{{Utils::SURNAME, "A"}, {Utils::OFFICE, "1"}, {Utils::OFFICE2, "2"}}));
    EXPECT_EQ(
        read({{"sn", "A"}, {"telephoneNumber", "1"}, {"telephoneNumber", "2"}, {"otherTelephone", "3"}}),
        (AttributeList{{Utils::SURNAME, "A"}, {Utils::OFFICE, "1"}, {Utils::OFFICE2, "3"}}));
}

TEST_F(Record, TakesThePreferredAttribute)
{
    EXPECT_EQ(read({{"sn", "A"}, {"postalAddress", "P"}, {"street", "S"}})->back().second, "S");
    EXPECT_EQ(read({{"sn", "A"}, {"postalAddress", "P"}})->back().second, "P");
    EXPECT_EQ(read({{"sn", "A"}, {"postalAddress", "P"}, {"street", "  "}})->back().second, "P");
}

TEST_F(Record, TakesValuesInOtherLanguagesOnlyWhenThereIsNoPlainOne)
{
    EXPECT_EQ(read({{"sn;lang-en", "Miller"}, {"sn", "M\u00fcller"}})->front().second, "M\u00fcller");
    EXPECT_EQ(read({{"sn;lang-en", "Miller"}, {"sn;lang-fr", "Meunier"}})->front().second, "Miller");
}

TEST_F(Record, TakesTheValueThatWasAskedForBeforeTheFirst)
{
    asked.beginnings = {{Utils::SURNAME, "sm"}, {Utils::FIRSTNAME, "bill"}};
    const Values names{{"sn", "Miller"},     {"sn", "Jones"},       {"sn;lang-en", "Smith"},
                       {"givenName", "Bob"}, {"givenName", "Will"}, {"telephoneNumber", "1"}};
    EXPECT_EQ(read(names),
              (AttributeList{{Utils::SURNAME, "Smith"}, {Utils::FIRSTNAME, "Bob"}, {Utils::OFFICE, "1"}}));
}

TEST_F(Record, WritesAPostalAddressOnOneLine)
{
    EXPECT_EQ(read({{"sn", "A"}, {"postalAddress", "Main St. 1$12345 Town\\24\\5C\\5cx"}})->back().second,
              "Main St. 1, 12345 Town$\\\\x");
    EXPECT_EQ(read({{"sn", "A"}, {"postalAddress", "$Main St. 1 $ $$ 12345 Town$"}})->back().second,
              "Main St. 1, 12345 Town");
    EXPECT_EQ(read({{"sn", "A"}, {"postalAddress", " $ "}}), (AttributeList{{Utils::SURNAME, "A"}}));
}

TEST_F(Record, ShowsTheDisplayNameOfWhoHasNoOther)
{
    EXPECT_EQ(read({{"cn", "room4"}, {"displayName", "Room 4"}, {"l", "Berlin"}}),
              (AttributeList{{Utils::SURNAME, "Room 4"}, {Utils::ADDRESS2, "Berlin"}}));
    EXPECT_EQ(read({{"cn", "room4"}}), (AttributeList{{Utils::SURNAME, "room4"}}));
    EXPECT_EQ(read({{"cn", "Ann"}, {"givenName", "Ann"}}), (AttributeList{{Utils::FIRSTNAME, "Ann"}}));
}

TEST_F(Record, IsNoneWithoutAnyName)
{
    EXPECT_EQ(read({}), std::nullopt);
    EXPECT_EQ(read({{"telephoneNumber", "1"}, {"sn", " \t"}}), std::nullopt);
}

TEST_F(Record, KeepsNothingOfTheEntryBefore)
{
    LdapRecordReader reader(map, asked);
    reader.add("sn", "A");
    reader.add("telephoneNumber", "1");
    reader.finish();
    reader.add("cn", "B");
    EXPECT_EQ(reader.finish(), (AttributeList{{Utils::SURNAME, "B"}}));
}

TEST_F(Record, BringsTextIntoShape)
{
    EXPECT_EQ(shown("Mu\u0308ller"), "M\u00fcller");
    EXPECT_EQ(shown("  Miller \r\n"), "Miller");
    EXPECT_EQ(shown("a\tb\nc\x01\x7f"), "a b c");
    EXPECT_EQ(shown("a\u202ecba\u2066"), "acba");
    EXPECT_EQ(shown("a\0b"s), "ab");
    EXPECT_EQ(shown("M\xfcller"), "M" + nREPLACEMENT + "ller");
    EXPECT_EQ(shown("<b>Miller</b>&amp;"), "<b>Miller</b>&amp;");
    EXPECT_EQ(shown("\u05d0\u05d1"), "\u05d0\u05d1");
}

TEST_F(Record, CutsWhatIsTooLong)
{
    EXPECT_EQ(shown(std::string(1000000, 'x')), std::string(256, 'x'));
    EXPECT_EQ(shown(std::string(256, 'x')), std::string(256, 'x'));
    std::string umlauts;
    for (int i = 0; i < 300; ++i)
        umlauts += "\u00fc";
    EXPECT_EQ(shown(umlauts), umlauts.substr(0, 512));
}

TEST_F(Record, CaresForNoAttributeThatWasNotAskedFor)
{
    LdapRecordReader reader(map, asked);
    for (int i = 0; i < 10000; ++i)
        reader.add("attribute" + std::to_string(i), "value");
    for (int i = 0; i < 10000; ++i)
        reader.add("sn", "Miller" + std::to_string(i));
    EXPECT_EQ(reader.finish(), (AttributeList{{Utils::SURNAME, "Miller0"}}));
}

TEST_F(Record, IsNoneWithoutTheNumberThatIsLookedFor)
{
    asked.numbers.push_back({{"telephoneNumber", "otherTelephone"}, *LdapNumber::typed("4711", "49")});
    EXPECT_TRUE(read({{"sn", "A"}, {"telephoneNumber", "+49 30 47-11"}}));
    EXPECT_TRUE(
        read({{"sn", "A"}, {"telephoneNumber", "1"}, {"otherTelephone", "1"}, {"otherTelephone", "4711"}}));
    EXPECT_FALSE(read({{"sn", "A"}, {"telephoneNumber", "47 2 11"}}));
    EXPECT_FALSE(read({{"sn", "A"}}));
}
