#include "DisplayTest.h"

#include <framework/display/ContextMenu.h>
#include <framework/display/Frame.h>
#include <framework/display/PopupConfirm.h>
#include <framework/display/PopupDialer.h>
#include <framework/display/PopupNotification.h>
#include <framework/display/PopupProgress.h>

using namespace DisplayAPI;

namespace {

constexpr auto ENDED = "WIDGET_IS_HIDDEN_EVENT(notification) ";

class Notification : public DisplayTest {
protected:
    Notification()
    {
        list.append(row("Ann"));
        listenTo(list, "list");
        listenTo(popup, "notification");
        popup.setText(key("changes.saved"));
        popup.setType(PopupNotification::SUCCESS);
        popup.setTimeout(3000);
        show(list);
    }

    SearchList list;
    PopupNotification popup;
};

} // namespace

TEST_F(Notification, ShowsItsTextWithoutSoftKeys)
{
    show(popup);

    EXPECT_EQ(screen(), "! changes.saved\n");
    EXPECT_EQ(host.frame->popups[0].type, PopupNotification::SUCCESS);
}

TEST_F(Notification, GoesWhenItsTimeIsOver)
{
    show(popup);
    host.advance(2999ms);
    EXPECT_EQ(display.getCurrent(), &popup);

    host.advance(1ms);

    EXPECT_EQ(display.getCurrent(), &list);
    EXPECT_EQ(heard(), ENDED);
    EXPECT_EQ(recorder.lastType, Command::SCREEN);
    host.advance(10s);
    EXPECT_EQ(heard(), "");
}

TEST_F(Notification, RestartsItsTimeWhenMadeCurrentAgain)
{
    show(popup);
    host.advance(2s);
    show(popup);

    host.advance(2s);
    EXPECT_EQ(display.getCurrent(), &popup);
    host.advance(1s);
    EXPECT_EQ(heard(), ENDED);
}

TEST_F(Notification, StaysWithoutATimeOut)
{
    popup.setTimeout(0);
    show(popup);

    host.advance(24h);

    EXPECT_EQ(display.getCurrent(), &popup);
}

TEST_F(Notification, GoesByAKeyAndConsumesIt)
{
    show(popup);

    EXPECT_TRUE(press(Kind::Ok));

    EXPECT_EQ(heard(), ENDED);
    EXPECT_EQ(display.getCurrent(), &list);
    host.advance(10s);
    EXPECT_EQ(heard(), "");
}

TEST_F(Notification, ReportsItsEndBeforeTheKeyThatFollows)
{
    show(popup);

    display.keyPressed(Key::of(Kind::Ok));
    display.keyPressed(Key::of(Kind::Ok));
    host.settle();

    EXPECT_EQ(heard(), std::string(ENDED) + "OK(list) ");
}

TEST_F(Notification, GoesWhenABaseIsMadeCurrent)
{
    show(popup);

    show(list);

    EXPECT_EQ(heard(), ENDED);
}

TEST_F(Notification, DismissedRaisesNothing)
{
    show(popup);

    popup.dismiss();
    host.settle();
    host.advance(10s);

    EXPECT_EQ(display.getCurrent(), &list);
    EXPECT_EQ(heard(), "");
}

TEST_F(Notification, DestroyedRaisesNothing)
{
    {
        PopupNotification mortal;
        listenTo(mortal, "mortal");
        mortal.setTimeout(1000);
        show(mortal);
    }
    host.advance(10s);

    EXPECT_EQ(heard(), "");
    EXPECT_EQ(display.getCurrent(), &list);
}

TEST_F(Notification, DestroyedAfterItWentIsNotReportedAnyMore)
{
    auto mortal = std::make_unique<PopupNotification>();
    listenTo(*mortal, "mortal");
    show(*mortal);

    display.keyPressed(Key::of(Kind::Ok));
    mortal.reset();
    host.settle();

    EXPECT_EQ(heard(), "");
}

TEST_F(Notification, WithoutAListenerJustGoes)
{
    popup.setCommandListener(nullptr);
    show(popup);

    host.advance(3s);

    EXPECT_EQ(screen(), "> Ann\n( phone.ok )( phone.menu )( phone.back )\n");
}

TEST_F(Notification, PublishesTheNextFrameAfterItsEndWasHandled)
{
    show(popup);
    std::string seenByHandler;
    recorder.onCommand = [&](Command*, Displayable*) { seenByHandler = screen(); };

    host.advance(3s);

    EXPECT_EQ(seenByHandler, "! changes.saved\n");
    EXPECT_EQ(screen(), "> Ann\n( phone.ok )( phone.menu )( phone.back )\n");
}

TEST_F(Notification, RunsOutWhileTheTelephoneIsElsewhere)
{
    show(popup);
    display.hide();

    host.advance(3s);

    EXPECT_EQ(heard(), ENDED);
}

TEST_F(Notification, RunsOutUnderAnotherPopup)
{
    ContextMenu menu(1);
    show(popup);
    show(menu);

    host.advance(3s);

    EXPECT_EQ(heard(), ENDED);
    EXPECT_EQ(display.getCurrent(), &menu);
}

TEST_F(Notification, MayBeShownAgainByItsOwnEnd)
{
    show(popup);
    recorder.onCommand = [&](Command*, Displayable*) { display.setCurrent(&popup); };

    press(Kind::Ok);

    EXPECT_EQ(display.getCurrent(), &popup);
}

TEST_F(Notification, OnlyNotificationsReportTheirEnd)
{
    ContextMenu menu(1);
    PopupConfirm question(1);
    PopupProgress progress(1);
    PopupDialer dialler(1, 3);
    for (auto* other : std::initializer_list<Displayable*>{&menu, &question, &progress, &dialler}) {
        other->setCommandListener(&recorder);
        show(*other);
        show(list);
    }

    EXPECT_EQ(heard(), "");
}
