#include "DisplayTest.h"

#include <framework/display/Form.h>
#include <framework/display/Frame.h>
#include <framework/display/SelectionField.h>
#include <framework/display/TextField.h>

using namespace DisplayAPI;

namespace {

class FormTest : public DisplayTest {
protected:
    FormTest()
    {
        listenTo(form, "form");
        form.setTitle(plain("Contact"));
        number.setFieldType(TextField::NUMBER);
        number.setIcon(4);
        group.append(&none);
        group.append(&friends);
        options.append(&save);
        options.append(&exit);
        recorder.call(static_cast<Item&>(name), "name");
        recorder.call(static_cast<Item&>(number), "number");
        recorder.call(static_cast<Item&>(group), "group");
        recorder.call(static_cast<Item&>(options), "options");
        for (auto* field : std::initializer_list<Field*>{&name, &number, &group})
            form.append(field);
        form.setOptions(&options);
        show(form);
    }

    void focus(Item& item)
    {
        form.setSelectedItem(&item);
        host.settle();
    }
    const FrameField& painted(std::size_t index) const { return host.frame->base.fields.at(index); }

    MenuCommand none{TranslationInfo::plain("no group")};
    MenuCommand friends{TranslationInfo::plain("friends")};
    MenuCommand save{TranslationInfo::plain("save")};
    MenuCommand exit{TranslationInfo::plain("exit")};
    TextField name{TranslationInfo::plain("Name")};
    TextField number{TranslationInfo::plain("Mobile")};
    SelectionField group{TranslationInfo::plain("Group")};
    SelectionField options{TranslationInfo{}};
    Form form{0};
};

} // namespace

TEST_F(FormTest, ShowsItsFieldsAndTheOptionsBelow)
{
    name.setString("Ann");
    host.settle();

    EXPECT_EQ(screen(), "Contact\n"
                        "> Name: Ann|\n"
                        "  Mobile: \n"
                        "  Group: <no group>\n"
                        "  <save>\n"
                        "( phone.ok )( phone.save )( phone.back )\n");
    EXPECT_EQ(painted(1).kind, FrameField::Kind::Number);
    EXPECT_EQ(painted(1).icon, 4);
    EXPECT_EQ(painted(1).cursor, -1);
    EXPECT_EQ(host.frame->base.rowCount, 4);
}

TEST_F(FormTest, MovesBetweenItsFieldsSilently)
{
    EXPECT_EQ(form.getSelectedItem(), &name);
    press(Kind::Up);
    EXPECT_EQ(form.getSelectedItem(), &name);

    for (int i = 0; i < 5; ++i)
        press(Kind::Down);
    EXPECT_EQ(form.getSelectedItem(), &options);
    press(Kind::Up);
    EXPECT_EQ(form.getSelectedItem(), &group);
    press(Kind::Row, 1);
    EXPECT_EQ(form.getSelectedItem(), &number);
    press(Kind::Row, 17);
    EXPECT_EQ(form.getSelectedItem(), &number);

    EXPECT_EQ(heard(), "");
}

TEST_F(FormTest, ReportsItsKeysAsCommands)
{
    press(Kind::Ok);
    EXPECT_EQ(recorder.lastType, Command::OK);
    press(Kind::Save);
    press(Kind::Back);
    press(Kind::Context);

    EXPECT_EQ(heard(), "OK(form) SAVE(form) BACK(form) RIGHT(form) ");
}

TEST_F(FormTest, SelectsOnlyWhatStandsOnIt)
{
    TextField elsewhere(plain("elsewhere"));

    focus(group);
    form.setSelectedItem(&elsewhere);
    form.setSelectedItem(nullptr);

    EXPECT_EQ(form.getSelectedItem(), &group);
}

