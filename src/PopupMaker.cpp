#include "PopupMaker.h"

#include <utility>

#include <framework/display/PopupProgress.h>

#include "EventContext.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"

using DisplayAPI::PopupConfirm;
using DisplayAPI::PopupNotification;
using DisplayAPI::PopupProgress;

namespace {

constexpr char nSOURCE[] = "./src/PopupMaker";

constexpr int nPROGRESS_TYPE = 1;
constexpr int nCONFIRM_KIND = 1;
constexpr int nWARNING = 1;
constexpr unsigned nTIMEOUT_MS = 3000;

} // namespace

std::unique_ptr<PopupProgress> PopupMaker::progress(int kind)
{
    PB_TRACE("PopupMaker::progress()");
    auto popup = std::make_unique<PopupProgress>(kind);
    popup->setType(nPROGRESS_TYPE);
    return popup;
}

std::unique_ptr<PopupNotification> PopupMaker::notification(EventContext* pContext, int type)
{
    PB_TRACE("PopupMaker::notification()");
    auto popup = std::make_unique<PopupNotification>();
    popup->setType(type);
    popup->setTimeout(nTIMEOUT_MS);
    popup->setCommandListener(pContext->m_pListener);
    return popup;
}

std::unique_ptr<PopupConfirm> PopupMaker::warning(EventContext* pContext, DisplayAPI::TranslationInfo text,
                                                  std::initializer_list<DisplayAPI::MenuCommand*> answers)
{
    PB_TRACE("PopupMaker::warning()");
    auto popup = std::make_unique<PopupConfirm>(nCONFIRM_KIND);
    popup->setText(std::move(text));
    popup->setState(nWARNING);
    for (auto* pAnswer : answers)
        popup->addCommand(pAnswer);
    popup->setCommandListener(pContext->m_pListener);
    return popup;
}
