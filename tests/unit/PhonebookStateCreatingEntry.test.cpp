#include "ContactFormScreens.h"

namespace {

class ContactForm : public ContactFormScreens {
protected:
    static constexpr const char* NUMBERS[] = {"business1", "business2", "mobile", "private"};

    void everything()
    {
        const auto id =
            contact("Adams", "Amy", {{"Office", "1"}, {"Office2", "2"}, {"Mobile", "3"}, {"Private", "4"}});
        for (const auto& [name, text] : Fields{{"Company", "Acme"},
                                               {"Address", "Long Lane 1"},
                                               {"Address2", "London"},
                                               {"JobFunction", "Clerk"},
                                               {"Email", "amy@example.com"},
                                               {"Group", "3"},
                                               {"Picture", "amy.png"},
                                               {"DefaultNumber", "3"}})
            directory.records[id][name] = text;
        directory.groups->updateGroup({3, "Friends"});
        configuration.clips = {"clips/amy.png", "clips/bob.jpg"};
    }
    Texts labels()
    {
        Texts texts;
        for (const auto& painted : fields())
            texts.push_back(painted.label);
        return texts;
    }
    Texts values()
    {
        Texts texts;
        for (const auto& painted : fields())
            texts.push_back(painted.value);
        return texts;
    }
    void sizes(const std::string& answer)
    {
        directory.fieldSizes = answer;
        start();
    }
};

const std::vector<std::string> LABELS{"form.options", "last.name",   "first.name", "business1",
                                      "business2",    "mobile",      "private",    "default.no",
                                      "company",      "address",     "address2",   "job.function",
                                      "email",        "groups.form", "picture"};

} // namespace

// --- The fields ---

TEST_F(ContactForm, ShowsEveryFieldOfAContactInItsOrder)
{
    everything();
    start();
    openDetails();
    EXPECT_EQ(labels(), LABELS);
    EXPECT_EQ(values(), (Texts{"save.exit", "Adams", "Amy", "1", "2", "3", "4", "mobile", "Acme",
                               "Long Lane 1", "London", "Clerk", "amy@example.com", "Friends", "amy"}));
    EXPECT_EQ(title(), "details");
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Form);
}

TEST_F(ContactForm, IsEmptyForANewContact)
{
    everything();
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        start(bar);
        openNew();
        EXPECT_EQ(labels(), LABELS);
        EXPECT_EQ(values(), (Texts{"save.exit", "", "", "", "", "", "", "no.default", "", "", "", "", "",
                                   "no.group", "no.picture"}));
        EXPECT_EQ(title(), "new.contact");
    }
}

TEST_F(ContactForm, BeginsWithTheLastName)
{
    everything();
    start();
    openNew();
    EXPECT_EQ(focused(), "last.name");
    focus("email");
    press(BACK);
    openDetails();
    EXPECT_EQ(focused(), "last.name");
}

TEST_F(ContactForm, OffersToSaveAndToLeaveAsItsOptions)
{
    start();
    openNew();
    EXPECT_EQ(choices("form.options"), (Texts{"save.exit", "exit.no.save"}));
}

TEST_F(ContactForm, MarksTheNumbersAndTakesDigitsOnlyThere)
{
    everything();
    start();
    openDetails();
    const std::vector<std::pair<std::string, int>> icons{
        {"business1", 1}, {"business2", 2}, {"mobile", 4}, {"private", 3}};
    for (const auto& painted : fields()) {
        const auto icon = std::ranges::find(icons, painted.label, &std::pair<std::string, int>::first);
        EXPECT_EQ(painted.icon, icon == icons.end() ? 0 : icon->second) << painted.label;
        const bool isNumber = painted.kind == FrameField::Kind::Number;
        EXPECT_EQ(isNumber, icon != icons.end()) << painted.label;
    }
}

TEST_F(ContactForm, SaysWhatOkDoesOnANumber)
{
    contact("Adams", "Amy", {{"Office", "1"}, {"Private", "4"}});
    start();
    openDetails();
    const auto okKey = [&](const std::string& label) {
        focus(label);
        return host.frame->softKeys[0].label;
    };
    for (const auto* dialled : {"business1", "private"})
        EXPECT_EQ(okKey(dialled), "dial");
    for (const auto* other : {"last.name", "business2", "mobile", "company"})
        EXPECT_EQ(okKey(other), "phone.ok");
    press(BACK);
    openNew();
    for (const auto* empty : {"business1", "private"})
        EXPECT_EQ(okKey(empty), "phone.ok");
}

