#include "ContactFormScreens.h"

namespace {

class ContactFormSaving : public ContactFormScreens {
protected:
    void threeContacts()
    {
        contact("Adams", "Amy", {{"Office", "100"}});
        contact("Baker", "Bob", {{"Mobile", "200"}});
        contact("Clark", "Cara");
    }
    // The list's rows, whatever is over them.
    Texts listRows()
    {
        Texts texts;
        for (int row = 0; row < context().m_pDisplayList->size(); ++row)
            texts.push_back(context().m_pDisplayList->getText(row));
        return texts;
    }
    int selectedRow() { return context().m_pDisplayList->getSelectedIndex(); }
    // What was written last.
    std::string written(const std::string& element)
    {
        for (auto request = directory.requests.rbegin(); request != directory.requests.rend(); ++request) {
            if (request->find("write_request") != std::string::npos)
                return FakeDirectoryService::element(*request, element);
        }
        return "nothing was written";
    }
    int writes()
    {
        return static_cast<int>(std::ranges::count_if(directory.requests, [](const std::string& request) {
            return request.find("write_request") != std::string::npos;
        }));
    }
};

} // namespace

// --- Saving ---

TEST_F(ContactFormSaving, WritesEveryFieldOfANewContact)
{
    configuration.clips = {"clips/amy.png"};
    directory.groups->updateGroup({3, "Friends"});
    start();
    openNew();
    const std::vector<std::pair<std::string, std::string>> typed{
        {"last.name", "Young"}, {"first.name", "Yan"},     {"business1", "11"},    {"business2", "22"},
        {"mobile", "33"},       {"private", "44"},         {"company", "Acme"},    {"address", "Lane 1"},
        {"address2", "London"}, {"job.function", "Clerk"}, {"email", "y@young.uk"}};
    for (const auto& [label, text] : typed)
        fill(label, text);
    pick("default.no", "mobile");
    pick("groups.form", "Friends");
    pick("picture", "amy");
    press(SAVE);

    EXPECT_EQ(screen(), SAVED);
    EXPECT_EQ(top().type, 1);
    const Fields expected{{"Surname", "Young"},     {"Firstname", "Yan"},    {"Office", "11"},
                          {"Office2", "22"},        {"Mobile", "33"},        {"Private", "44"},
                          {"Company", "Acme"},      {"Address", "Lane 1"},   {"Address2", "London"},
                          {"JobFunction", "Clerk"}, {"Email", "y@young.uk"}, {"Group", "3"},
                          {"DefaultNumber", "3"},   {"Picture", "amy.png"},  {"ExternalID", ""}};
    EXPECT_EQ(newest(), expected);
    EXPECT_TRUE(inForm());
    wait(2999ms);
    EXPECT_TRUE(inForm());
    wait(1ms);
    EXPECT_TRUE(inList());
    EXPECT_EQ(rows(), Texts{"Young, Yan"});
    EXPECT_EQ(icons(), std::vector<int>{5});
}

TEST_F(ContactFormSaving, StoresWhichNumberIsTheDefault)
{
    const auto id =
        contact("Adams", "", {{"Office", "1"}, {"Office2", "2"}, {"Mobile", "3"}, {"Private", "4"}});
    start();
    const std::vector<std::pair<std::string, std::string>> codes{
        {"business2", "2"}, {"mobile", "3"}, {"private", "4"}, {"business1", "1"}};
    const std::vector<int> rowIcons{4, 5, 2, 3};
    for (std::size_t i = 0; i < codes.size(); ++i) {
        openDetails();
        pick("default.no", codes[i].first);
        press(SAVE);
        EXPECT_EQ(record(id).at("DefaultNumber"), codes[i].second);
        wait(3000ms);
        EXPECT_EQ(icons(), std::vector<int>{rowIcons[i]});
    }
    openDetails();
    for (const auto& [label, code] : codes)
        fill(label, "");
    press(SAVE);
    EXPECT_EQ(record(id).at("DefaultNumber"), "0");
    wait(3000ms);
    EXPECT_EQ(icons(), std::vector<int>{0});
}

