// The office tab after its directory changed underneath it.
//
// Out of sight it rebuilds the list at once. In sight it asks first, so that rows never move under
// the user's finger; the question leaves with its tab and returns with it.

#pragma once

#include <memory>

#include "PhonebookStateBase.h"

namespace DisplayAPI {
class MenuCommand;
class PopupConfirm;
} // namespace DisplayAPI

class PhonebookStateRefreshing final : public PhonebookStateBase {
public:
    PhonebookStateRefreshing();

    bool tabValid(EventContext* pContext) override;
    PhonebookStateBase* tabFrom(EventContext* pContext) override;
    PhonebookStateBase* tabTo(EventContext* pContext) override;
    void enterStateEvent(EventContext* pContext) override;
    void exitStateEvent(EventContext* pContext) override;
    PhonebookStateBase* screenEvent(EventContext* pContext, DisplayAPI::Command* pCommand,
                                    DisplayAPI::Displayable* pDisplayable) override;
    PhonebookStateBase* phonebookDatabaseUpdated(EventContext* pContext) override;
    virtual ~PhonebookStateRefreshing();

    // Reads all entries and groups anew; the next list that is shown is a new widget.
    void updateList(EventContext* pContext);

private:
    void showPopup(EventContext* pContext);
    void deleteRetiredList(EventContext* pContext);

    // The popup points at the command: declared after it, gone before it.
    std::unique_ptr<DisplayAPI::MenuCommand> m_pRefreshCommand;
    std::unique_ptr<DisplayAPI::PopupConfirm> m_pInUsePopup;
};