TEST_F(ContactForm, IsFilledAnewEachTime)
{
    everything();
    contact("Baker", "");
    start();
    openDetails();
    const auto id = top().id;
    fill("last.name", "Changed");
    step("form.options");
    step("picture");
    press(BACK);
    choose("do.not.save");
    for (int times = 0; times < 3; ++times) {
        openDetails(1);
        EXPECT_EQ(labels(), LABELS);
        EXPECT_EQ(values(), (Texts{"save.exit", "Baker", "", "", "", "", "", "no.default", "", "", "", "", "",
                                   "no.group", "no.picture"}));
        EXPECT_EQ(choices("form.options").size(), 2u);
        EXPECT_EQ(choices("groups.form").size(), 3u);
        EXPECT_EQ(choices("picture").size(), 3u);
        EXPECT_EQ(host.frame->softKeys[0].label, "phone.ok");
        EXPECT_EQ(top().id, id); // one form, kept
        press(BACK);
        EXPECT_TRUE(inList());
    }
}

TEST_F(ContactForm, SpeaksTheLanguageOfTheMoment)
{
    everything();
    start();
    openDetails();
    press(BACK);
    telephone.translator.prefix = "x.";
    openDetails();
    for (const auto& label : labels())
        EXPECT_TRUE(label.starts_with("x.")) << label;
    EXPECT_EQ(title(), "x.details");
    EXPECT_EQ(choices("x.groups.form"), (Texts{"x.no.group", "x.group.copied.contacts", "Friends"}));
}

TEST_F(ContactForm, TranslatesEveryChoiceAndMessage)
{
    telephone.translator.prefix = "x.";
    start();
    press(MENU);
    choose("x.new.contact");
    EXPECT_EQ(choices("x.form.options"), (Texts{"x.save.exit", "x.exit.no.save"}));
    EXPECT_EQ(value("x.default.no"), "x.no.default");
    EXPECT_EQ(value("x.groups.form"), "x.no.group");
    EXPECT_EQ(value("x.picture"), "x.no.picture");
    for (const auto* number : NUMBERS)
        fill(telephone.translator.prefix + number, "7");
    EXPECT_EQ(choices("x.default.no"), (Texts{"x.business1", "x.business2", "x.mobile", "x.private"}));
    press(BACK);
    EXPECT_EQ(top().text, "x.save.changes.prompt");
    EXPECT_EQ(host.frame->softKeys[0].label, "x.save");
    EXPECT_EQ(host.frame->softKeys[1].label, "x.do.not.save");
    choose("x.save");
    EXPECT_EQ(screen(), "! x.PBerror.name\n");
    press(OK);
    fill("x.last.name", "Young");
    press(SAVE);
    EXPECT_EQ(screen(), "! x.changes.saved\n");
    press(OK);
    configuration.whileLoading = [&] { EXPECT_EQ(screen(), "~ x.loading.picture.clips\n"); };
    openDetails();
    focus("x.mobile");
    EXPECT_EQ(host.frame->softKeys[0].label, "x.dial");
}

// --- Entering and leaving ---

TEST_F(ContactForm, IsBuiltInItsOrder)
{
    everything();
    start();
    press(MENU);
    log.clear();
    choose("details");
    EXPECT_TRUE(wroteInOrder(
        {"PhonebookStateCreatingEntry::enterStateEvent", "PhonebookStateBaseDialer::setCallContextProvider()",
         "PhonebookStateCreatingEntry::createCommands", "PhonebookStateCreatingEntry::createSavePopups",
         "PictureChoices::populateImages()", "PhonebookStateCreatingEntry::readFieldSizes",
         "PhonebookStateCreatingEntry::populateForm", "PhonebookStateCreatingEntry::showForm"}));
}

