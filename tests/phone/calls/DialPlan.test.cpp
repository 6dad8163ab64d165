#include "calls/DialPlan.h"

#include <gtest/gtest.h>

namespace {

DialPlanRules berlin()
{
    DialPlanRules rules;
    rules.countryCode = "49";
    rules.areaCode = "30";
    rules.internalDigits = 4;
    rules.emergencyNumbers = {"110", "112"};
    return rules;
}

DialPlanRules berlinOffice()
{
    auto rules = berlin();
    rules.outsideLine = "0";
    return rules;
}

// The canonical form, which must be its own canonical form.
std::string canonical(const DialPlanRules& rules, const std::string& number)
{
    const DialPlan plan(rules);
    const auto once = plan.canonical(number);
    EXPECT_EQ(plan.canonical(once), once);
    return once;
}

TEST(DialPlan, WritesNumbersInFull)
{
    EXPECT_EQ(canonical(berlin(), "030 1234567"), "+49301234567");
    EXPECT_EQ(canonical(berlin(), "(089) 12-34/56.7"), "+49891234567");
    EXPECT_EQ(canonical(berlin(), "1234567"), "+49301234567");
    EXPECT_EQ(canonical(berlin(), "0044 20 7946 0958"), "+442079460958");
    EXPECT_EQ(canonical(berlin(), "+49 (0)30 1234567"), "+49301234567");
    EXPECT_EQ(canonical(berlin(), "+44 20 7946\u00a00958"), "+442079460958");
    EXPECT_EQ(canonical(berlin(), "030\u20131234567"), "+49301234567");
}

TEST(DialPlan, LeavesInternalNumbersAlone)
{
    EXPECT_EQ(canonical(berlin(), "4711"), "4711");
    EXPECT_EQ(canonical(berlin(), "47-11"), "47-11");
    auto rules = berlin();
    rules.internalDigits = 5;
    rules.internalPatterns = {"2xxx", "7xxxx"};
    EXPECT_EQ(canonical(rules, "2345"), "2345");
    EXPECT_EQ(canonical(rules, "71234"), "71234");
    EXPECT_EQ(canonical(rules, "3345"), "+49303345");
    rules.internalDigits = 0;
    EXPECT_EQ(canonical(rules, "2345"), "+49302345");
}

TEST(DialPlan, LeavesEmergencyNumbersAlone)
{
    auto rules = berlinOffice();
    rules.internalDigits = 0;
    for (const char* number : {"110", "112", "0110", "0112", "1 1 2"})
        EXPECT_EQ(canonical(rules, number), number);
    EXPECT_TRUE(DialPlan(rules).isEmergency("0112"));
    EXPECT_FALSE(DialPlan(rules).isEmergency("1120"));
    EXPECT_EQ(DialPlan(rules).dialString("0112"), "0112");
}

TEST(DialPlan, KnowsWhenAnEmergencyNumberIsComplete)
{
    DialPlanRules rules;
    rules.emergencyNumbers = {"112", "118", "15"};
    rules.internalDigits = 4;
    rules.outsideLine = "0";
    const auto isComplete = [&rules](const char* digits) {
        return DialPlan(rules).isCompleteEmergency(digits);
    };
    EXPECT_TRUE(isComplete("112"));
    EXPECT_FALSE(isComplete("11"));
    EXPECT_FALSE(isComplete("015")); // as numbers in Paris begin
    rules.internalFirstDigits = "234";
    EXPECT_TRUE(isComplete("112"));
    rules.internalFirstDigits = "123";
    EXPECT_FALSE(isComplete("112"));
    rules.internalPatterns = {"2xxx", "3xxx"};
    EXPECT_TRUE(isComplete("112"));
    rules.internalPatterns = {"11xx"};
    EXPECT_FALSE(isComplete("112"));
    EXPECT_TRUE(isComplete("15"));
    rules.serviceNumbers = {"118xx"};
    rules.internalPatterns.clear();
    rules.internalFirstDigits.clear();
    EXPECT_FALSE(isComplete("118"));
    rules.emergencyNumbers = {"11", "112"};
    EXPECT_FALSE(isComplete("11"));
}

TEST(DialPlan, TakesTheOutsideLineOffBeforeAPrefix)
{
    EXPECT_EQ(canonical(berlinOffice(), "0 030 1234567"), "+49301234567");
    EXPECT_EQ(canonical(berlinOffice(), "0 0044 20 79460958"), "+442079460958");
    EXPECT_EQ(canonical(berlinOffice(), "030 1234567"), "+49301234567");
    auto rules = berlin();
    rules.outsideLine = "9";
    EXPECT_EQ(canonical(rules, "9 0301234567"), "+49301234567");
    EXPECT_EQ(canonical(rules, "98765432"), "+493098765432");
}

TEST(DialPlan, LeavesWhatIsNoPlainNumberAlone)
{
    for (const char* text :
         {"", "Reception", "0800 FLOWERS", "alice@example.org", "*21*030#", "12,34", "+", "()"})
        EXPECT_EQ(canonical(berlin(), text), text);
}

TEST(DialPlan, KnowsPlansWithoutPrefixesAndWithoutAreaCodes)
{
    DialPlanRules danish;
    danish.countryCode = "45";
    danish.nationalPrefix = "";
    EXPECT_EQ(canonical(danish, "33 12 34 56"), "+4533123456");
    EXPECT_EQ(DialPlan(danish).dialString("+45 33123456"), "33123456");

    auto noArea = berlin();
    noArea.areaCode = "";
    EXPECT_EQ(canonical(noArea, "1234567"), "1234567");

    EXPECT_EQ(canonical(DialPlanRules(), "030 1234567"), "030 1234567");
}

TEST(DialPlan, DialsWithThePrefixesThatAreNeeded)
{
    const DialPlan home(berlin());
    EXPECT_EQ(home.dialString("+49 30 1234567"), "0301234567");
    EXPECT_EQ(home.dialString("+44 20 79460958"), "00442079460958");
    EXPECT_EQ(home.dialString("4711"), "4711");
    EXPECT_EQ(home.dialString("110"), "110");
    EXPECT_EQ(home.dialString("*21#"), "*21#");
    EXPECT_EQ(home.dialString("alice@example.org"), "alice@example.org");

    const DialPlan office(berlinOffice());
    EXPECT_EQ(office.dialString("030 1234567"), "00301234567");
    EXPECT_EQ(office.dialString("00301234567"), "00301234567");
    EXPECT_EQ(office.dialString("+442079460958"), "000442079460958");

    EXPECT_EQ(DialPlan(DialPlanRules()).dialString("+49 30 12345"), "+493012345");
}

TEST(DialPlan, KnowsWhatTheExchangeCallsADevice)
{
    auto rules = berlinOffice();
    rules.enterprisePrefix = "+49 30 23125";
    const DialPlan office(rules);
    for (const std::string& written : std::vector<std::string>{
             "4711", "47-11", "+49 30 23125-4711", "030 23125 4711", "0030231254711", "23125-4711"})
        EXPECT_EQ(office.extension(written), "4711") << written;
    EXPECT_EQ(office.extension("201"), "201");
    EXPECT_EQ(office.extension("030 1234567"), "00301234567"); // somewhere else
    EXPECT_EQ(office.extension("*8101"), "*8101");
    EXPECT_EQ(office.extension(""), "");

    // From here 110 and 0815 are something else.
    EXPECT_EQ(office.dialString("+49 30 23125-110"), "003023125110");
    EXPECT_EQ(office.extension("+49 30 23125-110"), "110");
    EXPECT_EQ(office.extension("+49 30 23125-0815"), "0815");

    EXPECT_EQ(DialPlan(DialPlanRules()).extension("201"), "201");
}

} // namespace
