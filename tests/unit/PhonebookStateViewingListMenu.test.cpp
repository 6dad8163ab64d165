#include <framework/services/CallPartyIdentifier.h>

#include "PhonebookScreens.h"

namespace {

using Choice = ListCommands::Choice;

class ListMenu : public PhonebookScreens {
protected:
    PhonebookStateViewingList& state() { return context().m_ViewingList; }
    PhonebookStateBase* current() { return mode().getCurrentState(); }

    void allNumbers()
    {
        contact("Adams", "Amy",
                {{"Office", "100"}, {"Office2", "101"}, {"Mobile", "102"}, {"Private", "103"}});
    }
    void sipWithBluetooth()
    {
        configuration.items["software-type"] = "Veltrix SIP";
        configuration.items["bt-enabled"] = "true";
        configuration.items["bt-active"] = "true";
    }
    // Opens the menu of the first entry.
    void openEntryMenu()
    {
        if (!context().m_HasSoftKeyBar)
            press(DOWN);
        press(MENU);
    }
    bool has(const std::string& label) const
    {
        const auto texts = rows();
        return std::find(texts.begin(), texts.end(), label) != texts.end();
    }
    const DisplayAPI::MenuCommand* command(Choice choice) { return state().commands().command(choice); }
    DisplayAPI::MenuCommand* dialCommand(DialCommands::Choice choice)
    {
        return state().commands().dialCommands().command(choice);
    }
    // The command's event, as if it were on the popup.
    PhonebookStateBase* chosen(Choice choice, DisplayAPI::Displayable* pPopup)
    {
        return state().screenEvent(&context(), state().commands().command(choice), pPopup);
    }
};

} // namespace

TEST_F(ListMenu, HasItsCommands)
{
    start();
    const std::vector<std::pair<const char*, int>> expected{{"new.contact", 0}, {"display", 0},
                                                            {"delete.all", 0},  {"find", 0},
                                                            {"backup", 0},      {"restore", 0},
                                                            {"groups.menu", 0}, {"directed.pickup", 0},
                                                            {"details", 0},     {"delete", 0},
                                                            {"find", 0},        {"send", 0},
                                                            {"new.contact", 0}, {"delete.all.entries", 0},
                                                            {"delete", 0},      {"cancel", 0}};
    ASSERT_EQ(expected.size(), std::size_t{ListCommands::nCHOICES});
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto* pCommand = state().commands().command(static_cast<Choice>(i));
        EXPECT_EQ(pCommand->getLabel().getKey(), expected[i].first);
        EXPECT_EQ(pCommand->getIcon(), expected[i].second);
    }
    const std::vector<int> icons{3, 4, 2, 5, 0};
    ASSERT_EQ(icons.size(), std::size_t{DialCommands::nCHOICES});
    for (std::size_t i = 0; i < icons.size(); ++i) {
        const auto* pCommand =
            state().commands().dialCommands().command(static_cast<DialCommands::Choice>(i));
        EXPECT_EQ(pCommand->getLabel().getKey(), "dial");
        EXPECT_EQ(pCommand->getIcon(), icons[i]);
    }
}

// --- What stands on the menus ---

TEST_F(ListMenu, OffersLittleWithoutContacts)
{
    start();
    press(MENU);
    EXPECT_EQ(rows(), (Texts{"new.contact", "groups.menu"}));
}

TEST_F(ListMenu, OffersLittleWithoutContactsAndSoftKeys)
{
    start(Bar::None);
    press(MENU);
    EXPECT_EQ(rows(), (Texts{"new.contact", "groups.menu"}));
}

TEST_F(ListMenu, OffersTheOptionsOnTheirRow)
{
    allNumbers();
    start(Bar::None);
    press(MENU);
    EXPECT_EQ(rows(), (Texts{"new.contact", "display", "delete.all", "groups.menu"}));
}

