#include <framework/util/CriticalSection.h>

#include <framework/util/Semaphore.h>

#include <array>
#include <cstdlib>

namespace {

// What this thread holds. Trivially destructible: a destructor for thread exit would keep its
// library mapped.
struct Held {
    const Semaphore* semaphore;
    int depth;
};
constexpr std::size_t nMOST_LOCKS_AT_ONCE = 16;
thread_local std::array<Held, nMOST_LOCKS_AT_ONCE> t_held{};

// The entry for `semaphore`, null standing for a free one.
Held* find(const Semaphore* semaphore)
{
    for (auto& held : t_held)
        if (held.semaphore == semaphore)
            return &held;
    return nullptr;
}

} // namespace

CriticalSection::CriticalSection(Semaphore& semaphore)
    : m_semaphore(semaphore)
{
    if (Held* held = find(&semaphore)) {
        ++held->depth;
        return;
    }
    Held* held = find(nullptr);
    if (!held)
        std::abort(); // a thread in sixteen locks at once is a bug, and going on unlocked is worse
    semaphore.take();
    *held = {&semaphore, 1};
}

CriticalSection::~CriticalSection()
{
    Held* held = find(&m_semaphore);
    if (--held->depth > 0)
        return;
    *held = {};
    m_semaphore.give();
}
