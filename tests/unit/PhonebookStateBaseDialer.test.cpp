#include <framework/services/InterDigitTimeOutEvent.h>

#include "PhonebookScreens.h"

namespace {

// A screen that places calls and goes elsewhere afterwards.
class Caller final : public PhonebookStateBaseDialer {
public:
    PhonebookStateBase* stateAfterDialing(EventContext* pContext) override { return &pContext->m_FatalError; }
};

class Dialling : public PhonebookScreens {
protected:
    void TearDown() override { context().m_pCurrentState = &context().m_ViewingList; }

    void startCalling(Bar bar = Bar::SoftKeys)
    {
        start(bar);
        context().m_pCurrentState = &caller;
        log.clear();
    }
    bool call(const std::string& number, const std::string& device = "")
    {
        const bool placed = caller.makeCSTACall(&context(), number, device);
        host.settle();
        return placed;
    }
    void openDialler(const std::string& number, bool withoutDialCommand = false)
    {
        caller.setupPopupDialer(&context(), "Line 1", "Jane Miller", number, withoutDialCommand);
        host.settle();
    }
    PhonebookStateBase* current() { return context().m_pCurrentState; }
    bool diallerIsUp() { return display().shows(context().m_PopupDialer); }

    Caller caller;
};

} // namespace

// --- Calls ---

TEST_F(Dialling, OffersTheNumberToTheHostBeforeItSendsARequest)
{
    startCalling();
    EXPECT_TRUE(call("4711", "12"));
    ASSERT_EQ(handle.offers.size(), 1u);
    EXPECT_EQ(handle.offers[0].number, "4711");
    EXPECT_EQ(handle.offers[0].callingDevice, "12");
    EXPECT_EQ(calls(), Texts{"MakeCall 4711 from 12"});
    EXPECT_EQ(context().m_LastDialledNumber, "4711");
    EXPECT_TRUE(log.has("PhonebookStateBaseDialer::makeCSTACall(): Number to dial is: 4711", 5));
}

TEST_F(Dialling, SendsNothingWhenTheHostDialsItself)
{
    startCalling();
    context().m_LastDialledNumber = "0815";
    handle.answer = 1;
    EXPECT_TRUE(call("112"));
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(context().m_LastDialledNumber, "0815");
}

TEST_F(Dialling, GoesOnForAnyOtherAnswerAndWithoutAHost)
{
    startCalling();
    handle.answer = 2;
    EXPECT_TRUE(call("1"));
    context().m_pPhoneletHandle = nullptr;
    EXPECT_TRUE(call("2"));
    EXPECT_EQ(calls(), (Texts{"MakeCall 1", "MakeCall 2"}));
}

TEST_F(Dialling, SaysForASecondThatThereIsNoNumber)
{
    startCalling();
    EXPECT_FALSE(call(""));
    EXPECT_EQ(screen(), "! dialler.noNumber\n");
    EXPECT_EQ(top().type, 6);
    EXPECT_TRUE(log.has("No number to dial", 5));
    EXPECT_EQ(context().m_pDisplayableBeforePopup, context().m_pTabScreen.get());
    EXPECT_TRUE(handle.offers.empty());
    wait(999ms);
    EXPECT_EQ(popups(), 1u);
    wait(1ms);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(current(), &caller);
}

TEST_F(Dialling, SaysForThreeSecondsThatThereIsNoLine)
{
    startCalling();
    callsFail(0);
    context().m_LastDialledNumber = "0815";
    EXPECT_FALSE(call("4711"));
    EXPECT_EQ(screen(), "! no.line.available\n");
    EXPECT_EQ(context().m_pDisplayableBeforePopup, context().m_pTabScreen.get());
    EXPECT_EQ(context().m_LastDialledNumber, "");
    EXPECT_TRUE(
        log.has("PhonebookStateBaseDialer::makeCSTACall(): ERROR - CSTAMakeCallRequest() returned an Error "
                "Response while attempting to dial 4711",
                5));
    wait(2999ms);
    EXPECT_EQ(popups(), 1u);
    wait(1ms);
    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(
        log.has("PhonebookStateBaseDialer::m_PopupNoLineAvailable.screenEvent - hidden event off popup", 5));
    EXPECT_EQ(context().m_pDisplayableBeforePopup, nullptr);
}

