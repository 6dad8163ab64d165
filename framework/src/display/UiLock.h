// Held by every public operation of the widgets while it runs: they may be used from several threads.
//
// It is recursive, for widgets use each other. It is never held while a listener runs. A host is
// called with it held, so a host must not wait for a thread that uses widgets.

#pragma once

#include <mutex>

namespace DisplayAPI {

class UiLock {
public:
    UiLock()
        : m_guard(mutex())
    {
    }

private:
    static std::recursive_mutex& mutex();

    std::scoped_lock<std::recursive_mutex> m_guard;
};

} // namespace DisplayAPI
