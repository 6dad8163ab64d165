#include <gtest/gtest.h>

#include <framework/services/Utils.h>

#include "directory/ldap/LdapFilter.h"

using namespace std::string_literals;

namespace {

class Filter : public testing::Test {
protected:
    Filter()
    {
        settings.baseFilter = "(x=y)";
        settings.countryCode = "49";
        settings.attributes.fields = {{Utils::SURNAME, {"sn"}},
                                      {Utils::FIRSTNAME, {"givenName"}},
                                      {Utils::OFFICE, {"telephoneNumber"}},
                                      {Utils::OFFICE2, {"otherTelephone", "telephoneNumber"}},
                                      {Utils::MOBILE, {}},
                                      {Utils::ADDRESS2, {"l"}}};
        settings.attributes.displayName = {"displayName", "cn"};
        settings.attributes.nickname = {"uid"};
    }

    // Without the base filter around it; "nothing" where nothing is asked.
    std::string filter(const AttributeList& criteria, bool ignoreNickname = false)
    {
        const auto made = ldapFilterOf(criteria, settings, ignoreNickname);
        if (!made)
            return "nothing";
        const std::string begin = "(&(x=y)";
        EXPECT_EQ(made->text.substr(0, begin.size()), begin);
        EXPECT_TRUE(isOneFilter(made->text)) << made->text;
        return made->text.substr(begin.size(), made->text.size() - begin.size() - 1);
    }

    bool finds(const std::string& typed, const std::string& number)
    {
        const auto pattern = LdapNumber::typed(typed, settings.countryCode);
        return pattern && pattern->matches(number);
    }

    LdapSettings settings;
};

} // namespace

TEST_F(Filter, AsksForAllThatIsGiven)
{
    EXPECT_EQ(filter({{Utils::SURNAME, "Miller"}, {Utils::FIRSTNAME, "jo*"}}), "(sn=Miller)(givenName=jo*)");
    EXPECT_EQ(filter({{Utils::SURNAME, "Miller"}, {Utils::FIRSTNAME, ""}}), "(sn=Miller)");
}

TEST_F(Filter, AsksNothingWithoutCriteria)
{
    EXPECT_EQ(filter({}), "nothing");
    EXPECT_EQ(filter({{Utils::SURNAME, ""}}), "nothing");
}

TEST_F(Filter, TakesWhatIsTypedLiterallyButTheAsterisk)
{
    const struct {
        std::string typed;
        std::string sent;
    } cases[] = {
        {"mil*", "mil*"},
        {"*", "*"},
        {"m**l***", "m*l*"},
        {"(sn=*)", "\\28sn=*\\29"},
        {"a)(uid=*", "a\\29\\28uid=*"},
        {"back\\slash", "back\\5cslash"},
        {"\\2a", "\\5c2a"},
        {"nul\0l"s, "nul\\00l"},
        {"line\nend", "line\\0aend"},
        {"M\u00fcller", "M\u00fcller"},
        {"\u5f20*", "\u5f20*"},
        {"&|!=<>~", "&|!=<>~"},
        {" mil ", " mil "},
    };
    for (const auto& [typed, sent] : cases)
        EXPECT_EQ(filter({{Utils::SURNAME, typed}}), "(sn=" + sent + ")");
}

TEST_F(Filter, EscapesAValueWithoutWildcards)
{
    EXPECT_EQ(escapedFilterValue("a*(b)\\"), "a\\2a\\28b\\29\\5c");
}

TEST_F(Filter, LooksForSurnameOrNicknameWhenNicknamesAreInUse)
{
    const AttributeList both{{Utils::SURNAME, "mil*"}, {Utils::NICKNAME, "mil*"}, {Utils::FIRSTNAME, "a"}};
    EXPECT_EQ(filter(both), "(sn=mil*)(givenName=a)");
    settings.nickname = true;
    EXPECT_EQ(filter(both), "(|(sn=mil*)(uid=mil*))(givenName=a)");
    EXPECT_EQ(filter(both, true), "(sn=mil*)(givenName=a)");
}

TEST_F(Filter, LooksForANicknameAloneOnlyWhenNicknamesAreInUse)
{
    const AttributeList nickname{{Utils::NICKNAME, "jo"}};
    EXPECT_EQ(filter(nickname), "nothing");
    settings.nickname = true;
    EXPECT_EQ(filter(nickname), "(uid=jo)");
    EXPECT_EQ(filter(nickname, true), "nothing");
}

TEST_F(Filter, RemembersHowTheTextThatWasAskedForBegins)
{
    const auto asked = ldapFilterOf({{Utils::SURNAME, "mil*er"},
                                     {Utils::NICKNAME, "mil*er"},
                                     {Utils::FIRSTNAME, "*n"},
                                     {Utils::OFFICE, "4711"},
                                     {Utils::ADDRESS2, "\u00dclm"}},
                                    settings, false);
    ASSERT_EQ(asked->beginnings.size(), 2u) << "neither nicknames nor numbers, and nothing where any will do";
    EXPECT_EQ(asked->beginnings[0].field, Utils::SURNAME);
    EXPECT_TRUE(asked->beginnings[0].isOf("Milton"));
    EXPECT_FALSE(asked->beginnings[0].isOf("Smiler"));
    EXPECT_EQ(asked->beginnings[1].field, Utils::ADDRESS2);
    EXPECT_TRUE(asked->beginnings[1].isOf("\u00fclm"));
}