TEST_F(ListMenu, OffersEverythingOfAnEntryWithSoftKeys)
{
    sipWithBluetooth();
    allNumbers();
    start();
    openEntryMenu();
    EXPECT_EQ(rows(), (Texts{"dial", "details", "directed.pickup", "new.contact", "groups.menu", "delete",
                             "display", "delete.all", "send"}));
    EXPECT_EQ(icons(), (std::vector<int>(9, 0)));
    EXPECT_EQ(context().m_SelectedEntryIndex, 0);
}

TEST_F(ListMenu, IsHeadedByTheContactWithItsPicture)
{
    directory.records[contact("Adams", "Amy")]["Picture"] = "amy.png";
    contact("Baker", "Bob");
    start();
    openEntryMenu();
    EXPECT_EQ(top().title, "Adams, Amy");
    EXPECT_EQ(top().image, "clips/amy.png");

    press(BACK);
    press(DOWN);
    openEntryMenu();
    EXPECT_EQ(top().title, "Baker, Bob");
    EXPECT_EQ(top().image, "");
}

TEST_F(ListMenu, HasNoPictureWithoutTheServiceThatKnowsWhereItIs)
{
    directory.records[contact("Adams", "Amy")]["Picture"] = "amy.png";
    telephone.services.erase("LocalMgmtIfc");
    start();
    openEntryMenu();
    EXPECT_EQ(top().title, "Adams, Amy");
    EXPECT_EQ(top().image, "");
}

TEST_F(ListMenu, HasNoHeadOnTheOptionsRow)
{
    directory.records[contact("Adams", "Amy")]["Picture"] = "amy.png";
    start(Bar::None);
    openEntryMenu();
    EXPECT_EQ(top().title, "Adams, Amy");
    press(BACK);
    press(UP);
    press(OK);
    EXPECT_EQ(top().title, "");
    EXPECT_EQ(top().image, "");
}

TEST_F(ListMenu, OffersEveryNumberOfAnEntryWithoutSoftKeys)
{
    sipWithBluetooth();
    allNumbers();
    start(Bar::None);
    openEntryMenu();
    EXPECT_EQ(rows(), (Texts{"dial", "dial", "dial", "dial", "details", "delete", "send", "new.contact",
                             "directed.pickup"}));
    EXPECT_EQ(icons(), (std::vector<int>{3, 4, 5, 2, 0, 0, 0, 0, 0}));
}

TEST_F(ListMenu, OffersOnlyNumbersThatAreThere)
{
    contact("Adams", "Amy", {{"Mobile", "102"}});
    start(Bar::None);
    openEntryMenu();
    EXPECT_EQ(rows(), (Texts{"dial", "details", "delete", "new.contact"}));
    EXPECT_EQ(icons(), (std::vector<int>{5, 0, 0, 0}));
}

TEST_F(ListMenu, OffersPickupOnSipTelephonesOnly)
{
    allNumbers();
    for (const auto* software : {"Veltrix QRA", "Veltrix TDM", "Something"}) {
        configuration.items["software-type"] = software;
        for (const auto bar : {Bar::SoftKeys, Bar::None}) {
            start(bar);
            openEntryMenu();
            EXPECT_FALSE(has("directed.pickup")) << software;
            EXPECT_TRUE(has("details"));
        }
    }
}

TEST_F(ListMenu, OffersToSendOnlyWhileBluetoothIsOnAndActive)
{
    allNumbers();
    start();
    const std::vector<std::pair<std::string, std::string>> states{
        {"true", "false"}, {"false", "true"}, {"true", ""}, {"TRUE", "true"}, {"true", "1"}};
    for (const auto& [enabled, active] : states) {
        configuration.items["bt-enabled"] = enabled;
        configuration.items["bt-active"] = active;
        openEntryMenu();
        EXPECT_FALSE(has("send")) << enabled << " " << active;
        press(BACK);
    }
    configuration.items.erase("bt-active");
    configuration.items["bt-enabled"] = "true";
    openEntryMenu();
    EXPECT_FALSE(has("send"));
    press(BACK);
    configuration.items["bt-active"] = "true";
    openEntryMenu();
    EXPECT_TRUE(has("send"));
    press(BACK);
    context().m_pLocalMgmt = nullptr;
    openEntryMenu();
    EXPECT_FALSE(has("send"));
}

