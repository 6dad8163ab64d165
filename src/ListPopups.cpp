#include "ListPopups.h"

#include <algorithm>
#include <iterator>

#include <framework/display/Display.h>
#include <framework/display/PopupProgress.h>

#include "EventContext.h"
#include "PB_Error.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PopupMaker.h"
#include "ShownProgress.h"

using DisplayAPI::PopupNotification;
using DisplayAPI::TranslationInfo;

namespace {
constexpr char nSOURCE[] = "./src/ListPopups";
constexpr int nPROGRESS_KIND = 1;
} // namespace

ListPopups::ListPopups() = default;

ListPopups::~ListPopups() = default;

void ListPopups::construct(EventContext* pContext)
{
    PB_TRACE("ListPopups::construct()");
    forgetOld(pContext);
    m_pError = PopupMaker::notification(pContext, PopupNotification::ERROR);
    m_pDeletingAll = PopupMaker::progress(nPROGRESS_KIND);
    m_pDeletingAll->setText(TranslationInfo("deleting.all.entries", pContext->m_pTranslator));
    m_pAllDeleted = PopupMaker::notification(pContext, PopupNotification::SUCCESS);
    m_pAllDeleted->setText(TranslationInfo("delete.all.entries.confirm", pContext->m_pTranslator));
    m_pDeletingEntry = PopupMaker::progress(nPROGRESS_KIND);
    m_pEntryDeleted = PopupMaker::notification(pContext, PopupNotification::SUCCESS);
}

int ListPopups::deleteAll(EventContext* pContext)
{
    PB_TRACE("ListPopups::deleteAll()");
    const ShownProgress progress(pContext, *m_pDeletingAll);
    return pContext->m_pPhonebookList->deleteAll();
}

int ListPopups::deleteEntry(EventContext* pContext, unsigned int index, const std::string& name)
{
    PB_TRACE("ListPopups::deleteEntry()");
    m_pDeletingEntry->setText(TranslationInfo("deleting.entry", pContext->m_pTranslator, name));
    m_pEntryDeleted->setText(TranslationInfo("delete.entry.confirm", pContext->m_pTranslator, name));
    const ShownProgress progress(pContext, *m_pDeletingEntry);
    return pContext->m_pPhonebookList->deleteEntry(index);
}

void ListPopups::showAllDeleted(EventContext* pContext)
{
    PB_TRACE("ListPopups::showAllDeleted()");
    pContext->m_pDisplay->setCurrent(m_pAllDeleted.get());
}

void ListPopups::showEntryDeleted(EventContext* pContext)
{
    PB_TRACE("ListPopups::showEntryDeleted()");
    pContext->m_pDisplay->setCurrent(m_pEntryDeleted.get());
}

void ListPopups::showError(EventContext* pContext, int code)
{
    PB_TRACE("ListPopups::showError()");
    const auto key = PB_Error::getErrorTxt(static_cast<PB_Error::ErrorCode>(code));
    m_pError->setText(TranslationInfo(key, pContext->m_pTranslator));
    pContext->m_pDisplay->setCurrent(m_pError.get());
}

void ListPopups::showFetching(EventContext* pContext)
{
    PB_TRACE("ListPopups::showFetching()");
    if (!m_pFetching) {
        m_pFetching = PopupMaker::progress(nPROGRESS_KIND);
        m_pFetching->setText(TranslationInfo("Mobility.Fetching.Directory", pContext->m_pTranslator));
    }
    pContext->m_pDisplay->setCurrent(m_pFetching.get());
}

void ListPopups::hideFetching()
{
    PB_TRACE("ListPopups::hideFetching()");
    if (m_pFetching)
        m_pFetching->dismiss();
}

bool ListPopups::isAllDeleted(const DisplayAPI::Displayable* pDisplayable) const
{
    PB_TRACE("ListPopups::isAllDeleted()");
    return m_pAllDeleted && pDisplayable == m_pAllDeleted.get();
}

bool ListPopups::isEntryDeleted(const DisplayAPI::Displayable* pDisplayable) const
{
    PB_TRACE("ListPopups::isEntryDeleted()");
    return m_pEntryDeleted && pDisplayable == m_pEntryDeleted.get();
}

bool ListPopups::isError(const DisplayAPI::Displayable* pDisplayable) const
{
    PB_TRACE("ListPopups::isError()");
    return m_pError && pDisplayable == m_pError.get();
}

// What is about to be deleted must not be brought back after the dialler.
void ListPopups::forgetOld(EventContext* pContext) const
{
    PB_TRACE("ListPopups::forgetOld()");
    const DisplayAPI::Displayable* const old[] = {m_pError.get(), m_pDeletingAll.get(), m_pAllDeleted.get(),
                                                  m_pDeletingEntry.get(), m_pEntryDeleted.get()};
    auto& pBefore = pContext->m_pDisplayableBeforePopup;
    if (std::find(std::begin(old), std::end(old), pBefore) != std::end(old))
        pBefore = nullptr;
}
