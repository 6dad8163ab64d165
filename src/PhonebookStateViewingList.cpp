#include "PhonebookStateViewingList.h"

#include <algorithm>

#include <framework/PhoneletIfc.h>
#include <framework/display/Display.h>
#include <framework/display/ListItem.h>
#include <framework/services/LocalMgmtIfc.h>
#include <framework/services/OBEXServiceIfc.h>

#include "ContactCard.h"
#include "EventContext.h"
#include "PB_Error.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "Toolbox.h"

using DisplayAPI::TranslationInfo;
using enum ListCommands::Choice;

namespace {

constexpr char nSOURCE[] = "./src/PhonebookStateViewingList";

constexpr int nLIST_ROW = 1; // the kind of a row in a search list
constexpr int nALL_ENTRIES = -1;
constexpr int nWITHOUT_GROUP = 0;
constexpr unsigned nROWS_PER_QUERY = 8;
constexpr int nWARNING = 1; // a question before something is lost

} // namespace

PhonebookStateViewingList::~PhonebookStateViewingList() = default;

bool PhonebookStateViewingList::tabValid(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::tabValid");
    return pContext->m_pDisplay->getCurrent() != &pContext->m_PopupDialer;
}

PhonebookStateBase* PhonebookStateViewingList::tabFrom(EventContext*)
{
    PB_TRACE("PhonebookStateViewingList::tabFrom");
    if (mFetchingPopupActive) {
        PB_TRACE("PhonebookStateViewingList::tabFrom - mFetchingPopupActive = true - dismiss popup");
        m_popups.hideFetching();
    }
    return this;
}

PhonebookStateBase* PhonebookStateViewingList::tabTo(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::tabTo");
    if (mFetchingPopupActive)
        mobilityPhonebookRefreshActive(pContext, true);
    return this;
}

void PhonebookStateViewingList::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::enterStateEvent");
    setCallContextProvider(pContext);
    constructDisplayList(pContext);
    m_commands.constructMenuCommands(pContext);
    m_popups.construct(pContext);
    if (pContext->m_pGroupDisplayList)
        pContext->m_pGroupDisplayList->setWaitAnimation(false);
    setDisplayListCurrent(pContext);
    if (mFetchingPopupActive) {
        PB_TRACE("PhonebookStateViewingList::enterStateEvent - mFetchingPopupActive = true - call "
                 "mobilityPhonebookRefreshActive(true)");
        mobilityPhonebookRefreshActive(pContext, true);
    }
    m_redialAllowed = false;
}

void PhonebookStateViewingList::exitStateEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::exitStateEvent");
    clearCallContextProvider(pContext);
    dismissDialingPopups(pContext);
    pContext->m_ContextMenu.dismiss();
    if (mFetchingPopupActive)
        m_popups.hideFetching();
}

PhonebookStateBase* PhonebookStateViewingList::backEvent(EventContext* pContext,
                                                         DisplayAPI::Command* pCommand,
                                                         DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateViewingList::backEvent");
    if (pDisplayable == &pContext->m_PopupDialer)
        return PhonebookStateBaseDialer::backEvent(pContext, pCommand, pDisplayable);
    if (pDisplayable == &pContext->m_PopupConfirm) {
        pContext->m_PopupConfirm.dismiss();
        setMenuAsCurrentDisplay(pContext);
        return this;
    }
    if (pDisplayable == &pContext->m_ContextMenu) {
        exitContextMenuState(pContext);
        setDisplayListCurrent(pContext);
        return this;
    }
    if (pDisplayable != pContext->m_pDisplayList.get())
        return this;
    if (pContext->m_pPhonebookList->getGroupIndication() != nALL_ENTRIES)
        leaveGroup(pContext);
    else if (pContext->m_pPhoneletHandle)
        pContext->m_pPhoneletHandle->leave("PhoneBookPhonelet"); // the host knows it by this spelling
    return this;
}