TEST_F(ContactForm, HearsOfDiallingWhileItIsShown)
{
    start();
    openNew();
    EXPECT_EQ(digits.provider, &mode());
    press(BACK);
    ASSERT_TRUE(inList());
    state().exitStateEvent(&context());
    EXPECT_EQ(digits.provider, nullptr);
    EXPECT_TRUE(log.has("PhonebookStateCreatingEntry::exitStateEvent", 5));
}

TEST_F(ContactForm, TakesPopupsOfDiallingAlong)
{
    start();
    openNew();
    dialingStarts("0");
    EXPECT_EQ(popups(), 1u);
    state().exitStateEvent(&context());
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(ContactForm, KeepsTheUserOnItsTab)
{
    start();
    openNew();
    EXPECT_FALSE(state().tabValid(&context()));
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(inForm());
    EXPECT_TRUE(mode().isLocalTabActive());
}

TEST_F(ContactForm, IsThereAgainWhenThePhonebookReturns)
{
    start();
    openNew();
    fill("last.name", "Young");
    phonelet().hide();
    host.settle();
    EXPECT_EQ(digits.provider, nullptr);
    phonelet().show();
    host.settle();
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Form);
    EXPECT_EQ(value("last.name"), "Young");
    EXPECT_EQ(digits.provider, &mode());
}

// --- The lengths of fields ---

TEST_F(ContactForm, LimitsEachFieldToItsOwnLength)
{
    sizes("lastname=11;firstname=12;business1=13;business2=14;mobile=15;private=16;company=17;address1=18;"
          "address2=19;position=20;email=21;callgroup=22");
    openNew();
    const std::vector<std::pair<std::string, int>> lengths{
        {"last.name", 11}, {"first.name", 12},   {"business1", 13}, {"business2", 14},
        {"mobile", 15},    {"private", 16},      {"company", 17},   {"address", 18},
        {"address2", 19},  {"job.function", 20}, {"email", 21}};
    for (const auto& [label, length] : lengths)
        EXPECT_EQ(field(label).maxLength, length) << label;
    fill("last.name", "Abcdefghijklmnop");
    EXPECT_EQ(value("last.name"), "Abcdefghijk");
}

TEST_F(ContactForm, AsksForTheLengthsOnce)
{
    start();
    for (int times = 0; times < 3; ++times) {
        openNew();
        press(BACK);
    }
    EXPECT_EQ(directory.fieldSizeReads, 1);
}

TEST_F(ContactForm, NeverCutsAValueThatIsLongerThanItsField)
{
    contact("Ångström-Öhlund", "Amy");
    sizes("lastname=4;firstname=4;" + directory.fieldSizes);
    openDetails();
    EXPECT_EQ(value("last.name"), "Ångström-Öhlund");
    EXPECT_EQ(field("last.name").maxLength, 15); // characters
    EXPECT_EQ(field("first.name").maxLength, 4);
    focus("last.name");
    press(Kind::Clear);
    type("mnx");
    EXPECT_EQ(value("last.name"), "Ångström-Öhlunm");
}

TEST_F(ContactForm, NamesAFieldWithoutALengthOnceAndLeavesItUnlimited)
{
    sizes("lastname=4");
    testing::internal::CaptureStdout();
    openNew();
    const auto printed = testing::internal::GetCapturedStdout();
    std::string expected;
    for (const auto* name : {"firstname", "business1", "business2", "mobile", "private", "company",
                             "address1", "address2", "position", "email"})
        expected += "Error - didn't find field " + std::string(name) + " in the field size vector\n";
    EXPECT_EQ(printed, expected);
    EXPECT_FALSE(log.has("Phonebook couldn't get the field lengths from DirectoryService\n"));
    EXPECT_EQ(field("last.name").maxLength, 4);
    EXPECT_EQ(field("first.name").maxLength, -1);
}

TEST_F(ContactForm, GoesOnWithoutADirectoryService)
{
    start();
    context().m_pDirectoryService = nullptr;
    testing::internal::CaptureStdout();
    openNew();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(log.count("Phonebook couldn't get the field lengths from DirectoryService\n", 2), 1);
    EXPECT_EQ(labels(), LABELS);
    for (const auto& painted : fields())
        EXPECT_EQ(painted.maxLength, -1) << painted.label;
    press(BACK);

    context().m_pDirectoryService = &directory;
    openNew();
    EXPECT_EQ(directory.fieldSizeReads, 1);
    EXPECT_EQ(field("last.name").maxLength, 30);
}

