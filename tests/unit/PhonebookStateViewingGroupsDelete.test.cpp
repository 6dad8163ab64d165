#include "GroupScreens.h"

namespace {

class DeletingGroups : public GroupScreens {
protected:
    void deleteGroup(const std::string& name)
    {
        chooseFor(name, "delete");
        choose("delete");
    }
    void deleteAllGroups()
    {
        chooseForAll("delete.all.groups");
        choose("delete.all");
    }
    std::string groupOf(const std::string& id) { return directory.records[id]["Group"]; }
    // What is on the screen while the store is at work.
    void watchScreen()
    {
        directory.whileBusy = [this] { seen = screen() + std::to_string(top().type); };
    }
    // The screen once more as it was: the same rows, the menu open, filled anew.
    void expectMenuOfFamilyAgain()
    {
        EXPECT_EQ(popups(), 1u);
        EXPECT_EQ(rows(), context().m_HasSoftKeyBar
                              ? (Texts{"view", "edit", "new.group", "delete", "delete.all.groups"})
                              : (Texts{"view", "edit", "delete"}));
        EXPECT_EQ(context().m_SelectedGroupIndex, 3);
    }

    std::string seen;
};

} // namespace

// --- One group ---

TEST_F(DeletingGroups, AsksBeforeItDeletesOne)
{
    threeGroups();
    for (const auto bar : BARS) {
        startAtGroups(bar);
        chooseFor("Family", "delete");
        EXPECT_EQ(host.frame->top().text, "delete.group.prompt(Family)");
        EXPECT_EQ(top().role, DisplayAPI::FrameRole::Question);
        EXPECT_EQ(top().state, 1); // a warning
        EXPECT_EQ(commands(), (Texts{"delete", "cancel"}));
        EXPECT_EQ(directory.groupStores, 0);
    }
}

TEST_F(DeletingGroups, ReturnsToTheMenuWhenTheUserDoesNotWantIt)
{
    threeGroups();
    startAtGroups();
    for (const auto* command : {"delete", "delete.all.groups"}) {
        openMenuOf("Family");
        choose(command);
        choose("cancel");
        expectMenuOfFamilyAgain();
        choose(command);
        press(BACK);
        expectMenuOfFamilyAgain();
        press(BACK);
    }
    EXPECT_EQ(directory.groupStores, 0);
    EXPECT_EQ(directory.reassigned.size(), 0u);
}

TEST_F(DeletingGroups, TakesTheGroupFromItsContactsAndKeepsThem)
{
    threeGroups();
    const auto adams = member("Adams", 3);
    const auto baker = member("Baker", 6);
    startAtGroups();
    deleteGroup("Family");
    EXPECT_EQ(directory.reassigned, std::vector<unsigned>{3});
    EXPECT_EQ(directory.reassignMode, 0);
    EXPECT_EQ(groupOf(adams), "0");
    EXPECT_EQ(groupOf(baker), "6");
    EXPECT_EQ(storedName(3), "");
    EXPECT_EQ(storedName(6), "Work");
    EXPECT_TRUE(log.has("Deleting group - group list updated successfully", 5));
    EXPECT_EQ(errors(), Texts{});
}

TEST_F(DeletingGroups, DeletesOneBehindAProgressMessage)
{
    threeGroups();
    startAtGroups();
    watchScreen();
    deleteGroup("Family");
    EXPECT_EQ(seen, "~ saving.changes\n1");
    EXPECT_EQ(screen(), "! delete.group.confirm(Family)\n");
    EXPECT_EQ(top().type, 1);
    EXPECT_EQ(popups(), 2u); // over the menu, and no progress message any more
}

TEST_F(DeletingGroups, ShowsTheRowsThatAreLeft)
{
    threeGroups();
    for (const auto bar : BARS) {
        directory.groups->updateGroup({3, "Family"});
        startAtGroups(bar);
        deleteGroup("Family");
        wait(2999ms);
        EXPECT_EQ(popups(), 2u);
        wait(1ms);
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(current(), &groupsScreen());
        EXPECT_EQ(rows(), bar == Bar::SoftKeys ? (Texts{COPIED, "Work", "no.group"})
                                               : (Texts{"list.options", COPIED, "Work", "no.group"}));
        EXPECT_EQ(title(), "manage.groups.list");
        EXPECT_TRUE(top().rows[0].selected);
        display().setCurrent(&context().m_ContextMenu);
        host.settle();
        EXPECT_EQ(rows(), Texts{}); // emptied
    }
}

