#include "DisplayTest.h"

#include <framework/display/ContextMenu.h>
#include <framework/display/Frame.h>
#include <framework/display/PopupConfirm.h>
#include <framework/display/PopupProgress.h>

using namespace DisplayAPI;

namespace {

template <typename Base> class PopupFixture : public Base {
protected:
    PopupFixture()
    {
        this->listenTo(menu, "menu");
        this->listenTo(question, "question");
        for (auto* command : {&edit, &remove, &removeAll})
            menu.addCommand(command);
        question.addCommand(&yes);
        question.addCommand(&no);
        question.setText(this->key("delete.entry.prompt"));
    }

    MenuCommand edit{TranslationInfo::plain("edit")};
    MenuCommand remove{TranslationInfo::plain("delete"), 3};
    MenuCommand removeAll{TranslationInfo::plain("delete")};
    MenuCommand yes{TranslationInfo::plain("yes")};
    MenuCommand no{TranslationInfo::plain("no")};
    ContextMenu menu{1};
    PopupConfirm question{1};
};

using Menu = PopupFixture<DisplayTest>;
using Question = PopupFixture<DisplayTest>;
using QuestionWithoutSoftKeys = PopupFixture<PlainDisplayTest>;

class Progress : public DisplayTest {};

} // namespace

TEST_F(Menu, ShowsItsCommandsAsRows)
{
    menu.setTitle(key("options"));
    show(menu);

    EXPECT_EQ(screen(), "options\n"
                        "> edit\n"
                        "  delete\n"
                        "  delete\n"
                        "( phone.select )( phone.back )\n");
    EXPECT_EQ(host.frame->popups[0].rows[1].icon, 3);
}

TEST_F(Menu, HasAHeadUntilItsCommandsAreTakenAway)
{
    menu.setTitle(TranslationInfo::plain("Adams, Amy"));
    menu.setImage("amy.png");
    show(menu);
    EXPECT_EQ(host.frame->popups[0].title, "Adams, Amy");
    EXPECT_EQ(host.frame->popups[0].image, "amy.png");

    menu.clearCommands();
    show(menu);
    EXPECT_EQ(host.frame->popups[0].title, "");
    EXPECT_EQ(host.frame->popups[0].image, "");
}

TEST_F(Menu, ReportsTheVeryCommandChosen)
{
    Command* chosen = nullptr;
    recorder.onCommand = [&](Command* command, Displayable*) { chosen = command; };
    show(menu);

    press(Kind::Down);
    press(Kind::Down);
    press(Kind::Ok);

    EXPECT_EQ(chosen, &removeAll);
    EXPECT_EQ(heard(), "delete(menu) ");
    EXPECT_EQ(recorder.lastType, Command::SCREEN);
    EXPECT_EQ(display.getCurrent(), &menu) << "a choice does not close it";
}

TEST_F(Menu, ChoosesTheRowPointedAt)
{
    show(menu);

    press(Kind::Row, 1);
    press(Kind::Row, 7);
    press(Kind::Row, -1);

    EXPECT_EQ(heard(), "delete(menu) ");
}

TEST_F(Menu, WrapsAround)
{
    show(menu);

    press(Kind::Up);
    EXPECT_TRUE(host.frame->popups[0].rows[2].selected);
    press(Kind::Down);
    EXPECT_TRUE(host.frame->popups[0].rows[0].selected);
}

TEST_F(Menu, IsTakenBySoftKeysToo)
{
    show(menu);

    press(Kind::SoftKey, 0);
    press(Kind::SoftKey, 1);

    EXPECT_EQ(heard(), "edit(menu) BACK(menu) ");
}

TEST_F(Menu, OpensWithItsFirstCommandSelected)
{
    show(menu);
    press(Kind::Down);
    menu.dismiss();

    show(menu);

    EXPECT_TRUE(host.frame->popups[0].rows[0].selected);
}

