#include "PhonebookScreens.h"

#include <framework/display/ExclusiveList.h>

#include "TraceLines.h"

namespace {

class NameFormats : public PhonebookScreens {
protected:
    PhonebookStateDisplayOptions& state() { return context().m_DisplayOptions; }
    PhonebookStateBase* current() { return mode().getCurrentState(); }
    DisplayAPI::SearchList& names() { return *context().m_pDisplayList; }

    void threeContacts()
    {
        contact("Adams", "Zoe", {{"Office", "100"}});
        contact("Baker", "Mia", {{"Mobile", "102"}});
        contact("Clark", "Amy", {{"Private", "103"}});
    }
    // From the list, whichever row is selected there.
    void openNameFormats()
    {
        if (!context().m_HasSoftKeyBar)
            names().setSelectedIndex(0); // the options row
        press(MENU);
        choose("display");
    }
    // Opens them, moves to the row, and leaves with Back.
    void chooseFormat(int row)
    {
        openNameFormats();
        state().getListItem()->setSelectedIndex(row);
        press(BACK);
    }
    int storedMode() { return directory.options["DisplayOptions"]; }
};

const std::vector<std::vector<std::string>> nNAMES{{"Adams, Zoe", "Baker, Mia", "Clark, Amy"},
                                                   {"Amy Clark", "Mia Baker", "Zoe Adams"},
                                                   {"Adams, Z", "Baker, M", "Clark, A"},
                                                   {"A Clark", "M Baker", "Z Adams"}};

} // namespace

TEST_F(NameFormats, OffersFourWaysToWriteAName)
{
    threeContacts();
    start();
    openNameFormats();
    EXPECT_EQ(current(), &state());
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::ExclusiveList);
    EXPECT_EQ(title(), "display.options");
    EXPECT_EQ(rows(), (Texts{"lastname.firstname", "firstname.lastname", "lastname.f", "f.lastname"}));
    EXPECT_FALSE(host.frame->tabs.empty());
    EXPECT_EQ(context().m_pTabScreen->getCurrentDisplayable(), state().getListItem());
    EXPECT_FALSE(top().waiting);
}

TEST_F(NameFormats, StandsByItselfWithoutTabs)
{
    threeContacts();
    start();
    while (context().m_pTabScreen->numberOfTabs() > 0)
        context().m_pTabScreen->removeTab(0);
    state().enterStateEvent(&context());
    host.settle();
    EXPECT_EQ(display().getCurrent(), state().getListItem());
}

TEST_F(NameFormats, BuildsItsRowsOnce)
{
    threeContacts();
    start();
    EXPECT_EQ(state().getListItem(), nullptr);
    openNameFormats();
    const auto* pRows = state().getListItem();
    press(BACK);
    openNameFormats();
    EXPECT_EQ(state().getListItem(), pRows);
    EXPECT_EQ(rows().size(), 4u);
}

TEST_F(NameFormats, BeginsAtTheFormatInUse)
{
    threeContacts();
    for (int mode = 0; mode < 4; ++mode) {
        directory.options["DisplayOptions"] = mode;
        start();
        openNameFormats();
        EXPECT_TRUE(top().rows[static_cast<std::size_t>(mode)].selected) << mode;
        press(BACK);
    }
}

TEST_F(NameFormats, BeginsAtTheFirstForAFormatThatIsNone)
{
    threeContacts();
    start();
    for (const int mode : {4, -1}) {
        openNameFormats();
        press(DOWN);
        press(OK);
        list().setDisplayMode(static_cast<displayMode>(mode));
        openNameFormats();
        EXPECT_TRUE(top().rows[0].selected) << mode;
        press(BACK);
        EXPECT_EQ(list().getDisplayMode(), static_cast<displayMode>(mode)); // nothing was chosen
    }
}

TEST_F(NameFormats, BeginsAtTheFormatInUseAgainAfterAChoiceThatWasDropped)
{
    threeContacts();
    start();
    openNameFormats();
    press(DOWN);
    press(OK);
    openNameFormats();
    EXPECT_TRUE(top().rows[0].selected);
}

// --- Back applies, OK does not ---

