#include <algorithm>

#include "GroupScreens.h"
#include "TraceLines.h"

namespace {

class Groups : public GroupScreens {
protected:
    const DisplayAPI::FrameField& focusedField() const
    {
        const auto& fields = top().fields;
        return *std::find_if(fields.begin(), fields.end(), [](const auto& field) { return field.focused; });
    }
};

} // namespace

// --- The list ---

TEST_F(Groups, AreListedInTheOrderOfTheirSlotsAndNoGroupLast)
{
    threeGroups();
    startAtGroups();
    EXPECT_EQ(current(), &groupsScreen());
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(title(), "manage.groups.list");
    EXPECT_EQ(screen(), "manage.groups.list\n"
                        "> group.copied.contacts\n"
                        "  Family\n"
                        "  Work\n"
                        "  no.group\n");
    EXPECT_EQ(context().m_pTabScreen->getCurrentDisplayable(), &groupRows());
    EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
}

TEST_F(Groups, StandBehindTheOptionsRowWithoutSoftKeys)
{
    threeGroups();
    startAtGroups(Bar::None);
    EXPECT_EQ(rows(), (Texts{"list.options", COPIED, "Family", "Work", "no.group"}));
    EXPECT_TRUE(top().rows[0].selected);
}

TEST_F(Groups, StandByThemselvesWithoutTabs)
{
    start();
    while (context().m_pTabScreen->numberOfTabs() > 0)
        context().m_pTabScreen->removeTab(0);
    groupsScreen().enterStateEvent(&context());
    host.settle();
    EXPECT_EQ(display().getCurrent(), &groupRows());
}

TEST_F(Groups, TranslateTheTelephonesOwnGroupOnly)
{
    telephone.translator.prefix = "a ";
    threeGroups();
    start();
    press(MENU);
    choose("a groups.menu");
    EXPECT_EQ(rows(), (Texts{"a group.copied.contacts", "Family", "Work", "a no.group"}));
}

TEST_F(Groups, AreOneRowWhenNoneIsNamed)
{
    for (const auto bar : BARS) {
        start(bar);
        groups().makeSpare(1);
        openGroups();
        EXPECT_EQ(rows(), bar == Bar::SoftKeys ? Texts{"no.group"} : (Texts{"list.options", "no.group"}));
    }
}

TEST_F(Groups, KeepTheirRowsAndBeginAtTheFirst)
{
    threeGroups();
    startAtGroups();
    press(DOWN);
    press(DOWN);
    groupRows().append(new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("a mark"), 1));
    press(BACK);
    openGroups();
    EXPECT_EQ(rows().back(), "a mark");
    EXPECT_TRUE(top().rows[0].selected);
}

TEST_F(Groups, ForgetWhatWasTyped)
{
    threeGroups();
    startAtGroups();
    type("fa");
    EXPECT_EQ(top().search, "fa");
    press(BACK);
    openGroups();
    EXPECT_FALSE(top().searchOpen);
    EXPECT_EQ(rows(), (Texts{COPIED, "Family", "Work", "no.group"}));
}

TEST_F(Groups, FollowTheLanguage)
{
    threeGroups();
    startAtGroups();
    press(BACK);
    telephone.translator.prefix = "a ";
    mode().updateAlphaOrder(true);
    host.settle();
    press(MENU);
    choose("a groups.menu");
    EXPECT_EQ(rows(), (Texts{"a group.copied.contacts", "Family", "Work", "a no.group"}));
    EXPECT_EQ(title(), "a manage.groups.list");
}

TEST_F(Groups, AreReadAnewByARestart)
{
    threeGroups();
    startAtGroups();
    press(BACK);
    directory.groups->updateGroup({2, "Friends"});
    mode().RestartLocalPhonebook();
    host.settle();
    openGroups();
    EXPECT_EQ(rows(), (Texts{COPIED, "Friends", "Family", "Work", "no.group"}));
}

