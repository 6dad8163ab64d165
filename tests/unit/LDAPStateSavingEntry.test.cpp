#include <algorithm>

#include <framework/display/PopupNotification.h>
#include <framework/display/PopupProgress.h>

#include "DirectoryEntryScreens.h"
#include "TraceLines.h"

namespace {

constexpr auto nSAVED = "! ldap.entry.saved\n";
constexpr auto nDUPLICATE = "! ldap.entry.duplicate\n";
constexpr auto nNO_DUPLICATE = "no duplicate entry found in phonebook";

// A local phonebook that takes nothing.
class RefusingList final : public PhonebookList {
public:
    RefusingList(DirectoryServiceIfc* pDirectory, int code)
        : PhonebookList(pDirectory)
        , m_code(code)
    {
    }
    int addEntry(PhonebookFullEntry*, int&) override { return m_code; }

private:
    int m_code;
};

class DirectorySaving : public DirectoryEntryScreens {
protected:
    LDAPStateSavingEntry& state() { return context().m_LdapSavingEntry; }

    void save(const PhonebookFullEntry& entry)
    {
        context().m_LdapEntry = entry;
        go(state());
    }
    // Saves it, and lets the message go.
    void saveAndReturn(const PhonebookFullEntry& entry)
    {
        save(entry);
        wait(3000ms);
        ASSERT_TRUE(inList());
    }
    // A contact in the store that holds the same as Amy's entry.
    std::string localAmy()
    {
        return contact("Adams", "Amy",
                       {{"Office", "1"},
                        {"Office2", "2"},
                        {"Mobile", "3"},
                        {"Private", "4"},
                        {"Company", "Acme"},
                        {"Address", "Lane 1"},
                        {"Address2", "London"},
                        {"JobFunction", "Editor"},
                        {"Email", "amy@acme.uk"}});
    }
    DisplayAPI::SearchList& localRows() { return *context().m_pDisplayList; }
    Texts localTexts()
    {
        Texts texts;
        for (int row = 0; row < localRows().size(); ++row)
            texts.push_back(localRows().getText(row));
        return texts;
    }
    // As the user sees them.
    Texts shownTexts()
    {
        showLocalTab();
        return rows();
    }
    void showLocalTab()
    {
        if (!mode().isLocalTabActive())
            phonelet().tab();
        host.settle();
        ASSERT_TRUE(mode().isLocalTabActive());
    }
    int writes()
    {
        return static_cast<int>(std::ranges::count_if(directory.requests, [](const std::string& request) {
            return request.find("write_request") != std::string::npos;
        }));
    }
    int reads()
    {
        return static_cast<int>(std::ranges::count_if(directory.requests, [](const std::string& request) {
            return request.find("read_request") != std::string::npos;
        }));
    }
    // Of the contact that was added last.
    const Fields& newest() { return directory.records.rbegin()->second; }
};

} // namespace

// --- Saving ---

TEST_F(DirectorySaving, WritesEveryFieldOfTheEntry)
{
    startOnItsTab();
    save(amy());
    EXPECT_EQ(screen(), nSAVED);
    EXPECT_EQ(top().type, 1);
    const Fields expected{{"Surname", "Adams"},      {"Firstname", "Amy"},     {"Office", "1"},
                          {"Office2", "2"},          {"Mobile", "3"},          {"Private", "4"},
                          {"Company", "Acme"},       {"Address", "Lane 1"},    {"Address2", "London"},
                          {"JobFunction", "Editor"}, {"Email", "amy@acme.uk"}, {"Group", "0"},
                          {"DefaultNumber", "1"},    {"Picture", ""},          {"ExternalID", ""}};
    EXPECT_EQ(newest(), expected);
    EXPECT_TRUE(wroteInOrder(
        {"LDAPStateSavingEntry::enterStateEvent()", "LDAPStateSavingEntry::constructSavePopups()",
         "save LDAP entry into phonebook", "LDAPStateSavingEntry::saveEntry()", "new entry being created",
         "new entry has index: 0", "New/modified entry has ended up in current list - adding to display list",
         "unique id is: id1001", "insert entry at position 0 in display list"}));
}

