#include "OptionList.h"

#include <algorithm>
#include <utility>

#include <framework/display/ExclusiveList.h>

#include "EventContext.h"
#include "PhonebookLog.h"
#include "PhonebookMode.h"

using DisplayAPI::TranslationInfo;

namespace {
constexpr char nSOURCE[] = "./src/OptionList";
constexpr int nOPTION_ROW = 0; // the kind of a row in an exclusive list
} // namespace

OptionList::OptionList(const char* title, std::vector<const char*> keys)
    : m_title(title)
    , m_keys(std::move(keys))
{
    PB_TRACE("OptionList::OptionList()");
}

OptionList::~OptionList() = default;

OptionList OptionList::nameFormats()
{
    PB_TRACE("OptionList::nameFormats()");
    return {"display.options", {"lastname.firstname", "firstname.lastname", "lastname.f", "f.lastname"}};
}

void OptionList::construct(EventContext* pContext)
{
    PB_TRACE("OptionList::construct()");
    if (m_pWidget)
        return;
    m_pWidget = std::make_unique<DisplayAPI::ExclusiveList>();
    m_pWidget->setTitle(TranslationInfo(m_title, pContext->m_pTranslator));
    for (const auto* key : m_keys)
        m_rows.push_back(m_pWidget->append(
            new DisplayAPI::ListItem(TranslationInfo(key, pContext->m_pTranslator), nOPTION_ROW)));
    m_pWidget->setCommandListener(pContext->m_pListener);
}

void OptionList::select(int option)
{
    PB_TRACE("OptionList::select()");
    const auto position = static_cast<std::size_t>(option);
    m_selectedRow = position < m_rows.size() ? m_rows[position] : m_rows[0];
    m_pWidget->setSelectedIndex(m_selectedRow);
}

bool OptionList::isChanged() const
{
    PB_TRACE("OptionList::isChanged()");
    return m_pWidget->getSelectedIndex() != m_selectedRow;
}

std::optional<int> OptionList::chosen() const
{
    PB_TRACE("OptionList::chosen()");
    const auto found = std::ranges::find(m_rows, m_pWidget->getSelectedIndex());
    if (found == m_rows.end())
        return std::nullopt;
    return static_cast<int>(found - m_rows.begin());
}

DisplayAPI::ExclusiveList* OptionList::widget() const
{
    PB_TRACE("OptionList::widget()");
    return m_pWidget.get();
}
