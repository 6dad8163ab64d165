#include <gtest/gtest.h>

#include <framework/display/Frame.h>
#include <framework/display/Image.h>
#include <framework/display/ListItem.h>
#include <framework/display/TranslationInfo.h>
#include <framework/host/TextScreen.h>
#include <testing/FakeTranslator.h>

using namespace DisplayAPI;

TEST(TranslationInfo, TranslatesWheneverItIsAsked)
{
    FakeTranslator translator;
    const TranslationInfo text("office", &translator);
    EXPECT_EQ(text.translated(), "office");

    translator.prefix = "fr:";
    EXPECT_EQ(text.translated(), "fr:office");
    EXPECT_EQ(text.getKey(), "office");
}

TEST(TranslationInfo, HandsItsParameterOn)
{
    FakeTranslator translator;

    EXPECT_EQ(TranslationInfo("delete.entry.prompt", &translator, "Ann").translated(),
              "delete.entry.prompt(Ann)");
    EXPECT_EQ(TranslationInfo("delete.entry.prompt", &translator, "").translated(), "delete.entry.prompt()");
}

TEST(TranslationInfo, IsShownAsItIsWithoutATranslator)
{
    EXPECT_EQ(TranslationInfo().translated(), "");
    EXPECT_EQ(TranslationInfo::plain("Ann").translated(), "Ann");
    EXPECT_EQ(TranslationInfo("office", nullptr).translated(), "office");
    EXPECT_EQ(TranslationInfo("delete", nullptr, "Ann").translated(), "delete Ann");
}

TEST(ListItem, ChangesInPlace)
{
    ListItem row(TranslationInfo::plain("Ann"), 1);

    row.set(5, "Bob");

    EXPECT_EQ(row.getText(), "Bob");
    EXPECT_EQ(row.getIcon(), 5);
    EXPECT_EQ(row.getKind(), 1);
}

TEST(Image, KeepsItsPath)
{
    EXPECT_EQ(Image("/pictures/ann.png").getPath(), "/pictures/ann.png");
}

TEST(TextScreen, PutsTabsBetweenBars)
{
    Frame frame;
    frame.tabs = {"a", "b", "c"};
    frame.currentTab = 2;
    EXPECT_EQ(toText(frame), "| a | b |[c]\n");

    frame.currentTab = 1;
    frame.tabBarFocused = true;
    EXPECT_EQ(toText(frame), "| a |[>b<]| c |\n");
}

TEST(TextScreen, ShowsThePopupOnTopInPlaceOfTheRows)
{
    Frame frame;
    frame.base.title = "title";
    frame.base.rows.push_back({0, 0, "Ann", "", true});
    frame.popups.resize(2);
    frame.popups[0].text = "below";
    frame.popups[1].role = FrameRole::Notification;
    frame.popups[1].text = "on top";
    frame.systemWindow = {"line"};
    frame.softKeys = {{"ok"}, {"back"}};

    EXPECT_EQ(toText(frame), "title\n! on top\nline\n( ok )( back )\n");
}

TEST(TextScreen, BeginsWithTheCalls)
{
    Frame frame;
    frame.base.title = "title";
    frame.signs.calls = {{"1", FrameCall::State::Incoming, "Ann", "030 12", "Incoming call"},
                         {"2", FrameCall::State::Connected, "030 13", "", "Connected"}};
    EXPECT_EQ(toText(frame), "= Ann, 030 12: Incoming call\n= 030 13: Connected\ntitle\n");
}

TEST(TextScreen, PutsTheCursorBetweenCharacters)
{
    FrameScreen screen;
    screen.fields.resize(1);
    screen.fields[0].value = "\u00e4\u00f6";
    screen.fields[0].focused = true;
    for (const auto& [cursor, text] :
         {std::pair{0, "> |\u00e4\u00f6\n"}, std::pair{1, "> \u00e4|\u00f6\n"},
          std::pair{2, "> \u00e4\u00f6|\n"}, std::pair{9, "> \u00e4\u00f6|\n"}}) {
        screen.fields[0].cursor = cursor;
        EXPECT_EQ(toText(screen), text);
    }
}

TEST(Frame, ComparesWhatIsToBeSeen)
{
    Frame one;
    Frame other;
    other.number = 7;
    EXPECT_TRUE(one.showsTheSameAs(other));

    other.base.search = "m";
    EXPECT_FALSE(one.showsTheSameAs(other));
}
