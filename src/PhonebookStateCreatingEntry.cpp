#include "PhonebookStateCreatingEntry.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <framework/csta/CSTARequests.h>
#include <framework/csta/CSTAServiceIfc.h>
#include <framework/display/Display.h>
#include <framework/display/Form.h>
#include <framework/display/Icons.h>
#include <framework/display/SelectionField.h>
#include <framework/display/TextField.h>
#include <framework/services/DirectoryServiceIfc.h>

#include "EventContext.h"
#include "PB_Error.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "PopupMaker.h"
#include "Toolbox.h"

using DisplayAPI::FieldIcon;
using DisplayAPI::MenuCommand;
using DisplayAPI::PopupNotification;
using DisplayAPI::SelectionField;
using DisplayAPI::TextField;
using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/PhonebookStateCreatingEntry";

constexpr int nFORM_KIND = 0;
constexpr int nNO_LIMIT = -1;
constexpr int nNOT_SHOWN = -1;

// The states of a call that keep the telephone busy.
constexpr int nFIRST_BUSY_STATE = 2;
constexpr int nLAST_BUSY_STATE = 4;

template <typename Widget>
bool is(const DisplayAPI::Displayable* pDisplayable, const std::unique_ptr<Widget>& pWidget)
{
    return pWidget && pDisplayable == pWidget.get();
}

// Characters, not bytes: every byte but those that continue a character.
int lengthOf(const std::string& text)
{
    return static_cast<int>(std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; }));
}

} // namespace

struct PhonebookStateCreatingEntry::TextKind {
    using Getter = const std::string& (PhonebookFullEntry::*)() const;
    using Setter = void (PhonebookFullEntry::*)(std::string);

    const char* label;
    const char* sizeName;
    Getter value;
    Setter set;
    FieldIcon icon;
    TextField::Type type;
};

struct PhonebookStateCreatingEntry::NumberKind {
    const char* label;
    const char* defaultNumber;
    const char* logName;
    CallPartyIdentifier::PhoneNumberIconType partyIcon;
};

const std::array<PhonebookStateCreatingEntry::TextKind, PhonebookStateCreatingEntry::nTEXTS>
    PhonebookStateCreatingEntry::nTEXT_KINDS{{
        {"last.name", "lastname", &PhonebookFullEntry::getSurname, &PhonebookFullEntry::setSurname,
         FieldIcon::None, TextField::TEXT},
        {"first.name", "firstname", &PhonebookFullEntry::getFirstname, &PhonebookFullEntry::setFirstname,
         FieldIcon::None, TextField::TEXT},
        {"business1", "business1", &PhonebookFullEntry::getOffice, &PhonebookFullEntry::setOffice,
         FieldIcon::Office, TextField::NUMBER},
        {"business2", "business2", &PhonebookFullEntry::getOffice2, &PhonebookFullEntry::setOffice2,
         FieldIcon::Office2, TextField::NUMBER},
        {"mobile", "mobile", &PhonebookFullEntry::getMobile, &PhonebookFullEntry::setMobile,
         FieldIcon::Mobile, TextField::NUMBER},
        {"private", "private", &PhonebookFullEntry::getPrivate, &PhonebookFullEntry::setPrivate,
         FieldIcon::Private, TextField::NUMBER},
        {"company", "company", &PhonebookFullEntry::getCompany, &PhonebookFullEntry::setCompany,
         FieldIcon::None, TextField::TEXT},
        {"address", "address1", &PhonebookFullEntry::getAddress, &PhonebookFullEntry::setAddress,
         FieldIcon::None, TextField::TEXT},
        {"address2", "address2", &PhonebookFullEntry::getAddress2, &PhonebookFullEntry::setAddress2,
         FieldIcon::None, TextField::TEXT},
        {"job.function", "position", &PhonebookFullEntry::getJobFunction, &PhonebookFullEntry::setJobFunction,
         FieldIcon::None, TextField::TEXT},
        {"email", "email", &PhonebookFullEntry::getEmail, &PhonebookFullEntry::setEmail, FieldIcon::None,
         TextField::EMAIL},
    }};

const std::array<PhonebookStateCreatingEntry::NumberKind, PhonebookStateCreatingEntry::nNUMBERS>
    PhonebookStateCreatingEntry::nNUMBER_KINDS{{
        {"business1", PhonebookListEntry::nOFFICE, "Bus1", CallPartyIdentifier::OFFICE},
        {"business2", PhonebookListEntry::nOFFICE2, "Bus2", CallPartyIdentifier::OFFICE2},
        {"mobile", PhonebookListEntry::nMOBILE, "Mobile", CallPartyIdentifier::MOBILE},
        {"private", PhonebookListEntry::nPRIVATE, "Private", CallPartyIdentifier::PRIVATE},
    }};