TEST_F(ListMenu, DoesNotOpenForAnEntryThatCannotBeRead)
{
    allNumbers();
    start();
    directory.failure = "damaged";
    openEntryMenu();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ListMenu, ClosesWithBack)
{
    allNumbers();
    start();
    openEntryMenu();
    context().m_pTabScreen->setDisplayable(0, nullptr);
    press(BACK);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
    EXPECT_EQ(rows(), Texts{"Adams, Amy"});
    EXPECT_EQ(handle.left, Texts{});
}

// --- Where it leads ---

TEST_F(ListMenu, LeadsToTheOtherScreens)
{
    allNumbers();
    start();
    const std::vector<std::pair<std::string, PhonebookStateBase*>> ways{
        {"details", &context().m_CreatingEntry},
        {"groups.menu", &context().m_ViewingGroups},
        {"display", &context().m_DisplayOptions}};
    for (const auto& [label, screen] : ways) {
        openEntryMenu();
        choose(label);
        EXPECT_EQ(current(), screen);
        EXPECT_NE(top().role, DisplayAPI::FrameRole::Menu);
        press(BACK);
        EXPECT_EQ(current(), &state());
    }
    EXPECT_EQ(context().m_SelectedEntry.getSurname(), "Adams"); // details are of the selected entry
}

TEST_F(ListMenu, StartsANewContactBlank)
{
    allNumbers();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openEntryMenu();
        ASSERT_EQ(context().m_SelectedEntry.getSurname(), "Adams");
        choose("new.contact");
        EXPECT_EQ(current(), &context().m_CreatingEntry);
        EXPECT_EQ(context().m_SelectedEntry.getSurname(), "");
        EXPECT_EQ(context().m_SelectedEntry.getUniqueId(), "");
        EXPECT_EQ(context().m_SelectedEntry.getGroup(), "0");
    }
}

TEST_F(ListMenu, StartsANewContactInTheGroupThatIsShown)
{
    directory.groups->updateGroup({3, "Friends"});
    start();
    showGroup(3);
    press(MENU);
    choose("new.contact");
    EXPECT_EQ(context().m_SelectedEntry.getGroup(), "3");
}

TEST_F(ListMenu, StartsANewContactWithoutGroupOutsideOne)
{
    start();
    showGroup(0);
    press(MENU);
    choose("new.contact");
    EXPECT_EQ(context().m_SelectedEntry.getGroup(), "0");
}

TEST_F(ListMenu, DoesNothingWithFindBackupAndRestore)
{
    allNumbers();
    start();
    openEntryMenu();
    const auto before = host.screen();
    for (const auto choice :
         {ListCommands::FIND, ListCommands::BACKUP, ListCommands::RESTORE, ListCommands::SECOND_FIND})
        EXPECT_EQ(chosen(choice, &context().m_ContextMenu), &state());
    host.settle();
    EXPECT_EQ(host.screen(), before);
}

TEST_F(ListMenu, IgnoresCommandsThatAreNotItsOwn)
{
    start();
    DisplayAPI::MenuCommand foreign(DisplayAPI::TranslationInfo::plain("delete"));
    EXPECT_EQ(state().screenEvent(&context(), &foreign, &context().m_ContextMenu), &state());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, nullptr), &state());
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

// --- What comes first when a command and what it was chosen on both mean something ---

TEST_F(ListMenu, TakesTheEndOfAllDeletedBeforeAnyCommand)
{
    allNumbers();
    start();
    openEntryMenu();
    choose("delete.all");
    choose("delete.all.entries");
    ASSERT_EQ(screen(), "! delete.all.entries.confirm\n");
    EXPECT_EQ(chosen(ListCommands::GROUPS, display().getCurrent()), &state());
    host.settle();
    EXPECT_EQ(rows(), Texts{"no.contacts"});
}

