// The name of one group, on a form of one field: a new group, or one that is renamed.

#pragma once

#include <memory>

#include <framework/services/PhonebookGroup.h>

#include "PhonebookStateBase.h"

namespace DisplayAPI {
class Form;
class MenuCommand;
class PopupConfirm;
class PopupNotification;
class PopupProgress;
class SelectionField;
class TextField;
} // namespace DisplayAPI

class PhonebookStateEditGroup final : public PhonebookStateBase {
public:
    PhonebookStateEditGroup();

    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override;
    // The Save key does what "save.exit" does.
    PhonebookStateBase* saveEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override;
    virtual ~PhonebookStateEditGroup();

private:
    void constructMenuCommands(EventContext* pContext);
    void constructPopups(EventContext* pContext);
    void constructForm(EventContext* pContext);
    void readMaximumLength(EventContext* pContext);
    void populateForm(EventContext* pContext);
    void showForm(EventContext* pContext);

    void copyEditedDetailsFromForm();
    // 0, or a PB_Error code.
    int saveEntry(EventContext* pContext);
    bool writeGroupList(EventContext* pContext);
    void save(EventContext* pContext);
    PhonebookStateBase* questionAnswered(EventContext* pContext, const DisplayAPI::Command* pCommand);

    // Fields and popups point at commands, the form at fields: declared after them, gone before them.
    std::unique_ptr<DisplayAPI::MenuCommand> m_pSaveExit;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pExitNoSave;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pSave;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pDoNotSave;
    std::unique_ptr<DisplayAPI::SelectionField> m_pOptionField;
    std::unique_ptr<DisplayAPI::TextField> m_pNameField;
    std::unique_ptr<DisplayAPI::Form> m_pForm;
    std::unique_ptr<DisplayAPI::PopupConfirm> m_pSaveQuestion;
    std::unique_ptr<DisplayAPI::PopupProgress> m_pProgress;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pSaved;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pError;

    PhonebookGroup m_group;
    PhonebookGroup m_groupBefore;
    unsigned int m_maxNameLength = ~0U; // all bits set: not known yet
};