TEST_F(FormTest, IsEmptyAfterClear)
{
    form.clear();
    form.setOptions(nullptr);

    EXPECT_EQ(form.getSelectedItem(), nullptr);
    EXPECT_FALSE(press(Kind::Ok));
    EXPECT_TRUE(press(Kind::Down));
    EXPECT_EQ(screen(), "Contact\n( phone.ok )( phone.save )( phone.back )\n");
}

TEST_F(FormTest, LosesAFieldThatIsDestroyed)
{
    auto mortal = std::make_unique<TextField>(plain("mortal"));
    form.append(mortal.get());
    focus(*mortal);
    host.type("x");
    heard();

    mortal.reset();
    host.settle();

    EXPECT_EQ(form.getSelectedItem(), &name);
    EXPECT_EQ(host.frame->base.fields.size(), 4u);
    EXPECT_TRUE(press(Kind::Ok));
}

TEST_F(FormTest, ScrollsLongForms)
{
    std::vector<std::unique_ptr<TextField>> many;
    form.clear();
    for (int i = 0; i < 12; ++i) {
        many.push_back(std::make_unique<TextField>(plain(std::to_string(i))));
        form.append(many.back().get());
    }
    press(Kind::Row, 12);

    EXPECT_EQ(form.getSelectedItem(), &options);
    EXPECT_EQ(host.frame->base.fields.size(), 8u);
    EXPECT_EQ(painted(0).position, 5);
    EXPECT_EQ(host.frame->base.rowCount, 13);
}

TEST_F(FormTest, BeginsAtItsTopWhenTheProgramSelectsAField)
{
    std::vector<std::unique_ptr<TextField>> many;
    form.clear();
    for (int i = 0; i < 12; ++i) {
        many.push_back(std::make_unique<TextField>(plain(std::to_string(i))));
        form.append(many.back().get());
    }
    for (int i = 0; i < 9; ++i)
        press(Kind::Down);
    ASSERT_EQ(painted(0).position, 2);

    form.setSelectedItem(many[1].get());
    press(Kind::Right);

    EXPECT_EQ(painted(0).position, 0);
}

TEST_F(FormTest, ReportsEveryEditOnce)
{
    host.type("An");
    press(Kind::Clear);
    press(Kind::ClearAll);

    EXPECT_EQ(heard(), "changed(name) changed(name) changed(name) changed(name) ");
    EXPECT_EQ(name.getString(), "");

    press(Kind::Clear);
    press(Kind::ClearAll);
    EXPECT_EQ(heard(), "") << "nothing was there to delete";
}

TEST_F(FormTest, RaisesNothingForWhatTheProgramSets)
{
    name.setString("Ann");
    name.setMaxLength(2);
    group.setSelectedIndex(1);
    host.settle();

    EXPECT_EQ(heard(), "");
}

TEST_F(FormTest, EntersLettersByRepeatedPresses)
{
    host.tap("266");
    EXPECT_EQ(name.getString(), "A");
    EXPECT_EQ(painted(0).value, "An");
    EXPECT_EQ(painted(0).cursor, 2);
    EXPECT_EQ(heard(), "changed(name) ");

    host.advance(1s);
    EXPECT_EQ(name.getString(), "An");
    EXPECT_EQ(heard(), "changed(name) ");
}

TEST_F(FormTest, BeginsWordsWithACapital)
{
    host.tap("2");
    host.advance(1s);
    host.tap("2"); // Aa
    host.advance(1s);
    host.tap("12"); // Aa.a
    host.advance(1s);
    host.tap("111"); // Aa.a-
    host.advance(1s);
    host.tap("202"); // Aa.a-A A
    host.advance(1s);
    EXPECT_EQ(name.getString(), "Aa.a-A A");

    press(Kind::Left);
    press(Kind::Left);
    host.tap("2"); // wherever the cursor is
    host.advance(1s);
    EXPECT_EQ(name.getString(), "Aa.a-Aa A");
}