TEST_F(Dialling, AsksForFifteenSecondsForALine)
{
    startCalling();
    callsFail(1);
    EXPECT_FALSE(call("4711"));
    EXPECT_EQ(screen(), "! line.selection.needed\n");
    EXPECT_EQ(context().m_pDisplayableBeforePopup, context().m_pTabScreen.get());
    wait(14999ms);
    EXPECT_EQ(popups(), 1u);
    wait(1ms);
    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(log.has(
        "PhonebookStateBaseDialer::m_PopupLineSelectionNeeded.screenEvent - hidden event off popup", 5));
    EXPECT_EQ(context().m_pDisplayableBeforePopup, nullptr);
}

TEST_F(Dialling, KeepsTheNumberThatWantsALine)
{
    startCalling();
    callsFail(1);
    call("4711");
    EXPECT_EQ(caller.interDigitTimeoutEvent(&context(), nullptr), &caller);
    EXPECT_EQ(calls(), (Texts{"MakeCall 4711", "MakeCall 4711"}));
}

TEST_F(Dialling, ShowsNothingForOtherFailures)
{
    startCalling();
    context().m_LastDialledNumber = "0815";
    callsFail(2);
    EXPECT_FALSE(call("4711"));
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(context().m_LastDialledNumber, "");
    EXPECT_EQ(context().m_pDisplayableBeforePopup, nullptr);

    csta.answer = [](CSTARequest& request) { request.setResponse(1, nullptr); };
    EXPECT_FALSE(call("4711"));
    csta.answer = [](CSTARequest& request) {
        request.setResponse(1, std::make_unique<CSTAMakeCallResponse>("call"));
    };
    EXPECT_FALSE(call("4711"));
    EXPECT_EQ(popups(), 0u);
}

