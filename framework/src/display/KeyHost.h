// The host whose display handles a key now: widgets ask it for the time and for letters.

#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace DisplayAPI {

class DisplayHostIfc;

class KeyHost {
public:
    // Until it goes. The UiLock must be held as long.
    explicit KeyHost(DisplayHostIfc& host);
    ~KeyHost();

    KeyHost(const KeyHost&) = delete;
    KeyHost& operator=(const KeyHost&) = delete;

    // Outside a display's key: time 0, no wake-up, and the digit itself.
    static std::chrono::milliseconds now();
    static void wakeAt(std::chrono::milliseconds when);
    static std::vector<std::string> charactersOnKey(char digit);

private:
    DisplayHostIfc* m_pOuter;
};

} // namespace DisplayAPI
