#include "PhonebookScreens.h"

namespace {

class Deleting : public PhonebookScreens {
protected:
    PhonebookStateViewingList& state() { return context().m_ViewingList; }
    DisplayAPI::SearchList& widget() { return *context().m_pDisplayList; }
    int selectedRow() { return widget().getSelectedIndex(); }

    void threeContacts()
    {
        contact("Adams", "Amy");
        contact("Baker", "Bob");
        contact("Clark", "Cara");
    }
    // Asks for the deletion of the entry that begins with `letter`.
    void askToDelete(const std::string& letter)
    {
        type(letter);
        press(MENU);
        choose("delete");
    }
    void deleteEntry(const std::string& letter)
    {
        askToDelete(letter);
        choose("delete");
    }
    void askToDeleteAll()
    {
        press(MENU);
        choose("delete.all");
    }
    void watchScreenDuringRequests()
    {
        directory.whileBusy = [this] { m_seen = screen() + std::to_string(top().type); };
    }
    std::string seen() const { return m_seen; }

private:
    std::string m_seen;
};

} // namespace

// --- One entry ---

TEST_F(Deleting, AsksBeforeItDeletesAnEntry)
{
    threeContacts();
    start();
    askToDelete("b");
    EXPECT_EQ(screen(), "? delete.entry.prompt(Baker, Bob)\n");
    EXPECT_EQ(top().state, 1); // a warning
    EXPECT_EQ(commands(), (Texts{"delete", "cancel"}));
    EXPECT_EQ(directory.records.size(), 3u);
}

TEST_F(Deleting, ReturnsToTheMenuWhenTheUserDoesNotWantIt)
{
    threeContacts();
    start();
    askToDelete("b");
    choose("cancel");
    EXPECT_EQ(popups(), 1u);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Menu);
    choose("delete");
    press(BACK);
    EXPECT_EQ(popups(), 1u);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Menu);
    EXPECT_EQ(directory.records.size(), 3u);
}

TEST_F(Deleting, DeletesTheEntryBehindAProgressMessage)
{
    threeContacts();
    start();
    askToDelete("b");
    watchScreenDuringRequests();
    choose("delete");
    EXPECT_EQ(seen(), "~ deleting.entry(Baker, Bob)\n1");
    EXPECT_EQ(directory.records.size(), 2u);
    EXPECT_EQ(screen(), "! delete.entry.confirm(Baker, Bob)\n");
    EXPECT_EQ(top().type, 1);
    EXPECT_TRUE(log.has(" - DELETE", 5));
    EXPECT_TRUE(log.has("entry deleted", 5));

    wait(2999ms);
    EXPECT_EQ(screen(), "! delete.entry.confirm(Baker, Bob)\n");
    wait(1ms);
    EXPECT_TRUE(log.has(" - hidden event off popup delete notification", 5));
    EXPECT_EQ(popups(), 0u); // the menu went with it
    EXPECT_EQ(rows(), (Texts{"Adams, Amy", "Clark, Cara"}));
    EXPECT_EQ(selectedRow(), 1);
}

TEST_F(Deleting, DeletesAnEntryInItsOrder)
{
    threeContacts();
    start();
    askToDelete("b");
    log.clear();
    directory.whileBusy = [this] {
        EXPECT_FALSE(display().shows(context().m_PopupConfirm));
        EXPECT_EQ(digits.provider, nullptr);
        EXPECT_EQ(widget().size(), 3);
    };
    choose("delete");
    int last = -1;
    for (const char* step : {" - DELETE", "Toolbox::phonebookToDisplayIndex()", "clearCallContextProvider()",
                             "PhonebookList::deleteEntry()", "entry deleted"}) {
        const int position = log.position(step);
        EXPECT_GT(position, last) << step;
        last = position;
    }
    EXPECT_EQ(context().m_SelectedEntryIndex, 1);
}

TEST_F(Deleting, DeletesTheRowBelowTheOptions)
{
    threeContacts();
    start(Bar::None);
    deleteEntry("b");
    press(OK);
    EXPECT_EQ(rows(), (Texts{"list.options", "Adams, Amy", "Clark, Cara"}));
    EXPECT_EQ(selectedRow(), 2);
}

TEST_F(Deleting, SelectsTheRowBeforeTheLastOne)
{
    threeContacts();
    start();
    deleteEntry("c");
    press(OK);
    EXPECT_EQ(rows(), (Texts{"Adams, Amy", "Baker, Bob"}));
    EXPECT_EQ(selectedRow(), 1);
}

TEST_F(Deleting, LeavesARowThatSaysThatThereAreNoContacts)
{
    contact("Adams", "Amy");
    start();
    deleteEntry("a");
    press(OK);
    EXPECT_EQ(rows(), Texts{"no.contacts"});
    EXPECT_EQ(selectedRow(), 0);
}

TEST_F(Deleting, LeavesTheOptionsRowWithoutSoftKeys)
{
    contact("Adams", "Amy");
    start(Bar::None);
    deleteEntry("a");
    press(OK);
    EXPECT_EQ(rows(), Texts{"list.options"});
    EXPECT_EQ(selectedRow(), 0);
}