TEST_F(ContactFormSaving, WritesTextsWithoutTheBlanksAroundThem)
{
    start();
    openNew();
    fill("last.name", "  van  Dyke ");
    fill("first.name", " Amy");
    fill("company", "Acme  ");
    press(SAVE);
    EXPECT_EQ(newest().at("Surname"), "van  Dyke");
    EXPECT_EQ(newest().at("Firstname"), "Amy");
    EXPECT_EQ(newest().at("Company"), "Acme");
}

TEST_F(ContactFormSaving, SavesWithTheFirstOptionToo)
{
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openDetails(2);
        fill("company", bar == Bar::None ? "Acme" : "Beta");
        focus("form.options");
        press(OK);
        EXPECT_EQ(screen(), SAVED);
        EXPECT_EQ(newest().at("Company"), bar == Bar::None ? "Acme" : "Beta");
        press(OK); // closes the message
        EXPECT_TRUE(inList());
    }
}

TEST_F(ContactFormSaving, SelectsTheFirstOptionAgainAfterASave)
{
    threeContacts();
    start();
    openDetails();
    step("form.options");
    ASSERT_EQ(value("form.options"), "exit.no.save");
    press(SAVE);
    EXPECT_EQ(value("form.options"), "save.exit");
}

TEST_F(ContactFormSaving, LeavesWithoutSavingWithTheSecondOption)
{
    threeContacts();
    start();
    openDetails();
    fill("last.name", "Young");
    step("form.options");
    press(OK);
    EXPECT_TRUE(inList());
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(writes(), 0);
    EXPECT_EQ(rows()[0], "Adams, Amy");
    openDetails();
    EXPECT_EQ(value("last.name"), "Adams");
}

TEST_F(ContactFormSaving, StaysForAnOptionThatItDoesNotKnow)
{
    start();
    openNew();
    DisplayAPI::MenuCommand stranger(DisplayAPI::TranslationInfo::plain("stranger"));
    selection("form.options").setSelectedCommand(&stranger);
    press(OK);
    EXPECT_TRUE(inForm());
    EXPECT_EQ(log.count("PhonebookMode::CreatingEntry - unrecognised command on options selection field"), 1);
    EXPECT_EQ(writes(), 0);
}

TEST_F(ContactFormSaving, StaysOnOkAnywhereElse)
{
    threeContacts();
    start();
    openDetails();
    int times = 0;
    for (const auto* label : {"last.name", "company", "email", "default.no", "groups.form", "picture"}) {
        focus(label);
        press(OK);
        EXPECT_EQ(log.count("PhonebookMode::CreatingEntry - OK event on unrecognised widget"), ++times);
    }
    EXPECT_EQ(state().okEvent(&context(), nullptr, &context().m_PopupConfirm), &state());
    EXPECT_EQ(log.count("PhonebookMode::CreatingEntry - OK event on unrecognised widget"), ++times);
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(calls(), Texts{});
}

TEST_F(ContactFormSaving, SavesFromTheFormOnly)
{
    start();
    openNew();
    fill("last.name", "Young");
    EXPECT_EQ(state().saveEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().saveEvent(&context(), nullptr, &context().m_PopupDialer), &state());
    EXPECT_EQ(writes(), 0);
}

TEST_F(ContactFormSaving, ToleratesEventsBeforeItWasEverEntered)
{
    start();
    EXPECT_EQ(state().okEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().saveEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().backEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().itemStateChangedEvent(&context(), nullptr), &state());
    CallPartyIdentifier party;
    EXPECT_FALSE(state().getDialPartyDetails(party, &context()));
}

// --- Where the contact goes in the list ---

TEST_F(ContactFormSaving, PutsANewContactInItsPlaceAndSelectsIt)
{
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openNew();
        fill("last.name", bar == Bar::None ? "Bond" : "Barnes");
        fill("private", "007");
        press(SAVE);
        const Texts expected = bar == Bar::None ? Texts{"list.options", "Adams, Amy", "Baker, Bob",
                                                        "Barnes",       "Bond",       "Clark, Cara"}
                                                : Texts{"Adams, Amy", "Baker, Bob", "Barnes", "Clark, Cara"};
        EXPECT_EQ(listRows(), expected);
        EXPECT_EQ(selectedRow(), bar == Bar::None ? 4 : 2);
        EXPECT_EQ(context().m_SelectedEntryIndex, bar == Bar::None ? 3 : 2);
        press(OK);
        EXPECT_EQ(rows(), expected);
        EXPECT_EQ(icons()[static_cast<std::size_t>(selectedRow())], 2);
        EXPECT_EQ(host.frame->base.rows[static_cast<std::size_t>(selectedRow())].selected, true);
    }
}