TEST_F(ContactForm, TakesNoLengthFromAnAnswerThatHasNone)
{
    for (const auto* answer : {"", "lastname", "lastname=;firstname=abc", "lastname=0", "lastname=-5",
                               "lastname=4;firstname", "=", ";;;"}) {
        sizes(answer);
        testing::internal::CaptureStdout();
        openNew();
        testing::internal::GetCapturedStdout();
        for (const auto* label : {"last.name", "first.name"})
            EXPECT_EQ(field(label).maxLength, -1) << answer;
        fill("last.name", "Young");
        EXPECT_EQ(value("last.name"), "Young") << answer;
    }
}

TEST_F(ContactForm, SaysThatAnAnswerWithLengthsCannotBeRead)
{
    sizes("lastname=4;firstname");
    testing::internal::CaptureStdout();
    openNew();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(log.count("Phonebook couldn't get the field lengths from DirectoryService\n", 2), 1);
}

// --- The default number ---

TEST_F(ContactForm, OffersTheNumbersThatThereAre)
{
    contact("Adams", "", {{"Office2", "2"}, {"Private", "4"}});
    contact("Baker", "", {{"Office", "1"}, {"Office2", "2"}, {"Mobile", "3"}, {"Private", "4"}});
    contact("Clark", "");
    start();
    openDetails(0);
    EXPECT_EQ(choices("default.no"), (Texts{"business2", "private"}));
    press(BACK);
    openDetails(1);
    EXPECT_EQ(choices("default.no"), (Texts{"business1", "business2", "mobile", "private"}));
    press(BACK);
    openDetails(2);
    EXPECT_EQ(choices("default.no"), Texts{"no.default"});
}

TEST_F(ContactForm, SelectsTheEntrysDefaultNumber)
{
    const auto id =
        contact("Adams", "", {{"Office", "1"}, {"Office2", "2"}, {"Mobile", "3"}, {"Private", "4"}});
    start();
    const std::vector<std::pair<std::string, std::string>> defaults{
        {"0", "no.default"}, {"1", "business1"}, {"2", "business2"}, {"3", "mobile"}, {"4", "private"}};
    for (const auto& [code, label] : defaults) {
        directory.records[id]["DefaultNumber"] = code;
        openDetails();
        EXPECT_EQ(value("default.no"), label);
        EXPECT_EQ(field("default.no").choice, label == "no.default" ? -1 : code[0] - '1');
        EXPECT_EQ(field("default.no").choices, 4);
        press(BACK);
        EXPECT_TRUE(inList()) << label; // nothing was changed
    }
}

TEST_F(ContactForm, MakesTheFirstNumberTheDefault)
{
    for (const auto* label : NUMBERS) {
        start();
        openNew();
        fill(label, "7");
        EXPECT_EQ(value("default.no"), label);
        EXPECT_EQ(choices("default.no"), Texts{label});
    }
}

TEST_F(ContactForm, KeepsTheDefaultWhenAnotherNumberIsAdded)
{
    start();
    openNew();
    fill("private", "4");
    fill("business1", "1");
    EXPECT_EQ(value("default.no"), "private");
    EXPECT_EQ(choices("default.no"), (Texts{"business1", "private"}));
    fill("mobile", "3");
    EXPECT_EQ(choices("default.no"), (Texts{"business1", "mobile", "private"}));
}

// Which default follows when a number is emptied.
TEST_F(ContactForm, MovesTheDefaultWhenItsNumberIsEmptied)
{
    struct Case {
        const char* before;
        const char* emptied;
        const char* after;
    };
    contact("Adams", "", {{"Office", "1"}, {"Office2", "2"}, {"Mobile", "3"}, {"Private", "4"}});
    start();
    for (const auto& [before, emptied, after] :
         std::initializer_list<Case>{{"business1", "business1", "business2"},
                                     {"business2", "business2", "business1"},
                                     {"mobile", "mobile", "business1"},
                                     {"private", "private", "business1"},
                                     {"business1", "mobile", "business1"},
                                     {"private", "business1", "private"},
                                     {"mobile", "private", "mobile"},
                                     {"business2", "business1", "business2"}}) {
        openDetails();
        pick("default.no", before);
        fill(emptied, "");
        EXPECT_EQ(value("default.no"), after) << before << " without " << emptied;
        EXPECT_EQ(field("default.no").choices, 3);
        press(BACK);
        choose("do.not.save");
    }
}

