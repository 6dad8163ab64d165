#include "DirectorySearchScreens.h"

namespace {

class Find : public DirectorySearchScreens {
protected:
    LDAPStateFind& state() { return context().m_LdapFind; }
    bool inForm() { return current() == &state(); }

    void open(Bar bar = Bar::SoftKeys)
    {
        startOnItsTab(bar);
        go(state());
    }
    void find()
    {
        pick("find.options", "find");
        press(OK);
    }
    const AttributeList& asked() { return directory.searches.back().attributes; }
};

struct Failure {
    int status;
    const char* text;
};

class FailedFind : public Find, public testing::WithParamInterface<Failure> {};

} // namespace

// --- What is asked ---

TEST_F(Find, AsksForNothingWithAnEmptyForm)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        find();
        EXPECT_EQ(screen(), "! no.find.criteria\n");
        EXPECT_EQ(top().type, 2);
        wait(2999ms);
        EXPECT_EQ(popups(), 1u);
        wait(1ms);
        EXPECT_EQ(popups(), 0u);
        EXPECT_TRUE(inForm());
        EXPECT_EQ(display().getCurrent(), &form());
        EXPECT_TRUE(directory.searches.empty());
        EXPECT_TRUE(digits.converted.empty());
        EXPECT_TRUE(log.texts(3).empty());
    }
}

TEST_F(Find, AsksForTheOneFieldThatIsFilled)
{
    const std::vector<std::pair<std::string, std::string>> attributes{
        {"last.name", Utils::SURNAME},        {"first.name", Utils::FIRSTNAME}, {"business1", Utils::OFFICE},
        {"business2", Utils::OFFICE2},        {"mobile", Utils::MOBILE},        {"private", Utils::PRIVATE},
        {"company", Utils::COMPANY},          {"address", Utils::ADDRESS1},     {"address2", Utils::ADDRESS2},
        {"job.function", Utils::JOBFUNCTION}, {"email", Utils::EMAIL}};
    open();
    for (const auto& [label, attribute] : attributes) {
        fill(label, "12");
        find();
        EXPECT_EQ(asked(), (AttributeList{{attribute, "12"}})) << label;
        press(OK); // nothing was found
        fill(label, "");
    }
    EXPECT_EQ(directory.searches.size(), attributes.size());
}

TEST_F(Find, AsksForAllFilledFieldsInTheOrderOfTheForm)
{
    open();
    fill("email", "amy@acme.uk");
    fill("private", "4");
    fill("first.name", "Amy");
    find();
    EXPECT_EQ(asked(), (AttributeList{
                           {Utils::FIRSTNAME, "Amy"}, {Utils::PRIVATE, "4"}, {Utils::EMAIL, "amy@acme.uk"}}));
}

TEST_F(Find, AsksForTextsAsTheyWereTyped)
{
    open();
    fill("last.name", " M*l(l)er\\ ");
    fill("mobile", "*49#");
    find();
    EXPECT_EQ(asked(), (AttributeList{{Utils::SURNAME, " M*l(l)er\\ "}, {Utils::MOBILE, "*49#"}}));
}

TEST_F(Find, AsksTheCorporateDirectoryAtItsConfiguredBase)
{
    open();
    fill("last.name", "a");
    find();
    ASSERT_EQ(directory.searches.size(), 1u);
    EXPECT_EQ(directory.searches[0].base, "");
    EXPECT_EQ(directory.searches[0].source, static_cast<int>(PhonebookSearchCriteria::Source::Ldap));
    EXPECT_FALSE(directory.searches[0].ignoreNickname);
}

TEST_F(Find, TakesALetterThatIsStillPending)
{
    open();
    host.tap("2");
    find();
    EXPECT_EQ(asked(), (AttributeList{{Utils::SURNAME, "A"}}));
}

TEST_F(Find, SaysThatItSearches)
{
    open();
    fill("last.name", "a");
    std::string shown;
    int type = 0;
    directory.whileSearching = [&] {
        shown = screen();
        type = top().type;
    };
    find();
    EXPECT_EQ(shown, "~ retrieving.entries\n");
    EXPECT_EQ(type, 1);
    EXPECT_NE(screen(), shown);
}

