// What the local list shows over itself: while it deletes, afterwards, and while the telephone
// fetches another user's phonebook.

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

    // Builds those of deleting anew, all five: what is on the screen of them goes.
    void construct(EventContext* pContext);

    // Delete behind a progress message. 0, or a PB_Error code.
    int deleteAll(EventContext* pContext);
    // `name` is what the messages call the entry.
    int deleteEntry(EventContext* pContext, unsigned int index, const std::string& name);

    // Each reports its end as a screen event.
    void showAllDeleted(EventContext* pContext);
    void showEntryDeleted(EventContext* pContext);
    void showError(EventContext* pContext, int code);

    // Made once, and kept.
    void showFetching(EventContext* pContext);
    void hideFetching();

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
    std::unique_ptr<DisplayAPI::PopupProgress> m_pFetching;
};
