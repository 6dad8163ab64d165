#include "calls/pbx/CstaXml.h"

#include <gtest/gtest.h>

namespace {

const std::string SPACE = " xmlns=\"http://www.ecma-international.org/standards/ecma-323/csta/ed";

std::string inEdition(const std::string& edition)
{
    return "<MonitorStartResponse" + SPACE + edition +
           "\"><monitorCrossRefID>m1</monitorCrossRefID></MonitorStartResponse>";
}

std::string crossReferenceIn(const std::string& xml)
{
    const auto read = readCsta(xml);
    return read ? read.value().textAt({"monitorCrossRefID"}) : "error";
}

bool isRefused(const std::string& xml)
{
    return !readCsta(xml);
}

} // namespace

TEST(CstaXml, IsReadInAnyEdition)
{
    for (const auto* edition : {"2", "3", "4", "5", "6", "17"})
        EXPECT_EQ(crossReferenceIn(inEdition(edition)), "m1") << edition;
    EXPECT_EQ(
        crossReferenceIn("<?xml version=\"1.0\"?>\n<c:MonitorStartResponse xmlns:c=\"" + SPACE.substr(8) +
                         "4\">\n  <c:monitorCrossRefID>m1</c:monitorCrossRefID>\n</c:MonitorStartResponse>"),
        "m1");
}

TEST(CstaXml, IsReadHoweverItIsWritten)
{
    EXPECT_EQ(crossReferenceIn("\xEF\xBB\xBF" + inEdition("3")), "m1");
    EXPECT_EQ(
        crossReferenceIn("<MonitorStartResponse" + SPACE +
                         "3\"><!-- a comment --><?an instruction?><monitorCrossRefID a=\"b\"><![CDATA[m]]>"
                         "&#49;</monitorCrossRefID></MonitorStartResponse>\n"),
        "m1");
}

TEST(CstaXml, OfAnythingElseIsRefused)
{
    EXPECT_TRUE(isRefused(""));
    EXPECT_TRUE(isRefused("<MonitorStartResponse/>"));
    EXPECT_TRUE(isRefused("<html xmlns=\"http://www.w3.org/1999/xhtml\"/>"));
    EXPECT_TRUE(isRefused("<MonitorStartResponse" + SPACE + "3\">"));
    EXPECT_TRUE(isRefused("<a" + SPACE + "3\">\xFF</a>"));
    EXPECT_TRUE(isRefused("<a" + SPACE + "3\"/>rubbish"));
    EXPECT_TRUE(isRefused("<!DOCTYPE a><a" + SPACE + "3\"/>"));
    EXPECT_TRUE(isRefused("<!DOCTYPE a [<!ENTITY b \"bbbb\">]><a" + SPACE + "3\">&b;</a>"));
}

TEST(CstaXml, IsNotReadForEver)
{
    std::string deep;
    for (int i = 0; i < 5000; ++i)
        deep += "<a" + (i == 0 ? SPACE + "3\">" : ">");
    EXPECT_TRUE(isRefused(deep));
    std::string wide = "<a" + SPACE + "3\">";
    for (int i = 0; i < 5000; ++i)
        wide += "<b/>";
    EXPECT_TRUE(isRefused(wide + "</a>"));
}

TEST(CstaXml, AsksForNoElementOfOthers)
{
    const auto read = readCsta("<a" + SPACE + "3\"><b xmlns=\"urn:another\">no</b><b>yes</b></a>");
    ASSERT_TRUE(read);
    EXPECT_EQ(read.value().textAt({"b"}), "yes");
    EXPECT_EQ(read.value().textAt({"b", "c"}), "");
    EXPECT_EQ(read.value().find("c"), nullptr);
}

TEST(CstaXml, IsWrittenWithItsNamespaces)
{
    const CstaElement private_{"row", "2", {}, CstaElement::Kind::Private};
    EXPECT_EQ(writeCsta({"a", "", {{"b", "x"}, {"c", "", {private_, private_}}, {"d"}}}),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a xmlns=\"" + std::string(CSTA_NAMESPACE) +
                  "\"><b>x</b><c><row xmlns=\"urn:deskbook:csta:1\">2</row><row "
                  "xmlns=\"urn:deskbook:csta:1\">2</row></c><d/></a>");
}

TEST(CstaXml, KeepsAnyText)
{
    const std::string text = "Müller & Søn <\"'>]]>";
    const auto read = readCsta(writeCsta({"a", "", {{"b", text + '\x01'}}}));
    ASSERT_TRUE(read);
    EXPECT_EQ(read.value().textAt({"b"}), text);
}
