#include <framework/csta/CSTAEvents.h>

#include "ModeScreens.h"

namespace {

using namespace communicationsServiceTexts;

class PbxTab : public ModeScreens {
protected:
    static const std::string& PHONEBOOK() { return content_feature_name_pbxphonebook; }

    void systemStatus(const std::string& status, const FeatureData& feature = {})
    {
        CSTASystemStatusEvent event(status, feature);
        phonelet().deliverEvent(&event);
        host.settle();
    }
    void availability(const std::string& text) { systemStatus("", {PHONEBOOK(), "", "", "", text, ""}); }
    void displayUpdated(const std::string& id, const std::string& row, const std::string& text)
    {
        CSTADisplayUpdatedEvent event(id, row, text);
        phonelet().deliverEvent(&event);
        host.settle();
    }
    void line(int row, const std::string& text)
    {
        displayUpdated(content_displayIdDisplay, std::to_string(row), text);
    }
    Texts window() const { return host.frame->systemWindow; }
    int lines() { return mode().getCurrentNumberOfStimulusDisplayLines(); }
    // Lines 0 to 5.
    Texts contents()
    {
        Texts texts;
        for (int row = 0; row < 6; ++row)
            texts.push_back(mode().getContentsOfDisplay(row));
        return texts;
    }
    // As after dialling, when the PBX's display is mirrored.
    void startDialling()
    {
        startNoting();
        mode().handleDialingStarted("1");
        told.clear();
        log.clear();
    }
    void answer(int code, std::unique_ptr<CSTAResponse> response)
    {
        csta.answer = [code, shared = std::make_shared<std::unique_ptr<CSTAResponse>>(std::move(response))](
                          CSTARequest& request) { request.setResponse(code, std::move(*shared)); };
    }
    void answerStatus(const std::string& status, const std::string& available)
    {
        answer(0, std::make_unique<CSTARequestSystemStatusResponse>(
                      status, FeatureData{PHONEBOOK(), "", "", "", available, ""}));
    }
    bool queries() { return mode().processRequestSystemStatusRequest(PHONEBOOK(), content_feature_query); }
    bool infoPopupShown() const { return popups() == 1 && top().text == "StimPhonelet.Error"; }
    void refuseHandOver()
    {
        offerPbxPhonebook();
        startNoting();
        selectTab(PBX_TAB);
        csta.featureResult = 1;
        log.clear();
        mode().activate("CorvanStimulus");
        host.settle();
    }
};

TEST_F(PbxTab, AsksThePbxOnceAtStart)
{
    start();

    EXPECT_EQ(csta.sent.front(), "RequestSystemStatus " + PHONEBOOK() + " " + content_feature_query);
    EXPECT_EQ(std::count_if(csta.sent.begin(), csta.sent.end(),
                            [](const auto& sent) { return sent.starts_with("RequestSystemStatus"); }),
              1);
    EXPECT_EQ(mode().getPBXTabIndex(), -1);
}

TEST_F(PbxTab, StandsBehindTheLdapTab)
{
    offerPbxPhonebook();
    start();

    EXPECT_EQ(host.frame->tabs, Texts({"office", "ldap", "PBX.Phonebook"}));
    EXPECT_EQ(mode().getPBXTabIndex(), 2);
    EXPECT_EQ(tabs().getDisplayable(2), nullptr);
    EXPECT_TRUE(log.has("addPBXPhonebookTab() - Setting PBX Tab to pos 2 for non-TDM variants", 5));
    EXPECT_EQ(currentTab(), OFFICE_TAB);
}

TEST_F(PbxTab, StandsBehindTheOfficeTabOnTdmVariants)
{
    for (const int variant : {10, 11}) {
        HardwareVersion::setHWVariant(variant);
        offerPbxPhonebook();
        log.clear();
        load();

        EXPECT_EQ(tabs().titles(), Texts({"office", "PBX.Phonebook"}));
        EXPECT_EQ(mode().getPBXTabIndex(), 1);
        EXPECT_TRUE(log.has("addPBXPhonebookTab() - Setting PBX Tab to pos 1 for non-TDM variants", 5));
        phonelet().stopPhonelet();
    }
}

TEST_F(PbxTab, IsAddedOnce)
{
    startNoting();
    EXPECT_EQ(mode().addPBXPhonebookTab(), 2);
    EXPECT_EQ(mode().addPBXPhonebookTab(), -1);

    EXPECT_EQ(tabs().numberOfTabs(), 3);
    EXPECT_EQ(mode().getPBXTabIndex(), 2);
}

TEST_F(PbxTab, IsRemovedEvenWhenItIsNotThere)
{
    startNoting();
    mode().removePBXPhonebookTab();
    EXPECT_EQ(tabs().numberOfTabs(), 2);
    mode().addPBXPhonebookTab();
    mode().removePBXPhonebookTab();

    EXPECT_EQ(tabs().numberOfTabs(), 2);
    EXPECT_EQ(mode().getPBXTabIndex(), -1);
}

TEST_F(PbxTab, ComesAndGoesAsThePbxSays)
{
    startNoting();
    for (int time = 0; time < 3; ++time) {
        availability(content_feature_available);
        EXPECT_EQ(mode().getPBXTabIndex(), 2);
        availability(content_feature_unavailable);
        EXPECT_EQ(mode().getPBXTabIndex(), -1);
    }
    EXPECT_EQ(log.count("handleCSTASystemStatusEvent() - PBX Phonebook available", 5), 3);
    EXPECT_EQ(log.count("handleCSTASystemStatusEvent() - PBX Phonebook NOT available", 5), 3);
}

TEST_F(PbxTab, StaysWhereItIsWhenItIsAvailableAgain)
{
    offerPbxPhonebook();
    startNoting();
    selectTab(PBX_TAB);
    availability(content_feature_available);

    EXPECT_EQ(tabs().numberOfTabs(), 3);
    EXPECT_EQ(currentTab(), PBX_TAB);
    EXPECT_FALSE(log.has("addPBXPhonebookTab() - Setting PBX Tab to pos 2 for non-TDM variants"));
}

TEST_F(PbxTab, IgnoresOtherFeaturesAndUnknownAvailability)
{
    startNoting();
    systemStatus("", {"callPickup", "", "", "", content_feature_available, ""});
    availability("perhaps");
    EXPECT_EQ(mode().getPBXTabIndex(), -1);

    mode().addPBXPhonebookTab();
    systemStatus("", {"callPickup", "", "", "", content_feature_unavailable, ""});
    availability("perhaps");
    EXPECT_EQ(mode().getPBXTabIndex(), 2);
}

TEST_F(PbxTab, LogsWhatThePbxSaysOfAFeature)
{
    startNoting();
    systemStatus("", {"name", "act", "deact", "ON", "maybe", "7"});

    EXPECT_TRUE(log.has("PhonebookPhonelet::deliverEvent()", 5));
    EXPECT_EQ(modeLines(4), Texts({"handleCSTASystemStatusEvent()"}));
    EXPECT_TRUE(log.has("handleCSTASystemStatusEvent() - EVENT\n"
                        "          ********** FeatureData **********\n"
                        "          featureName  = name\n"
                        "          Action       = act\n"
                        "          DeActivation = deact\n"
                        "          Status       = ON\n"
                        "          Availability = maybe\n"
                        "          ButtonID     = 7\n",
                        5));
}

TEST_F(PbxTab, GoesWhenTheSystemIsDisabled)
{
    for (const auto& status : {systemState_disabled, systemState_partiallyDisabled}) {
        offerPbxPhonebook();
        load();
        log.clear();
        systemStatus(status);
        EXPECT_EQ(mode().getPBXTabIndex(), -1) << status;
        EXPECT_TRUE(log.has(
            "handleCSTASystemStatusEvent() - SystemState DISABLED -> PBX Phonebook NOT available", 5));
        EXPECT_TRUE(log.has("systemWindowDisplayClear()", 5));
        phonelet().stopPhonelet();
    }
}

TEST_F(PbxTab, StaysWithAnyOtherSystemStatus)
{
    offerPbxPhonebook();
    startNoting();
    systemStatus(systemState_enabled, {PHONEBOOK(), "", "", "", content_feature_unavailable, ""});
    systemStatus("overloaded", {PHONEBOOK(), "", "", "", content_feature_unavailable, ""});
    EXPECT_EQ(mode().getPBXTabIndex(), 2);

    mode().removePBXPhonebookTab();
    systemStatus(systemState_enabled, {PHONEBOOK(), "", "", "", content_feature_available, ""});
    EXPECT_EQ(mode().getPBXTabIndex(), -1);
}

TEST_F(PbxTab, LeavesTheUserOnTheOfficeTabWhenItGoes)
{
    offerPbxPhonebook();
    startNoting();
    selectTab(PBX_TAB);
    availability(content_feature_unavailable);

    EXPECT_EQ(currentTab(), OFFICE_TAB);
    EXPECT_TRUE(told.empty());
    EXPECT_EQ(mode().getCurrentState(), &local);
}

TEST_F(PbxTab, ForgetsTheChildWhenTheFeatureIsSwitchedOff)
{
    offerPbxPhonebook();
    startNoting();
    phonelet().childGainedFocus("CorvanStimulus");
    systemStatus("", {"callPickup", "", "", "OFF", "", ""});
    EXPECT_TRUE(phonelet().getTreatShowAsTab());
    systemStatus("", {PHONEBOOK(), "", "", "ON", "", ""});
    EXPECT_TRUE(phonelet().getTreatShowAsTab());
    systemStatus(systemState_enabled, {PHONEBOOK(), "", "", "OFF", "", ""});
    EXPECT_FALSE(phonelet().getTreatShowAsTab());
}

TEST_F(PbxTab, TakesEveryRefusalOfThePbxForNo)
{
    startNoting();
    answer(5, nullptr);
    EXPECT_FALSE(queries());
    EXPECT_TRUE(log.has("processRequestSystemStatusRequest() - no successful response code", 2));

    answer(0, nullptr);
    EXPECT_FALSE(queries());
    answer(0, std::make_unique<CSTASystemStatusResponse>());
    EXPECT_FALSE(queries());
    EXPECT_EQ(log.count("processRequestSystemStatusRequest() - invalid CSTARequestSystemStatusResponse", 2),
              2);

    answerStatus(systemState_disabled, content_feature_available);
    EXPECT_FALSE(queries());
    EXPECT_TRUE(log.has("processRequestSystemStatusRequest() - System status is NOT enabled", 2));

    answerStatus(systemState_enabled, content_feature_unavailable);
    EXPECT_FALSE(queries());
}

TEST_F(PbxTab, TakesAnEmptySystemStatusForEnabled)
{
    startNoting();
    answerStatus("", content_feature_available);
    EXPECT_TRUE(queries());
    answerStatus(systemState_enabled, content_feature_available);
    EXPECT_TRUE(queries());
    EXPECT_TRUE(log.texts(2).empty());
}

TEST_F(PbxTab, LooksAtTheAvailabilityForAQueryOnly)
{
    startNoting();
    answerStatus("", content_feature_unavailable);
    EXPECT_TRUE(mode().activateMessaging(PHONEBOOK()));
    EXPECT_EQ(csta.sent.back(), "RequestSystemStatus " + PHONEBOOK() + " " + content_localfeature_activate);
}

TEST_F(PbxTab, HasNoPbxWithoutCallControl)
{
    telephone.services["CSTAServiceIfc"] = nullptr;
    start();

    EXPECT_EQ(mode().getPBXTabIndex(), -1);
    EXPECT_TRUE(log.has("processRequestSystemStatusRequest() - no successful response code", 2));
}

TEST_F(PbxTab, SendsOnlyTheFeatureAndTheAction)
{
    startNoting();
    FeatureData sent;
    csta.answer = [&](CSTARequest& request) {
        if (const auto* status = dynamic_cast<CSTARequestSystemStatusRequest*>(&request))
            sent = status->getFeatureData();
        request.setResponse(1, nullptr);
    };
    queries();

    EXPECT_EQ(sent.featureName, PHONEBOOK());
    EXPECT_EQ(sent.Action, content_feature_query);
    EXPECT_EQ(sent.DeActivation + sent.Status + sent.Availability + sent.ButtonID, "");
}

TEST_F(PbxTab, HandsOverToTheStimulusPhonelet)
{
    startNoting();
    mode().activate("CorvanStimulus");

    ASSERT_EQ(handle.pushes.size(), 1u);
    EXPECT_EQ(handle.pushes[0].from, "phonebook");
    EXPECT_EQ(handle.pushes[0].phonelet, "CorvanStimulus");
    EXPECT_EQ(handle.pushes[0].mode, 0);
    EXPECT_TRUE(log.has("activate()", 5));
}

TEST_F(PbxTab, DoesNotHandOverWithoutAHost)
{
    startNoting();
    context().m_pPhoneletHandle = nullptr;
    const auto sent = csta.sent.size();
    mode().activate("CorvanStimulus");

    EXPECT_EQ(csta.sent.size(), sent);
    EXPECT_TRUE(handle.pushes.empty());
    EXPECT_TRUE(log.texts(2).empty());
}

TEST_F(PbxTab, SaysForFiveSecondsThatItCannotHandOver)
{
    refuseHandOver();
    EXPECT_TRUE(handle.pushes.empty());
    EXPECT_TRUE(log.has("activate() - failed", 2));
    EXPECT_TRUE(infoPopupShown());
    EXPECT_EQ(top().type, 3);
    host.advance(4999ms);
    EXPECT_TRUE(infoPopupShown());
    log.clear();
    host.advance(1ms);

    EXPECT_EQ(popups(), 0u);
    EXPECT_TRUE(log.has("PhonebookMode::deleteInfoPopup()", 5));
    EXPECT_TRUE(told.empty());
}

TEST_F(PbxTab, SaysItAgainForANewAttempt)
{
    refuseHandOver();
    const auto first = top().id;
    mode().activate("CorvanStimulus");
    host.settle();

    EXPECT_TRUE(infoPopupShown());
    EXPECT_NE(top().id, first);
}

TEST_F(PbxTab, IsLeftToTheOtherTabsForAScreenCommand)
{
    refuseHandOver();
    selectTab(OFFICE_TAB);
    command(DisplayAPI::Command::SCREEN);

    EXPECT_EQ(told, Texts({"local screen"}));
    EXPECT_TRUE(infoPopupShown());
}

TEST_F(PbxTab, IgnoresMenusAndUnknownDisplays)
{
    startDialling();
    displayUpdated(content_displayIdMenu, "0", "menu");
    EXPECT_TRUE(log.has("handleCSTADisplayUpdatedEvent()", 4));
    EXPECT_TRUE(log.has("handleDisplayUpdatedEvent() - DisplayID = Menu -> ignore", 5));
    displayUpdated("other", "0", "text");
    EXPECT_TRUE(log.has("handleDisplayUpdatedEvent() - invalid DisplayID", 3));

    EXPECT_EQ(lines(), 0);
    EXPECT_TRUE(window().empty());
}

TEST_F(PbxTab, IgnoresTheDisplayBeforeAnythingWasDialled)
{
    startNoting();
    line(0, "Welcome");

    EXPECT_EQ(lines(), 0);
    EXPECT_TRUE(window().empty());
    EXPECT_FALSE(log.has("handleDisplayUpdatedEvent() - DisplayID = Display"));
}

TEST_F(PbxTab, MirrorsTheDisplayOnceDiallingStopped)
{
    startNoting();
    mode().handleDialingStopped();
    line(0, "Hello");

    EXPECT_EQ(window(), Texts({"Hello"}));
    EXPECT_TRUE(log.has("handleDisplayUpdatedEvent() - DisplayID = Display", 5));
    EXPECT_TRUE(log.has("stim. line 0:<Hello>", 5));
}

TEST_F(PbxTab, DoesNotCountDiallingThatNoStateSaw)
{
    offerPbxPhonebook();
    startNoting();
    selectTab(PBX_TAB);
    mode().handleDialingStarted("1");
    line(0, "Hello");

    EXPECT_EQ(lines(), 0);
}

TEST_F(PbxTab, ForgetsDiallingWhenItIsShownWithoutLines)
{
    startDialling();
    mode().show();
    line(0, "Hello");
    EXPECT_EQ(lines(), 0);
}

TEST_F(PbxTab, RemembersDiallingWhileLinesAreHeld)
{
    startDialling();
    line(0, "Hello");
    mode().show();
    systemStatus(systemState_disabled);
    line(0, "Again");

    EXPECT_EQ(window(), Texts({"Again"}));
}

TEST_F(PbxTab, KeepsMirroringWhileLinesAreHeld)
{
    startNoting();
    mode().setCurrentNumberOfStimulusDisplayLines(1);
    line(1, "Second");

    EXPECT_EQ(window(), Texts({"", "Second"}));
}

TEST_F(PbxTab, GrowsToTheLastLineAndNeverShrinksByText)
{
    startDialling();
    line(1, "second");
    EXPECT_EQ(window(), Texts({"", "second"}));
    line(4, "fifth");
    EXPECT_EQ(window(), Texts({"", "second", "", "", "fifth"}));
    line(0, "first");
    EXPECT_EQ(window(), Texts({"first", "second", "", "", "fifth"}));
    EXPECT_EQ(lines(), 5);
}

TEST_F(PbxTab, KeepsTheTextOfLinesThatComeBack)
{
    startDialling();
    for (int row = 0; row < 5; ++row)
        mode().setContentsOfDisplay(row, "old " + std::to_string(row));
    mode().setCurrentNumberOfStimulusDisplayLines(2);
    line(4, "new");

    EXPECT_EQ(window(), Texts({"old 0", "old 1", "old 2", "old 3", "new"}));
}

TEST_F(PbxTab, IsCutAtAnEmptyLine)
{
    startDialling();
    for (int row = 0; row < 5; ++row)
        line(row, "line " + std::to_string(row));
    line(2, "");

    EXPECT_EQ(window(), Texts({"line 0", "line 1"}));
    EXPECT_EQ(lines(), 2);
    EXPECT_EQ(contents(), Texts({"line 0", "line 1", "", "", "", ""}));
}

TEST_F(PbxTab, HasNoLinesAfterAnEmptyFirstOne)
{
    startDialling();
    line(0, "Hello");
    line(0, "");

    EXPECT_TRUE(window().empty());
    EXPECT_EQ(lines(), 0);
}

TEST_F(PbxTab, ReachesDownToAnEmptyLineBelowIt)
{
    startDialling();
    line(3, "");

    EXPECT_EQ(lines(), 3);
    EXPECT_EQ(window(), Texts({"", "", ""}));
}

TEST_F(PbxTab, CountsLinesThatItDoesNotKeep)
{
    startDialling();
    line(7, "far");

    EXPECT_EQ(lines(), 8);
    EXPECT_EQ(window(), Texts(8));
    EXPECT_TRUE(log.has("setContentsOfDisplay() - line = 7 invalid", 2));
    EXPECT_EQ(log.count("getContentsOfDisplay() - line = 6 invalid", 2), 1);
    EXPECT_EQ(log.count("getContentsOfDisplay() - line = 7 invalid", 2), 1);
    EXPECT_TRUE(log.has("stim. line 7:<>", 5));
}

TEST_F(PbxTab, CountsUpToAHundredLines)
{
    startDialling();
    line(99, "far");

    EXPECT_EQ(lines(), 100);
}

TEST_F(PbxTab, IgnoresRowsThatNoDisplayHas)
{
    startDialling();
    line(0, "Hello");
    for (const char* row : {"-1", "-2147483648", "2147483647", "100"}) {
        displayUpdated(content_displayIdDisplay, row, "text");
        displayUpdated(content_displayIdDisplay, row, "");
        EXPECT_TRUE(log.has(std::string("setContentsOfDisplay() - line = ") + row + " invalid", 2));
    }
    EXPECT_EQ(window(), Texts({"Hello"}));
}

TEST_F(PbxTab, TakesARowThatIsNoNumberForTheFirst)
{
    startDialling();
    displayUpdated(content_displayIdDisplay, "", "text");

    EXPECT_EQ(window(), Texts({"text"}));
}

TEST_F(PbxTab, KeepsLinesZeroToFive)
{
    startNoting();
    for (int row = -1; row <= 6; ++row)
        mode().setContentsOfDisplay(row, std::to_string(row));

    EXPECT_EQ(contents(), Texts({"0", "1", "2", "3", "4", "5"}));
    EXPECT_EQ(mode().getContentsOfDisplay(-1), "");
    EXPECT_EQ(mode().getContentsOfDisplay(6), "");
    EXPECT_EQ(
        log.texts(2),
        Texts({"setContentsOfDisplay() - line = -1 invalid", "setContentsOfDisplay() - line = 6 invalid",
               "getContentsOfDisplay() - line = -1 invalid", "getContentsOfDisplay() - line = 6 invalid"}));
}

TEST_F(PbxTab, ClearsItsLinesWhenTheSystemIsDisabled)
{
    startDialling();
    line(0, "one");
    line(1, "two");
    systemStatus(systemState_disabled);

    EXPECT_EQ(lines(), 0);
    EXPECT_TRUE(window().empty());
    EXPECT_EQ(contents(), Texts(6));
}

TEST_F(PbxTab, LeavesTheWindowAloneWhenThereIsNothingToClear)
{
    startNoting();
    display().setSystemWindowSize(2);
    systemStatus(systemState_disabled);
    host.settle();

    EXPECT_EQ(window().size(), 2u);
    EXPECT_TRUE(log.has("systemWindowDisplayClear()", 5));
}

TEST_F(PbxTab, CutsTheDiallerOnNarrowQraTelephonesOnly)
{
    for (const int variant : {1, 3, 4, 5, 6, 7, 8}) {
        HardwareVersion::setHWVariant(variant);
        log.clear();
        load(); // a "Veltrix QRA"
        DisplayAPI::FrameScreen dialler;
        context().m_PopupDialer.paint(dialler, 3);
        const bool narrow = variant >= 4 && variant <= 7;
        EXPECT_EQ(dialler.dialler.scrolls, !narrow) << variant;
        EXPECT_EQ(log.has("QRA ZD_HI - set no scroll on Popup dialler", 5), narrow) << variant;
        phonelet().stopPhonelet();
    }
}

} // namespace