// --- What is found ---

TEST_F(Find, ShowsWhatItFoundInTheList)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        directoryHolds(threePeople());
        fill("last.name", "*");
        find();
        EXPECT_TRUE(inList());
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(names(), (Texts{"Adams, Zoe", "Baker, Mia", "Clark, Amy"}));
        EXPECT_TRUE(top().rows[0].selected);
        EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
        EXPECT_EQ(context().m_pTabScreen->getCurrentDisplayable(), &peopleRows());
        EXPECT_TRUE(telephone.sleeps.empty());
        EXPECT_TRUE(log.texts(3).empty()); // no message came and went
    }
}

TEST_F(Find, KeepsTheListsWidgetUntilTheNextSearchReplacedTheNextOne)
{
    open();
    directoryHolds(threePeople());
    fill("last.name", "*");
    for (int search = 0; search < 2; ++search) {
        const auto* pBefore = &peopleRows();
        find();
        EXPECT_NE(&peopleRows(), pBefore);
        EXPECT_EQ(context().m_pPreviousLdapDisplayList.get(), pBefore);
        EXPECT_EQ(names().size(), 3u);
        go(state());
    }
}

TEST_F(Find, ShowsNumbersInTheirCanonicalForm)
{
    digits.canonical = [](const std::string& number) { return "+4930" + number; };
    startOnItsTab();
    people().setDisplayQualifier(displayQualifier::Office);
    go(state());
    directoryHolds(threePeople());
    fill("last.name", "*");
    find();
    EXPECT_EQ(digits.converted, (Texts{"100", "102", "103"}));
    EXPECT_EQ(names()[0], "Adams, Zoe (+4930100)");
}

TEST_F(Find, FillsTheListBehindTheProgressMessage)
{
    open();
    directoryHolds(threePeople(), DIRECTORY_TOO_MANY_MATCHES);
    fill("last.name", "*");
    log.clear();
    find();
    EXPECT_TRUE(
        wroteInOrder({"ShownProgress::ShownProgress()", "populate - source enum value = 1",
                      "PhonebookList::convertToCanonical()", "EventContext::reallocateLdapDisplayList()",
                      "PhonebookStateBase::constructLdapDisplayList()", "ShownProgress::~ShownProgress()",
                      "SearchPopups::showResult()", "LDAPStateFind::exitStateEvent()"}));
}

TEST_F(Find, ShowsAnEmptyListWhenNobodyIsAmongTheResults)
{
    open();
    listShows(threePeople());
    directoryHolds({});
    fill("last.name", "x");
    find();
    EXPECT_TRUE(inList());
    EXPECT_EQ(people().size(), 0u);
    EXPECT_EQ(rows(), Texts{"no.results"});
}

// --- Too many ---

TEST_F(Find, SaysForTwoSecondsThatThereAreMoreAndShowsTheRest)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        directoryHolds(threePeople(), DIRECTORY_TOO_MANY_MATCHES);
        fill("last.name", "*");
        std::string shown;
        int type = 0;
        bool stillInForm = false;
        telephone.whileSleeping = [&] {
            shown = screen();
            type = top().type;
            stillInForm = inForm() && popups() == 1;
        };
        telephone.sleeps.clear();
        find();
        EXPECT_EQ(shown, "! too.many.matches\n");
        EXPECT_EQ(type, 6);
        EXPECT_TRUE(stillInForm);
        EXPECT_EQ(telephone.sleeps, std::vector<std::chrono::microseconds>{2'000'000us});
        EXPECT_TRUE(inList());
        EXPECT_EQ(popups(), 0u);
        EXPECT_EQ(names(), (Texts{"Adams, Zoe", "Baker, Mia", "Clark, Amy"}));
    }
}

TEST_F(Find, LeavesNoTraceOfTheMessageThatThereAreMore)
{
    open();
    directoryHolds(threePeople(), DIRECTORY_TOO_MANY_MATCHES);
    fill("last.name", "*");
    find();
    wait(5000ms);
    EXPECT_TRUE(inList());
    EXPECT_EQ(names().size(), 3u);
    EXPECT_EQ(telephone.sleeps.size(), 1u);
}