PhonebookStateCreatingEntry::PhonebookStateCreatingEntry() = default;

PhonebookStateCreatingEntry::~PhonebookStateCreatingEntry() = default;

void PhonebookStateCreatingEntry::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::enterStateEvent");
    setCallContextProvider(pContext);
    createCommands(pContext);
    createSavePopups(pContext);
    auto pLoading = m_pictures.populateImages(pContext);
    readFieldSizes(pContext);
    populateForm(pContext);
    m_pForm->setSelectedItem(m_textFields[SURNAME].get());
    showForm(pContext);
    m_pRetiredWidget = std::move(pLoading);
}

void PhonebookStateCreatingEntry::exitStateEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::exitStateEvent");
    clearCallContextProvider(pContext);
    dismissDialingPopups(pContext);
}

PhonebookStateBase* PhonebookStateCreatingEntry::backEvent(EventContext* pContext,
                                                           DisplayAPI::Command* pCommand,
                                                           DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateCreatingEntry::backEvent");
    if (is(pDisplayable, m_pSaveConfirm)) {
        m_pSaveConfirm->dismiss();
        return this;
    }
    if (!is(pDisplayable, m_pForm))
        return PhonebookStateBaseDialer::backEvent(pContext, pCommand, pDisplayable);
    copyEditedDetailsFromForm(pContext);
    if (isChanged(pContext)) {
        PB_TRACE("Changes made");
        pContext->m_pDisplay->setCurrent(m_pSaveConfirm.get());
        return this;
    }
    PB_TRACE("No changes made");
    return &pContext->m_ViewingList;
}

PhonebookStateBase* PhonebookStateCreatingEntry::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                                         DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateCreatingEntry::okEvent");
    if (is(pDisplayable, m_pForm))
        return okEventOnForm(pContext);
    PB_IGNORED("PhonebookMode::CreatingEntry - OK event on unrecognised widget");
    return this;
}

PhonebookStateBase* PhonebookStateCreatingEntry::saveEvent(EventContext* pContext, DisplayAPI::Command*,
                                                           DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateCreatingEntry::saveEvent");
    if (is(pDisplayable, m_pForm))
        save(pContext);
    return this;
}

PhonebookStateBase* PhonebookStateCreatingEntry::screenEvent(EventContext* pContext,
                                                             DisplayAPI::Command* pCommand,
                                                             DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateCreatingEntry::screenEvent");
    if (is(pDisplayable, m_pSaveNotification))
        return &pContext->m_ViewingList;
    if (is(pDisplayable, m_pErrorNotification)) {
        showForm(pContext);
        setCallContextProvider(pContext);
        return this;
    }
    if (is(pDisplayable, m_pSaveConfirm) && pCommand == m_pSaveCommand.get()) {
        m_pSaveConfirm->dismiss();
        save(pContext);
        return this;
    }
    if (is(pDisplayable, m_pSaveConfirm) && pCommand == m_pDoNotSaveCommand.get()) {
        m_EditedEntry = pContext->m_SelectedEntry;
        m_pSaveConfirm->dismiss();
        return &pContext->m_ViewingList;
    }
    return PhonebookStateBaseDialer::screenEvent(pContext, pCommand, pDisplayable);
}

PhonebookStateBase* PhonebookStateCreatingEntry::itemStateChangedEvent(EventContext*, DisplayAPI::Item* pItem)
{
    PB_TRACE("PhonebookStateCreatingEntry::itemStateChangedEvent");
    for (std::size_t number = 0; number < nNUMBERS; ++number) {
        if (pItem && pItem == m_textFields[OFFICE + number].get()) {
            rebuildDefaultNumberSelectionField(number);
            return this;
        }
    }
    PB_TRACE("Item state change on non-number field");
    return this;
}

PhonebookStateBase* PhonebookStateCreatingEntry::dialingStartedEvent(EventContext* pContext,
                                                                     std::string digits)
{
    PB_TRACE("PhonebookStateCreatingEntry::dialingStartedEvent");
    if (!digits.empty()) {
        openDialerWithDigits(pContext, digits);
        return this;
    }
    const auto number = selectedNumber();
    auto& entries = *pContext->m_pPhonebookList;
    setupPopupDialer(
        pContext, "",
        pContext->m_SelectedEntry.getDisplayName(entries.getDisplayMode(), entries.getDisplayQualifier()),
        number ? textOf(static_cast<Text>(OFFICE + *number)) : "", false);
    return this;
}

