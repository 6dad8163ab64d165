#include "DisplayTest.h"

#include <framework/display/ContextMenu.h>
#include <framework/display/ExclusiveList.h>
#include <framework/display/Form.h>
#include <framework/display/Frame.h>
#include <framework/display/PopupConfirm.h>
#include <framework/display/PopupNotification.h>
#include <framework/display/PopupProgress.h>
#include <framework/display/SearchList.h>
#include <framework/display/TabScreen.h>

using namespace DisplayAPI;

namespace {

class Displays : public DisplayTest {
protected:
    Displays()
    {
        list.append(row("Ann"));
        listenTo(list, "list");
        listenTo(menu, "menu");
        listenTo(question, "question");
        listenTo(notification, "notification");
        question.setText(plain("Sure?"));
        notification.setText(plain("Saved"));
        notification.setTimeout(3000);
    }

    SearchList list;
    ContextMenu menu{1};
    PopupConfirm question{1};
    PopupNotification notification;
};

using PlainDisplays = PlainDisplayTest;

} // namespace

TEST_F(Displays, ShowNothingAtFirst)
{
    EXPECT_EQ(display.getCurrent(), nullptr);
    EXPECT_EQ(screen(), "");
    EXPECT_FALSE(press(Kind::Back));
    EXPECT_FALSE(press(Kind::SoftKey, 0));
}

TEST_F(Displays, StackPopupsOverTheBase)
{
    show(list);
    show(menu);
    show(question);
    EXPECT_EQ(display.getCurrent(), &question);

    show(menu);
    EXPECT_EQ(display.getCurrent(), &menu);

    menu.dismiss();
    EXPECT_EQ(display.getCurrent(), &question);
    question.dismiss();
    EXPECT_EQ(display.getCurrent(), &list);
}

TEST_F(Displays, RemoveAllPopupsForABase)
{
    show(list);
    show(menu);
    show(question);

    show(list);

    EXPECT_EQ(display.getCurrent(), &list);
    EXPECT_TRUE(host.frame->popups.empty());
    EXPECT_EQ(heard(), "");
}

TEST_F(Displays, IgnoreDismissingWhatIsNotShown)
{
    show(list);
    show(menu);

    question.dismiss();
    notification.dismiss();

    EXPECT_EQ(display.getCurrent(), &menu);
}

TEST_F(Displays, IgnoreNullAndWhatIsNoLongerAlive)
{
    show(list);
    auto popup = std::make_unique<PopupConfirm>(1);
    auto* dangling = popup.get();
    popup.reset();

    display.setCurrent(nullptr);
    display.setCurrent(dangling);

    EXPECT_EQ(display.getCurrent(), &list);
}

TEST_F(Displays, LetDestroyedScreensGo)
{
    auto base = std::make_unique<SearchList>();
    auto popup = std::make_unique<ContextMenu>(1);
    show(*base);
    show(*popup);

    popup.reset();
    EXPECT_EQ(display.getCurrent(), base.get());
    base.reset();
    EXPECT_EQ(display.getCurrent(), nullptr);
    EXPECT_EQ(display.paint().base.role, FrameRole::None);
}

TEST_F(Displays, OutlivedByTheirWidgetsDoNoHarm)
{
    PopupConfirm popup(1);
    {
        Display other(host, {});
        other.setCurrent(&popup);
    }
    popup.dismiss();
}

TEST_F(Displays, SendKeysToThePopupOnTop)
{
    show(list);
    show(menu);
    EXPECT_TRUE(display.isCurrentForKeyEvents(&menu));
    EXPECT_FALSE(display.isCurrentForKeyEvents(&list));

    press(Kind::Back);

    EXPECT_EQ(heard(), "BACK(menu) ");
    EXPECT_EQ(display.getCurrent(), &menu);
}

TEST_F(Displays, KnowWhoseKeysItIs)
{
    TabScreen tabs(2, 1);
    tabs.addTab(plain("office"), &list);
    EXPECT_FALSE(display.isCurrentForKeyEvents(&list));
    EXPECT_FALSE(display.isCurrentForKeyEvents(nullptr));

    show(tabs);

    EXPECT_TRUE(display.isCurrentForKeyEvents(&list));
    EXPECT_TRUE(display.isCurrentForKeyEvents(&tabs));
    EXPECT_FALSE(display.isCurrentForKeyEvents(&menu));
}

TEST_F(Displays, PublishAtOnceWhatBecomesCurrent)
{
    host.moments.clear();

    display.setCurrent(&list);

    EXPECT_EQ(host.moments, std::vector{FrameMoment::InsideEvent});
    EXPECT_EQ(screen(), "> Ann\n( phone.ok )( phone.menu )( phone.back )\n");
}

TEST_F(Displays, AlwaysPublishTheFrameAfterAnEvent)
{
    display.setCurrent(&list);
    host.moments.clear();

    display.eventDone();
    EXPECT_EQ(host.moments, std::vector{FrameMoment::AfterEvent});

    display.eventDone();
    EXPECT_EQ(host.moments.size(), 1u) << "nothing changed";
}

TEST_F(Displays, NumberTheirFrames)
{
    show(list);
    const auto first = host.frame->number;
    show(menu);

    EXPECT_GT(host.frame->number, first);
}