PhonebookStateBase* PhonebookStateViewingList::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                                       DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateViewingList::okEvent");
    clearLdapMarks(pContext);
    if (pDisplayable != pContext->m_pDisplayList.get())
        return this;
    if (isOptionsRowSelected(pContext)) {
        enterOptionsContextMenuState(pContext);
        return this;
    }
    if (pContext->m_pPhonebookList->size() == 0)
        return this;
    // An entry that cannot be read is not dialled: the one selected before it would be.
    if (!updateSelectedPhonebookEntry(pContext))
        return this;
    const auto number = getDefaultPhonebookNo(pContext);
    if (pContext->getCallRequestInitiated()) {
        PB_ERROR("okEvent received when call already initiated - ignore");
        return this;
    }
    placeCall(pContext, number);
    return this;
}

PhonebookStateBase* PhonebookStateViewingList::rightEvent(EventContext* pContext, DisplayAPI::Command*,
                                                          DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateViewingList::rightEvent");
    clearLdapMarks(pContext);
    if (pDisplayable != pContext->m_pDisplayList.get())
        return this;
    if (isOptionsRowSelected(pContext) || pContext->m_pPhonebookList->size() == 0) {
        enterOptionsContextMenuState(pContext);
        return this;
    }
    if (updateSelectedPhonebookEntry(pContext))
        enterEntryContextMenuState(pContext);
    return this;
}

PhonebookStateBase* PhonebookStateViewingList::screenEvent(EventContext* pContext,
                                                           DisplayAPI::Command* pCommand,
                                                           DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateViewingList::screenEvent");
    if (m_popups.isAllDeleted(pDisplayable)) {
        constructDisplayList(pContext);
        setDisplayListCurrent(pContext);
        return this;
    }
    if (m_popups.isError(pDisplayable)) {
        PB_TRACE("- hidden event off popup error notification");
        setMenuAsCurrentDisplay(pContext);
        return this;
    }
    const auto choice = m_commands.choiceOf(pCommand);
    if (choice)
        if (auto* pNext = listChoiceMade(pContext, *choice))
            return pNext;
    if (isDialingPopup(pContext, pDisplayable))
        return dialingPopupEvent(pContext, pCommand, pDisplayable);
    if (m_popups.isEntryDeleted(pDisplayable)) {
        PB_TRACE(" - hidden event off popup delete notification");
        pContext->m_ContextMenu.dismiss();
        return this;
    }
    if (m_commands.dialCommands().owns(pCommand))
        return dialChosenNumber(pContext, pCommand);
    if (choice)
        if (auto* pNext = entryChoiceMade(pContext, *choice, pCommand))
            return pNext;
    return PhonebookStateBaseDialer::screenEvent(pContext, pCommand, pDisplayable);
}

PhonebookStateBase* PhonebookStateViewingList::doCSTAServiceInitiatedEvent(EventContext*,
                                                                           CSTAServiceInitiatedEvent*)
{
    PB_TRACE("PhonebookStateViewingList::doCSTAServiceInitiatedEvent");
    return this;
}

PhonebookStateBase* PhonebookStateViewingList::itemStateChangedEvent(EventContext* pContext,
                                                                     DisplayAPI::Item*)
{
    PB_TRACE("PhonebookStateViewingList::itemStateChangedEvent");
    const auto text = pContext->m_pDisplayList->getSearchText();
    int index = 0;
    if (pContext->m_pPhonebookList->getIndex(text, index))
        PB_TRACE("Exact match found, index in directory list = %d", index);
    else
        PB_TRACE("Closest match found, index in directory list = %d", index);
    const int row = static_cast<int>(
        Toolbox::phonebookToDisplayIndex(static_cast<unsigned>(index), pContext->m_HasSoftKeyBar));
    PB_TRACE("Selected index on display = %d", row);
    pContext->m_pDisplayList->setSelectedIndex(row);
    return this;
}