bool PhonebookStateCreatingEntry::getDialPartyDetails(CallPartyIdentifier& party, EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::getDialPartyDetails");
    const auto selected = selectedNumber();
    if (!selected || !holdsNumber(*selected))
        return false;
    // Names that are not saved yet are nobody's.
    return offerParty(party, pContext->m_SelectedEntry, textOf(static_cast<Text>(OFFICE + *selected)),
                      nNUMBER_KINDS[*selected].partyIcon);
}

PhonebookStateBase* PhonebookStateCreatingEntry::dialingStoppedEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::dialingStoppedEvent");
    dialingEnded(pContext);
    return this;
}

PhonebookStateBase* PhonebookStateCreatingEntry::stateAfterDialing(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::stateAfterDialing");
    copyEditedDetailsFromForm(pContext);
    if (isChanged(pContext))
        return this;
    return &pContext->m_ViewingList;
}

bool PhonebookStateCreatingEntry::phoneInIdleState(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::phoneInIdleState");
    if (!pContext->m_pCstaService)
        return true;
    CSTASnapshotDeviceRequest request("localDeviceID"); // the telephone's own device
    pContext->m_pCstaService->sendRequest(request);
    const auto* pSnapshot = dynamic_cast<const CSTASnapshotDeviceResponse*>(request.getResponse());
    if (request.getResponseCode() != 0 || !pSnapshot) {
        PB_ERROR("snapshot Result IS ERROR");
        return true;
    }
    for (int call = 1; call <= pSnapshot->numberOfCalls(); ++call) {
        const int state = pSnapshot->getCallState(call);
        if (state >= nFIRST_BUSY_STATE && state <= nLAST_BUSY_STATE)
            return false;
    }
    return true;
}

// --- What the form is made of ---

void PhonebookStateCreatingEntry::createCommands(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::createCommands");
    if (m_pSaveExitCommand)
        return;
    const auto text = [&](const char* key) { return TranslationInfo(key, pContext->m_pTranslator); };
    const auto command = [&](const char* key) { return std::make_unique<MenuCommand>(text(key)); };
    m_pExitNoSaveCommand = command("exit.no.save");
    for (std::size_t number = 0; number < nNUMBERS; ++number)
        m_numberCommands[number] = command(nNUMBER_KINDS[number].label);
    m_pNoneCommand = command("no.default");
    m_pNoGroupCommand = command("no.group");
    m_pLostGroupCommand = command("no.group");
    m_pDialCommand = std::make_unique<DisplayAPI::Command>(DisplayAPI::Command::OK, text("dial"));
    m_pSaveCommand = command("save");
    m_pDoNotSaveCommand = command("do.not.save");
    m_pSaveExitCommand = command("save.exit");
}

void PhonebookStateCreatingEntry::createSavePopups(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::createSavePopups");
    if (m_pErrorNotification)
        return;
    m_pSaveConfirm =
        PopupMaker::warning(pContext, TranslationInfo("save.changes.prompt", pContext->m_pTranslator),
                            {m_pSaveCommand.get(), m_pDoNotSaveCommand.get()});
    m_pSaveNotification = PopupMaker::notification(pContext, PopupNotification::SUCCESS);
    m_pSaveNotification->setText(TranslationInfo("changes.saved", pContext->m_pTranslator));
    m_pErrorNotification = PopupMaker::notification(pContext, PopupNotification::ERROR);
}

void PhonebookStateCreatingEntry::readFieldSizes(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::readFieldSizes");
    if (!m_fieldSizes.empty())
        return;
    auto* pDirectory = pContext->m_pDirectoryService;
    if (!pDirectory || !Serializer::deserialize(pDirectory->getFieldSizes(), m_fieldSizes))
        PB_ERROR("Phonebook couldn't get the field lengths from DirectoryService\n");
}

// --- Filling the form ---