TEST_F(ContactForm, MovesTheDefaultOnUntilNoNumberIsLeft)
{
    contact("Adams", "", {{"Office", "1"}, {"Office2", "2"}, {"Mobile", "3"}, {"Private", "4"}});
    start();
    openDetails();
    const Texts after{"business2", "mobile", "private", "no.default"};
    for (std::size_t i = 0; i < 4; ++i) {
        fill(NUMBERS[i], "");
        EXPECT_EQ(value("default.no"), after[i]);
    }
    EXPECT_EQ(choices("default.no"), Texts{"no.default"});
    fill("mobile", "5");
    EXPECT_EQ(value("default.no"), "mobile");
}

TEST_F(ContactForm, GivesAnEntryWithoutADefaultOneWhenANumberChanges)
{
    const auto id = contact("Adams", "", {{"Office", "1"}, {"Mobile", "3"}});
    directory.records[id]["DefaultNumber"] = "0";
    start();
    openDetails();
    EXPECT_EQ(value("default.no"), "no.default");
    fill("mobile", "33");
    EXPECT_EQ(value("default.no"), "business1");
}

TEST_F(ContactForm, KeepsADefaultThatNamesAnEmptyNumberWhileOthersChange)
{
    const auto id = contact("Adams", "", {{"Mobile", "3"}, {"Private", "4"}});
    directory.records[id]["DefaultNumber"] = "1";
    start();
    openDetails();
    EXPECT_EQ(value("default.no"), "business1");
    EXPECT_EQ(choices("default.no"), (Texts{"mobile", "private"}));
    fill("mobile", "");
    EXPECT_EQ(value("default.no"), "business1");
    fill("private", "");
    EXPECT_EQ(value("default.no"), "no.default");
}

TEST_F(ContactForm, ShowsNoDefaultForAnEntryWithoutNumbers)
{
    const auto id = contact("Adams", "");
    directory.records[id]["DefaultNumber"] = "3";
    start();
    openDetails();
    EXPECT_EQ(value("default.no"), "no.default");
    EXPECT_EQ(field("default.no").choice, 0);
}

TEST_F(ContactForm, WritesDownWhichNumberBecomesTheDefault)
{
    start();
    openNew();
    const std::vector<std::pair<std::string, std::string>> lines{{"business1", "Default is now Bus1: "},
                                                                 {"business2", "Default is now Bus2: "},
                                                                 {"mobile", "Default is now Mobile: "},
                                                                 {"private", "Default is now Private: "}};
    for (const auto& [label, line] : lines) {
        log.clear();
        fill(label, "1");
        std::size_t written = 0;
        for (const auto& text : log.texts(5)) {
            if (!text.starts_with("Default is now"))
                continue;
            ++written;
            EXPECT_EQ(text.substr(0, line.size()), line);
            EXPECT_GT(text.size(), line.size());
            EXPECT_EQ(text.find_first_not_of("0123456789abcdef", line.size()), std::string::npos);
        }
        EXPECT_EQ(written, 1u);
        fill(label, "");
    }
}

TEST_F(ContactForm, LeavesTheDefaultAloneWhenOtherFieldsChange)
{
    contact("Adams", "", {{"Office", "1"}, {"Mobile", "3"}});
    start();
    openDetails();
    pick("default.no", "mobile");
    log.clear();
    fill("company", "A");
    EXPECT_EQ(log.count("Item state change on non-number field", 5), 1);
    EXPECT_FALSE(log.has("PhonebookStateCreatingEntry::rebuildDefaultNumberSelectionField"));
    EXPECT_EQ(state().itemStateChangedEvent(&context(), nullptr), &state());
    EXPECT_EQ(log.count("Item state change on non-number field", 5), 2);
    EXPECT_EQ(value("default.no"), "mobile");
    for (const auto* label : {"business1", "mobile"}) { // also when its own number changes
        focus(label);
        type("9");
        EXPECT_EQ(value("default.no"), "mobile");
    }
    EXPECT_TRUE(log.has("PhonebookStateCreatingEntry::rebuildDefaultNumberSelectionField", 5));
}

