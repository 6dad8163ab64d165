#include "PhonebookStateViewingGroups.h"

#include <framework/display/Display.h>
#include <framework/display/PopupProgress.h>
#include <framework/services/DirectoryServiceIfc.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "PhonebookPhonelet.h"
#include "PopupMaker.h"
#include "ShownProgress.h"
#include "Toolbox.h"

using DisplayAPI::MenuCommand;
using DisplayAPI::PopupNotification;
using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/PhonebookStateViewingGroups";

constexpr int nALL_ENTRIES = -1;
constexpr int nWITHOUT_GROUP = 0;
constexpr int nFIRST_GROUP = 1;
constexpr int nNO_SPARE_GROUP = -1;
constexpr int nLIST_ROW = 1; // the kind of a row in a search list
constexpr int nPROGRESS_KIND = 0;

} // namespace

PhonebookStateViewingGroups::PhonebookStateViewingGroups() = default;

PhonebookStateViewingGroups::~PhonebookStateViewingGroups() = default;

void PhonebookStateViewingGroups::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::enterStateEvent()");
    constructGroupDisplayList(pContext);
    constructMenuCommands(pContext);
    constructPopups(pContext);
    showInTab(pContext, *pContext->m_pGroupDisplayList);
}

void PhonebookStateViewingGroups::exitStateEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::exitStateEvent()");
    if (!m_pSuccess)
        return; // never entered
    pContext->m_ContextMenu.dismiss();
    m_pDeleteGroupQuestion->dismiss();
    m_pDeleteAllQuestion->dismiss();
    m_pFailure->dismiss();
    m_pSuccess->dismiss();
}

PhonebookStateBase* PhonebookStateViewingGroups::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                                           DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateViewingGroups::backEvent()");
    if (pDisplayable == pContext->m_pGroupDisplayList.get())
        return &pContext->m_ViewingList;
    if (pDisplayable == &pContext->m_ContextMenu) {
        exitContextMenuState(pContext);
        showInTab(pContext, *pContext->m_pGroupDisplayList);
    } else if (pDisplayable == m_pDeleteGroupQuestion.get()) {
        questionAnswered(pContext, m_pCancel.get(), *m_pDeleteGroupQuestion);
    } else if (pDisplayable == m_pDeleteAllQuestion.get()) {
        questionAnswered(pContext, m_pCancel.get(), *m_pDeleteAllQuestion);
    }
    return this;
}

PhonebookStateBase* PhonebookStateViewingGroups::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                                         DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateViewingGroups::okEvent()");
    if (pDisplayable == pContext->m_pGroupDisplayList.get())
        openMenu(pContext);
    return this;
}

PhonebookStateBase* PhonebookStateViewingGroups::rightEvent(EventContext* pContext, DisplayAPI::Command*,
                                                            DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateViewingGroups::rightEvent()");
    if (pDisplayable == pContext->m_pGroupDisplayList.get())
        openMenu(pContext);
    return this;
}

PhonebookStateBase* PhonebookStateViewingGroups::screenEvent(EventContext* pContext,
                                                             DisplayAPI::Command* pCommand,
                                                             DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateViewingGroups::screenEvent()");
    if (pDisplayable == &pContext->m_ContextMenu)
        return menuChoiceMade(pContext, pCommand);
    if (pDisplayable == m_pDeleteGroupQuestion.get())
        questionAnswered(pContext, pCommand, *m_pDeleteGroupQuestion);
    else if (pDisplayable == m_pDeleteAllQuestion.get())
        questionAnswered(pContext, pCommand, *m_pDeleteAllQuestion);
    else if (pDisplayable == m_pSuccess.get())
        exitContextMenuState(pContext);
    else if (pDisplayable == m_pFailure.get())
        openMenu(pContext);
    else
        PB_IGNORED(" - unrecognised widget\n");
    return this;
}

// --- The list ---

void PhonebookStateViewingGroups::constructGroupDisplayList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::constructGroupDisplayList()");
    auto& list = *pContext->m_pGroupDisplayList;
    if (list.size() == 0)
        fillGroupDisplayList(pContext);
    list.setSelectedIndex(0);
    list.setSearchText(""); // what was typed here before finds nothing
}

