#include "PhoneCommands.h"

namespace DisplayAPI::PhoneCommands {

namespace {

// Never destroyed: events that name them may still be queued at exit.
Command& make(Command::Type type, const char* label)
{
    return *new Command(type, TranslationInfo::plain(label));
}

} // namespace

Command& back()
{
    static auto& command = make(Command::BACK, "BACK");
    return command;
}

Command& ok()
{
    static auto& command = make(Command::OK, "OK");
    return command;
}

Command& right()
{
    static auto& command = make(Command::RIGHT, "RIGHT");
    return command;
}

Command& save()
{
    static auto& command = make(Command::SAVE, "SAVE");
    return command;
}

Command& tabBarEntered()
{
    static auto& command = make(Command::TAB_BAR_ENTERED, "TAB_BAR_ENTERED");
    return command;
}

Command& tabBarLeft()
{
    static auto& command = make(Command::TAB_BAR_LEFT, "TAB_BAR_LEFT");
    return command;
}

Command& tabPrevious()
{
    static auto& command = make(Command::TAB_PREVIOUS, "TAB_PREVIOUS");
    return command;
}

Command& tabNext()
{
    static auto& command = make(Command::TAB_NEXT, "TAB_NEXT");
    return command;
}

Command& widgetIsHidden()
{
    static auto& command = make(Command::SCREEN, WIDGET_IS_HIDDEN_EVENT);
    return command;
}

} // namespace DisplayAPI::PhoneCommands