// --- The group ---

TEST_F(ContactForm, OffersTheGroupsInTheOrderOfTheirSlots)
{
    directory.groups->updateGroup({7, "Zebras"});
    directory.groups->updateGroup({2, "Friends"});
    directory.groups->updateGroup({20, "Aces"});
    contact("Adams", "");
    start();
    openDetails();
    EXPECT_EQ(choices("groups.form"),
              (Texts{"no.group", "group.copied.contacts", "Friends", "Zebras", "Aces"}));
    EXPECT_EQ(value("groups.form"), "no.group");
}

TEST_F(ContactForm, StoresTheChosenGroupWhateverSlotsAreSpare)
{
    directory.groups->updateGroup({7, "Zebras"});
    directory.groups->updateGroup({2, "Friends"});
    directory.groups->updateGroup({20, "Aces"});
    const auto id = contact("Adams", "");
    start();
    const std::vector<std::pair<std::string, std::string>> tags{
        {"Friends", "2"}, {"Aces", "20"}, {"Zebras", "7"}, {"no.group", "0"}};
    for (const auto& [name, tag] : tags) {
        openDetails();
        pick("groups.form", name);
        press(SAVE);
        EXPECT_EQ(record(id).at("Group"), tag);
        wait(3000ms);
        openDetails();
        EXPECT_EQ(value("groups.form"), name);
        press(BACK);
        EXPECT_TRUE(inList()) << name;
    }
}

TEST_F(ContactForm, BeginsInTheGroupThatIsShown)
{
    directory.groups->updateGroup({3, "Friends"});
    start();
    showGroup(3);
    openNew();
    EXPECT_EQ(value("groups.form"), "Friends");
    press(BACK);
    EXPECT_TRUE(inList());
}

TEST_F(ContactForm, KeepsAGroupThatItCannotShow)
{
    const auto id = contact("Adams", "");
    directory.records[id]["Group"] = "5"; // a spare slot
    directory.groups->updateGroup({3, "Friends"});
    for (const bool hasGroups : {true, false}) {
        start();
        if (!hasGroups)
            context().m_pGroupList.reset();
        openDetails();
        EXPECT_EQ(value("groups.form"), "no.group");
        press(BACK);
        EXPECT_TRUE(inList());
        openDetails();
        fill("company", "Acme");
        press(SAVE);
        EXPECT_EQ(record(id).at("Group"), "5");
        wait(3000ms);
    }
    openDetails();
    step("groups.form");
    EXPECT_EQ(field("groups.form").choice, 0);
    press(SAVE);
    EXPECT_EQ(record(id).at("Group"), "0");
}

// --- The picture ---

TEST_F(ContactForm, OffersTheClipsByTheirNames)
{
    everything();
    start();
    openDetails();
    EXPECT_EQ(choices("picture"), (Texts{"no.picture", "amy", "bob"}));
    EXPECT_EQ(field("picture").image, "clips/amy.png");
    step("picture");
    EXPECT_EQ(field("picture").image, "clips/bob.jpg");
    step("picture");
    EXPECT_EQ(field("picture").image, "");
    EXPECT_EQ(value("picture"), "no.picture");
}

TEST_F(ContactForm, StoresThePictureByItsName)
{
    everything();
    start();
    const auto& stored = directory.records.begin()->second;
    const std::vector<std::pair<std::string, std::string>> names{
        {"bob", "bob.jpg"}, {"no.picture", ""}, {"amy", "amy.png"}};
    for (const auto& [label, name] : names) {
        openDetails();
        pick("picture", label);
        press(SAVE);
        EXPECT_EQ(stored.at("Picture"), name);
        wait(3000ms);
        openDetails();
        EXPECT_EQ(value("picture"), label);
        press(BACK);
        EXPECT_TRUE(inList());
    }
}