TEST_F(Groups, AreReadAnewWhenOthersChangedThem)
{
    threeGroups();
    startAtGroups();
    directory.groups->updateGroup({2, "Friends"});
    directoryChanges();
    choose("refresh.directory");
    EXPECT_EQ(current(), &context().m_ViewingList);
    openGroups();
    EXPECT_EQ(rows(), (Texts{COPIED, "Friends", "Family", "Work", "no.group"}));
}

TEST_F(Groups, AreLeftWithBack)
{
    threeGroups();
    contact("Adams", "Amy");
    for (const auto bar : BARS) {
        startAtGroups(bar);
        press(BACK);
        EXPECT_EQ(current(), &context().m_ViewingList);
        EXPECT_EQ(rows().back(), "Adams, Amy");
        EXPECT_EQ(handle.left, Texts{});
    }
}

TEST_F(Groups, KeepTheTab)
{
    startAtGroups();
    EXPECT_FALSE(groupsScreen().tabValid(&context()));
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(mode().isLocalTabActive());
    EXPECT_EQ(current(), &groupsScreen());
}

// --- The menus ---

TEST_F(Groups, OfferEverythingForAGroupWithSoftKeys)
{
    threeGroups();
    startAtGroups();
    openMenuOf("Family");
    EXPECT_EQ(rows(), (Texts{"view", "edit", "new.group", "delete", "delete.all.groups"}));
}

TEST_F(Groups, OfferWhatConcernsTheGroupWithoutSoftKeys)
{
    threeGroups();
    startAtGroups(Bar::None);
    openMenuOf("Family");
    EXPECT_EQ(rows(), (Texts{"view", "edit", "delete"}));
}

TEST_F(Groups, ProtectTheCopiedContacts)
{
    threeGroups();
    startAtGroups();
    openMenuOf(COPIED);
    EXPECT_EQ(rows(), (Texts{"view", "new.group", "delete.all.groups"}));
    startAtGroups(Bar::None);
    openMenuOf(COPIED);
    EXPECT_EQ(rows(), Texts{"view"});
}

TEST_F(Groups, ProtectTheCopiedContactsWhileTheStoreIsOutOfReach)
{
    threeGroups();
    startAtGroups();
    directory.groups.reset();
    openMenuOf(COPIED);
    EXPECT_EQ(rows(), (Texts{"view", "new.group", "delete.all.groups"}));
}

TEST_F(Groups, ProtectThatGroupWhichTheStoreSaysHoldsTheCopiedContacts)
{
    threeGroups();
    startAtGroups();
    directory.groups->makeSpare(1);
    directory.groups->updateGroup({3, COPIED});
    openMenuOf("Family");
    EXPECT_EQ(rows(), (Texts{"view", "new.group", "delete.all.groups"}));
}

TEST_F(Groups, OfferNoChangeOfNoGroup)
{
    threeGroups();
    startAtGroups();
    openMenuOf("no.group");
    EXPECT_EQ(rows(), (Texts{"view", "new.group", "delete.all.groups"}));
    startAtGroups(Bar::None);
    openMenuOf("no.group");
    EXPECT_EQ(rows(), Texts{"view"});
}

TEST_F(Groups, OfferNoNewOneWhenAllSlotsAreTaken)
{
    threeGroups();
    fillAllGroups();
    startAtGroups();
    openMenuOf("Family");
    EXPECT_EQ(rows(), (Texts{"view", "edit", "delete", "delete.all.groups"}));
    startAtGroups(Bar::None);
    openMenuOf("list.options");
    EXPECT_EQ(rows(), Texts{"delete.all.groups"});
}

TEST_F(Groups, OfferTheListsCommandsOnTheOptionsRow)
{
    threeGroups();
    startAtGroups(Bar::None);
    openMenuOf("list.options");
    EXPECT_EQ(rows(), (Texts{"new.group", "delete.all.groups"}));
    EXPECT_EQ(context().m_SelectedGroupIndex, 0);
}

TEST_F(Groups, OfferNothingToDeleteWhileNoneIsInUse)
{
    start();
    groups().makeSpare(1);
    openGroups();
    press(MENU);
    EXPECT_EQ(rows(), (Texts{"view", "new.group"}));
    start(Bar::None);
    groups().makeSpare(1);
    openGroups();
    press(MENU);
    EXPECT_EQ(rows(), Texts{"new.group"});
}

