#include "app/KeyRouter.h"

#include <string_view>

#include <framework/display/Frame.h>

using DisplayAPI::FrameRole;
using DisplayAPI::Key;

KeyRouter::KeyRouter(Stage& stage, IdleScreen& idle, PhysicalInterfaceService& physical, Dialling dialling)
    : m_stage(stage)
    , m_idle(idle)
    , m_physical(physical)
    , m_dialling(std::move(dialling))
{
}

void KeyRouter::route(const PhoneKey& key)
{
    m_physical.keyPressed(key);
    switch (key.kind) {
    case PhoneKey::Kind::Display:
        screenKey(key.key);
        break;
    case PhoneKey::Kind::Phonebook:
        openPhonebook();
        break;
    case PhoneKey::Kind::Home:
        m_dialPad = false;
        m_stage.home();
        break;
    case PhoneKey::Kind::Hook:
        setOffHook(!m_offHook);
        break;
    case PhoneKey::Kind::HangUp:
        m_dialPad = false;
        m_dialling.hangUp();
        setOffHook(false);
        break;
    case PhoneKey::Kind::DialPad:
        m_dialPad = !m_dialPad;
        break;
    }
}

void KeyRouter::openPhonebook()
{
    if (m_pPhonebook)
        m_stage.tabKey(*m_pPhonebook);
}

void KeyRouter::screenKey(const Key& key)
{
    char digit = 0;
    auto* front = m_stage.front();
    if (dials(key, digit))
        m_dialling.digit(digit);
    else if (!front)
        m_idle.keyPressed(key);
    else if (!front->display().keyPressed(key) && key.kind == Key::Kind::Back)
        m_stage.home();
}

void KeyRouter::setOffHook(bool offHook)
{
    if (m_offHook == offHook)
        return;
    m_offHook = offHook;
    m_dialPad = false;
    m_physical.hookChanged(offHook);
    m_dialling.hook(offHook);
}

bool KeyRouter::dials(const Key& key, char& digit) const
{
    constexpr std::string_view DIGITS = "0123456789*#";
    if (!m_offHook && !m_dialPad)
        return false;
    if (key.kind == Key::Kind::Digit)
        digit = key.digit;
    else if (key.kind == Key::Kind::Text && key.text.size() == 1)
        digit = key.text[0];
    else
        return false;
    auto* front = m_stage.front();
    return DIGITS.find(digit) != DIGITS.npos &&
           !(front && front->display().paint().top().role == FrameRole::Dialler);
}