TEST_F(NameFormats, WritesTheNamesAsChosenWhenTheUserGoesBack)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        threeContacts();
        directory.options.clear();
        start(bar);
        for (const int mode : {1, 2, 3, 0, 3, 1, 0, 2}) {
            directory.optionWrites.clear();
            chooseFormat(mode);
            EXPECT_EQ(current(), &context().m_ViewingList);
            EXPECT_EQ(list().getDisplayMode(), static_cast<displayMode>(mode));
            EXPECT_EQ(directory.optionWrites,
                      (std::vector<std::pair<std::string, int>>{{"DisplayOptions", mode}}));
            auto names = nNAMES[static_cast<std::size_t>(mode)];
            if (bar == Bar::None)
                names.insert(names.begin(), "list.options");
            EXPECT_EQ(rows(), names) << mode;
        }
    }
}

TEST_F(NameFormats, LeavesTheListAloneWithoutAChoice)
{
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openNameFormats();
        names().append(new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("a mark"), 1));
        press(DOWN);
        press(UP);
        press(BACK);
        EXPECT_EQ(current(), &context().m_ViewingList);
        EXPECT_EQ(names().getText(names().size() - 1), "a mark");
        EXPECT_EQ(directory.optionWrites.size(), 0u);
    }
}

TEST_F(NameFormats, DropsTheChoiceWithOk)
{
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        const auto before = rows();
        openNameFormats();
        press(DOWN);
        press(OK);
        EXPECT_EQ(current(), &context().m_ViewingList);
        EXPECT_EQ(rows(), before);
        EXPECT_EQ(list().getDisplayMode(), displayMode::SurnameFirstname);
        EXPECT_EQ(directory.optionWrites.size(), 0u);
    }
}

TEST_F(NameFormats, KeepsTheTabWhileItIsShown)
{
    threeContacts();
    start();
    openNameFormats();
    EXPECT_FALSE(state().tabValid(&context()));
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(mode().isLocalTabActive());
    EXPECT_EQ(current(), &state());
    EXPECT_EQ(title(), "display.options");
}

// --- What becomes of the rows ---

TEST_F(NameFormats, RelabelsTheRowsInPlaceBehindTheOptionsRow)
{
    threeContacts();
    start(Bar::None);
    names().setSelectedIndex(2);
    press(MENU); // of an entry
    press(BACK);
    context().m_DisplayOptions.enterStateEvent(&context());
    names().setSelectedIndex(2);
    state().getListItem()->setSelectedIndex(1);
    const auto id = names().id();
    EXPECT_EQ(state().backEvent(&context(), nullptr, nullptr), &context().m_ViewingList);
    EXPECT_EQ(names().id(), id);
    EXPECT_EQ(names().getSelectedIndex(), 2);
    context().m_ViewingList.enterStateEvent(&context());
    host.settle();
    EXPECT_EQ(rows(), (Texts{"list.options", "Amy Clark", "Mia Baker", "Zoe Adams"}));
    EXPECT_EQ(icons(), (std::vector<int>{0, 2, 5, 3}));
    EXPECT_TRUE(top().rows[2].selected);
}

TEST_F(NameFormats, BuildsTheRowsAnewWithSoftKeys)
{
    threeContacts();
    start();
    names().setSelectedIndex(2);
    openNameFormats();
    press(DOWN);
    EXPECT_EQ(state().backEvent(&context(), nullptr, nullptr), &context().m_ViewingList);
    EXPECT_EQ(names().size(), 0); // forgotten
    context().m_ViewingList.enterStateEvent(&context());
    host.settle();
    EXPECT_EQ(rows(), (Texts{"Amy Clark", "Mia Baker", "Zoe Adams"}));
    EXPECT_EQ(icons(), (std::vector<int>{2, 5, 3}));
}

TEST_F(NameFormats, BuildsRowsAnewThatAreNotThoseOfTheEntries)
{
    threeContacts();
    start(Bar::None);
    state().enterStateEvent(&context());
    names().append(new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain("one too many"), 1));
    state().getListItem()->setSelectedIndex(3);
    state().backEvent(&context(), nullptr, nullptr);
    EXPECT_EQ(names().size(), 0);
    context().m_ViewingList.enterStateEvent(&context());
    host.settle();
    EXPECT_EQ(rows(), (Texts{"list.options", "A Clark", "M Baker", "Z Adams"}));
}