TEST_F(FormTest, ChangesTheLettersWithTheHashKey)
{
    using Letters = FrameField::Letters;
    EXPECT_EQ(painted(0).letters, Letters::Words);

    host.tap("#");
    EXPECT_EQ(painted(0).letters, Letters::Small);
    host.tap("23");
    host.tap("#"); // keeps the letter that was pending as it was
    EXPECT_EQ(painted(0).letters, Letters::Capitals);
    host.tap("46");
    host.tap("#");
    EXPECT_EQ(painted(0).letters, Letters::Words);
    host.tap("4");
    host.advance(1s);
    EXPECT_EQ(name.getString(), "adGMg");

    host.tap("#");
    name.setString(""); // for another entry
    host.settle();
    EXPECT_EQ(painted(0).letters, Letters::Words);
}

TEST_F(FormTest, ChangesTheCaseOfNothingBetweenTwoPressesOfOneKey)
{
    host.tap("22");
    EXPECT_EQ(painted(0).value, "B");
    host.tap("22");
    EXPECT_EQ(painted(0).value, "2");
    host.tap("2");
    EXPECT_EQ(painted(0).value, "A");
}

TEST_F(FormTest, BeginsAnAddressSmall)
{
    name.setFieldType(TextField::EMAIL);
    host.tap("2");
    host.advance(1s);
    EXPECT_EQ(name.getString(), "a");
    EXPECT_EQ(painted(0).letters, FrameField::Letters::Small);
}

TEST_F(FormTest, EntersSignsWithTheStarKey)
{
    host.tap("*");
    EXPECT_EQ(painted(0).value, "*");
    host.tap("*");
    EXPECT_EQ(painted(0).value, "@");
    host.advance(1s);
    host.tap("****");
    host.tap("1");
    host.advance(1s);
    EXPECT_EQ(name.getString(), "@/.");
}

TEST_F(FormTest, CommitsALetterBeforeTheKeyThatFollows)
{
    for (const auto& [kind, command] : std::map<Kind, std::string>{
             {Kind::Ok, "OK"}, {Kind::Save, "SAVE"}, {Kind::Back, "BACK"}, {Kind::Context, "RIGHT"}}) {
        press(Kind::ClearAll);
        heard();
        host.tap("2");

        press(kind);

        EXPECT_EQ(heard(), "changed(name) " + command + "(form) ");
        EXPECT_EQ(name.getString(), "A");
    }
}

TEST_F(FormTest, CommitsALetterWhenTheFieldIsLeft)
{
    host.tap("2");
    press(Kind::Down);

    EXPECT_EQ(name.getString(), "A");
    EXPECT_EQ(heard(), "changed(name) ");
}

TEST_F(FormTest, MovesTheCursorByLetters)
{
    name.setString("Ae\u0301b");

    press(Kind::Left);
    EXPECT_EQ(painted(0).cursor, 3);
    press(Kind::Left);
    EXPECT_EQ(painted(0).cursor, 1) << "a letter and its accent are one step";
    press(Kind::Left);
    press(Kind::Left);
    EXPECT_EQ(painted(0).cursor, 0);
    press(Kind::Right);
    EXPECT_EQ(painted(0).cursor, 1);
    EXPECT_EQ(heard(), "");
}

TEST_F(FormTest, EditsAtTheCursor)
{
    name.setString("Anna");
    press(Kind::Left);
    press(Kind::Left);

    host.type("x");
    EXPECT_EQ(name.getString(), "Anxna");
    press(Kind::Clear);
    press(Kind::Clear);
    EXPECT_EQ(name.getString(), "Ana");
    EXPECT_EQ(painted(0).cursor, 1);
}

TEST_F(FormTest, RightOnlyConfirmsAPendingLetter)
{
    name.setString("bc");
    press(Kind::Left);
    press(Kind::Left);
    host.tap("2");

    press(Kind::Right);

    EXPECT_EQ(name.getString(), "Abc");
    EXPECT_EQ(painted(0).cursor, 1);
}

