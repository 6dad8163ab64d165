// A key of the telephone, wherever it was pressed: on the page, in a terminal, in a test.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <framework/host/Key.h>

struct PhoneKey {
    enum class Kind {
        Display,   // `key`: for the screen, or a digit to dial
        Phonebook, // opens the phonebook; pressed again it is the phonebook's tab key
        Home,      // the idle screen
        Hook,      // takes the call that rings; lifts the handset, or puts it back
        HangUp,    // rejects the call that rings; puts the handset back, ends the call
        Answer,    // takes `call`, or the call that rings when it names none
        End,       // ends or rejects `call`, or the call that rings
        DialPad,   // the digits that follow are dialled, without lifting the handset
    };

    Kind kind = Kind::Display;
    DisplayAPI::Key key;
    std::string call; // a FrameCall's id, or ""

    static PhoneKey of(Kind kind, std::string call = "") { return {kind, {}, std::move(call)}; }
    static PhoneKey of(DisplayAPI::Key key) { return {Kind::Display, std::move(key), ""}; }
};

// The keys that a word stands for: "ok", "back", "menu", "save", "up", "down", "left", "right",
// "clear", "clearall", "home", "phonebook" or "tab", "hook", "hangup", "dialpad", "0" to "9", "*",
// "#", "soft1"..., "row1"... (a row that is pointed at, from the list's first), "tab1"..., and
// "text:abc", typed on a keyboard: a key a character; "answer" and "reject" for the call that rings,
// "answer:3" and "end:3" for a certain call. Nothing for any other word.
std::optional<std::vector<PhoneKey>> keysFromWord(std::string_view word);
