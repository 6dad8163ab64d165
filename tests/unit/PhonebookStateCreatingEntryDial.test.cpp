#include <framework/services/InterDigitTimeOutEvent.h>

#include "ContactFormScreens.h"

namespace {

class ContactFormDialling : public ContactFormScreens {
protected:
    void amy()
    {
        contact(
            "Adams", "Amy",
            {{"Office", "1"}, {"Office2", "2"}, {"Mobile", "3"}, {"Private", "4"}, {"Picture", "amy.png"}});
    }
    void answerSnapshotWith(std::vector<int> states, int code = 0)
    {
        csta.answer = [states, code](CSTARequest& request) {
            request.setResponse(code, std::make_unique<CSTASnapshotDeviceResponse>(states));
        };
    }
    static void refuse(CSTARequest& request)
    {
        request.setResponse(1, std::make_unique<CSTAErrorCode>(CSTAErrorCode::OTHER));
    }
};

} // namespace

// --- OK on a number ---

TEST_F(ContactFormDialling, DialsTheNumberInFocusAndReturnsToTheList)
{
    amy();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        csta.sent.clear();
        Texts expected;
        for (const auto& [label, number] : std::vector<std::pair<std::string, std::string>>{
                 {"business1", "1"}, {"business2", "2"}, {"mobile", "3"}, {"private", "4"}}) {
            openDetails();
            focus(label);
            press(OK);
            expected.push_back("MakeCall " + number);
            EXPECT_EQ(calls(), expected);
            EXPECT_TRUE(inList());
            EXPECT_TRUE(context().m_CallRequestInitiated);
            EXPECT_EQ(context().m_LastDialledNumber, number);
            dialingStops();
        }
    }
}

TEST_F(ContactFormDialling, DialsWhatWasTypedAndKeepsTheForm)
{
    amy();
    start();
    openDetails();
    fill("mobile", "0170");
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 0170"});
    EXPECT_TRUE(inForm());
    EXPECT_EQ(value("mobile"), "0170");
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(directory.records.begin()->second.at("Mobile"), "3");
}

TEST_F(ContactFormDialling, DialsANumberWithoutTheBlanksAroundIt)
{
    contact("Adams", "Amy", {{"Mobile", " 0170 1 "}});
    start();
    openDetails();
    focus("mobile");
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 0170 1"});
}

TEST_F(ContactFormDialling, RefusesASecondCallUntilDiallingStops)
{
    amy();
    start();
    openDetails();
    fill("mobile", "0170");
    press(OK);
    press(OK);
    EXPECT_EQ(calls().size(), 1u);
    EXPECT_EQ(log.count("okEventOnForm received when call already initiated - ignore", 3), 1);
    EXPECT_TRUE(inForm());
    dialingStops();
    EXPECT_FALSE(context().m_CallRequestInitiated);
    press(OK);
    EXPECT_EQ(calls().size(), 2u);
}

TEST_F(ContactFormDialling, RefusesNoCallOnSipTelephones)
{
    configuration.items["software-type"] = "Veltrix SIP";
    amy();
    start();
    openDetails();
    fill("mobile", "0170");
    press(OK);
    press(OK);
    EXPECT_EQ(calls().size(), 2u);
}

TEST_F(ContactFormDialling, StaysInTheFormWhenTheCallFails)
{
    amy();
    start();
    openDetails();
    focus("mobile");
    for (const auto& [cause, message] : std::vector<std::pair<int, std::string>>{
             {0, "! no.line.available\n"}, {1, "! line.selection.needed\n"}}) {
        callsFail(cause);
        press(OK);
        EXPECT_EQ(screen(), message);
        EXPECT_TRUE(inForm());
        EXPECT_FALSE(context().m_CallRequestInitiated);
        wait(15000ms);
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(top().role, DisplayAPI::FrameRole::Form);
    }
    callsFail(2);
    press(OK);
    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(inForm());
    EXPECT_EQ(calls().size(), 3u);
}

TEST_F(ContactFormDialling, SaysThatAnEmptyFieldHasNoNumber)
{
    contact("Adams", "Amy");
    start();
    openDetails();
    for (const auto* label : {"business1", "business2", "mobile"}) {
        focus(label);
        press(OK);
        EXPECT_EQ(screen(), "! dialler.noNumber\n") << label;
        EXPECT_FALSE(context().m_CallRequestInitiated);
        wait(1000ms);
        EXPECT_EQ(popups(), 0u);
    }
}