TEST_F(DirectorySaving, ReturnsToTheListAfterThreeSeconds)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        startOnItsTab(bar);
        for (const auto* message : {nSAVED, nDUPLICATE}) {
            save(amy());
            EXPECT_EQ(screen(), message);
            wait(2999ms);
            EXPECT_EQ(current(), &state());
            EXPECT_EQ(screen(), message);
            wait(1ms);
            EXPECT_TRUE(inList());
            EXPECT_EQ(popups(), 0u);
        }
    }
}

TEST_F(DirectorySaving, ReturnsToTheListWithAnyKey)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        for (const auto key : {OK, BACK, DOWN, MENU}) {
            save(amy());
            press(key);
            EXPECT_TRUE(inList());
            EXPECT_EQ(popups(), 0u);
        }
    }
}

TEST_F(DirectorySaving, SaysWhichMessageWent)
{
    startOnItsTab();
    saveAndReturn(amy());
    EXPECT_EQ(log.count("LDAPStateSavingEntry::screenEvent - hidden event off popup save notification"), 1);
    EXPECT_FALSE(log.has("LDAPStateSavingEntry::screenEvent - hidden event off popup error notification"));
    saveAndReturn(amy());
    EXPECT_EQ(log.count("LDAPStateSavingEntry::screenEvent - hidden event off popup save notification"), 1);
    EXPECT_EQ(log.count("LDAPStateSavingEntry::screenEvent - hidden event off popup error notification"), 1);
}

TEST_F(DirectorySaving, LeavesForTheOtherTabOnceTheMessageClosed)
{
    startOnItsTab();
    save(amy());
    EXPECT_FALSE(state().tabValid(&context()));
    display().closeNotification();
    host.settle();
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(mode().isLocalTabActive());
    EXPECT_EQ(rows(), Texts{"Adams, Amy"});
}

TEST_F(DirectorySaving, IgnoresWhatIsNoneOfItsMessages)
{
    const auto line = "LDAPStateSavingEntry::screenEvent - unrecognised widget";
    startOnItsTab();
    EXPECT_EQ(state().screenEvent(&context(), nullptr, nullptr), &state()); // without popups
    save(amy());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, &context().m_PopupNotification), &state());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, state().getSavingChangesPopup()), &state());
    EXPECT_EQ(log.count(line), 4);
}

TEST_F(DirectorySaving, SavesWhoIsSelectedInTheListAndReturnsThere)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        startOnItsTab(bar);
        openMenuOf({amysAttributes(), {{Utils::SURNAME, "Zack"}}});
        choose("save");
        EXPECT_EQ(screen(), nSAVED);
        EXPECT_EQ(newest().at("JobFunction"), "Editor");
        wait(3000ms);
        EXPECT_TRUE(inList());
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(context().m_pLdapDisplayList->size(), bar == Bar::None ? 3 : 2);
        context().m_pLdapDisplayList->setSelectedIndex(bar == Bar::None ? 1 : 0);
        press(MENU);
        choose("save");
        EXPECT_EQ(screen(), nDUPLICATE);
        press(OK); // closes it, and dials nobody
        EXPECT_TRUE(inList());
        EXPECT_EQ(calls(), Texts{});
        EXPECT_EQ(directory.records.size(), 1u);
        EXPECT_EQ(shownTexts().back(), "Adams, Amy");
    }
}

TEST_F(DirectorySaving, SavesFromTheEntrysFormAndReturnsToTheList)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        startOnItsTab(bar);
        openMenuOf({amysAttributes()});
        choose("details");
        for (const auto* message : {nSAVED, nDUPLICATE}) {
            pick("form.options", "ldap.save.entry.prompt");
            press(OK);
            EXPECT_EQ(screen(), message);
            press(OK);
            EXPECT_TRUE(inList());
            EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
            go(context().m_LdapDisplayingEntry);
        }
    }
}

// --- The row in the local list ---

