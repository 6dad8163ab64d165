#include "DisplayTest.h"

#include <framework/display/Frame.h>
#include <framework/display/PhonebookItem.h>
#include <framework/display/PopupProgress.h>
#include <framework/display/TabScreen.h>

using namespace DisplayAPI;

namespace {

class SearchListTest : public DisplayTest {
protected:
    SearchListTest()
    {
        listenTo(list, "list");
        show(list);
    }

    void fill(int rows)
    {
        for (int i = 0; i < rows; ++i)
            list.append(row("row " + std::to_string(i)));
        host.settle();
    }

    SearchList list;
};

} // namespace

TEST_F(SearchListTest, ShowsRowsWithTheFirstOneSelected)
{
    list.append(row("Ann"));
    list.append(new PhonebookItem(3, 0, "Bob", 1));
    host.settle();

    EXPECT_EQ(screen(), "> Ann\n"
                        "  Bob\n"
                        "( phone.ok )( phone.menu )( phone.back )\n");
    EXPECT_EQ(host.frame->base.rows[1].icon, 3);
    EXPECT_EQ(host.frame->base.role, FrameRole::List);
}

TEST_F(SearchListTest, PaintsVisibleRowsOnly)
{
    fill(100'000);

    EXPECT_EQ(host.frame->base.rows.size(), 8u);
    EXPECT_EQ(host.frame->base.rowCount, 100'000);
}

TEST_F(SearchListTest, ScrollsByOneRowWhenTheCursorStepsOutOfSight)
{
    fill(20);
    const auto firstRowAt = [&](int selected) {
        list.setSelectedIndex(selected);
        host.settle();
        return host.frame->base.rows.front().position;
    };
    EXPECT_EQ(firstRowAt(7), 0);
    EXPECT_EQ(firstRowAt(8), 1);
    EXPECT_EQ(firstRowAt(4), 1);
    EXPECT_EQ(firstRowAt(1), 1);
    EXPECT_EQ(firstRowAt(0), 0);
}

TEST_F(SearchListTest, ShowsWhatFollowsTheRowItJumpedTo)
{
    fill(40);
    const auto firstRowAt = [&](int selected) {
        list.setSelectedIndex(selected);
        host.settle();
        return host.frame->base.rows.front().position;
    };
    EXPECT_EQ(firstRowAt(20), 19);
    EXPECT_EQ(firstRowAt(5), 4);
    EXPECT_EQ(firstRowAt(39), 32);
    EXPECT_EQ(firstRowAt(0), 0);
}

TEST_F(SearchListTest, KeepsARowSmall)
{
    EXPECT_LE(sizeof(PhonebookItem) + 3 * sizeof(void*), 120u);
}

TEST_F(SearchListTest, IgnoresIndicesOutsideTheList)
{
    fill(3);
    list.setSelectedIndex(1);

    list.setSelectedIndex(-1);
    list.setSelectedIndex(3);
    list.remove(-1);
    list.remove(3);
    list.set(-1, 3, 0, "x", 1);
    list.set(3, 3, 0, "x", 1);

    EXPECT_EQ(list.size(), 3);
    EXPECT_EQ(list.getSelectedIndex(), 1);
    EXPECT_EQ(list.getText(-1), "");
    EXPECT_EQ(list.getText(3), "");
}

TEST_F(SearchListTest, ClampsAnInsertionToTheEnd)
{
    fill(2);

    list.insert(99, row("last"));
    list.insert(-1, row("really last"));

    EXPECT_EQ(list.getText(2), "last");
    EXPECT_EQ(list.getText(3), "really last");
}

TEST_F(SearchListTest, IgnoresANullRow)
{
    list.append(nullptr);

    EXPECT_EQ(list.size(), 0);
}

TEST_F(SearchListTest, KeepsTheSelectedRowWhenOthersComeAndGo)
{
    fill(3);
    list.setSelectedIndex(1);

    list.insert(0, row("new"));
    EXPECT_EQ(list.getText(list.getSelectedIndex()), "row 1");
    list.remove(0);
    EXPECT_EQ(list.getText(list.getSelectedIndex()), "row 1");
    list.remove(1);
    EXPECT_EQ(list.getText(list.getSelectedIndex()), "row 2");
    list.remove(1);
    EXPECT_EQ(list.getText(list.getSelectedIndex()), "row 0");
    list.remove(0);
    EXPECT_EQ(list.getSelectedIndex(), -1);
}

TEST_F(SearchListTest, RelabelsARowInPlace)
{
    fill(2);

    list.set(1, 5, 0, "renamed", 1);
    host.settle();

    EXPECT_EQ(host.frame->base.rows[1].text, "renamed");
    EXPECT_EQ(host.frame->base.rows[1].icon, 5);
}

TEST_F(SearchListTest, MovesTheCursorSilently)
{
    fill(3);

    press(Kind::Down);
    press(Kind::Down);
    press(Kind::Down);
    EXPECT_EQ(list.getSelectedIndex(), 2);
    press(Kind::Up);
    EXPECT_EQ(list.getSelectedIndex(), 1);
    EXPECT_EQ(heard(), "");
}

TEST_F(SearchListTest, WrapsAroundWhenToldTo)
{
    fill(3);
    list.setWrapAround(true);

    press(Kind::Up);
    EXPECT_EQ(list.getSelectedIndex(), 2);
    press(Kind::Down);
    EXPECT_EQ(list.getSelectedIndex(), 0);
}

TEST_F(SearchListTest, ReportsItsKeysAsCommands)
{
    fill(1);

    press(Kind::Ok);
    EXPECT_EQ(recorder.lastType, Command::OK);
    press(Kind::Context);
    EXPECT_EQ(recorder.lastType, Command::RIGHT);
    press(Kind::Right);
    EXPECT_EQ(recorder.lastType, Command::RIGHT);
    press(Kind::Back);
    EXPECT_EQ(recorder.lastType, Command::BACK);
    EXPECT_EQ(heard(), "OK(list) RIGHT(list) RIGHT(list) BACK(list) ");
}

TEST_F(SearchListTest, SelectsTheRowPointedAtAndTakesASecondTimeAsOk)
{
    fill(3);

    press(Kind::Row, 2);
    EXPECT_EQ(list.getSelectedIndex(), 2);
    EXPECT_EQ(heard(), "");
    press(Kind::Row, 2);
    EXPECT_EQ(heard(), "OK(list) ");
}

TEST_F(SearchListTest, ReportsEachTypedCharacterOnce)
{
    host.type("mi");

    EXPECT_EQ(list.getSearchText(), "mi");
    EXPECT_EQ(heard(), "changed(list) changed(list) ");
    EXPECT_EQ(screen(), "/mi\n( phone.ok )( phone.menu )( phone.back )\n");
}

TEST_F(SearchListTest, ComposesWhatIsTyped)
{
    host.type("e");
    host.press(Key::ofText("\u0301"));

    EXPECT_EQ(list.getSearchText(), "\u00e9");
}

TEST_F(SearchListTest, IgnoresControlCharactersAndBrokenTextTyped)
{
    host.press(Key::ofText("\t"));
    host.press(Key::ofText("\xff"));
    host.press(Key::ofText(""));

    EXPECT_EQ(list.getSearchText(), "");
    EXPECT_EQ(heard(), "");
}

TEST_F(SearchListTest, HoldsALetterBackUntilItsTimeIsOver)
{
    host.tap("66");
    EXPECT_EQ(list.getSearchText(), "");
    EXPECT_EQ(screen(), "/[n]\n( phone.ok )( phone.menu )( phone.back )\n");

    host.advance(999ms);
    EXPECT_EQ(heard(), "");
    host.advance(1ms);
    EXPECT_EQ(list.getSearchText(), "n");
    EXPECT_EQ(heard(), "changed(list) ");
}

TEST_F(SearchListTest, CommitsALetterWhenAnotherKeyFollows)
{
    host.tap("6444");
    EXPECT_EQ(list.getSearchText(), "m");
    EXPECT_EQ(heard(), "changed(list) ");

    host.tap("5");
    EXPECT_EQ(list.getSearchText(), "mi");
}

TEST_F(SearchListTest, GoesRoundTheLettersOfAKey)
{
    host.tap("22222");
    host.advance(1s);

    EXPECT_EQ(list.getSearchText(), "a");
}

TEST_F(SearchListTest, RestartsTheTimeWithEachPress)
{
    host.tap("6");
    host.advance(800ms);
    host.tap("6");
    host.advance(800ms);
    EXPECT_EQ(list.getSearchText(), "");

    host.advance(200ms);
    EXPECT_EQ(list.getSearchText(), "n");
}

TEST_F(SearchListTest, LeavesExactlyOneEventWhenTheProgramCommits)
{
    host.tap("6");

    EXPECT_TRUE(list.stopKeypadTimerSaveAndExit());
    EXPECT_FALSE(list.stopKeypadTimerSaveAndExit());
    list.setSearchText("something else");
    host.settle();

    EXPECT_EQ(heard(), "changed(list) ");
    host.advance(2s);
    EXPECT_EQ(heard(), "");
}

TEST_F(SearchListTest, EntersStarAndHashAtOnce)
{
    host.tap("6*");

    EXPECT_EQ(list.getSearchText(), "m*");
    host.tap("#");
    EXPECT_EQ(list.getSearchText(), "m*#");
}

TEST_F(SearchListTest, ReportsACommittedLetterBeforeTheStarOrTextThatFollows)
{
    std::vector<std::string> texts;
    recorder.onItem = [&](Item*) { texts.push_back(list.getSearchText()); };
    host.tap("6*");
    host.tap("6");
    host.type("a");

    EXPECT_EQ(texts, (std::vector<std::string>{"m", "m*", "m*m", "m*ma"}));
}

TEST_F(SearchListTest, DropsAStarThatWaitsWhenAPopupComesUpFirst)
{
    PopupProgress progress(0);
    recorder.onItem = [&](Item*) { display.setCurrent(&progress); };
    host.tap("6*");

    EXPECT_EQ(list.getSearchText(), "m");
}

TEST_F(SearchListTest, ReportsACommittedLetterBeforeTheKeyThatFollows)
{
    fill(2);
    host.tap("6");

    press(Kind::Context);

    EXPECT_EQ(heard(), "changed(list) RIGHT(list) ");
}

TEST_F(SearchListTest, MovesTheCursorFromWhereTheTypedTextLed)
{
    fill(10);
    recorder.onItem = [&](Item*) { list.setSelectedIndex(5); };
    host.tap("6");

    press(Kind::Down);

    EXPECT_EQ(list.getSelectedIndex(), 6);
}

TEST_F(SearchListTest, OkOnlyConfirmsALetterThatMovesTheSelection)
{
    fill(10);
    recorder.onItem = [&](Item*) { list.setSelectedIndex(5); };
    host.tap("6");

    press(Kind::Ok);
    EXPECT_EQ(heard(), "changed(list) ");
    press(Kind::Ok);
    EXPECT_EQ(heard(), "OK(list) ");
}

TEST_F(SearchListTest, OkOnlyConfirmsALetterThatReplacesTheRows)
{
    fill(1);
    recorder.onItem = [&](Item*) {
        list.clear();
        list.append(row("another")); // it may well stand where the old one stood
    };
    host.tap("6");

    press(Kind::Ok);

    EXPECT_EQ(heard(), "changed(list) ");
}

TEST_F(SearchListTest, OkActsWhenTheLetterLeadsToTheSameRow)
{
    fill(10);
    recorder.onItem = [&](Item*) { list.setSelectedIndex(0); };
    host.tap("6");

    press(Kind::Ok);

    EXPECT_EQ(heard(), "changed(list) OK(list) ");
}

TEST_F(SearchListTest, DropsAKeyThatWaitsWhenAMenuComesUpFirst)
{
    fill(10);
    PopupProgress progress(0);
    recorder.onItem = [&](Item*) { display.setCurrent(&progress); };
    host.tap("6");

    press(Kind::Down);

    EXPECT_EQ(list.getSelectedIndex(), 0);
}

TEST_F(SearchListTest, StartsANewTextAfterAnArrowOkTheContextKeyAndBack)
{
    fill(3);
    for (const auto kind : {Kind::Down, Kind::Up, Kind::Ok, Kind::Context, Kind::Right, Kind::Back}) {
        host.press(Kind::ClearAll);
        host.type("mi");
        press(kind);
        heard();

        host.type("x");

        EXPECT_EQ(list.getSearchText(), "x");
        EXPECT_EQ(heard(), "changed(list) ");
    }
}

TEST_F(SearchListTest, StartsANewTextAfterAnotherScreen)
{
    SearchList other;
    host.type("mi");

    show(other);
    press(Kind::Down);
    show(list);
    host.type("x");

    EXPECT_EQ(list.getSearchText(), "x");
}

TEST_F(SearchListTest, StartsANewTextAfterTheTelephoneWasElsewhere)
{
    host.type("mi");

    display.hide();
    display.show();
    host.type("x");

    EXPECT_EQ(list.getSearchText(), "x");
}

TEST_F(SearchListTest, GoesOnTypingAfterAProgressPopup)
{
    PopupProgress progress(0);
    host.type("mi");

    show(progress);
    press(Kind::Down);
    progress.dismiss();
    host.type("l");

    EXPECT_EQ(list.getSearchText(), "mil");
}

TEST_F(SearchListTest, ShowsThatALetterBeginsANewText)
{
    fill(1);
    host.type("mi");
    press(Kind::Ok);

    host.tap("5");

    EXPECT_EQ(screen(), "/[j]\n> row 0\n( phone.ok )( phone.menu )( phone.back )\n");
    EXPECT_EQ(list.getSearchText(), "mi");
}

TEST_F(SearchListTest, AlwaysAppendsStarHashAndComma)
{
    fill(1);
    for (const std::string character : {"*", "#", ","}) {
        host.press(Kind::ClearAll);
        host.type("mi");
        press(Kind::Ok);

        host.type(character);

        EXPECT_EQ(list.getSearchText(), "mi" + character);
    }
}

TEST_F(SearchListTest, AppendsACommaOfTheDigitKeyToo)
{
    fill(1);
    host.type("mi");
    press(Kind::Ok);

    host.tap("11");
    EXPECT_EQ(host.frame->base.search, "mi");
    host.advance(1s);

    EXPECT_EQ(list.getSearchText(), "mi,");
}

TEST_F(SearchListTest, ClearsACharacterOrAll)
{
    host.type("mi");
    host.press(Key::ofText("e\u0323\u0301"));
    heard();

    press(Kind::Clear);
    EXPECT_EQ(list.getSearchText(), "mi");
    press(Kind::ClearAll);
    EXPECT_EQ(list.getSearchText(), "");
    EXPECT_EQ(heard(), "changed(list) changed(list) ");

    press(Kind::Clear);
    press(Kind::ClearAll);
    EXPECT_EQ(heard(), "");
}

TEST_F(SearchListTest, ClearTakesAPendingLetterSilently)
{
    host.type("m");
    host.tap("4");
    heard();

    press(Kind::Clear);
    host.advance(2s);

    EXPECT_EQ(list.getSearchText(), "m");
    EXPECT_EQ(heard(), "");
}

TEST_F(SearchListTest, SelectsTheRowThatBeginsWithTheTextWhenNobodyElseSearches)
{
    list.setItemStateListener(nullptr);
    list.clear();
    for (const auto* text : {"No group", "Friends", "\u00c4rzte", "Family", "Work"})
        list.append(row(text));

    host.type("f");
    EXPECT_EQ(list.getSelectedIndex(), 1);
    host.type("A");
    EXPECT_EQ(list.getSelectedIndex(), 3);
    host.type("x");
    EXPECT_EQ(list.getSelectedIndex(), 3) << "nothing begins with that";
    press(Kind::ClearAll);
    EXPECT_EQ(list.getSelectedIndex(), 3);
    host.type("a");
    EXPECT_EQ(list.getSelectedIndex(), 2);

    press(Kind::Up);
    host.tap("9");
    press(Kind::Ok);
    EXPECT_EQ(list.getSelectedIndex(), 4);
    EXPECT_EQ(heard(), "") << "OK only confirms the letter";
    press(Kind::Ok);
    EXPECT_EQ(heard(), "OK(list) ");
}

TEST_F(SearchListTest, ReportsATextSetOutsideItsOwnEventOnce)
{
    list.setSearchText("abc");
    list.setSearchText("abcd");
    host.settle();
    EXPECT_EQ(heard(), "changed(list) ");

    list.setSearchText("abcd");
    host.settle();
    EXPECT_EQ(heard(), "");
}

TEST_F(SearchListTest, SettingTheTextInsideItsOwnEventIsSilent)
{
    recorder.onItem = [&](Item*) { list.setSearchText("abc"); };
    host.type("x");
    EXPECT_EQ(heard(), "changed(list) ");
    EXPECT_EQ(list.getSearchText(), "abc");

    list.setSearchText("abc");
    host.settle();
    EXPECT_EQ(heard(), "");
}

TEST_F(SearchListTest, SettingTheTextInsideAnotherListsEventIsNotSilent)
{
    SearchList other;
    other.setItemStateListener(&recorder);
    recorder.call(static_cast<Item&>(other), "other");
    recorder.onItem = [&](Item* item) {
        if (item == &other)
            list.setSearchText("abc");
    };

    other.setSearchText("x");
    host.settle();

    EXPECT_EQ(heard(), "changed(other) changed(list) ");
}

TEST_F(SearchListTest, ClearIsSilentAndForgetsNothingThatWasReported)
{
    fill(3);
    host.type("xyz");
    heard();

    list.clear();
    EXPECT_EQ(list.size(), 0);
    EXPECT_EQ(list.getSelectedIndex(), -1);
    EXPECT_EQ(list.getSearchText(), "");
    list.setSearchText("xyz");
    host.settle();

    EXPECT_EQ(heard(), "");
}

namespace {

// Searches a directory that holds nobody, three seconds after the text changed last.
class FruitlessSearch : public SearchListTest {
protected:
    FruitlessSearch()
    {
        recorder.onItem = [&](Item*) {
            if (!std::exchange(ignoresNext, false))
                restOfWait = 3;
        };
    }

    void pass(int seconds)
    {
        for (; seconds > 0; --seconds) {
            host.advance(1s);
            if (restOfWait > 0 && --restOfWait == 0)
                search();
        }
    }

    void search()
    {
        ++searches;
        ignoresNext = list.stopKeypadTimerSaveAndExit();
        const auto text = list.getSearchText();
        list.clear();
        list.append(row("no.results"));
        list.setSearchText(text);
        host.settle();
    }

    int searches = 0;
    int restOfWait = 0;
    bool ignoresNext = false;
};

} // namespace

TEST_F(FruitlessSearch, IsNotRepeated)
{
    host.type("xyz");

    pass(60);

    EXPECT_EQ(searches, 1);
    EXPECT_EQ(list.getSearchText(), "xyz");
    EXPECT_FALSE(ignoresNext);
}

TEST_F(FruitlessSearch, RaisesOneEventForALetterThatWasPending)
{
    host.type("xy");
    host.tap("9999");
    heard();

    search();
    EXPECT_EQ(heard(), "changed(list) ");
    EXPECT_EQ(list.getSearchText(), "xyz");
    EXPECT_FALSE(ignoresNext);

    restOfWait = 0;
    pass(60);
    EXPECT_EQ(searches, 1);
}

TEST_F(SearchListTest, KeepsALetterThatWaitsWhileTheTextBeforeItIsAnswered)
{
    recorder.onItem = [&](Item*) { list.setSearchText(list.getSearchText()); };

    host.tap("64");
    host.advance(1s);

    EXPECT_EQ(list.getSearchText(), "mg");
}

TEST_F(SearchListTest, OpensItsSearchFieldOverAnEmptyText)
{
    list.showSearchPopup();
    host.settle();
    EXPECT_EQ(screen(), "/\n( phone.ok )( phone.menu )( phone.back )\n");

    list.clear();
    host.settle();
    EXPECT_EQ(screen(), "( phone.ok )( phone.menu )( phone.back )\n");
}

TEST_F(SearchListTest, AsksForTextUntilAnEntryIsListed)
{
    const auto asks = [this] {
        host.settle();
        return host.frame->base.asksForText;
    };
    list.append(row("No entries"));
    EXPECT_FALSE(asks()) << "nobody opened the search";
    list.showSearchPopup();
    EXPECT_TRUE(asks());
    list.setSearchText("abc");
    EXPECT_TRUE(asks());

    list.remove(0);
    list.append(new PhonebookItem(0, 0, "Bob", 1));
    EXPECT_FALSE(asks());
    list.remove(0);
    EXPECT_TRUE(asks());
    list.append(row("Options"));
    list.append(new PhonebookItem(3, 0, "Bob", 1));
    EXPECT_FALSE(asks());
}

TEST_F(SearchListTest, ShowsTheWaitAnimationAtOnce)
{
    host.moments.clear();

    list.setWaitAnimation(true);

    EXPECT_TRUE(host.frame->base.waiting);
    EXPECT_EQ(host.moments, std::vector{FrameMoment::InsideEvent});
    EXPECT_EQ(screen(), "...\n( phone.ok )( phone.menu )( phone.back )\n");
}

TEST_F(SearchListTest, PublishesNothingForAListThatIsNotShown)
{
    SearchList other;
    host.moments.clear();

    other.setWaitAnimation(true);

    EXPECT_TRUE(host.moments.empty());
}

TEST_F(SearchListTest, GetsItsHighlightBackWhenARowIsSelected)
{
    fill(2);
    list.setSelectionHighlight(false);
    host.settle();
    EXPECT_FALSE(host.frame->base.highlighted);
    EXPECT_EQ(screen(), "  row 0\n  row 1\n( phone.ok )( phone.menu )( phone.back )\n");

    list.setSelectedIndex(1);
    host.settle();
    EXPECT_TRUE(host.frame->base.highlighted);
}

TEST_F(SearchListTest, SurvivesItsTabScreen)
{
    fill(1);
    {
        TabScreen tabs(2, 1);
        list.setUsedWithTab(true, &tabs);
    }

    EXPECT_TRUE(press(Kind::Up));
    EXPECT_EQ(heard(), "");
}

TEST_F(SearchListTest, MayBeDeletedInsideItsOwnEvent)
{
    auto mortal = std::make_unique<SearchList>();
    listenTo(*mortal, "mortal");
    show(*mortal);
    recorder.onItem = [&](Item*) { mortal.reset(); };

    host.type("m");

    EXPECT_EQ(heard(), "changed(mortal) ");
    EXPECT_EQ(display.getCurrent(), nullptr);
}