TEST_F(ContactFormSaving, MovesARenamedContact)
{
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openDetails(bar == Bar::None ? 2 : 0); // Amy, wherever she is
        ASSERT_EQ(value("first.name"), "Amy");
        fill("last.name", bar == Bar::None ? "Aalto" : "Zander");
        press(SAVE);
        wait(3000ms);
        if (bar == Bar::None)
            EXPECT_EQ(rows(), (Texts{"list.options", "Aalto, Amy", "Baker, Bob", "Clark, Cara"}));
        else
            EXPECT_EQ(rows(), (Texts{"Baker, Bob", "Clark, Cara", "Zander, Amy"}));
        EXPECT_EQ(selectedRow(), bar == Bar::None ? 1 : 2);
        EXPECT_EQ(context().m_SelectedEntryIndex, bar == Bar::None ? 0 : 2);
        EXPECT_EQ(directory.records.size(), 3u);
    }
}

TEST_F(ContactFormSaving, ReplacesTheRowThatSaysThereAreNoContacts)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        start(bar);
        openNew();
        fill("first.name", "Amy");
        press(SAVE);
        EXPECT_EQ(listRows(), bar == Bar::None ? (Texts{"list.options", "Amy"}) : Texts{"Amy"});
        EXPECT_EQ(selectedRow(), bar == Bar::None ? 1 : 0);
    }
}

TEST_F(ContactFormSaving, WritesNamesInTheListsFormat)
{
    directory.options["DisplayOptions"] = 1;
    threeContacts();
    start();
    openDetails(2);
    fill("last.name", "Cooper");
    press(SAVE);
    EXPECT_EQ(listRows(), (Texts{"Amy Adams", "Bob Baker", "Cara Cooper"}));
}

TEST_F(ContactFormSaving, MakesTheSavedContactTheSelectedOne)
{
    threeContacts();
    start();
    openNew();
    fill("last.name", "Young");
    press(SAVE);
    const auto id = directory.records.rbegin()->first;
    EXPECT_EQ(context().m_SelectedEntry.getUniqueId(), id);
    EXPECT_EQ(context().m_SelectedEntry.getSurname(), "Young");
    wait(3000ms);
    press(MENU);
    choose("details");
    fill("first.name", "Yan");
    press(SAVE);
    EXPECT_EQ(written("UniqueID"), id);
    EXPECT_EQ(directory.records.size(), 4u);
    EXPECT_EQ(listRows().back(), "Young, Yan");
}

TEST_F(ContactFormSaving, KeepsANewContactOfAnotherGroupOutOfTheShownOne)
{
    directory.groups->updateGroup({3, "Friends"});
    directory.groups->updateGroup({4, "Family"});
    contact("Adams", "Amy");
    directory.records.begin()->second["Group"] = "3";
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        showGroup(3);
        const auto before = listRows();
        openNew();
        fill("last.name", "Young");
        pick("groups.form", "Family");
        press(SAVE);
        EXPECT_EQ(screen(), SAVED);
        EXPECT_EQ(newest().at("Surname"), "Young");
        EXPECT_EQ(newest().at("Group"), "4");
        EXPECT_EQ(listRows(), before);
        wait(3000ms);
        EXPECT_EQ(rows(), before);
    }
}

TEST_F(ContactFormSaving, PutsAnOnlyContactIntoTheShownGroup)
{
    directory.groups->updateGroup({3, "Friends"});
    start();
    showGroup(3);
    ASSERT_EQ(rows(), Texts{"no.contacts"});
    openNew();
    fill("last.name", "Young");
    press(SAVE);
    wait(3000ms);
    EXPECT_EQ(rows(), Texts{"Young"});
    EXPECT_EQ(newest().at("Group"), "3");
}

