#include <framework/display/SelectionField.h>

#include <algorithm>
#include <utility>

#include <framework/display/Frame.h>
#include <framework/display/MenuCommand.h>
#include <framework/host/Key.h>

#include "UiLock.h"

namespace DisplayAPI {

SelectionField::SelectionField(TranslationInfo label)
    : Field(std::move(label))
{
}

SelectionField::~SelectionField()
{
    expire();
}

void SelectionField::append(MenuCommand* command)
{
    const UiLock lock;
    std::erase_if(m_choices, [](const Choice& choice) { return choice.alive.expired(); });
    if (command)
        m_choices.push_back({command, command->watch()});
}

void SelectionField::clear(MenuCommand* chosen)
{
    const UiLock lock;
    m_choices.clear();
    setSelectedCommand(chosen);
}

MenuCommand* SelectionField::getSelectedCommand() const
{
    const UiLock lock;
    if (!m_selected.alive.expired())
        return m_selected.command;
    const auto alive = choices();
    return alive.empty() ? nullptr : alive.front();
}

void SelectionField::setSelectedCommand(MenuCommand* command)
{
    const UiLock lock;
    m_selected = command ? Choice{command, command->watch()} : Choice{};
}

int SelectionField::getSelectedIndex() const
{
    const UiLock lock;
    const auto alive = choices();
    const auto found = std::ranges::find(alive, getSelectedCommand());
    return found == alive.end() ? -1 : static_cast<int>(found - alive.begin());
}

void SelectionField::setSelectedIndex(int index)
{
    const UiLock lock;
    const auto alive = choices();
    if (index >= 0 && index < static_cast<int>(alive.size()))
        setSelectedCommand(alive[static_cast<std::size_t>(index)]);
}

void SelectionField::setNotifyOnOk(bool notify)
{
    const UiLock lock;
    m_notifyOnOk = notify;
}

void SelectionField::paint(FrameField& field) const
{
    const UiLock lock;
    field.kind = FrameField::Kind::Selection;
    field.label = label().translated();
    field.choice = getSelectedIndex();
    field.choices = static_cast<int>(choices().size());
    if (const auto* command = getSelectedCommand()) {
        field.value = command->getLabel().translated();
        field.image = command->getImagePath();
    }
}

FieldReaction SelectionField::keyPressed(const Key& key)
{
    const UiLock lock;
    switch (key.kind) {
    case Key::Kind::Left:
        step(-1);
        return FieldReaction::Silent;
    case Key::Kind::Right:
        step(+1);
        return FieldReaction::Silent;
    case Key::Kind::Ok:
        return m_notifyOnOk ? FieldReaction::Ok : FieldReaction::Changed;
    default:
        return FieldReaction::NotMine;
    }
}

FieldReaction SelectionField::timePassed(std::chrono::milliseconds)
{
    return FieldReaction::Silent;
}

FieldReaction SelectionField::commit()
{
    return FieldReaction::Silent;
}

std::vector<MenuCommand*> SelectionField::choices() const
{
    std::vector<MenuCommand*> alive;
    for (const auto& choice : m_choices) {
        if (!choice.alive.expired())
            alive.push_back(choice.command);
    }
    return alive;
}

void SelectionField::step(int direction)
{
    const auto count = static_cast<int>(choices().size());
    if (count == 0)
        return;
    const auto index = getSelectedIndex();
    // From a command that is none of the choices, either way leads among them.
    const auto from = index < 0 && direction < 0 ? 0 : index;
    setSelectedIndex((from + count + direction) % count);
}

} // namespace DisplayAPI