PhonebookStateBase* PhonebookStateViewingList::dialingStartedEvent(EventContext* pContext, std::string digits)
{
    PB_TRACE("PhonebookStateViewingList::dialingStartedEvent");
    if (!digits.empty()) {
        openDialerWithDigits(pContext, digits);
        return this;
    }
    const bool known = isEntrySelected(pContext) && updateSelectedPhonebookEntry(pContext);
    const auto number = known ? getDefaultPhonebookNo(pContext) : std::string();
    const auto name = known ? shownName(pContext) : std::string();
    setupPopupDialer(pContext, "", name, number, false);
    return this;
}

bool PhonebookStateViewingList::getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::getDialPartyDetails");
    return offerEntry(party, pContext->m_SelectedEntry);
}

PhonebookStateBase* PhonebookStateViewingList::dialingStoppedEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::dialingStoppedEvent");
    m_redialAllowed = false;
    dialingEnded(pContext);
    return this;
}

bool PhonebookStateViewingList::mobilityPhonebookRefreshActive(EventContext* pContext, bool active)
{
    PB_TRACE("PhonebookStateViewingList::mobilityPhonebookRefreshActive");
    mFetchingPopupActive = active;
    if (active)
        m_popups.showFetching(pContext);
    else
        m_popups.hideFetching();
    return active;
}

bool PhonebookStateViewingList::mobilityPhonebookRefreshPending()
{
    PB_TRACE("PhonebookStateViewingList::mobilityPhonebookRefreshPending");
    return mFetchingPopupActive;
}

const ListCommands& PhonebookStateViewingList::commands() const
{
    PB_TRACE("PhonebookStateViewingList::commands");
    return m_commands;
}

void PhonebookStateViewingList::allowRedial()
{
    PB_TRACE("PhonebookStateViewingList::allowRedial");
    m_redialAllowed = true;
}

// --- The list ---

void PhonebookStateViewingList::constructDisplayList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::constructDisplayList");
    if (pContext->m_pDisplayList->size() == 0)
        fillDisplayList(pContext);
    setGroupTitle(pContext);
}

void PhonebookStateViewingList::fillDisplayList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::fillDisplayList");
    auto& list = *pContext->m_pDisplayList;
    auto& entries = *pContext->m_pPhonebookList;
    const unsigned size = entries.size();
    if (!pContext->m_HasSoftKeyBar || size == 0) {
        appendText(pContext, pContext->m_HasSoftKeyBar ? "no.contacts" : "list.options");
        list.setSelectedIndex(0);
    }
    PB_TRACE("PhonebookStateViewingList - Size = %u", size);

    const auto mode = entries.getDisplayMode();
    const auto qualifier = entries.getDisplayQualifier();
    for (unsigned index = 0; index < size; ++index) {
        appendRow(list, entries.elementAt(index), mode, qualifier);
        // The list is asked now and then while it grows; that is meant to be.
        if (index % nROWS_PER_QUERY == 0)
            list.getSelectedIndex();
    }
}

void PhonebookStateViewingList::appendText(EventContext* pContext, const char* key)
{
    PB_TRACE("PhonebookStateViewingList::appendText");
    pContext->m_pDisplayList->append(
        new DisplayAPI::ListItem(TranslationInfo(key, pContext->m_pTranslator), nLIST_ROW));
}

void PhonebookStateViewingList::setGroupTitle(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::setGroupTitle");
    auto& list = *pContext->m_pDisplayList;
    const int index = pContext->m_pPhonebookList->getGroupIndication();
    if (index == nWITHOUT_GROUP)
        list.setTitle(TranslationInfo("no.group", pContext->m_pTranslator));
    PhonebookGroup group;
    if (index > nWITHOUT_GROUP && pContext->m_pGroupList && pContext->m_pGroupList->getGroup(index, group))
        list.setTitle(groupText(pContext, group));
}

void PhonebookStateViewingList::setDisplayListCurrent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::setDisplayListCurrent");
    if (pContext->m_pTabScreen->numberOfTabs() > 0 && !isOfficeTabCurrent(pContext))
        return; // the tab still shows the placeholder
    showInTab(pContext, *pContext->m_pDisplayList);
    pContext->m_pPlaceholderList.reset();
}

