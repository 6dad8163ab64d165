#include "GroupScreens.h"
#include "TraceLines.h"

namespace {

class GroupForm : public GroupScreens {
protected:
    static constexpr auto SAVE = Kind::Save;
    static constexpr auto RIGHT = Kind::Right;
    static constexpr auto CLEAR = Kind::Clear;
    static constexpr auto CLEAR_ALL = Kind::ClearAll;

    void editFamily(Bar bar = Bar::SoftKeys)
    {
        threeGroups();
        startAtGroups(bar);
        chooseFor("Family", "edit");
    }
    void newGroup(Bar bar = Bar::SoftKeys)
    {
        threeGroups();
        startAtGroups(bar);
        chooseForAll("new.group");
    }
    const DisplayAPI::FrameField& nameField() const { return host.frame->base.fields[0]; }
    const DisplayAPI::FrameField& optionField() const { return host.frame->base.fields[1]; }
    void replaceName(const std::string& name)
    {
        press(CLEAR_ALL);
        type(name);
    }
    void saveAndExit()
    {
        press(DOWN);
        press(OK);
    }
};

} // namespace

// --- The form ---

TEST_F(GroupForm, ShowsTheNameOfTheGroup)
{
    for (const auto bar : BARS) {
        editFamily(bar);
        EXPECT_EQ(current(), &groupForm());
        EXPECT_EQ(screen(), "manage.groups.form\n"
                            "> group.name: Family|\n"
                            "  option: <save.exit>\n");
        EXPECT_EQ(top().role, DisplayAPI::FrameRole::Form);
        EXPECT_EQ(nameField().kind, DisplayAPI::FrameField::Kind::Text);
        EXPECT_EQ(nameField().maxLength, 30);
        EXPECT_EQ(optionField().choices, 2);
        press(DOWN);
        press(RIGHT);
        EXPECT_EQ(optionField().value, "exit.no.save");
    }
}

TEST_F(GroupForm, StartsANewGroupWithoutAName)
{
    for (const auto bar : BARS) {
        newGroup(bar);
        EXPECT_EQ(screen(), "manage.groups.form\n"
                            "> group.name: |\n"
                            "  option: <save.exit>\n");
    }
}

TEST_F(GroupForm, StartsAtTheNameEachTime)
{
    editFamily();
    type("!");
    press(DOWN);
    press(RIGHT);
    press(OK);
    EXPECT_EQ(current(), &groupsScreen());
    chooseFor("Work", "edit");
    EXPECT_EQ(screen(), "manage.groups.form\n"
                        "> group.name: Work|\n"
                        "  option: <save.exit>\n");
}

TEST_F(GroupForm, LimitsTheName)
{
    directory.fieldSizes = "lastname=30;callgroup=4";
    newGroup();
    type("Gardening");
    EXPECT_EQ(nameField().value, "Gard");
    EXPECT_EQ(nameField().maxLength, 4);
}

TEST_F(GroupForm, AsksForTheLimitOnce)
{
    editFamily();
    press(BACK);
    chooseFor("Work", "edit");
    EXPECT_EQ(directory.fieldSizeReads, 1);
    EXPECT_EQ(nameField().maxLength, 30);
}

TEST_F(GroupForm, HasNoLimitAsLongAsNoneIsKnown)
{
    directory.fieldSizes = "lastname=30";
    testing::internal::CaptureStdout();
    newGroup();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Error - didn't find field callgroup in the field size vector\n");
    EXPECT_EQ(nameField().maxLength, -1);
    type("A name of more than the usual thirty characters");
    EXPECT_EQ(nameField().value.size(), 47u);
    saveAndExit();
    EXPECT_EQ(screen(), "! changes.saved\n");
    press(OK);

    directory.fieldSizes = "callgroup=7";
    chooseForAll("new.group");
    EXPECT_EQ(nameField().maxLength, 7);
}

TEST_F(GroupForm, HasNoLimitWithoutADirectoryService)
{
    threeGroups();
    startAtGroups();
    context().m_pDirectoryService = nullptr;
    chooseFor("Family", "edit");
    EXPECT_EQ(errors(),
              Texts{"Phonebook couldn't contact the directory service to obtain max field length\n"});
    EXPECT_EQ(nameField().maxLength, -1);
    EXPECT_EQ(nameField().value, "Family");
}

TEST_F(GroupForm, KeepsTheTab)
{
    editFamily();
    EXPECT_FALSE(groupForm().tabValid(&context()));
    phonelet().tab();
    host.settle();
    EXPECT_EQ(current(), &groupForm());
    EXPECT_EQ(title(), "manage.groups.form");
}

// --- Saving ---

