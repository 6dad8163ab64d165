#include "SearchPopups.h"

#include <framework/display/Display.h>
#include <framework/display/PopupProgress.h>

#include "EventContext.h"
#include "PhonebookLog.h"
#include "PopupMaker.h"

using DisplayAPI::PopupNotification;
using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/SearchPopups";
constexpr int nPROGRESS_KIND = 1;

const char* textOf(DirectoryStatus status)
{
    switch (status) {
    case DIRECTORY_NO_MATCHES:
        return "no.matches.found";
    case DIRECTORY_CONNECTION_FAILURE:
        return "connection.failure";
    case DIRECTORY_NOT_CONFIGURED:
    case DIRECTORY_CREDENTIALS_REFUSED:
    case DIRECTORY_WRONG_BASE:
        return "configuration.error";
    case DIRECTORY_TOO_MANY_MATCHES:
        return "too.many.matches";
    default:
        return "ldap.find.unexpected.error";
    }
}

} // namespace

SearchPopups::SearchPopups() = default;

SearchPopups::~SearchPopups() = default;

void SearchPopups::construct(EventContext* pContext)
{
    PB_TRACE("SearchPopups::construct()");
    if (m_pResult)
        return;
    m_pProgress = PopupMaker::progress(nPROGRESS_KIND);
    m_pProgress->setText(TranslationInfo("retrieving.entries", pContext->m_pTranslator));
    m_pResult = PopupMaker::notification(pContext, PopupNotification::NOTICE);
}

DisplayAPI::PopupProgress* SearchPopups::progress() const
{
    PB_TRACE("SearchPopups::progress()");
    return m_pProgress.get();
}

PopupNotification* SearchPopups::result() const
{
    PB_TRACE("SearchPopups::result()");
    return m_pResult.get();
}

void SearchPopups::showResult(EventContext* pContext, DirectoryStatus status)
{
    PB_TRACE("SearchPopups::showResult()");
    if (status == DIRECTORY_SUCCESS)
        return;
    m_pResult->setText(TranslationInfo(textOf(status), pContext->m_pTranslator));
    pContext->m_pDisplay->setCurrent(m_pResult.get());
}
