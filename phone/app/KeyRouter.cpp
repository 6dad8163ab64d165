#include "app/KeyRouter.h"

#include <string_view>
#include <utility>

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
        m_idle.homePressed();
        m_stage.home();
        break;
    case PhoneKey::Kind::Hook:
        hookKey();
        break;
    case PhoneKey::Kind::HangUp:
        hangUpKey();
        break;
    case PhoneKey::Kind::Answer:
        m_dialling.answer(key.call);
        break;
    case PhoneKey::Kind::End:
        m_dialling.end(key.call);
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

// Who lifts the handset for a call that rings does not want to dial; who puts it down after another does not
// want to take it.
void KeyRouter::hookKey()
{
    const bool isPutDown = m_offHook && m_dialling.isCalling();
    if (!isPutDown && m_dialling.answer("")) {
        setHandset(true);
        m_dialling.liftedForCall();
    } else {
        setOffHook(!m_offHook);
    }
}

void KeyRouter::hangUpKey()
{
    m_dialPad = false;
    if (!m_dialling.isCalling() && m_dialling.end(""))
        return;
    if (m_offHook)
        setOffHook(false);
    else
        m_dialling.hangUp();
}

void KeyRouter::setOffHook(bool offHook)
{
    setHandset(offHook);
    m_dialling.hook(offHook);
}

void KeyRouter::setHandset(bool lifted)
{
    m_dialPad = false;
    if (std::exchange(m_offHook, lifted) != lifted)
        m_physical.hookChanged(lifted);
}

bool KeyRouter::dials(const Key& key, char& digit) const
{
    constexpr std::string_view DIALLED = "0123456789*#+";
    if (!m_offHook && !m_dialPad)
        return false;
    if (key.kind == Key::Kind::Digit)
        digit = key.digit;
    else if (key.kind == Key::Kind::Text && key.text.size() == 1)
        digit = key.text[0];
    else
        return false;
    auto* front = m_stage.front();
    return DIALLED.find(digit) != DIALLED.npos &&
           !(front && front->display().paint().top().role == FrameRole::Dialler);
}
