#include "PhonebookXmlParser.h"

#include <gtest/gtest.h>

#include "TraceLines.h"

namespace {

PhonebookXmlParser parsed(std::string text)
{
    return {text.data(), static_cast<int>(text.size())};
}

PhonebookXmlParser answered(const std::string& content)
{
    return parsed("<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"PhoneBook\">" + content +
                  "</Schema>");
}

std::string reason(const std::string& text)
{
    return "<ReasonForMessage>" + text + "</ReasonForMessage>";
}

} // namespace

TEST(PhonebookXmlParser, StartsWithNothingParsed)
{
    const PhonebookXmlParser parser;
    EXPECT_FALSE(parser.result());
    EXPECT_FALSE(parser.queryStatus());
    EXPECT_EQ(parser.responseType(), 0);
    EXPECT_EQ(parser.getFailureMessage(), "");
    EXPECT_EQ(parser.getSurname(), "");
}

TEST(PhonebookXmlParser, KnowsTheAnswerToAWriteRequest)
{
    const auto parser = answered(reason("write_response"));
    EXPECT_TRUE(parser.result());
    EXPECT_TRUE(parser.queryStatus());
    EXPECT_EQ(parser.responseType(), 2);
}

TEST(PhonebookXmlParser, KnowsTheKindsOfAnswers)
{
    EXPECT_EQ(answered(reason("read_response")).responseType(), 1);
    EXPECT_EQ(answered(reason("delete_response")).responseType(), 3);
    for (const char* other : {"Read_response", "read_response ", "failure", ""})
        EXPECT_EQ(answered(reason(other)).responseType(), 0) << other;
}

TEST(PhonebookXmlParser, TakesAnswersOfThePhonebookSchemaOnly)
{
    const std::string content = reason("write_response") + "</Schema>";
    EXPECT_FALSE(parsed("<Schema name=\"phonebook\">" + content).queryStatus());
    EXPECT_FALSE(parsed("<Schema>" + content).queryStatus());
    EXPECT_FALSE(parsed("<Schema title=\"PhoneBook\">" + content).queryStatus());
    EXPECT_FALSE(parsed("<Schema version=\"1\" name=\"PhoneBook\">" + content).queryStatus());
    EXPECT_TRUE(parsed("<Schema name=\"PhoneBook\" version=\"1\">" + content).queryStatus());
}

TEST(PhonebookXmlParser, ReadsTheMessageOfAFailure)
{
    const auto parser = answered(reason("failure") + "<FailureMessage>Not enough memory</FailureMessage>");
    EXPECT_TRUE(parser.result());
    EXPECT_FALSE(parser.queryStatus());
    EXPECT_EQ(parser.responseType(), 0);
    EXPECT_EQ(parser.getFailureMessage(), "Not enough memory");
}

TEST(PhonebookXmlParser, TakesAReasonThatIsNotExactlyFailureForSuccess)
{
    EXPECT_TRUE(answered(reason("Failure")).queryStatus());
    EXPECT_TRUE(answered("").queryStatus());
}

TEST(PhonebookXmlParser, ReadsEveryFieldOfARecord)
{
    const auto parser =
        answered(reason("read_response") +
                 "<Entry><Surname>1</Surname><Firstname>2</Firstname><Office>3</Office><Mobile>4</Mobile>"
                 "<Private>5</Private><Email>6</Email><Group>7</Group><DefaultNumber>8</DefaultNumber>"
                 "<Company>9</Company><Office2>10</Office2><Address>11</Address><Address2>12</Address2>"
                 "<JobFunction>13</JobFunction><Picture>14</Picture><UniqueID>15</UniqueID>"
                 "<ExternalID>16</ExternalID></Entry>");
    EXPECT_EQ(parser.getSurname(), "1");
    EXPECT_EQ(parser.getFirstname(), "2");
    EXPECT_EQ(parser.getOffice(), "3");
    EXPECT_EQ(parser.getMobile(), "4");
    EXPECT_EQ(parser.getPrivate(), "5");
    EXPECT_EQ(parser.getEmail(), "6");
    EXPECT_EQ(parser.getGroup(), "7");
    EXPECT_EQ(parser.getDefaultNumber(), "8");
    EXPECT_EQ(parser.getCompany(), "9");
    EXPECT_EQ(parser.getOffice2(), "10");
    EXPECT_EQ(parser.getAddress(), "11");
    EXPECT_EQ(parser.getAddress2(), "12");
    EXPECT_EQ(parser.getJobFunction(), "13");
    EXPECT_EQ(parser.getPicture(), "14");
    EXPECT_EQ(parser.getUniqueId(), "15");
    EXPECT_EQ(parser.getExternalId(), "16");
}