TEST_F(NameFormats, ClearsTheListOfAnEmptyPhonebook)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.options.clear();
        start(bar);
        state().enterStateEvent(&context());
        state().getListItem()->setSelectedIndex(2);
        EXPECT_EQ(state().backEvent(&context(), nullptr, nullptr), &context().m_ViewingList);
        EXPECT_EQ(names().size(), 0);
        EXPECT_EQ(storedMode(), 2);
        context().m_ViewingList.enterStateEvent(&context());
        host.settle();
        EXPECT_EQ(rows(), Texts{bar == Bar::SoftKeys ? "no.contacts" : "list.options"});
    }
}

TEST_F(NameFormats, GivesEveryRowTheIconOfItsDefaultNumber)
{
    contact("A", "1", {{"Office", "1"}});
    contact("B", "2", {{"Office2", "1"}});
    contact("C", "3", {{"Mobile", "1"}});
    contact("D", "4", {{"Private", "1"}});
    contact("E", "5");
    start(Bar::None);
    chooseFormat(2);
    EXPECT_EQ(rows(), (Texts{"list.options", "A, 1", "B, 2", "C, 3", "D, 4", "E, 5"}));
    EXPECT_EQ(icons(), (std::vector<int>{0, 3, 4, 5, 2, 0}));
}

TEST_F(NameFormats, WritesTheQualifierBehindNamesAsTheListDoes)
{
    contact("Adams", "Zoe", {{"Office", "100"}});
    start(Bar::None);
    list().setDisplayQualifier(displayQualifier::Company);
    chooseFormat(1);
    EXPECT_EQ(rows(), (Texts{"list.options", "Zoe Adams"})); // local names bear none
}

TEST_F(NameFormats, AppliesToTheGroupThatIsShown)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        directory.options.clear();
        directory.groups->updateGroup({3, "Friends"});
        directory.add("Adams", "Zoe", "", "", "3");
        directory.add("Baker", "Mia", "", "", "3");
        directory.add("Clark", "Amy");
        start(bar);
        showGroup(3);
        chooseFormat(1);
        EXPECT_EQ(rows().back(), "Zoe Adams");
        EXPECT_EQ(rows().size(), bar == Bar::None ? 3u : 2u);
        EXPECT_EQ(title(), "Friends");
        EXPECT_EQ(list().getGroupIndication(), 3);
    }
}

TEST_F(NameFormats, WaitsVisiblyWhileTheNamesAreSorted)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        directory.options.clear();
        threeContacts();
        start(bar);
        openNameFormats();
        press(DOWN);
        bool waited = false;
        directory.whileBusy = [&] { waited = host.frame->base.waiting; };
        press(BACK);
        EXPECT_TRUE(waited);
        EXPECT_FALSE(top().waiting);
        directory.whileBusy = nullptr;
        openNameFormats();
        EXPECT_FALSE(top().waiting);
    }
}

TEST_F(NameFormats, GoesOnWithoutADirectoryService)
{
    telephone.services.erase("DirectoryServiceIfc");
    start();
    state().enterStateEvent(&context());
    state().getListItem()->setSelectedIndex(3);
    EXPECT_EQ(state().backEvent(&context(), nullptr, nullptr), &context().m_ViewingList);
    EXPECT_EQ(list().getDisplayMode(), displayMode::InitialSurname);
}

TEST_F(NameFormats, AppliesAFormatThatCannotBeStored)
{
    threeContacts();
    start();
    directory.optionResult = 1;
    chooseFormat(1);
    EXPECT_EQ(rows(), nNAMES[1]);
}

TEST_F(NameFormats, TracesItsOperations)
{
    threeContacts();
    start();
    auto* pContext = &context();
    auto& screen = state();
    expectTraces("PhonebookStateDisplayOptions",
                 {{"enterStateEvent", [&] { screen.enterStateEvent(pContext); }},
                  {"backEvent", [&] { screen.backEvent(pContext, nullptr, nullptr); }},
                  {"okEvent", [&] { screen.okEvent(pContext, nullptr, nullptr); }},
                  {"exitStateEvent", [&] { screen.exitStateEvent(pContext); }},
                  {"constructDisplayList", [&] { screen.constructDisplayList(pContext); }},
                  {"getListItem", [&] { screen.getListItem(); }}});
}