TEST_F(GroupForm, RenamesAGroup)
{
    for (const auto bar : BARS) {
        editFamily(bar);
        directory.groupStores = 0;
        replaceName("Relatives");
        saveAndExit();
        EXPECT_EQ(directory.groupStores, 1);
        EXPECT_EQ(storedName(3), "Relatives");
        EXPECT_EQ(storedName(6), "Work");
        EXPECT_TRUE(log.has("Editing group - group list updated successfully", 5));
        EXPECT_EQ(errors(), Texts{});
        EXPECT_EQ(screen(), "! changes.saved\n");
        EXPECT_EQ(top().type, 1);
        EXPECT_EQ(current(), &groupForm());
        wait(2999ms);
        EXPECT_EQ(current(), &groupForm());
        wait(1ms);
        EXPECT_EQ(current(), &groupsScreen());
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(rows(), bar == Bar::SoftKeys
                              ? (Texts{COPIED, "Relatives", "Work", "no.group"})
                              : (Texts{"list.options", COPIED, "Relatives", "Work", "no.group"}));
    }
}

TEST_F(GroupForm, PutsANewGroupIntoTheFirstSpareSlot)
{
    for (const auto bar : BARS) {
        directory.groups->makeSpare(2);
        newGroup(bar);
        type("Friends");
        saveAndExit();
        press(OK);
        EXPECT_EQ(storedName(2), "Friends");
        EXPECT_EQ(rows().back(), "no.group");
        selectRow("Friends");
        press(MENU);
        EXPECT_EQ(context().m_SelectedGroupIndex, 2);
        press(BACK);
    }
}

TEST_F(GroupForm, TakesTheLastSpareSlot)
{
    threeGroups();
    fillAllGroups();
    directory.groups->makeSpare(20);
    startAtGroups();
    chooseForAll("new.group");
    type("Last");
    saveAndExit();
    press(OK);
    EXPECT_EQ(storedName(20), "Last");
    openMenuOf("Last");
    EXPECT_EQ(context().m_SelectedGroupIndex, 20);
    EXPECT_EQ(rows(), (Texts{"view", "edit", "delete", "delete.all.groups"}));
}

TEST_F(GroupForm, SavesBehindAProgressMessage)
{
    editFamily();
    std::string seen;
    directory.whileBusy = [&] { seen = screen() + std::to_string(top().type); };
    saveAndExit();
    EXPECT_EQ(seen, "~ saving.changes\n1");
    EXPECT_EQ(popups(), 1u); // the notification only
}

TEST_F(GroupForm, SavesWithTheSaveKey)
{
    editFamily();
    replaceName("Relatives");
    press(SAVE);
    EXPECT_EQ(screen(), "! changes.saved\n");
    EXPECT_EQ(storedName(3), "Relatives");
    EXPECT_EQ(groupForm().saveEvent(&context(), nullptr, &context().m_PopupConfirm), &groupForm());
    EXPECT_EQ(directory.groupStores, 1);
}

TEST_F(GroupForm, SavesTheLetterThatIsStillPending)
{
    newGroup();
    host.tap("2");
    press(SAVE);
    EXPECT_EQ(storedName(2), "A");
}

TEST_F(GroupForm, SavesTheNameWithoutTheBlanksAroundIt)
{
    newGroup();
    type("  Old  friends ");
    saveAndExit();
    EXPECT_EQ(storedName(2), "Old  friends");
}

TEST_F(GroupForm, SavesANameThatDidNotChange)
{
    editFamily();
    directory.groupStores = 0;
    saveAndExit();
    EXPECT_EQ(screen(), "! changes.saved\n");
    EXPECT_EQ(directory.groupStores, 1);
}

TEST_F(GroupForm, SavesNothingForOkOnTheName)
{
    editFamily();
    replaceName("Relatives");
    press(OK);
    EXPECT_FALSE(log.has("PhonebookStateEditGroup::okEvent()"));
    EXPECT_EQ(groupForm().okEvent(&context(), nullptr, display().getCurrent()), &groupForm());
    press(DOWN);
    EXPECT_EQ(groupForm().okEvent(&context(), nullptr, &context().m_PopupConfirm), &groupForm());
    host.settle();
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(storedName(3), "Family");
}

TEST_F(GroupForm, ExitsWithoutSaving)
{
    for (const auto bar : BARS) {
        editFamily(bar);
        directory.groupStores = 0;
        replaceName("Relatives");
        press(DOWN);
        press(RIGHT);
        press(OK);
        EXPECT_EQ(current(), &groupsScreen());
        EXPECT_EQ(directory.groupStores, 0);
        EXPECT_TRUE(rows() == (Texts{COPIED, "Family", "Work", "no.group"}) ||
                    rows() == (Texts{"list.options", COPIED, "Family", "Work", "no.group"}));
        chooseFor("Family", "edit");
        EXPECT_EQ(nameField().value, "Family");
    }
}

