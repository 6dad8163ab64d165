#include <algorithm>

#include "VcardTest.h"

namespace {

constexpr char nKEPT[] = "N:Lindqvist;Anna;Maria;Dr.;\n"
                         "FN:Dr. Anna Maria Lindqvist\n"
                         "TEL;TYPE=WORK;X-LINE=2:+46 8 465 004 11\n"
                         "TEL;TYPE=HOME:+46 8 465 004 13\n"
                         "TEL;TYPE=FAX:+46 8 465 004 14\n"
                         "TEL;TYPE=PAGER:+46 8 465 004 15\n"
                         "TEL:+46 8 465 004 16\n"
                         "EMAIL:anna@home.example\n"
                         "EMAIL;TYPE=PREF:anna@office.example\n"
                         "ORG:Nordljus AB;Sales\n"
                         "ADR;TYPE=WORK:;Plan 4;Storgatan 12;Stockholm;;111 22;Sverige\n"
                         "item1.ANNIVERSARY;X-A=\"b;c\":20060617\n"
                         "X-UNKNOWN:a,b;c\\;d\n";

Json kept(const Json& changes)
{
    Json record = parseProperties(nKEPT);
    record.update(changes);
    return record;
}

std::string changed(const std::string& from, const std::string& to)
{
    std::string text = nKEPT;
    return text.replace(text.find(from), from.size(), to);
}

Json fieldsAfterWriting(const Json& record)
{
    return jsonLines(parseText(writeRecords(record.dump() + "\n").out).out).at(0);
}

} // namespace

TEST(WriteCards, LeavesAnUnchangedCardAsItIs)
{
    EXPECT_EQ(writtenProperties(parseProperties(nKEPT)), nKEPT);
}

TEST(WriteCards, KeepsTheParametersOfAChangedNumber)
{
    EXPECT_EQ(writtenProperties(kept({{"office", "+46 8 465 004 99"}})), changed("004 11", "004 99"));
}

TEST(WriteCards, KeepsTitleAndMiddleNameOfAChangedName)
{
    auto expected = changed("N:Lindqvist;", "N:Berg;");
    expected.replace(expected.find("Maria Lindqvist"), 15, "Maria Berg");

    EXPECT_EQ(writtenProperties(kept({{"surname", "Berg"}})), expected);
}

TEST(WriteCards, KeepsTheDepartmentOfAChangedCompany)
{
    EXPECT_EQ(writtenProperties(kept({{"company", "Ljus; Berg, AB"}})),
              changed("Nordljus AB;", "Ljus\\; Berg\\, AB;"));
}

TEST(WriteCards, ChangesOneLineOfAnAddressOnly)
{
    EXPECT_EQ(writtenProperties(kept({{"address", "Torget 1"}})),
              changed(";Plan 4;Storgatan 12;", ";;Torget 1;"));
    EXPECT_EQ(writtenProperties(kept({{"address2", "Uppsala"}})),
              changed("Stockholm;;111 22;Sverige", "Uppsala;;;"));
}

TEST(WriteCards, DoesNotLetAnotherNumberMoveUpIntoARemovedField)
{
    const auto oneLeft = fieldsAfterWriting(kept({{"office", ""}, {"private", ""}}));
    const auto noneLeft = fieldsAfterWriting(kept({{"office", ""}, {"office2", ""}, {"private", ""}}));

    EXPECT_EQ(oneLeft["office"], "");
    EXPECT_EQ(oneLeft["office2"], "+46 8 465 004 16");
    EXPECT_EQ(noneLeft["office"], "") << "the fax machine is not to be dialled";
    EXPECT_EQ(fieldsAfterWriting(noneLeft)["office"], "");
}

TEST(WriteCards, DoesNotLetAnotherAddressMoveUpIntoARemovedField)
{
    EXPECT_EQ(fieldsAfterWriting(kept({{"email", ""}}))["email"], "");
}

TEST(WriteCards, KeepsASecondOfficeNumberWithoutAFirst)
{
    const Json record{{"surname", "Second"}, {"office2", "+44 20 7946 0050"}};

    EXPECT_EQ(writtenProperties(record), "N:Second;;;;\n"
                                         "FN:Second\n"
                                         "TEL;TYPE=WORK,VOICE;X-DESKBOOK-FIELD=OFFICE2:+44 20 7946 0050\n");
    EXPECT_EQ(fieldsAfterWriting(record)["office2"], "+44 20 7946 0050");
}

