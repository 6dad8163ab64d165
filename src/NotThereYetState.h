// A screen that this telephone does not have yet: it says so, and goes back to its list when the
// message closes, or with OK or Back.

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
    enum class Tab { Office, Ldap };

    // `message` is the translation key of the text; `tab` says which list it returns to.
    NotThereYetState(const char* message, Tab tab);
    virtual ~NotThereYetState();

    void hideMessage();

private:
    PhonebookStateBase* list(EventContext* pContext) const;

    const char* m_message;
    Tab m_tab;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pPopup;
};
