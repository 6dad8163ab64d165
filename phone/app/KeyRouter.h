// What a key does, once it is its turn.
//
// Digits belong to the screen as long as the handset is down: letters in a list, digits in a number
// field and in the dialler. With the handset lifted, or after the dial-pad key, they are dialled,
// unless a dialler is on the screen, which then takes them.
// [event thread]

#pragma once

#include <functional>

#include <framework/host/Key.h>

#include "app/IdleScreen.h"
#include "app/PhoneKey.h"
#include "app/Stage.h"
#include "system/PhysicalInterfaceService.h"

class KeyRouter {
public:
    // What the telephone dials with.
    struct Dialling {
        std::function<void(bool offHook)> hook;
        std::function<void()> liftedForCall;
        std::function<void(char digit)> digit;
        std::function<void()> hangUp;
        // Whether there is a call to hang up.
        std::function<bool()> isCalling;
        // These two do it to the call of that id, or for "" to the call that rings; false when there
        // is none.
        std::function<bool(const std::string& call)> answer;
        std::function<bool(const std::string& call)> end;
    };

    // `phonebook` is the phonelet that the phonebook key opens; null when there is none.
    KeyRouter(Stage& stage, IdleScreen& idle, PhysicalInterfaceService& physical, Dialling dialling);

    void setPhonebook(PhoneletHost* phonebook) { m_pPhonebook = phonebook; }

    void route(const PhoneKey& key);
    void openPhonebook();

    bool isOffHook() const { return m_offHook; }
    bool isDialPadOn() const { return m_dialPad; }
    // Dialling has ended: digits belong to the screen again when the handset is down.
    void diallingEnded() { m_dialPad = false; }

private:
    void screenKey(const DisplayAPI::Key& key);
    void hookKey();
    void hangUpKey();
    void setOffHook(bool offHook);
    void setHandset(bool lifted);
    bool dials(const DisplayAPI::Key& key, char& digit) const;

    Stage& m_stage;
    IdleScreen& m_idle;
    PhysicalInterfaceService& m_physical;
    const Dialling m_dialling;
    PhoneletHost* m_pPhonebook = nullptr;
    bool m_offHook = false;
    bool m_dialPad = false;
};
