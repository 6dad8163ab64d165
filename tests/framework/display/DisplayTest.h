// What the tests of the widgets share: a display, its host, and who hears of what the user does.

#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <framework/display/Command.h>
#include <framework/display/Displayable.h>
#include <framework/display/Item.h>
#include <framework/display/ListItem.h>
#include <framework/display/Listeners.h>
#include <framework/display/MenuCommand.h>
#include <framework/display/SearchList.h>
#include <framework/host/DisplayHostIfc.h>
#include <testing/FakeDisplayHost.h>

using namespace std::chrono_literals;
using Kind = DisplayAPI::Key::Kind;

// Writes down what it hears: "OK(list) ", "delete(menu) ", "changed(list) ".
class Recorder : public DisplayAPI::CommandListener, public DisplayAPI::ItemStateListener {
public:
    std::function<void(DisplayAPI::Command*, DisplayAPI::Displayable*)> onCommand;
    std::function<void(DisplayAPI::Item*)> onItem;

    void call(DisplayAPI::Displayable& displayable, const std::string& name)
    {
        m_displayables[&displayable] = name;
    }
    void call(DisplayAPI::Item& item, const std::string& name) { m_items[&item] = name; }

    void commandAction(DisplayAPI::Command* command, DisplayAPI::Displayable* displayable) override
    {
        m_heard += command->getLabel().getKey() + '(' + m_displayables[displayable] + ") ";
        lastType = command->getCommandType();
        if (onCommand)
            onCommand(command, displayable);
    }
    void itemStateChanged(DisplayAPI::Item* item) override
    {
        m_heard += "changed(" + m_items[item] + ") ";
        if (onItem)
            onItem(item);
    }

    // Since it was asked last.
    std::string heard() { return std::exchange(m_heard, {}); }

    int lastType = 0;

private:
    std::map<const DisplayAPI::Displayable*, std::string> m_displayables;
    std::map<const DisplayAPI::Item*, std::string> m_items;
    std::string m_heard;
};

class DisplayTest : public testing::Test {
protected:
    explicit DisplayTest(DisplayAPI::DisplayVariant variant = {})
        : display(host, variant)
    {
        host.drive(display);
    }

    static DisplayAPI::TranslationInfo plain(const std::string& text)
    {
        return DisplayAPI::TranslationInfo::plain(text);
    }
    DisplayAPI::TranslationInfo key(const std::string& text) const { return {text, &translator}; }
    static DisplayAPI::ListItem* row(const std::string& text)
    {
        return new DisplayAPI::ListItem(plain(text), 1);
    }

    // Gives a widget a name and both ears of the recorder.
    template <typename Widget> void listenTo(Widget& widget, const std::string& name)
    {
        widget.setCommandListener(&recorder);
        recorder.call(static_cast<DisplayAPI::Displayable&>(widget), name);
        if constexpr (requires { widget.setItemStateListener(&recorder); })
            widget.setItemStateListener(&recorder);
        if constexpr (std::is_base_of_v<DisplayAPI::Item, Widget>)
            recorder.call(static_cast<DisplayAPI::Item&>(widget), name);
    }

    void show(DisplayAPI::Displayable& displayable)
    {
        display.setCurrent(&displayable);
        host.settle();
    }
    bool press(Kind kind, int index = 0) { return host.press(kind, index); }
    std::string heard() { return recorder.heard(); }
    std::string screen() const { return host.screen(); }

    FakeTranslator translator;
    Recorder recorder;
    FakeDisplayHost host;
    DisplayAPI::Display display;
};

// The same telephone without soft keys.
class PlainDisplayTest : public DisplayTest {
protected:
    PlainDisplayTest()
        : DisplayTest({.softKeyBar = false, .visibleRows = 8})
    {
    }
};
