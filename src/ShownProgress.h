// A progress message that stands over the screen for as long as this object lives: it goes whatever
// becomes of the work behind it.

#pragma once

namespace DisplayAPI {
class PopupProgress;
}
class EventContext;

class ShownProgress {
public:
    // The popup is not owned and outlives this object.
    ShownProgress(EventContext* pContext, DisplayAPI::PopupProgress& popup);
    ~ShownProgress();

    ShownProgress(const ShownProgress&) = delete;
    ShownProgress& operator=(const ShownProgress&) = delete;

private:
    DisplayAPI::PopupProgress& m_popup;
};