// --- What cannot be saved ---

TEST_F(GroupForm, RefusesANameOfNothingOrBlanks)
{
    for (const auto bar : BARS) {
        for (const auto* name : {"", " ", "    "}) {
            editFamily(bar);
            directory.groupStores = 0;
            replaceName(name);
            saveAndExit();
            EXPECT_EQ(screen(), "! PBerror.no.group.name\n");
            EXPECT_EQ(top().type, 2);
            EXPECT_EQ(directory.groupStores, 0);
            EXPECT_EQ(groups().findGroup("Family"), 3);
            wait(2999ms);
            EXPECT_EQ(popups(), 1u);
            wait(1ms);
            EXPECT_EQ(popups(), 0u);
            EXPECT_EQ(current(), &groupForm());
            EXPECT_TRUE(nameField().focused);
            EXPECT_EQ(nameField().value, name);
        }
    }
}

TEST_F(GroupForm, KeepsTheNameOfAGroupThatCannotBeWritten)
{
    for (const auto bar : BARS) {
        editFamily(bar);
        directory.storesGroups = false;
        replaceName("Relatives");
        saveAndExit();
        EXPECT_EQ(errors(), Texts{"Editing group - failed to write group list"});
        EXPECT_FALSE(log.has("Editing group - group list updated successfully"));
        EXPECT_EQ(screen(), "! PBerror.group.write.failure\n");
        EXPECT_EQ(top().type, 2);
        press(OK);
        EXPECT_EQ(current(), &groupForm());
        EXPECT_TRUE(nameField().focused);
        EXPECT_EQ(nameField().value, "Relatives");

        directory.storesGroups = true;
        saveAndExit();
        EXPECT_EQ(screen(), "! changes.saved\n");
        EXPECT_EQ(storedName(3), "Relatives");
        log.clear();
    }
}

TEST_F(GroupForm, ShowsNoNameThatWasNotWritten)
{
    threeGroups();
    member("Adams", 3);
    startAtGroups();
    chooseFor("Family", "view");
    openGroups();
    directory.storesGroups = false;
    chooseFor("Family", "edit");
    replaceName("Relatives");
    press(SAVE);
    press(OK);
    press(BACK); // it was told that it is not saved
    EXPECT_EQ(current(), &groupsScreen());
    chooseForAll("new.group");
    type("Club");
    press(SAVE);
    press(OK);
    press(BACK);
    // The rows, and what they stand for, are what the store has.
    EXPECT_EQ(rows(), (Texts{COPIED, "Family", "Work", "no.group"}));
    openMenuOf("Work");
    EXPECT_EQ(context().m_SelectedGroupIndex, 6);
    press(BACK);
    press(BACK);
    EXPECT_EQ(title(), "Family");
}

TEST_F(GroupForm, FailsToSaveWithoutADirectoryService)
{
    editFamily();
    context().m_pDirectoryService = nullptr;
    press(SAVE);
    EXPECT_EQ(screen(), "! PBerror.group.write.failure\n");
}

TEST_F(GroupForm, WritesNothingForASlotThatDoesNotExist)
{
    threeGroups();
    startAtGroups();
    chooseFor("Family", "edit");
    press(BACK);
    directory.groupStores = 0;
    context().m_SelectedGroupIndex = 21;
    groupForm().enterStateEvent(&context());
    mode().getEventContext()->m_pCurrentState = &groupForm();
    host.settle();
    EXPECT_EQ(nameField().value, ""); // not the one that was edited before
    type("Nowhere");
    press(SAVE);
    EXPECT_EQ(directory.groupStores, 0);
    EXPECT_EQ(screen(), "! changes.saved\n");
    EXPECT_EQ(groups().findGroup("Family"), 3);
    EXPECT_EQ(groups().findGroup("Nowhere"), -1);
}

// --- Back ---

TEST_F(GroupForm, IsLeftWithBackWhileNothingChanged)
{
    for (const auto bar : BARS) {
        editFamily(bar);
        press(BACK);
        EXPECT_EQ(current(), &groupsScreen());
        EXPECT_EQ(popups(), 0u);
        chooseFor("Family", "edit");
        type("!  ");
        press(CLEAR);
        press(CLEAR);
        press(CLEAR);
        type("  ");
        press(BACK);
        EXPECT_EQ(current(), &groupsScreen());
        chooseForAll("new.group");
        type("  ");
        press(BACK);
        EXPECT_EQ(current(), &groupsScreen());
        EXPECT_EQ(directory.groupStores, 0);
    }
}

