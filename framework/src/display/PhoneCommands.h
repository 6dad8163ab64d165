// The telephone's own commands: what its keys report.

#pragma once

#include <framework/display/Command.h>

namespace DisplayAPI::PhoneCommands {

Command& back();
Command& ok();
Command& right();
Command& save();
Command& tabBarEntered();
Command& tabBarLeft();
Command& tabPrevious();
Command& tabNext();
Command& widgetIsHidden();

} // namespace DisplayAPI::PhoneCommands
