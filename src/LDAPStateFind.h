// The corporate directory's search form: a field for each attribute. A search takes every field that
// is filled, as it was typed; what is found is shown in the list.
//
// The fields keep their texts between visits.

#pragma once

#include <memory>

#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/PhonebookSearchCriteria.h>

#include "DirectoryFields.h"
#include "PhonebookStateBase.h"
#include "SearchPopups.h"

namespace DisplayAPI {
class Form;
class MenuCommand;
class PopupNotification;
class SelectionField;
} // namespace DisplayAPI

class LDAPStateFind final : public PhonebookStateBase {
public:
    LDAPStateFind();

    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                  DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* okEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* itemStateChangedEvent(EventContext* pContext, DisplayAPI::Item* pItem) override;
    virtual ~LDAPStateFind();

    // Empties the fields, also out of sight.
    void clearForm(EventContext* pContext);

private:
    void constructMenuCommands(EventContext* pContext);
    void populateForm(EventContext* pContext);
    void constructPopups(EventContext* pContext);
    void setFormAsCurrentDisplay(EventContext* pContext);
    bool isForm(const DisplayAPI::Displayable* pDisplayable) const;

    PhonebookStateBase* okEventOnForm(EventContext* pContext);
    PhonebookStateBase* handleFindOptions(EventContext* pContext);
    // The list when there are rows to show, also when they are not all.
    PhonebookStateBase* findLdapEntries(EventContext* pContext);
    AttributeList filledFields() const;
    DirectoryStatus search(EventContext* pContext, AttributeList attributes);
    void replaceDisplayList(EventContext* pContext);

    // Fields point at commands, the form at fields: declared after them, gone before them.
    std::unique_ptr<DisplayAPI::MenuCommand> m_pFind;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pClear;
    std::unique_ptr<DisplayAPI::MenuCommand> m_pExit;
    std::unique_ptr<DisplayAPI::SelectionField> m_pOptionsField;
    DirectoryFields m_fields;
    std::unique_ptr<DisplayAPI::Form> m_pForm;
    SearchPopups m_popups;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pNoCriteria;
};
