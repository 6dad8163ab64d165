#include "DirectorySearchScreens.h"
#include "TraceLines.h"

namespace {

class FindForm : public DirectorySearchScreens {
protected:
    LDAPStateFind& state() { return context().m_LdapFind; }
    bool inForm() { return current() == &state(); }

    void open(Bar bar = Bar::SoftKeys)
    {
        startOnItsTab(bar);
        go(state());
    }
    void choose(const std::string& option)
    {
        pick("find.options", option);
        press(OK);
    }
    Texts values()
    {
        Texts texts;
        for (const auto& painted : fields()) {
            if (painted.label != "find.options")
                texts.push_back(painted.value);
        }
        return texts;
    }
    void fillAll()
    {
        for (const auto& painted : fields()) {
            if (painted.label != "find.options")
                fill(painted.label, painted.kind == FrameField::Kind::Number ? "12" : "ab");
        }
    }
};

const std::vector<std::string> LABELS{"find.options", "last.name", "first.name",   "business1",
                                      "business2",    "mobile",    "private",      "company",
                                      "address",      "address2",  "job.function", "email"};
const std::vector<std::string> EMPTY(LABELS.size() - 1);

} // namespace

// --- The form ---

TEST_F(FindForm, OpensFromTheListsMenu)
{
    startOnItsTab();
    press(MENU);
    PhonebookScreens::choose("advanced.find");
    EXPECT_TRUE(inForm());
    EXPECT_EQ(popups(), 0u);
    EXPECT_EQ(title(), "advanced.find");
}

TEST_F(FindForm, HoldsItsOptionsAndAFieldForEachAttribute)
{
    open();
    EXPECT_EQ(top().role, DisplayAPI::FrameRole::Form);
    EXPECT_EQ(title(), "advanced.find");
    Texts labels;
    for (const auto& painted : fields())
        labels.push_back(painted.label);
    EXPECT_EQ(labels, LABELS);
    EXPECT_EQ(values(), EMPTY);
    EXPECT_EQ(choices("find.options"), (Texts{"find", "clear", "exit"}));
    EXPECT_EQ(display().getCurrent(), &form());
}

TEST_F(FindForm, TakesDigitsIntoNumbersAndLettersIntoTexts)
{
    using FieldKind = FrameField::Kind;
    const std::vector<std::pair<FieldKind, int>> expected{
        {FieldKind::Text, 30},   {FieldKind::Text, 30},   {FieldKind::Number, 25}, {FieldKind::Number, 25},
        {FieldKind::Number, 25}, {FieldKind::Number, 25}, {FieldKind::Text, 25},   {FieldKind::Text, 25},
        {FieldKind::Text, 25},   {FieldKind::Text, 25},   {FieldKind::Text, 25}};
    open();
    std::vector<std::pair<FieldKind, int>> kinds;
    for (std::size_t i = 1; i < LABELS.size(); ++i)
        kinds.emplace_back(field(LABELS[i]).kind, field(LABELS[i]).maxLength);
    EXPECT_EQ(kinds, expected);
}

TEST_F(FindForm, LimitsWhatIsTyped)
{
    open();
    fill("last.name", std::string(31, 'x'));
    fill("mobile", std::string(26, '1'));
    fill("email", std::string(26, 'x'));
    EXPECT_EQ(value("last.name"), std::string(30, 'x'));
    EXPECT_EQ(value("mobile"), std::string(25, '1'));
    EXPECT_EQ(value("email"), std::string(25, 'x'));
}

TEST_F(FindForm, BeginsWithTheSurnameAndTheSearch)
{
    open();
    EXPECT_EQ(focused(), "last.name");
    EXPECT_EQ(value("find.options"), "find");
    press(DOWN);
    choose("exit");
    go(state());
    EXPECT_EQ(focused(), "last.name");
    EXPECT_EQ(value("find.options"), "find");
}

TEST_F(FindForm, KeepsItsTextsBetweenVisits)
{
    open();
    fillAll();
    const auto before = values();
    press(BACK);
    go(state());
    EXPECT_EQ(values(), before);
    EXPECT_EQ(fields().size(), LABELS.size());
}

TEST_F(FindForm, SpeaksTheLanguageOfTheTelephone)
{
    open();
    telephone.translator.prefix = "de:";
    for (std::size_t i = 0; i < LABELS.size(); ++i)
        EXPECT_EQ(fields()[i].label, "de:" + LABELS[i]);
    EXPECT_EQ(choices("de:find.options"), (Texts{"de:find", "de:clear", "de:exit"}));
    host.settle();
    EXPECT_EQ(title(), "de:advanced.find");
    focus("de:find.options");
    press(OK);
    EXPECT_EQ(screen(), "! de:no.find.criteria\n");
    press(OK);
    fill("de:last.name", "x");
    directory.whileSearching = [&] { EXPECT_EQ(screen(), "~ de:retrieving.entries\n"); };
    focus("de:find.options");
    press(OK);
    EXPECT_EQ(directory.searches.size(), 1u);
    EXPECT_EQ(screen(), "! de:no.matches.found\n");
}

// --- Leaving and clearing ---

TEST_F(FindForm, ReturnsToTheListWithBackAndWithExit)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        press(BACK);
        EXPECT_TRUE(inList());
        EXPECT_EQ(context().m_pTabScreen->getCurrentDisplayable(), &peopleRows());
        EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
        go(state());
        choose("exit");
        EXPECT_TRUE(inList());
        EXPECT_EQ(display().getCurrent(), context().m_pTabScreen.get());
        EXPECT_TRUE(directory.searches.empty());
    }
}