void PhonebookStateViewingGroups::fillGroupDisplayList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::fillGroupDisplayList()");
    auto& list = *pContext->m_pGroupDisplayList;
    const auto append = [&list](TranslationInfo text) {
        list.append(new DisplayAPI::ListItem(std::move(text), nLIST_ROW));
    };
    list.setTitle(TranslationInfo("manage.groups.list", pContext->m_pTranslator));
    if (!pContext->m_HasSoftKeyBar)
        append(TranslationInfo("list.options", pContext->m_pTranslator));
    const auto& groups = *pContext->m_pGroupList;
    for (int index = nFIRST_GROUP; index <= groups.numberOfGroups(); ++index) {
        PhonebookGroup group;
        if (!groups.getGroup(index, group)) {
            PB_ERROR("PhonebookStateViewingGroups::enterStateEvent - error return from getGroup");
            continue;
        }
        if (!group.getName().empty())
            append(groupText(pContext, group));
    }
    append(TranslationInfo("no.group", pContext->m_pTranslator));
}

void PhonebookStateViewingGroups::constructMenuCommands(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::constructMenuCommands()");
    if (m_pNewGroup)
        return;
    const auto make = [pContext](const char* key) {
        return std::make_unique<MenuCommand>(TranslationInfo(key, pContext->m_pTranslator));
    };
    m_pNewGroup = make("new.group");
    m_pDeleteAllGroups = make("delete.all.groups");
    m_pView = make("view");
    m_pEdit = make("edit");
    m_pDelete = make("delete");
    m_pConfirmDeleteAll = make("delete.all");
    m_pCancel = make("cancel");
    m_pConfirmDelete = make("delete");
}

void PhonebookStateViewingGroups::constructPopups(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::constructPopups()");
    if (m_pDeleteGroupQuestion)
        return;
    auto* pTranslator = pContext->m_pTranslator;
    m_pDeleteGroupQuestion = PopupMaker::warning(pContext, {}, {m_pConfirmDelete.get(), m_pCancel.get()});
    m_pDeleteAllQuestion =
        PopupMaker::warning(pContext, TranslationInfo("delete.all.groups.prompt", pTranslator),
                            {m_pConfirmDeleteAll.get(), m_pCancel.get()});
    m_pProgress = PopupMaker::progress(nPROGRESS_KIND);
    m_pProgress->setText(TranslationInfo("saving.changes", pTranslator));
    m_pFailure = PopupMaker::notification(pContext, PopupNotification::ERROR);
    m_pSuccess = PopupMaker::notification(pContext, PopupNotification::SUCCESS);
}

// --- The menus ---

void PhonebookStateViewingGroups::openMenu(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::openMenu()");
    const auto& list = *pContext->m_pGroupDisplayList;
    const int row = list.getSelectedIndex();
    pContext->m_SelectedGroupIndex = nWITHOUT_GROUP;
    if (row == 0 && !pContext->m_HasSoftKeyBar) {
        enterOptionsContextMenuState(pContext);
        return;
    }
    if (row != list.size() - 1) {
        const auto position =
            Toolbox::displayToGroupListIndex(static_cast<unsigned>(row), pContext->m_HasSoftKeyBar);
        pContext->m_SelectedGroupIndex = pContext->m_pGroupList->namedGroup(static_cast<int>(position) + 1);
    }
    enterEntryContextMenuState(pContext);
}

void PhonebookStateViewingGroups::enterOptionsContextMenuState(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::enterOptionsContextMenuState()");
    auto& menu = pContext->m_ContextMenu;
    menu.clearCommands();
    if (spareGroupsExist(pContext))
        menu.addCommand(m_pNewGroup.get());
    if (!pContext->m_pGroupList->noGroupsInUse())
        menu.addCommand(m_pDeleteAllGroups.get());
    setMenuAsCurrentDisplay(pContext);
}

void PhonebookStateViewingGroups::enterEntryContextMenuState(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::enterEntryContextMenuState()");
    const int group = pContext->m_SelectedGroupIndex;
    const bool isUsersOwn = group != nWITHOUT_GROUP && !isCopiedContactGroup(pContext, group);
    const bool hasListCommands = pContext->m_HasSoftKeyBar; // otherwise they are on the options row
    auto& menu = pContext->m_ContextMenu;
    menu.clearCommands();
    menu.addCommand(m_pView.get());
    if (isUsersOwn)
        menu.addCommand(m_pEdit.get());
    if (hasListCommands && spareGroupsExist(pContext))
        menu.addCommand(m_pNewGroup.get());
    if (isUsersOwn)
        menu.addCommand(m_pDelete.get());
    if (hasListCommands && !pContext->m_pGroupList->noGroupsInUse())
        menu.addCommand(m_pDeleteAllGroups.get());
    setMenuAsCurrentDisplay(pContext);
}

