#include "PhonebookStateRefreshing.h"

#include <framework/display/Display.h>
#include <framework/services/DirectoryServiceIfc.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "PhonebookPhonelet.h"

namespace {
constexpr char nSOURCE[] = "./src/PhonebookStateRefreshing";
constexpr int nPLAIN_QUESTION = 0;
constexpr int nALL_ENTRIES = -1;
} // namespace

PhonebookStateRefreshing::PhonebookStateRefreshing() = default;

PhonebookStateRefreshing::~PhonebookStateRefreshing() = default;

bool PhonebookStateRefreshing::tabValid(EventContext*)
{
    PB_TRACE("PhonebookStateRefreshing::tabValid()");
    return true;
}

PhonebookStateBase* PhonebookStateRefreshing::tabFrom(EventContext*)
{
    PB_TRACE("PhonebookStateRefreshing::tabFrom()");
    if (m_pInUsePopup)
        m_pInUsePopup->dismiss();
    return this;
}

PhonebookStateBase* PhonebookStateRefreshing::tabTo(EventContext* pContext)
{
    PB_TRACE("PhonebookStateRefreshing::tabTo()");
    // The directory may have changed while another tab was shown: then there is no popup yet.
    showPopup(pContext);
    return this;
}

void PhonebookStateRefreshing::enterStateEvent(EventContext*)
{
    PB_TRACE("PhonebookStateRefreshing::enterStateEvent()");
}

void PhonebookStateRefreshing::exitStateEvent(EventContext*)
{
    PB_TRACE("PhonebookStateRefreshing::exitStateEvent()");
}

PhonebookStateBase* PhonebookStateRefreshing::screenEvent(EventContext* pContext,
                                                          DisplayAPI::Command* pCommand,
                                                          DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateRefreshing::screenEvent()");
    if (!m_pInUsePopup || pDisplayable != m_pInUsePopup.get()) {
        PB_IGNORED("PhonebookStateRefreshing::screenEvent - unrecognised widget");
        return this;
    }
    if (pCommand != m_pRefreshCommand.get()) {
        PB_IGNORED("PhonebookStateRefreshing::screenEvent - unhandled screen event");
        return this;
    }
    updateList(pContext);
    return &pContext->m_ViewingList;
}

PhonebookStateBase* PhonebookStateRefreshing::phonebookDatabaseUpdated(EventContext* pContext)
{
    PB_TRACE("PhonebookStateRefreshing::phonebookDatabaseUpdated()");
    if (!pContext->m_pPhonelet->isVisible()) {
        updateList(pContext);
        return &pContext->m_ViewingList;
    }
    if (isOfficeTabCurrent(pContext))
        showPopup(pContext);
    return this;
}

void PhonebookStateRefreshing::updateList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateRefreshing::updateList()");
    deleteRetiredList(pContext);
    pContext->m_pPlaceholderList = std::move(pContext->m_pDisplayList);
    pContext->reallocateDisplayList(false);
    pContext->m_pPhonebookList->populate(nALL_ENTRIES);

    pContext->m_pGroupDisplayList->clear();
    pContext->m_pGroupList.reset();
    if (pContext->m_pDirectoryService)
        pContext->m_pGroupList.reset(pContext->m_pDirectoryService->getGroupList());
    if (!pContext->m_pGroupList)
        pContext->m_pGroupList = std::make_unique<PhonebookGroupList>(0);

    PB_TRACE("Phonebook should be populated, number of entries = %d",
             static_cast<int>(pContext->m_pPhonebookList->size()));
}

void PhonebookStateRefreshing::showPopup(EventContext* pContext)
{
    PB_TRACE("PhonebookStateRefreshing::showPopup()");
    if (!m_pInUsePopup) {
        using DisplayAPI::TranslationInfo;
        m_pRefreshCommand = std::make_unique<DisplayAPI::MenuCommand>(
            TranslationInfo("refresh.directory", pContext->m_pTranslator));
        m_pInUsePopup = std::make_unique<DisplayAPI::PopupConfirm>(1);
        m_pInUsePopup->setText(TranslationInfo("directory.in.use", pContext->m_pTranslator));
        m_pInUsePopup->setState(nPLAIN_QUESTION);
        m_pInUsePopup->addCommand(m_pRefreshCommand.get());
        m_pInUsePopup->setCommandListener(pContext->m_pListener);
    }
    pContext->m_pDisplay->setCurrent(m_pInUsePopup.get());
}

void PhonebookStateRefreshing::deleteRetiredList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateRefreshing::deleteRetiredList()");
    if (!pContext->m_pPlaceholderList)
        return;
    auto& tabs = *pContext->m_pTabScreen;
    for (int tab = 0; tab < tabs.numberOfTabs(); ++tab) {
        if (tabs.getDisplayable(tab) != pContext->m_pPlaceholderList.get())
            continue;
        PB_TRACE("PhonebookStateRefreshing::updateList: remove OldDisplayList from TabScreen");
        tabs.setDisplayable(tab, nullptr);
    }
    pContext->m_pPlaceholderList.reset();
}
