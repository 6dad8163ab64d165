// The telephone's physical keys.

#pragma once

namespace PhysDefs {

// What a key is for.
enum class keyFunctionType : int { None = 0, Digit = 1, Navigation = 2, SoftKey = 3, Function = 4, Line = 5 };

// What happened to it.
enum class actionType : int { Pressed = 1, Released = 2, Held = 3 };

// Which keys a subscriber wants, by group; a group says of itself what it is.
struct KeyGrpButtonEvents {
    int group = 0;    // 2: every key of the telephone's own keypad
    int actions = 0;  // 1: presses only
    int delivery = 0; // 1: beside the screen's own use of the key, never instead of it
};

using SubscriptionGrp = KeyGrpButtonEvents;

} // namespace PhysDefs
