#include <framework/display/Frame.h>

namespace DisplayAPI {

bool Frame::showsTheSameAs(const Frame& other) const
{
    return visible == other.visible && tabs == other.tabs && currentTab == other.currentTab &&
           tabBarFocused == other.tabBarFocused && base == other.base && popups == other.popups &&
           softKeys == other.softKeys && systemWindow == other.systemWindow && signs == other.signs;
}

} // namespace DisplayAPI