void PhonebookStateViewingGroups::exitContextMenuState(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::exitContextMenuState()");
    pContext->m_ContextMenu.dismiss();
    pContext->m_ContextMenu.clearCommands();
}

void PhonebookStateViewingGroups::setMenuAsCurrentDisplay(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::setMenuAsCurrentDisplay()");
    pContext->m_pDisplay->setCurrent(&pContext->m_ContextMenu);
}

bool PhonebookStateViewingGroups::spareGroupsExist(EventContext* pContext) const
{
    PB_TRACE("PhonebookStateViewingGroups::spareGroupsExist()");
    return pContext->m_pGroupList->firstSpareGroup() != nNO_SPARE_GROUP;
}

bool PhonebookStateViewingGroups::isCopiedContactGroup(EventContext* pContext, int group) const
{
    PB_TRACE("PhonebookStateViewingGroups::isCopiedContactGroup()");
    auto& phonelet = *pContext->m_pPhonelet;
    if (phonelet.isCopiedContactGroup(static_cast<unsigned>(group)))
        return true;
    // The phonelet asks the directory service, which may be out of reach: its name tells as well.
    PhonebookGroup named;
    return pContext->m_pGroupList->getGroup(group, named) &&
           named.getName() == phonelet.getCopiedContactGroupName();
}

// --- What was chosen ---

PhonebookStateBase* PhonebookStateViewingGroups::menuChoiceMade(EventContext* pContext,
                                                                const DisplayAPI::Command* pCommand)
{
    PB_TRACE("PhonebookStateViewingGroups::menuChoiceMade()");
    if (pCommand == m_pNewGroup.get()) {
        pContext->m_SelectedGroupIndex = nWITHOUT_GROUP;
        return &pContext->m_EditGroup;
    }
    if (pCommand == m_pEdit.get())
        return &pContext->m_EditGroup;
    if (pCommand == m_pView.get())
        return viewGroup(pContext);
    if (pCommand == m_pDelete.get()) {
        setDeleteGroupTexts(pContext);
        pContext->m_pDisplay->setCurrent(m_pDeleteGroupQuestion.get());
    } else if (pCommand == m_pDeleteAllGroups.get()) {
        setDeleteGroupsTexts(pContext);
        pContext->m_pDisplay->setCurrent(m_pDeleteAllQuestion.get());
    } else {
        PB_IGNORED(" - unhandled event on context menu");
    }
    return this;
}

PhonebookStateBase* PhonebookStateViewingGroups::viewGroup(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::viewGroup()");
    const int group = pContext->m_SelectedGroupIndex;
    if (group < nWITHOUT_GROUP || group > pContext->m_pGroupList->numberOfGroups()) {
        PB_ERROR("invalid group: %d", group);
        return this;
    }
    pContext->m_pDisplayList->setWaitAnimation(true);
    // It is the one in sight meanwhile; the local list ends its waiting.
    pContext->m_pGroupDisplayList->setWaitAnimation(true);
    showGroup(pContext, group);
    return &pContext->m_ViewingList;
}

void PhonebookStateViewingGroups::setDeleteGroupTexts(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::setDeleteGroupTexts()");
    PhonebookGroup group;
    pContext->m_pGroupList->getGroup(pContext->m_SelectedGroupIndex, group);
    const auto text = [&](const char* key) {
        return TranslationInfo(key, pContext->m_pTranslator, group.getName());
    };
    m_pDeleteGroupQuestion->setText(text("delete.group.prompt"));
    m_pSuccess->setText(text("delete.group.confirm"));
    m_pFailure->setText(text("delete.group.failed"));
}

void PhonebookStateViewingGroups::setDeleteGroupsTexts(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::setDeleteGroupsTexts()");
    m_pSuccess->setText(TranslationInfo("delete.all.groups.confirm", pContext->m_pTranslator));
    m_pFailure->setText(TranslationInfo("delete.all.groups.failed", pContext->m_pTranslator));
}

void PhonebookStateViewingGroups::questionAnswered(EventContext* pContext,
                                                   const DisplayAPI::Command* pCommand,
                                                   DisplayAPI::PopupConfirm& question)
{
    PB_TRACE("PhonebookStateViewingGroups::questionAnswered()");
    if (pCommand == m_pCancel.get()) {
        question.dismiss();
        setMenuAsCurrentDisplay(pContext);
    } else if (pCommand == m_pConfirmDelete.get()) {
        question.dismiss();
        showOutcome(pContext, deleteGroup(pContext));
    } else if (pCommand == m_pConfirmDeleteAll.get()) {
        question.dismiss();
        showOutcome(pContext, deleteGroups(pContext));
    } else {
        PB_IGNORED(" - unhandled event on popup\n");
    }
}

