// The groups as a list: one is chosen to show its contacts, to be renamed or to be deleted.
//
// Behind the options row of telephones without a soft-key bar the rows are the named groups in the
// order of their slots; the last row stands for contacts without a group.

#pragma once

#include <memory>

#include "PhonebookStateBase.h"

namespace DisplayAPI {
class MenuCommand;
class PopupConfirm;
class PopupNotification;
class PopupProgress;
} // namespace DisplayAPI

class PhonebookStateViewingGroups final : public PhonebookStateBase {
public:
    PhonebookStateViewingGroups();

    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* rightEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                   DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override;
    virtual ~PhonebookStateViewingGroups();

private:
    void constructGroupDisplayList(EventContext* pContext);
    void fillGroupDisplayList(EventContext* pContext);
    void constructMenuCommands(EventContext* pContext);
    void constructPopups(EventContext* pContext);

    // The menu of the selected row.
    void openMenu(EventContext* pContext);
    void enterOptionsContextMenuState(EventContext* pContext);
    void enterEntryContextMenuState(EventContext* pContext);
    void exitContextMenuState(EventContext* pContext);
    void setMenuAsCurrentDisplay(EventContext* pContext);
    bool spareGroupsExist(EventContext* pContext) const;
    bool isCopiedContactGroup(EventContext* pContext, int group) const;

    PhonebookStateBase* menuChoiceMade(EventContext* pContext, const DisplayAPI::Command* pCommand);
    PhonebookStateBase* viewGroup(EventContext* pContext);
    void setDeleteGroupTexts(EventContext* pContext);
    void setDeleteGroupsTexts(EventContext* pContext);
    void questionAnswered(EventContext* pContext, const DisplayAPI::Command* pCommand,
                          DisplayAPI::PopupConfirm& question);
    void showOutcome(EventContext* pContext, bool deleted);

    // Behind the progress message. When they fail the group list is as it was, as the rows still are.
    bool deleteGroup(EventContext* pContext);
    bool deleteGroups(EventContext* pContext);
    bool clearSlot(EventContext* pContext, unsigned int group);
    bool clearSlots(EventContext* pContext);
    bool reassign(EventContext* pContext, unsigned int group);
    bool writeGroupList(EventContext* pContext);
    void showGroup(EventContext* pContext, int group);

    // Popups point at commands: declared after them, gone before them.
    std::unique_ptr<DisplayAPI::MenuCommand> m_pNewGroup;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pDeleteAllGroups;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pView;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pEdit;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pDelete;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pConfirmDeleteAll;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pCancel;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pConfirmDelete;
    std::unique_ptr<DisplayAPI::PopupConfirm> m_pDeleteGroupQuestion;
    std::unique_ptr<DisplayAPI::PopupConfirm> m_pDeleteAllQuestion;
    std::unique_ptr<DisplayAPI::PopupProgress> m_pProgress;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pFailure;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pSuccess;
};
