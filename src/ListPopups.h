// What the local list shows while it deletes, and afterwards.

#pragma once

#include <memory>
#include <string>

namespace DisplayAPI {
class Displayable;
class PopupNotification;
class PopupProgress;
} // namespace DisplayAPI
class EventContext;

class ListPopups {
public:
    ListPopups();
    ~ListPopups();

    // Builds all five anew: those that are on the screen go.
    void construct(EventContext* pContext);

    // Delete behind a progress message. 0, or a PB_Error code.
    int deleteAll(EventContext* pContext);
    // `name` is what the messages call the entry.
    int deleteEntry(EventContext* pContext, unsigned int index, const std::string& name);

    // Each reports its end as a screen event.
    void showAllDeleted(EventContext* pContext);
    void showEntryDeleted(EventContext* pContext);
    void showError(EventContext* pContext, int code);

    bool isAllDeleted(const DisplayAPI::Displayable* pDisplayable) const;
    bool isEntryDeleted(const DisplayAPI::Displayable* pDisplayable) const;
    bool isError(const DisplayAPI::Displayable* pDisplayable) const;

private:
    void forgetOld(EventContext* pContext) const;

    std::unique_ptr<DisplayAPI::PopupNotification> m_pError;
    std::unique_ptr<DisplayAPI::PopupProgress> m_pDeletingAll;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pAllDeleted;
    std::unique_ptr<DisplayAPI::PopupProgress> m_pDeletingEntry;
    std::unique_ptr<DisplayAPI::PopupNotification> m_pEntryDeleted;
};
