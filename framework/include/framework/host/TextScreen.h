// The screen as text: what a terminal, a journey and a test read.

#pragma once

#include <string>

#include <framework/display/Frame.h>

namespace DisplayAPI {

// Lines ending in newlines. Tabs "| office |[ldap]" (the current one in brackets), then the base
// screen's title, search field and rows ("> " before the selected one), then, when there is one,
// only the popup on top instead of the base's rows; then the system window and the soft keys.
FRAMEWORK_API std::string toText(const Frame& frame);
FRAMEWORK_API std::string toText(const FrameScreen& screen);

} // namespace DisplayAPI
