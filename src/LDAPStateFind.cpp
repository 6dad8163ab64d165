#include "LDAPStateFind.h"

#include <array>
#include <chrono>
#include <utility>

#include <framework/PhoneletContext.h>
#include <framework/display/Display.h>
#include <framework/display/Form.h>
#include <framework/display/PopupProgress.h>
#include <framework/display/SelectionField.h>
#include <framework/display/TextField.h>
#include <framework/services/Utils.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "PopupMaker.h"
#include "ShownProgress.h"

using DisplayAPI::MenuCommand;
using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/LDAPStateFind";

constexpr int nFORM_KIND = 0;
// How long the list waits behind the message that it does not hold everything.
constexpr std::chrono::microseconds nREADING_TIME{2'000'000};

// By DirectoryFields::Field.
const std::array<const std::string*, DirectoryFields::nFIELDS> nATTRIBUTES{
    &Utils::SURNAME,  &Utils::FIRSTNAME,   &Utils::OFFICE,  &Utils::OFFICE2,
    &Utils::MOBILE,   &Utils::PRIVATE,     &Utils::COMPANY, &Utils::ADDRESS1,
    &Utils::ADDRESS2, &Utils::JOBFUNCTION, &Utils::EMAIL};

} // namespace

LDAPStateFind::LDAPStateFind() = default;

LDAPStateFind::~LDAPStateFind() = default;

void LDAPStateFind::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::enterStateEvent()");
    constructMenuCommands(pContext);
    populateForm(pContext);
    constructPopups(pContext);
    setFormAsCurrentDisplay(pContext);
}

void LDAPStateFind::exitStateEvent(EventContext*)
{
    PB_TRACE("LDAPStateFind::exitStateEvent()");
}

PhonebookStateBase* LDAPStateFind::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                             DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateFind::backEvent()");
    if (isForm(pDisplayable))
        return &pContext->m_LdapViewingList;
    PB_IGNORED("LDAPStateFind::backEvent - back event on unrecognised widget");
    return this;
}

PhonebookStateBase* LDAPStateFind::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                           DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateFind::okEvent()");
    if (isForm(pDisplayable))
        return okEventOnForm(pContext);
    PB_IGNORED("LDAPStateFind::okEvent - ok event on unrecognised widget");
    return this;
}

PhonebookStateBase* LDAPStateFind::screenEvent(EventContext*, DisplayAPI::Command*,
                                               DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("LDAPStateFind::screenEvent()");
    // The form stands below both messages: nothing follows when one goes.
    if (!pDisplayable || (pDisplayable != m_popups.result() && pDisplayable != m_pNoCriteria.get()))
        PB_IGNORED("LDAPStateFind::screenEvent - unrecognised widget");
    return this;
}

PhonebookStateBase* LDAPStateFind::itemStateChangedEvent(EventContext* pContext, DisplayAPI::Item* pItem)
{
    PB_TRACE("LDAPStateFind::itemStateChangedEvent()");
    // The text fields report every letter.
    if (!pItem || pItem != m_pOptionsField.get())
        return this;
    return handleFindOptions(pContext);
}

void LDAPStateFind::clearForm(EventContext*)
{
    PB_TRACE("LDAPStateFind::clearForm()");
    if (!m_pForm)
        return;
    for (std::size_t field = 0; field < DirectoryFields::nFIELDS; ++field)
        m_fields[field].setString("");
}

// --- The form ---

void LDAPStateFind::constructMenuCommands(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::constructMenuCommands()");
    if (m_pFind)
        return;
    const auto make = [pContext](const char* key) {
        return std::make_unique<MenuCommand>(TranslationInfo(key, pContext->m_pTranslator));
    };
    m_pClear = make("clear");
    m_pExit = make("exit");
    m_pFind = make("find");
}

void LDAPStateFind::populateForm(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::populateForm()");
    if (m_pForm)
        return;
    auto* pTranslator = pContext->m_pTranslator;
    m_pOptionsField =
        std::make_unique<DisplayAPI::SelectionField>(TranslationInfo("find.options", pTranslator));
    for (auto* pCommand : {m_pFind.get(), m_pClear.get(), m_pExit.get()})
        m_pOptionsField->append(pCommand);
    m_pForm = std::make_unique<DisplayAPI::Form>(nFORM_KIND);
    m_pForm->setTitle(TranslationInfo("advanced.find", pTranslator));
    m_pForm->setOffersSave(false);
    m_pForm->setCommandListener(pContext->m_pListener);
    m_pForm->setItemStateListener(pContext->m_pListener);
    m_pForm->append(m_pOptionsField.get());
    m_fields.appendTo(pContext, *m_pForm);
}