TEST_F(DirectorySaving, ReplacesTheWordsOfAnEmptyList)
{
    startOnItsTab();
    ASSERT_EQ(localTexts(), Texts{"no.contacts"});
    saveAndReturn(amy());
    EXPECT_EQ(localTexts(), Texts{"Adams, Amy"});
    EXPECT_EQ(localRows().getSelectedIndex(), 0);
    saveAndReturn(person({{Utils::SURNAME, "Baker"}}));
    EXPECT_EQ(shownTexts(), (Texts{"Adams, Amy", "Baker"}));
    EXPECT_EQ(icons(), (std::vector<int>{3, 0}));
}

TEST_F(DirectorySaving, StandsBelowTheOptionsWithoutSoftKeys)
{
    startOnItsTab(Bar::None);
    ASSERT_EQ(localTexts(), Texts{"list.options"});
    saveAndReturn(amy());
    EXPECT_EQ(localTexts(), (Texts{"list.options", "Adams, Amy"}));
    EXPECT_EQ(localRows().getSelectedIndex(), 1);
    EXPECT_TRUE(log.has("insert entry at position 1 in display list"));
    EXPECT_EQ(context().m_SelectedEntryIndex, 0);
    EXPECT_EQ(shownTexts(), (Texts{"list.options", "Adams, Amy"}));
}

TEST_F(DirectorySaving, StandsWhereItsNameBelongs)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        contact("Abbot", "");
        contact("Clark", "");
        startOnItsTab(bar);
        saveAndReturn(amy());
        const Texts options = bar == Bar::None ? Texts{"list.options"} : Texts{};
        auto expected = options;
        expected.insert(expected.end(), {"Abbot", "Adams, Amy", "Clark"});
        EXPECT_EQ(localTexts(), expected);
        EXPECT_EQ(localRows().getSelectedIndex(), bar == Bar::None ? 2 : 1);
        EXPECT_EQ(context().m_SelectedEntryIndex, 1);
    }
}

TEST_F(DirectorySaving, ShowsTheIconOfTheDefaultNumber)
{
    startOnItsTab();
    const std::vector<std::pair<std::string, int>> expected{
        {Utils::OFFICE, 3}, {Utils::OFFICE2, 4}, {Utils::MOBILE, 5}, {Utils::PRIVATE, 2}, {Utils::EMAIL, 0}};
    std::vector<int> shown;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        saveAndReturn(
            person({{Utils::SURNAME, std::string(1, static_cast<char>('A' + i))}, {expected[i].first, "7"}}));
        shown.push_back(expected[i].second);
    }
    showLocalTab();
    EXPECT_EQ(icons(), shown);
}

TEST_F(DirectorySaving, WritesTheNameAsTheLocalListDoes)
{
    directory.options["DisplayOptions"] = 1;
    directory.options["LdapDisplayOptions"] = 3;
    directory.options["LdapQualifier"] = 8;
    startOnItsTab();
    saveAndReturn(amy());
    EXPECT_EQ(localTexts(), Texts{"Amy Adams"});
}

TEST_F(DirectorySaving, BecomesTheSelectedContact)
{
    contact("Abbot", "");
    startOnItsTab();
    saveAndReturn(amy());
    const auto& selected = context().m_SelectedEntry;
    EXPECT_EQ(context().m_SelectedEntryIndex, 1);
    EXPECT_EQ(selected.getUniqueId(), "id1002");
    EXPECT_EQ(context().m_LdapEntry.getUniqueId(), "id1002");
    EXPECT_TRUE(selected == context().m_LdapEntry);
    EXPECT_EQ(selected.getEmail(), "amy@acme.uk");
}

TEST_F(DirectorySaving, KeepsTheMarksOfTheDirectoryWithTheSelectedContact)
{
    startOnItsTab();
    saveAndReturn(amy());
    context().m_SelectedEntry.setSurname(std::string(50, 'x'));
    context().m_SelectedEntry.setCompany(std::string(50, 'y'));
    EXPECT_EQ(context().m_SelectedEntry.getSurname().size(), 50u);
    EXPECT_EQ(context().m_SelectedEntry.getCompany().size(), 50u);
}

