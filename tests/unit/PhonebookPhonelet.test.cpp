#include <thread>

#include <framework/csta/CSTAEvents.h>
#include <framework/services/InterDigitTimeOutEvent.h>

#include "ModeScreens.h"

namespace {

class RunningPhonelet : public ModeScreens {
protected:
    static JournalItem dialled(const std::vector<std::vector<std::string>>& calls)
    {
        std::vector<JournalRecord> records;
        for (const auto& fields : calls)
            records.push_back({fields});
        return JournalItem(records);
    }
};

TEST_F(RunningPhonelet, AnnouncesItsInterfaces)
{
    load();

    EXPECT_EQ(phonelet().getInterfaces(),
              "PhoneBookPhoneletIfc CSTAEventIfc DigitAnalysisServiceEventIfc DirectoryServiceObserverIfc "
              "TeamServiceIfc JournalServiceObserverIfc MgmtAgentIfc PhysicalEventObserver PhoneletIfc "
              "ClockServiceObserverIfc");
    EXPECT_TRUE(log.has("PhonebookPhonelet::getInterfaces()", 5));
}

TEST_F(RunningPhonelet, ShowsTheModeAndThenTheDisplay)
{
    load();
    display().hide();
    log.clear();
    phonelet().show();

    EXPECT_TRUE(phonelet().isVisible());
    EXPECT_EQ(log.texts(5).at(0), "PhonebookPhonelet::show()");
    EXPECT_EQ(log.texts(5).at(1), "PhonebookPhonelet::show() - calling m_pMode->show()");
    EXPECT_TRUE(log.has("show()", 5));
    host.settle();
    EXPECT_TRUE(host.frame->visible);
}

TEST_F(RunningPhonelet, HidesTheModeAndThenTheDisplay)
{
    start();
    log.clear();
    phonelet().hide();

    EXPECT_FALSE(phonelet().isVisible());
    EXPECT_EQ(log.texts(5).at(0), "PhonebookPhonelet::hide()");
    EXPECT_EQ(log.texts(5).at(1), "PhonebookPhonelet::hide() - calling m_pMode->hide()");
    EXPECT_TRUE(log.has("hide()", 5));
    EXPECT_FALSE(display().paint().visible);
}

TEST_F(RunningPhonelet, OnlySaysThatItIsPausedAndResumed)
{
    startNoting();
    phonelet().pause();
    phonelet().resume();

    EXPECT_EQ(log.texts(5), Texts({"Paused", "Resumed"}));
    EXPECT_TRUE(phonelet().isVisible());
    EXPECT_TRUE(told.empty());
}

TEST_F(RunningPhonelet, TakesTheFirstShowAfterAChildForTheTabKey)
{
    offerPbxPhonebook();
    start();
    phonelet().hide();
    phonelet().childGainedFocus("CorvanStimulus");
    EXPECT_EQ(currentTab(), PBX_TAB);
    EXPECT_TRUE(phonelet().getTreatShowAsTab());
    log.clear();

    phonelet().show();
    EXPECT_TRUE(log.has("PhonebookPhonelet::show treat show() as tab()", 5));
    EXPECT_TRUE(log.has("PhonebookPhonelet::tab()", 5));
    EXPECT_FALSE(phonelet().getTreatShowAsTab());
    EXPECT_FALSE(phonelet().isVisible()); // left as it was
    EXPECT_EQ(currentTab(), OFFICE_TAB);
    log.clear();

    phonelet().show();
    EXPECT_FALSE(log.has("PhonebookPhonelet::tab()"));
    EXPECT_TRUE(phonelet().isVisible());
}

TEST_F(RunningPhonelet, ForgetsAChildThatLostTheFocus)
{
    offerPbxPhonebook();
    start();
    log.clear();
    phonelet().childGainedFocus("CorvanStimulus");
    phonelet().childLostFocus("CorvanStimulus");

    EXPECT_FALSE(phonelet().getTreatShowAsTab());
    EXPECT_EQ(log.texts(4), Texts({"PhonebookPhonelet::childGainedFocus called",
                                   "PhonebookPhonelet::childLostFocus called"}));
    EXPECT_TRUE(log.has("PhonebookPhonelet::childGainedFocus child name = \"CorvanStimulus\"", 5));
    EXPECT_TRUE(log.has("PhonebookPhonelet::childLostFocus child name = \"CorvanStimulus\"", 5));
}

TEST_F(RunningPhonelet, LeavesTheTabWhenThereIsNoneForTheChild)
{
    start();
    phonelet().childGainedFocus("CorvanStimulus");

    EXPECT_EQ(currentTab(), OFFICE_TAB);
    EXPECT_TRUE(phonelet().getTreatShowAsTab());
    phonelet().clearTreatShowAsTab();
    EXPECT_FALSE(phonelet().getTreatShowAsTab());
}

TEST_F(RunningPhonelet, AsksTheTelephoneForTheFocus)
{
    start();
    phonelet().requestFocus();
    phonelet().releaseFocus();
    phonelet().releaseFocus();

    EXPECT_EQ(telephone.focusRequests, 1);
    EXPECT_EQ(telephone.focusReleases, 2);
}

TEST_F(RunningPhonelet, SortsAnewInANewLanguage)
{
    contact("Österreich", "");
    contact("Zebra", "");
    start();
    EXPECT_EQ(rows(), Texts({"Österreich", "Zebra"}));
    log.clear();
    phonelet().localeChanged("sv");
    host.settle();

    EXPECT_EQ(log.texts(5).at(0), "localeChanged ( sv )");
    EXPECT_TRUE(log.has("localeChanged new locale = 'sv'\n", 5));
    EXPECT_TRUE(log.has("phonebookAlphabeticOrderChanged()", 5));
    EXPECT_EQ(rows(), Texts({"Zebra", "Österreich"}));
}

TEST_F(RunningPhonelet, IgnoresTheLanguageThatItHas)
{
    start();
    log.clear();
    phonelet().localeChanged("en");

    EXPECT_TRUE(log.has("Ignored localeChanged because new language ( en ) is same as existing\n", 3));
    EXPECT_FALSE(log.has("phonebookAlphabeticOrderChanged()"));
}

TEST_F(RunningPhonelet, GivesWayToANewerLanguage)
{
    startNoting();
    makeLocalStateBusy();
    std::thread french([this] { phonelet().localeChanged("fr"); });
    await("localeChanged new locale = 'fr'\n"); // it holds the locale lock now
    std::thread german([this] { phonelet().localeChanged("de"); });
    await("localeChanged ( de )");
    std::thread italian([this] { phonelet().localeChanged("it"); });
    await("localeChanged ( it )");
    letLocalStateGo();
    for (auto* pThread : {&french, &german, &italian})
        pThread->join();

    EXPECT_TRUE(log.has("localeChanged new locale = 'it'\n", 5));
    EXPECT_TRUE(log.has("Ignored localeChanged because new language ( de ) is not latest\n", 3));
    EXPECT_FALSE(log.has("localeChanged new locale = 'de'\n"));
}

TEST_F(RunningPhonelet, KnowsTheGroupOfCopiedContacts)
{
    directory.groups->addGroup(PhonebookGroup(2, "group.copied.contacts"));
    load();

    EXPECT_TRUE(phonelet().isCopiedContactGroup(2));
    EXPECT_TRUE(log.has("isCopiedContactGroup: result = true", 5));
    EXPECT_FALSE(phonelet().isCopiedContactGroup(1));
    EXPECT_TRUE(log.has("isCopiedContactGroup: result = false", 5));
}

TEST_F(RunningPhonelet, LooksTheGroupOfCopiedContactsUpAfresh)
{
    load();
    directory.groups->makeSpare(1);

    EXPECT_FALSE(phonelet().isCopiedContactGroup(1));
    EXPECT_TRUE(log.has("copied contact group not found", 5));
}

TEST_F(RunningPhonelet, TakesGroupZeroForTheCopiedContactsWithoutAGroupList)
{
    load();
    directory.groups.reset();

    EXPECT_TRUE(phonelet().isCopiedContactGroup(0));
    EXPECT_FALSE(phonelet().isCopiedContactGroup(1));
}

TEST_F(RunningPhonelet, PassesATimerToTheContextFirst)
{
    startNoting();
    std::vector<int> expiriesThen;
    local.onEvent = [&] { expiriesThen = telephone.expiries; };
    phonelet().timerEvent(17);

    EXPECT_EQ(told, Texts({"local timer 17"}));
    EXPECT_EQ(expiriesThen, std::vector<int>{17});
}

TEST_F(RunningPhonelet, ForwardsKeysWhileItIsVisible)
{
    startNoting();
    phonelet().buttonPressedEvent(PhysDefs::keyFunctionType::Digit, 5, PhysDefs::actionType::Pressed, "five");

    EXPECT_EQ(told, Texts({"local button 1 5 1 five"}));
    EXPECT_TRUE(log.has("PhonebookPhonelet::buttonPressedEvent called, visible", 4));
}

TEST_F(RunningPhonelet, DropsKeysWhileItIsHidden)
{
    startNoting();
    phonelet().hide();
    told.clear();
    phonelet().buttonPressedEvent(PhysDefs::keyFunctionType::Digit, 5, PhysDefs::actionType::Pressed, "five");

    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(log.has("PhonebookPhonelet::buttonPressedEvent event ignored, not visible", 5));
}

TEST_F(RunningPhonelet, ForwardsEverythingElseWhileItIsHidden)
{
    startNoting();
    phonelet().hide();
    told.clear();
    CallPartyIdentifier party;
    InterDigitTimeOutEvent timeout("123");
    phonelet().timerEvent(3);
    phonelet().itemStateChanged(nullptr);
    phonelet().handleDialingStarted("12");
    phonelet().handleInterDigitTimeout(&timeout);
    phonelet().handleDialingStopped();
    phonelet().getDialPartyDetails(party);
    phonelet().phonebookDatabaseUpdated(false);

    EXPECT_EQ(told, Texts({"local timer 3", "local diallerItem", "local dialingStarted 12",
                           "local interDigitTimeout", "local dialingStopped", "local partyDetails",
                           "local databaseUpdated"}));
    for (const auto* line :
         {"PhonebookPhonelet::timerEvent()", "PhonebookPhonelet::itemStateChanged() - entering",
          "PhonebookPhonelet::handleDialingStarted()", "PhonebookPhonelet::handleInterDigitTimeout()",
          "PhonebookPhonelet::handleDialingStopped()", "PhonebookPhonelet::getDialPartyDetails()",
          "PhonebookPhonelet::phonebookDatabaseUpdated()"})
        EXPECT_TRUE(log.has(line, 5)) << line;
}

TEST_F(RunningPhonelet, DropsThePartyOfADialling)
{
    startNoting();
    CallPartyIdentifier party;
    party.setNumber("0301234");
    phonelet().handleDialingStarted("03", party);

    EXPECT_EQ(told, Texts({"local dialingStarted 03"}));
    EXPECT_TRUE(log.has("PhonebookPhonelet::handleDialingStarted(), should not reach here, 03, 0301234", 5));
}

TEST_F(RunningPhonelet, HandsOnWhoIsDialled)
{
    startNoting();
    CallPartyIdentifier party;

    EXPECT_TRUE(phonelet().getDialPartyDetails(party));
    EXPECT_EQ(party.getNumber(), "4711");
    ASSERT_EQ(digits.parties.size(), 1u);
    EXPECT_EQ(digits.parties[0].party.getNumber(), "4711");
    EXPECT_TRUE(digits.parties[0].result);
    EXPECT_EQ(digits.parties[0].mode, 0);
}

TEST_F(RunningPhonelet, KnowsWhoIsDialledWithoutDigitAnalysis)
{
    telephone.services["DigitAnalysisServiceIfc"] = nullptr;
    startNoting();
    CallPartyIdentifier party;

    EXPECT_TRUE(phonelet().getDialPartyDetails(party));
    EXPECT_EQ(party.getNumber(), "4711");
    EXPECT_TRUE(digits.parties.empty());
}

TEST_F(RunningPhonelet, SaysThatNobodyIsKnownOnThePbxTab)
{
    offerPbxPhonebook();
    startNoting();
    selectTab(PBX_TAB);
    CallPartyIdentifier party;

    EXPECT_FALSE(phonelet().getDialPartyDetails(party));
    ASSERT_EQ(digits.parties.size(), 1u);
    EXPECT_FALSE(digits.parties[0].result);
}

TEST_F(RunningPhonelet, AnswersDigitAnalysisByItsName)
{
    startNoting();
    std::string name;
    phonelet().getEventHandlerName(name);
    EXPECT_EQ(name, "Phonebook");
    EXPECT_TRUE(phonelet().isDiallingOk());
    phonelet().handleInitialDigitTimeout(nullptr);

    EXPECT_TRUE(log.has("PhonebookPhonelet::isDiallingOk() - not implemented", 5));
    EXPECT_TRUE(log.has("PhonebookPhonelet::handleInitialDigitTimeout() - event ignored", 5));
    EXPECT_TRUE(told.empty());
}

TEST_F(RunningPhonelet, RestartsWhenTheDatabaseWasReplaced)
{
    startNoting();
    phonelet().phonebookDatabaseUpdated(true);

    EXPECT_EQ(told, Texts({"local exit", "ldap exit"}));
    EXPECT_TRUE(log.has("RestartLocalPhonebook()", 5));
    EXPECT_EQ(context().m_pCurrentState, &context().m_ViewingList);
}

TEST_F(RunningPhonelet, OffersTheLatestDialledCallForRedial)
{
    start();
    auto item = dialled({{"Ann Miller", "0301234", "2024-01-02"}, {"Bob", "0309999", "2024-01-01"}});
    phonelet().dialledCallsUpdate(&item, 3, JournalAction::Added);
    EXPECT_EQ(context().m_RedialNumber, "0301234");
    EXPECT_TRUE(log.has("PhonebookPhonelet::dialledCallsUpdate()", 5));

    auto none = dialled({});
    phonelet().dialledCallsUpdate(&none, 3, JournalAction::Added);
    EXPECT_EQ(context().m_RedialNumber, "");
}

TEST_F(RunningPhonelet, OffersNothingForACallWithoutANumber)
{
    start();
    context().m_RedialNumber = "1";
    auto item = dialled({{"anonymous"}});
    phonelet().dialledCallsUpdate(&item, 0, JournalAction::Added);

    EXPECT_EQ(context().m_RedialNumber, "");
}

TEST_F(RunningPhonelet, ForwardsAChangeOfTheConfiguration)
{
    startNoting();
    ManageableData data;
    data.setRootId("mobility-mode");
    data.setValue("mobility-mode", "1");
    phonelet().manageableDataChanged(&data);

    EXPECT_TRUE(log.has("PhonebookPhonelet::manageableDataChanged() called for tag <mobility-mode>", 5));
    EXPECT_TRUE(log.has("manageableDataChanged() - mobility mode = 1", 5));
}

TEST_F(RunningPhonelet, KeepsNoDataOfItsOwn)
{
    startNoting();
    ManageableData data;

    EXPECT_EQ(phonelet().setData(&data), 0);
    EXPECT_EQ(phonelet().getData(&data), 0);
    EXPECT_EQ(phonelet().getSubscribingService(), static_cast<Executable*>(&phonelet()));
}

TEST_F(RunningPhonelet, DoesNothingOnWhatDoesNotConcernIt)
{
    startNoting();
    auto item = dialled({{"", "1"}});
    phonelet().missedCallsCountUpdate(1);
    phonelet().missedCallsUpdate(&item, 0, JournalAction::Added);
    phonelet().receivedCallsUpdate(&item, 0, JournalAction::Added);
    phonelet().forwardedCallsUpdate(&item, 0, JournalAction::Added);
    phonelet().callBacksUpdate(&item, 0, JournalAction::Added);
    phonelet().callBacksCountUpdate(1);
    phonelet().hookswitchEvent(true);
    phonelet().jackEvent(1, true);
    phonelet().resetUserData();
    phonelet().dateFormatChanged();
    phonelet().timeFormatChanged();

    EXPECT_TRUE(told.empty());
    EXPECT_EQ(context().m_RedialNumber, "");
}

} // namespace