TEST_F(ContactFormDialling, HearsNothingOfOkOnAnEmptyPrivateNumber)
{
    contact("Adams", "Amy");
    contact("Baker", "", {{"Private", "4"}});
    start();
    openDetails();
    log.clear();
    focus("private");
    press(OK);
    EXPECT_FALSE(log.has("PhonebookStateCreatingEntry::okEvent"));
    EXPECT_EQ(popups(), 0u);
    press(BACK);
    openDetails(1);
    focus("private");
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 4"});
    openDetails(0);
    focus("private");
    press(OK);
    EXPECT_EQ(calls().size(), 1u);
}

TEST_F(ContactFormDialling, LeavesTheNumberToAHostThatDialsItself)
{
    amy();
    start();
    handle.answer = 1;
    openDetails();
    focus("business2");
    press(OK);
    ASSERT_EQ(handle.offers.size(), 1u);
    EXPECT_EQ(handle.offers[0].number, "2");
    EXPECT_EQ(calls(), Texts{});
    EXPECT_TRUE(inList());
}

TEST_F(ContactFormDialling, StaysWhereChangesAre)
{
    amy();
    start();
    openDetails();
    EXPECT_EQ(state().stateAfterDialing(&context()), &context().m_ViewingList);
    fill("company", "Acme");
    EXPECT_EQ(state().stateAfterDialing(&context()), &state());
    fill("company", "");
    focus("last.name");
    type(" ");
    EXPECT_EQ(state().stateAfterDialing(&context()), &context().m_ViewingList);
}

// --- Digits that are dialled while the form is shown ---

TEST_F(ContactFormDialling, OpensTheDiallerAndKeepsTheFormBelow)
{
    amy();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openDetails();
        fill("company", "Acme");
        dialingStarts("0");
        EXPECT_EQ(top().dialler.edit, "0");
        type("30");
        choose("dialler.dial");
        EXPECT_EQ(calls().back(), "MakeCall 030");
        EXPECT_TRUE(inForm());
        dialingStops();
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(value("company"), "Acme");
        EXPECT_FALSE(context().m_CallRequestInitiated);
    }
}

TEST_F(ContactFormDialling, OffersTheNumberInFocusOffHook)
{
    amy();
    start();
    openDetails();
    focus("mobile");
    dialingStarts("");
    EXPECT_EQ(screen(), "Adams, Amy\n3\n#\n");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 3"});
    EXPECT_TRUE(inList());
}

TEST_F(ContactFormDialling, AsksForANumberOffHookElsewhere)
{
    amy();
    start();
    openDetails();
    focus("company");
    dialingStarts("");
    EXPECT_EQ(screen(), "dialler.Please.Dial\n#\n");
    choose("cancel");
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Form);
    EXPECT_TRUE(inForm());
}

TEST_F(ContactFormDialling, ShowsTheDiallerAfreshOnBack)
{
    amy();
    start();
    openDetails();
    dialingStarts("0");
    type("30");
    ASSERT_EQ(top().dialler.edit, "030");
    press(BACK);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Dialler);
    EXPECT_EQ(top().dialler.line2, "0");
    EXPECT_EQ(top().dialler.edit, "");
    EXPECT_TRUE(inForm());
}

TEST_F(ContactFormDialling, DialsWhenTheDigitsAreComplete)
{
    amy();
    start();
    openDetails();
    InterDigitTimeOutEvent event("0815");
    mode().handleInterDigitTimeout(&event);
    host.settle();
    EXPECT_EQ(calls(), Texts{"MakeCall 0815"});
    EXPECT_TRUE(inList());
}

// --- Who is dialled ---

TEST_F(ContactFormDialling, TellsWhoHasTheNumberInFocus)
{
    amy();
    start();
    openDetails();
    const std::vector<std::pair<std::string, int>> icons{
        {"business1", 2}, {"business2", 3}, {"mobile", 4}, {"private", 1}};
    for (const auto& [label, icon] : icons) {
        focus(label);
        CallPartyIdentifier party;
        EXPECT_TRUE(mode().getDialPartyDetails(party));
        EXPECT_EQ(party.getFirstname(), "Amy");
        EXPECT_EQ(party.getSurname(), "Adams");
        EXPECT_EQ(party.getNumber(), value(label));
        EXPECT_EQ(party.getIcon(), icon);
        EXPECT_EQ(party.getPicture(), "amy.png");
    }
}

