// The smallest phonelet that does something: a list of greetings, and OK says one of them.

#include <framework/Phonelet.h>
#include <framework/PhoneletContext.h>
#include <framework/PhoneletIfc.h>
#include <framework/display/Command.h>
#include <framework/display/Display.h>
#include <framework/display/ListItem.h>
#include <framework/display/Listeners.h>
#include <framework/display/PopupNotification.h>
#include <framework/display/SearchList.h>

using DisplayAPI::TranslationInfo;

namespace {

constexpr unsigned SHOWN_FOR_MS = 3000;

class HelloPhonelet final : public Phonelet, public DisplayAPI::CommandListener {
public:
    std::string getInterfaces() override { return "HelloIfc"; }

    void startPhonelet() override
    {
        for (const char* greeting : {"Hello", "Good morning", "Good evening"})
            m_list.append(new DisplayAPI::ListItem(TranslationInfo::plain(greeting), 1));
        m_list.setTitle(TranslationInfo::plain("Greetings"));
        m_list.setSelectedIndex(m_pContext->getPhoneletState(NAME));
        m_list.setCommandListener(this);
        m_said.setTimeout(SHOWN_FOR_MS);
    }

    void show() override { m_pContext->getDisplay()->setCurrent(&m_list); }
    void tab() override { m_list.setSelectedIndex((m_list.getSelectedIndex() + 1) % m_list.size()); }

    void commandAction(DisplayAPI::Command* command, DisplayAPI::Displayable* displayable) override
    {
        if (displayable != &m_list)
            return;
        if (command->getCommandType() == DisplayAPI::Command::BACK)
            getPhoneletHandle()->leave(NAME);
        if (command->getCommandType() != DisplayAPI::Command::OK)
            return;
        m_pContext->setPhoneletState(NAME, m_list.getSelectedIndex());
        m_said.setText(TranslationInfo::plain(m_list.getText(m_list.getSelectedIndex()) + "!"));
        m_pContext->getDisplay()->setCurrent(&m_said);
    }

    void timerEvent(int id) override { m_pContext->timerEvent(id); }
    void stopPhonelet() override {}
    void shutdown() override {}
    void hide() override {}
    void pause() override {}
    void resume() override {}
    void localeChanged(const std::string&) override {}
    void dateFormatChanged() override {}
    void timeFormatChanged() override {}
    void childGainedFocus(const std::string&) override {}
    void childLostFocus(const std::string&) override {}

private:
    static constexpr char NAME[] = "Hello";
    DisplayAPI::SearchList m_list;
    DisplayAPI::PopupNotification m_said;
};

} // namespace

extern "C" __attribute__((visibility("default"))) Phonelet* createPhonelet()
{
    return new HelloPhonelet;
}
