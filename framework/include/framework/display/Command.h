// What the user asked for: a key of the telephone, or a choice in a menu or on a popup.
//
// A listener compares commands by identity, never by text: the same text may stand for
// different commands, and texts change with the language.

#pragma once

#include <framework/display/Tracked.h>
#include <framework/display/TranslationInfo.h>

namespace DisplayAPI {

class FRAMEWORK_API Command : public Tracked {
public:
    enum Type : int {
        BACK = 1,
        OK = 6,
        SCREEN = 7, // a choice in a menu or on a popup, or a notification that went
        RIGHT = 9,  // the context key
        SAVE = 11,
        TAB_BAR_ENTERED = 16,
        TAB_BAR_LEFT = 17,
        TAB_PREVIOUS = 18,
        TAB_NEXT = 19,
    };

    Command(int type, TranslationInfo label);
    virtual ~Command();

    int getCommandType() const { return m_type; }
    const TranslationInfo& getLabel() const { return m_label; }

private:
    int m_type;
    TranslationInfo m_label;
};

// The label of the SCREEN command that reports a notification's end.
inline constexpr const char* WIDGET_IS_HIDDEN_EVENT = "WIDGET_IS_HIDDEN_EVENT";

} // namespace DisplayAPI