TEST_F(DirectorySaving, CanBeCalledFromTheLocalListAtOnce)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        contact("Abbot", "", {{"Office", "9"}});
        startOnItsTab(bar);
        saveAndReturn(amy());
        showLocalTab();
        csta.sent.clear();
        press(OK);
        EXPECT_EQ(calls(), Texts{"MakeCall 1"});
        dialingStops();
    }
}

TEST_F(DirectorySaving, StoresLongTextsWholeAndShowsThemCut)
{
    const std::string name(35, 'a');
    const std::string company(60, 'c');
    startOnItsTab();
    saveAndReturn(person({{Utils::SURNAME, name}, {Utils::COMPANY, company}}));
    EXPECT_EQ(newest().at("Surname"), name);
    EXPECT_EQ(newest().at("Company"), company);
    EXPECT_EQ(localTexts(), Texts{std::string(30, 'a')});
}

TEST_F(DirectorySaving, InsertsNoRowIntoAListThatShowsAnotherGroup)
{
    directory.groups->updateGroup({3, "Friends"});
    contact("Clark", "", {{"Group", "3"}});
    start();
    showGroup(3);
    phonelet().tab();
    host.settle();
    context().m_SelectedEntryIndex = 77;
    save(amy());
    EXPECT_EQ(screen(), nSAVED);
    EXPECT_EQ(newest().at("Surname"), "Adams");
    EXPECT_EQ(localTexts(), Texts{"Clark"});
    EXPECT_TRUE(
        wroteInOrder({"new entry being created", "new entry has index: -1",
                      "New/modified entry has not ended up in current list - not adding to display list"}));
    EXPECT_FALSE(log.has("New/modified entry has ended up in current list - adding to display list"));
    EXPECT_EQ(context().m_SelectedEntryIndex, 77);
    EXPECT_EQ(context().m_SelectedEntry.getSurname(), "");
    wait(3000ms);
    EXPECT_TRUE(inList());
}

TEST_F(DirectorySaving, KeepsTheWordsOfAnEmptyGroup)
{
    directory.groups->updateGroup({3, "Friends"});
    start();
    showGroup(3);
    phonelet().tab();
    host.settle();
    saveAndReturn(amy());
    EXPECT_EQ(localTexts(), Texts{"no.contacts"});
}

TEST_F(DirectorySaving, InsertsItsRowIntoTheListOfThoseWithoutAGroup)
{
    directory.groups->updateGroup({3, "Friends"});
    contact("Clark", "", {{"Group", "3"}});
    start();
    showGroup(0);
    phonelet().tab();
    host.settle();
    saveAndReturn(amy());
    EXPECT_EQ(localTexts(), Texts{"Adams, Amy"});
}

TEST_F(DirectorySaving, LeavesAListThatIsNotBuiltYetToBeBuiltWhole)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        contact("Abbot", "");
        contact("Clark", "");
        startOnItsTab(bar);
        context().reallocateDisplayList(true);
        saveAndReturn(amy());
        EXPECT_EQ(localRows().size(), 0);
        EXPECT_EQ(context().m_SelectedEntryIndex, 1);
        context().m_pTabScreen->setCurrentTabIndex(0);
        context().m_ViewingList.enterStateEvent(&context());
        host.settle();
        Texts expected = bar == Bar::None ? Texts{"list.options"} : Texts{};
        expected.insert(expected.end(), {"Abbot", "Adams, Amy", "Clark"});
        EXPECT_EQ(rows(), expected);
    }
}

TEST_F(DirectorySaving, WritesANewContactEachTime)
{
    startOnItsTab();
    saveAndReturn(amy());
    // The id stays with the entry; a changed one is new nevertheless.
    context().m_LdapEntry.setMobile("5");
    go(state());
    EXPECT_EQ(screen(), nSAVED);
    ASSERT_EQ(directory.records.size(), 2u);
    EXPECT_EQ(directory.records.begin()->second.at("Mobile"), "3");
    EXPECT_EQ(newest().at("Mobile"), "5");
    EXPECT_EQ(context().m_LdapEntry.getUniqueId(), "id1002");
}

// --- Entries that are there already ---

