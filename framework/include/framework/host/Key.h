// A key as the telephone hands it to a display: of its own keypad, or of a computer's keyboard.

#pragma once

#include <string>

namespace DisplayAPI {

struct Key {
    enum class Kind {
        Digit, // '0'..'9', '*', '#': letters by repeated presses in a list or text field
        Text,  // typed on a computer's keyboard: one character, UTF-8, enters itself
        Up,
        Down,
        Left,
        Right,
        Ok,
        Context,
        Back,
        Save,
        Clear,    // deletes one character
        ClearAll, // the clear key held down
        SoftKey,  // `index` counts from 0, left to right
        Row,      // a row or field was pointed at; `index` is its position
        Tab,      // a tab was pointed at; `index` counts from 0
    };

    Kind kind = Kind::Ok;
    char digit = 0;
    std::string text;
    int index = 0;

    static Key of(Kind kind) { return {kind, 0, {}, 0}; }
    static Key of(Kind kind, int index) { return {kind, 0, {}, index}; }
    static Key ofDigit(char digit) { return {Kind::Digit, digit, {}, 0}; }
    static Key ofText(std::string character) { return {Kind::Text, 0, std::move(character), 0}; }
};

} // namespace DisplayAPI