TEST_F(Deleting, DeletesOneAfterTheOther)
{
    threeContacts();
    start();
    for (const char* letter : {"b", "a", "c"}) {
        deleteEntry(letter);
        press(OK);
    }
    EXPECT_EQ(directory.records.size(), 0u);
    EXPECT_EQ(rows(), Texts{"no.contacts"});
}

TEST_F(Deleting, ShowsWhyAnEntryCouldNotBeDeleted)
{
    threeContacts();
    start();
    askToDelete("b");
    directory.failure = "damaged";
    choose("delete");
    EXPECT_EQ(screen(), "! PBerror.dbDelete\n");
    EXPECT_EQ(top().type, 2);
    EXPECT_EQ(widget().size(), 3);
    EXPECT_FALSE(log.has("entry deleted"));
    EXPECT_EQ(selectedRow(), 1);

    wait(2999ms);
    EXPECT_EQ(screen(), "! PBerror.dbDelete\n");
    wait(1ms);
    EXPECT_TRUE(log.has("- hidden event off popup error notification", 5));
    EXPECT_EQ(popups(), 1u);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Menu);
}

TEST_F(Deleting, IsNoCallContextProviderAfterwards)
{
    threeContacts();
    start();
    ASSERT_EQ(digits.provider, &mode());
    deleteEntry("b");
    press(OK);
    EXPECT_EQ(digits.provider, nullptr);
}

TEST_F(Deleting, TakesTheProgressAwayWhenDeletingEndsUnexpectedly)
{
    threeContacts();
    start();
    askToDelete("b");
    directory.whileBusy = [] { throw std::out_of_range("no such row"); };
    EXPECT_THROW(choose("delete"), std::out_of_range);
    host.settle();
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Menu);
}

// --- All entries ---

TEST_F(Deleting, AsksEitherQuestionWithItsOwnAnswers)
{
    threeContacts();
    start();
    askToDelete("b");
    choose("cancel");
    choose("delete.all");
    EXPECT_EQ(commands(), (Texts{"delete.all.entries", "cancel"}));
    choose("cancel");
    choose("delete");
    EXPECT_EQ(commands(), (Texts{"delete", "cancel"}));
}

TEST_F(Deleting, AsksBeforeItDeletesAll)
{
    threeContacts();
    start();
    askToDeleteAll();
    EXPECT_EQ(screen(), "? delete.all.entries.prompt\n");
    EXPECT_EQ(commands(), (Texts{"delete.all.entries", "cancel"}));
    choose("cancel");
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Menu);
    EXPECT_EQ(directory.records.size(), 3u);
}

TEST_F(Deleting, DeletesAllBehindAProgressMessage)
{
    threeContacts();
    start();
    askToDeleteAll();
    watchScreenDuringRequests();
    choose("delete.all.entries");
    EXPECT_FALSE(display().shows(context().m_PopupConfirm));
    EXPECT_EQ(seen(), "~ deleting.all.entries\n1");
    EXPECT_EQ(directory.records.size(), 0u);
    EXPECT_EQ(screen(), "! delete.all.entries.confirm\n");
    EXPECT_EQ(top().type, 1);
    EXPECT_TRUE(log.has("- DELETE ALL", 5));
    EXPECT_TRUE(log.has("- dirList deleted", 5));
    EXPECT_EQ(widget().size(), 0);

    wait(2999ms);
    EXPECT_EQ(screen(), "! delete.all.entries.confirm\n");
    wait(1ms);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(rows(), Texts{"no.contacts"});
}

TEST_F(Deleting, DeletesAllFromTheOptionsRow)
{
    threeContacts();
    start(Bar::None);
    askToDeleteAll();
    choose("delete.all.entries");
    press(OK);
    EXPECT_EQ(rows(), Texts{"list.options"});
}

TEST_F(Deleting, DeletesTheEntriesOfTheShownGroupOnly)
{
    directory.groups->updateGroup({1, "Friends"});
    threeContacts();
    directory.records.begin()->second["Group"] = "1";
    start();
    showGroup(1);
    askToDeleteAll();
    choose("delete.all.entries");
    EXPECT_EQ(directory.records.size(), 2u);
}

TEST_F(Deleting, ShowsWhyTheEntriesCouldNotBeDeleted)
{
    threeContacts();
    start();
    askToDeleteAll();
    directory.failure = "damaged";
    choose("delete.all.entries");
    EXPECT_EQ(screen(), "! PBerror.dbDeleteAll\n");
    EXPECT_EQ(top().type, 2);
    EXPECT_EQ(widget().size(), 3);
    EXPECT_FALSE(log.has("- dirList deleted"));
    press(OK);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Menu);
}

TEST_F(Deleting, NeverLeavesAnEmptyTabBehindWhenTheTabKeyClosesTheMessage)
{
    threeContacts();
    start();
    askToDeleteAll();
    choose("delete.all.entries");
    display().closeNotification(); // what the telephone does before it hands the tab key on
    host.settle();
    phonelet().tab();
    phonelet().tab();
    host.settle();
    EXPECT_EQ(rows(), Texts{"no.contacts"});
}
