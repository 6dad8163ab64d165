// What is to be seen while no phonelet is: the time, the line, the names of the keys, what is being
// dialled, and what the user should know about the telephone.
// [event thread]

#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <framework/display/Frame.h>
#include <framework/display/TranslatorIfc.h>
#include <framework/host/DisplayHostIfc.h>
#include <framework/host/Key.h>

#include "app/Clock.h"
#include "app/IdleDialler.h"

class IdleScreen {
public:
    struct Parts {
        const Clock& clock;
        const DisplayAPI::TranslatorIfc& translator;
        DisplayAPI::DisplayVariant variant;
        std::function<std::string()> language;
        std::function<std::string()> line;                // the state of the line, in words
        std::function<std::vector<std::string>()> advice; // more to know, in words; may change
        std::function<void()> openPhonebook;
        IdleDialler& dialler;
    };

    explicit IdleScreen(Parts parts);

    // A text that `{1}`, `{2}`... in the translation of `key` are replaced by. It stays until the
    // telephone ends.
    void addNotice(std::string key, std::vector<std::string> parameters);

    DisplayAPI::Frame paint() const;

    // OK dials what was typed, the clear key takes the last digit away, held down or with Back all of them.
    // Otherwise the soft key, or OK without one, opens the phonebook. False when the key means nothing here.
    bool keyPressed(const DisplayAPI::Key& key);
    // The user went home, from here too: what was typed is forgotten.
    void homePressed() { m_parts.dialler.clearAll(); }

    // When its time next changes, by Clock::now().
    std::chrono::milliseconds nextMinute() const;

private:
    // Whether it was a key for the digits.
    bool editsDigits(DisplayAPI::Key::Kind kind);
    void tellTime() const;
    std::vector<std::string> texts() const;

    struct Notice {
        std::string key;
        std::vector<std::string> parameters;
        bool operator==(const Notice&) const = default;
    };

    const Parts m_parts;
    std::vector<Notice> m_notices;
    // Writing a date in a language takes a while: it is kept for its minute.
    mutable std::chrono::system_clock::time_point m_told;
    mutable std::string m_toldIn;
    mutable std::string m_time;
    mutable std::string m_date;
};
