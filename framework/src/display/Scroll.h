// Scrolling: a step moves as little as needed to keep the cursor in sight; a jump shows what follows
// the row it went to.

#pragma once

#include <algorithm>

namespace DisplayAPI {

// The first visible row of `count`, of which `rows` are visible and `selected` has to be; `top` is
// what it was before.
inline int scrolled(int top, int selected, int count, int rows)
{
    if (rows <= 0)
        return 0;
    const bool isStepUp = selected == top - 1;
    const bool isStepDown = selected == top + rows;
    if (isStepUp)
        top = selected;
    else if (isStepDown)
        ++top;
    else if (selected < top || selected > top + rows)
        top = selected - 1; // the row before it tells that there is more above
    return std::clamp(top, 0, std::max(count - rows, 0));
}

} // namespace DisplayAPI