TEST(PhonebookXmlParser, KnowsElementsByTheirExactNames)
{
    const auto parser = answered("<Entry><surname>a</surname><UniqueId>b</UniqueId><Voice>c</Voice></Entry>");
    EXPECT_EQ(parser.getSurname(), "");
    EXPECT_EQ(parser.getUniqueId(), "");
}

TEST(PhonebookXmlParser, JoinsTextThatArrivesInSeveralPieces)
{
    const auto parser = answered("<Surname>Miller &amp; Söhne &lt;&#x4e2d;&gt;\n2</Surname>");
    EXPECT_EQ(parser.getSurname(), "Miller & Söhne <中>\n2");
}

TEST(PhonebookXmlParser, JoinsThePiecesThatItIsHanded)
{
    PhonebookXmlParser parser;
    const char* noAttributes[] = {nullptr};
    XMLstartElement_(&parser, "Surname", noAttributes);
    XMLCharacterDataHandler_(&parser, "Millerxx", 3);
    XMLCharacterDataHandler_(&parser, "ler", 3);
    EXPECT_EQ(parser.getSurname(), "");
    XMLendElement_(&parser, "Surname");
    EXPECT_EQ(parser.getSurname(), "Miller");
}

TEST(PhonebookXmlParser, KeepsTheLastOfRepeatedValues)
{
    const auto parser = answered("<Entry><Surname>Miller</Surname><Office>1</Office></Entry>"
                                 "<Entry><Surname>Smith</Surname></Entry>");
    EXPECT_EQ(parser.getSurname(), "Smith");
    EXPECT_EQ(parser.getOffice(), "1");
    EXPECT_EQ(answered("<Surname>a</Surname><Surname></Surname>").getSurname(), "");
}

TEST(PhonebookXmlParser, AddsTheTextBeforeAParentsEndToTheLastElement)
{
    const auto parser = answered("<Entry><Surname>Miller</Surname><Office>100</Office>\n  </Entry>\n");
    EXPECT_EQ(parser.getSurname(), "Miller");
    EXPECT_EQ(parser.getOffice(), "100\n  \n");
    EXPECT_EQ(answered(reason("delete_response") + "\n").responseType(), 0);
}

TEST(PhonebookXmlParser, LosesAValueToAnElementThatItDoesNotKnow)
{
    EXPECT_EQ(answered("<JobFunction>Smith</JobFunction><VoiceDial></VoiceDial>").getJobFunction(), "");
    EXPECT_EQ(answered(reason("write_response") + "<Entry></Entry>").responseType(), 0);
}

TEST(PhonebookXmlParser, StoresNoTextBeforeTheFirstElementThatItKnows)
{
    const auto parser = answered("before<Other>text</Other><Surname>Miller</Surname>");
    EXPECT_EQ(parser.getSurname(), "Miller");
    EXPECT_EQ(parser.getFailureMessage(), "");
    EXPECT_EQ(parser.responseType(), 0);
}

TEST(PhonebookXmlParser, KeepsTheElementButNotItsTextWhenASchemaBegins)
{
    const auto parser =
        parsed("<Entry><Surname>Miller</Surname><Schema name=\"PhoneBook\">Smith</Schema></Entry>");
    EXPECT_EQ(parser.getSurname(), "Smith");
    EXPECT_TRUE(parser.queryStatus());
}

