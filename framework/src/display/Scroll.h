// Scrolling: as little as needed to keep the cursor in sight.

#pragma once

#include <algorithm>

namespace DisplayAPI {

// The first visible row of `count`, of which `rows` are visible and `selected` has to be; `top` is
// what it was before.
inline int scrolled(int top, int selected, int count, int rows)
{
    if (rows <= 0)
        return 0;
    top = std::min(top, selected);
    top = std::max(top, selected - rows + 1);
    return std::clamp(top, 0, std::max(count - rows, 0));
}

} // namespace DisplayAPI