// --- Failures ---

TEST_P(FailedFind, SaysSoAndStaysInTheForm)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        fill("last.name", "mil");
        directory.status = static_cast<DirectoryStatus>(GetParam().status);
        find();
        EXPECT_EQ(screen(), std::string("! ") + GetParam().text + "\n");
        EXPECT_EQ(top().type, 6);
        EXPECT_EQ(popups(), 1u);
        wait(2999ms);
        EXPECT_EQ(popups(), 1u);
        wait(1ms);
        EXPECT_EQ(popups(), 0u);
        EXPECT_TRUE(inForm());
        EXPECT_EQ(display().getCurrent(), &form());
        EXPECT_EQ(value("last.name"), "mil");
        EXPECT_EQ(focused(), "find.options");
        EXPECT_TRUE(telephone.sleeps.empty());
        EXPECT_TRUE(log.texts(3).empty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachStatus, FailedFind,
    testing::Values(Failure{1, "no.matches.found"}, Failure{2, "connection.failure"},
                    Failure{3, "configuration.error"}, Failure{4, "configuration.error"},
                    Failure{5, "configuration.error"}, Failure{6, "ldap.find.unexpected.error"},
                    Failure{7, "ldap.find.unexpected.error"}, Failure{8, "ldap.find.unexpected.error"},
                    Failure{10, "ldap.find.unexpected.error"}, Failure{-1, "ldap.find.unexpected.error"}),
    [](const auto& test) {
        const int status = test.param.status;
        return status < 0 ? "Minus" + std::to_string(-status) : std::to_string(status);
    });

TEST_F(Find, KeepsTheOldResultsWhenItFails)
{
    startOnItsTab();
    listShows(threePeople());
    const auto* pRows = &peopleRows();
    go(state());
    fill("last.name", "x");
    directory.status = DIRECTORY_NO_MATCHES;
    digits.converted.clear();
    find();
    EXPECT_EQ(digits.converted.size(), 3u);
    EXPECT_EQ(&peopleRows(), pRows);
    EXPECT_EQ(context().m_pPreviousLdapDisplayList, nullptr);
    press(OK); // the message
    press(BACK);
    EXPECT_TRUE(inList());
    EXPECT_EQ(names(), (Texts{"Adams, Zoe", "Baker, Mia", "Clark, Amy"}));
}

TEST_F(Find, SearchesAgainAfterAFailure)
{
    open();
    fill("last.name", "a");
    directory.status = DIRECTORY_CONNECTION_FAILURE;
    find();
    press(OK); // the message
    directoryHolds(threePeople());
    press(OK);
    EXPECT_TRUE(inList());
    EXPECT_EQ(names().size(), 3u);
}

TEST_F(Find, BuildsItsMessagesOnce)
{
    open();
    const auto idOfMessage = [this] {
        find();
        const auto id = top().id;
        press(OK); // the message
        press(BACK);
        go(state());
        return id;
    };
    const auto noCriteria = idOfMessage();
    EXPECT_EQ(idOfMessage(), noCriteria);
    fill("last.name", "a");
    std::vector<std::uint64_t> progress;
    directory.whileSearching = [&] { progress.push_back(top().id); };
    const auto failure = idOfMessage();
    EXPECT_EQ(idOfMessage(), failure);
    EXPECT_EQ(progress, std::vector(2, progress.front()));
}

TEST_F(Find, TakesItsProgressMessageAwayWhateverHappens)
{
    open();
    fill("last.name", "a");
    directory.status = DIRECTORY_SUCCESS;
    directory.found.clear(); // not even a trailer
    focus("find.options");
    EXPECT_THROW(state().itemStateChangedEvent(&context(), form().getSelectedItem()), std::out_of_range);
    host.settle();
    EXPECT_EQ(popups(), 0u);
}

TEST_F(Find, ReportsAnUnknownWidgetThatWasHidden)
{
    open();
    EXPECT_EQ(state().screenEvent(&context(), nullptr, &context().m_PopupConfirm), &state());
    EXPECT_TRUE(log.has("LDAPStateFind::screenEvent - unrecognised widget", 3));
}
