#include "system/PhysicalInterfaceService.h"

#include <algorithm>
#include <optional>

#include <framework/services/physicalEventObserver.h>

#include "app/PhoneKey.h"

namespace {

using DisplayAPI::Key;
using Function = PhysDefs::keyFunctionType;

constexpr int OWN_KEYPAD = 2;

struct PhysicalKey {
    Function function;
    int number;
    std::string name;
};

std::optional<PhysicalKey> physical(const Key& key)
{
    switch (key.kind) {
    case Key::Kind::Digit:
        return PhysicalKey{Function::Digit, key.digit, std::string(1, key.digit)};
    case Key::Kind::Up:
        return PhysicalKey{Function::Navigation, 1, "up"};
    case Key::Kind::Down:
        return PhysicalKey{Function::Navigation, 2, "down"};
    case Key::Kind::Left:
        return PhysicalKey{Function::Navigation, 3, "left"};
    case Key::Kind::Right:
        return PhysicalKey{Function::Navigation, 4, "right"};
    case Key::Kind::Ok:
        return PhysicalKey{Function::Navigation, 5, "ok"};
    case Key::Kind::Context:
        return PhysicalKey{Function::Function, 1, "menu"};
    case Key::Kind::Back:
        return PhysicalKey{Function::Function, 2, "back"};
    case Key::Kind::Save:
        return PhysicalKey{Function::Function, 3, "save"};
    case Key::Kind::Clear:
    case Key::Kind::ClearAll:
        return PhysicalKey{Function::Function, 4, "clear"};
    case Key::Kind::SoftKey:
        return PhysicalKey{Function::SoftKey, key.index, "soft" + std::to_string(key.index + 1)};
    case Key::Kind::Text:
    case Key::Kind::Row:
    case Key::Kind::Tab:
        break;
    }
    return std::nullopt;
}

std::optional<PhysicalKey> physical(const PhoneKey& key)
{
    switch (key.kind) {
    case PhoneKey::Kind::Display:
        return physical(key.key);
    case PhoneKey::Kind::Phonebook:
        return PhysicalKey{Function::Function, 5, "phonebook"};
    case PhoneKey::Kind::Home:
        return PhysicalKey{Function::Function, 6, "home"};
    case PhoneKey::Kind::HangUp:
        return PhysicalKey{Function::Function, 7, "hangup"};
    case PhoneKey::Kind::DialPad:
        return PhysicalKey{Function::Function, 8, "dialpad"};
    case PhoneKey::Kind::Hook:
    case PhoneKey::Kind::Answer:
    case PhoneKey::Kind::End:
        break;
    }
    return std::nullopt;
}

} // namespace

PhysicalInterfaceService::PhysicalInterfaceService(EventPoster& events)
    : m_events(events)
{
}

bool PhysicalInterfaceService::subscribe(physicalEventObserver* observer,
                                         const std::vector<PhysDefs::SubscriptionGrp>& groups)
{
    const bool known = !groups.empty() && std::all_of(groups.begin(), groups.end(), [](const auto& group) {
        return group.group == OWN_KEYPAD;
    });
    if (!observer || !known)
        return false;
    if (std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
    return true;
}

void PhysicalInterfaceService::keyPressed(const PhoneKey& key)
{
    const auto pressed = physical(key);
    if (!pressed)
        return;
    const auto action = key.kind == PhoneKey::Kind::Display && key.key.kind == Key::Kind::ClearAll
                            ? PhysDefs::actionType::Held
                            : PhysDefs::actionType::Pressed;
    tell("physical key", [key = *pressed, action](physicalEventObserver& observer) {
        observer.buttonPressedEvent(key.function, key.number, action, key.name);
    });
}

void PhysicalInterfaceService::hookChanged(bool offHook)
{
    tell("hook switch", [offHook](physicalEventObserver& observer) { observer.hookswitchEvent(offHook); });
}

void PhysicalInterfaceService::tell(const char* event, std::function<void(physicalEventObserver&)> call)
{
    for (auto* observer : m_observers) {
        m_events.post(event, [this, observer, call] {
            if (std::find(m_observers.begin(), m_observers.end(), observer) != m_observers.end())
                call(*observer);
        });
    }
}
