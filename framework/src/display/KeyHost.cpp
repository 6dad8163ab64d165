#include "KeyHost.h"

#include <framework/host/DisplayHostIfc.h>

namespace DisplayAPI {

namespace {

DisplayHostIfc* s_pHost = nullptr; // guarded by the UiLock

} // namespace

KeyHost::KeyHost(DisplayHostIfc& host)
    : m_pOuter(s_pHost)
{
    s_pHost = &host;
}

KeyHost::~KeyHost()
{
    s_pHost = m_pOuter;
}

std::chrono::milliseconds KeyHost::now()
{
    return s_pHost ? s_pHost->now() : std::chrono::milliseconds{0};
}

void KeyHost::wakeAt(std::chrono::milliseconds when)
{
    if (s_pHost)
        s_pHost->wakeAt(when);
}

std::vector<std::string> KeyHost::charactersOnKey(char digit)
{
    std::vector<std::string> characters;
    if (s_pHost)
        characters = s_pHost->charactersOnKey(digit);
    if (characters.empty())
        characters.emplace_back(1, digit);
    return characters;
}

} // namespace DisplayAPI
