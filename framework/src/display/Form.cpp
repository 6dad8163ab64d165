#include <framework/display/Form.h>

#include <algorithm>

#include <framework/display/Field.h>
#include <framework/display/Frame.h>
#include <framework/display/SelectionField.h>
#include <framework/host/EventQueue.h>
#include <framework/host/Key.h>

#include "PhoneCommands.h"
#include "Scroll.h"
#include "UiLock.h"

namespace DisplayAPI {

Form::Form(int /*kind*/) {}

Form::~Form()
{
    detach();
}

void Form::append(Field* field)
{
    const UiLock lock;
    std::erase_if(m_fields, [](const Entry& entry) { return entry.alive.expired(); });
    if (field)
        m_fields.push_back({field, field->watch()});
}

void Form::clear()
{
    const UiLock lock;
    m_fields.clear();
    m_pSelected = nullptr;
    m_top = 0;
}

void Form::setOptions(SelectionField* options)
{
    const UiLock lock;
    m_options = options ? Entry{options, options->watch()} : Entry{};
}

Item* Form::getSelectedItem() const
{
    const UiLock lock;
    return selected();
}

void Form::setSelectedItem(Item* item)
{
    const UiLock lock;
    const auto all = fields();
    if (std::ranges::find(all, item) == all.end())
        return;
    m_pSelected = item;
    m_top = 0;
}

void Form::setItemStateListener(ItemStateListener* listener)
{
    const UiLock lock;
    m_pItemStateListener = listener;
}

void Form::setOffersSave(bool offers)
{
    const UiLock lock;
    m_offersSave = offers;
}

bool Form::offersSave() const
{
    const UiLock lock;
    return m_offersSave;
}

const Command* Form::getOkCommand() const
{
    const UiLock lock;
    const auto* field = selected();
    return field ? field->getOkCommand() : nullptr;
}

FrameRole Form::role() const
{
    return FrameRole::Form;
}

void Form::paint(FrameScreen& screen, int rows) const
{
    const UiLock lock;
    const auto all = fields();
    const auto count = static_cast<int>(all.size());
    const auto* focused = selected();
    const auto focusedAt = static_cast<int>(std::ranges::find(all, focused) - all.begin());
    screen.title = title().translated();
    screen.rowCount = count;
    m_top = scrolled(m_top, focusedAt, count, rows);
    for (int i = m_top; i < std::min(count, m_top + rows); ++i) {
        const auto* field = all[static_cast<std::size_t>(i)];
        auto& painted = screen.fields.emplace_back();
        field->paint(painted);
        painted.position = i;
        painted.focused = field == focused;
        if (!painted.focused)
            painted.cursor = -1;
    }
}

bool Form::keyPressed(const Key& key)
{
    const UiLock lock;
    const auto all = fields();
    const auto at = static_cast<int>(std::ranges::find(all, selected()) - all.begin());
    switch (key.kind) {
    case Key::Kind::Up:
        select(at - 1);
        return true;
    case Key::Kind::Down:
        select(at + 1);
        return true;
    case Key::Kind::Row:
        select(key.index);
        return true;
    case Key::Kind::Back:
    case Key::Kind::Save:
    case Key::Kind::Context:
        commit();
        return report(key);
    default:
        return fieldKeyPressed(key);
    }
}

void Form::timePassed(std::chrono::milliseconds now)
{
    const UiLock lock;
    for (auto* field : fields())
        reported(*field, field->timePassed(now));
}

std::vector<Field*> Form::fields() const
{
    std::vector<Field*> alive;
    for (const auto& entry : m_fields) {
        if (!entry.alive.expired())
            alive.push_back(entry.field);
    }
    if (!m_options.alive.expired())
        alive.push_back(m_options.field);
    return alive;
}

Field* Form::selected() const
{
    const auto all = fields();
    if (all.empty())
        return nullptr;
    const auto found = std::ranges::find(all, m_pSelected);
    return found == all.end() ? all.front() : *found;
}

void Form::select(int index)
{
    const auto all = fields();
    if (index < 0 || index >= static_cast<int>(all.size()))
        return;
    commit();
    m_pSelected = all[static_cast<std::size_t>(index)];
}

void Form::commit()
{
    if (auto* field = selected())
        reported(*field, field->commit());
}

bool Form::fieldKeyPressed(const Key& key)
{
    auto* field = selected();
    if (!field)
        return false;
    if (key.kind == Key::Kind::Ok)
        commit();
    const auto reaction = field->keyPressed(key);
    reported(*field, reaction);
    return reaction != FieldReaction::NotMine;
}

void Form::reported(Field& field, FieldReaction reaction)
{
    if (reaction == FieldReaction::Changed)
        EventQueue::post(&field, m_pItemStateListener);
    if (reaction != FieldReaction::Ok)
        return;
    auto* command = field.getOkCommand();
    report(command ? *command : PhoneCommands::ok());
}

} // namespace DisplayAPI