TEST_F(Dialling, FailsSilentlyWithoutCallControl)
{
    startCalling();
    context().m_pCstaService = nullptr;
    EXPECT_FALSE(call("4711"));
    EXPECT_FALSE(caller.makeCSTADirectedPickupCall(&context(), "4711", ""));
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(Dialling, DoesNotRememberANotificationThatIsShownAgain)
{
    startCalling();
    callsFail(0);
    call("1");
    call("2");
    EXPECT_EQ(context().m_pDisplayableBeforePopup, context().m_pTabScreen.get());
    EXPECT_EQ(popups(), 1u);
}

TEST_F(Dialling, PicksUpWithoutLookingAtTheResponse)
{
    startCalling();
    csta.pickupResult = 1;
    EXPECT_TRUE(caller.makeCSTADirectedPickupCall(&context(), "4711", ""));
    EXPECT_TRUE(caller.makeCSTADirectedPickupCall(&context(), "4711", "12"));
    EXPECT_EQ(calls(), (Texts{"DirectedPickup 4711", "DirectedPickup 4711 by 12"}));
    EXPECT_TRUE(
        log.has("PhonebookStateBaseDialer::makeCSTADirectedPickupCall(): Number to dial is: 4711", 5));
    EXPECT_TRUE(handle.offers.empty());
}

TEST_F(Dialling, PicksUpNothingWithoutANumber)
{
    startCalling();
    EXPECT_FALSE(caller.makeCSTADirectedPickupCall(&context(), "", ""));
    host.settle();
    EXPECT_EQ(screen(), "! dialler.noNumber\n");
    EXPECT_TRUE(log.has("No number to dial", 5));
    EXPECT_EQ(calls(), Texts{});
}

// --- The dialler ---

TEST_F(Dialling, OpensTheDiallerWithANumber)
{
    startCalling();
    openDialler("4711");
    EXPECT_EQ(screen(), "Line 1 Jane Miller\n4711\n#\n");
    EXPECT_TRUE(top().dialler.stimulusText);
    EXPECT_TRUE(top().dialler.scrolls);
    EXPECT_EQ(commands(), (Texts{"dialler.dial", "cancel", "edit.number"}));
    EXPECT_EQ(context().m_pDisplayableBeforePopup, context().m_pTabScreen.get());
}

TEST_F(Dialling, StartsAfreshWhenItIsSetUpWhileItIsUp)
{
    startCalling();
    openDialler("4711");
    choose("edit.number");
    type("5");
    openDialler("0815");
    EXPECT_EQ(screen(), "Line 1 Jane Miller\n0815\n#\n");
    EXPECT_FALSE(top().dialler.editMode);
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 0815"});
    openDialler("");
    EXPECT_EQ(screen(), "Line 1 dialler.Please.Dial\n#\n");
    EXPECT_EQ(context().m_pDisplayableBeforePopup, context().m_pTabScreen.get());
}

TEST_F(Dialling, ShowsTheDiallersCommandsAsRowsWithoutSoftKeys)
{
    startCalling(Bar::None);
    openDialler("4711");
    EXPECT_EQ(rows(), (Texts{"dialler.dial", "cancel", "edit.number"}));
    press(OK);
    EXPECT_EQ(calls(), Texts{"MakeCall 4711"});
}

TEST_F(Dialling, AsksForANumberWithoutOne)
{
    startCalling();
    openDialler("");
    EXPECT_EQ(screen(), "Line 1 dialler.Please.Dial\n#\n");
    EXPECT_EQ(commands(), Texts{"cancel"});
    EXPECT_EQ(context().m_DialerCommands[DIALER_DIAL], nullptr);

    type("4");
    EXPECT_EQ(commands(), (Texts{"dialler.dial", "cancel"}));
}

TEST_F(Dialling, OffersTheRedialNumber)
{
    startCalling();
    context().m_RedialNumber = "0815";
    openDialler("");
    EXPECT_EQ(commands(), (Texts{"dialler.redial(0815)", "cancel", "edit.number"}));
    choose("dialler.redial(0815)");
    EXPECT_EQ(calls(), Texts{"MakeCall 0815"});
}

TEST_F(Dialling, OffersNoRedialWithoutADialCommand)
{
    startCalling();
    context().m_RedialNumber = "0815";
    openDialler("", true);
    EXPECT_EQ(commands(), Texts{"cancel"});
}

TEST_F(Dialling, ReplacesRedialByDialWithTheFirstDigit)
{
    startCalling();
    context().m_RedialNumber = "0815";
    openDialler("");
    type("4");
    EXPECT_EQ(commands()[0], "dialler.dial");
    type("2");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 42"});
}

TEST_F(Dialling, TakesTheDialCommandAwayWithTheLastDigit)
{
    startCalling();
    openDialler("");
    type("4");
    press(Kind::Clear);
    EXPECT_EQ(commands(), Texts{"cancel"});
    EXPECT_EQ(context().m_DialerCommands[DIALER_DIAL], nullptr);
    type("5");
    EXPECT_EQ(commands(), (Texts{"dialler.dial", "cancel"}));
    EXPECT_EQ(digits.dialStrings, (std::vector<std::pair<std::string, int>>{{"4", 0}, {"", 0}, {"5", 0}}));
}

TEST_F(Dialling, CannotScrollTheDiallerOnTdmTelephones)
{
    startCalling();
    for (const int variant : {10, 11}) {
        HardwareVersion::setHWVariant(variant);
        log.clear();
        openDialler("4711");
        EXPECT_FALSE(top().dialler.scrolls);
        EXPECT_EQ(log.count("TDM ZD_HI - set no scroll on Popup dialler", 5), 1);
    }
}

TEST_F(Dialling, DialsTheNumberOfTheDialler)
{
    startCalling();
    openDialler("4711");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 4711"});
    EXPECT_EQ(digits.dialStrings, (std::vector<std::pair<std::string, int>>{{"4711", 1}}));
    EXPECT_TRUE(context().m_CallRequestInitiated);
    EXPECT_EQ(current(), &context().m_FatalError);
}

TEST_F(Dialling, DialsWhatWasTypedInstead)
{
    startCalling();
    openDialler("4711");
    type("12");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 12"});
    EXPECT_EQ(digits.dialStrings, (std::vector<std::pair<std::string, int>>{{"1", 0}, {"12", 0}, {"12", 1}}));
}

TEST_F(Dialling, DialsWithoutADigitAnalysis)
{
    startCalling();
    context().m_pDigitAnalysisService = nullptr;
    openDialler("");
    type("12");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 12"});
}

TEST_F(Dialling, RefusesASecondCallWithAnErrorLine)
{
    startCalling();
    context().setCallRequestInitiated(true);
    openDialler("4711");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{});
    EXPECT_TRUE(log.has("screenEvent received when call already initiated - ignore", 2));
    EXPECT_EQ(digits.dialStrings, (std::vector<std::pair<std::string, int>>{{"4711", 1}}));
    EXPECT_EQ(current(), &caller);
    EXPECT_TRUE(diallerIsUp());
    EXPECT_EQ(popups(), 1u);
}