TEST_F(Groups, OfferTheirViewOnlyWithoutAGroupList)
{
    start();
    directory.groups.reset();
    mode().RestartLocalPhonebook();
    host.settle();
    openGroups();
    press(MENU);
    EXPECT_EQ(rows(), Texts{"view"});
}

TEST_F(Groups, OpenTheSameMenuWithOk)
{
    threeGroups();
    for (const auto bar : BARS) {
        startAtGroups(bar);
        for (int row = 0; row < groupRows().size(); ++row) {
            groupRows().setSelectedIndex(row);
            press(MENU);
            const auto commands = rows();
            const int group = context().m_SelectedGroupIndex;
            press(BACK);
            press(OK);
            EXPECT_EQ(rows(), commands);
            EXPECT_EQ(context().m_SelectedGroupIndex, group);
            press(BACK);
        }
    }
}

TEST_F(Groups, IgnoreKeysFromElsewhere)
{
    startAtGroups();
    auto* pOther = &context().m_PopupNotification;
    EXPECT_EQ(groupsScreen().okEvent(&context(), nullptr, pOther), &groupsScreen());
    EXPECT_EQ(groupsScreen().rightEvent(&context(), nullptr, pOther), &groupsScreen());
    EXPECT_EQ(groupsScreen().backEvent(&context(), nullptr, pOther), &groupsScreen());
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(Groups, CloseTheirMenuWithBack)
{
    threeGroups();
    startAtGroups();
    openMenuOf("Family");
    context().m_pTabScreen->setDisplayable(0, nullptr);
    press(BACK);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(current(), &groupsScreen());
    EXPECT_EQ(title(), "manage.groups.list");
    EXPECT_TRUE(top().rows[1].selected);
    display().setCurrent(&context().m_ContextMenu);
    host.settle();
    EXPECT_EQ(rows(), Texts{}); // emptied
}

TEST_F(Groups, FindTheGroupOfEveryRow)
{
    threeGroups();
    directory.groups->updateGroup({9, "Club"});
    directory.groups->updateGroup({20, "Last"});
    directory.groups->updateGroup({2, "Second"});
    for (const auto bar : BARS) {
        startAtGroups(bar);
        const int options = bar == Bar::None ? 1 : 0;
        const std::vector<int> slots{1, 2, 3, 6, 9, 20, 0};
        ASSERT_EQ(groupRows().size(), static_cast<int>(slots.size()) + options);
        for (int position = 0; position < static_cast<int>(slots.size()); ++position) {
            const int slot = slots[static_cast<std::size_t>(position)];
            groupRows().setSelectedIndex(position + options);
            press(MENU);
            EXPECT_EQ(context().m_SelectedGroupIndex, slot);
            PhonebookGroup group(0, "no.group");
            groups().getGroup(slot, group);
            EXPECT_EQ(groupRows().getText(position + options), group.getName());
            // A contact's form counts by slots from 0; -1 behind the last group.
            EXPECT_EQ(groups().slotOfNamedGroup(position) + 1, slot);
            press(BACK);
        }
    }
}

TEST_F(Groups, AreTheChoicesOfAContactInTheSameOrder)
{
    threeGroups();
    directory.groups->updateGroup({9, "Club"});
    const auto id = contact("Adams", "Amy");
    startAtGroups();
    ASSERT_EQ(rows(), (Texts{COPIED, "Family", "Work", "Club", "no.group"}));
    for (int row = 0; row < 4; ++row) {
        groupRows().setSelectedIndex(row);
        press(MENU);
        const auto slot = std::to_string(context().m_SelectedGroupIndex);
        const auto name = groupRows().getText(row);
        press(BACK);
        press(BACK);

        press(MENU);
        choose("details");
        while (focusedField().label != "groups.form")
            press(DOWN);
        press(Kind::Right);
        EXPECT_EQ(focusedField().value, name);
        press(Kind::Save);
        press(OK);
        EXPECT_EQ(directory.records[id]["Group"], slot) << name;
        openGroups();
    }
}

// --- View ---

TEST_F(Groups, ShowTheirContacts)
{
    threeGroups();
    member("Adams", 3);
    member("Baker", 6);
    member("Clark", 0);
    const std::vector<std::pair<std::string, Texts>> views{
        {COPIED, {}}, {"Family", {"Adams"}}, {"Work", {"Baker"}}, {"no.group", {"Clark"}}};
    for (const auto bar : BARS) {
        startAtGroups(bar);
        for (const auto& [group, contacts] : views) {
            chooseFor(group, "view");
            EXPECT_EQ(current(), &context().m_ViewingList);
            EXPECT_EQ(popups(), 0u);
            EXPECT_EQ(title(), group);
            auto expected = contacts;
            if (bar == Bar::None)
                expected.insert(expected.begin(), "list.options");
            else if (expected.empty())
                expected = {"no.contacts"};
            EXPECT_EQ(rows(), expected) << group;
            openGroups();
        }
    }
}

TEST_F(Groups, ReturnToAllContactsFromAGroup)
{
    threeGroups();
    member("Adams", 3);
    member("Baker", 6);
    startAtGroups();
    chooseFor("Family", "view");
    press(BACK);
    EXPECT_EQ(list().getGroupIndication(), -1);
    EXPECT_EQ(title(), "");
    EXPECT_EQ(rows(), (Texts{"Adams", "Baker"}));
}

TEST_F(Groups, ShowTheirContactsInANewListThatTypesAndReachesTheTabs)
{
    threeGroups();
    member("Adams", 3);
    member("Baker", 3);
    startAtGroups();
    const auto id = context().m_pDisplayList->id();
    chooseFor("Family", "view");
    EXPECT_NE(context().m_pDisplayList->id(), id);
    type("b");
    EXPECT_TRUE(top().rows[1].selected);
    press(UP);
    press(UP);
    EXPECT_TRUE(host.frame->tabBarFocused);
}

TEST_F(Groups, WaitVisiblyForTheirContacts)
{
    threeGroups();
    startAtGroups();
    bool waited = false;
    bool localWaited = false;
    openMenuOf("Family");
    directory.whileBusy = [&] {
        waited = host.frame->base.waiting;
        context().m_pTabScreen->setCurrentDisplayable(context().m_pDisplayList.get());
        localWaited = display().paint().base.waiting;
    };
    choose("view");
    EXPECT_TRUE(waited);
    EXPECT_TRUE(localWaited);
    directory.whileBusy = nullptr;
    EXPECT_FALSE(host.frame->base.waiting);
    openGroups();
    EXPECT_FALSE(host.frame->base.waiting);
}

TEST_F(Groups, RefuseToShowAGroupThatDoesNotExist)
{
    threeGroups();
    startAtGroups();
    openMenuOf("Family");
    for (const int group : {-1, 21}) {
        context().m_SelectedGroupIndex = group;
        const auto lists = directory.listCalls.size();
        choose("view");
        EXPECT_EQ(current(), &groupsScreen());
        EXPECT_EQ(directory.listCalls.size(), lists);
        EXPECT_TRUE(log.has("invalid group: " + std::to_string(group), 2));
    }
    context().m_SelectedGroupIndex = 20; // spare, but it exists
    choose("view");
    EXPECT_EQ(current(), &context().m_ViewingList);
}

TEST_F(Groups, KeepTheirTitleRightWhenTheShownOneIsRenamed)
{
    threeGroups();
    member("Adams", 3);
    startAtGroups();
    chooseFor("Family", "view");
    openGroups();
    chooseFor("Family", "edit");
    type("!");
    press(DisplayAPI::Key::Kind::Save);
    press(OK);
    EXPECT_EQ(rows(), (Texts{COPIED, "Family!", "Work", "no.group"}));
    press(BACK);
    EXPECT_EQ(title(), "Family!");
    EXPECT_EQ(rows(), Texts{"Adams"});
}

// --- Where the menu leads ---

TEST_F(Groups, LeadToTheForm)
{
    threeGroups();
    for (const auto bar : BARS) {
        startAtGroups(bar);
        chooseFor("Family", "edit");
        EXPECT_EQ(current(), &groupForm());
        EXPECT_EQ(context().m_SelectedGroupIndex, 3);
        EXPECT_EQ(popups(), 0u);
        press(BACK);
        selectRow("Family");
        chooseForAll("new.group");
        EXPECT_EQ(current(), &groupForm());
        EXPECT_EQ(context().m_SelectedGroupIndex, 0);
    }
}

TEST_F(Groups, MakeANewOneFromTheMenuOfAnotherGroup)
{
    threeGroups();
    startAtGroups();
    chooseFor("Family", "new.group");
    EXPECT_EQ(context().m_SelectedGroupIndex, 0);
}

TEST_F(Groups, TakeTheirPopupsAlong)
{
    threeGroups();
    startAtGroups();
    const auto leave = [&] {
        groupsScreen().exitStateEvent(&context());
        host.settle();
        EXPECT_EQ(popups(), 0u);
    };
    openMenuOf("Family");
    leave();
    openMenuOf("Family");
    choose("delete");
    leave();
    openMenuOf("Family");
    choose("delete.all.groups");
    leave();
    directory.storesGroups = false;
    chooseFor("Family", "delete");
    choose("delete");
    leave();
    directory.storesGroups = true;
    chooseFor("Family", "delete");
    choose("delete");
    leave();
}

TEST_F(Groups, GiveWayToTheQuestionOfAChangedDirectory)
{
    threeGroups();
    startAtGroups();
    chooseFor("Family", "delete");
    directoryChanges();
    EXPECT_EQ(popups(), 1u);
    EXPECT_EQ(screen(), "? directory.in.use\n");
}

// --- What it does not know ---

TEST_F(Groups, LogWhatTheyDoNotKnow)
{
    threeGroups();
    startAtGroups();
    DisplayAPI::MenuCommand unknown(DisplayAPI::TranslationInfo::plain("unknown"));
    openMenuOf("Family");
    const auto menu = screen();
    EXPECT_EQ(groupsScreen().screenEvent(&context(), &unknown, &context().m_ContextMenu), &groupsScreen());
    EXPECT_EQ(log.count(" - unhandled event on context menu", 3), 1);
    EXPECT_EQ(groupsScreen().screenEvent(&context(), &unknown, &context().m_PopupConfirm), &groupsScreen());
    EXPECT_EQ(log.count(" - unrecognised widget\n", 3), 1);
    host.settle();
    EXPECT_EQ(screen(), menu);

    choose("delete");
    EXPECT_EQ(groupsScreen().screenEvent(&context(), &unknown, display().getCurrent()), &groupsScreen());
    EXPECT_EQ(log.count(" - unhandled event on popup\n", 3), 1);
    press(BACK);
    choose("delete.all.groups");
    EXPECT_EQ(groupsScreen().screenEvent(&context(), &unknown, display().getCurrent()), &groupsScreen());
    EXPECT_EQ(log.count(" - unhandled event on popup\n", 3), 2);
    EXPECT_EQ(directory.groupStores, 0);
}

TEST_F(Groups, TraceTheirOperations)
{
    start();
    auto* pContext = &context();
    auto& screen = groupsScreen();
    auto* pOther = &pContext->m_PopupNotification;
    expectTraces("PhonebookStateViewingGroups",
                 {{"exitStateEvent", [&] { screen.exitStateEvent(pContext); }},
                  {"enterStateEvent", [&] { screen.enterStateEvent(pContext); }},
                  {"backEvent", [&] { screen.backEvent(pContext, nullptr, pOther); }},
                  {"okEvent", [&] { screen.okEvent(pContext, nullptr, pOther); }},
                  {"rightEvent", [&] { screen.rightEvent(pContext, nullptr, pOther); }},
                  {"screenEvent", [&] { screen.screenEvent(pContext, nullptr, pOther); }}});
}
