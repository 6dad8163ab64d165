#include "PhonebookStateBase.h"

#include <framework/display/Display.h>
#include <framework/display/Icons.h>
#include <framework/display/ListItem.h>
#include <framework/display/PhonebookItem.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"

using DisplayAPI::DisplayIcon;

namespace {

constexpr char nSOURCE[] = "./src/PhonebookStateBase";
constexpr int nLIST_ROW = 1; // the kind of a row in a search list

} // namespace

bool PhonebookStateBase::tabValid(EventContext*)
{
    PB_TRACE("PhonebookStateBase::tabValid()");
    return false;
}

PhonebookStateBase* PhonebookStateBase::tabFrom(EventContext*)
{
    PB_TRACE("PhonebookStateBase::tabFrom()");
    return this;
}

PhonebookStateBase* PhonebookStateBase::tabTo(EventContext*)
{
    PB_TRACE("PhonebookStateBase::tabTo()");
    return this;
}

void PhonebookStateBase::enterStateEvent(EventContext*)
{
    PB_TRACE("PhonebookStateBase::enterStateEvent()");
}

void PhonebookStateBase::exitStateEvent(EventContext*)
{
    PB_TRACE("PhonebookStateBase::exitStateEvent()");
}

PhonebookStateBase* PhonebookStateBase::backEvent(EventContext*, DisplayAPI::Command*,
                                                  DisplayAPI::Displayable*)
{
    PB_TRACE("PhonebookStateBase::backEvent()");
    return this;
}

PhonebookStateBase* PhonebookStateBase::okEvent(EventContext*, DisplayAPI::Command*, DisplayAPI::Displayable*)
{
    PB_TRACE("PhonebookStateBase::okEvent()");
    return this;
}

PhonebookStateBase* PhonebookStateBase::saveEvent(EventContext*, DisplayAPI::Command*,
                                                  DisplayAPI::Displayable*)
{
    PB_TRACE("PhonebookStateBase::saveEvent()");
    return this;
}

PhonebookStateBase* PhonebookStateBase::rightEvent(EventContext*, DisplayAPI::Command*,
                                                   DisplayAPI::Displayable*)
{
    PB_TRACE("PhonebookStateBase::rightEvent()");
    return this;
}

PhonebookStateBase* PhonebookStateBase::screenEvent(EventContext*, DisplayAPI::Command*,
                                                    DisplayAPI::Displayable*)
{
    PB_TRACE("PhonebookStateBase::screenEvent()");
    return this;
}

PhonebookStateBase* PhonebookStateBase::doCSTAServiceInitiatedEvent(EventContext*, CSTAServiceInitiatedEvent*)
{
    PB_TRACE("PhonebookStateBase::doCSTAServiceInitiatedEvent()");
    return this;
}

PhonebookStateBase* PhonebookStateBase::itemStateChangedEvent(EventContext*, DisplayAPI::Item*)
{
    PB_TRACE("PhonebookStateBase::itemStateChangedEvent()");
    return this;
}

PhonebookStateBase* PhonebookStateBase::popupDiallerItemStateChangedEvent(EventContext*, DisplayAPI::Item*)
{
    PB_TRACE("PhonebookStateBase::popupDiallerItemStateChangedEvent()");
    return this;
}

// By value, as every screen receives them.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
PhonebookStateBase* PhonebookStateBase::dialingStartedEvent(EventContext*, std::string)
{
    PB_TRACE("PhonebookStateBase::dialingStartedEvent()");
    return this;
}

bool PhonebookStateBase::getDialPartyDetails(CallPartyIdentifier&, EventContext*)
{
    PB_TRACE("PhonebookStateBase::getDialPartyDetails()");
    return false;
}

PhonebookStateBase* PhonebookStateBase::dialingStoppedEvent(EventContext*)
{
    PB_TRACE("PhonebookStateBase::dialingStoppedEvent()");
    return this;
}

PhonebookStateBase* PhonebookStateBase::interDigitTimeoutEvent(EventContext*, InterDigitTimeOutEvent*)
{
    PB_TRACE("PhonebookStateBase::interDigitTimeoutEvent()");
    return this;
}

void PhonebookStateBase::setCallContextProvider(EventContext*)
{
    PB_TRACE("PhonebookStateBase::setCallContextProvider()");
}

void PhonebookStateBase::clearCallContextProvider(EventContext*)
{
    PB_TRACE("PhonebookStateBase::clearCallContextProvider()");
}

PhonebookStateBase* PhonebookStateBase::phonebookDatabaseUpdated(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBase::phonebookDatabaseUpdated()");
    pContext->m_pPhonebookList->getDisplayOptionFromDatabase();
    if (pContext->m_LdapTabIndex < 1)
        return &pContext->m_Refreshing;

    auto& ldapList = *pContext->m_pLdapPhonebookList;
    ldapList.getDisplayQualifierFromDatabase();
    ldapList.getDisplayOptionFromDatabase();
    if (ldapList.size() == 0)
        return &pContext->m_Refreshing;

    if (!isLdapTabCurrent(pContext))
        pContext->m_pTabScreen->setCurrentTabIndex(pContext->m_LdapTabIndex);
    // It may still be on the screen: it goes at the next replacement.
    pContext->m_pPreviousLdapDisplayList = std::move(pContext->m_pLdapDisplayList);
    pContext->reallocateLdapDisplayList(false);
    ldapList.depopulate();
    pContext->m_pLdapCurrentState = &pContext->m_LdapViewingList;
    pContext->m_LdapViewingList.enterStateEvent(pContext);
    pContext->m_LdapFind.clearForm(pContext);
    pContext->m_pTabScreen->setCurrentTabIndex(pContext->m_OfficeTabIndex);
    return &pContext->m_Refreshing;
}

