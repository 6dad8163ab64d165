#include <framework/display/ListItem.h>

#include <utility>

#include "UiLock.h"

namespace DisplayAPI {

ListItem::ListItem(TranslationInfo text, int kind)
    : ListItem(std::move(text), kind, 0)
{
}

ListItem::ListItem(TranslationInfo text, int kind, int icon)
    : m_text(std::move(text))
    , m_kind(kind)
    , m_icon(icon)
{
}

ListItem::~ListItem() = default;

std::string ListItem::getText() const
{
    const UiLock lock;
    return m_text.translated();
}

int ListItem::getIcon() const
{
    const UiLock lock;
    return m_icon;
}

void ListItem::set(int icon, const std::string& text)
{
    const UiLock lock;
    m_icon = icon;
    m_text = TranslationInfo::plain(text);
}

} // namespace DisplayAPI
