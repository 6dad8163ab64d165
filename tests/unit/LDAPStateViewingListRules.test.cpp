// What the text in the directory's search field means.

#include "DirectoryListScreens.h"

namespace {

class DirectorySearchRules : public DirectoryListScreens {
protected:
    void withNicknames()
    {
        directory.nicknames = true;
        startOnItsTab();
        // The directory is asked when something is typed.
        type("a");
        press(Kind::ClearAll);
    }
    // What is searched for after typing this into an empty list.
    std::string searchedFor(const std::string& text)
    {
        state().parseSearchString(text);
        log.clear();
        directory.searches.clear();
        timerExpires();
        return queries().at(0);
    }
    static std::string said(const std::string& operation, bool result, const std::string& text,
                            const std::string& delta)
    {
        return "LDAPStateViewingList::" + operation + " = " + (result ? "1" : "0") +
               ", SearchText = " + text + ", DeltaSearchText = " + delta + " ";
    }
};

} // namespace

TEST_F(DirectorySearchRules, TakeWhatMakesTheTextLongerForNew)
{
    startOnItsTab();
    struct Case {
        std::string oldText, newText, delta;
    };
    for (const auto& [oldText, newText, delta] : std::vector<Case>{{"", "", ""},
                                                                   {"", "m", "m"},
                                                                   {"", "mil", "mil"},
                                                                   {"mi", "mil", "l"},
                                                                   {"mi", "mil*", "l*"},
                                                                   {"mil", "mil", ""},
                                                                   {"mil", "mi", ""},
                                                                   {"mil", "xyz", ""},
                                                                   {"mil", "abcd", "d"},
                                                                   {"mil", "", ""}})
        EXPECT_EQ(state().getLastQuickSearchInput(oldText, newText), delta) << oldText << ">" << newText;
}

TEST_F(DirectorySearchRules, LeaveInTheFieldWhatBelongsToTheName)
{
    startOnItsTab();
    struct Case {
        std::string newText, currentText, delta, shown;
    };
    const std::vector<Case> table{
        {"", "", "", ""},
        {"mil", "mi", "l", "mil"},
        // No comma and no blank at the start.
        {",", "", ",", ""},
        {" ", "", " ", ""},
        {"x,", "", ",", ""},
        {" m", "", " m", " m"},
        {",", "m", "", ","},
        {" ", "m", "", " "},
        {"m ", "m", " ", "m "},
        // What starts a search is no part of the name, nor is anything behind it.
        {"mil*", "mil", "*", "mil"},
        {"mil#", "mil", "#", "mil"},
        {"mi*l", "mi", "*l", "mi"},
        {"mi#l", "mi", "#l", "mi"},
        {"mi*l#", "mi", "*l#", "mi"},
        {"mi#l*", "mi", "#l*", "mi"},
        {"mi*l*", "mi", "*l*", "mi"},
        {"mi*,j", "mi", "*,j", "mi"},
        {"*", "", "*", ""},
        {"#", "", "#", ""},
        // A blank between the names.
        {"Miller,", "Miller", ",", "Miller,"},
        {"Miller,j", "Miller,", "j", "Miller, j"},
        {"Miller, j", "Miller,", " j", "Miller, j"},
        {"Miller, ", "Miller,", " ", "Miller, "},
        {"Miller,j,k", "Miller,j,", "k", "Miller, j,k"},
        {",j", ",", "j", ", j"},
        {"Miller,j#", "Miller, j", "#", "Miller, j"},
        // The comma is not the last character of what was typed: also before what starts a search.
        {"Miller,#", "Miller,", "#", "Miller, "},
        // The blank takes the place of the last character where a search was started.
        {"Miller,*", "Miller,", "*", "Miller,"},
        {"Miller,H*", "Miller,H", "*", "Miller, "},
        {"Miller,Ha*", "Miller,Ha", "*", "Miller, H"},
        {"Miller, H*", "Miller, H", "*", "Miller, H"},
        {"Miller,Jö*", "Miller,Jö", "*", "Miller, J"},
        {"Miller,ö*", "Miller,", "ö*", "Miller, "},
    };
    for (const auto& [newText, currentText, delta, shown] : table) {
        log.clear();
        EXPECT_EQ(state().treatSearchText(newText, currentText, delta), shown) << newText;
        EXPECT_EQ(log.count("LDAPStateViewingList::parseSearchString SearchTextNew = " + shown +
                                ", SearchTextCurr = " + newText + ", SearchTextOld = " + currentText +
                                ", DeltaSearchText = " + delta,
                            5),
                  1);
    }
}

