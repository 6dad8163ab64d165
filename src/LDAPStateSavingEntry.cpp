#include "LDAPStateSavingEntry.h"

#include <algorithm>

#include <framework/display/Display.h>
#include <framework/display/PopupNotification.h>
#include <framework/display/PopupProgress.h>

#include "EventContext.h"
#include "PB_Error.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PopupMaker.h"
#include "Toolbox.h"

using DisplayAPI::PopupNotification;
using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/LDAPStateSavingEntry";

constexpr int nPROGRESS_KIND = 0;
constexpr int nNOT_SHOWN = -1;
constexpr unsigned nNAME_LENGTH = 30; // of a local name, in characters

// What is compared besides the names, in this order.
struct ComparedField {
    using Getter = const std::string& (PhonebookFullEntry::*)() const;

    const char* logName;
    Getter value;
};

constexpr ComparedField nCOMPARED_FIELDS[] = {
    {"office number", &PhonebookFullEntry::getOffice},   {"office number 2", &PhonebookFullEntry::getOffice2},
    {"private number", &PhonebookFullEntry::getPrivate}, {"mobile number", &PhonebookFullEntry::getMobile},
    {"company", &PhonebookFullEntry::getCompany},        {"address", &PhonebookFullEntry::getAddress},
    {"address2", &PhonebookFullEntry::getAddress2},      {"jobfunction", &PhonebookFullEntry::getJobFunction},
};

std::string cutName(const std::string& name)
{
    return Toolbox::truncateStringsProperly(name, nNAME_LENGTH);
}

bool isSameField(const char* name, const std::string& local, const std::string& ldap)
{
    if (local == ldap)
        return true;
    PB_TRACE("\n++++ LDAP entry differs from phonebook entry: ++++\n%s phonebook: %s\n%s LDAP:      %s\n",
             name, local.c_str(), name, ldap.c_str());
    return false;
}

} // namespace

LDAPStateSavingEntry::LDAPStateSavingEntry() = default;

LDAPStateSavingEntry::~LDAPStateSavingEntry() = default;

void LDAPStateSavingEntry::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateSavingEntry::enterStateEvent()");
    constructSavePopups(pContext);
    PB_TRACE("save LDAP entry into phonebook");
    const bool saved = saveEntry(pContext) == PB_Error::SUCCESS;
    pContext->m_pDisplay->setCurrent(saved ? m_pSaveNotificationPopup.get()
                                           : m_pErrorNotificationPopup.get());
}

void LDAPStateSavingEntry::exitStateEvent(EventContext*)
{
    PB_TRACE("LDAPStateSavingEntry::exitStateEvent()");
}

PhonebookStateBase* LDAPStateSavingEntry::screenEvent(EventContext* pContext, DisplayAPI::Command*,
                                                      DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateSavingEntry::screenEvent()");
    if (m_pSaveNotificationPopup && pDisplayable == m_pSaveNotificationPopup.get()) {
        PB_TRACE("LDAPStateSavingEntry::screenEvent - hidden event off popup save notification");
        return &pContext->m_LdapViewingList;
    }
    if (m_pErrorNotificationPopup && pDisplayable == m_pErrorNotificationPopup.get()) {
        PB_TRACE("LDAPStateSavingEntry::screenEvent - hidden event off popup error notification");
        return &pContext->m_LdapViewingList;
    }
    PB_IGNORED("LDAPStateSavingEntry::screenEvent - unrecognised widget");
    return this;
}

void LDAPStateSavingEntry::constructSavePopups(EventContext* pContext)
{
    PB_TRACE("LDAPStateSavingEntry::constructSavePopups()");
    if (!m_pSavingChangesPopup) {
        m_pSavingChangesPopup = PopupMaker::progress(nPROGRESS_KIND);
        m_pSavingChangesPopup->setText(TranslationInfo("saving.changes", pContext->m_pTranslator));
    }
    if (!m_pSaveNotificationPopup) {
        m_pSaveNotificationPopup = PopupMaker::notification(pContext, PopupNotification::SUCCESS);
        m_pSaveNotificationPopup->setText(TranslationInfo("ldap.entry.saved", pContext->m_pTranslator));
    }
    if (!m_pErrorNotificationPopup)
        m_pErrorNotificationPopup = PopupMaker::notification(pContext, PopupNotification::ERROR);
}

