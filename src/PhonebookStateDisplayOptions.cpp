#include "PhonebookStateDisplayOptions.h"

#include <framework/display/ExclusiveList.h>

#include "EventContext.h"
#include "PhonebookList.h"
#include "PhonebookLog.h"
#include "Toolbox.h"

namespace {
constexpr char nSOURCE[] = "./src/PhonebookStateDisplayOptions";
constexpr int nLIST_ROW = 1; // the kind of a row in a search list
} // namespace

PhonebookStateDisplayOptions::PhonebookStateDisplayOptions()
    : m_options(OptionList::nameFormats())
{
}

PhonebookStateDisplayOptions::~PhonebookStateDisplayOptions() = default;

void PhonebookStateDisplayOptions::enterStateEvent(EventContext* pContext)
{
    PB_TRACE("PhonebookStateDisplayOptions::enterStateEvent()");
    constructDisplayList(pContext);
    m_options.select(static_cast<int>(pContext->m_pPhonebookList->getDisplayMode()));
    showInTab(pContext, *m_options.widget());
}

void PhonebookStateDisplayOptions::exitStateEvent(EventContext*)
{
    PB_TRACE("PhonebookStateDisplayOptions::exitStateEvent()");
}

PhonebookStateBase* PhonebookStateDisplayOptions::backEvent(EventContext* pContext, DisplayAPI::Command*,
                                                            DisplayAPI::Displayable*)
{
    PB_TRACE("PhonebookStateDisplayOptions::backEvent()");
    if (!m_options.isChanged())
        return &pContext->m_ViewingList;

    const auto size = static_cast<int>(pContext->m_pPhonebookList->size());
    m_options.widget()->setWaitAnimation(true);
    // One row more than entries is the options row: then the rows keep their places, selection and
    // search text included. Otherwise the list is built anew when it is entered.
    const bool keepsRows = size > 0 && pContext->m_pDisplayList->size() == size + 1;
    if (!keepsRows)
        pContext->m_pDisplayList->clear();
    if (const auto mode = m_options.chosen())
        pContext->m_pPhonebookList->setDisplayMode(static_cast<displayMode>(*mode));
    if (keepsRows)
        relabelRows(pContext);
    m_options.widget()->setWaitAnimation(false);
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
    m_options.construct(pContext);
}

DisplayAPI::ExclusiveList* PhonebookStateDisplayOptions::getListItem() const
{
    PB_TRACE("PhonebookStateDisplayOptions::getListItem()");
    return m_options.widget();
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
