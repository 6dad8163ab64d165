// The commands of the local list, and which of them stand on its two menus.

#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include "DialCommands.h"

class ListCommands {
public:
    // Besides those that dial. Some texts occur twice: with and without a soft-key bar they are different
    // commands.
    enum Choice : std::size_t {
        NEW_CONTACT,
        DISPLAY_OPTIONS,
        DELETE_ALL,
        FIND,
        BACKUP,
        RESTORE,
        GROUPS,
        DIRECTED_PICKUP,
        DETAILS,
        DELETE_ENTRY,
        SECOND_FIND,
        SEND,
        SECOND_NEW_CONTACT,
        CONFIRM_DELETE_ALL,
        CONFIRM_DELETE,
        CANCEL,
        nCHOICES
    };

    ListCommands();
    ~ListCommands();

    // Creates them; they are kept for the life of this object.
    void constructMenuCommands(EventContext* pContext);

    // Null before constructMenuCommands().
    DisplayAPI::MenuCommand* command(Choice choice) const;
    const DialCommands& dialCommands() const;
    // Nothing for a command that is not one of these choices.
    std::optional<Choice> choiceOf(const DisplayAPI::Command* pCommand) const;

    // Put the commands of the whole list, or of the selected entry, on the context menu.
    void fillOptionsMenu(EventContext* pContext) const;
    void fillEntryMenu(EventContext* pContext) const;

private:
    void create(EventContext* pContext, Choice choice, const char* key);
    void fillEntryMenuWithSoftKeyBar(EventContext* pContext) const;
    void fillEntryMenuWithoutSoftKeyBar(EventContext* pContext) const;
    void addMenuItem(EventContext* pContext, Choice choice) const;
    void addDirectedPickupMenuItem(EventContext* pContext) const;
    void addSendMenuItem(EventContext* pContext) const;
    static bool checkBluetoothAvailable(EventContext* pContext);

    std::array<std::unique_ptr<DisplayAPI::MenuCommand>, nCHOICES> m_commands;
    DialCommands m_dialCommands;
};