TEST_F(Dialling, StaysAndTriesAgainAfterARefusedCall)
{
    startCalling();
    callsFail(0);
    openDialler("4711");
    choose("dialler.dial");
    EXPECT_EQ(current(), &caller);
    EXPECT_FALSE(context().m_CallRequestInitiated);
    EXPECT_EQ(screen(), "! no.line.available\n");
    press(OK);
    EXPECT_EQ(screen(), "Line 1 Jane Miller\n4711\n#\n");
    csta.makeCallResult = 0;
    choose("dialler.dial");
    EXPECT_EQ(calls(), (Texts{"MakeCall 4711", "MakeCall 4711"}));
}

TEST_F(Dialling, ClosesTheDiallerWithCancel)
{
    startCalling();
    display().setCurrent(&context().m_ContextMenu);
    openDialler("4711");
    EXPECT_EQ(context().m_pDisplayableBeforePopup, &context().m_ContextMenu);
    choose("cancel");
    EXPECT_FALSE(diallerIsUp());
    EXPECT_EQ(display().getCurrent(), &context().m_ContextMenu);
    EXPECT_EQ(context().m_pDisplayableBeforePopup, nullptr);
    EXPECT_EQ(current(), &caller);
}

TEST_F(Dialling, EditsTheNumber)
{
    startCalling();
    openDialler("4711");
    choose("edit.number");
    EXPECT_TRUE(top().dialler.editMode);
    EXPECT_EQ(top().dialler.edit, "4711");
    type("5");
    choose("dialler.dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 47115"});
}

TEST_F(Dialling, UndoesEditingWithBack)
{
    startCalling();
    openDialler("4711");
    choose("edit.number");
    type("5");
    press(BACK);
    EXPECT_EQ(screen(), "Line 1 Jane Miller\n4711\n#\n");
    EXPECT_FALSE(top().dialler.editMode);
    EXPECT_EQ(commands(), (Texts{"dialler.dial", "cancel", "edit.number"}));
    EXPECT_EQ(context().m_pDisplayableBeforePopup, context().m_pTabScreen.get());
    EXPECT_EQ(current(), &caller);
    choose("cancel");
    EXPECT_EQ(popups(), 0u);
}

TEST_F(Dialling, AsksForANumberAgainAfterBack)
{
    startCalling();
    context().m_RedialNumber = "0815";
    openDialler("");
    type("4");
    press(BACK);
    EXPECT_EQ(screen(), "Line 1 dialler.Please.Dial\n#\n");
    EXPECT_EQ(commands()[0], "dialler.redial(0815)");
}