TEST_F(FindForm, StaysWhenBackComesFromAnotherWidget)
{
    open();
    for (DisplayAPI::Displayable* pOther :
         std::initializer_list<DisplayAPI::Displayable*>{nullptr, &context().m_PopupConfirm}) {
        log.clear();
        EXPECT_EQ(state().backEvent(&context(), nullptr, pOther), &state());
        EXPECT_TRUE(log.has("LDAPStateFind::backEvent - back event on unrecognised widget", 3));
    }
}

TEST_F(FindForm, TakesNoWidgetForItsFormBeforeItIsBuilt)
{
    startOnItsTab();
    EXPECT_EQ(state().backEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().okEvent(&context(), nullptr, nullptr), &state());
    EXPECT_EQ(state().itemStateChangedEvent(&context(), nullptr), &state());
    EXPECT_EQ(state().screenEvent(&context(), nullptr, nullptr), &state());
    EXPECT_TRUE(directory.searches.empty());
    EXPECT_EQ(popups(), 0u);
}

TEST_F(FindForm, KeepsTheTabWhileItIsShown)
{
    open();
    EXPECT_FALSE(state().tabValid(&context()));
    phonelet().tab();
    host.settle();
    EXPECT_TRUE(mode().isLdapTabActive());
    EXPECT_TRUE(inForm());
}

TEST_F(FindForm, EmptiesAllFieldsWithClear)
{
    open();
    fillAll();
    choose("clear");
    EXPECT_EQ(values(), EMPTY);
    EXPECT_EQ(value("find.options"), "find");
    EXPECT_EQ(focused(), "find.options");
    EXPECT_TRUE(inForm());
    EXPECT_TRUE(directory.searches.empty());
    EXPECT_EQ(popups(), 0u);
}

TEST_F(FindForm, IsEmptiedWhenTheDirectoryChanges)
{
    open();
    fillAll();
    press(BACK);
    listShows(threePeople());
    directoryChanges();
    context().m_pTabScreen->setCurrentTabIndex(1);
    go(state());
    EXPECT_EQ(values(), EMPTY);
}

TEST_F(FindForm, CanBeClearedBeforeItIsBuilt)
{
    startOnItsTab();
    state().clearForm(&context());
    go(state());
    EXPECT_EQ(values(), EMPTY);
}

// --- What starts a search ---

TEST_F(FindForm, SearchesOnlyOnOkOnItsOptions)
{
    for (const auto bar : {Bar::SoftKeys, Bar::None}) {
        open(bar);
        for (const auto& label : LABELS) {
            if (label == "find.options")
                continue;
            fill(label, "1");
            press(OK);
            press(SAVE);
            press(MENU);
        }
        step("find.options");
        step("find.options", LEFT);
        EXPECT_TRUE(inForm());
        EXPECT_TRUE(directory.searches.empty());
        EXPECT_EQ(popups(), 0u);
        press(OK);
        EXPECT_EQ(directory.searches.size(), 1u);
        directory.searches.clear();
    }
}

TEST_F(FindForm, DoesNotClearWhenTheChoiceOnlyPassesClear)
{
    open();
    fillAll();
    const auto before = values();
    for (int steps = 0; steps < 3; ++steps)
        step("find.options");
    EXPECT_EQ(values(), before);
}

TEST_F(FindForm, TakesAnOkCommandFromItsOptionsAsWell)
{
    open();
    focus("find.options");
    EXPECT_EQ(state().okEvent(&context(), nullptr, &form()), &state());
    host.settle();
    EXPECT_EQ(screen(), "! no.find.criteria\n");
}

TEST_F(FindForm, IgnoresOkFromAnotherWidget)
{
    open();
    focus("find.options");
    EXPECT_EQ(state().okEvent(&context(), nullptr, &context().m_PopupConfirm), &state());
    EXPECT_TRUE(log.has("LDAPStateFind::okEvent - ok event on unrecognised widget", 3));
    EXPECT_EQ(popups(), 0u);
}

TEST_F(FindForm, TracesItsOperations)
{
    startOnItsTab();
    auto* pContext = &context();
    auto& screen = state();
    expectTraces("LDAPStateFind",
                 {{"enterStateEvent", [&] { screen.enterStateEvent(pContext); }},
                  {"backEvent", [&] { screen.backEvent(pContext, nullptr, nullptr); }},
                  {"okEvent", [&] { screen.okEvent(pContext, nullptr, nullptr); }},
                  {"screenEvent", [&] { screen.screenEvent(pContext, nullptr, nullptr); }},
                  {"itemStateChangedEvent", [&] { screen.itemStateChangedEvent(pContext, nullptr); }},
                  {"clearForm", [&] { screen.clearForm(pContext); }},
                  {"exitStateEvent", [&] { screen.exitStateEvent(pContext); }}});
}

TEST_F(FindForm, TracesTheWayOfASearch)
{
    open();
    fill("email", "a");
    log.clear();
    choose("find");
    EXPECT_TRUE(wroteInOrder({"LDAPStateFind::itemStateChangedEvent()", "LDAPStateFind::handleFindOptions()",
                              "LDAPStateFind::findLdapEntries()"}));
    log.clear();
    state().enterStateEvent(&context());
    EXPECT_TRUE(wroteInOrder({"LDAPStateFind::enterStateEvent()", "LDAPStateFind::constructMenuCommands()",
                              "LDAPStateFind::populateForm()", "LDAPStateFind::constructPopups()",
                              "LDAPStateFind::setFormAsCurrentDisplay()"}));
}
