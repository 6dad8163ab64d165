// The icon numberings of the screen. They are different tables: nothing converts one into the
// other by arithmetic.

#pragma once

namespace DisplayAPI {

// Rows of lists, and dial commands in menus.
enum class DisplayIcon : int { None = 0, Private = 2, Office = 3, Office2 = 4, Mobile = 5 };

// Text fields of a form.
enum class FieldIcon : int { None = 0, Office = 1, Office2 = 2, Private = 3, Mobile = 4 };

} // namespace DisplayAPI