TEST_F(Dialling, HasTheDialCommandAfterBackEvenIfItHadNone)
{
    startCalling();
    openDialler("4711", true);
    EXPECT_EQ(commands(), (Texts{"cancel", "edit.number"}));
    press(BACK);
    EXPECT_EQ(commands(), (Texts{"dialler.dial", "cancel", "edit.number"}));
}

TEST_F(Dialling, StaysOnBackFromElsewhere)
{
    startCalling();
    EXPECT_EQ(caller.backEvent(&context(), nullptr, context().m_pDisplayList.get()), &caller);
    EXPECT_EQ(caller.backEvent(&context(), nullptr, nullptr), &caller);
    EXPECT_FALSE(diallerIsUp());
}

TEST_F(Dialling, StaysOnWhatItDoesNotKnow)
{
    startCalling();
    openDialler("");
    EXPECT_EQ(caller.screenEvent(&context(), nullptr, &context().m_PopupDialer), &caller);
    EXPECT_EQ(caller.screenEvent(&context(), nullptr, nullptr), &caller);
    EXPECT_EQ(caller.screenEvent(&context(), context().m_DialerCommands[DIALER_CANCEL].get(),
                                 &context().m_PopupConfirm),
              &caller);
    EXPECT_TRUE(diallerIsUp());
}

// --- What comes back after the dialler ---

TEST_F(Dialling, CanCloseTheDiallerAfterARefusedCall)
{
    startCalling();
    callsFail(0);
    openDialler("4711");
    choose("dialler.dial");
    EXPECT_EQ(context().m_pDisplayableBeforePopup, context().m_pTabScreen.get());
    press(OK); // closes the notification
    choose("cancel");
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
}

TEST_F(Dialling, KeepsANewerPopupOverTheDiallerThatGoes)
{
    startCalling();
    openDialler("4711");
    display().setCurrent(&context().m_PopupConfirm);
    caller.dismissPopupDialer(&context());
    EXPECT_EQ(display().getCurrent(), &context().m_PopupConfirm);
    EXPECT_FALSE(diallerIsUp());
    EXPECT_EQ(context().m_pDisplayableBeforePopup, nullptr);
}

TEST_F(Dialling, BringsNothingBackWhenNoDiallerWasUp)
{
    startCalling();
    callsFail(0);
    call("4711");
    DisplayAPI::SearchList form;
    display().setCurrent(&form);
    caller.dismissPopupDialer(&context());
    EXPECT_EQ(display().getCurrent(), &form);
}

TEST_F(Dialling, DoesNotBringBackANotificationThatWent)
{
    startCalling();
    call("");
    openDialler("4711");
    EXPECT_EQ(context().m_pDisplayableBeforePopup, &context().m_PopupNotification);
    wait(1000ms);
    choose("cancel");
    EXPECT_EQ(popups(), 0u);
}

TEST_F(Dialling, ToleratesADisplayThatIsNotThere)
{
    startCalling();
    openDialler("4711");
    auto* pDisplay = std::exchange(context().m_pDisplay, nullptr);
    caller.dismissPopupDialer(&context());
    EXPECT_FALSE(diallerIsUp());
    context().m_pDisplay = pDisplay;
}

TEST_F(Dialling, ClosesAllPopupsOfDialling)
{
    startCalling();
    openDialler("4711");
    display().setCurrent(&context().m_PopupLineSelectionNeeded);
    display().setCurrent(&context().m_PopupNoLineAvailable);
    caller.dismissDialingPopups(&context());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(context().m_pDisplayableBeforePopup, nullptr);
    EXPECT_FALSE(log.has("PhonebookStateBaseDialer::screenEvent()")); // its own dismissal reports nothing
}

// --- Complete digits ---