TEST_F(ContactFormSaving, TakesAContactThatLeavesTheShownGroupOutOfTheList)
{
    directory.groups->updateGroup({3, "Friends"});
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        for (auto& [id, fields] : directory.records)
            fields["Group"] = "3";
        start(bar);
        showGroup(3);
        openDetails(1);
        pick("groups.form", "no.group");
        press(SAVE);
        wait(3000ms);
        if (bar == Bar::None)
            EXPECT_EQ(rows(), (Texts{"list.options", "Adams, Amy", "Clark, Cara"}));
        else
            EXPECT_EQ(rows(), (Texts{"Adams, Amy", "Clark, Cara"}));
        EXPECT_EQ(list().size(), 2u);
    }
}

TEST_F(ContactFormSaving, SaysThatThereAreNoContactsWhenTheLastOneLeavesTheShownGroup)
{
    directory.groups->updateGroup({3, "Friends"});
    contact("Adams", "Amy");
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.begin()->second["Group"] = "3";
        start(bar);
        showGroup(3);
        openDetails();
        pick("groups.form", "no.group");
        press(SAVE);
        wait(3000ms);
        EXPECT_EQ(rows(), Texts{bar == Bar::None ? "list.options" : "no.contacts"});
    }
}

TEST_F(ContactFormSaving, KeepsTheIdFromOutside)
{
    const auto id = contact("Adams", "Amy", {{"ExternalID", "ext-7"}});
    start();
    openDetails();
    fill("company", "Acme");
    press(SAVE);
    EXPECT_EQ(record(id).at("ExternalID"), "ext-7");
    EXPECT_EQ(written("UniqueID"), id);
}

TEST_F(ContactFormSaving, GivesANewContactNobodyElsesIdFromOutside)
{
    contact("Adams", "Amy", {{"ExternalID", "ext-7"}});
    start();
    openDetails();
    press(BACK);
    openNew();
    fill("last.name", "Young");
    press(SAVE);
    EXPECT_EQ(written("Surname"), "Young");
    EXPECT_EQ(written("ExternalID"), "");
}

// --- What cannot be saved ---

TEST_F(ContactFormSaving, WantsAName)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openNew();
        fill("mobile", "0170 1");
        press(SAVE);
        EXPECT_EQ(screen(), "! PBerror.name\n");
        EXPECT_EQ(top().type, 2);
        EXPECT_EQ(digits.provider, nullptr);
        EXPECT_EQ(writes(), 0);
        wait(2999ms);
        EXPECT_EQ(popups(), 1u);
        wait(1ms);
        EXPECT_EQ(popups(), 0u);
        EXPECT_TRUE(inForm());
        EXPECT_EQ(focused(), "last.name");
        EXPECT_EQ(value("mobile"), "01701"); // numbers have no blanks
        EXPECT_EQ(digits.provider, &mode());
    }
}

TEST_F(ContactFormSaving, TakesANameOfBlanksAsItIs)
{
    start();
    openNew();
    fill("last.name", "  ");
    press(SAVE);
    EXPECT_EQ(screen(), SAVED);
    EXPECT_EQ(newest().at("Surname"), "  ");
}

TEST_F(ContactFormSaving, SaysWhatWentWrongAndKeepsWhatWasTyped)
{
    const std::vector<std::pair<std::string, std::string>> failures{
        {"Not enough memory", "! PBerror.dbOutOfSpace\n"}, {"read only", "! PBerror.dbWrite\n"}};
    threeContacts();
    for (const auto& [failure, message] : failures) {
        for (const bool isNew : {true, false}) {
            start();
            const auto before = directory.records;
            if (isNew)
                openNew();
            else
                openDetails(1);
            fill("last.name", "Young");
            fill("company", "Acme");
            directory.failure = failure;
            for (int times = 0; times < 2; ++times) {
                press(SAVE);
                EXPECT_EQ(screen(), message);
                EXPECT_EQ(top().type, 2);
                press(OK);
                EXPECT_EQ(popups(), 0u);
                EXPECT_TRUE(inForm());
                EXPECT_EQ(focused(), "company");
                EXPECT_EQ(value("last.name"), "Young");
                EXPECT_EQ(value("company"), "Acme");
                EXPECT_EQ(digits.provider, &mode());
                EXPECT_EQ(listRows(), (Texts{"Adams, Amy", "Baker, Bob", "Clark, Cara"}));
            }
            EXPECT_EQ(directory.records, before);
            directory.failure.clear();
            press(SAVE);
            EXPECT_EQ(screen(), SAVED);
            directory.records = before;
        }
    }
}

