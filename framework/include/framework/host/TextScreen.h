// The screen as text: what a terminal, a journey and a test read.

#pragma once

#include <string>

#include <framework/display/Frame.h>

namespace DisplayAPI {

// Lines ending in newlines, of what there is:
//   = Miller, 030 12: Ringing  a call
//   | office |[ldap]           the tabs with the current one in brackets; [>ldap<] with the focus on it
//   title
//   ...                        the wait animation
//   /mil[l]                    the search field with the letter that is still pending
//   > Miller                   rows, and fields as "label: value", behind a mark for the selected one;
//     Name: Ann|               the cursor is a bar, a selection stands in < >
//   Lines of text              the system window
//   ( OK )( Menu )( Back )     the soft keys
// When there are popups, the one on top stands in place of the base's rows, its text behind "? " for a
// question, "! " for a notification, "~ " for progress; the dialler's line edit stands behind "#".
FRAMEWORK_API std::string toText(const Frame& frame);
FRAMEWORK_API std::string toText(const FrameScreen& screen);

} // namespace DisplayAPI
