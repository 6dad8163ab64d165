// What a display needs of the telephone: a clock, a place for its frames, the letters of the keys.
//
// It is called with the widgets' lock held: it must not wait for a thread that uses widgets.

#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <framework/Export.h>

namespace DisplayAPI {

class TranslatorIfc;
struct Frame;

struct DisplayVariant {
    bool softKeyBar = true;
    int visibleRows = 8;
};

enum class FrameMoment {
    InsideEvent, // a handler is still running: worth sending only if it goes on for a while
    AfterEvent,
};

class FRAMEWORK_API DisplayHostIfc {
public:
    virtual ~DisplayHostIfc();

    // A clock that never goes back.
    // [phonelet-thread]
    virtual std::chrono::milliseconds now() const = 0;

    // Asks for Display::timePassed() at or soon after `when`. An earlier request stands too.
    // [phonelet-thread]
    virtual void wakeAt(std::chrono::milliseconds when) = 0;

    // A new frame. It must not block: readers take it from another thread.
    // [phonelet-thread]
    virtual void publish(std::shared_ptr<const Frame> frame, FrameMoment moment) = 0;

    // The characters that repeated presses of a digit key give in the current language, in order.
    // [phonelet-thread]
    virtual std::vector<std::string> charactersOnKey(char digit) const = 0;

    // For the labels of the telephone's own keys ("phone.ok", "phone.menu", "phone.back",
    // "phone.save", "phone.select").
    // [phonelet-thread]
    virtual const TranslatorIfc* translator() const = 0;
};

} // namespace DisplayAPI