TEST_F(ContactFormSaving, SaysThatItCannotSaveWithoutADirectoryService)
{
    telephone.services.erase("DirectoryServiceIfc");
    testing::internal::CaptureStdout();
    start();
    openNew();
    testing::internal::GetCapturedStdout();
    fill("last.name", "Young");
    press(SAVE);
    EXPECT_EQ(screen(), "! PBerror.dbWrite\n");
    wait(3000ms);
    EXPECT_EQ(value("last.name"), "Young");
}

TEST_F(ContactFormSaving, SaysThatASavedContactCannotBeFoundInTheList)
{
    threeContacts();
    start();
    openDetails(1);
    fill("last.name", "Young");
    directory.answer = "<Schema name=\"PhoneBook\"><ReasonForMessage>write_response</ReasonForMessage>"
                       "<Entry><UniqueID>another</UniqueID></Entry></Schema>";
    press(SAVE);
    EXPECT_EQ(screen(), "! PBerror.noIndex\n");
    wait(3000ms);
    EXPECT_TRUE(inForm());
    EXPECT_EQ(value("last.name"), "Young");
}

TEST_F(ContactFormSaving, WritesAContactAgainThatWasDeletedMeanwhile)
{
    threeContacts();
    start();
    openDetails(1);
    const auto id = context().m_SelectedEntry.getUniqueId();
    directory.records.erase(id);
    fill("company", "Acme");
    press(SAVE);
    EXPECT_EQ(screen(), SAVED);
    EXPECT_EQ(record(id).at("Surname"), "Baker");
    EXPECT_EQ(listRows(), (Texts{"Adams, Amy", "Baker, Bob", "Clark, Cara"}));
}

// --- Back ---

TEST_F(ContactFormSaving, LeavesAtOnceWhenNothingWasChanged)
{
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        for (int entry = 0; entry < 3; ++entry) {
            openDetails(entry);
            log.clear();
            press(BACK);
            EXPECT_TRUE(inList());
            EXPECT_EQ(popups(), 0u);
            EXPECT_EQ(log.count("No changes made", 5), 1);
            EXPECT_FALSE(log.has("Changes made"));
        }
        openNew();
        press(BACK);
        EXPECT_TRUE(inList());
    }
}

TEST_F(ContactFormSaving, TakesBlanksAtTheEndsForNoChange)
{
    threeContacts();
    start();
    openDetails();
    focus("last.name");
    type("  ");
    press(BACK);
    EXPECT_TRUE(inList());
}

TEST_F(ContactFormSaving, TakesBlanksInAnEmptyFieldForAChange)
{
    threeContacts();
    start();
    openDetails();
    fill("company", " ");
    press(BACK);
    EXPECT_TRUE(inForm());
    EXPECT_EQ(popups(), 1u);
}

TEST_F(ContactFormSaving, AsksBeforeChangesAreLost)
{
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openDetails();
        for (const auto* label : {"last.name", "first.name", "business1", "business2", "mobile", "private",
                                  "company", "address", "address2", "job.function", "email"}) {
            const auto before = value(label);
            fill(label, "77");
            log.clear();
            press(BACK);
            EXPECT_EQ(top().text, "save.changes.prompt") << label;
            EXPECT_EQ(top().state, 1);
            EXPECT_EQ(commands(), (Texts{"save", "do.not.save"}));
            EXPECT_EQ(log.count("Changes made", 5), 1);
            EXPECT_FALSE(log.has("No changes made"));
            press(BACK); // the question goes, the form stays
            EXPECT_EQ(popups(), 0u);
            EXPECT_TRUE(inForm());
            EXPECT_EQ(value(label), "77");
            fill(label, before);
        }
        EXPECT_EQ(writes(), 0);
    }
}