void PhonebookStateCreatingEntry::populateForm(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::populateForm");
    if (!m_pForm) {
        m_pForm = std::make_unique<DisplayAPI::Form>(nFORM_KIND);
        m_pForm->setCommandListener(pContext->m_pListener);
        m_pForm->setItemStateListener(pContext->m_pListener);
    }
    const bool isNew = pContext->m_SelectedEntry.getUniqueId().empty();
    m_pForm->setTitle(TranslationInfo(isNew ? "new.contact" : "details", pContext->m_pTranslator));
    populateOptions(pContext);
    appendTextFields(pContext, SURNAME, PRIVATE);
    populateDefaultNumber(pContext);
    appendTextFields(pContext, COMPANY, EMAIL);
    populateGroups(pContext);
    m_pictures.offer(pContext, appendSelectionField(pContext, m_pPictureField, "picture"),
                     pContext->m_SelectedEntry.getPicture());
}

void PhonebookStateCreatingEntry::appendTextFields(EventContext* pContext, Text first, Text last)
{
    PB_TRACE("PhonebookStateCreatingEntry::appendTextFields");
    for (std::size_t text = first; text <= last; ++text)
        appendTextField(pContext, static_cast<Text>(text));
}

void PhonebookStateCreatingEntry::appendTextField(EventContext* pContext, Text text)
{
    PB_TRACE("PhonebookStateCreatingEntry::appendTextField");
    const auto& kind = nTEXT_KINDS[text];
    auto& pField = m_textFields[text];
    if (!pField) {
        pField = std::make_unique<TextField>(TranslationInfo(kind.label, pContext->m_pTranslator));
        pField->setIcon(static_cast<int>(kind.icon));
        pField->setFieldType(kind.type);
        m_pForm->append(pField.get());
    }
    const auto& value = (pContext->m_SelectedEntry.*kind.value)();
    pField->setString(value);
    const int size = Toolbox::getFieldSizeFromVector(m_fieldSizes, kind.sizeName);
    // A size below 1 is no size: nothing could be typed.
    pField->setMaxLength(static_cast<unsigned>(size < 1 ? nNO_LIMIT : std::max(size, lengthOf(value))));
    const bool dials = kind.type == TextField::NUMBER && !value.empty();
    pField->setOkCommand(dials ? m_pDialCommand.get() : nullptr);
    if (text == PRIVATE)
        pField->setNotifyOnOk(dials);
}

SelectionField& PhonebookStateCreatingEntry::appendSelectionField(EventContext* pContext,
                                                                  std::unique_ptr<SelectionField>& pField,
                                                                  const char* key)
{
    PB_TRACE("PhonebookStateCreatingEntry::appendSelectionField");
    if (!pField) {
        pField = std::make_unique<SelectionField>(TranslationInfo(key, pContext->m_pTranslator));
        pField->setNotifyOnOk(true);
        m_pForm->append(pField.get());
    }
    return *pField;
}

void PhonebookStateCreatingEntry::populateOptions(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::populateOptions");
    auto& field = appendSelectionField(pContext, m_pOptionsField, "form.options");
    field.clear(m_pSaveExitCommand.get());
    field.append(m_pSaveExitCommand.get());
    field.append(m_pExitNoSaveCommand.get());
}

void PhonebookStateCreatingEntry::populateDefaultNumber(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::populateDefaultNumber");
    appendSelectionField(pContext, m_pDefaultNumberField, "default.no");
    auto* pDefault = m_pNoneCommand.get();
    for (std::size_t number = 0; number < nNUMBERS; ++number) {
        if (pContext->m_SelectedEntry.getDefaultNumber() == nNUMBER_KINDS[number].defaultNumber)
            pDefault = m_numberCommands[number].get();
    }
    offerNumbers(pDefault);
}

void PhonebookStateCreatingEntry::populateGroups(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::populateGroups");
    auto& field = appendSelectionField(pContext, m_pGroupField, "groups.form");
    const int current = pContext->m_SelectedEntry.getGroupIndex();
    // A group that cannot be shown is kept as long as the user chooses no other.
    field.clear(current == 0 ? m_pNoGroupCommand.get() : m_pLostGroupCommand.get());
    field.append(m_pNoGroupCommand.get());
    m_groupCommands.clear();
    const auto* pGroups = pContext->m_pGroupList.get();
    PhonebookGroup group;
    for (int named = 0; pGroups && pGroups->getGroup(pGroups->slotOfNamedGroup(named) + 1, group); ++named) {
        auto& pCommand =
            m_groupCommands.emplace_back(std::make_unique<MenuCommand>(groupText(pContext, group)));
        field.append(pCommand.get());
        if (group.getId() == current)
            field.setSelectedCommand(pCommand.get());
    }
}

// --- The default number ---