void PhonebookStateViewingList::leaveGroup(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::leaveGroup");
    // The group's list stays on the screen, waiting, until the whole phonebook is there.
    auto& pOldList = pContext->m_pPlaceholderList;
    pOldList.reset();
    pOldList = std::move(pContext->m_pDisplayList);
    pOldList->setWaitAnimation(true);
    pContext->reallocateDisplayList(false);
    pContext->m_pPhonebookList->populate(nALL_ENTRIES);
    constructDisplayList(pContext);
    pOldList->setWaitAnimation(false);
    setDisplayListCurrent(pContext);
}

// --- The menus ---

void PhonebookStateViewingList::enterOptionsContextMenuState(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::enterOptionsContextMenuState");
    m_commands.fillOptionsMenu(pContext);
    setMenuAsCurrentDisplay(pContext);
}

void PhonebookStateViewingList::enterEntryContextMenuState(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::enterEntryContextMenuState");
    m_commands.fillEntryMenu(pContext);
    pContext->m_ContextMenu.setTitle(TranslationInfo::plain(shownName(pContext)));
    pContext->m_ContextMenu.setImage(shownPicture(pContext));
    setMenuAsCurrentDisplay(pContext);
}

void PhonebookStateViewingList::exitContextMenuState(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::exitContextMenuState");
    pContext->m_ContextMenu.dismiss();
    pContext->m_ContextMenu.clearCommands();
}

void PhonebookStateViewingList::setMenuAsCurrentDisplay(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::setMenuAsCurrentDisplay");
    pContext->m_pDisplay->setCurrent(&pContext->m_ContextMenu);
}

// --- What was chosen ---

PhonebookStateBase* PhonebookStateViewingList::listChoiceMade(EventContext* pContext,
                                                              ListCommands::Choice choice)
{
    PB_TRACE("PhonebookStateViewingList::listChoiceMade");
    switch (choice) {
    case NEW_CONTACT:
    case SECOND_NEW_CONTACT:
        return createNewContact(pContext);
    case FIND:
    case BACKUP:
    case RESTORE:
        return this;
    case GROUPS:
        return &pContext->m_ViewingGroups;
    case DISPLAY_OPTIONS:
        return &pContext->m_DisplayOptions;
    case DELETE_ALL:
        setPopupConfirmForDeleteAllConfirmation(pContext);
        return this;
    case CONFIRM_DELETE_ALL:
        PB_TRACE("- DELETE ALL");
        deleteAllEntries(pContext);
        return this;
    case CANCEL:
        pContext->m_PopupConfirm.dismiss();
        setMenuAsCurrentDisplay(pContext);
        return this;
    default:
        return nullptr;
    }
}

PhonebookStateBase* PhonebookStateViewingList::entryChoiceMade(EventContext* pContext,
                                                               ListCommands::Choice choice,
                                                               const DisplayAPI::Command* pCommand)
{
    PB_TRACE("PhonebookStateViewingList::entryChoiceMade");
    switch (choice) {
    case DIRECTED_PICKUP:
        return pickUp(pContext, pCommand);
    case DETAILS:
        return &pContext->m_CreatingEntry;
    case SEND:
        sendContact(pContext);
        return this;
    case DELETE_ENTRY:
        setPopupConfirmForDeleteEntryConfirmation(pContext);
        return this;
    case CONFIRM_DELETE:
        PB_TRACE(" - DELETE");
        deleteSelectedEntry(pContext);
        return this;
    case SECOND_FIND:
        return this;
    default:
        return nullptr;
    }
}

PhonebookStateBase* PhonebookStateViewingList::createNewContact(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::createNewContact");
    pContext->m_SelectedEntry.setBlank();
    // It stays otherwise, and the new contact would pass for the one shown last.
    pContext->m_SelectedEntry.setExternalId("");
    const int group = pContext->m_pPhonebookList->getGroupIndication();
    if (group > nWITHOUT_GROUP)
        pContext->m_SelectedEntry.setGroupIndex(group);
    return &pContext->m_CreatingEntry;
}