TEST_F(FormTest, ClearTakesAPendingLetterFirst)
{
    name.setString("ab");
    host.tap("2");

    press(Kind::Clear);
    EXPECT_EQ(name.getString(), "ab");
    EXPECT_EQ(heard(), "");
    host.advance(2s);
    EXPECT_EQ(heard(), "");
}

TEST_F(FormTest, LimitsTypingOnly)
{
    name.setMaxLength(3);
    host.type("abcd");
    EXPECT_EQ(name.getString(), "abc");
    EXPECT_EQ(heard(), "changed(name) changed(name) changed(name) ");
    host.tap("2");
    EXPECT_EQ(painted(0).value, "abc");

    name.setString("longer than that");
    host.type("x");
    EXPECT_EQ(name.getString(), "longer than that");
    press(Kind::Clear);
    EXPECT_EQ(name.getString(), "longer than tha");
}

TEST_F(FormTest, CountsCharactersNotBytes)
{
    name.setMaxLength(2);
    host.press(Key::ofText("\u00e4"));
    host.press(Key::ofText("\u6f22"));
    host.press(Key::ofText("x"));

    EXPECT_EQ(name.getString(), "\u00e4\u6f22");
    EXPECT_EQ(painted(0).maxLength, 2);
}

TEST_F(FormTest, HasNoLimitWithAllBitsSet)
{
    name.setMaxLength(static_cast<unsigned>(-1));
    host.type(std::string(300, 'x'));

    EXPECT_EQ(name.getString().size(), 300u);
    EXPECT_EQ(painted(0).maxLength, -1);
}

TEST_F(FormTest, TakesDialledCharactersOnlyInANumber)
{
    focus(number);

    host.press(Key::ofText("+"));
    host.tap("49*#0");
    host.type("a b-");
    host.press(Key::ofText("7"));

    EXPECT_EQ(number.getString(), "+49*#07");
}

TEST_F(FormTest, LeavesAReadOnlyFieldAsItIs)
{
    name.setString("Ann");
    name.setReadOnly(true);

    host.type("x");
    host.tap("2");
    for (const auto kind : {Kind::Clear, Kind::ClearAll, Kind::Left})
        EXPECT_TRUE(press(kind));
    host.advance(2s);

    EXPECT_EQ(name.getString(), "Ann");
    EXPECT_TRUE(painted(0).readOnly);
    EXPECT_EQ(painted(0).cursor, -1);
    EXPECT_EQ(heard(), "");
    press(Kind::Ok);
    EXPECT_EQ(heard(), "OK(form) ");
}

TEST_F(FormTest, ReportsNoOkForAFieldToldNotTo)
{
    name.setNotifyOnOk(false);

    press(Kind::Ok);

    EXPECT_EQ(heard(), "");
}

TEST_F(FormTest, ReportsAFieldsOwnOkCommand)
{
    auto dial = std::make_unique<Command>(Command::OK, plain("dial"));
    name.setOkCommand(dial.get());
    EXPECT_EQ(name.getOkCommand(), dial.get());

    press(Kind::Ok);
    EXPECT_EQ(heard(), "dial(form) ");

    dial.reset();
    press(Kind::Ok);
    EXPECT_EQ(heard(), "OK(form) ");
}

TEST_F(FormTest, NamesItsSoftKeyAfterTheFieldsOwnOkCommand)
{
    auto dial = std::make_unique<Command>(Command::OK, plain("dial"));
    name.setOkCommand(dial.get());
    EXPECT_EQ(form.getOkCommand(), dial.get());
    host.settle();
    EXPECT_TRUE(screen().ends_with("( dial )( phone.save )( phone.back )\n")) << screen();

    press(Kind::Down);
    EXPECT_EQ(form.getOkCommand(), nullptr);
    EXPECT_TRUE(screen().ends_with("( phone.ok )( phone.save )( phone.back )\n")) << screen();
    form.clear();
    EXPECT_EQ(form.getOkCommand(), nullptr);
}