TEST_F(Dialling, DialsWhenNoFurtherDigitComes)
{
    startCalling();
    openDialler("4711");
    InterDigitTimeOutEvent complete("+49301");
    EXPECT_EQ(caller.interDigitTimeoutEvent(&context(), &complete), &context().m_FatalError);
    EXPECT_FALSE(diallerIsUp());
    EXPECT_EQ(calls(), Texts{"MakeCall +49301"});
    EXPECT_TRUE(log.has("PhonebookStateBaseDialer::interDigitTimeoutEvent()", 5));
}

TEST_F(Dialling, NeitherAsksNorSetsTheFlagForCompleteDigits)
{
    startCalling();
    InterDigitTimeOutEvent complete("+49301");
    caller.interDigitTimeoutEvent(&context(), &complete);
    EXPECT_FALSE(context().m_CallRequestInitiated);
    context().setCallRequestInitiated(true);
    caller.interDigitTimeoutEvent(&context(), &complete);
    EXPECT_EQ(calls().size(), 2u);
    EXPECT_TRUE(context().m_CallRequestInitiated);
}

TEST_F(Dialling, StaysWhenCompleteDigitsAreRefused)
{
    startCalling();
    callsFail(2);
    InterDigitTimeOutEvent complete("+49301");
    EXPECT_EQ(caller.interDigitTimeoutEvent(&context(), &complete), &caller);
}

// --- The call context provider ---

TEST_F(Dialling, RegistersTheModeWhileThePhonebookIsVisible)
{
    startCalling();
    digits.provider = nullptr;
    caller.setCallContextProvider(&context());
    EXPECT_EQ(digits.provider, &mode());
    EXPECT_EQ(traces("./src/PhonebookStateBaseDialer"),
              Texts{"PhonebookStateBaseDialer::setCallContextProvider()"});
}

TEST_F(Dialling, DoesNotRegisterOutOfSight)
{
    load();
    log.clear();
    const int before = digits.registrations;
    caller.setCallContextProvider(&context());
    EXPECT_EQ(digits.registrations, before);
    EXPECT_TRUE(log.has("don't setCallContextProvider - Phonebook not visible", 5));
}

TEST_F(Dialling, DoesNotRegisterWithoutAContextOrAPhonelet)
{
    startCalling();
    const int before = digits.registrations;
    caller.setCallContextProvider(nullptr);
    auto* pPhonelet = std::exchange(context().m_pPhonelet, nullptr);
    caller.setCallContextProvider(&context());
    context().m_pPhonelet = pPhonelet;
    EXPECT_EQ(digits.registrations, before);
    EXPECT_EQ(log.count("PhonebookStateBaseDialer::setCallContextProvider()", 5), 2);
}

TEST_F(Dialling, NamesAFailedRegistration)
{
    startCalling();
    digits.registers = false;
    caller.setCallContextProvider(&context());
    EXPECT_TRUE(log.has("setCallContextProvider() - Failed", 2));
}

TEST_F(Dialling, UnregistersInSightOrOut)
{
    startCalling();
    phonelet().hide();
    digits.provider = &mode();
    log.clear();
    caller.clearCallContextProvider(&context());
    EXPECT_EQ(digits.provider, nullptr);
    EXPECT_EQ(traces("./src/PhonebookStateBaseDialer"), Texts{"clearCallContextProvider()"});

    digits.clears = false;
    caller.clearCallContextProvider(&context());
    EXPECT_TRUE(log.has("clearCallContextProvider() - Failed to clear  call context provider", 5));
}

TEST_F(Dialling, NamesAMissingDigitAnalysis)
{
    startCalling();
    context().m_pDigitAnalysisService = nullptr;
    caller.setCallContextProvider(&context());
    caller.clearCallContextProvider(&context());
    EXPECT_TRUE(log.has("setCallContextProvider() - pEventContext->m_pDigitAnalysisService is NULL!!!", 2));
    EXPECT_TRUE(log.has("clearCallContextProvider() - pEventContext->m_pDigitAnalysisService is NULL!!!", 2));
}
