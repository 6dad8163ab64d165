// One picture of the telephone's screen, as data: what is visible and nothing else.
//
// A frame never changes after it was published, and holds no pointer into a widget: any thread
// may read it. Texts are translated, valid UTF-8, without control characters.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <framework/Export.h>

namespace DisplayAPI {

enum class FrameRole {
    None,
    Idle,
    List,
    ExclusiveList,
    Form,
    Menu,
    Question,
    Notification,
    Progress,
    Dialler
};

struct FrameRow {
    int position = 0; // in the whole list, from 0
    int icon = 0;     // DisplayIcon
    std::string text;
    std::string image; // path of a picture, or ""
    bool selected = false;
    bool operator==(const FrameRow&) const = default;
};

struct FrameField {
    enum class Kind { Text, Number, Selection };
    enum class Letters { Words, Small, Capitals }; // "Abc", "abc", "ABC"
    Kind kind = Kind::Text;
    Letters letters = Letters::Small; // of a text: which ones the digit keys enter
    int position = 0;                 // on the whole form, from 0
    int icon = 0;                     // FieldIcon
    std::string label;
    std::string value;  // of a selection: its chosen command's text
    std::string image;  // of a selection: its chosen command's picture
    int choice = -1;    // of a selection: position of the chosen command, -1 when it is none of the choices
    int choices = 0;    // of a selection: how many
    int cursor = -1;    // in characters; -1 when the field has no cursor
    int maxLength = -1; // in characters; -1 when there is no limit
    bool focused = false;
    bool readOnly = false;
    bool operator==(const FrameField&) const = default;
};

// The dialler popup's lines.
struct FrameDialler {
    std::string prefix;
    std::string line1;
    std::string line2;
    std::string edit; // what was typed
    bool stimulusText = false;
    bool editMode = false;
    bool scrolls = true;
    bool operator==(const FrameDialler&) const = default;
};

// A screen or a popup.
struct FrameScreen {
    FrameRole role = FrameRole::None;
    std::uint64_t id = 0; // the same as long as it is the same widget
    int type = 0;         // of a notification or progress popup, as the phonelet set it
    int state = 0;        // of a question, as the phonelet set it
    std::string title;
    std::string image; // of a menu: path of the picture at its head, or ""
    std::string text;
    std::vector<FrameRow> rows;     // of a list, a menu, or a popup's commands: the visible ones
    int rowCount = 0;               // how many rows or fields there are in all
    std::vector<FrameField> fields; // of a form: the visible ones
    FrameDialler dialler;
    bool searchOpen = false;
    std::string search;  // the search field's committed text
    std::string pending; // the letter that the next press of the same digit key still changes
    bool highlighted = true;
    bool waiting = false;     // the wait animation
    bool asksForText = false; // the phonelet opened the search field, and no entry is listed yet
    bool operator==(const FrameScreen&) const = default;
};

struct FrameSoftKey {
    std::string label;
    bool operator==(const FrameSoftKey&) const = default;
};

// A call, or for a moment one that has failed.
struct FrameCall {
    enum class State {
        Calling,
        Alerting, // it rings at the other end
        Incoming, // it rings here
        Connected,
        Held,
        Failed
    };

    std::string id; // what keys for this call name
    State state = State::Calling;
    std::string name;       // whose it is, in words if nobody knows; never ""
    std::string number;     // "" when it stands as the name, or is not known
    std::string text;       // its state, or why it has failed
    std::int64_t since = 0; // of one that is or was connected: when that began, Unix time in ms
    bool operator==(const FrameCall&) const = default;
};

// What the telephone itself shows beside every screen. A display leaves it to the telephone.
struct FrameSigns {
    bool offHook = false;
    bool dialPad = false; // digits are dialled though the handset is down
    std::vector<FrameCall> calls = {};
    bool operator==(const FrameSigns&) const = default;
};

struct FRAMEWORK_API Frame {
    std::uint64_t number = 0; // grows with every frame
    bool visible = false;
    std::vector<std::string> tabs; // titles; empty when the base screen has no tabs
    int currentTab = -1;
    bool tabBarFocused = false;
    FrameScreen base;
    std::vector<FrameScreen> popups; // the last one is on top
    std::vector<FrameSoftKey> softKeys;
    std::vector<std::string> systemWindow;
    FrameSigns signs;

    // The screen that the keys go to: the popup on top, else the base.
    const FrameScreen& top() const { return popups.empty() ? base : popups.back(); }

    // Whether the same is to be seen, whatever the number.
    bool showsTheSameAs(const Frame& other) const;
};

} // namespace DisplayAPI