TEST_F(DirectorySaving, SavesNothingTwice)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        directory.records.clear();
        startOnItsTab(bar);
        saveAndReturn(amy());
        const auto before = localTexts();
        const int written = writes();
        log.clear();
        save(amy());
        EXPECT_EQ(screen(), nDUPLICATE);
        EXPECT_EQ(top().type, 2);
        EXPECT_EQ(writes(), written);
        EXPECT_EQ(localTexts(), before);
        EXPECT_EQ(context().m_LdapEntry.getUniqueId(), "");
        EXPECT_TRUE(wroteInOrder({"save LDAP entry into phonebook", "surname found in phonebook",
                                  "LDAP entry already in phonebook!"}));
        EXPECT_FALSE(log.has("new entry being created"));
        EXPECT_FALSE(log.has("addEntry failed!"));
        EXPECT_FALSE(log.has(nNO_DUPLICATE));
    }
}

TEST_F(DirectorySaving, AnswersADuplicateLikeAFailedWrite)
{
    localAmy();
    startOnItsTab();
    context().m_LdapEntry = amy();
    state().constructSavePopups(&context());
    EXPECT_EQ(state().saveEntry(&context()), 100);
    context().m_LdapEntry.setMobile("5");
    EXPECT_EQ(state().saveEntry(&context()), 0);
}

TEST_F(DirectorySaving, SavesWhoDiffersInOneField)
{
    struct Difference {
        std::string attribute;
        std::string name;
        std::string local;
    };
    const std::vector<Difference> differences{
        {Utils::FIRSTNAME, "firstname", "Amy"},       {Utils::OFFICE, "office number", "1"},
        {Utils::OFFICE2, "office number 2", "2"},     {Utils::PRIVATE, "private number", "4"},
        {Utils::MOBILE, "mobile number", "3"},        {Utils::COMPANY, "company", "Acme"},
        {Utils::ADDRESS1, "address", "Lane 1"},       {Utils::ADDRESS2, "address2", "London"},
        {Utils::JOBFUNCTION, "jobfunction", "Editor"}};
    for (const auto& difference : differences) {
        directory.records.clear();
        localAmy();
        startOnItsTab();
        log.clear();
        save(amyWith(difference.attribute, "other"));
        EXPECT_EQ(screen(), nSAVED) << difference.name;
        EXPECT_EQ(directory.records.size(), 2u);
        EXPECT_TRUE(wroteInOrder({"surname found in phonebook",
                                  "\n++++ LDAP entry differs from phonebook entry: ++++\n" + difference.name +
                                      " phonebook: " + difference.local + "\n" + difference.name +
                                      " LDAP:      other\n",
                                  nNO_DUPLICATE, "new entry being created"}));
    }
}

TEST_F(DirectorySaving, ComparesInOrderUpToTheFirstDifference)
{
    const std::vector<std::pair<std::string, std::string>> order{
        {Utils::FIRSTNAME, "firstname"},     {Utils::OFFICE, "office number"},
        {Utils::OFFICE2, "office number 2"}, {Utils::PRIVATE, "private number"},
        {Utils::MOBILE, "mobile number"},    {Utils::COMPANY, "company"},
        {Utils::ADDRESS1, "address"},        {Utils::ADDRESS2, "address2"},
        {Utils::JOBFUNCTION, "jobfunction"}};
    localAmy();
    startOnItsTab();
    for (std::size_t first = 0; first < order.size(); ++first) {
        AttributeList attributes;
        for (const auto& [attribute, text] : amysAttributes()) {
            const auto at = std::ranges::find(order, attribute, &std::pair<std::string, std::string>::first);
            const bool differs = at != order.end() && static_cast<std::size_t>(at - order.begin()) >= first;
            attributes.emplace_back(attribute, differs ? "other" : text);
        }
        context().m_LdapEntry = person(attributes);
        log.clear();
        EXPECT_FALSE(state().checkLdapEntryInPhonebook(&context()));
        Texts logged;
        for (const auto& line : traces("./src/LDAPStateSavingEntry")) {
            if (line.starts_with("\n++++"))
                logged.push_back(line);
        }
        ASSERT_EQ(logged.size(), 1u);
        EXPECT_NE(logged[0].find("++++\n" + order[first].second + " phonebook: "), std::string::npos);
    }
}

