#include "ShownProgress.h"

#include <framework/display/Display.h>
#include <framework/display/PopupProgress.h>

#include "EventContext.h"
#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/ShownProgress";
}

ShownProgress::ShownProgress(EventContext* pContext, DisplayAPI::PopupProgress& popup)
    : m_popup(popup)
{
    PB_TRACE("ShownProgress::ShownProgress()");
    pContext->m_pDisplay->setCurrent(&m_popup);
}

ShownProgress::~ShownProgress()
{
    PB_TRACE("ShownProgress::~ShownProgress()");
    m_popup.dismiss();
}
