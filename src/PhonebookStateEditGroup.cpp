#include "PhonebookStateEditGroup.h"

#include <framework/display/Display.h>
#include <framework/display/Form.h>
#include <framework/display/PopupProgress.h>
#include <framework/display/SelectionField.h>
#include <framework/display/TextField.h>
#include <framework/services/DirectoryServiceIfc.h>
#include <framework/util/Serializer.h>

#include "EventContext.h"
#include "PB_Error.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "PopupMaker.h"
#include "ShownProgress.h"
#include "Toolbox.h"

using DisplayAPI::MenuCommand;
using DisplayAPI::PopupNotification;
using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/PhonebookStateEditGroup";

constexpr int nFORM_KIND = 0;
constexpr int nPROGRESS_KIND = 0;
constexpr int nNEW_GROUP = 0;
constexpr int nACCEPTED = 1;
constexpr unsigned nUNKNOWN_LENGTH = ~0U;

} // namespace

PhonebookStateEditGroup::PhonebookStateEditGroup() = default;

PhonebookStateEditGroup::~PhonebookStateEditGroup() = default;

void PhonebookStateEditGroup::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::enterStateEvent()");
    constructMenuCommands(pContext);
    constructPopups(pContext);
    constructForm(pContext);
    if (m_maxNameLength == nUNKNOWN_LENGTH)
        readMaximumLength(pContext);
    populateForm(pContext);
}

void PhonebookStateEditGroup::exitStateEvent(EventContext*)
{
    PB_TRACE("PhonebookStateEditGroup::exitStateEvent()");
    if (!m_pError)
        return; // never entered
    m_pSaveQuestion->dismiss();
    m_pSaved->dismiss();
    m_pError->dismiss();
}

PhonebookStateBase* PhonebookStateEditGroup::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                                       DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateEditGroup::backEvent()");
    if (pDisplayable == m_pSaveQuestion.get()) {
        m_pSaveQuestion->dismiss();
        m_group = m_groupBefore; // or the next Back would not ask again
        return this;
    }
    if (pDisplayable != m_pForm.get())
        return this;
    copyEditedDetailsFromForm();
    if (m_group.getName() == m_groupBefore.getName())
        return &pContext->m_ViewingGroups;
    pContext->m_pDisplay->setCurrent(m_pSaveQuestion.get());
    return this;
}

PhonebookStateBase* PhonebookStateEditGroup::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                                     DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateEditGroup::okEvent()");
    if (pDisplayable != m_pForm.get() || m_pForm->getSelectedItem() != m_pOptionField.get())
        return this;
    if (m_pOptionField->getSelectedCommand() == m_pExitNoSave.get())
        return &pContext->m_ViewingGroups;
    save(pContext);
    return this;
}

PhonebookStateBase* PhonebookStateEditGroup::saveEvent(EventContext* pContext, DisplayAPI::Command*,
                                                       DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateEditGroup::saveEvent()");
    if (pDisplayable == m_pForm.get())
        save(pContext);
    return this;
}

PhonebookStateBase* PhonebookStateEditGroup::screenEvent(EventContext* pContext,
                                                         DisplayAPI::Command* pCommand,
                                                         DisplayAPI::Displayable* pDisplayable)
{
    PB_TRACE("PhonebookStateEditGroup::screenEvent()");
    if (pDisplayable == m_pSaveQuestion.get())
        return questionAnswered(pContext, pCommand);
    if (pDisplayable == m_pSaved.get())
        return &pContext->m_ViewingGroups;
    if (pDisplayable == m_pError.get())
        showForm(pContext);
    else
        PB_IGNORED(" - unrecognised widget\n");
    return this;
}

// --- The form ---

void PhonebookStateEditGroup::constructMenuCommands(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::constructMenuCommands()");
    if (m_pSaveExit)
        return;
    const auto make = [pContext](const char* key) {
        return std::make_unique<MenuCommand>(TranslationInfo(key, pContext->m_pTranslator));
    };
    m_pSaveExit = make("save.exit");
    m_pExitNoSave = make("exit.no.save");
    m_pSave = make("save");
    m_pDoNotSave = make("do.not.save");
}

void PhonebookStateEditGroup::constructPopups(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::constructPopups()");
    if (m_pSaveQuestion)
        return;
    auto* pTranslator = pContext->m_pTranslator;
    m_pSaveQuestion = PopupMaker::warning(pContext, TranslationInfo("save.changes.prompt", pTranslator),
                                          {m_pSave.get(), m_pDoNotSave.get()});
    m_pProgress = PopupMaker::progress(nPROGRESS_KIND);
    m_pProgress->setText(TranslationInfo("saving.changes", pTranslator));
    m_pSaved = PopupMaker::notification(pContext, PopupNotification::SUCCESS);
    m_pSaved->setText(TranslationInfo("changes.saved", pTranslator));
    m_pError = PopupMaker::notification(pContext, PopupNotification::ERROR);
}