void LDAPStateFind::constructPopups(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::constructPopups()");
    m_popups.construct(pContext);
    if (m_pNoCriteria)
        return;
    m_pNoCriteria = PopupMaker::notification(pContext, DisplayAPI::PopupNotification::ERROR);
    m_pNoCriteria->setText(TranslationInfo("no.find.criteria", pContext->m_pTranslator));
}

void LDAPStateFind::setFormAsCurrentDisplay(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::setFormAsCurrentDisplay()");
    // The user begins by typing, and searches by OK on the options.
    m_pOptionsField->setSelectedCommand(m_pFind.get());
    m_pForm->setSelectedItem(&m_fields[DirectoryFields::SURNAME]);
    pContext->m_pDisplay->setCurrent(m_pForm.get());
}

bool LDAPStateFind::isForm(const DisplayAPI::Displayable* pDisplayable) const
{
    PB_TRACE("LDAPStateFind::isForm()");
    return m_pForm && pDisplayable == m_pForm.get();
}

// --- The options ---

PhonebookStateBase* LDAPStateFind::okEventOnForm(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::okEventOnForm()");
    if (m_pForm->getSelectedItem() != m_pOptionsField.get())
        return this;
    return handleFindOptions(pContext);
}

PhonebookStateBase* LDAPStateFind::handleFindOptions(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::handleFindOptions()");
    const auto* pChosen = m_pOptionsField->getSelectedCommand();
    if (pChosen == m_pFind.get())
        return findLdapEntries(pContext);
    if (pChosen == m_pExit.get())
        return &pContext->m_LdapViewingList;
    clearForm(pContext);
    m_pOptionsField->setSelectedCommand(m_pFind.get());
    return this;
}

// --- The search ---

PhonebookStateBase* LDAPStateFind::findLdapEntries(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::findLdapEntries()");
    auto attributes = filledFields();
    if (attributes.empty()) {
        pContext->m_pDisplay->setCurrent(m_pNoCriteria.get());
        return this;
    }
    const auto status = search(pContext, std::move(attributes));
    m_popups.showResult(pContext, status);
    if (status != DIRECTORY_SUCCESS && status != DIRECTORY_TOO_MANY_MATCHES)
        return this;
    if (status == DIRECTORY_TOO_MANY_MATCHES)
        pContext->m_pPhoneletContext->sleep(nREADING_TIME);
    return &pContext->m_LdapViewingList;
}

AttributeList LDAPStateFind::filledFields() const
{
    PB_TRACE("LDAPStateFind::filledFields()");
    AttributeList attributes;
    for (std::size_t field = 0; field < DirectoryFields::nFIELDS; ++field) {
        const auto text = m_fields[field].getString();
        if (!text.empty())
            attributes.emplace_back(*nATTRIBUTES[field], text);
    }
    return attributes;
}

DirectoryStatus LDAPStateFind::search(EventContext* pContext, AttributeList attributes)
{
    PB_TRACE("LDAPStateFind::search()");
    const ShownProgress progress(pContext, *m_popups.progress());
    auto& entries = *pContext->m_pLdapPhonebookList;
    PhonebookSearchCriteria criteria(std::move(attributes), "", true);
    const auto status = static_cast<DirectoryStatus>(entries.populate(criteria, false));
    entries.convertToCanonical();
    // Otherwise the rows on the screen are still those of the list.
    if (status == DIRECTORY_SUCCESS || status == DIRECTORY_TOO_MANY_MATCHES)
        replaceDisplayList(pContext);
    return status;
}

void LDAPStateFind::replaceDisplayList(EventContext* pContext)
{
    PB_TRACE("LDAPStateFind::replaceDisplayList()");
    pContext->m_pPreviousLdapDisplayList = std::move(pContext->m_pLdapDisplayList);
    pContext->reallocateLdapDisplayList(false);
    constructLdapDisplayList(pContext);
}