PhonebookStateBase* PhonebookStateViewingList::dialChosenNumber(EventContext* pContext,
                                                                const DisplayAPI::Command* pCommand)
{
    PB_TRACE("PhonebookStateViewingList::dialChosenNumber");
    std::string number;
    auto icon = CallPartyIdentifier::NONE;
    transformCommandToPhoneNumberAndIcon(pContext, pCommand, number, icon);
    if (pContext->getCallRequestInitiated()) {
        PB_ERROR("screenEvent received when call already initiated - ignore");
        return this;
    }
    if (!placeCall(pContext, number))
        return this;
    return stateAfterDialing(pContext);
}

PhonebookStateBase* PhonebookStateViewingList::pickUp(EventContext* pContext,
                                                      const DisplayAPI::Command* pCommand)
{
    PB_TRACE("PhonebookStateViewingList::pickUp");
    std::string number;
    auto icon = CallPartyIdentifier::NONE;
    transformCommandToPhoneNumberAndIcon(pContext, pCommand, number, icon);
    if (!makeCSTADirectedPickupCall(pContext, number, ""))
        return this;
    return stateAfterDialing(pContext);
}

PhonebookStateBase* PhonebookStateViewingList::dialingPopupEvent(EventContext* pContext,
                                                                 DisplayAPI::Command* pCommand,
                                                                 DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateViewingList::dialingPopupEvent");
    if (!m_redialAllowed || !isRedialCommand(pContext, pCommand))
        return PhonebookStateBaseDialer::screenEvent(pContext, pCommand, pDisplayable);
    m_redialAllowed = false;
    if (pContext->getCallRequestInitiated()) {
        PB_ERROR("- okEvent received when call already initiated - ignore");
        return this;
    }
    placeCall(pContext, getDefaultPhonebookNo(pContext));
    return this;
}

void PhonebookStateViewingList::transformCommandToPhoneNumberAndIcon(
    EventContext* pContext, const DisplayAPI::Command* pCommand, std::string& number,
    CallPartyIdentifier::PhoneNumberIconType& icon)
{
    PB_TRACE("PhonebookStateViewingList::transformCommandToPhoneNumberAndIcon");
    m_commands.dialCommands().numberOf(pCommand, pContext->m_SelectedEntry, number, icon);
}

void PhonebookStateViewingList::sendContact(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::sendContact");
    if (!pContext->m_pObexService)
        return;
    const auto& entry = pContext->m_SelectedEntry;
    pContext->m_pObexService->sendContact(ContactCard::fileName(entry), ContactCard::vCard(entry));
}

// --- Deleting ---

void PhonebookStateViewingList::setPopupConfirmForDeleteEntryConfirmation(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::setPopupConfirmForDeleteEntryConfirmation");
    const auto& list = *pContext->m_pDisplayList;
    askBeforeDeleting(pContext,
                      TranslationInfo("delete.entry.prompt", pContext->m_pTranslator,
                                      list.getText(list.getSelectedIndex())),
                      CONFIRM_DELETE);
}

void PhonebookStateViewingList::setPopupConfirmForDeleteAllConfirmation(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::setPopupConfirmForDeleteAllConfirmation");
    askBeforeDeleting(pContext, TranslationInfo("delete.all.entries.prompt", pContext->m_pTranslator),
                      CONFIRM_DELETE_ALL);
}

void PhonebookStateViewingList::askBeforeDeleting(EventContext* pContext, TranslationInfo question,
                                                  ListCommands::Choice yes)
{
    PB_TRACE("PhonebookStateViewingList::askBeforeDeleting");
    auto& confirm = pContext->m_PopupConfirm;
    confirm.setText(std::move(question));
    confirm.setState(nWARNING);
    confirm.clearCommands();
    confirm.addCommand(m_commands.command(yes));
    confirm.addCommand(m_commands.command(CANCEL));
    pContext->m_pDisplay->setCurrent(&confirm);
}

