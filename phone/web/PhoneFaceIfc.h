// The telephone as its page sees it: a screen to read, keys to press, texts in its language.

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace DisplayAPI {
struct Frame;
}

// What became of a key when it was pressed.
enum class KeyVerdict {
    Taken,   // the telephone acts on it, or will
    Busy,    // dropped: something is under way
    Closed,  // it closed the message on the screen, and did nothing else
    Unknown, // there is no such key
};

class PhoneFaceIfc {
public:
    virtual ~PhoneFaceIfc() = default;

    // The frame to show now; null before the first one. It never blocks on the event thread.
    // [any-thread]
    virtual std::shared_ptr<const DisplayAPI::Frame> frame() const = 0;

    // Calls `listener` whenever frame() or the language has changed, from any thread; null stops it.
    // When this has returned, the listener before is not being called and never will be.
    // [any-thread]
    virtual void setFaceListener(std::function<void()> listener) = 0;

    // Presses a key by its name: "ok", "back", "menu", "up", "5", "#", "soft1", "text:ä", "row13",
    // "tab2", "home", "hook" ...
    // [any-thread]
    virtual KeyVerdict press(std::string_view key) = 0;

    // The code of the language that texts are in, and a text of the telephone's own in it.
    // [any-thread]
    virtual std::string language() const = 0;
    virtual std::string text(const std::string& key) const = 0;

    // An id for the picture at `path`, that only those know who see it; "" when it is gone or is no
    // picture. It stands for this content of the file only.
    // [any-thread]
    virtual std::string pictureId(const std::string& path) = 0;

    // The picture of an id, small, as a PNG; null when there is none. It may take a second or two.
    // [any-thread]
    virtual std::shared_ptr<const std::string> picture(const std::string& id) = 0;
};
