#include "calls/NumberFormat.h"

#include <gtest/gtest.h>

namespace {

TEST(NumberFormat, IsNationalWithinTheOwnCountry)
{
    EXPECT_EQ(NumberFormat("49").shown("+49301234567"), "030 1234567");
    EXPECT_EQ(NumberFormat("49").shown("+491701234567"), "0170 1234567");
    EXPECT_EQ(NumberFormat("1").shown("+12125550143"), "(212) 555-0143");
    EXPECT_EQ(NumberFormat("44").shown("+442079460958"), "020 7946 0958");
    EXPECT_EQ(NumberFormat("33").shown("+33123456789"), "01 23 45 67 89");
    EXPECT_EQ(NumberFormat("39").shown("+390612345678"), "06 1234 5678");
    EXPECT_EQ(NumberFormat("45").shown("+4533123456"), "33 12 34 56");
}

TEST(NumberFormat, IsInternationalOutside)
{
    EXPECT_EQ(NumberFormat("49").shown("+442079460958"), "+44 20 7946 0958");
    EXPECT_EQ(NumberFormat("44").shown("+49301234567"), "+49 30 1234567");
    EXPECT_EQ(NumberFormat("44").shown("+390612345678"), "+39 06 1234 5678");
    EXPECT_EQ(NumberFormat("").shown("+49301234567"), "+49 30 1234567");
}

TEST(NumberFormat, LeavesAloneWhatIsNotInFull)
{
    for (const std::string text :
         {"", "+", "4711", "110", "112", "*8101", "*21*4711#", "030 1234567", "00301234567", "0800 FLOWERS",
          "alice@example.org", "+49 30 1234567", "+49800FLOWERS", "+*21#", "Reception"}) {
        EXPECT_EQ(NumberFormat("49").shown(text), text);
    }
}

TEST(NumberFormat, LeavesAloneWhatIsNoPossibleNumber)
{
    for (const std::string& text : std::vector<std::string>{"+4", "+999123456", "+442", "+120255501430000",
                                                            "+" + std::string(200, '1')}) {
        EXPECT_EQ(NumberFormat("49").shown(text), text);
    }
}

TEST(NumberFormat, NeverTakesThePrefixFromANumberThatFitsNoGrouping)
{
    EXPECT_EQ(NumberFormat("49").shown("+49170333"), "+49170333");
    EXPECT_EQ(NumberFormat("49").shown("+493012"), "+493012");
}

} // namespace