TEST(PhonebookXmlParser, TakesTheNameOfTheLastSchema)
{
    EXPECT_FALSE(parsed("<Schema name=\"PhoneBook\"><Schema name=\"Other\"/></Schema>").queryStatus());
    EXPECT_TRUE(parsed("<Schema name=\"PhoneBook\"><Schema/></Schema>").queryStatus());
}

TEST(PhonebookXmlParser, SetsNothingFromADocumentThatIsNotWellFormed)
{
    for (const char* text : {"<Schema name=\"PhoneBook\"><Surname>Miller</Surname>", "text", " ", "<a></b>",
                             "<Schema name=\"PhoneBook\"><Surname>Miller</Surname></Schema><b/>"}) {
        const auto parser = parsed(text);
        EXPECT_FALSE(parser.result()) << text;
        EXPECT_FALSE(parser.queryStatus()) << text;
        EXPECT_EQ(parser.getSurname(), "") << text;
    }
}

TEST(PhonebookXmlParser, SetsNothingWithoutADocument)
{
    char text[] = "<a/>";
    EXPECT_FALSE(PhonebookXmlParser(nullptr, 4).result());
    EXPECT_FALSE(PhonebookXmlParser(text, 0).result());
    EXPECT_FALSE(PhonebookXmlParser(text, -1).result());
    EXPECT_TRUE(PhonebookXmlParser(text, 4).result());
}

TEST(PhonebookXmlParser, ReadsOnlyTheBytesThatItIsGiven)
{
    char text[] = "<Surname>Miller</Surname>and more";
    const PhonebookXmlParser parser(text, 25);
    EXPECT_EQ(parser.getSurname(), "Miller");
}

TEST(PhonebookXmlParser, LogsEachOperationByItsName)
{
    PhonebookXmlParser parser;
    const char* noAttributes[] = {nullptr};
    char text[] = "<a/>";
    expectTraces("PhonebookXmlParser",
                 {
                     {"PhonebookXmlParser", [] { PhonebookXmlParser(); }},
                     {"PhonebookXmlParser", [&] { PhonebookXmlParser(text, 4); }},
                     {"parseXml", [&] { parser.parseXml(text, 4); }},
                     {"queryStatus", [&] { parser.queryStatus(); }},
                     {"responseType", [&] { parser.responseType(); }},
                     {"result", [&] { parser.result(); }},
                     {"xmlStartElement", [&] { parser.xmlStartElement("a", noAttributes); }},
                     {"xmlEndElement", [&] { parser.xmlEndElement("a"); }},
                     {"xmlCharacterDataHandler", [&] { parser.xmlCharacterDataHandler(text, 4); }},
                     {"getFailureMessage", [&] { parser.getFailureMessage(); }},
                     {"getSurname", [&] { parser.getSurname(); }},
                     {"getFirstname", [&] { parser.getFirstname(); }},
                     {"getOffice", [&] { parser.getOffice(); }},
                     {"getMobile", [&] { parser.getMobile(); }},
                     {"getPrivate", [&] { parser.getPrivate(); }},
                     {"getEmail", [&] { parser.getEmail(); }},
                     {"getGroup", [&] { parser.getGroup(); }},
                     {"getDefaultNumber", [&] { parser.getDefaultNumber(); }},
                     {"getCompany", [&] { parser.getCompany(); }},
                     {"getOffice2", [&] { parser.getOffice2(); }},
                     {"getAddress", [&] { parser.getAddress(); }},
                     {"getAddress2", [&] { parser.getAddress2(); }},
                     {"getJobFunction", [&] { parser.getJobFunction(); }},
                     {"getPicture", [&] { parser.getPicture(); }},
                     {"getUniqueId", [&] { parser.getUniqueId(); }},
                     {"getExternalId", [&] { parser.getExternalId(); }},
                 });
}