TEST_F(ContactFormDialling, TellsTheNameThatIsSavedWithTheNumberThatWasTyped)
{
    amy();
    configuration.clips = {"clips/amy.png", "clips/bob.jpg"};
    start();
    openDetails();
    fill("last.name", "Young");
    fill("first.name", "Yan");
    pick("picture", "bob");
    fill("mobile", "0170");
    CallPartyIdentifier party;
    EXPECT_TRUE(mode().getDialPartyDetails(party));
    EXPECT_EQ(party.getFirstname(), "Amy");
    EXPECT_EQ(party.getSurname(), "Adams");
    EXPECT_EQ(party.getNumber(), "0170");
    EXPECT_EQ(party.getIcon(), 4);
    EXPECT_EQ(party.getPicture(), "amy.png");
}

TEST_F(ContactFormDialling, KnowsNobodyElsewhereOrWithoutANumber)
{
    contact("Adams", "Amy", {{"Office", "1"}});
    start();
    openDetails();
    for (const auto* label : {"form.options", "last.name", "mobile", "private", "default.no", "picture"}) {
        focus(label);
        CallPartyIdentifier party;
        EXPECT_FALSE(mode().getDialPartyDetails(party)) << label;
        EXPECT_EQ(party.getSurname(), "");
    }
}

TEST_F(ContactFormDialling, KnowsNobodyForAnotherNumberThanTheOneInFocus)
{
    amy();
    start();
    openDetails();
    focus("mobile");
    CallPartyIdentifier party;
    party.setNumber("999");
    EXPECT_FALSE(mode().getDialPartyDetails(party));
    party.setNumber("3");
    EXPECT_TRUE(mode().getDialPartyDetails(party));
    EXPECT_EQ(party.getSurname(), "Adams");
}

// --- Whether the telephone has a call ---

TEST_F(ContactFormDialling, IsIdleUnlessACallIsBusy)
{
    start();
    const std::vector<std::pair<std::vector<int>, bool>> snapshots{
        {{}, true},   {{0}, true}, {{1}, true},       {{2}, false},       {{3}, false},
        {{4}, false}, {{5}, true}, {{1, 5, 0}, true}, {{1, 1, 4}, false}, {{3, 1}, false}};
    for (const auto& [states, idle] : snapshots) {
        answerSnapshotWith(states);
        csta.sent.clear();
        EXPECT_EQ(state().phoneInIdleState(&context()), idle);
        EXPECT_EQ(csta.sent, Texts{"Snapshot localDeviceID"});
    }
    EXPECT_FALSE(log.has("snapshot Result IS ERROR"));
}

TEST_F(ContactFormDialling, IsIdleWhenNobodyCanTell)
{
    start();
    csta.answer = refuse;
    EXPECT_TRUE(state().phoneInIdleState(&context()));
    EXPECT_EQ(log.count("snapshot Result IS ERROR", 2), 1);
    answerSnapshotWith({3}, 1);
    EXPECT_TRUE(state().phoneInIdleState(&context()));
    EXPECT_EQ(log.count("snapshot Result IS ERROR", 2), 2);
    csta.answer = [](CSTARequest& request) { request.setResponse(0, nullptr); };
    EXPECT_TRUE(state().phoneInIdleState(&context()));
    EXPECT_EQ(log.count("snapshot Result IS ERROR", 2), 3);
    context().m_pCstaService = nullptr;
    EXPECT_TRUE(state().phoneInIdleState(&context()));
    EXPECT_EQ(log.count("snapshot Result IS ERROR", 2), 3);
}

TEST_F(ContactFormDialling, WorksWithoutAnyOtherService)
{
    for (const auto* service : {"CSTAServiceIfc", "DigitAnalysisServiceIfc", "LocalMgmtIfc"})
        telephone.services.erase(service);
    amy();
    start();
    openDetails();
    focus("mobile");
    press(OK);
    EXPECT_TRUE(inForm());
    EXPECT_EQ(popups(), 0u);
    fill("company", "Acme");
    press(SAVE);
    EXPECT_EQ(screen(), SAVED);
    wait(3000ms);
    EXPECT_TRUE(inList());
    EXPECT_EQ(newest().at("Company"), "Acme");
    EXPECT_EQ(newest().at("Picture"), "amy.png");
}
