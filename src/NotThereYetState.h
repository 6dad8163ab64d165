// A screen of the corporate directory that this telephone does not have yet: it says so, and goes back
// to the directory's list when the message closes, or with OK or Back.

#pragma once

#include <memory>

#include "PhonebookStateBase.h"

namespace DisplayAPI {
class PopupNotification;
}

class NotThereYetState : public PhonebookStateBase {
public:
    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override;

protected:
    // `message` is the translation key of the text.
    explicit NotThereYetState(const char* message);
    virtual ~NotThereYetState();

    void hideMessage();

private:
    const char* m_message;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pPopup;
};