TEST_F(DirectorySaving, ComparesNeitherTheEmailNorTheDefaultNumber)
{
    const auto id = localAmy();
    directory.records[id]["Email"] = "other@acme.uk";
    directory.records[id]["DefaultNumber"] = "3";
    directory.records[id]["Group"] = "3";
    directory.records[id]["Picture"] = "amy.png";
    startOnItsTab();
    save(amy());
    EXPECT_EQ(screen(), nDUPLICATE);
}

TEST_F(DirectorySaving, TellsCapitalLettersApart)
{
    localAmy();
    startOnItsTab();
    save(amyWith(Utils::SURNAME, "ADAMS"));
    EXPECT_EQ(screen(), nSAVED);
    EXPECT_FALSE(log.has("surname found in phonebook"));
    save(amyWith(Utils::SURNAME, "Adam"));
    EXPECT_EQ(screen(), nSAVED);
    save(amyWith(Utils::FIRSTNAME, "amy"));
    EXPECT_EQ(screen(), nSAVED);
}

TEST_F(DirectorySaving, LooksAtEveryContactOfThatSurname)
{
    contact("Abbot", "Amy");
    contact("Adams", "Adam");
    localAmy();
    contact("Adams", "Zoe");
    startOnItsTab();
    save(amy());
    EXPECT_EQ(screen(), nDUPLICATE);
    EXPECT_EQ(log.count("surname found in phonebook"), 2);
    EXPECT_EQ(reads(), 2);
}

TEST_F(DirectorySaving, ComparesNamesAsTheLocalPhonebookCutsThem)
{
    const std::string surname(35, 's');
    const std::string firstname(35, 'f');
    contact(surname.substr(0, 30), firstname.substr(0, 30));
    startOnItsTab();
    save(person({{Utils::SURNAME, surname}, {Utils::FIRSTNAME, firstname}}));
    EXPECT_EQ(screen(), nDUPLICATE);
    save(person({{Utils::SURNAME, surname.substr(0, 29)}, {Utils::FIRSTNAME, firstname}}));
    EXPECT_EQ(screen(), nSAVED);
}

TEST_F(DirectorySaving, CutsNamesBetweenLetters)
{
    std::string surname;
    for (int letter = 0; letter < 31; ++letter)
        surname += "\xC3\xBC"; // ü
    contact(surname.substr(0, 60), "");
    startOnItsTab();
    save(person({{Utils::SURNAME, surname}}));
    EXPECT_EQ(screen(), nDUPLICATE);
}

TEST_F(DirectorySaving, ComparesOtherTextsUncut)
{
    const std::string company(60, 'c');
    startOnItsTab();
    saveAndReturn(person({{Utils::SURNAME, "Adams"}, {Utils::COMPANY, company}}));
    save(person({{Utils::SURNAME, "Adams"}, {Utils::COMPANY, company}}));
    EXPECT_EQ(screen(), nSAVED);
    EXPECT_TRUE(log.has("\n++++ LDAP entry differs from phonebook entry: ++++\ncompany phonebook: " +
                        company.substr(0, 40) + "\ncompany LDAP:      " + company + "\n"));
}

TEST_F(DirectorySaving, TakesNobodyWithoutASurnameForADuplicate)
{
    contact("", "Amy");
    startOnItsTab();
    for (int times = 0; times < 2; ++times) {
        save(person({{Utils::FIRSTNAME, "Amy"}}));
        EXPECT_EQ(screen(), nSAVED);
    }
    EXPECT_EQ(directory.records.size(), 3u);
    EXPECT_FALSE(log.has("surname found in phonebook"));
    EXPECT_FALSE(log.has(nNO_DUPLICATE));
}

TEST_F(DirectorySaving, LooksForNoDuplicateInAnEmptyPhonebook)
{
    startOnItsTab();
    context().m_LdapEntry = amy();
    EXPECT_FALSE(state().checkLdapEntryInPhonebook(&context()));
    EXPECT_FALSE(log.has(nNO_DUPLICATE));
}