void PhonebookStateViewingList::deleteAllEntries(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::deleteAllEntries");
    pContext->m_PopupConfirm.dismiss();
    const int code = m_popups.deleteAll(pContext);
    if (code != PB_Error::SUCCESS) {
        m_popups.showError(pContext, code);
        return;
    }
    PB_TRACE("- dirList deleted");
    // The list is built again when the notification closes.
    pContext->m_pDisplayList->clear();
    m_popups.showAllDeleted(pContext);
}

void PhonebookStateViewingList::deleteSelectedEntry(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::deleteSelectedEntry");
    const auto index = static_cast<unsigned>(pContext->m_SelectedEntryIndex);
    const int row = static_cast<int>(Toolbox::phonebookToDisplayIndex(index, pContext->m_HasSoftKeyBar));
    const auto name = pContext->m_pDisplayList->getText(row);
    pContext->m_PopupConfirm.dismiss();
    clearCallContextProvider(pContext);
    const int code = m_popups.deleteEntry(pContext, index, name);
    if (code != PB_Error::SUCCESS) {
        m_popups.showError(pContext, code);
        return;
    }
    removeRow(pContext, row);
    PB_TRACE("entry deleted");
    m_popups.showEntryDeleted(pContext);
}

void PhonebookStateViewingList::removeRow(EventContext* pContext, int row)
{
    PB_TRACE("PhonebookStateViewingList::removeRow");
    auto& list = *pContext->m_pDisplayList;
    list.remove(row);
    if (list.size() == 0)
        appendText(pContext, "no.contacts");
    list.setSelectedIndex(std::min(row, list.size() - 1));
}

// --- The selected entry ---

void PhonebookStateViewingList::clearLdapMarks(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::clearLdapMarks");
    pContext->m_pPhonebookList->setLDAPPhonebookList(false);
    pContext->m_SelectedEntry.setLDAPPhonebookListEntry(false);
    pContext->m_SelectedEntry.setLDAPPhonebookFullEntry(false);
}

bool PhonebookStateViewingList::isOptionsRowSelected(EventContext* pContext) const
{
    PB_TRACE("PhonebookStateViewingList::isOptionsRowSelected");
    return !pContext->m_HasSoftKeyBar && pContext->m_pDisplayList->getSelectedIndex() == 0;
}

bool PhonebookStateViewingList::isEntrySelected(EventContext* pContext) const
{
    PB_TRACE("PhonebookStateViewingList::isEntrySelected");
    return !isOptionsRowSelected(pContext) && pContext->m_pPhonebookList->size() > 0;
}

unsigned int PhonebookStateViewingList::getSelectedPhonebookEntryIndex(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::getSelectedPhonebookEntryIndex");
    const int row = pContext->m_pDisplayList->getSelectedIndex();
    return Toolbox::displayToPhonebookIndex(static_cast<unsigned>(row), pContext->m_HasSoftKeyBar);
}

bool PhonebookStateViewingList::updateSelectedPhonebookEntry(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::updateSelectedPhonebookEntry");
    const auto index = getSelectedPhonebookEntryIndex(pContext);
    if (!pContext->m_pPhonebookList->getFullEntry(index, pContext->m_SelectedEntry))
        return false;
    pContext->m_SelectedEntryIndex = static_cast<int>(index);
    return true;
}

std::string PhonebookStateViewingList::getDefaultPhonebookNo(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::getDefaultPhonebookNo");
    return pContext->m_SelectedEntry.getDefaultPhonebookNo();
}

std::string PhonebookStateViewingList::shownName(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::shownName");
    auto& entries = *pContext->m_pPhonebookList;
    return pContext->m_SelectedEntry.getDisplayName(entries.getDisplayMode(), entries.getDisplayQualifier());
}

std::string PhonebookStateViewingList::shownPicture(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingList::shownPicture");
    const auto& picture = pContext->m_SelectedEntry.getPicture();
    return pContext->m_pLocalMgmt ? pContext->m_pLocalMgmt->picturePathFromName(picture) : "";
}