TEST(WriteCards, MakesAFreshCardOfARecord)
{
    const Json record{{"surname", "M\xC3\xBCller"},
                      {"firstname", "J\xC3\xB6rg"},
                      {"office", "+49 30 23125 001"},
                      {"mobile", "+49 30 23125 002"},
                      {"email", "jm@example.org"},
                      {"company", "Beispiel, S\xC3\xB6hne; Co"},
                      {"address", "Weg 1"},
                      {"address2", "10115 Berlin"},
                      {"jobFunction", "Leiter"},
                      {"uid", "u-1"},
                      {"preferred", "mobile"},
                      {"groups", {"Team", "a,b"}},
                      {"photo", {{"mime", "image/png"}, {"base64", "iVBORw0KGgo="}}}};

    EXPECT_EQ(writtenProperties(record), "N:M\xC3\xBCller;J\xC3\xB6rg;;;\n"
                                         "FN:J\xC3\xB6rg M\xC3\xBCller\n"
                                         "TEL;TYPE=WORK,VOICE:+49 30 23125 001\n"
                                         "TEL;TYPE=CELL,VOICE,PREF:+49 30 23125 002\n"
                                         "EMAIL;TYPE=INTERNET:jm@example.org\n"
                                         "ORG:Beispiel\\, S\xC3\xB6hne\\; Co\n"
                                         "TITLE:Leiter\n"
                                         "ADR;TYPE=WORK:;;Weg 1;10115 Berlin;;;\n"
                                         "UID:u-1\n"
                                         "CATEGORIES:Team,a\\,b\n"
                                         "PHOTO;ENCODING=b;TYPE=PNG:iVBORw0KGgo=\n");
    auto after = fieldsAfterWriting(record);
    for (const auto& [name, value] : record.items())
        EXPECT_EQ(after[name], value) << name;
}

TEST(WriteCards, FoldsAt75BytesWithoutCuttingCharacters)
{
    std::string name;
    for (int i = 0; i < 100; ++i)
        name += "\xE5\xB1\xB1";
    const auto text = writeRecords(Json{{"surname", name}}.dump()).out;

    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        ASSERT_EQ(line.back(), '\r');
        EXPECT_LE(line.size() - 1, 75u);
        EXPECT_NO_THROW(Json(line).dump()) << "cut inside a character";
    }
    EXPECT_EQ(jsonLines(parseText(text).out).at(0)["surname"], name);
}

TEST(WriteCards, Writes21AsQuotedPrintableWithinItsLineLength)
{
    const Json record{{"surname", "Lange\xC3\xA4" + std::string(120, 'x')}, {"mobile", "1"}};
    const auto text = writeRecords(record.dump(), vcard::Version::V21).out;

    EXPECT_NE(text.find("TEL;CELL;VOICE:1\r\n"), std::string::npos);
    EXPECT_NE(text.find("N;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:Lange=C3=A4xx"), std::string::npos);
    EXPECT_TRUE(
        std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }));
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 77u);
}

TEST(WriteCards, Writes40WithItsOwnWords)
{
    const Json record{{"surname", "Four"},
                      {"office", "1"},
                      {"preferred", "office"},
                      {"photo", {{"mime", "image/png"}, {"base64", "iVBORw0KGgo="}}}};
    const auto text = writeRecords(record.dump(), vcard::Version::V40).out;

    EXPECT_NE(text.find("VERSION:4.0\r\n"), std::string::npos);
    EXPECT_NE(text.find("TEL;TYPE=WORK,VOICE;PREF=1:1\r\n"), std::string::npos);
    EXPECT_NE(text.find("PHOTO:data:image/png;base64,iVBORw0KGgo=\r\n"), std::string::npos);
}

TEST(WriteCards, NamesALineThatIsNoRecordAndWritesTheOthers)
{
    const auto run = writeRecords("{\"surname\":\"A\"}\nnonsense\n{\"surname\":5}\n{\"surname\":\"B\"}\n");

    EXPECT_EQ(run.outcome, vcard::Outcome::Failed);
    EXPECT_EQ(jsonLines(parseText(run.out).out).size(), 2u);
    EXPECT_EQ(run.errors.rfind("line 2: not a contact record: ", 0), 0u) << run.errors;
    EXPECT_NE(run.errors.find("\nline 3: not a contact record: "), std::string::npos);
}

TEST(WriteCards, CleansWhatARecordBrings)
{
    const Json record{{"surname", "Line\nbreak \xE2\x80\xAE"}, {"firstname", "Tab\there"}};
    const auto after = fieldsAfterWriting(record);

    EXPECT_EQ(after["surname"], "Line break");
    EXPECT_EQ(after["firstname"], "Tab here");
}