TEST_F(GroupForm, AsksBeforeChangesAreLost)
{
    for (const auto bar : BARS) {
        editFamily(bar);
        replaceName("Relatives");
        press(BACK);
        EXPECT_EQ(current(), &groupForm());
        EXPECT_EQ(top().text, "save.changes.prompt");
        EXPECT_EQ(top().role, DisplayAPI::FrameRole::Question);
        EXPECT_EQ(top().state, 1);
        EXPECT_EQ(commands(), (Texts{"save", "do.not.save"}));
        choose("do.not.save");
        EXPECT_EQ(current(), &groupsScreen());
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(directory.groupStores, 0);
        EXPECT_EQ(groups().findGroup("Family"), 3);
    }
}

TEST_F(GroupForm, AsksBeforeAnEmptiedNameIsLost)
{
    editFamily();
    press(CLEAR_ALL);
    press(BACK);
    EXPECT_EQ(screen(), "? save.changes.prompt\n");
    choose("save");
    EXPECT_EQ(screen(), "! PBerror.no.group.name\n");
    press(OK);
    EXPECT_EQ(current(), &groupForm());
    EXPECT_TRUE(nameField().focused);
}

TEST_F(GroupForm, SavesWhenAsked)
{
    for (const auto bar : BARS) {
        editFamily(bar);
        replaceName("Relatives");
        press(BACK);
        choose("save");
        EXPECT_EQ(screen(), "! changes.saved\n");
        EXPECT_EQ(popups(), 1u); // the question is gone
        EXPECT_EQ(storedName(3), "Relatives");
        press(OK);
        EXPECT_EQ(current(), &groupsScreen());
        EXPECT_EQ(rows().at(bar == Bar::None ? 2 : 1), "Relatives");
    }
}

TEST_F(GroupForm, TellsWhenItCannotSaveWhatItAsked)
{
    editFamily();
    directory.storesGroups = false;
    replaceName("Relatives");
    press(BACK);
    choose("save");
    EXPECT_EQ(screen(), "! PBerror.group.write.failure\n");
    EXPECT_EQ(popups(), 1u);
    press(OK);
    EXPECT_EQ(current(), &groupForm());
    EXPECT_EQ(nameField().value, "Relatives");
}

TEST_F(GroupForm, ReturnsToTheFormFromTheQuestionAndAsksAgain)
{
    editFamily();
    replaceName("Relatives");
    for (int times = 0; times < 2; ++times) {
        press(BACK);
        EXPECT_EQ(screen(), "? save.changes.prompt\n");
        press(BACK);
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(current(), &groupForm());
        EXPECT_EQ(nameField().value, "Relatives");
    }
    press(SAVE);
    EXPECT_EQ(storedName(3), "Relatives");
}

TEST_F(GroupForm, IgnoresBackFromElsewhere)
{
    editFamily();
    type("!");
    EXPECT_EQ(groupForm().backEvent(&context(), nullptr, &context().m_ContextMenu), &groupForm());
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(GroupForm, TakesItsPopupsAlong)
{
    editFamily();
    const auto leave = [&] {
        groupForm().exitStateEvent(&context());
        host.settle();
        EXPECT_EQ(popups(), 0u);
    };
    type("!");
    press(BACK);
    leave();
    directory.storesGroups = false;
    press(SAVE);
    leave();
    directory.storesGroups = true;
    press(SAVE);
    leave();
}

TEST_F(GroupForm, LogsWhatItDoesNotKnow)
{
    editFamily();
    DisplayAPI::MenuCommand unknown(DisplayAPI::TranslationInfo::plain("unknown"));
    EXPECT_EQ(groupForm().screenEvent(&context(), &unknown, &context().m_ContextMenu), &groupForm());
    EXPECT_EQ(log.count(" - unrecognised widget\n", 3), 1);
    type("!");
    press(BACK);
    EXPECT_EQ(groupForm().screenEvent(&context(), &unknown, display().getCurrent()), &groupForm());
    EXPECT_EQ(log.count(" - unhandled event on popup\n", 3), 1);
    EXPECT_EQ(screen(), "? save.changes.prompt\n");
    EXPECT_EQ(directory.groupStores, 0);
}

TEST_F(GroupForm, TracesItsOperations)
{
    start();
    auto* pContext = &context();
    auto& screen = groupForm();
    auto* pOther = &pContext->m_PopupNotification;
    expectTraces("PhonebookStateEditGroup",
                 {{"exitStateEvent", [&] { screen.exitStateEvent(pContext); }},
                  {"enterStateEvent", [&] { screen.enterStateEvent(pContext); }},
                  {"backEvent", [&] { screen.backEvent(pContext, nullptr, pOther); }},
                  {"okEvent", [&] { screen.okEvent(pContext, nullptr, pOther); }},
                  {"saveEvent", [&] { screen.saveEvent(pContext, nullptr, pOther); }},
                  {"screenEvent", [&] { screen.screenEvent(pContext, nullptr, pOther); }}});
}
