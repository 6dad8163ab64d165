// One entry of the corporate directory in full, to read: OK dials the number in focus, Save takes it into
// the local phonebook, and the options lead there or back to the list.
//
// What is shown is the context's entry of the corporate directory.

#pragma once

#include <memory>
#include <string>

#include <framework/services/CallPartyIdentifier.h>

#include "DirectoryFields.h"
#include "PhonebookStateBaseDialer.h"

namespace DisplayAPI {
class Form;
class MenuCommand;
class SelectionField;
} // namespace DisplayAPI

class LDAPStateDisplayingEntry final : public PhonebookStateBaseDialer {
public:
    LDAPStateDisplayingEntry();

    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* rightEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                   DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* saveEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* itemStateChangedEvent(EventContext* pContext, DisplayAPI::Item* pItem) override;
    PhonebookStateBase* dialingStartedEvent(EventContext* pContext, std::string digits) override;
    bool getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext) override;
    PhonebookStateBase* dialingStoppedEvent(EventContext* pContext) override;
    // The list.
    PhonebookStateBase* stateAfterDialing(EventContext* pContext) override;
    ~LDAPStateDisplayingEntry() override;

    // The number field in focus: its text and call-party icon; "" and NONE elsewhere.
    void getSelectedNumberAndIcon(std::string& number, CallPartyIdentifier::PhoneNumberIconType& icon) const;
    // What OK reports from a field that holds a number; null before the form was first shown.
    DisplayAPI::Command* getDialCommand() const;

private:
    void populateForm(EventContext* pContext);
    void createForm(EventContext* pContext);
    void constructMenuCommands(EventContext* pContext);
    void setFormAsCurrentDisplay(EventContext* pContext);

    // Widgets point at commands, the form at fields: in this order each outlives what points at it.
    std::unique_ptr<DisplayAPI::MenuCommand> m_pExitCommand;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pSaveCommand;
    std::unique_ptr<DisplayAPI::Command> m_pDialCommand;
    std::unique_ptr<DisplayAPI::SelectionField> m_pOptionsField;
    DirectoryFields m_fields;
    std::unique_ptr<DisplayAPI::Form> m_pForm;
};