TEST_F(DirectorySaving, SeesTheContactsOfTheShownGroupOnly)
{
    directory.groups->updateGroup({3, "Friends"});
    localAmy();
    start();
    showGroup(3);
    phonelet().tab();
    host.settle();
    save(amy());
    EXPECT_EQ(screen(), nSAVED);
    EXPECT_EQ(directory.records.size(), 2u);
}

TEST_F(DirectorySaving, SavesNothingBesideAContactThatCannotBeRead)
{
    localAmy();
    startOnItsTab();
    directory.failure = "disk error";
    save(amyWith(Utils::MOBILE, "5"));
    EXPECT_EQ(screen(), nDUPLICATE);
    EXPECT_EQ(writes(), 0);
    EXPECT_TRUE(wroteInOrder(
        {"surname found in phonebook", "error reading phonebook list", "LDAP entry already in phonebook!"}));
}

// --- Failures ---

TEST_F(DirectorySaving, SaysThatANamelessEntryCannotBeSaved)
{
    startOnItsTab();
    save(person({{Utils::MOBILE, "3"}}));
    EXPECT_EQ(screen(), "! ldap.entry.unable.to.add\n");
    EXPECT_EQ(top().type, 2);
    EXPECT_EQ(writes(), 0);
    EXPECT_EQ(localTexts(), Texts{"no.contacts"});
    EXPECT_EQ(log.count("addEntry failed!"), 1);
    EXPECT_FALSE(log.has("new entry being created"));
    EXPECT_FALSE(log.has("LDAPStateSavingEntry::checkLdapEntryInPhonebook()"));
    wait(3000ms);
    EXPECT_TRUE(inList());
}

TEST_F(DirectorySaving, SaysWhyTheEntryCouldNotBeWritten)
{
    const std::vector<std::pair<std::string, std::string>> failures{
        {"Not enough memory", "! PBerror.dbOutOfSpace\n"}, {"read only", "! PBerror.dbWrite\n"}};
    contact("Clark", "");
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        const auto before = localTexts();
        context().m_SelectedEntryIndex = 77;
        for (const auto& [failure, message] : failures) {
            directory.failure = failure;
            log.clear();
            save(amy());
            EXPECT_EQ(screen(), message);
            EXPECT_EQ(top().type, 2);
            EXPECT_EQ(localTexts(), before);
            EXPECT_EQ(context().m_SelectedEntryIndex, 77);
            EXPECT_EQ(context().m_LdapEntry.getUniqueId(), "");
            EXPECT_TRUE(
                wroteInOrder({"new entry being created", "new entry has index: -1", "addEntry failed!"}));
            wait(2999ms);
            EXPECT_EQ(current(), &state());
            wait(1ms);
            EXPECT_TRUE(inList());
        }
        directory.failure.clear();
        save(amy()); // the user tries again
        EXPECT_EQ(screen(), nSAVED);
        directory.records.erase(std::prev(directory.records.end()));
    }
}

TEST_F(DirectorySaving, ReturnsTheCodeOfAFailure)
{
    startOnItsTab();
    state().constructSavePopups(&context());
    context().m_LdapEntry = amy();
    directory.failure = "Not enough memory";
    EXPECT_EQ(state().saveEntry(&context()), 103);
    directory.failure = "read only";
    EXPECT_EQ(state().saveEntry(&context()), 100);
    directory.failure.clear();
    context().m_LdapEntry = person({});
    EXPECT_EQ(state().saveEntry(&context()), 1);
}

TEST_F(DirectorySaving, HasAMessageForEveryCode)
{
    const std::vector<std::pair<int, std::string>> messages{
        {1, "! ldap.entry.unable.to.add\n"},   {100, "! PBerror.dbWrite\n"},
        {101, "! ldap.entry.unable.to.add\n"}, {102, "! ldap.entry.unable.to.add\n"},
        {103, "! PBerror.dbOutOfSpace\n"},     {200, "! ldap.entry.unable.to.add\n"},
        {-1, "! ldap.entry.unable.to.add\n"}};
    startOnItsTab();
    auto* pLocal = context().m_pPhonebookList;
    for (const auto& [code, message] : messages) {
        RefusingList refusing(&directory, code);
        context().m_pPhonebookList = &refusing;
        save(amy());
        EXPECT_EQ(screen(), message) << code;
        EXPECT_EQ(localTexts(), Texts{"no.contacts"});
    }
    context().m_pPhonebookList = pLocal;
}