TEST_F(DirectorySearchRules, LeaveANicknameUpToTheAsterisk)
{
    withNicknames();
    struct Case {
        std::string newText, currentText, delta, shown;
    };
    for (const auto& [newText, currentText, delta, shown] :
         std::vector<Case>{{"bob*", "bob", "*", "bob"},
                           {"b*b*", "b", "*", "b"},
                           {"*", "", "*", ""},
                           {",", "", ",", ","},
                           {" ", "", " ", " "},
                           {"bob#", "bob", "#", "bob#"},
                           {"bob,j", "bob,", "j", "bob,j"},
                           {"bob,j*", "bob,j", "*", "bob,j"}}) {
        log.clear();
        EXPECT_EQ(state().treatSearchText(newText, currentText, delta), shown) << newText;
        EXPECT_EQ(log.count("LDAPStateViewingList::parseSearchString SearchTextNew = " + shown +
                                ", SearchTextCurr = " + newText + ", SearchTextOld = " + currentText +
                                ", DeltaSearchText = " + delta,
                            5),
                  1);
    }
}

TEST_F(DirectorySearchRules, SplitTheTextIntoNames)
{
    startOnItsTab();
    struct Case {
        std::string text, surname, firstname;
    };
    const std::vector<Case> table{
        {"mil", "mil*", ""},
        {"mil*", "mil*", ""},
        {"m*l", "m*l", ""},
        {"mil#", "mil", ""},
        {"mil#x", "mil", ""},
        {"mil#*", "mil", ""},
        {"m*#", "m*", ""},
        {" mil", " mil*", ""},
        {"*", "*", ""},
        {"#", "", ""},
        {"", "", ""},
        {"Miller,", "Miller", ""},
        {"Miller, jo", "Miller", "jo*"},
        {"Miller,jo", "Miller", "jo*"},
        {"Miller,   jo", "Miller", "jo*"},
        {"Miller,   ", "Miller", ""},
        {"Miller,j*", "Miller", "j*"},
        {"Miller,j#", "Miller", "j"},
        {"Miller,j*n#", "Miller", "j*n"},
        {"Miller,#", "Miller", ""},
        {"Miller,*", "Miller", "*"},
        {"Mil#ler,j", "Mil#ler", "j*"},
        {"Mil*,j", "Mil*", "j*"},
        {"Miller,j,k", "Miller", "j,k*"},
        {",j", "", "j*"},
        {", j o ", "", "j o *"},
        // Nothing stays of the names before.
        {"mil", "mil*", ""},
    };
    for (const auto& [text, surname, firstname] : table) {
        std::string query = surname.empty() ? "" : surnameQuery(surname);
        if (!firstname.empty())
            query += (query.empty() ? "" : " ") + ("firstname=" + firstname);
        log.clear();
        EXPECT_EQ(searchedFor(text), query) << text;
        state().parseSearchString(text);
        EXPECT_EQ(log.count("LDAPStateViewingList::parseSearchString SearchString = " + text +
                                ", Surname = " + surname + ", Firstname = " + firstname,
                            5),
                  1);
    }
}

TEST_F(DirectorySearchRules, ForgetBothNamesAndTheText)
{
    startOnItsTab();
    state().parseSearchString("Miller, Amy");
    state().setTreatedSearchText("Miller, Amy");
    state().clearTextMembers();
    EXPECT_EQ(state().getTreatedSearchText(), "");
    timerExpires();
    EXPECT_EQ(queries(), Texts{""});
}

TEST_F(DirectorySearchRules, SearchForANicknameAsItIs)
{
    startOnItsTab();
    state().parseSearchString("x, first"); // nothing of it stays
    directory.nicknames = true;
    type("a");
    for (const auto& [text, name] : std::vector<std::pair<std::string, std::string>>{
             {"bob", "bob"}, {"bob*", "bob"}, {"b*b", "b"}, {"bob#", "bob#"}, {"bob, j", "bob, j"}})
        EXPECT_EQ(searchedFor(text), surnameQuery(name)) << text;
    EXPECT_EQ(searchedFor("*"), "");
}

TEST_F(DirectorySearchRules, StartASearchAtOnceForTheKeysThatMeanIt)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        ASSERT_EQ(widget().size(), 1);
        struct Case {
            std::string treated, text, delta;
            bool atOnce;
        };
        const std::vector<Case> table{
            {"mil", "mil", "", false},
            {"mil", "mil*", "*", true},
            {"mil", "mil*x", "*x", true},
            {"mil", "milx*", "x*", false},
            {"", "*", "*", false},
            {"mil", "mil#", "#", true},
            {"", "#", "#", false},
            {"mil", "mil ", " ", false},
            {"mil", "mila", "a", false},
            // A comma behind the surname; the list holds no entry.
            {"mil,", "mil,", ",", true},
            {"mil,", "mil", ",", true},
            {"mil, a,", "mil, a,", ",", false},
            {"mil, a", "mil,a", ",a", false},
            {"", ",", ",", true},
        };
        for (const auto& [treated, text, delta, atOnce] : table) {
            state().setTreatedSearchText(treated);
            log.clear();
            EXPECT_EQ(state().isImmediateLDAPSearch(&context(), text, delta), atOnce) << text << "|" << delta;
            EXPECT_EQ(log.count(said("isImmediateLDAPSearch", atOnce, text, delta), 5), 1);
        }
    }
}

TEST_F(DirectorySearchRules, StartNoSearchByACommaOverSeveralRows)
{
    startOnItsTab(Bar::None);
    finds({person("Miller", "Amy")});
    type("mil*");
    ASSERT_EQ(widget().size(), 2);
    EXPECT_FALSE(state().isImmediateLDAPSearch(&context(), "mil,", ","));
}

