// Entries that are LDAP, and nothing that anybody would keep in a directory.

#include "DirectoryFaults.h"

using namespace ldap_bytes;

namespace {

class HostileEntry : public DirectoryFaults {
protected:
    // What the telephone makes of an entry with these attributes besides a surname.
    AttributeList shown(std::vector<Attribute> attributes, const std::string& surname = "Miller")
    {
        attributes.push_back({"sn", {surname}});
        FaultServer server([&attributes](Conversation& c) {
            const auto bind = c.request();
            if (!bind || !c.send(result(bind->id, BindResponse, 0)))
                return;
            if (const auto search = c.request())
                c.send(entry(search->id, "cn=hostile", attributes) + result(search->id, SearchDone, 0));
            c.untilClosed();
        });
        expectSearchEnds(DIRECTORY_SUCCESS, server);
        return records.empty() ? AttributeList{} : records.front();
    }
    std::string shownSurname(const std::string& surname)
    {
        const auto record = shown({}, surname);
        return record.empty() ? "" : record.front().second;
    }
};

} // namespace

TEST_F(HostileEntry, OfTenThousandAttributesShowsThoseThatWereAskedFor)
{
    std::vector<Attribute> attributes;
    for (int i = 0; i < 10000; ++i)
        attributes.push_back({"attribute" + std::to_string(i), {"value"}});
    EXPECT_EQ(shown(attributes), (AttributeList{{Utils::SURNAME, "Miller"}}));
}

TEST_F(HostileEntry, OfTenThousandTimesTheSameAttributeShowsTheFirst)
{
    std::vector<Attribute> attributes;
    for (int i = 0; i < 10000; ++i)
        attributes.push_back({"mobile", {std::to_string(i)}});
    EXPECT_EQ(shown(attributes), (AttributeList{{Utils::SURNAME, "Miller"}, {Utils::MOBILE, "0"}}));
}

TEST_F(HostileEntry, OfTenThousandValuesShowsTheFirst)
{
    EXPECT_EQ(shown({{"mobile", std::vector<std::string>(10000, "1")}}),
              (AttributeList{{Utils::SURNAME, "Miller"}, {Utils::MOBILE, "1"}}));
}

TEST_F(HostileEntry, OfAMegabyteIsCut)
{
    EXPECT_EQ(shownSurname(std::string(1024 * 1024, 'x')), std::string(256, 'x'));
}

TEST_F(HostileEntry, OfAMegabyteOfAccentsIsCut)
{
    std::string accents = "e";
    while (accents.size() < 1024 * 1024)
        accents += "\u0301";
    EXPECT_LT(shownSurname("Miller " + accents).size(), 1024u);
}

TEST_F(HostileEntry, WithAnAttributeNameOfAMegabyteIsRead)
{
    EXPECT_EQ(shown({{std::string(1024 * 1024, 'a'), {"value"}}}),
              (AttributeList{{Utils::SURNAME, "Miller"}}));
}

TEST_F(HostileEntry, ThatIsNoUtf8ShowsReplacements)
{
    EXPECT_EQ(shownSurname("Mi\xff\xfeller\xc3"), "Mi\uFFFD\uFFFDller\uFFFD");
}

TEST_F(HostileEntry, WithControlCharactersIsOneLine)
{
    EXPECT_EQ(shownSurname(std::string("Mil\0ler\x1b[2J\r\n\tAnn\x7f", 18)), "Miller[2J   Ann");
}

TEST_F(HostileEntry, ThatTurnsTheDirectionAroundDoesNot)
{
    EXPECT_EQ(shownSurname("\u202EMil\u2066ler\u2069"), "Miller");
}

TEST_F(HostileEntry, InTheLanguageOfPagesStaysText)
{
    EXPECT_EQ(shownSurname("<img src=x onerror='alert(1)'>&amp;"), "<img src=x onerror='alert(1)'>&amp;");
}

TEST_F(HostileEntry, WithoutValuesHasNoFields)
{
    EXPECT_EQ(shown({{"mobile", {}}, {"mail", {""}}, {"title", {" \n "}}, {"", {"nameless"}}, {";", {"x"}}}),
              (AttributeList{{Utils::SURNAME, "Miller"}}));
}
