// The commands of the corporate directory's list, and which of them stand on its two menus.

#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include "DialCommands.h"

class DirectoryCommands {
public:
    // Besides those that dial.
    enum Choice : std::size_t { ADVANCED_FIND, DISPLAY_OPTIONS, QUALIFIER, CLEAR, DETAILS, SAVE, nCHOICES };

    DirectoryCommands();
    ~DirectoryCommands();

    // Creates them; they are kept for the life of this object.
    void constructMenuCommands(EventContext* pContext);

    // Null before constructMenuCommands().
    DisplayAPI::MenuCommand* command(Choice choice) const;
    const DialCommands& dialCommands() const;
    // Nothing for a command that is not one of these choices.
    std::optional<Choice> choiceOf(const DisplayAPI::Command* pCommand) const;

    // Put the commands of the whole list, or of the context's directory entry, on an empty menu.
    void fillOptionsMenu(DisplayAPI::ContextMenu& menu, bool listHoldsEntries) const;
    void fillEntryMenu(EventContext* pContext, DisplayAPI::ContextMenu& menu) const;

private:
    void create(EventContext* pContext, Choice choice, const char* key);

    std::array<std::unique_ptr<DisplayAPI::MenuCommand>, nCHOICES> m_commands;
    DialCommands m_dialCommands;
};