TEST_F(ListMenu, TakesTheEndOfAnErrorBeforeAnyCommand)
{
    allNumbers();
    start();
    openEntryMenu();
    choose("delete");
    directory.failure = "damaged";
    choose("delete");
    ASSERT_EQ(screen(), "! PBerror.dbDelete\n");
    EXPECT_EQ(chosen(ListCommands::GROUPS, display().getCurrent()), &state());
    EXPECT_EQ(display().getCurrent(), &context().m_ContextMenu);
}

TEST_F(ListMenu, TakesCommandsOfTheListBeforePopupsAndThoseBeforeCommandsOfTheEntry)
{
    allNumbers();
    start();
    openEntryMenu();
    choose("delete");
    choose("delete");
    ASSERT_EQ(screen(), "! delete.entry.confirm(Adams, Amy)\n");
    auto* const pDeleted = display().getCurrent();
    for (DisplayAPI::Displayable* pPopup :
         {static_cast<DisplayAPI::Displayable*>(&context().m_PopupDialer),
          static_cast<DisplayAPI::Displayable*>(&context().m_PopupLineSelectionNeeded),
          static_cast<DisplayAPI::Displayable*>(&context().m_PopupNoLineAvailable), pDeleted}) {
        EXPECT_EQ(chosen(ListCommands::GROUPS, pPopup), &context().m_ViewingGroups);
        EXPECT_EQ(chosen(ListCommands::DISPLAY_OPTIONS, pPopup), &context().m_DisplayOptions);
        EXPECT_EQ(chosen(ListCommands::NEW_CONTACT, pPopup), &context().m_CreatingEntry);
        EXPECT_EQ(chosen(ListCommands::DETAILS, pPopup), &state());
        EXPECT_EQ(state().screenEvent(&context(), dialCommand(DialCommands::DEFAULT), pPopup), &state());
        EXPECT_EQ(chosen(ListCommands::DIRECTED_PICKUP, pPopup), &state());
    }
    host.settle();
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(screen(), "! delete.entry.confirm(Adams, Amy)\n");
    EXPECT_FALSE(display().shows(context().m_ContextMenu));
}

// --- Dialling ---

TEST_F(ListMenu, DialsTheDefaultNumber)
{
    contact("Adams", "Amy", {{"Office2", "101"}, {"Private", "103"}});
    start();
    openEntryMenu();
    choose("dial");
    EXPECT_EQ(calls(), Texts{"MakeCall 101"});
    EXPECT_TRUE(context().m_CallRequestInitiated);
    EXPECT_EQ(current(), &state());
}

TEST_F(ListMenu, DialsTheNumberOfTheIcon)
{
    configuration.items["software-type"] = "Veltrix SIP";
    allNumbers();
    start(Bar::None);
    openEntryMenu();
    for (int row = 0; row < 4; ++row)
        host.press(Kind::Row, row);
    EXPECT_EQ(calls(), (Texts{"MakeCall 100", "MakeCall 101", "MakeCall 102", "MakeCall 103"}));
}

TEST_F(ListMenu, RefusesASecondCallWithAnErrorLine)
{
    allNumbers();
    start();
    openEntryMenu();
    choose("dial");
    choose("dial");
    EXPECT_EQ(calls().size(), 1u);
    EXPECT_EQ(log.count("screenEvent received when call already initiated - ignore", 2), 1);
    EXPECT_EQ(popups(), 1u); // the menu, and no message
}

TEST_F(ListMenu, ShowsARefusedCallOverTheMenu)
{
    allNumbers();
    start();
    callsFail(1);
    openEntryMenu();
    choose("dial");
    EXPECT_EQ(screen(), "! line.selection.needed\n");
    EXPECT_EQ(context().m_pDisplayableBeforePopup, &context().m_ContextMenu);
    EXPECT_FALSE(context().m_CallRequestInitiated);
    press(OK);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Menu);
    EXPECT_TRUE(log.has(
        "PhonebookStateBaseDialer::m_PopupLineSelectionNeeded.screenEvent - hidden event off popup", 5));
}

