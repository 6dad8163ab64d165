#include "calls/DigitAnalysis.h"

#include <gtest/gtest.h>

#include <framework/services/DigitAnalysisServiceEventIfc.h>
#include <framework/services/InterDigitTimeOutEvent.h>

#include "app/EventThread.h"

namespace {

class Provider final : public DigitAnalysisServiceEventIfc {
public:
    void handleInterDigitTimeout(InterDigitTimeOutEvent* event) override
    {
        heard += "timeout(" + event->getDialString() + ") ";
    }
    void handleInitialDigitTimeout(InterDigitTimeOutEvent*) override { heard += "nothing-dialled "; }
    bool isDiallingOk() override { return allowed; }
    void handleDialingStarted(const std::string& digits) override { heard += "started(" + digits + ") "; }
    void handleDialingStarted(const std::string&, CallPartyIdentifier) override { heard += "unexpected "; }
    void handleDialingStopped() override { heard += "stopped "; }
    bool getDialPartyDetails(CallPartyIdentifier& asked) override
    {
        const bool isOther = !asked.getNumber().empty() && asked.getNumber() == otherNumber;
        asked = party;
        if (isOther)
            asked.setNumber(otherNumber);
        return !party.getNumber().empty();
    }
    void getEventHandlerName(std::string& name) override { name = "Provider"; }

    std::string take() { return std::exchange(heard, ""); }

    std::string heard;
    bool allowed = true;
    CallPartyIdentifier party;
    std::string otherNumber = {}; // of the same party
};

class Digits : public testing::Test {
protected:
    static DialPlanRules rules()
    {
        DialPlanRules plan;
        plan.countryCode = "49";
        plan.areaCode = "30";
        plan.internalDigits = 4;
        plan.emergencyNumbers = {"112"};
        return plan;
    }

    std::string after(std::chrono::milliseconds time = std::chrono::milliseconds(0))
    {
        events.advance(clock, time);
        events.runPending();
        return provider.take();
    }

    ManualClock clock;
    EventThread events{clock};
    Provider provider;
    DigitAnalysis analysis{rules(), DialTimes(), clock, events, events};

