#include <framework/display/PhonebookItem.h>

namespace DisplayAPI {

PhonebookItem::PhonebookItem(int icon, int /*secondIcon*/, const std::string& name, int kind)
    : ListItem(TranslationInfo::plain(name), kind, icon)
{
}

PhonebookItem::~PhonebookItem() = default;

} // namespace DisplayAPI