TEST_F(ListMenu, PicksUpACallForTheDefaultNumber)
{
    sipWithBluetooth();
    allNumbers();
    start();
    openEntryMenu();
    csta.pickupResult = 1;
    choose("directed.pickup");
    EXPECT_EQ(calls(), Texts{"DirectedPickup 100"});
    EXPECT_EQ(current(), &state());
}

TEST_F(ListMenu, PicksUpNothingWithoutANumber)
{
    sipWithBluetooth();
    contact("Adams", "Amy");
    start();
    openEntryMenu();
    choose("directed.pickup");
    EXPECT_EQ(calls(), Texts{});
    EXPECT_EQ(screen(), "! dialler.noNumber\n");
}

TEST_F(ListMenu, KnowsTheCallPartysIconOfEveryDialCommand)
{
    contact("Adams", "Amy", {{"Office", "100"}, {"Office2", "101"}, {"Mobile", "102"}, {"Private", "103"}});
    start();
    directory.records.begin()->second["DefaultNumber"] = "3";
    openEntryMenu();
    struct Expected {
        const DisplayAPI::MenuCommand* pCommand;
        std::string number;
        int icon;
    };
    const std::vector<Expected> table{
        {dialCommand(DialCommands::OFFICE), "100", 2},  {dialCommand(DialCommands::OFFICE2), "101", 3},
        {dialCommand(DialCommands::PRIVATE), "103", 1}, {dialCommand(DialCommands::MOBILE), "102", 4},
        {dialCommand(DialCommands::DEFAULT), "102", 4}, {command(ListCommands::DIRECTED_PICKUP), "102", 4}};
    for (const auto& [pCommand, expectedNumber, expectedIcon] : table) {
        std::string number;
        auto icon = CallPartyIdentifier::NONE;
        state().transformCommandToPhoneNumberAndIcon(&context(), pCommand, number, icon);
        EXPECT_EQ(number, expectedNumber);
        EXPECT_EQ(icon, expectedIcon);
    }
    DisplayAPI::MenuCommand foreign(DisplayAPI::TranslationInfo::plain("dial"));
    std::string number;
    auto icon = CallPartyIdentifier::NONE;
    state().transformCommandToPhoneNumberAndIcon(&context(), &foreign, number, icon);
    EXPECT_EQ(number, "102");
    EXPECT_EQ(icon, CallPartyIdentifier::MOBILE);
    state().transformCommandToPhoneNumberAndIcon(&context(), nullptr, number, icon);
    EXPECT_EQ(number, "");
    EXPECT_EQ(icon, CallPartyIdentifier::NONE);
}

// --- Sending ---

TEST_F(ListMenu, SendsTheContactAsACard)
{
    sipWithBluetooth();
    contact("Adams", "Amy", {{"Office", "100"}});
    start();
    openEntryMenu();
    choose("send");
    ASSERT_EQ(obex.contacts.size(), 1u);
    EXPECT_EQ(obex.contacts[0].first, "Amy Adams.vcf");
    EXPECT_EQ(obex.contacts[0].second, "BEGIN:VCARD\r\n"
                                       "VERSION:3.0\r\n"
                                       "N:Adams;Amy;;;\r\n"
                                       "FN:Amy Adams\r\n"
                                       "TEL;TYPE=WORK,VOICE,PREF:100\r\n"
                                       "END:VCARD\r\n");
    EXPECT_EQ(current(), &state());
}

TEST_F(ListMenu, SendsNothingWithoutTheService)
{
    sipWithBluetooth();
    allNumbers();
    start();
    context().m_pObexService = nullptr;
    openEntryMenu();
    choose("send");
    EXPECT_EQ(obex.contacts.size(), 0u);
    EXPECT_EQ(current(), &state());
}
