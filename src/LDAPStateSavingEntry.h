// Copies the context's entry of the corporate directory into the local phonebook, unless the phonebook
// holds it already, and says what became of it. Back to the directory's list when the message goes.

#pragma once

#include <memory>
#include <string>

#include "PhonebookFullEntry.h"
#include "PhonebookStateBase.h"

namespace DisplayAPI {
class PopupNotification;
class PopupProgress;
} // namespace DisplayAPI

class LDAPStateSavingEntry final : public PhonebookStateBase {
public:
    LDAPStateSavingEntry();

    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override;
    virtual ~LDAPStateSavingEntry();

    // Creates the popups that are missing.
    void constructSavePopups(EventContext* pContext);
    // 0, or a PB_Error code, with the error popup's text set. Needs the popups.
    int saveEntry(EventContext* pContext);
    // Whether the local phonebook holds the same data already, apart from the e-mail address and what
    // the directory does not have. True also when a local entry of that surname cannot be read.
    bool checkLdapEntryInPhonebook(EventContext* pContext);

    // Null before constructSavePopups().
    DisplayAPI::PopupProgress* getSavingChangesPopup() const;
    DisplayAPI::PopupNotification* getSaveNotificationPopup() const;
    DisplayAPI::PopupNotification* getErrorNotificationPopup() const;

private:
    // The entry is row `index` of the local phonebook now.
    void showSavedEntry(EventContext* pContext, int index, bool isFirst);
    // Returns the code.
    int saveFailed(EventContext* pContext, int code);
    void setErrorText(EventContext* pContext, const std::string& key);
    // Logs the first difference.
    static bool isSame(const PhonebookFullEntry& local, const PhonebookFullEntry& ldap);

    std::unique_ptr<DisplayAPI::PopupProgress> m_pSavingChangesPopup;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pSaveNotificationPopup;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pErrorNotificationPopup;
};