TEST_F(DirectorySearchRules, StartASearchByACommaOverALoneEntry)
{
    startOnItsTab();
    finds({person("Miller", "Amy")});
    type("mil*");
    EXPECT_TRUE(state().isImmediateLDAPSearch(&context(), "mil,", ","));
}

TEST_F(DirectorySearchRules, StartASearchForANicknameByTheAsteriskOnly)
{
    withNicknames();
    state().setTreatedSearchText("bob");
    EXPECT_TRUE(state().isImmediateLDAPSearch(&context(), "bob*", "*"));
    EXPECT_FALSE(state().isImmediateLDAPSearch(&context(), "bob#", "#"));
    EXPECT_FALSE(state().isImmediateLDAPSearch(&context(), "bob,", ","));
    EXPECT_FALSE(state().isImmediateLDAPSearch(&context(), "bob", "b"));
    EXPECT_FALSE(state().isImmediateLDAPSearch(&context(), "bob", ""));
    state().setTreatedSearchText("");
    EXPECT_TRUE(state().isImmediateLDAPSearch(&context(), "*", "*"));
}

TEST_F(DirectorySearchRules, AskTheDirectoryForNothingWithoutAText)
{
    startOnItsTab();
    state().setTreatedSearchText("");
    log.clear();
    EXPECT_FALSE(state().isLdapSearch(&context(), ",", ","));
    EXPECT_TRUE(wroteInOrder({"LDAPStateViewingList::isLdapSearch()", "PhonebookList::setLDAPPhonebookList()",
                              "LDAPStateViewingList::isLdapSearch: empty search string",
                              said("isLdapSearch", false, ",", ",")}));
}

TEST_F(DirectorySearchRules, AskTheDirectoryWhileTheTimerRuns)
{
    startOnItsTab();
    threeFound();
    state().setTreatedSearchText("mil");
    telephone.startTimer(timerId());
    log.clear();
    EXPECT_TRUE(state().isLdapSearch(&context(), "mil", "l"));
    EXPECT_TRUE(wroteInOrder(
        {"LDAPStateViewingList::isLdapSearch: SearchTimer running", said("isLdapSearch", true, "mil", "l")}));
    EXPECT_FALSE(log.has("getIndex entered"));
}

TEST_F(DirectorySearchRules, AskTheDirectoryOverAnEmptyList)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        state().setTreatedSearchText("mil");
        log.clear();
        EXPECT_TRUE(state().isLdapSearch(&context(), "mil", "l"));
        EXPECT_TRUE(wroteInOrder(
            {"LDAPStateViewingList::isLdapSearch: empty list", said("isLdapSearch", true, "mil", "l")}));
    }
}

TEST_F(DirectorySearchRules, AskTheDirectoryForATextThatBeginsNoRow)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        startOnItsTab(bar);
        threeFound();
        state().setTreatedSearchText("mix");
        EXPECT_TRUE(state().isLdapSearch(&context(), "anything", "x"));
        EXPECT_TRUE(wroteInOrder({"getIndex QuickSearchString = mix ",
                                  "LDAPStateViewingList::isLdapSearch SearchString = mix",
                                  said("isLdapSearch", true, "anything", "x")}));
    }
}

TEST_F(DirectorySearchRules, AskTheDirectoryAgainForARowOnlyWhenAKeyMeansIt)
{
    startOnItsTab();
    threeFound();
    state().setTreatedSearchText("mil");
    EXPECT_FALSE(state().isLdapSearch(&context(), "mil", "l"));
    EXPECT_TRUE(log.has(said("isLdapSearch", false, "mil", "l"), 5));
    EXPECT_FALSE(log.has("LDAPStateViewingList::isLdapSearch Immediate Search"));
    EXPECT_TRUE(state().isLdapSearch(&context(), "mil*", "*"));
    EXPECT_TRUE(wroteInOrder({said("isImmediateLDAPSearch", true, "mil*", "*"),
                              "LDAPStateViewingList::isLdapSearch Immediate Search",
                              said("isLdapSearch", true, "mil*", "*")}));
}

TEST_F(DirectorySearchRules, TellALoneEntryFromThePlaceholder)
{
    startOnItsTab();
    finds({person("Miller", "Amy")});
    type("mil*");
    state().setTreatedSearchText("mil");
    EXPECT_FALSE(state().isLdapSearch(&context(), "mil", "l"));
    // The row of a list without entries is none.
    results().depopulate();
    EXPECT_TRUE(state().isLdapSearch(&context(), "mil", "l"));
}

TEST_F(DirectorySearchRules, TellTheOptionsRowFromALoneEntry)
{
    startOnItsTab(Bar::None);
    finds({person("Miller", "Amy")});
    PhonebookSearchCriteria criteria({}, "", true);
    results().populate(criteria, true);
    ASSERT_EQ(widget().size(), 1); // the entry's row is still to come
    state().setTreatedSearchText("mil");
    EXPECT_TRUE(state().isLdapSearch(&context(), "mil", "l"));
}
