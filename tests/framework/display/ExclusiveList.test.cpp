#include "DisplayTest.h"

#include <framework/display/ExclusiveList.h>
#include <framework/display/Frame.h>

using namespace DisplayAPI;

namespace {

class Exclusive : public DisplayTest {
protected:
    Exclusive()
    {
        listenTo(list, "list");
        list.setTitle(key("display.options"));
        show(list);
    }

    ExclusiveList list;
};

} // namespace

TEST_F(Exclusive, HasItsChoiceUnderTheCursor)
{
    EXPECT_EQ(list.getSelectedIndex(), -1);
    EXPECT_EQ(list.append(row("first")), 0);
    EXPECT_EQ(list.append(row("second")), 1);
    EXPECT_EQ(list.append(nullptr), -1);
    host.settle();

    EXPECT_EQ(list.size(), 2);
    EXPECT_EQ(list.getSelectedIndex(), 0);
    EXPECT_EQ(screen(), "display.options\n"
                        "> first\n"
                        "  second\n"
                        "( phone.ok )( phone.back )\n");
}

TEST_F(Exclusive, MovesItsChoiceSilentlyAndStopsAtTheEnds)
{
    list.append(row("first"));
    list.append(row("second"));

    press(Kind::Up);
    EXPECT_EQ(list.getSelectedIndex(), 0);
    press(Kind::Down);
    press(Kind::Down);
    EXPECT_EQ(list.getSelectedIndex(), 1);
    EXPECT_EQ(heard(), "");
}

TEST_F(Exclusive, ReportsOkAndBack)
{
    list.append(row("first"));
    list.append(row("second"));

    press(Kind::Ok);
    press(Kind::SoftKey, 1);
    press(Kind::Row, 1);
    press(Kind::Row, 1);
    press(Kind::Right);

    EXPECT_EQ(heard(), "OK(list) BACK(list) OK(list) RIGHT(list) ");
    EXPECT_EQ(list.getSelectedIndex(), 1);
}

TEST_F(Exclusive, IgnoresIndicesOutsideTheList)
{
    list.append(row("first"));

    list.setSelectedIndex(-1);
    list.setSelectedIndex(1);

    EXPECT_EQ(list.getSelectedIndex(), 0);
}

TEST_F(Exclusive, ShowsTheWaitAnimationAtOnce)
{
    list.setWaitAnimation(true);
    EXPECT_TRUE(host.frame->base.waiting);

    list.setWaitAnimation(false);
    EXPECT_FALSE(host.frame->base.waiting);
}