// --- The popups ---

TEST_F(DirectorySaving, KeepsItsPopups)
{
    startOnItsTab();
    EXPECT_EQ(state().getSavingChangesPopup(), nullptr);
    EXPECT_EQ(state().getSaveNotificationPopup(), nullptr);
    EXPECT_EQ(state().getErrorNotificationPopup(), nullptr);
    saveAndReturn(amy());
    const auto* pProgress = state().getSavingChangesPopup();
    const auto* pSaved = state().getSaveNotificationPopup();
    const auto* pError = state().getErrorNotificationPopup();
    ASSERT_TRUE(pProgress && pSaved && pError);
    EXPECT_EQ(pSaved->timeout(), 3000ms);
    EXPECT_EQ(pError->timeout(), 3000ms);
    saveAndReturn(amy());
    EXPECT_EQ(state().getSavingChangesPopup(), pProgress);
    EXPECT_EQ(state().getSaveNotificationPopup(), pSaved);
    EXPECT_EQ(state().getErrorNotificationPopup(), pError);
}

TEST_F(DirectorySaving, HasAProgressPopupReadyThatItDoesNotShow)
{
    startOnItsTab();
    std::size_t requests = 0;
    directory.whileBusy = [&] {
        ++requests;
        EXPECT_EQ(popups(), 0u);
    };
    save(amy());
    EXPECT_EQ(requests, 1u);
    EXPECT_EQ(popups(), 1u);
    display().setCurrent(state().getSavingChangesPopup());
    host.settle();
    EXPECT_EQ(screen(), "~ saving.changes\n");
    EXPECT_EQ(top().type, 1);
}

TEST_F(DirectorySaving, ShowsTheErrorThatBelongsToTheEntry)
{
    startOnItsTab();
    save(person({{Utils::MOBILE, "3"}}));
    EXPECT_EQ(screen(), "! ldap.entry.unable.to.add\n");
    save(amy());
    EXPECT_EQ(screen(), nSAVED);
    save(amy());
    EXPECT_EQ(screen(), nDUPLICATE);
}

// --- The log ---

TEST_F(DirectorySaving, OnlySaysThatItIsLeft)
{
    startOnItsTab();
    save(amy());
    auto& entry = state();
    auto* pContext = &context();
    log.clear();
    entry.exitStateEvent(pContext);
    host.settle();
    EXPECT_EQ(log.texts(5), Texts{"LDAPStateSavingEntry::exitStateEvent()"});
    EXPECT_EQ(screen(), nSAVED);
}

TEST_F(DirectorySaving, TracesItsOperations)
{
    startOnItsTab();
    auto* pContext = &context();
    auto& entry = state();
    context().m_LdapEntry = amy();
    expectTraces("LDAPStateSavingEntry",
                 {{"constructSavePopups", [&] { entry.constructSavePopups(pContext); }},
                  {"saveEntry", [&] { entry.saveEntry(pContext); }},
                  {"checkLdapEntryInPhonebook", [&] { entry.checkLdapEntryInPhonebook(pContext); }},
                  {"getSavingChangesPopup", [&] { entry.getSavingChangesPopup(); }},
                  {"getSaveNotificationPopup", [&] { entry.getSaveNotificationPopup(); }},
                  {"getErrorNotificationPopup", [&] { entry.getErrorNotificationPopup(); }},
                  {"screenEvent", [&] { entry.screenEvent(pContext, nullptr, nullptr); }},
                  {"exitStateEvent", [&] { entry.exitStateEvent(pContext); }},
                  {"enterStateEvent", [&] { entry.enterStateEvent(pContext); }}});
}
