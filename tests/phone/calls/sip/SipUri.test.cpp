#include "calls/sip/SipUri.h"

#include <gtest/gtest.h>

namespace {

const SipHost nHERE{"pbx.example.com", 5070};

// "" for what is refused.
std::string dialled(const std::string& number)
{
    return sipUriOf(number, nHERE).value_or("");
}

std::string at(const std::string& user)
{
    return "sip:" + user + "@pbx.example.com:5070";
}

} // namespace

TEST(SipUri, HoldsNumbersAsTheyAreDialled)
{
    EXPECT_EQ(dialled("201"), at("201"));
    EXPECT_EQ(dialled("+49 30 12 34"), at("+49301234"));
    EXPECT_EQ(dialled("*8201"), at("*8201"));
    EXPECT_EQ(dialled("(030) 12-34"), at("(030)12-34"));
    EXPECT_EQ(dialled("anna.m"), at("anna.m"));
    EXPECT_EQ(dialled(std::string(200, '1')), at(std::string(200, '1')));
}

TEST(SipUri, EscapesWhatItCannotHold)
{
    EXPECT_EQ(dialled("#31#201"), at("%2331%23201"));
    EXPECT_EQ(dialled("1/2"), at("1%2F2"));
    EXPECT_EQ(dialled("1;ext=2?x&y%00"), at("1%3Bext%3D2%3Fx%26y%2500"));
    EXPECT_EQ(dialled("<\"1\">"), at("%3C%221%22%3E"));
    EXPECT_EQ(dialled("m\u00fcller"), at("m%C3%BCller"));
}

TEST(SipUri, IsMadeOfNothingElse)
{
    for (const auto* number : {"", " ", "   ", "sip:", "1\r\nVia: x", "1\t2", "1\x7f"})
        EXPECT_EQ(dialled(number), "") << number;
    EXPECT_EQ(dialled(std::string("1\0002", 3)), "");
    EXPECT_EQ(dialled(std::string(256, '1')), "");
}

TEST(SipUri, KeepsTheHostThatIsDialled)
{
    EXPECT_EQ(dialled("sip:anna@example.org"), "sip:anna@example.org");
    EXPECT_EQ(dialled("anna@192.0.2.1:5080"), "sip:anna@192.0.2.1:5080");
    EXPECT_EQ(dialled("anna@bad host!"), at("anna%40badhost!"));
    EXPECT_EQ(dialled("anna@example.org;lr"), at("anna%40example.org%3Blr"));
    EXPECT_EQ(dialled("anna@example.org:0"), at("anna%40example.org%3A0"));
    EXPECT_EQ(dialled("@example.org"), "");
}

TEST(SipUri, TellsWhoItStandsFor)
{
    EXPECT_EQ(sipUserOf("sip:201@10.0.0.1:5060;transport=udp"), "201");
    EXPECT_EQ(sipUserOf("sips:+4930%23;phone-context=x@h"), "+4930#");
    EXPECT_EQ(sipUserOf("sip:anna:secret@h"), "anna");
    EXPECT_EQ(sipUserOf("sip:10.0.0.1"), "");
    EXPECT_EQ(sipUserOf("sip:a%4@h"), "a%4");
    EXPECT_EQ(sipUserOf("sip:a%zz%41@h"), "a%zzA");
    EXPECT_EQ(sipUserOf(""), "");
}

TEST(SipHost, IsANameAndPerhapsAPort)
{
    EXPECT_EQ(sipHostOf("pbx.example.com:5070"), nHERE);
    EXPECT_EQ(sipHostOf("pbx"), (SipHost{"pbx", 0}));
    EXPECT_EQ(sipHostOf("pbx:5060")->text(), "pbx:5060");
    EXPECT_EQ(sipHostOf("pbx")->text(), "pbx");
    for (const auto* text : {"", ":5060", "pbx:", "pbx:0", "pbx:65536", "pbx:5060x", "p bx", "-pbx", "pbx;lr",
                             "[::1", "[pbx]", "[::1]5060", "::1", "[]", "pbx\n", "sip:pbx"})
        EXPECT_FALSE(sipHostOf(text)) << text;
}

TEST(SipHost, IsAnIpv6AddressInBrackets)
{
    const auto host = sipHostOf("[2001:db8::1]:5060");
    ASSERT_TRUE(host);
    EXPECT_TRUE(host->isIpv6());
    EXPECT_EQ(host->text(), "[2001:db8::1]:5060");
    EXPECT_EQ(sipHostOf("[2001:db8::1]")->port, 0);
    EXPECT_FALSE(sipHostOf("192.0.2.1")->isIpv6());
    EXPECT_EQ(dialled("anna@[2001:db8::1]"), "sip:anna@[2001:db8::1]");
}

TEST(SipHost, MayBeThisMachine)
{
    EXPECT_EQ(sipHostOf("localhost:5060")->text(), "127.0.0.1:5060");
    EXPECT_TRUE(sipHostOf("[::1]:5060")->isThisMachine());
    EXPECT_FALSE(sipHostOf("127.example.com")->isThisMachine());
    EXPECT_TRUE(sipHostOf("localhost")->isThisMachine());
    EXPECT_TRUE(sipHostOf("127.0.0.1:5060")->isThisMachine());
    EXPECT_FALSE(sipHostOf("pbx")->isThisMachine());
}
