// Phonelets that note what the telephone calls, and do what a test says, for a Phone without a plug-in
// of its own: it takes the place of hello-phonelet.

#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <framework/Phonelet.h>
#include <framework/PhoneletContext.h>
#include <framework/PhoneletIfc.h>
#include <framework/display/Display.h>
#include <framework/display/Form.h>
#include <framework/display/ListItem.h>
#include <framework/display/Listeners.h>
#include <framework/display/PopupNotification.h>
#include <framework/display/PopupProgress.h>
#include <framework/display/SearchList.h>
#include <framework/services/DirectoryServiceObserverIfc.h>

class ScriptedPhonelet final : public Phonelet,
                               public DisplayAPI::CommandListener,
                               public DirectoryServiceObserverIfc {
public:
    using Calls = std::vector<std::string>;

    explicit ScriptedPhonelet(Calls& calls)
        : form(0)
        , progress(1)
        , m_calls(calls)
    {
    }

    // What it does when the telephone calls it: "show", "OK", ... Nothing where there is none.
    std::map<std::string, std::function<void()>> script;

    DisplayAPI::SearchList list;
    DisplayAPI::Form form;
    DisplayAPI::PopupNotification notification;
    DisplayAPI::PopupProgress progress;

    DisplayAPI::Display& display() { return *m_pContext->getDisplay(); }
    PhoneletContext& context() { return *m_pContext; }

    void startPhonelet() override
    {
        for (const char* name : {"one", "two"})
            list.append(new DisplayAPI::ListItem(DisplayAPI::TranslationInfo::plain(name), 1));
        list.setCommandListener(this);
        form.setCommandListener(this);
        notification.setCommandListener(this);
        notification.setText(DisplayAPI::TranslationInfo::plain("note"));
        progress.setText(DisplayAPI::TranslationInfo::plain("wait"));
        display().setCurrent(&list);
        note("start");
    }
    void stopPhonelet() override { note("stop"); }
    void shutdown() override { note("shutdown"); }
    void hide() override { note("hide"); }
    void show() override { note("show"); }
    void tab() override { note("tab"); }
    void timerEvent(int id) override
    {
        m_pContext->timerEvent(id);
        note("timer");
    }
    void localeChanged(const std::string& language) override { note("locale " + language); }
    void childGainedFocus(const std::string& child) override { note("gained " + child); }
    void childLostFocus(const std::string& child) override { note("lost " + child); }
    void commandAction(DisplayAPI::Command* command, DisplayAPI::Displayable*) override
    {
        switch (command->getCommandType()) {
        case DisplayAPI::Command::OK:
            return note("OK");
        case DisplayAPI::Command::BACK:
            return note("BACK");
        case DisplayAPI::Command::SCREEN:
            return note("SCREEN");
        default:
            return note("other");
        }
    }

    void phonebookDatabaseUpdated(bool restart) override
    {
        note(restart ? "contacts replaced" : "contacts changed");
    }

    std::string getInterfaces() override { return ""; }
    void pause() override {}
    void resume() override {}
    void dateFormatChanged() override {}
    void timeFormatChanged() override {}

private:
    void note(const std::string& call)
    {
        m_calls.push_back(m_pContext->getName() + ": " + call);
        if (const auto action = script.find(call); action != script.end())
            action->second();
    }

    Calls& m_calls;
};
