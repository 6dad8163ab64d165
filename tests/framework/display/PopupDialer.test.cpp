#include "DisplayTest.h"

#include <framework/display/Frame.h>
#include <framework/display/PopupDialer.h>

using namespace DisplayAPI;

namespace {

template <typename Base> class DiallerFixture : public Base {
protected:
    DiallerFixture()
    {
        this->listenTo(dialler, "dialler");
        dialler.setLine1(this->key("dialler.Please.Dial"));
        this->show(dialler);
    }

    MenuCommand dial{TranslationInfo::plain("dial")};
    MenuCommand cancel{TranslationInfo::plain("cancel")};
    PopupDialer dialler{1, 3};
};

using Dialler = DiallerFixture<DisplayTest>;
using DiallerWithoutSoftKeys = DiallerFixture<PlainDisplayTest>;

} // namespace

TEST_F(Dialler, ShowsItsLinesAndWhatIsTyped)
{
    dialler.setLine1Prefix("Call");
    dialler.setLine1(plain("Ann"));
    dialler.setLine2("4711");
    dialler.showStimulusText(true);
    dialler.setNoScroll();
    dialler.addCommand(&dial);
    dialler.addCommand(&cancel);
    host.tap("0*#");

    EXPECT_EQ(screen(), "Call Ann\n"
                        "4711\n"
                        "#0*#\n"
                        "( dial )( cancel )( phone.back )\n");
    EXPECT_TRUE(host.frame->popups[0].dialler.stimulusText);
    EXPECT_FALSE(host.frame->popups[0].dialler.scrolls);
}

TEST_F(Dialler, ReportsEveryDigit)
{
    host.tap("03");
    host.press(Key::ofText("+"));
    press(Kind::Clear);
    press(Kind::ClearAll);
    EXPECT_EQ(heard(),
              "changed(dialler) changed(dialler) changed(dialler) changed(dialler) changed(dialler) ");
    EXPECT_EQ(dialler.getLineEditText(), "");

    press(Kind::Clear);
    host.type("x");
    EXPECT_EQ(heard(), "");
}

TEST_F(Dialler, ReportsWhatWasTyped)
{
    host.tap("030");
    press(Kind::Clear);

    EXPECT_EQ(dialler.getLineEditText(), "03");
}

TEST_F(Dialler, StartsANewTextWithTheFirstDigit)
{
    dialler.setText("4711");
    EXPECT_EQ(dialler.getLineEditText(), "4711");

    host.tap("03");

    EXPECT_EQ(dialler.getLineEditText(), "03");
}

TEST_F(Dialler, GoesOnInTheTextInEditMode)
{
    dialler.setText("0");
    dialler.setEditMode(true);

    host.tap("3012");

    EXPECT_EQ(dialler.getLineEditText(), "03012");
    EXPECT_TRUE(host.frame->popups[0].dialler.editMode);
}

TEST_F(Dialler, DeletesFromTheTextThatWasSet)
{
    dialler.setText("4711");

    press(Kind::Clear);
    host.tap("2");

    EXPECT_EQ(dialler.getLineEditText(), "4712");
}

TEST_F(Dialler, RaisesNothingForWhatTheProgramSets)
{
    dialler.setText("4711");
    dialler.setEditMode(true);
    host.settle();

    EXPECT_EQ(heard(), "");
}

TEST_F(Dialler, IsFreshWhenShownAgain)
{
    dialler.setEditMode(true);
    host.tap("03");
    show(dialler);
    EXPECT_EQ(dialler.getLineEditText(), "03") << "it was shown all the time";

    dialler.dismiss();
    show(dialler);

    EXPECT_EQ(dialler.getLineEditText(), "");
    EXPECT_FALSE(host.frame->popups[0].dialler.editMode);
}

TEST_F(Dialler, TakesOkAsItsFirstCommand)
{
    press(Kind::Ok);
    EXPECT_EQ(heard(), "OK(dialler) ") << "no command yet: the key itself";

    dialler.addCommand(&dial);
    dialler.addCommand(&cancel);
    press(Kind::Down);
    press(Kind::Ok);
    press(Kind::SoftKey, 1);
    press(Kind::Back);

    EXPECT_EQ(heard(), "dial(dialler) cancel(dialler) BACK(dialler) ");
    EXPECT_EQ(display.getCurrent(), &dialler);
}

TEST_F(Dialler, MayChangeItsCommandsInsideItsEvent)
{
    auto mortal = std::make_unique<MenuCommand>(plain("redial"));
    dialler.addCommand(mortal.get());
    recorder.onItem = [&](Item*) {
        dialler.clearCommands();
        mortal.reset();
        dialler.addCommand(&dial);
    };

    host.tap("0");

    EXPECT_EQ(screen(), "dialler.Please.Dial\n#0\n( dial )( phone.back )\n");
}

TEST_F(DiallerWithoutSoftKeys, ShowsItsCommandsAsRows)
{
    dialler.addCommand(&dial);
    dialler.addCommand(&cancel);
    host.settle();
    press(Kind::Down);

    EXPECT_EQ(screen(), "dialler.Please.Dial\n"
                        "#\n"
                        "  dial\n"
                        "> cancel\n");
    press(Kind::Ok);
    EXPECT_EQ(heard(), "cancel(dialler) ");
}