bool PhonebookStateBase::mobilityPhonebookRefreshActive(EventContext*, bool)
{
    PB_TRACE("PhonebookStateBase::mobilityPhonebookRefreshActive()");
    return false;
}

bool PhonebookStateBase::mobilityPhonebookRefreshPending()
{
    PB_TRACE("PhonebookStateBase::mobilityPhonebookRefreshPending()");
    return false;
}

PhonebookStateBase* PhonebookStateBase::timerEvent(EventContext*, int)
{
    PB_TRACE("PhonebookStateBase::timerEvent() - ignored");
    return nullptr;
}

// NOLINTBEGIN(performance-unnecessary-value-param)
PhonebookStateBase* PhonebookStateBase::buttonPressedEvent(EventContext*, PhysDefs::keyFunctionType, int,
                                                           PhysDefs::actionType, std::string)
{
    PB_TRACE("PhonebookStateBase::buttonPressedEvent() - ignored");
    return nullptr;
}
// NOLINTEND(performance-unnecessary-value-param)

PhonebookStateBase* PhonebookStateBase::stateAfterDialing(EventContext*)
{
    PB_TRACE("PhonebookStateBase::stateAfterDialing()");
    return this;
}

bool PhonebookStateBase::isOfficeTabCurrent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBase::isOfficeTabCurrent()");
    return pContext->m_pTabScreen->getCurrentTabIndex() == pContext->m_OfficeTabIndex;
}

bool PhonebookStateBase::isLdapTabCurrent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBase::isLdapTabCurrent()");
    return pContext->m_pTabScreen->getCurrentTabIndex() == pContext->m_LdapTabIndex;
}

void PhonebookStateBase::constructLdapDisplayList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateBase::constructLdapDisplayList()");
    using DisplayAPI::TranslationInfo;
    auto& list = *pContext->m_pLdapDisplayList;
    auto& entries = *pContext->m_pLdapPhonebookList;
    const unsigned size = entries.size();

    if (!pContext->m_HasSoftKeyBar)
        list.append(
            new DisplayAPI::ListItem(TranslationInfo("list.options", pContext->m_pTranslator), nLIST_ROW));
    else if (size == 0)
        list.append(
            new DisplayAPI::ListItem(TranslationInfo("no.results", pContext->m_pTranslator), nLIST_ROW));

    const auto mode = entries.getDisplayMode();
    const auto qualifier = entries.getDisplayQualifier();
    for (unsigned index = 0; index < size; ++index)
        appendRow(list, entries.elementAt(index), mode, qualifier);
    list.setSelectedIndex(0);
}

void PhonebookStateBase::appendRow(DisplayAPI::SearchList& list, const PhonebookListEntry& entry,
                                   displayMode mode, displayQualifier qualifier)
{
    list.append(makeRow(entry, mode, qualifier));
}

DisplayAPI::ListItem* PhonebookStateBase::makeRow(const PhonebookListEntry& entry, displayMode mode,
                                                  displayQualifier qualifier)
{
    return new DisplayAPI::PhonebookItem(rowIcon(entry.getDefaultNumber()), 0,
                                         entry.getDisplayName(mode, qualifier), nLIST_ROW);
}

void PhonebookStateBase::insertRow(EventContext* pContext, const PhonebookListEntry& entry, int row,
                                   bool isFirst)
{
    PB_TRACE("PhonebookStateBase::insertRow()");
    auto& list = *pContext->m_pDisplayList;
    auto& entries = *pContext->m_pPhonebookList;
    // One row alone would pass for the whole list.
    if (list.size() == 0)
        return;
    if (isFirst && pContext->m_HasSoftKeyBar)
        list.clear();
    list.insert(row, makeRow(entry, entries.getDisplayMode(), entries.getDisplayQualifier()));
    list.setSelectedIndex(row);
}

int PhonebookStateBase::rowIcon(const std::string& defaultNumber)
{
    auto icon = DisplayIcon::None;
    if (defaultNumber == PhonebookListEntry::nOFFICE)
        icon = DisplayIcon::Office;
    else if (defaultNumber == PhonebookListEntry::nOFFICE2)
        icon = DisplayIcon::Office2;
    else if (defaultNumber == PhonebookListEntry::nMOBILE)
        icon = DisplayIcon::Mobile;
    else if (defaultNumber == PhonebookListEntry::nPRIVATE)
        icon = DisplayIcon::Private;
    return static_cast<int>(icon);
}

DisplayAPI::TranslationInfo PhonebookStateBase::groupText(EventContext* pContext, const PhonebookGroup& group)
{
    PB_TRACE("PhonebookStateBase::groupText()");
    using DisplayAPI::TranslationInfo;
    if (group.getName() == "group.copied.contacts")
        return {group.getName(), pContext->m_pTranslator};
    return TranslationInfo::plain(group.getName());
}

void PhonebookStateBase::showInTab(EventContext* pContext, DisplayAPI::Displayable& screen)
{
    PB_TRACE("PhonebookStateBase::showInTab()");
    auto& tabs = *pContext->m_pTabScreen;
    if (tabs.numberOfTabs() == 0) {
        pContext->m_pDisplay->setCurrent(&screen);
        return;
    }
    tabs.setCurrentDisplayable(&screen);
    pContext->m_pDisplay->setCurrent(&tabs);
}
