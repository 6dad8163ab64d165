// A contact's row: an icon for its default number, and its name as it stands.

#pragma once

#include <framework/display/ListItem.h>

namespace DisplayAPI {

class FRAMEWORK_API PhonebookItem final : public ListItem {
public:
    // `icon` is a DisplayIcon; `secondIcon` is 0, and never shown; `kind` is 1.
    PhonebookItem(int icon, int secondIcon, const std::string& name, int kind);
    ~PhonebookItem() override;
};

} // namespace DisplayAPI
