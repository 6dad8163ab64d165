#include "LDAPStateViewingList.h"

#include <framework/PhoneletIfc.h>
#include <framework/display/Display.h>
#include <framework/display/ListItem.h>

#include "EventContext.h"
#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/LDAPStateViewingList";
constexpr int nLIST_ROW = 1; // the kind of a row in a search list
} // namespace

LDAPStateViewingList::LDAPStateViewingList() = default;

LDAPStateViewingList::~LDAPStateViewingList() = default;

bool LDAPStateViewingList::tabValid(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::tabValid()");
    return pContext->m_pDisplay->getCurrent() != &pContext->m_PopupDialer;
}

void LDAPStateViewingList::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::enterStateEvent()");
    setCallContextProvider(pContext);
    constructDisplayList(pContext);
    setDisplayListCurrent(pContext);
}

void LDAPStateViewingList::exitStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::exitStateEvent()");
    clearCallContextProvider(pContext);
    dismissDialingPopups(pContext);
}

PhonebookStateBase* LDAPStateViewingList::backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                                    DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateViewingList::backEvent()");
    if (isDialingPopup(pContext, pDisplayable))
        return PhonebookStateBaseDialer::backEvent(pContext, pCommand, pDisplayable);
    // The host knows the phonebook by this spelling.
    if (pContext->m_pPhoneletHandle)
        pContext->m_pPhoneletHandle->leave("PhoneBookPhonelet");
    return this;
}

PhonebookStateBase* LDAPStateViewingList::dialingStartedEvent(EventContext* pContext, std::string digits)
{
    PB_TRACE("LDAPStateViewingList::dialingStartedEvent()");
    openDialerWithDigits(pContext, digits);
    return this;
}

PhonebookStateBase* LDAPStateViewingList::dialingStoppedEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::dialingStoppedEvent()");
    dialingEnded(pContext);
    return this;
}

void LDAPStateViewingList::constructDisplayList(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::constructDisplayList()");
    auto& list = *pContext->m_pLdapDisplayList;
    if (list.size() > 0)
        return;
    list.append(new DisplayAPI::ListItem(
        DisplayAPI::TranslationInfo("phone.notThere.directory", pContext->m_pTranslator), nLIST_ROW));
    list.setSelectedIndex(0);
}

void LDAPStateViewingList::setDisplayListCurrent(EventContext* pContext)
{
    PB_TRACE("LDAPStateViewingList::setDisplayListCurrent()");
    auto& tabs = *pContext->m_pTabScreen;
    if (tabs.numberOfTabs() == 0) {
        pContext->m_pDisplay->setCurrent(pContext->m_pLdapDisplayList.get());
        return;
    }
    if (!isLdapTabCurrent(pContext))
        return;
    tabs.setCurrentDisplayable(pContext->m_pLdapDisplayList.get());
    // A form may have been shown in the tabs' place.
    pContext->m_pDisplay->setCurrent(&tabs);
}
