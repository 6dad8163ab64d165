// The form of a local contact, new or existing: every field of the record, its default number, group
// and picture. It saves through the local phonebook, asks before changes are lost, and dials a number
// field with OK.
//
// What is edited is the context's selected entry; it changes with a save only.

#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <framework/util/Serializer.h>

#include "PhonebookFullEntry.h"
#include "PhonebookStateBaseDialer.h"
#include "PictureChoices.h"

namespace DisplayAPI {
class Form;
class MenuCommand;
class PopupConfirm;
class PopupNotification;
class SelectionField;
class TextField;
} // namespace DisplayAPI

class PhonebookStateCreatingEntry final : public PhonebookStateBaseDialer {
public:
    PhonebookStateCreatingEntry();

    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* saveEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* itemStateChangedEvent(EventContext* pContext, DisplayAPI::Item* pItem) override;
    PhonebookStateBase* dialingStartedEvent(EventContext* pContext, std::string digits) override;
    bool getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext) override;
    PhonebookStateBase* dialingStoppedEvent(EventContext* pContext) override;
    // The form while it holds changes, else the list.
    PhonebookStateBase* stateAfterDialing(EventContext* pContext) override;
    ~PhonebookStateCreatingEntry() override;

    // Whether the telephone has no call: true also when nobody can tell.
    bool phoneInIdleState(EventContext* pContext);

private:
    // The text fields in the order of the form. The four numbers stand in the order in which one of
    // them becomes the default number.
    enum Text : std::size_t {
        SURNAME,
        FIRSTNAME,
        OFFICE,
        OFFICE2,
        MOBILE,
        PRIVATE,
        COMPANY,
        ADDRESS,
        ADDRESS2,
        JOB_FUNCTION,
        EMAIL,
        nTEXTS
    };
    static constexpr std::size_t nNUMBERS = 4;

    // What distinguishes the text fields, and the numbers.
    struct TextKind;
    struct NumberKind;
    static const std::array<TextKind, nTEXTS> nTEXT_KINDS;
    static const std::array<NumberKind, nNUMBERS> nNUMBER_KINDS; // from OFFICE

    void createCommands(EventContext* pContext);
    void createSavePopups(EventContext* pContext);
    void readFieldSizes(EventContext* pContext);

    void populateForm(EventContext* pContext);
    void appendTextFields(EventContext* pContext, Text first, Text last);
    void appendTextField(EventContext* pContext, Text text);
    DisplayAPI::SelectionField& appendSelectionField(EventContext* pContext,
                                                     std::unique_ptr<DisplayAPI::SelectionField>& pField,
                                                     const char* key);
    void populateOptions(EventContext* pContext);
    void populateDefaultNumber(EventContext* pContext);
    void populateGroups(EventContext* pContext);

    void rebuildDefaultNumberSelectionField(std::size_t changedNumber);
    DisplayAPI::MenuCommand* getNewDefaultNumberCommand();
    // The numbers that there are, with this one selected; none at all without a number.
    void offerNumbers(DisplayAPI::MenuCommand* pDefault);

    void copyEditedDetailsFromForm(EventContext* pContext);
    std::string textOf(Text text) const;
    int chosenGroup(EventContext* pContext) const;
    const char* chosenDefaultNumber() const;
    bool isChanged(EventContext* pContext) const;

    // All that follows from a request to save.
    void save(EventContext* pContext);
    // 0, or a PB_Error code.
    int saveEntry(EventContext* pContext);
    void showSavedEntry(EventContext* pContext, int index, bool isFirst);
    void showForm(EventContext* pContext);

    bool holdsNumber(std::size_t number) const;
    // Which number field has the focus.
    std::optional<std::size_t> selectedNumber() const;
    PhonebookStateBase* okEventOnForm(EventContext* pContext);
    PhonebookStateBase* optionChosen(EventContext* pContext);

    // Widgets point at commands, the form at fields: in this order each outlives what points at it.
    std::unique_ptr<DisplayAPI::MenuCommand> m_pSaveExitCommand;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pExitNoSaveCommand;
    std::array<std::unique_ptr<DisplayAPI::MenuCommand>, nNUMBERS> m_numberCommands;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pNoneCommand;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pNoGroupCommand;
    // Stands for a group that the group list does not have: never among the choices.
    std::unique_ptr<DisplayAPI::MenuCommand> m_pLostGroupCommand;
    std::vector<std::unique_ptr<DisplayAPI::MenuCommand>> m_groupCommands;
    std::unique_ptr<DisplayAPI::Command> m_pDialCommand;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pSaveCommand;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pDoNotSaveCommand;
    PictureChoices m_pictures;

    std::unique_ptr<DisplayAPI::SelectionField> m_pOptionsField;
    std::array<std::unique_ptr<DisplayAPI::TextField>, nTEXTS> m_textFields;
    std::unique_ptr<DisplayAPI::SelectionField> m_pDefaultNumberField;
    std::unique_ptr<DisplayAPI::SelectionField> m_pGroupField;
    std::unique_ptr<DisplayAPI::SelectionField> m_pPictureField;
    std::unique_ptr<DisplayAPI::Form> m_pForm;

    std::unique_ptr<DisplayAPI::PopupConfirm> m_pSaveConfirm;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pSaveNotification;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pErrorNotification;
    // Kept from the previous entry until the next one is on the screen.
    std::unique_ptr<DisplayAPI::Displayable> m_pRetiredWidget;

    PhonebookFullEntry m_EditedEntry;
    Serializer::Pairs m_fieldSizes;
};