TEST_F(DeletingGroups, NamesTheGroupOfTheRowThatIsChosen)
{
    threeGroups();
    startAtGroups();
    chooseFor("Family", "delete");
    press(BACK);
    press(BACK);
    deleteGroup("Work");
    EXPECT_EQ(screen(), "! delete.group.confirm(Work)\n");
    press(OK);
    EXPECT_EQ(rows(), (Texts{COPIED, "Family", "no.group"}));
    EXPECT_EQ(storedName(6), "");
}

TEST_F(DeletingGroups, ReturnsToAllContactsWhenTheirGroupWasShown)
{
    threeGroups();
    member("Adams", 3);
    member("Baker", 6);
    for (const auto bar : BARS) {
        directory.groups->updateGroup({3, "Family"});
        startAtGroups(bar);
        chooseFor("Family", "view");
        openGroups();
        const auto id = context().m_pDisplayList->id();
        deleteGroup("Family");
        EXPECT_EQ(list().getGroupIndication(), -1);
        EXPECT_NE(context().m_pDisplayList->id(), id);
        press(OK);
        press(BACK);
        EXPECT_EQ(title(), "");
        EXPECT_EQ(rows().size(), bar == Bar::SoftKeys ? 2u : 3u);
        EXPECT_EQ(rows().back(), "Baker");
    }
}

TEST_F(DeletingGroups, KeepsTheListOfAnotherGroup)
{
    threeGroups();
    member("Baker", 6);
    startAtGroups();
    chooseFor("Work", "view");
    openGroups();
    const auto id = context().m_pDisplayList->id();
    deleteGroup("Family");
    press(OK);
    EXPECT_EQ(list().getGroupIndication(), 6);
    EXPECT_EQ(context().m_pDisplayList->id(), id);
    press(BACK);
    EXPECT_EQ(title(), "Work");
    EXPECT_EQ(rows(), Texts{"Baker"});
}

TEST_F(DeletingGroups, KeepsTheListOfAllContacts)
{
    threeGroups();
    member("Adams", 3);
    startAtGroups();
    const auto id = context().m_pDisplayList->id();
    deleteGroup("Family");
    EXPECT_EQ(context().m_pDisplayList->id(), id);
    press(OK);
    press(BACK);
    EXPECT_EQ(rows(), Texts{"Adams"});
}

TEST_F(DeletingGroups, AddsItsContactsToAShownListOfThoseWithoutAGroup)
{
    threeGroups();
    member("Adams", 3);
    member("Clark", 0);
    startAtGroups();
    chooseFor("no.group", "view");
    EXPECT_EQ(rows(), Texts{"Clark"});
    openGroups();
    deleteGroup("Family");
    press(OK);
    press(BACK);
    EXPECT_EQ(title(), "no.group");
    EXPECT_EQ(rows(), (Texts{"Adams", "Clark"}));
}

TEST_F(DeletingGroups, FailsWhenTheGroupCannotBeMadeSpare)
{
    threeGroups();
    startAtGroups();
    chooseFor("Family", "delete");
    context().m_SelectedGroupIndex = 21;
    choose("delete");
    EXPECT_EQ(errors(), Texts{"Deleting group - failed to make group 21 spare"});
    EXPECT_EQ(screen(), "! delete.group.failed(Family)\n");
    EXPECT_EQ(directory.reassigned.size(), 0u);
    EXPECT_EQ(directory.groupStores, 0);
}

TEST_F(DeletingGroups, FailsWhenItsContactsCannotBeMoved)
{
    threeGroups();
    const auto adams = member("Adams", 3);
    directory.reassigns = false;
    startAtGroups();
    chooseFor("Family", "view");
    openGroups();
    watchScreen();
    deleteGroup("Family");
    directory.whileBusy = nullptr;
    EXPECT_EQ(seen, "~ saving.changes\n1");
    EXPECT_EQ(errors(), Texts{"Deleting group - failed to reassign group 3"});
    EXPECT_EQ(directory.groupStores, 0);
    EXPECT_EQ(screen(), "! delete.group.failed(Family)\n");
    EXPECT_EQ(top().type, 2);
    EXPECT_EQ(popups(), 2u);
    EXPECT_EQ(groupOf(adams), "3");
    EXPECT_EQ(list().getGroupIndication(), 3);
}