int LDAPStateSavingEntry::saveEntry(EventContext* pContext)
{
    PB_TRACE("LDAPStateSavingEntry::saveEntry()");
    auto& ldap = pContext->m_LdapEntry;
    auto& entries = *pContext->m_pPhonebookList;
    // To the local phonebook it is new, even if it was saved before.
    ldap.setUniqueId("");
    const bool wasEmpty = entries.size() == 0;
    if (const int refusal = ldap.validateEntry(); refusal != PB_Error::SUCCESS)
        return saveFailed(pContext, refusal);
    if (checkLdapEntryInPhonebook(pContext)) {
        PB_IGNORED("LDAP entry already in phonebook!");
        setErrorText(pContext, "ldap.entry.duplicate");
        return PB_Error::DB_WRITE;
    }

    PB_TRACE("new entry being created");
    int index = nNOT_SHOWN;
    const int code = entries.addEntry(&ldap, index);
    PB_TRACE("new entry has index: %d", index);
    if (code != PB_Error::SUCCESS)
        return saveFailed(pContext, code);
    if (index < 0) {
        PB_TRACE("New/modified entry has not ended up in current list - not adding to display list");
        return PB_Error::SUCCESS;
    }
    PB_TRACE("New/modified entry has ended up in current list - adding to display list");
    showSavedEntry(pContext, index, wasEmpty);
    return PB_Error::SUCCESS;
}

bool LDAPStateSavingEntry::checkLdapEntryInPhonebook(EventContext* pContext)
{
    PB_TRACE("LDAPStateSavingEntry::checkLdapEntryInPhonebook()");
    const auto& ldap = pContext->m_LdapEntry;
    auto& entries = *pContext->m_pPhonebookList;
    const unsigned size = entries.size();
    if (ldap.getSurname().empty() || size == 0)
        return false;
    const auto surname = cutName(ldap.getSurname());
    for (unsigned index = 0; index < size; ++index) {
        if (entries.elementAt(index).getSurname() != surname)
            continue;
        PB_TRACE("surname found in phonebook");
        PhonebookFullEntry local;
        if (!entries.getFullEntry(index, local)) {
            // Better not saved than saved twice.
            PB_ERROR("error reading phonebook list");
            return true;
        }
        if (isSame(local, ldap))
            return true;
    }
    PB_TRACE("no duplicate entry found in phonebook");
    return false;
}

DisplayAPI::PopupProgress* LDAPStateSavingEntry::getSavingChangesPopup() const
{
    PB_TRACE("LDAPStateSavingEntry::getSavingChangesPopup()");
    return m_pSavingChangesPopup.get();
}

PopupNotification* LDAPStateSavingEntry::getSaveNotificationPopup() const
{
    PB_TRACE("LDAPStateSavingEntry::getSaveNotificationPopup()");
    return m_pSaveNotificationPopup.get();
}

PopupNotification* LDAPStateSavingEntry::getErrorNotificationPopup() const
{
    PB_TRACE("LDAPStateSavingEntry::getErrorNotificationPopup()");
    return m_pErrorNotificationPopup.get();
}

void LDAPStateSavingEntry::showSavedEntry(EventContext* pContext, int index, bool isFirst)
{
    PB_TRACE("LDAPStateSavingEntry::showSavedEntry()");
    pContext->m_SelectedEntryIndex = index;
    const auto entry = pContext->m_pPhonebookList->elementAt(static_cast<unsigned>(index));
    PB_TRACE("unique id is: %s", entry.getUniqueId().c_str());
    pContext->m_LdapEntry.setUniqueId(entry.getUniqueId());
    pContext->m_SelectedEntry = pContext->m_LdapEntry;

    const int row = static_cast<int>(
        Toolbox::phonebookToDisplayIndex(static_cast<unsigned>(index), pContext->m_HasSoftKeyBar));
    PB_TRACE("insert entry at position %d in display list", row);
    insertRow(pContext, entry, row, isFirst);
}

int LDAPStateSavingEntry::saveFailed(EventContext* pContext, int code)
{
    PB_TRACE("LDAPStateSavingEntry::saveFailed()");
    PB_ERROR("addEntry failed!");
    const bool isOfDatabase = code == PB_Error::DB_WRITE || code == PB_Error::DB_OUT_OF_SPACE;
    setErrorText(pContext, isOfDatabase ? PB_Error::getErrorTxt(static_cast<PB_Error::ErrorCode>(code))
                                        : "ldap.entry.unable.to.add");
    return code;
}

void LDAPStateSavingEntry::setErrorText(EventContext* pContext, const std::string& key)
{
    PB_TRACE("LDAPStateSavingEntry::setErrorText()");
    m_pErrorNotificationPopup->setText(TranslationInfo(key, pContext->m_pTranslator));
}

bool LDAPStateSavingEntry::isSame(const PhonebookFullEntry& local, const PhonebookFullEntry& ldap)
{
    PB_TRACE("LDAPStateSavingEntry::isSame()");
    if (!isSameField("firstname", local.getFirstname(), cutName(ldap.getFirstname())))
        return false;
    return std::ranges::all_of(nCOMPARED_FIELDS, [&](const ComparedField& field) {
        return isSameField(field.logName, (local.*field.value)(), (ldap.*field.value)());
    });
}