void PhonebookStateEditGroup::constructForm(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::constructForm()");
    if (m_pForm)
        return;
    auto* pTranslator = pContext->m_pTranslator;
    m_pOptionField = std::make_unique<DisplayAPI::SelectionField>(TranslationInfo("option", pTranslator));
    m_pOptionField->append(m_pSaveExit.get());
    m_pOptionField->append(m_pExitNoSave.get());
    m_pOptionField->setNotifyOnOk(true);
    m_pNameField = std::make_unique<DisplayAPI::TextField>(TranslationInfo("group.name", pTranslator));
    m_pNameField->setFieldType(DisplayAPI::TextField::TEXT);
    m_pNameField->setNotifyOnOk(false);
    m_pForm = std::make_unique<DisplayAPI::Form>(nFORM_KIND);
    m_pForm->setTitle(TranslationInfo("manage.groups.form", pTranslator));
    m_pForm->setCommandListener(pContext->m_pListener);
}

void PhonebookStateEditGroup::readMaximumLength(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::readMaximumLength()");
    if (!pContext->m_pDirectoryService) {
        PB_ERROR("Phonebook couldn't contact the directory service to obtain max field length\n");
        return;
    }
    Serializer::Pairs sizes;
    Serializer::deserialize(pContext->m_pDirectoryService->getFieldSizes(), sizes);
    // A size that is not among them is -1, which is all bits set: unknown still.
    m_maxNameLength = static_cast<unsigned>(Toolbox::getFieldSizeFromVector(sizes, "callgroup"));
}

void PhonebookStateEditGroup::populateForm(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::populateForm()");
    const auto& groups = *pContext->m_pGroupList;
    const int selected = pContext->m_SelectedGroupIndex;
    m_group = PhonebookGroup();
    groups.getGroup(selected == nNEW_GROUP ? groups.firstSpareGroup() : selected, m_group);

    m_pNameField->setMaxLength(m_maxNameLength);
    m_pNameField->setString(m_group.getName());
    m_pOptionField->setSelectedCommand(m_pSaveExit.get());
    m_pForm->clear();
    m_pForm->append(m_pNameField.get());
    m_pForm->setOptions(m_pOptionField.get());
    showForm(pContext);
}

void PhonebookStateEditGroup::showForm(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::showForm()");
    m_pForm->setSelectedItem(m_pNameField.get());
    pContext->m_pDisplay->setCurrent(m_pForm.get());
}

// --- Saving ---

void PhonebookStateEditGroup::copyEditedDetailsFromForm()
{
    PB_TRACE("PhonebookStateEditGroup::copyEditedDetailsFromForm()");
    m_groupBefore = m_group;
    const auto name = Toolbox::removeLeadingAndTrailingSpaces(m_pNameField->getString());
    // Text of nothing but blanks is no name.
    m_group.setName(name.find_first_not_of(' ') == std::string::npos ? "" : name);
}

int PhonebookStateEditGroup::saveEntry(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::saveEntry()");
    if (m_group.getName().empty())
        return PB_Error::NO_GROUP_NAME;
    const ShownProgress progress(pContext, *m_pProgress);
    auto& groups = *pContext->m_pGroupList;
    const auto before = groups;
    if (groups.updateGroup(m_group) != nACCEPTED)
        return PB_Error::SUCCESS;
    if (writeGroupList(pContext)) {
        PB_TRACE("Editing group - group list updated successfully");
        return PB_Error::SUCCESS;
    }
    PB_ERROR("Editing group - failed to write group list");
    groups = before; // what was not written must not be shown as if it were
    return PB_Error::GROUP_WRITE_FAILURE;
}

bool PhonebookStateEditGroup::writeGroupList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::writeGroupList()");
    auto* pDirectory = pContext->m_pDirectoryService;
    return pDirectory && pDirectory->storeGroupList(pContext->m_pGroupList.get());
}

void PhonebookStateEditGroup::save(EventContext* pContext)
{
    PB_TRACE("PhonebookStateEditGroup::save()");
    copyEditedDetailsFromForm();
    const int code = saveEntry(pContext);
    if (code != PB_Error::SUCCESS) {
        const auto key = PB_Error::getErrorTxt(static_cast<PB_Error::ErrorCode>(code));
        m_pError->setText(TranslationInfo(key, pContext->m_pTranslator));
        pContext->m_pDisplay->setCurrent(m_pError.get());
        return;
    }
    pContext->m_pGroupDisplayList->clear(); // it is filled anew when it is shown
    pContext->m_pDisplay->setCurrent(m_pSaved.get());
}

PhonebookStateBase* PhonebookStateEditGroup::questionAnswered(EventContext* pContext,
                                                              const DisplayAPI::Command* pCommand)
{
    PB_TRACE("PhonebookStateEditGroup::questionAnswered()");
    if (pCommand == m_pDoNotSave.get())
        return &pContext->m_ViewingGroups;
    if (pCommand != m_pSave.get()) {
        PB_IGNORED(" - unhandled event on popup\n");
        return this;
    }
    m_pSaveQuestion->dismiss();
    save(pContext);
    return this;
}
