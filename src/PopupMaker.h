// The popups that several screens make alike. Their owner keeps them as long as they may be shown.

#pragma once

#include <initializer_list>
#include <memory>

#include <framework/display/TranslationInfo.h>

namespace DisplayAPI {
class MenuCommand;
class PopupConfirm;
class PopupNotification;
class PopupProgress;
} // namespace DisplayAPI
class EventContext;

class PopupMaker {
public:
    // `kind` is what the widget is constructed with. The text is still to be set.
    static std::unique_ptr<DisplayAPI::PopupProgress> progress(int kind);
    // `type` is a PopupNotification::Type. It goes after three seconds. The text is still to be set.
    static std::unique_ptr<DisplayAPI::PopupNotification> notification(EventContext* pContext, int type);
    // Warns before something is lost. The answers, left to right, outlive the popup.
    static std::unique_ptr<DisplayAPI::PopupConfirm>
    warning(EventContext* pContext, DisplayAPI::TranslationInfo text,
            std::initializer_list<DisplayAPI::MenuCommand*> answers);
};