TEST_F(ContactForm, KeepsAPictureThatIsNoClip)
{
    everything();
    configuration.clips = {"clips/bob.jpg"};
    start();
    openDetails();
    EXPECT_EQ(choices("picture"), (Texts{"no.picture", "bob", "amy"}));
    EXPECT_EQ(value("picture"), "amy");
    press(BACK);
    EXPECT_TRUE(inList());
    openDetails();
    fill("company", "B");
    press(SAVE);
    EXPECT_EQ(newest().at("Picture"), "amy.png");
    wait(3000ms);
    openDetails();
    pick("picture", "no.picture");
    press(SAVE);
    EXPECT_EQ(newest().at("Picture"), "");
    wait(3000ms);
    openDetails();
    EXPECT_EQ(choices("picture"), (Texts{"no.picture", "bob"})); // it was this contact's only
    pick("picture", "bob");
    press(SAVE);
    EXPECT_EQ(newest().at("Picture"), "bob.jpg");
}

TEST_F(ContactForm, KeepsThePictureWithoutLocalManagement)
{
    everything();
    start();
    context().m_pLocalMgmt = nullptr;
    openDetails();
    EXPECT_EQ(choices("picture"), (Texts{"no.picture", "amy"}));
    fill("company", "B");
    press(SAVE);
    EXPECT_EQ(newest().at("Picture"), "amy.png");
    EXPECT_EQ(screen(), SAVED);
    wait(3000ms);
    openNew();
    EXPECT_EQ(choices("picture"), Texts{"no.picture"});
}

TEST_F(ContactForm, ReadsTheClipsEachTime)
{
    everything();
    start();
    openDetails();
    press(BACK);
    configuration.clips.push_back("clips/new.png");
    openDetails();
    EXPECT_EQ(choices("picture"), (Texts{"no.picture", "amy", "bob", "new"}));
    press(BACK);
    configuration.clips.clear();
    openNew();
    EXPECT_EQ(choices("picture"), Texts{"no.picture"});
}

TEST_F(ContactForm, SaysThatItLoadsTheClipsWhileItDoes)
{
    everything();
    start();
    std::vector<std::weak_ptr<const void>> messages;
    configuration.whileLoading = [&] {
        EXPECT_EQ(screen(), "~ loading.picture.clips\n");
        EXPECT_EQ(top().type, 1);
        messages.push_back(display().getCurrent()->watch());
    };
    openDetails();
    EXPECT_EQ(popups(), 0u);
    press(BACK);
    EXPECT_EQ(popups(), 0u);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_FALSE(messages[0].expired()); // kept until the form is there again
    openNew();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_TRUE(messages[0].expired());
}

TEST_F(ContactForm, TakesTheMessageAwayWhenLoadingFails)
{
    start();
    configuration.whileLoading = [] { throw std::runtime_error("the folder is gone"); };
    EXPECT_THROW(state().enterStateEvent(&context()), std::runtime_error);
    host.settle();
    EXPECT_EQ(popups(), 0u);
    configuration.whileLoading = nullptr;
    enter();
    EXPECT_EQ(labels(), LABELS);
}

TEST_F(ContactForm, RefusesAPictureChoiceThatIsNoClip)
{
    everything();
    start();
    openDetails();
    DisplayAPI::MenuCommand stranger(DisplayAPI::TranslationInfo::plain("stranger"));
    auto& pictures = selection("picture");
    pictures.append(&stranger);
    pictures.setSelectedCommand(&stranger);
    EXPECT_THROW(state().stateAfterDialing(&context()), std::out_of_range);
    pictures.clear(&stranger); // none of the choices at all
    EXPECT_THROW(state().stateAfterDialing(&context()), std::out_of_range);
}

TEST(PhonebookImage, HoldsAnImageAndTheCommandThatShowsIt)
{
    PhonebookImage image;
    EXPECT_EQ(image.getDisplayImage(), nullptr);
    EXPECT_EQ(image.getSfCommand(), nullptr);
    auto pCommand = std::make_unique<DisplayAPI::MenuCommand>(DisplayAPI::TranslationInfo::plain("Amy"));
    const auto* pSfCommand = pCommand.get();
    image.setDisplayImage(std::make_unique<DisplayAPI::Image>("clips/amy.png"));
    image.setSfCommand(std::move(pCommand));
    EXPECT_EQ(image.getDisplayImage()->getPath(), "clips/amy.png");
    EXPECT_EQ(image.getSfCommand(), pSfCommand);
}
