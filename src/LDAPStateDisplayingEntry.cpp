#include "LDAPStateDisplayingEntry.h"

#include <array>
#include <utility>

#include <framework/display/Display.h>
#include <framework/display/Form.h>
#include <framework/display/Icons.h>
#include <framework/display/SelectionField.h>
#include <framework/display/TextField.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"

using DisplayAPI::MenuCommand;
using DisplayAPI::SelectionField;
using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/LDAPStateDisplayingEntry";

constexpr int nFORM_KIND = 0;

using Getter = const std::string& (PhonebookFullEntry::*)() const;

constexpr std::array<Getter, DirectoryFields::nFIELDS> nVALUES{
    &PhonebookFullEntry::getSurname,     &PhonebookFullEntry::getFirstname, &PhonebookFullEntry::getOffice,
    &PhonebookFullEntry::getOffice2,     &PhonebookFullEntry::getMobile,    &PhonebookFullEntry::getPrivate,
    &PhonebookFullEntry::getCompany,     &PhonebookFullEntry::getAddress,   &PhonebookFullEntry::getAddress2,
    &PhonebookFullEntry::getJobFunction, &PhonebookFullEntry::getEmail,
};

// None for a field that is no number.
CallPartyIdentifier::PhoneNumberIconType partyIcon(DirectoryFields::Field field)
{
    switch (field) {
    case DirectoryFields::OFFICE:
        return CallPartyIdentifier::OFFICE;
    case DirectoryFields::OFFICE2:
        return CallPartyIdentifier::OFFICE2;
    case DirectoryFields::MOBILE:
        return CallPartyIdentifier::MOBILE;
    case DirectoryFields::PRIVATE:
        return CallPartyIdentifier::PRIVATE;
    default:
        return CallPartyIdentifier::NONE;
    }
}

} // namespace

LDAPStateDisplayingEntry::LDAPStateDisplayingEntry() = default;

LDAPStateDisplayingEntry::~LDAPStateDisplayingEntry() = default;

void LDAPStateDisplayingEntry::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayingEntry::enterStateEvent()");
    setCallContextProvider(pContext);
    populateForm(pContext);
    constructMenuCommands(pContext);
    setFormAsCurrentDisplay(pContext);
}

void LDAPStateDisplayingEntry::exitStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayingEntry::exitStateEvent()");
    clearCallContextProvider(pContext);
    dismissDialingPopups(pContext);
}

PhonebookStateBase* LDAPStateDisplayingEntry::backEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                                        DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateDisplayingEntry::backEvent()");
    if (isDialingPopup(pContext, pDisplayable))
        return PhonebookStateBaseDialer::backEvent(pContext, pCommand, pDisplayable);
    return &pContext->m_LdapViewingList;
}

PhonebookStateBase* LDAPStateDisplayingEntry::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                                      DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateDisplayingEntry::okEvent()");
    if (!m_pForm || pDisplayable != m_pForm.get()) {
        PB_IGNORED("LDAPStateDisplayingEntry::okEvent - ok event on unrecognised widget");
        return this;
    }
    if (m_pForm->getSelectedItem() == m_pOptionsField.get())
        return &pContext->m_LdapViewingList;
    std::string number;
    auto icon = CallPartyIdentifier::NONE;
    getSelectedNumberAndIcon(number, icon);
    if (pContext->getCallRequestInitiated()) {
        PB_IGNORED("okEvent received when call already initiated - ignore");
        return this;
    }
    if (!placeCall(pContext, number))
        return this;
    return stateAfterDialing(pContext);
}

PhonebookStateBase* LDAPStateDisplayingEntry::rightEvent(EventContext* pContext,
                                                         DisplayAPI::Command* pCommand,
                                                         DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateDisplayingEntry::rightEvent()");
    return PhonebookStateBaseDialer::rightEvent(pContext, pCommand, pDisplayable);
}

PhonebookStateBase* LDAPStateDisplayingEntry::saveEvent(EventContext* pContext, DisplayAPI::Command*,
                                                        DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateDisplayingEntry::saveEvent()");
    if (!m_pForm || pDisplayable != m_pForm.get())
        return this;
    return &pContext->m_LdapSavingEntry;
}

PhonebookStateBase* LDAPStateDisplayingEntry::itemStateChangedEvent(EventContext* pContext,
                                                                    DisplayAPI::Item* pItem)
{
    PB_TRACE("LDAPStateDisplayingEntry::itemStateChangedEvent()");
    if (!pItem || pItem != m_pOptionsField.get()) {
        PB_IGNORED("Item state change on unknown field");
        return this;
    }
    const auto* pChosen = m_pOptionsField->getSelectedCommand();
    if (pChosen == m_pSaveCommand.get())
        return &pContext->m_LdapSavingEntry;
    if (pChosen == m_pExitCommand.get())
        return &pContext->m_LdapViewingList;
    // Log readers match this text; its class name is part of it.
    PB_IGNORED("PhonebookMode::CreatingEntry - unrecognised command on options selection field");
    return this;
}