TEST_F(FormTest, DropsALetterWhenTheProgramSetsAnotherText)
{
    host.tap("2");

    name.setString("Bob");
    host.advance(2s);

    EXPECT_EQ(name.getString(), "Bob");
    EXPECT_EQ(heard(), "");
}

TEST_F(FormTest, StepsASelectionSilently)
{
    focus(group);

    press(Kind::Right);
    EXPECT_EQ(group.getSelectedCommand(), &friends);
    EXPECT_EQ(painted(2).value, "friends");
    EXPECT_EQ(painted(2).choice, 1);
    EXPECT_EQ(painted(2).choices, 2);
    press(Kind::Right);
    EXPECT_EQ(group.getSelectedCommand(), &none);
    press(Kind::Left);
    EXPECT_EQ(group.getSelectedCommand(), &friends);
    EXPECT_EQ(heard(), "");
}

TEST_F(FormTest, ReportsOkOnASelectionOnce)
{
    focus(group);
    press(Kind::Ok);
    EXPECT_EQ(heard(), "changed(group) ");

    group.setNotifyOnOk(true);
    press(Kind::Ok);
    EXPECT_EQ(heard(), "OK(form) ");
}

TEST_F(FormTest, LeavesDigitsOnASelectionToTheTelephone)
{
    focus(group);

    EXPECT_FALSE(host.press(Key::ofDigit('5')));
}

TEST_F(FormTest, KeepsAChosenCommandThatIsNoChoice)
{
    MenuCommand other(plain("none of them"));

    group.clear(&other);
    group.append(&none);
    group.append(&friends);

    EXPECT_EQ(group.getSelectedCommand(), &other);
    EXPECT_EQ(group.getSelectedIndex(), -1);
    focus(group);
    press(Kind::Left);
    EXPECT_EQ(group.getSelectedCommand(), &friends);

    group.setSelectedCommand(&other);
    press(Kind::Right);
    EXPECT_EQ(group.getSelectedCommand(), &none);
}

TEST_F(FormTest, SelectsTheFirstChoiceWhenItsCommandIsDestroyed)
{
    auto mortal = std::make_unique<MenuCommand>(plain("mortal"));
    group.append(mortal.get());
    group.setSelectedIndex(2);
    EXPECT_EQ(group.getSelectedCommand(), mortal.get());

    mortal.reset();

    EXPECT_EQ(group.getSelectedCommand(), &none);
    EXPECT_EQ(group.getSelectedIndex(), 0);
}

TEST_F(FormTest, IgnoresChoicesThatDoNotExist)
{
    group.setSelectedIndex(1);

    group.setSelectedIndex(-1);
    group.setSelectedIndex(2);
    group.append(nullptr);

    EXPECT_EQ(group.getSelectedIndex(), 1);
}

TEST_F(FormTest, SurvivesASelectionWithoutChoices)
{
    group.clear(nullptr);
    focus(group);

    press(Kind::Left);
    press(Kind::Right);

    EXPECT_EQ(group.getSelectedCommand(), nullptr);
    EXPECT_EQ(painted(2).value, "");
    EXPECT_EQ(painted(2).choice, -1);
}

TEST_F(FormTest, DropsAnEventOfAFieldDestroyedMeanwhile)
{
    auto mortal = std::make_unique<TextField>(plain("mortal"));
    form.append(mortal.get());
    form.setSelectedItem(mortal.get());

    display.keyPressed(Key::ofText("x"));
    mortal.reset();
    host.settle();

    EXPECT_EQ(heard(), "");
}

TEST_F(FormTest, TranslatesLabelsWhenPainted)
{
    name.setLabel(key("last.name"));
    host.settle();
    EXPECT_EQ(painted(0).label, "last.name");

    translator.prefix = "de:";
    display.repaint();
    EXPECT_EQ(painted(0).label, "de:last.name");
}