void PhonebookStateViewingGroups::showOutcome(EventContext* pContext, bool deleted)
{
    PB_TRACE("PhonebookStateViewingGroups::showOutcome()");
    if (!deleted) {
        pContext->m_pDisplay->setCurrent(m_pFailure.get());
        return;
    }
    pContext->m_pGroupDisplayList->clear();
    constructGroupDisplayList(pContext);
    pContext->m_pDisplay->setCurrent(m_pSuccess.get());
}

// --- Deleting ---

bool PhonebookStateViewingGroups::deleteGroup(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::deleteGroup()");
    const ShownProgress progress(pContext, *m_pProgress);
    const auto before = *pContext->m_pGroupList;
    const int group = pContext->m_SelectedGroupIndex;
    if (!clearSlot(pContext, static_cast<unsigned>(group))) {
        *pContext->m_pGroupList = before;
        return false;
    }
    PB_TRACE("Deleting group - group list updated successfully");
    const int shown = pContext->m_pPhonebookList->getGroupIndication();
    if (shown == group)
        showGroup(pContext, nALL_ENTRIES);
    else if (shown == nWITHOUT_GROUP)
        showGroup(pContext, nWITHOUT_GROUP); // which the group's contacts have joined
    return true;
}

bool PhonebookStateViewingGroups::clearSlot(EventContext* pContext, unsigned int group)
{
    PB_TRACE("PhonebookStateViewingGroups::clearSlot()");
    if (!pContext->m_pGroupList->makeSpare(static_cast<int>(group))) {
        PB_ERROR("Deleting group - failed to make group %u spare", group);
        return false;
    }
    if (!reassign(pContext, group)) {
        PB_ERROR("Deleting group - failed to reassign group %u", group);
        return false;
    }
    if (!writeGroupList(pContext)) {
        PB_ERROR("Deleting group %u - failed to write group list", group);
        return false;
    }
    return true;
}

bool PhonebookStateViewingGroups::deleteGroups(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::deleteGroups()");
    const ShownProgress progress(pContext, *m_pProgress);
    const auto before = *pContext->m_pGroupList;
    if (!clearSlots(pContext)) {
        PB_ERROR("Deleting all groups - failed to write group list");
        *pContext->m_pGroupList = before;
        return false;
    }
    PB_TRACE("Deleting all groups - group list updated successfully");
    if (pContext->m_pPhonebookList->getGroupIndication() != nALL_ENTRIES)
        showGroup(pContext, nALL_ENTRIES);
    return true;
}

bool PhonebookStateViewingGroups::clearSlots(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::clearSlots()");
    auto& groups = *pContext->m_pGroupList;
    for (int index = nFIRST_GROUP; index <= groups.numberOfGroups(); ++index) {
        if (groups.isSpare(index) || isCopiedContactGroup(pContext, index))
            continue;
        const auto group = static_cast<unsigned>(index);
        if (!groups.makeSpare(index))
            PB_ERROR("Deleting all groups - group %u not made spare", group);
        if (!reassign(pContext, group))
            PB_ERROR("Deleting all groups - group %u not reassigned", group);
    }
    return writeGroupList(pContext);
}

// The group's contacts stay in the phonebook, without a group.
bool PhonebookStateViewingGroups::reassign(EventContext* pContext, unsigned int group)
{
    PB_TRACE("PhonebookStateViewingGroups::reassign()");
    auto* pDirectory = pContext->m_pDirectoryService;
    return pDirectory && pDirectory->reassignGroup(group, nWITHOUT_GROUP, 0);
}

bool PhonebookStateViewingGroups::writeGroupList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateViewingGroups::writeGroupList()");
    auto* pDirectory = pContext->m_pDirectoryService;
    return pDirectory && pDirectory->storeGroupList(pContext->m_pGroupList.get());
}

// Fills the local list anew, in a new widget.
void PhonebookStateViewingGroups::showGroup(EventContext* pContext, int group)
{
    PB_TRACE("PhonebookStateViewingGroups::showGroup()");
    pContext->m_pPhonebookList->populate(group);
    pContext->reallocateDisplayList(true);
}