TEST_F(DeletingGroups, FailsWhenTheGroupsCannotBeWritten)
{
    threeGroups();
    directory.storesGroups = false;
    startAtGroups();
    deleteGroup("Family");
    EXPECT_EQ(errors(), Texts{"Deleting group 3 - failed to write group list"});
    EXPECT_EQ(screen(), "! delete.group.failed(Family)\n");
    EXPECT_EQ(directory.reassigned, std::vector<unsigned>{3});
    EXPECT_EQ(storedName(3), "Family");
    EXPECT_FALSE(log.has("Deleting group - group list updated successfully"));
}

TEST_F(DeletingGroups, FailsWithoutADirectoryService)
{
    threeGroups();
    startAtGroups();
    context().m_pDirectoryService = nullptr;
    deleteGroup("Family");
    EXPECT_EQ(errors(), Texts{"Deleting group - failed to reassign group 3"});
    press(OK);
    choose("delete.all.groups");
    choose("delete.all");
    EXPECT_EQ(screen(), "! delete.all.groups.failed\n");
    EXPECT_TRUE(log.has("Deleting all groups - group 3 not reassigned", 2));
    EXPECT_TRUE(log.has("Deleting all groups - group 6 not reassigned", 2));
    EXPECT_TRUE(log.has("Deleting all groups - failed to write group list", 2));
}

TEST_F(DeletingGroups, LeavesEverythingInPlaceForAnotherTryAfterAFailure)
{
    threeGroups();
    for (const auto bar : BARS) {
        for (bool* pWorks : {&directory.reassigns, &directory.storesGroups}) {
            startAtGroups(bar);
            *pWorks = false;
            deleteGroup("Family");
            wait(2999ms);
            EXPECT_EQ(popups(), 2u);
            wait(1ms);
            *pWorks = true;
            expectMenuOfFamilyAgain();
            // Every row still stands for its own group.
            press(BACK);
            openMenuOf("Work");
            EXPECT_EQ(context().m_SelectedGroupIndex, 6);
            press(BACK);
            openMenuOf("Family");
            EXPECT_EQ(context().m_SelectedGroupIndex, 3);
            choose("delete");
            choose("delete");
            EXPECT_EQ(screen(), "! delete.group.confirm(Family)\n");
            EXPECT_EQ(storedName(3), "");
            directory.groups->updateGroup({3, "Family"});
        }
    }
}

// --- All groups ---

TEST_F(DeletingGroups, AsksBeforeItDeletesAll)
{
    threeGroups();
    for (const auto bar : BARS) {
        startAtGroups(bar);
        chooseForAll("delete.all.groups");
        EXPECT_EQ(top().text, "delete.all.groups.prompt");
        EXPECT_EQ(top().role, DisplayAPI::FrameRole::Question);
        EXPECT_EQ(top().state, 1);
        EXPECT_EQ(commands(), (Texts{"delete.all", "cancel"}));
    }
}

TEST_F(DeletingGroups, ReturnsToTheOptionsMenuWhenTheUserDoesNotWantIt)
{
    threeGroups();
    startAtGroups(Bar::None);
    chooseForAll("delete.all.groups");
    choose("cancel");
    EXPECT_EQ(rows(), (Texts{"new.group", "delete.all.groups"}));
    choose("delete.all.groups");
    press(BACK);
    EXPECT_EQ(rows(), (Texts{"new.group", "delete.all.groups"}));
}

TEST_F(DeletingGroups, DeletesAllButTheCopiedContacts)
{
    threeGroups();
    const auto adams = member("Adams", 3);
    const auto baker = member("Baker", 6);
    const auto copy = member("Copy", 1);
    for (const auto bar : BARS) {
        directory.groups->updateGroup({3, "Family"});
        directory.groups->updateGroup({6, "Work"});
        directory.reassigned.clear();
        startAtGroups(bar);
        directory.groupStores = 0;
        watchScreen();
        deleteAllGroups();
        EXPECT_EQ(seen, "~ saving.changes\n1");
        EXPECT_EQ(directory.reassigned, (std::vector<unsigned>{3, 6}));
        EXPECT_EQ(directory.reassignMode, 0);
        EXPECT_EQ(directory.groupStores, 1);
        EXPECT_EQ(groupOf(adams) + groupOf(baker) + groupOf(copy), "001");
        EXPECT_EQ(storedName(1), COPIED);
        EXPECT_EQ(storedName(3) + storedName(6), "");
        EXPECT_TRUE(log.has("Deleting all groups - group list updated successfully", 5));
        EXPECT_EQ(errors(), Texts{});

        EXPECT_EQ(screen(), "! delete.all.groups.confirm\n");
        EXPECT_EQ(top().type, 1);
        wait(3000ms);
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(rows(), bar == Bar::SoftKeys ? (Texts{COPIED, "no.group"})
                                               : (Texts{"list.options", COPIED, "no.group"}));
    }
}

