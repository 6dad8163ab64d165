// The commands that dial a contact from a list: one for each of its numbers, and one for its default
// number.

#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>

#include <framework/display/Icons.h>
#include <framework/services/CallPartyIdentifier.h>

namespace DisplayAPI {
class Command;
class ContextMenu;
class MenuCommand;
} // namespace DisplayAPI
class EventContext;
class PhonebookFullEntry;

class DialCommands {
public:
    enum Choice : std::size_t { OFFICE, OFFICE2, PRIVATE, MOBILE, DEFAULT, nCHOICES };

    DialCommands();
    ~DialCommands();

    // Creates them, once; they are kept for the life of this object.
    void construct(EventContext* pContext);

    // Null before construct().
    DisplayAPI::MenuCommand* command(Choice choice) const;
    bool owns(const DisplayAPI::Command* pCommand) const;

    // Puts on a menu what dials the entry: with a soft-key bar its default number, else each number it
    // has.
    void addTo(DisplayAPI::ContextMenu& menu, const PhonebookFullEntry& entry, bool hasSoftKeyBar) const;
    // The number of the entry that a command stands for, and its call-party icon: the default number for
    // any command that is not one of these, nothing without a command.
    void numberOf(const DisplayAPI::Command* pCommand, const PhonebookFullEntry& entry, std::string& number,
                  CallPartyIdentifier::PhoneNumberIconType& icon) const;

private:
    void create(EventContext* pContext, Choice choice, DisplayAPI::DisplayIcon icon);
    void addNumber(DisplayAPI::ContextMenu& menu, Choice choice, const std::string& number) const;

    std::array<std::unique_ptr<DisplayAPI::MenuCommand>, nCHOICES> m_commands;
};