void PhonebookStateCreatingEntry::rebuildDefaultNumberSelectionField(std::size_t changedNumber)
{
    PB_TRACE("PhonebookStateCreatingEntry::rebuildDefaultNumberSelectionField");
    auto* pDefault = m_pDefaultNumberField->getSelectedCommand();
    const bool isNone = !pDefault || pDefault == m_pNoneCommand.get();
    const bool wasEmptied = pDefault == m_numberCommands[changedNumber].get() && !holdsNumber(changedNumber);
    offerNumbers(isNone || wasEmptied ? getNewDefaultNumberCommand() : pDefault);
}

MenuCommand* PhonebookStateCreatingEntry::getNewDefaultNumberCommand()
{
    PB_TRACE("PhonebookStateCreatingEntry::getNewDefaultNumberCommand");
    for (std::size_t number = 0; number < nNUMBERS; ++number) {
        if (!holdsNumber(number))
            continue;
        auto* pCommand = m_numberCommands[number].get();
        PB_TRACE("Default is now %s: %x", nNUMBER_KINDS[number].logName,
                 static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(pCommand)));
        return pCommand;
    }
    return m_pNoneCommand.get();
}

void PhonebookStateCreatingEntry::offerNumbers(MenuCommand* pDefault)
{
    PB_TRACE("PhonebookStateCreatingEntry::offerNumbers");
    auto& field = *m_pDefaultNumberField;
    field.clear(pDefault);
    bool hasNumber = false;
    for (std::size_t number = 0; number < nNUMBERS; ++number) {
        if (!holdsNumber(number))
            continue;
        field.append(m_numberCommands[number].get());
        hasNumber = true;
    }
    if (hasNumber)
        return;
    field.append(m_pNoneCommand.get());
    field.setSelectedIndex(0);
}

// --- Reading the form ---

void PhonebookStateCreatingEntry::copyEditedDetailsFromForm(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::copyEditedDetailsFromForm");
    m_EditedEntry.setBlank();
    m_EditedEntry.setUniqueId(pContext->m_SelectedEntry.getUniqueId());
    m_EditedEntry.setExternalId(pContext->m_SelectedEntry.getExternalId());
    for (std::size_t text = 0; text < nTEXTS; ++text)
        (m_EditedEntry.*nTEXT_KINDS[text].set)(textOf(static_cast<Text>(text)));
    if (m_pGroupField->getSelectedCommand() == m_pLostGroupCommand.get())
        m_EditedEntry.setGroup(pContext->m_SelectedEntry.getGroup());
    else
        m_EditedEntry.setGroupIndex(chosenGroup(pContext));
    m_EditedEntry.setDefaultNumber(chosenDefaultNumber());
    m_EditedEntry.setPicture(m_pictures.selected(pContext, *m_pPictureField));
}

std::string PhonebookStateCreatingEntry::textOf(Text text) const
{
    PB_TRACE("PhonebookStateCreatingEntry::textOf");
    return Toolbox::removeLeadingAndTrailingSpaces(m_textFields[text]->getString());
}

int PhonebookStateCreatingEntry::chosenGroup(EventContext* pContext) const
{
    PB_TRACE("PhonebookStateCreatingEntry::chosenGroup");
    const int choice = m_pGroupField->getSelectedIndex();
    if (choice < 1 || !pContext->m_pGroupList)
        return 0;
    return pContext->m_pGroupList->slotOfNamedGroup(choice - 1) + 1;
}

const char* PhonebookStateCreatingEntry::chosenDefaultNumber() const
{
    PB_TRACE("PhonebookStateCreatingEntry::chosenDefaultNumber");
    const auto* pChosen = m_pDefaultNumberField->getSelectedCommand();
    for (std::size_t number = 0; number < nNUMBERS; ++number) {
        if (pChosen == m_numberCommands[number].get())
            return nNUMBER_KINDS[number].defaultNumber;
    }
    return PhonebookListEntry::nNONE;
}

bool PhonebookStateCreatingEntry::isChanged(EventContext* pContext) const
{
    PB_TRACE("PhonebookStateCreatingEntry::isChanged");
    return m_EditedEntry != pContext->m_SelectedEntry;
}

// --- Saving ---