TEST_F(Menu, LosesACommandThatIsDestroyed)
{
    auto mortal = std::make_unique<MenuCommand>(plain("mortal"));
    menu.addCommand(mortal.get());
    show(menu);
    press(Kind::Up);
    EXPECT_EQ(host.frame->popups[0].rows.size(), 4u);

    mortal.reset();
    host.settle();

    EXPECT_EQ(host.frame->popups[0].rows.size(), 3u);
    EXPECT_TRUE(host.frame->popups[0].rows[2].selected);
}

TEST_F(Menu, DropsAChoiceWhoseCommandIsDestroyedMeanwhile)
{
    auto mortal = std::make_unique<MenuCommand>(plain("mortal"));
    menu.clearCommands();
    menu.addCommand(mortal.get());
    show(menu);

    display.keyPressed(Key::of(Kind::Ok));
    mortal.reset();
    host.settle();

    EXPECT_EQ(heard(), "");
}

TEST_F(Menu, MayLoseItsCommandsInsideTheChoice)
{
    auto mortal = std::make_unique<MenuCommand>(plain("mortal"));
    menu.clearCommands();
    menu.addCommand(mortal.get());
    recorder.onCommand = [&](Command*, Displayable*) { mortal.reset(); };
    show(menu);

    press(Kind::Ok);

    EXPECT_EQ(heard(), "mortal(menu) ");
    EXPECT_TRUE(host.frame->popups[0].rows.empty());
}

TEST_F(Menu, IgnoresANullCommand)
{
    menu.clearCommands();
    menu.addCommand(nullptr);
    show(menu);

    press(Kind::Down);
    press(Kind::Ok);

    EXPECT_EQ(heard(), "OK(menu) ") << "nothing to choose: the key itself";
}

TEST_F(Menu, ShowsPicturesOfCommands)
{
    edit.setImagePath("/pictures/ann.png");
    show(menu);

    EXPECT_EQ(host.frame->popups[0].rows[0].image, "/pictures/ann.png");
}

TEST_F(Menu, ConsumesKeysThatMeanNothingToIt)
{
    show(menu);

    EXPECT_TRUE(press(Key::Kind::Left));
    host.tap("5");

    EXPECT_EQ(heard(), "");
}

TEST_F(Question, HasItsCommandsAsSoftKeys)
{
    question.setState(1);
    show(question);

    EXPECT_EQ(screen(), "? delete.entry.prompt\n"
                        "( yes )( no )( phone.back )\n");
    EXPECT_EQ(host.frame->popups[0].state, 1);

    press(Kind::SoftKey, 1);
    press(Kind::SoftKey, 2);
    EXPECT_EQ(heard(), "no(question) BACK(question) ");
    EXPECT_EQ(display.getCurrent(), &question);
}

TEST_F(Question, TakesOkAsItsFirstCommand)
{
    show(question);

    press(Kind::Down);
    press(Kind::Ok);

    EXPECT_EQ(heard(), "yes(question) ");
}

TEST_F(QuestionWithoutSoftKeys, ShowsItsCommandsAsRows)
{
    show(question);
    press(Kind::Down);

    EXPECT_EQ(screen(), "? delete.entry.prompt\n"
                        "  yes\n"
                        "> no\n");
    press(Kind::Ok);
    press(Kind::Row, 0);
    EXPECT_EQ(heard(), "no(question) yes(question) ");
}

TEST_F(Progress, DropsKeys)
{
    PopupProgress progress(0);
    SearchList list;
    listenTo(list, "list");
    listenTo(progress, "progress");
    progress.setText(key("retrieving.entries"));
    progress.setType(1);
    show(list);
    show(progress);

    EXPECT_TRUE(press(Kind::Ok));
    EXPECT_TRUE(press(Kind::Back));
    host.type("x");

    EXPECT_EQ(heard(), "");
    EXPECT_EQ(screen(), "~ retrieving.entries\n");
    EXPECT_EQ(host.frame->popups[0].type, 1);
    progress.dismiss();
    EXPECT_EQ(display.getCurrent(), &list);
}