TEST_F(Filter, RemembersThatAFirstNameFollowsAWholeSurname)
{
    const auto firstName = [this](const AttributeList& criteria) {
        const auto asked = ldapFilterOf(criteria, settings, false);
        return asked->beginnings.back().field == Utils::FIRSTNAME ? asked->beginnings.back().text : "none";
    };
    EXPECT_EQ(firstName({{Utils::SURNAME, "miller"}}), "");
    EXPECT_EQ(firstName({{Utils::SURNAME, "miller"}, {Utils::FIRSTNAME, "a*"}}), "a");
    EXPECT_EQ(firstName({{Utils::SURNAME, "mil*"}}), "none");
    settings.nickname = true;
    EXPECT_EQ(firstName({{Utils::SURNAME, "miller"}, {Utils::NICKNAME, "miller"}}), "none");
}

TEST_F(Filter, FindsEntriesWithoutSurnameByTheirDisplayNameWhereThereAreSuch)
{
    settings.attributes.findsByDisplayName = true;
    EXPECT_EQ(filter({{Utils::SURNAME, "mil*"}}), "(|(sn=mil*)(&(displayName=mil*)(!(sn=*))))");
    settings.attributes.displayName.clear();
    EXPECT_EQ(filter({{Utils::SURNAME, "mil*"}}), "(sn=mil*)");
}

TEST_F(Filter, FindsNothingInAFieldThatTheDirectoryDoesNotHave)
{
    EXPECT_EQ(filter({{Utils::SURNAME, "a"}, {Utils::MOBILE, "1"}}), "nothing");
    EXPECT_EQ(filter({{Utils::SURNAME, "a"}, {"shoe size", "42"}}), "nothing");
}

TEST_F(Filter, SendsOnlyDigitsToNumbersWithAnythingBetween)
{
    EXPECT_EQ(filter({{Utils::OFFICE, "47-11"}}), "(telephoneNumber=*4*7*1*1*)");
    EXPECT_EQ(filter({{Utils::OFFICE, "4a7(b)1\\1"}}), "(telephoneNumber=*4*7*1*1*)");
    EXPECT_EQ(filter({{Utils::OFFICE, "12*"}}), "(telephoneNumber=*1*2*)");
    EXPECT_EQ(filter({{Utils::OFFICE, "*"}}), "(telephoneNumber=*)");
    EXPECT_EQ(filter({{Utils::OFFICE, "abc"}}), "nothing");
    EXPECT_EQ(filter({{Utils::OFFICE2, "1"}}), "(|(otherTelephone=*1*)(telephoneNumber=*1*))");
}

TEST_F(Filter, FindsANumberHoweverItIsWritten)
{
    for (const auto* written :
         {"+49 30 23125-001", "030 23125001", "+49 (0)30 23125/001", "0049.30.23125.001", "(030) 23 12 50 01",
          "3023125001", "+49 30 23125-001 (reception)"}) {
        EXPECT_TRUE(finds("3023125001", written)) << written;
        EXPECT_TRUE(finds("03023125001", written)) << written;
        EXPECT_TRUE(finds("+49 30 23125-001", written)) << written;
        EXPECT_TRUE(finds("+49 (0)30 23125001", written)) << written;
        EXPECT_TRUE(finds("00493023125001", written)) << written;
        EXPECT_TRUE(finds("23125 001", written)) << written;
        EXPECT_TRUE(finds("001", written)) << written;
        EXPECT_TRUE(finds("30231*", written)) << written;
        EXPECT_TRUE(finds("*25001", written)) << written;
        EXPECT_TRUE(finds("30*001", written)) << written;
        EXPECT_TRUE(finds("*", written)) << written;
        EXPECT_FALSE(finds("3023125002", written)) << written;
        EXPECT_FALSE(finds("30231", written)) << written;
        EXPECT_FALSE(finds("1*30", written)) << written;
    }
    EXPECT_TRUE(finds("4711", "4711"));
    EXPECT_FALSE(finds("4711", "47 12 11"));
    EXPECT_FALSE(finds("4711", "711"));
    EXPECT_TRUE(finds("0", "100"));
    EXPECT_TRUE(finds("+41 1", "+41 1"));
    EXPECT_FALSE(finds("4711*4711", "4711"));
}

TEST_F(Filter, KnowsOneFilterFromTwo)
{
    for (const auto* one : {"(a=b)", "(&(a=b)(c=d))", "(!(a=*))", "(a=\\28)"})
        EXPECT_TRUE(isOneFilter(one)) << one;
    for (const auto* other : {"", "a=b", "(a=b", "(a=b))", "(a=b)(c=d)", ")(", "(a=b)x", "x(a=b)"})
        EXPECT_FALSE(isOneFilter(other)) << other;
}