void PhonebookStateCreatingEntry::save(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::save");
    copyEditedDetailsFromForm(pContext);
    const int code = saveEntry(pContext);
    if (code == PB_Error::SUCCESS) {
        m_pOptionsField->setSelectedCommand(m_pSaveExitCommand.get());
        pContext->m_pDisplay->setCurrent(m_pSaveNotification.get());
        return;
    }
    if (code == PB_Error::NAME)
        m_pForm->setSelectedItem(m_textFields[SURNAME].get());
    const auto key = PB_Error::getErrorTxt(static_cast<PB_Error::ErrorCode>(code));
    m_pErrorNotification->setText(TranslationInfo(key, pContext->m_pTranslator));
    pContext->m_pDisplay->setCurrent(m_pErrorNotification.get());
}

int PhonebookStateCreatingEntry::saveEntry(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::saveEntry");
    auto& entries = *pContext->m_pPhonebookList;
    const bool wasEmpty = entries.size() == 0;
    const int refusal = m_EditedEntry.validateEntry();
    clearCallContextProvider(pContext);
    if (refusal != PB_Error::SUCCESS)
        return refusal;

    int newIndex = nNOT_SHOWN;
    const int oldIndex = pContext->m_SelectedEntryIndex;
    const bool isEdit = !pContext->m_SelectedEntry.getUniqueId().empty();
    const int result = isEdit ? entries.updateEntry(&m_EditedEntry, newIndex, oldIndex)
                              : entries.addEntry(&m_EditedEntry, newIndex);
    if (result != PB_Error::SUCCESS)
        return result;

    if (isEdit)
        pContext->m_pDisplayList->remove(static_cast<int>(
            Toolbox::phonebookToDisplayIndex(static_cast<unsigned>(oldIndex), pContext->m_HasSoftKeyBar)));
    if (newIndex >= 0)
        showSavedEntry(pContext, newIndex, wasEmpty);
    return PB_Error::SUCCESS;
}

void PhonebookStateCreatingEntry::showSavedEntry(EventContext* pContext, int index, bool isFirst)
{
    PB_TRACE("PhonebookStateCreatingEntry::showSavedEntry");
    const auto entry = pContext->m_pPhonebookList->elementAt(static_cast<unsigned>(index));
    pContext->m_SelectedEntryIndex = index;
    m_EditedEntry.setUniqueId(entry.getUniqueId());
    pContext->m_SelectedEntry = m_EditedEntry;

    const int row = static_cast<int>(
        Toolbox::phonebookToDisplayIndex(static_cast<unsigned>(index), pContext->m_HasSoftKeyBar));
    insertRow(pContext, entry, row, isFirst);
}

void PhonebookStateCreatingEntry::showForm(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::showForm");
    pContext->m_pDisplay->setCurrent(m_pForm.get());
}

// --- OK ---

bool PhonebookStateCreatingEntry::holdsNumber(std::size_t number) const
{
    PB_TRACE("PhonebookStateCreatingEntry::holdsNumber");
    return !m_textFields[OFFICE + number]->getString().empty();
}

std::optional<std::size_t> PhonebookStateCreatingEntry::selectedNumber() const
{
    PB_TRACE("PhonebookStateCreatingEntry::selectedNumber");
    const auto* pSelected = m_pForm ? m_pForm->getSelectedItem() : nullptr;
    for (std::size_t number = 0; pSelected && number < nNUMBERS; ++number) {
        if (pSelected == m_textFields[OFFICE + number].get())
            return number;
    }
    return std::nullopt;
}

PhonebookStateBase* PhonebookStateCreatingEntry::okEventOnForm(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::okEventOnForm");
    if (m_pForm->getSelectedItem() == m_pOptionsField.get())
        return optionChosen(pContext);
    const auto number = selectedNumber();
    if (!number) {
        PB_IGNORED("PhonebookMode::CreatingEntry - OK event on unrecognised widget");
        return this;
    }
    if (pContext->getCallRequestInitiated()) {
        PB_IGNORED("okEventOnForm received when call already initiated - ignore");
        return this;
    }
    if (!placeCall(pContext, textOf(static_cast<Text>(OFFICE + *number))))
        return this;
    return stateAfterDialing(pContext);
}

PhonebookStateBase* PhonebookStateCreatingEntry::optionChosen(EventContext* pContext)
{
    PB_TRACE("PhonebookStateCreatingEntry::optionChosen");
    const auto* pChosen = m_pOptionsField->getSelectedCommand();
    if (pChosen == m_pSaveExitCommand.get()) {
        save(pContext);
        return this;
    }
    if (pChosen == m_pExitNoSaveCommand.get())
        return &pContext->m_ViewingList;
    PB_IGNORED("PhonebookMode::CreatingEntry - unrecognised command on options selection field");
    return this;
}