PhonebookStateBase* LDAPStateDisplayingEntry::dialingStartedEvent(EventContext* pContext, std::string digits)
{
    PB_TRACE("LDAPStateDisplayingEntry::dialingStartedEvent()");
    if (!digits.empty()) {
        openDialerWithDigits(pContext, digits);
        return this;
    }
    std::string number;
    auto icon = CallPartyIdentifier::NONE;
    getSelectedNumberAndIcon(number, icon);
    auto& entries = *pContext->m_pLdapPhonebookList;
    const auto name =
        pContext->m_LdapEntry.getDisplayName(entries.getDisplayMode(), entries.getDisplayQualifier());
    setupPopupDialer(pContext, "", name, number, false);
    return this;
}

bool LDAPStateDisplayingEntry::getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayingEntry::getDialPartyDetails()");
    std::string number;
    auto icon = CallPartyIdentifier::NONE;
    getSelectedNumberAndIcon(number, icon);
    return offerParty(party, pContext->m_LdapEntry, number, icon);
}

PhonebookStateBase* LDAPStateDisplayingEntry::dialingStoppedEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayingEntry::dialingStoppedEvent()");
    dialingEnded(pContext);
    return this;
}

PhonebookStateBase* LDAPStateDisplayingEntry::stateAfterDialing(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayingEntry::stateAfterDialing()");
    return &pContext->m_LdapViewingList;
}

void LDAPStateDisplayingEntry::getSelectedNumberAndIcon(std::string& number,
                                                        CallPartyIdentifier::PhoneNumberIconType& icon) const
{
    PB_TRACE("LDAPStateDisplayingEntry::getSelectedNumberAndIcon()");
    number.clear();
    icon = CallPartyIdentifier::NONE;
    if (!m_pForm) {
        PB_TRACE("LDAPStateDisplayingEntry::getSelectedNumberAndIcon - form not created yet");
        return;
    }
    const auto field = m_fields.fieldOf(m_pForm->getSelectedItem());
    icon = partyIcon(field);
    if (icon == CallPartyIdentifier::NONE) {
        PB_TRACE("LDAPStateDisplayingEntry::getSelectedNumberAndIcon - no selected item");
        return;
    }
    number = m_fields[field].getString();
}

DisplayAPI::Command* LDAPStateDisplayingEntry::getDialCommand() const
{
    PB_TRACE("LDAPStateDisplayingEntry::getDialCommand()");
    return m_pDialCommand.get();
}

void LDAPStateDisplayingEntry::populateForm(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayingEntry::populateForm()");
    if (!m_pForm)
        createForm(pContext);
    for (std::size_t field = 0; field < DirectoryFields::nFIELDS; ++field) {
        m_fields[field].setString((pContext->m_LdapEntry.*nVALUES[field])());
        m_fields[field].setReadOnly(true);
    }
    m_pForm->setSelectedItem(&m_fields[DirectoryFields::SURNAME]);
}

void LDAPStateDisplayingEntry::createForm(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayingEntry::createForm()");
    m_pForm = std::make_unique<DisplayAPI::Form>(nFORM_KIND);
    m_pForm->setCommandListener(pContext->m_pListener);
    m_pForm->setItemStateListener(pContext->m_pListener);
    m_pForm->setTitle(TranslationInfo("details", pContext->m_pTranslator));
    m_pOptionsField =
        std::make_unique<SelectionField>(TranslationInfo("form.options", pContext->m_pTranslator));
    // Chosen with OK, an option arrives as an item event: an OK event on this field only leaves.
    m_pOptionsField->setNotifyOnOk(false);
    m_pForm->append(m_pOptionsField.get());
    m_fields.appendTo(pContext, *m_pForm);
}

void LDAPStateDisplayingEntry::constructMenuCommands(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayingEntry::constructMenuCommands()");
    if (!m_pDialCommand) {
        const auto text = [&](const char* key) { return TranslationInfo(key, pContext->m_pTranslator); };
        m_pExitCommand =
            std::make_unique<MenuCommand>(text("exit"), static_cast<int>(DisplayAPI::DisplayIcon::None));
        m_pSaveCommand = std::make_unique<MenuCommand>(text("ldap.save.entry.prompt"));
        m_pDialCommand = std::make_unique<DisplayAPI::Command>(DisplayAPI::Command::OK, text("dial"));
        m_pOptionsField->append(m_pExitCommand.get());
        m_pOptionsField->append(m_pSaveCommand.get());
    }
    m_pOptionsField->setSelectedCommand(m_pExitCommand.get());
    for (std::size_t field = 0; field < DirectoryFields::nFIELDS; ++field) {
        const bool isNumber =
            partyIcon(static_cast<DirectoryFields::Field>(field)) != CallPartyIdentifier::NONE;
        const bool dials = isNumber && !m_fields[field].getString().empty();
        m_fields[field].setOkCommand(dials ? getDialCommand() : nullptr);
        // Elsewhere OK would dial nothing, and say so.
        m_fields[field].setNotifyOnOk(dials);
    }
}

void LDAPStateDisplayingEntry::setFormAsCurrentDisplay(EventContext* pContext)
{
    PB_TRACE("LDAPStateDisplayingEntry::setFormAsCurrentDisplay()");
    pContext->m_pDisplay->setCurrent(m_pForm.get());
}
