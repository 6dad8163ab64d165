#include "PhonebookStateDisplayOptions.h"

#include <algorithm>

#include <framework/display/ExclusiveList.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"
#include "Toolbox.h"

using DisplayAPI::TranslationInfo;

namespace {

constexpr char nSOURCE[] = "./src/PhonebookStateDisplayOptions";

constexpr const char* nKEYS[] = {"lastname.firstname", "firstname.lastname", "lastname.f", "f.lastname"};
constexpr int nOPTION_ROW = 0; // the kind of a row in an exclusive list
constexpr int nLIST_ROW = 1;   // and in a search list

} // namespace

PhonebookStateDisplayOptions::PhonebookStateDisplayOptions() = default;

PhonebookStateDisplayOptions::~PhonebookStateDisplayOptions() = default;

void PhonebookStateDisplayOptions::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateDisplayOptions::enterStateEvent()");
    constructDisplayList(pContext);
    m_rowOnEntry = rowOf(pContext->m_pPhonebookList->getDisplayMode());
    m_pOptionsList->setSelectedIndex(m_rowOnEntry);
    showInTab(pContext, *m_pOptionsList);
}

void PhonebookStateDisplayOptions::exitStateEvent(EventContext*)
{
    PB_TRACE("PhonebookStateDisplayOptions::exitStateEvent()");
}

PhonebookStateBase* PhonebookStateDisplayOptions::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                                            DisplayAPI::Displayable*)
{
    PB_TRACE("PhonebookStateDisplayOptions::backEvent()");
    const int row = m_pOptionsList->getSelectedIndex();
    if (row == m_rowOnEntry)
        return &pContext->m_ViewingList;

    const auto size = static_cast<int>(pContext->m_pPhonebookList->size());
    m_pOptionsList->setWaitAnimation(true);
    // One row more than entries is the options row: then the rows keep their places, selection and
    // search text included. Otherwise the list is built anew when it is entered.
    const bool keepsRows = size > 0 && pContext->m_pDisplayList->size() == size + 1;
    if (!keepsRows)
        pContext->m_pDisplayList->clear();
    pContext->m_pPhonebookList->setDisplayMode(modeOf(row));
    if (keepsRows)
        relabelRows(pContext);
    m_pOptionsList->setWaitAnimation(false);
    return &pContext->m_ViewingList;
}

PhonebookStateBase* PhonebookStateDisplayOptions::okEvent(EventContext* pContext, DisplayAPI::Command*,
                                                          DisplayAPI::Displayable*)
{
    PB_TRACE("PhonebookStateDisplayOptions::okEvent()");
    return &pContext->m_ViewingList;
}

void PhonebookStateDisplayOptions::constructDisplayList(EventContext* pContext)
{
    PB_TRACE("PhonebookStateDisplayOptions::constructDisplayList()");
    if (m_pOptionsList)
        return;
    m_pOptionsList = std::make_unique<DisplayAPI::ExclusiveList>();
    m_pOptionsList->setTitle(TranslationInfo("display.options", pContext->m_pTranslator));
    std::transform(std::begin(nKEYS), std::end(nKEYS), m_rows.begin(), [&](const char* key) {
        return m_pOptionsList->append(
            new DisplayAPI::ListItem(TranslationInfo(key, pContext->m_pTranslator), nOPTION_ROW));
    });
    m_pOptionsList->setCommandListener(pContext->m_pListener);
}

DisplayAPI::ExclusiveList* PhonebookStateDisplayOptions::getListItem() const
{
    PB_TRACE("PhonebookStateDisplayOptions::getListItem()");
    return m_pOptionsList.get();
}

int PhonebookStateDisplayOptions::rowOf(displayMode mode) const
{
    PB_TRACE("PhonebookStateDisplayOptions::rowOf()");
    const auto option = static_cast<std::size_t>(mode);
    return option < m_rows.size() ? m_rows[option] : m_rows[0];
}

displayMode PhonebookStateDisplayOptions::modeOf(int row) const
{
    PB_TRACE("PhonebookStateDisplayOptions::modeOf()");
    return static_cast<displayMode>(std::find(m_rows.begin(), m_rows.end(), row) - m_rows.begin());
}

void PhonebookStateDisplayOptions::relabelRows(EventContext* pContext)
{
    PB_TRACE("PhonebookStateDisplayOptions::relabelRows()");
    auto& entries = *pContext->m_pPhonebookList;
    const auto mode = entries.getDisplayMode();
    const auto qualifier = entries.getDisplayQualifier();
    const unsigned size = entries.size();
    for (unsigned index = 0; index < size; ++index) {
        const auto entry = entries.elementAt(index);
        pContext->m_pDisplayList->set(static_cast<int>(index + Toolbox::nNO_SOFT_KEY_BAR_OFFSET),
                                      rowIcon(entry.getDefaultNumber()), 0,
                                      entry.getDisplayName(mode, qualifier), nLIST_ROW);
    }
}