TEST_F(ContactFormSaving, AsksBeforeChoicesAreLost)
{
    directory.groups->updateGroup({3, "Friends"});
    configuration.clips = {"clips/amy.png"};
    contact("Adams", "", {{"Office", "1"}, {"Mobile", "2"}});
    start();
    for (const auto* label : {"default.no", "groups.form", "picture"}) {
        openDetails();
        step(label);
        press(BACK);
        EXPECT_EQ(top().text, "save.changes.prompt") << label;
        choose("do.not.save");
        EXPECT_TRUE(inList());
    }
    openDetails();
    step("form.options"); // says what to do, changes nothing
    press(BACK);
    EXPECT_TRUE(inList());
}

TEST_F(ContactFormSaving, SavesWhenAskedTo)
{
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openDetails(2);
        fill("company", bar == Bar::None ? "Acme" : "Beta");
        press(BACK);
        choose("save");
        EXPECT_EQ(screen(), SAVED);
        EXPECT_EQ(popups(), 1u);
        EXPECT_EQ(newest().at("Company"), bar == Bar::None ? "Acme" : "Beta");
        wait(3000ms);
        EXPECT_TRUE(inList());
        EXPECT_EQ(popups(), 0u);
    }
}

TEST_F(ContactFormSaving, SaysWhyItCouldNotSaveWhenAskedTo)
{
    threeContacts();
    start();
    openDetails(2);
    fill("last.name", "");
    fill("first.name", "");
    press(BACK);
    choose("save");
    EXPECT_EQ(screen(), "! PBerror.name\n");
    EXPECT_EQ(popups(), 1u);
    press(OK);
    EXPECT_TRUE(inForm());
    EXPECT_EQ(focused(), "last.name");
    EXPECT_EQ(value("last.name"), "");
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ContactFormSaving, DropsTheChangesWhenAskedTo)
{
    threeContacts();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openDetails(1);
        fill("last.name", "Young");
        press(BACK);
        choose("do.not.save");
        EXPECT_TRUE(inList());
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(writes(), 0);
        openDetails(1);
        EXPECT_EQ(value("last.name"), "Baker");
        press(BACK);
        EXPECT_TRUE(inList());
    }
}

TEST_F(ContactFormSaving, IgnoresAnythingElseThatIsChosen)
{
    threeContacts();
    start();
    openDetails();
    fill("last.name", "Young");
    press(BACK);
    auto* pQuestion = display().getCurrent();
    EXPECT_EQ(state().screenEvent(&context(), nullptr, pQuestion), &state());
    EXPECT_EQ(state().okEvent(&context(), nullptr, pQuestion), &state());
    EXPECT_EQ(state().saveEvent(&context(), nullptr, pQuestion), &state());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, &context().m_PopupConfirm), &state());
    host.settle();
    EXPECT_EQ(top().text, "save.changes.prompt");
    EXPECT_EQ(writes(), 0);
    EXPECT_EQ(state().backEvent(&context(), nullptr, &context().m_PopupConfirm), &state());
}

TEST_F(ContactFormSaving, ShowsTheFormAfterAnErrorWhateverIsShown)
{
    start();
    openNew();
    press(SAVE);
    auto* pError = display().getCurrent();
    display().setCurrent(context().m_pTabScreen.get());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, pError), &state());
    EXPECT_EQ(display().getCurrent(), &form());
}

TEST_F(ContactFormSaving, KeepsItsPopups)
{
    threeContacts();
    start();
    std::vector<std::uint64_t> ids;
    for (int times = 0; times < 2; ++times) {
        openDetails();
        fill("last.name", "");
        fill("first.name", "");
        press(BACK);
        ids.push_back(top().id);
        choose("save");
        ids.push_back(top().id);
        press(OK);
        fill("last.name", "Adams");
        press(SAVE);
        ids.push_back(top().id);
        press(OK);
        ASSERT_TRUE(inList());
    }
    EXPECT_TRUE(std::equal(ids.begin(), ids.begin() + 3, ids.begin() + 3, ids.end()));
}

TEST_F(ContactFormSaving, KeepsALetterThatIsStillBeingTyped)
{
    start();
    openNew();
    host.tap("2");
    press(SAVE);
    EXPECT_EQ(screen(), SAVED);
    EXPECT_EQ(newest().at("Surname"), "A");
}
