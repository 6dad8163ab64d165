#include <algorithm>

#include <framework/csta/CSTAEvents.h>

#include "PhonebookControl.h"
#include "PhonebookScreens.h"

namespace {

constexpr char FILE_NAME[] = "./src/PhonebookPhonelet";

// The phonebook while the telephone starts and stops it.
class StartedPhonelet : public PhonebookScreens {
protected:
    // The lines that the phonelet itself wrote at one level.
    Texts lines(int level) const
    {
        Texts texts;
        for (const auto& line : log.lines()) {
            if (line.file == FILE_NAME && line.level == level)
                texts.push_back(line.text);
        }
        return texts;
    }
    bool observes(const std::string& tag) const
    {
        return std::any_of(configuration.observed.begin(), configuration.observed.end(),
                           [&](const auto& observed) { return observed.first == tag; });
    }
    int reads(const std::string& tag) const
    {
        return static_cast<int>(std::count(configuration.reads.begin(), configuration.reads.end(), tag));
    }
    std::vector<std::string> observedTags() const
    {
        std::vector<std::string> tags;
        for (const auto& [tag, agent] : configuration.observed)
            tags.push_back(tag);
        return tags;
    }
};

TEST_F(StartedPhonelet, TakesItsServicesAndItsDisplayFromTheContext)
{
    load();

    EXPECT_EQ(phonelet().getPhonebookControl()->getDirectoryService(), &directory);
    EXPECT_EQ(context().m_pDisplay, &display());
    EXPECT_TRUE(log.has("PhonebookPhonelet::PhonebookPhonelet()", 5));
    EXPECT_TRUE(log.has("PhonebookPhonelet::init()", 5));
    EXPECT_TRUE(log.has("PhonebookPhonelet::startPhonelet()", 5));
    EXPECT_EQ(log.lines().front().component, "PhonebookPhonelet");
}

TEST_F(StartedPhonelet, IsMadeByTheFactory)
{
    const std::unique_ptr<Phonelet> made(createPhonelet());

    EXPECT_NE(dynamic_cast<PhonebookPhonelet*>(made.get()), nullptr);
    EXPECT_EQ(lines(5),
              Texts({"PhonebookPhonelet::createPhonelet()", "PhonebookPhonelet::PhonebookPhonelet()"}));
}

TEST_F(StartedPhonelet, StartsInAFixedOrder)
{
    csta.systemStatusResult = 1;
    configuration.items["mobility-mode"] = "2";
    configuration.items["disable-access-phonebook"] = "true";
    load();

    EXPECT_TRUE(
        wroteInOrder({"PhonebookPhonelet::startPhonelet()",
                      "PhonebookControl::getDirectoryService()",
                      "PhonebookControl::getCSTAService()",
                      "PhonebookControl::getDigitAnalysisService()",
                      "PhonebookControl::getDASService()",
                      "PhonebookControl::getTeamService()",
                      "PhonebookControl::getLocalManagementService()",
                      "PhonebookControl::getOBEXService()",
                      "PhonebookControl::getPhysicalInterfaceService()",
                      "Contact Group created",
                      "Phonebook should be populated, number of entries = 0",
                      "PhonebookMode::PhonebookMode()",
                      "PhonebookMode::setNoScrollForQRAHI()",
                      "PhonebookPhonelet::subscribeForCSTAEvents - begin",
                      "PhonebookPhonelet::subscribeForCSTAEvents - end",
                      "PhonebookPhonelet::startPhonelet - failed to subscribe to CSTA Service",
                      "PhonebookControl::getJournalService()",
                      "manageableDataChanged() - mobility mode = 2",
                      "PhonebookPhonelet::startPhonelet() - CALL observeManageableData for tag "
                      "<mobility-mode>",
                      "manageableDataChanged() - disable access phonebook = true",
                      "PhonebookPhonelet::startPhonelet() - CALL observeManageableData for tag "
                      "<disable-access-phonebook>",
                      "PhonebookPhonelet::startPhonelet - subscribe to Physical Interface Service done"}));
}

TEST_F(StartedPhonelet, SortsInTheConfiguredLanguage)
{
    contact("Österreich", "");
    contact("Zebra", "");
    configuration.items["language"] = "sv";
    load();

    EXPECT_EQ(list().elementAt(0).getSurname(), "Zebra");
}

TEST_F(StartedPhonelet, KeepsEnglishWhenThereIsNoLanguage)
{
    configuration.items.erase("language");
    load();
    log.clear();
    phonelet().localeChanged("en");

    EXPECT_TRUE(log.has("Ignored localeChanged because new language ( en ) is same as existing\n", 3));
}

TEST_F(StartedPhonelet, AsksForTheSoftwareTypeEvenWithoutALanguage)
{
    HardwareVersion::setHWVariant(4);
    configuration.items.erase("language");
    load();

    EXPECT_EQ(configuration.reads.at(0), "language");
    EXPECT_EQ(configuration.reads.at(1), "software-type");
    EXPECT_TRUE(log.has("QRA ZD_HI - set no scroll on Popup dialler"));
}

TEST_F(StartedPhonelet, SetsTheDiallerOnQraTelephonesOnly)
{
    HardwareVersion::setHWVariant(4);
    configuration.items["software-type"] = "Veltrix SIP";
    load();

    EXPECT_FALSE(log.has("PhonebookMode::setNoScrollForQRAHI()"));
}

TEST_F(StartedPhonelet, ReadsAndObservesNoItemWithoutLocalManagement)
{
    HardwareVersion::setHWVariant(4);
    telephone.services["LocalMgmtIfc"] = nullptr;
    load();

    EXPECT_TRUE(configuration.reads.empty());
    EXPECT_TRUE(configuration.observed.empty());
    EXPECT_FALSE(log.has("PhonebookMode::setNoScrollForQRAHI()"));
    phonelet().localeChanged("en");
    EXPECT_TRUE(log.has("Ignored localeChanged because new language ( en ) is same as existing\n", 3));
}

TEST_F(StartedPhonelet, ReadsAllEntriesBeforeItsFirstScreen)
{
    contact("Miller", "Ann");
    contact("Mills", "Bob");
    start();

    EXPECT_TRUE(log.has("Phonebook should be populated, number of entries = 2", 5));
    EXPECT_EQ(rows(), Texts({"Miller, Ann", "Mills, Bob"}));
}

TEST_F(StartedPhonelet, CreatesTheGroupOfCopiedContacts)
{
    load();

    EXPECT_EQ(directory.groups->findGroup("group.copied.contacts"), 1);
    EXPECT_EQ(phonelet().getCopiedContactGroupIndex(), 1);
    EXPECT_EQ(phonelet().getCopiedContactGroupName(), "group.copied.contacts");
    EXPECT_EQ(context().m_pGroupList->findGroup("group.copied.contacts"), 1);
    EXPECT_EQ(directory.groupStores, 1);
    EXPECT_TRUE(log.has("Contact Group created", 5));
}

TEST_F(StartedPhonelet, FindsTheGroupOfCopiedContacts)
{
    directory.groups->addGroup(PhonebookGroup(3, "group.copied.contacts"));
    load();

    EXPECT_EQ(phonelet().getCopiedContactGroupIndex(), 3);
    EXPECT_EQ(directory.groupStores, 0);
    EXPECT_FALSE(log.has("Contact Group created"));
}

TEST_F(StartedPhonelet, KeepsTheNewGroupsIndexWhenItCannotBeStored)
{
    directory.storesGroups = false;
    directory.groups->addGroup(PhonebookGroup(1, "Friends"));
    load();

    EXPECT_EQ(phonelet().getCopiedContactGroupIndex(), 2);
    EXPECT_TRUE(log.has("Contact Group could not be created", 5));
}

TEST_F(StartedPhonelet, ToleratesAFullGroupList)
{
    for (int id = 1; id <= directory.groups->numberOfGroups(); ++id)
        directory.groups->addGroup(PhonebookGroup(id, "group " + std::to_string(id)));
    load();

    EXPECT_EQ(phonelet().getCopiedContactGroupIndex(), -1);
    EXPECT_EQ(directory.groupStores, 0);
}

TEST_F(StartedPhonelet, UsesAnEmptyGroupListWhenThereIsNone)
{
    directory.groups.reset();
    load();

    EXPECT_TRUE(log.has(
        "PhonebookPhonelet::startPhonelet --Phonelet startup - null group list!! - generating dummy", 5));
    EXPECT_EQ(phonelet().getCopiedContactGroupIndex(), 1);
    ASSERT_NE(context().m_pGroupList, nullptr);
    EXPECT_EQ(context().m_pGroupList->findGroup("group.copied.contacts"), 1);
}

TEST_F(StartedPhonelet, MonitorsTheTelephonesOwnDevice)
{
    load();

    ASSERT_GE(csta.sent.size(), 2u);
    EXPECT_EQ(csta.sent[csta.sent.size() - 2], "MonitorStart localDeviceID");
    EXPECT_EQ(csta.sent.back(), "SystemStatus");
    EXPECT_EQ(csta.sources[csta.sent.size() - 2], static_cast<Executable*>(&phonelet()));
    EXPECT_EQ(csta.sources.back(), static_cast<Executable*>(&phonelet()));
    EXPECT_TRUE(csta.filter.callControl() && csta.filter.callAssociated() && csta.filter.physicalDevice());
    EXPECT_TRUE(csta.filter.logicalDevice() && csta.filter.vendorSpecific() && csta.filter.system());
    EXPECT_FALSE(csta.filter.phonebookFeature());
    EXPECT_TRUE(log.has("PhonebookPhonelet::subscribeForCSTAEvents: CSTA cross reference id received", 5));
    EXPECT_FALSE(log.has("PhonebookPhonelet::startPhonelet - failed to subscribe to CSTA Service"));
}

TEST_F(StartedPhonelet, AsksForTheSystemStatusAfterAMonitorThatFailed)
{
    csta.monitorStartResult = 7;
    load();

    EXPECT_EQ(csta.sent.back(), "SystemStatus");
    EXPECT_TRUE(log.has(
        "PhonebookPhonelet::subscribeForCSTAEvents: no successful response code for MonitorStartRequest", 2));
    EXPECT_TRUE(log.has("PhonebookPhonelet::startPhonelet - failed to subscribe to CSTA Service", 2));
}

TEST_F(StartedPhonelet, KeepsNoCrossReferenceFromAWrongResponse)
{
    csta.answer = [](CSTARequest& request) {
        request.setResponse(0, std::make_unique<CSTASystemStatusResponse>());
    };
    load();
    phonelet().unsubscribeCSTAEvents();

    EXPECT_TRUE(log.has("PhonebookPhonelet::subscribeForCSTAEvents: invalid CSTAMonitorStartResponse", 2));
    EXPECT_TRUE(log.has("PhonebookPhonelet::startPhonelet - failed to subscribe to CSTA Service", 2));
    EXPECT_EQ(csta.sent.back(), "MonitorStop ");
    EXPECT_TRUE(log.has("PhonebookPhonelet::unsubscribeCSTAEvents: invalid CSTAMonitorStartResponse", 2));
}

TEST_F(StartedPhonelet, GivesUpASubscriptionWithoutSystemStatus)
{
    load();
    csta.systemStatusResult = 1;

    EXPECT_FALSE(phonelet().subscribeForCSTAEvents());
    EXPECT_TRUE(log.has(
        "StimulusControlQRA::subscribeForCSTAEvents: no successful response code for systemStatusRequest",
        2));
}

TEST_F(StartedPhonelet, StopsTheMonitorThatItStarted)
{
    load();
    log.clear();

    EXPECT_TRUE(phonelet().unsubscribeCSTAEvents());
    EXPECT_EQ(csta.sent.back(), "MonitorStop monitor-1");
    EXPECT_TRUE(log.has("PhonebookPhonelet::unsubscribeCSTAEvents - begin", 5));
    EXPECT_TRUE(log.has("PhonebookPhonelet::unsubscribeCSTAEvents - end", 5));
    EXPECT_TRUE(log.texts(2).empty());

    phonelet().unsubscribeCSTAEvents();
    EXPECT_EQ(csta.sent.back(), "MonitorStop monitor-1"); // the reference is not cleared
}

TEST_F(StartedPhonelet, SaysWhenTheMonitorDoesNotStop)
{
    load();
    csta.monitorStopResult = 1;

    EXPECT_FALSE(phonelet().unsubscribeCSTAEvents());
    EXPECT_TRUE(log.has(
        "PhonebookPhonelet::unsubscribeCSTAEvents: no successful response code for MonitorStartRequest", 2));
}

TEST_F(StartedPhonelet, SaysThatThereIsNoCallControl)
{
    telephone.services["CSTAServiceIfc"] = nullptr;
    load();

    EXPECT_TRUE(log.has("PhonebookPhonelet::subscribeForCSTAEvents: CSTAService not found", 2));
    EXPECT_TRUE(log.has("PhonebookPhonelet::subscribeForCSTAEvents - end", 5));
    EXPECT_TRUE(log.has("PhonebookPhonelet::startPhonelet - failed to subscribe to CSTA Service", 2));
    EXPECT_FALSE(phonelet().unsubscribeCSTAEvents());
    EXPECT_TRUE(log.has("PhonebookPhonelet::unsubscribeCSTAEvents: CSTAService not found", 2));
    EXPECT_TRUE(log.has("PhonebookPhonelet::unsubscribeCSTAEvents - end", 5));
}

TEST_F(StartedPhonelet, ObservesTheDirectoryAfterTheMonitorWasStarted)
{
    std::size_t observersThen = 99;
    csta.answer = [&](CSTARequest& request) {
        if (dynamic_cast<CSTASystemStatusRequest*>(&request))
            observersThen = directory.observers.size();
        request.setResponse(1, nullptr);
    };
    load();

    EXPECT_EQ(observersThen, 0u);
    EXPECT_EQ(directory.observers, std::vector<DirectoryServiceObserverIfc*>{
                                       static_cast<DirectoryServiceObserverIfc*>(&phonelet())});
}

TEST_F(StartedPhonelet, ObservesTheJournal)
{
    load();

    EXPECT_EQ(journal.observers,
              std::vector<JournalServiceObserverIfc*>{static_cast<JournalServiceObserverIfc*>(&phonelet())});
}

TEST_F(StartedPhonelet, AppliesAndObservesMobilityForAMobileUser)
{
    configuration.items["mobility-mode"] = "2";
    configuration.items["disable-access-phonebook"] = "true";
    load();

    EXPECT_TRUE(log.has("manageableDataChanged() - mobility mode = 2", 5));
    EXPECT_TRUE(log.has("manageableDataChanged() - disable access phonebook = true", 5));
    EXPECT_EQ(observedTags(),
              Texts({"mobility-mode", "disable-access-phonebook", "ldap-qualifier", "ldap-display-option"}));
    for (const auto& [tag, agent] : configuration.observed)
        EXPECT_EQ(agent, static_cast<MgmtAgentIfc*>(&phonelet())) << tag;
    EXPECT_TRUE(log.has(
        "PhonebookPhonelet::startPhonelet() - CALL observeManageableData for tag <mobility-mode>", 5));
    EXPECT_TRUE(log.has(
        "PhonebookPhonelet::startPhonelet() - CALL observeManageableData for tag <disable-access-phonebook>",
        5));
}

TEST_F(StartedPhonelet, ObservesAMobilityItemThatCannotBeRead)
{
    configuration.items["mobility-mode"] = "2";
    load();

    EXPECT_TRUE(
        log.has("PhonebookPhonelet::startPhonelet: unable to read data item 'disable-access-phonebook'", 5));
    EXPECT_TRUE(observes("disable-access-phonebook"));
}

TEST_F(StartedPhonelet, ObservesNoMobilityForAnyOtherMode)
{
    configuration.items["mobility-mode"] = "1";
    load();

    EXPECT_EQ(observedTags(), Texts({"ldap-qualifier", "ldap-display-option"}));
    EXPECT_EQ(reads("mobility-mode"), 1); // to find out
    EXPECT_EQ(reads("disable-access-phonebook"), 0);
    EXPECT_EQ(reads("ldap-qualifier"), 0);
}

TEST_F(StartedPhonelet, SubscribesToTheKeys)
{
    load();

    ASSERT_EQ(keys.subscriptions.size(), 1u);
    const auto& [observer, groups] = keys.subscriptions.front();
    EXPECT_EQ(observer, static_cast<physicalEventObserver*>(&phonelet()));
    ASSERT_EQ(groups.size(), 1u);
    EXPECT_EQ(groups.front().group, 2);
    EXPECT_EQ(groups.front().actions, 1);
    EXPECT_EQ(groups.front().delivery, 1);
    EXPECT_TRUE(
        log.has("PhonebookPhonelet::startPhonelet - subscribe to Physical Interface Service done", 2));
}

TEST_F(StartedPhonelet, SaysWhenTheKeysRefuse)
{
    keys.accepts = false;
    load();

    EXPECT_TRUE(
        log.has("PhonebookPhonelet::startPhonelet - failed to subscribe to Physical Interface Service", 2));
    EXPECT_FALSE(log.has("PhonebookPhonelet::startPhonelet - subscribe to Physical Interface Service done"));
}

TEST_F(StartedPhonelet, StartsWithoutAnyService)
{
    telephone.services.clear();
    start();

    EXPECT_EQ(lines(2),
              Texts({"PhonebookPhonelet::subscribeForCSTAEvents: CSTAService not found",
                     "PhonebookPhonelet::startPhonelet - failed to subscribe to CSTA Service",
                     "PhonebookPhonelet::startPhonelet - failed to subscribe to Journal Service",
                     "PhonebookPhonelet::startPhonelet - failed to get Physical Interface Service"}));
    EXPECT_EQ(phonelet().getCopiedContactGroupIndex(), 1);
    EXPECT_EQ(rows(), Texts({"no.contacts"}));
}

TEST_F(StartedPhonelet, GivesEverythingBackAtStop)
{
    load();
    log.clear();
    phonelet().stopPhonelet();

    EXPECT_TRUE(directory.observers.empty());
    EXPECT_TRUE(journal.observers.empty());
    EXPECT_EQ(csta.sent.back(), "MonitorStop monitor-1");
    EXPECT_EQ(phonelet().getPhonebookMode(), nullptr);
    EXPECT_EQ(phonelet().getPhonebookList(), nullptr);
    EXPECT_EQ(phonelet().getListPointer(), nullptr);
    EXPECT_EQ(phonelet().getPhonebookControl(), nullptr);
    EXPECT_EQ(log.texts(5).at(0), "PhonebookPhonelet::stopPhonelet()");
    EXPECT_EQ(log.texts(5).at(1), "PhonebookPhonelet::shutdown()");
    EXPECT_TRUE(wroteInOrder({"PhonebookPhonelet::unsubscribeCSTAEvents - end",
                              "PhonebookMode::~PhonebookMode()", "PhonebookList::~PhonebookList()",
                              "EventContext::~EventContext()", "PhonebookControl::~PhonebookControl()"}));
    // The first list was the LDAP directory's; the local one outlives the mode, but not the control.
    const Texts traced = log.texts(5);
    const auto localList = std::find(traced.rbegin(), traced.rend(), "PhonebookList::~PhonebookList()");
    const auto control = std::find(traced.rbegin(), traced.rend(), "PhonebookControl::~PhonebookControl()");
    const auto context = std::find(traced.rbegin(), traced.rend(), "EventContext::~EventContext()");
    EXPECT_LT(control, localList);
    EXPECT_LT(localList, context);
}

TEST_F(StartedPhonelet, IsStoppedTwiceWithoutHarm)
{
    load();
    phonelet().stopPhonelet();
    const auto sent = csta.sent.size();
    phonelet().shutdown();

    EXPECT_EQ(csta.sent.size(), sent);
}

TEST_F(StartedPhonelet, ListensToNobodyOnceItIsStopped)
{
    load();
    phonelet().show();
    phonelet().stopPhonelet();

    ManageableData data;
    data.setRootId("mobility-mode");
    CallPartyIdentifier party;
    CSTASystemStatusEvent event("", {});
    phonelet().manageableDataChanged(&data);
    phonelet().buttonPressedEvent(PhysDefs::keyFunctionType::Digit, 1, PhysDefs::actionType::Pressed, "1");
    phonelet().deliverEvent(&event);
    phonelet().timerEvent(1);
    phonelet().itemStateChanged(nullptr);
    phonelet().phonebookDatabaseUpdated(true);
    phonelet().phonebookDatabaseUpdated(false);
    phonelet().handleDialingStarted("1");
    phonelet().handleDialingStarted("1", party);
    phonelet().handleDialingStopped();
    phonelet().handleInterDigitTimeout(nullptr);
    phonelet().childGainedFocus("CorvanStimulus");
    phonelet().childLostFocus("CorvanStimulus");
    phonelet().localeChanged("de");
    phonelet().dialledCallsUpdate(nullptr, 0, JournalAction::Cleared);
    EXPECT_FALSE(phonelet().getDialPartyDetails(party));
    EXPECT_TRUE(digits.parties.empty());
}

TEST_F(StartedPhonelet, IsNoCallContextProviderAfterItWasStoppedInSight)
{
    start();
    EXPECT_NE(digits.provider, nullptr);
    phonelet().stopPhonelet();

    EXPECT_EQ(digits.provider, nullptr);
}

TEST_F(StartedPhonelet, DoesNotStartWithoutAContext)
{
    PhonebookPhonelet lonely;
    lonely.startPhonelet();
    lonely.show();
    lonely.tab();
    lonely.hide();

    EXPECT_EQ(lonely.getPhonebookMode(), nullptr);
    EXPECT_TRUE(log.has("PhonebookPhonelet::show() - unable to call m_pMode->show() due to null pointer", 5));
    EXPECT_TRUE(log.has("PhonebookPhonelet::tab() - unable to call m_pMode->tab() due to null pointer", 5));
    EXPECT_TRUE(log.has("PhonebookPhonelet::hide() - unable to call m_pMode->hide() due to null pointer", 5));
}

} // namespace