    void SetUp() override { ASSERT_TRUE(analysis.setCallContextProvider(&provider)); }
};

using namespace std::chrono_literals;

TEST_F(Digits, ReportGoingOffHookWithNoDigits)
{
    analysis.offHook();
    EXPECT_EQ(provider.take(), ""); // never on the caller's stack
    EXPECT_EQ(after(), "started() ");
}

TEST_F(Digits, ReportTheFirstDigitOnTheHook)
{
    analysis.digit('0');
    EXPECT_EQ(after(), "started(0) ");
    EXPECT_TRUE(analysis.isDialling());
}

TEST_F(Digits, ThatFollowAClosedDiallerBeginAnew)
{
    analysis.digit('0');
    EXPECT_EQ(after(), "started(0) ");
    analysis.setDialString("03", 0);
    analysis.digit('4');
    EXPECT_EQ(after(), "started(4) ");
}

TEST_F(Digits, ThatWereDialledAreNotBegunWith)
{
    analysis.offHook();
    EXPECT_EQ(after(), "started() ");
    analysis.setDialString("03", 1);
    EXPECT_FALSE(analysis.isDialling());
    analysis.digit('4');
    EXPECT_EQ(after(), "started(4) ");
}

TEST_F(Digits, ThatNobodyWasToldOfAreKept)
{
    ASSERT_TRUE(analysis.clearCallContextProvider(&provider));
    EXPECT_FALSE(analysis.hasProvider());
    analysis.offHook();
    analysis.digit('1');
    EXPECT_EQ(after(), "");

    ASSERT_TRUE(analysis.setCallContextProvider(&provider));
    analysis.digit('2');
    EXPECT_EQ(after(), "started(12) ");
}

TEST_F(Digits, OfOneProviderAreNeverAnothers)
{
    Provider other;
    analysis.offHook();
    analysis.digit('1');
    EXPECT_EQ(after(), "started(1) ");

    ASSERT_TRUE(analysis.setCallContextProvider(&other));
    after(10s);
    EXPECT_EQ(other.take(), "");
    analysis.digit('2');
    after();
    EXPECT_EQ(other.take(), "started(2) ");
    analysis.clearCallContextProvider(&other);
}

TEST_F(Digits, TypedBeforeTheReportArePartOfIt)
{
    analysis.digit('0');
    analysis.digit('3');
    EXPECT_EQ(after(), "started(03) ");
}

TEST_F(Digits, AreReportedToWhoeverProvidesWhenTheyArrive)
{
    Provider other;
    analysis.digit('1');
    EXPECT_TRUE(analysis.setCallContextProvider(&other));
    EXPECT_EQ(after(), "");
    EXPECT_EQ(other.take(), "started(1) ");
    EXPECT_FALSE(analysis.clearCallContextProvider(&provider));
    EXPECT_TRUE(analysis.clearCallContextProvider(&other));
    EXPECT_FALSE(analysis.setCallContextProvider(nullptr));
    analysis.onHook();
    EXPECT_EQ(after(), "");
}

TEST_F(Digits, AreKeptFromAProviderThatWantsNone)
{
    provider.allowed = false;
    analysis.offHook();
    EXPECT_EQ(after(), "");
}

TEST_F(Digits, TimeOutOffHookWhenNoneFollows)
{
    analysis.offHook();
    EXPECT_EQ(after(), "started() ");
    EXPECT_TRUE(analysis.setDialString("0301", 0));
    EXPECT_EQ(after(4900ms), "");
    EXPECT_TRUE(analysis.setDialString("03012345", 0));
    EXPECT_EQ(after(4900ms), "");
    EXPECT_EQ(after(200ms), "timeout(03012345) ");
    EXPECT_EQ(after(1min), "");
}

TEST_F(Digits, TimeOutInTheFormThatIsDialled)
{
    auto office = rules();
    office.outsideLine = "0";
    analysis.setRules(office, DialTimes());
    analysis.offHook();
    analysis.setDialString("030 12345", 0);
    EXPECT_EQ(after(5s), "started(030 12345) timeout(003012345) ");
}

TEST_F(Digits, OfAnEmergencyNumberAreNotWaitedForAnyLonger)
{
    analysis.offHook();
    EXPECT_EQ(after(), "started() ");
    analysis.setDialString("11", 0);
    EXPECT_EQ(after(), "");
    analysis.setDialString("112", 0);
    EXPECT_EQ(after(), "timeout(112) ");
}

TEST_F(Digits, ThatAreTakenBackToAnEmergencyNumberAreNoEmergency)
{
    analysis.offHook();
    EXPECT_EQ(after(), "started() ");
    analysis.setDialString("1124", 0);
    analysis.setDialString("112", 0);
    EXPECT_EQ(after(4s), "");
    EXPECT_EQ(after(1s), "timeout(112) ");
}

TEST_F(Digits, OfAnEmergencyNumberAreKeptOnTheHook)
{
    analysis.setDialString("112", 0);
    EXPECT_EQ(after(1min), "");
}

TEST_F(Digits, NeverTimeOutOnTheHook)
{
    analysis.digit('4');
    EXPECT_EQ(after(), "started(4) ");
    analysis.setDialString("4711", 0);
    EXPECT_EQ(after(1h), "");
}

TEST_F(Digits, TakenBackOrCompleteNoLongerTimeOut)
{
    analysis.offHook();
    analysis.setDialString("4711", 0);
    EXPECT_FALSE(analysis.setDialString("", 0));
    EXPECT_EQ(after(1min), "started() ");
    analysis.setDialString("4711", 0);
    EXPECT_TRUE(analysis.setDialString("4711", 1));
    EXPECT_EQ(after(1min), "");
}

TEST_F(Digits, ThatOthersHaveReplacedNoLongerTimeOutUntilOneIsTyped)
{
    analysis.offHook();
    EXPECT_EQ(after(), "started() ");
    analysis.setDialString("302", 0);
    analysis.replace("030");
    EXPECT_EQ(after(20s), "");
    analysis.setDialString("0301", 0);
    EXPECT_EQ(after(5s), "timeout(0301) ");
}

TEST_F(Digits, ThatAreStillTheSameGoOnTimingOut)
{
    analysis.offHook();
    EXPECT_EQ(after(), "started() ");
    analysis.setDialString("302", 0);
    analysis.replace("302");
    EXPECT_EQ(after(5s), "timeout(302) ");
}

TEST_F(Digits, ThatNeverComeAreReportedToo)
{
    analysis.offHook();
    EXPECT_EQ(after(14s), "started() ");
    EXPECT_EQ(after(1s), "nothing-dialled ");
}

TEST_F(Digits, StopWithTheHandsetOnTheHook)
{
    analysis.offHook();
    analysis.offHook();
    EXPECT_EQ(after(), "started() ");
    analysis.onHook();
    EXPECT_EQ(after(1min), "stopped ");
    analysis.onHook();
    EXPECT_EQ(after(), "");
}

TEST_F(Digits, StopWhenACallIsConnected)
{
    analysis.offHook();
    analysis.setDialString("4711", 1);
    analysis.dialingStopped();
    EXPECT_EQ(after(1min), "stopped ");
    analysis.onHook();
    EXPECT_EQ(after(), "");
}

TEST_F(Digits, StopAlsoForACallThatNoDigitsBegan)
{
    analysis.dialingStopped();
    EXPECT_EQ(after(), "stopped ");
}

TEST_F(Digits, NobodyIsToldWhenTheServiceIsGone)
{
    {
        DigitAnalysis shortLived(rules(), DialTimes(), clock, events, events);
        shortLived.setCallContextProvider(&provider);
        shortLived.offHook();
    }
    EXPECT_EQ(after(1min), "");
}

TEST_F(Digits, BelongToThePartyThatTheProviderKnows)
{
    provider.party.setSurname("Miller");
    provider.party.setNumber("+49 30 12345");
    EXPECT_EQ(analysis.partyOf("03012345").getSurname(), "Miller");
    EXPECT_EQ(analysis.partyOf("03099999").getSurname(), "");
    EXPECT_EQ(analysis.partyOf("03099999").getNumber(), "03099999");
}

TEST_F(Digits, BelongToThePartyWhoseOtherNumberTheyAre)
{
    provider.party.setSurname("Miller");
    provider.party.setNumber("+49 30 12345");
    provider.otherNumber = "+49 172 777";
    EXPECT_EQ(analysis.partyOf("+49 172 777").getSurname(), "Miller");
}

TEST_F(Digits, BelongToThePartyThatWasHandedOver)
{
    CallPartyIdentifier party;
    party.setSurname("Baker");
    party.setNumber("4711");
    analysis.setDialPartyDetails(party, false, 0);
    EXPECT_EQ(analysis.partyOf("4711").getSurname(), "");
    analysis.setDialPartyDetails(party, true, 0);
    EXPECT_EQ(analysis.partyOf("4711").getSurname(), "Baker");
    analysis.dialingStopped();
    EXPECT_EQ(analysis.partyOf("4711").getSurname(), "");
}

TEST_F(Digits, AreConvertedInPlace)
{
    std::string number = "030 12345";
    analysis.convertToCanonical(number);
    EXPECT_EQ(number, "+493012345");
}

} // namespace