TEST_F(Displays, PublishNothingWhileHidden)
{
    show(list);
    display.hide();
    host.moments.clear();

    show(menu);
    EXPECT_TRUE(host.moments.empty());

    display.show();
    EXPECT_EQ(host.frame->popups.size(), 1u);
    EXPECT_TRUE(host.frame->visible);
}

TEST_F(Displays, RepaintInAnotherLanguage)
{
    list.append(new ListItem(key("list.options"), 1));
    list.setTitle(key("office"));
    show(list);

    translator.prefix = "fr:";
    host.phoneTexts.prefix = "fr:";
    display.repaint();

    EXPECT_EQ(screen(), "fr:office\n"
                        "> Ann\n"
                        "  fr:list.options\n"
                        "( fr:phone.ok )( fr:phone.menu )( fr:phone.back )\n");
}

TEST_F(Displays, ShowCleanTextOnly)
{
    list.append(row("tab\there\nbell\a broken\xff next\u0085line\u2028."));
    list.setTitle(plain("a\x01"));
    display.setSystemWindowSize(1);
    display.setSystemWindowLine(0, "\x7f!");
    show(list);

    EXPECT_EQ(screen(), "a \n"
                        "> Ann\n"
                        "  tab here bell  broken\ufffd next line .\n"
                        " !\n"
                        "( phone.ok )( phone.menu )( phone.back )\n");
}

TEST_F(Displays, KeepTheSystemWindowWithinItsSize)
{
    show(list);
    display.setSystemWindowSize(2);
    display.setSystemWindowLine(0, "first");
    display.setSystemWindowLine(1, "second");
    display.setSystemWindowLine(2, "outside");
    display.setSystemWindowLine(-1, "outside");
    EXPECT_EQ(display.paint().systemWindow, (std::vector<std::string>{"first", "second"}));

    display.setSystemWindowSize(-5);
    EXPECT_TRUE(display.paint().systemWindow.empty());

    display.setSystemWindowSize(1'000'000'000);
    EXPECT_EQ(display.paint().systemWindow.size(), 24u);
}

TEST_F(Displays, GiveEachWidgetItsOwnId)
{
    show(list);
    show(menu);

    EXPECT_EQ(host.frame->base.id, list.id());
    EXPECT_EQ(host.frame->popups[0].id, menu.id());
    EXPECT_NE(list.id(), menu.id());
}

TEST_F(Displays, HaveSoftKeysForEachKindOfScreen)
{
    ExclusiveList exclusive;
    Form form(0);
    TabScreen tabs(2, 1);
    tabs.addTab(plain("empty"), nullptr);
    PopupProgress progress(0);
    MenuCommand yes(plain("Yes"));
    question.addCommand(&yes);
    const auto softKeys = [&](Displayable& shown) {
        show(shown);
        std::string labels;
        for (const auto& softKey : host.frame->softKeys)
            labels += softKey.label + ' ';
        return labels;
    };

    EXPECT_EQ(softKeys(list), "phone.ok phone.menu phone.back ");
    EXPECT_EQ(softKeys(form), "phone.ok phone.save phone.back ");
    form.setOffersSave(false);
    EXPECT_EQ(softKeys(form), "phone.ok phone.back ");
    EXPECT_EQ(softKeys(exclusive), "phone.ok phone.back ");
    EXPECT_EQ(softKeys(tabs), "phone.back ");
    EXPECT_EQ(softKeys(menu), "phone.select phone.back ");
    EXPECT_EQ(softKeys(question), "Yes phone.back ");
    EXPECT_EQ(softKeys(notification), "");
    EXPECT_EQ(softKeys(progress), "");
}

TEST_F(Displays, TakeSoftKeysAsTheKeysTheyName)
{
    show(list);

    press(Kind::SoftKey, 0);
    press(Kind::SoftKey, 1);
    press(Kind::SoftKey, 2);
    EXPECT_FALSE(press(Kind::SoftKey, 3));
    EXPECT_FALSE(press(Kind::SoftKey, -1));

    EXPECT_EQ(heard(), "OK(list) RIGHT(list) BACK(list) ");
}

TEST_F(Displays, ReportTheSaveSoftKeyOfAForm)
{
    Form form(0);
    listenTo(form, "form");
    show(form);

    press(Kind::SoftKey, 1);

    EXPECT_EQ(heard(), "SAVE(form) ");
    EXPECT_EQ(recorder.lastType, Command::SAVE);
}

TEST_F(PlainDisplays, HaveNoSoftKeysWithoutABar)
{
    SearchList list;
    show(list);

    EXPECT_FALSE(display.hasSoftKeyBar());
    EXPECT_TRUE(host.frame->softKeys.empty());
    EXPECT_FALSE(press(Kind::SoftKey, 0));
}

TEST_F(Displays, CloseNotificationsOnlyOnRequestOfTheTelephone)
{
    show(list);
    EXPECT_FALSE(display.closeNotification());
    show(menu);
    EXPECT_FALSE(display.closeNotification());
    show(notification);

    EXPECT_FALSE(display.closeNotification(menu.id()));
    EXPECT_EQ(display.getCurrent(), &notification);
    EXPECT_TRUE(display.closeNotification(notification.id()));
    host.settle();

    EXPECT_EQ(display.getCurrent(), &menu);
    EXPECT_EQ(heard(), "WIDGET_IS_HIDDEN_EVENT(notification) ");
}