TEST_F(DeletingGroups, KeepsTheCopiedContactsInWhicheverSlot)
{
    directory.groups->updateGroup({1, "Family"});
    directory.groups->updateGroup({20, COPIED});
    startAtGroups();
    deleteAllGroups();
    EXPECT_EQ(directory.reassigned, std::vector<unsigned>{1});
    EXPECT_EQ(storedName(20), COPIED);
}

TEST_F(DeletingGroups, DeletesTheLastSlotToo)
{
    threeGroups();
    directory.groups->updateGroup({20, "Last"});
    startAtGroups();
    deleteAllGroups();
    EXPECT_EQ(directory.reassigned, (std::vector<unsigned>{3, 6, 20}));
    EXPECT_EQ(storedName(20), "");
}

TEST_F(DeletingGroups, ReturnsToAllContactsFromAnyGroupWhenAllAreDeleted)
{
    threeGroups();
    member("Adams", 3);
    member("Copy", 1);
    for (const auto* shown : {COPIED, "Family", "no.group"}) {
        directory.groups->updateGroup({3, "Family"});
        startAtGroups();
        chooseFor(shown, "view");
        openGroups();
        const auto id = context().m_pDisplayList->id();
        deleteAllGroups();
        EXPECT_EQ(list().getGroupIndication(), -1);
        EXPECT_NE(context().m_pDisplayList->id(), id);
        press(OK);
        press(BACK);
        EXPECT_EQ(title(), "");
        EXPECT_EQ(rows(), (Texts{"Adams", "Copy"})) << shown;
    }
}

TEST_F(DeletingGroups, KeepsTheListOfAllContactsWhenAllAreDeleted)
{
    threeGroups();
    startAtGroups();
    const auto id = context().m_pDisplayList->id();
    const auto reads = directory.listCalls.size();
    deleteAllGroups();
    EXPECT_EQ(context().m_pDisplayList->id(), id);
    EXPECT_EQ(directory.listCalls.size(), reads);
}

TEST_F(DeletingGroups, GoesOnBehindAGroupWhoseContactsCannotBeMoved)
{
    threeGroups();
    const auto baker = member("Baker", 6);
    directory.stuckGroup = 3;
    startAtGroups();
    deleteAllGroups();
    EXPECT_EQ(errors(), Texts{"Deleting all groups - group 3 not reassigned"});
    EXPECT_EQ(directory.reassigned, (std::vector<unsigned>{3, 6}));
    EXPECT_EQ(groupOf(baker), "0");
    EXPECT_EQ(screen(), "! delete.all.groups.confirm\n"); // what counts is that the groups were written
    EXPECT_EQ(storedName(3) + storedName(6), "");
}

TEST_F(DeletingGroups, LeavesAllGroupsForAnotherTryWhenTheyCannotBeWritten)
{
    threeGroups();
    for (const auto bar : BARS) {
        startAtGroups(bar);
        log.clear();
        const auto before = rows();
        directory.storesGroups = false;
        deleteAllGroups();
        EXPECT_EQ(errors(), Texts{"Deleting all groups - failed to write group list"});
        EXPECT_EQ(screen(), "! delete.all.groups.failed\n");
        EXPECT_EQ(top().type, 2);
        press(OK);
        directory.storesGroups = true;
        EXPECT_EQ(rows(), bar == Bar::SoftKeys ? (Texts{"view", "new.group", "delete.all.groups"})
                                               : (Texts{"new.group", "delete.all.groups"}));
        press(BACK);
        EXPECT_EQ(rows(), before);
        openMenuOf("Work");
        EXPECT_EQ(context().m_SelectedGroupIndex, 6);
        press(BACK);
    }
}
