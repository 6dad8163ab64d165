#include "NotThereYetState.h"

#include <framework/display/Display.h>
#include <framework/display/PopupNotification.h>

#include "EventContext.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"

namespace {
constexpr char nSOURCE[] = "./src/NotThereYetState";
constexpr unsigned nTIMEOUT_MS = 3000;
} // namespace

NotThereYetState::NotThereYetState(const char* message)
    : m_message(message)
{
}

NotThereYetState::~NotThereYetState() = default;

void NotThereYetState::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("NotThereYetState::enterStateEvent()");
    if (!m_pPopup) {
        m_pPopup = std::make_unique<DisplayAPI::PopupNotification>();
        m_pPopup->setText(DisplayAPI::TranslationInfo(m_message, pContext->m_pTranslator));
        m_pPopup->setType(DisplayAPI::PopupNotification::NOTICE);
        m_pPopup->setTimeout(nTIMEOUT_MS);
        m_pPopup->setCommandListener(pContext->m_pListener);
    }
    pContext->m_pDisplay->setCurrent(m_pPopup.get());
}

void NotThereYetState::exitStateEvent(EventContext*)
{
    PB_TRACE("NotThereYetState::exitStateEvent()");
    hideMessage();
}

PhonebookStateBase* NotThereYetState::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                                DisplayAPI::Displayable*)
{
    PB_TRACE("NotThereYetState::backEvent()");
    return &pContext->m_LdapViewingList;
}

PhonebookStateBase* NotThereYetState::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                              DisplayAPI::Displayable*)
{
    PB_TRACE("NotThereYetState::okEvent()");
    return &pContext->m_LdapViewingList;
}

PhonebookStateBase* NotThereYetState::screenEvent(EventContext* pContext, DisplayAPI::Command*,
                                                  DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("NotThereYetState::screenEvent()");
    if (!m_pPopup || pDisplayable != m_pPopup.get())
        return this;
    return &pContext->m_LdapViewingList;
}

void NotThereYetState::hideMessage()
{
    PB_TRACE("NotThereYetState::hideMessage()");
    if (m_pPopup)
        m_pPopup->dismiss();
}
