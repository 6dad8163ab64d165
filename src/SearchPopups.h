// What a search of the corporate directory shows over its screen: that it runs, and how it ended
// when there is something to say about that.

#pragma once

#include <memory>

#include <framework/services/DirectoryServiceIfc.h>

namespace DisplayAPI {
class PopupNotification;
class PopupProgress;
} // namespace DisplayAPI
class EventContext;

class SearchPopups {
public:
    SearchPopups();
    ~SearchPopups();

    // Builds both popups on the first call.
    void construct(EventContext* pContext);
    // Null until they are built.
    DisplayAPI::PopupProgress* progress() const;
    DisplayAPI::PopupNotification* result() const;

    // Nothing for success. It goes after three seconds.
    void showResult(EventContext* pContext, DirectoryStatus status);

private:
    std::unique_ptr<DisplayAPI::PopupProgress> m_pProgress;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pResult;
};
