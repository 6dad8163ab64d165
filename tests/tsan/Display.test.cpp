// Widgets driven from several threads at once: what a phonelet's locks leave open.

#include <functional>
#include <thread>
#include <vector>

#include <framework/display/ContextMenu.h>
#include <framework/display/Form.h>
#include <framework/display/Frame.h>
#include <framework/display/PopupNotification.h>
#include <framework/display/TabScreen.h>
#include <framework/display/TextField.h>

#include "../framework/display/DisplayTest.h"

using namespace DisplayAPI;

namespace {

// Runs all of them at the same time, a few hundred times each.
void together(const std::vector<std::function<void(int)>>& jobs)
{
    std::vector<std::jthread> threads;
    for (const auto& job : jobs) {
        threads.emplace_back([&job] {
            for (int i = 0; i < 300; ++i)
                job(i);
        });
    }
}

class ManyThreads : public DisplayTest {};

} // namespace

TEST_F(ManyThreads, ShareAList)
{
    TabScreen tabs(2, 1);
    SearchList list;
    tabs.addTab(plain("office"), &list);
    listenTo(list, "list");
    list.setUsedWithTab(true, &tabs);
    display.setCurrent(&tabs);

    together({
        [&](int i) {
            list.append(row(std::to_string(i)));
            list.setSelectedIndex(i / 2);
        },
        [&](int i) {
            list.set(i, 1, 0, "changed", 1);
            list.remove(0);
            if (i % 50 == 0)
                list.clear();
        },
        [&](int i) {
            list.setSearchText(std::to_string(i % 3));
            list.setWaitAnimation(i % 2 == 0);
            tabs.nextTab();
        },
        [&](int i) {
            host.press(i % 2 == 0 ? Kind::Up : Kind::Down);
            host.tap("6");
        },
    });

    EXPECT_EQ(display.getCurrent(), &tabs);
}

TEST_F(ManyThreads, MakeAndDestroyWidgetsOnScreen)
{
    Form form(0);
    ContextMenu menu(1);
    display.setCurrent(&form);

    together({
        [&](int) {
            PopupNotification notification;
            notification.setTimeout(1);
            display.setCurrent(&notification);
        },
        [&](int) {
            TextField field(plain("field"));
            form.append(&field);
            field.setString("text");
        },
        [&](int) {
            MenuCommand command(plain("command"));
            menu.addCommand(&command);
            display.setCurrent(&menu);
        },
        [&](int i) {
            display.timePassed();
            EXPECT_TRUE(display.paint().visible);
            host.press(Kind::Down, i);
        },
    });

    host.settle();
    EXPECT_EQ(form.getSelectedItem(), nullptr);
}
